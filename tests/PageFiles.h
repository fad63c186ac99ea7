#pragma once

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QtEndian>

/// Pictures and page result files made beside the library, for the tests of what reads them.
namespace PageFiles {

/// A picture, encoded by Qt. The quality of a PNG says how little it is compressed.
inline QByteArray encoded(const QImage &image, const char *format = "PNG", int quality = 100)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, format, quality))
        qFatal("cannot encode the test's picture");
    return bytes;
}

/// A picture of one colour.
inline QByteArray picture(const QColor &colour, const char *format, QSize size = {4, 3})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return encoded(image, format);
}

/// A picture that is larger than the buffers that files are read through.
inline QByteArray noise()
{
    QImage image(160, 160, QImage::Format_RGB32);
    quint32 state = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            state = state * 1664525U + 1013904223U;
            image.setPixel(x, y, state >> 8);
        }
    }
    return encoded(image);
}

/// The bytes of a page result file.
inline QByteArray pageResultFile(qint32 format, const QByteArray &payload)
{
    QByteArray bytes = QByteArray::fromHex("8888888801010000000000000000");
    qToLittleEndian<qint32>(format, bytes.data() + 6);
    qToLittleEndian<qint32>(payload.size(), bytes.data() + 10);
    return bytes + payload;
}

/// Writes a file of the test and returns its path.
inline QString write(const QTemporaryDir &dir, const QString &name, const QByteArray &content)
{
    QFile file(dir.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write the test's file");
    return file.fileName();
}

} // namespace PageFiles
