#include "pptanim/ReadyPictures.h"

namespace {

// Looked for from the middle, where pictures with soft edges or round corners are solid: line by
// line, up and down by turns, as wide as all of the lines allow.
QRect solidPart(const QImage &image)
{
    if (image.format() == QImage::Format_RGB32)
        return image.rect();
    const int middle = image.width() / 2;
    int left = 0;
    int right = image.width(); // behind it
    QRect largest;
    for (int height = 1; height <= image.height() && left < right; ++height) {
        const int top = image.height() / 2 - height / 2;
        const int y = height % 2 == 0 ? top : top + height - 1;
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        const auto isSolid = [line](int x) { return qAlpha(line[x]) == 0xFF; };
        int x = middle;
        while (x < right && isSolid(x))
            ++x;
        right = x;
        x = middle;
        while (x > left && isSolid(x - 1))
            --x;
        left = x;
        if (qint64(right - left) * height > qint64(largest.width()) * largest.height())
            largest = QRect(left, top, right - left, height);
    }
    return largest;
}

} // namespace

const ReadyPictures::Picture &ReadyPictures::of(const QImage &image)
{
    Picture &ready = m_ready[image.cacheKey()];
    if (ready.image.isNull()) {
        ready.solid = solidPart(image);
        ready.image = image.convertToFormat(ready.solid == image.rect()
                                                ? QImage::Format_RGB32
                                                : QImage::Format_ARGB32_Premultiplied);
        if (ready.image.isNull()) // memory lacks
            ready.image = image;
    }
    return ready;
}

void ReadyPictures::clear()
{
    m_ready.clear();
}
