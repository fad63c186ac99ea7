#include "tools/docpage/FrameHash.h"

#include <QCryptographicHash>
#include <QtEndian>

bool isQRgbFormat(QImage::Format format)
{
    return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32 ||
           format == QImage::Format_ARGB32_Premultiplied;
}

QByteArray frameHash(const QImage &image)
{
    Q_ASSERT(isQRgbFormat(image.format()));
    const quint32 opaque = image.hasAlphaChannel() ? 0 : 0xFF000000;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QByteArray row(image.width() * 4, Qt::Uninitialized);
    for (int y = 0; y < image.height(); ++y) {
        const auto *pixels = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            qToLittleEndian<quint32>(pixels[x] | opaque, row.data() + qptrdiff{4} * x);
        hash.addData(row);
    }
    return hash.result().toHex();
}
