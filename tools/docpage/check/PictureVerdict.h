#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

/// What became of a picture when it was decoded as the display manager does it: by the content.
struct PictureVerdict
{
    enum class Kind {
        Decoded,
        Damaged, ///< decoded, but the decoder made up a part of it, or might have
        Undecodable,
        TooLarge,
        Crashed,  ///< the decoder, with it
        TimedOut, ///< the decoder, on it
        Unchecked ///< for want of a process to decode it in
    };
    Kind kind = Kind::Unchecked;
    QString words;     ///< what is wrong; empty when it is decoded
    QByteArray format; ///< what Qt calls its format, as "png"; empty when it knows none
    QSize size;        ///< of the image
    qint64 bytes = 0;  ///< of the image

    bool isShown() const { return kind == Kind::Decoded || kind == Kind::Damaged; }

    /// Decodes the picture in a process of its own, which may take `maxMemory` more bytes.
    static PictureVerdict of(const QByteArray &picture, qint64 maxMemory);

    /// Decodes the picture in this process, whatever comes of it.
    static PictureVerdict inProcess(const QByteArray &picture, qint64 maxMemory);
};
