#pragma once

#include <QImage>
#include <QString>
#include <QVector>

/// Small pictures side by side, with a line of text under each. Needs a QGuiApplication.
class ContactSheet
{
public:
    /// The most pictures that a sheet takes.
    static constexpr qint64 kMostPictures = 400;

    /// Whether picture `index` of `count` is to be added: all of them while the sheet takes them,
    /// otherwise every second or third one and so on, and always the last one.
    static bool takes(qint64 index, qint64 count);

    void add(const QImage &image, const QString &label);

    /// The sheet; null when nothing was added.
    QImage image() const;

private:
    struct Picture
    {
        QImage image;
        QString label;
    };
    QVector<Picture> m_pictures;
};
