#include "tools/docimport/pdf/PagePicture.h"

#include "tools/docpage/PngEncoder.h"

#include <QBuffer>
#include <QSet>

namespace {

constexpr int kFewColours = 256;

bool hasFewColours(const QImage &image)
{
    QSet<QRgb> colours;
    QRgb last = 0; // most pixels are like the one before
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (line[x] != last)
                colours.insert(last = line[x]);
        }
        if (colours.size() > kFewColours)
            return false;
    }
    return true;
}

QByteArray encodedJpg(const QImage &image, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    return buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "JPG", quality) ? bytes
                                                                                    : QByteArray();
}

bool isFarSmaller(const QByteArray &jpg, const QByteArray &png)
{
    return !jpg.isEmpty() && 10 * qint64(jpg.size()) < 7 * qint64(png.size());
}

} // namespace

PagePicture PagePicture::of(const QImage &image, int jpegQuality)
{
    PagePicture picture;
    picture.format = DocCovRslt::PAGE_FORMAT_PNG;
    picture.fault = encodePng(image, picture.bytes);
    if (!picture.fault.isEmpty() || hasFewColours(image))
        return picture;
    const QByteArray jpg = encodedJpg(image, jpegQuality);
    if (isFarSmaller(jpg, picture.bytes)) {
        picture.bytes = jpg;
        picture.format = DocCovRslt::PAGE_FORMAT_JPG;
    }
    return picture;
}
