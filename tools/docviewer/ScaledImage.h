#pragma once

#include <QImage>

/// An image at a smaller size, smoothly scaled. The time depends on the new size more than on the
/// image's: a very large one is thinned out first.
QImage scaledImage(const QImage &image, QSize size);
