#include "tools/docimport/LayerPicture.h"

#include <QRect>

namespace {

constexpr int kOpaque = 255;
constexpr int kFaintest = 2; // what is fainter is how rounding differs

int alphaOf(QRgb white, QRgb yellow)
{
    const int alpha = kOpaque - qBound(0, qBlue(white) - qBlue(yellow), kOpaque);
    return alpha <= kFaintest ? 0 : alpha;
}

// The colour that shows as `shown` when white is seen through it.
int withoutWhite(int shown, int alpha)
{
    return qBound(0, ((shown - (kOpaque - alpha)) * kOpaque + alpha / 2) / alpha, kOpaque);
}

QRgb withoutPaper(QRgb white, QRgb yellow)
{
    const int alpha = alphaOf(white, yellow);
    if (alpha == 0)
        return 0;
    return qRgba(withoutWhite(qRed(white), alpha), withoutWhite(qGreen(white), alpha),
                 withoutWhite(qBlue(white), alpha), alpha);
}

const QRgb *lineOf(const QImage &image, int y)
{
    return reinterpret_cast<const QRgb *>(image.constScanLine(y));
}

QRect paintedPart(const QImage &onWhite, const QImage &onYellow)
{
    QRect part;
    for (int y = 0; y < onWhite.height(); ++y) {
        const QRgb *white = lineOf(onWhite, y);
        const QRgb *yellow = lineOf(onYellow, y);
        const auto isPainted = [&](int x) { return alphaOf(white[x], yellow[x]) > 0; };
        int left = 0;
        int right = onWhite.width() - 1;
        while (left <= right && !isPainted(left))
            ++left;
        while (right > left && !isPainted(right))
            --right;
        if (left <= right)
            part |= QRect(left, y, right - left + 1, 1);
    }
    return part;
}

} // namespace

LayerPicture layerOf(const QImage &onWhite, const QImage &onYellow)
{
    const QRect part = paintedPart(onWhite, onYellow);
    LayerPicture layer;
    layer.at = part.isEmpty() ? QPoint() : part.topLeft();
    layer.image = QImage(part.isEmpty() ? QSize(1, 1) : part.size(), QImage::Format_ARGB32);
    if (layer.image.isNull()) // memory lacks
        return layer;
    layer.image.fill(Qt::transparent);
    bool isOpaque = !part.isEmpty();
    for (int y = 0; y < part.height(); ++y) {
        const QRgb *white = lineOf(onWhite, part.y() + y) + part.x();
        const QRgb *yellow = lineOf(onYellow, part.y() + y) + part.x();
        auto *pixels = reinterpret_cast<QRgb *>(layer.image.scanLine(y));
        for (int x = 0; x < part.width(); ++x) {
            pixels[x] = withoutPaper(white[x], yellow[x]);
            isOpaque = isOpaque && qAlpha(pixels[x]) == kOpaque;
        }
    }
    if (isOpaque)
        layer.image = layer.image.convertToFormat(QImage::Format_RGB32);
    return layer;
}
