#pragma once

#include <QSize>

#include <limits>

/// The bytes of an image in the player's format, four for each pixel; the most there is when that
/// is no number, and 0 for a size that is none.
inline qint64 imageBytes(QSize size)
{
    constexpr qint64 kPixelBytes = 4;
    constexpr qint64 kMost = std::numeric_limits<qint64>::max();
    if (!size.isValid())
        return 0;
    const qint64 pixels = qint64(size.width()) * size.height();
    return pixels > kMost / kPixelBytes ? kMost : pixels * kPixelBytes;
}
