#include "tools/docpage/PngEncoder.h"

#include <QBuffer>

QString encodePng(const QImage &image, QByteArray &png, int quality)
{
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG", quality))
        return QStringLiteral("the image cannot be encoded");
    return {};
}
