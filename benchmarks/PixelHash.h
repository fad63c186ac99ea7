#pragma once

#include <QImage>

#include <cstdio>

/// Prints something that tells other images from this one. \return the exit status.
inline int printHash(const QImage &image)
{
    if (image.isNull())
        return 1;
    const size_t hash = qHashBits(image.constBits(), static_cast<size_t>(image.sizeInBytes()));
    std::printf("%dx%d %zx\n", image.width(), image.height(), hash);
    return 0;
}
