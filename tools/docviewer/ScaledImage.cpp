#include "tools/docviewer/ScaledImage.h"

#include <cmath>

namespace {

// Smooth scaling looks at every pixel, and makes an image of 32 bits a pixel of them all before.
constexpr double kMostPixels = 1 << 22;

} // namespace

QImage scaledImage(const QImage &image, QSize size)
{
    if (size == image.size())
        return image;
    const double pixels = double(image.width()) * image.height();
    const QSize thinned =
        (QSizeF(image.size()) * std::sqrt(kMostPixels / pixels)).toSize().expandedTo(2 * size);
    const bool isThinned = pixels > kMostPixels && thinned.width() < image.width() &&
                           thinned.height() < image.height();
    const QImage source =
        isThinned ? image.scaled(thinned, Qt::IgnoreAspectRatio, Qt::FastTransformation) : image;
    return source.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}
