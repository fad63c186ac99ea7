#pragma once

#include <QImage>
#include <QRect>

#include <unordered_map>

/// Pictures in the form in which they are quickest to paint onto RGB32 and premultiplied images,
/// with the same pixels as a result. Each is made when it is first asked for.
class ReadyPictures
{
public:
    struct Picture
    {
        QImage image; // premultiplied, or RGB32 where all is solid
        QRect solid;  // a large part of it that nothing shines through
    };

    /// `image` is in one of Qt's three formats of 8 bits for red, green and blue each in 32.
    const Picture &of(const QImage &image);
    void clear();

private:
    std::unordered_map<qint64, Picture> m_ready; // by the image's cache key
};
