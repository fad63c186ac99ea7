#include "tools/docpage/PngEncoder.h"

#include "tools/docpage/LibraryLog.h"

#include <QBuffer>

QString encodePng(const QImage &image, QByteArray &png, int quality)
{
    const LibraryLog::DecoderSilence silence; // libpng tells its errors there
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG", quality))
        return QStringLiteral("the image cannot be encoded");
    return {};
}
