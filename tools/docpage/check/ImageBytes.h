#pragma once

#include <QSize>

#include <limits>

/// The bytes of an image, whose lines are multiples of four bytes; the most there is when that is
/// no number, and 0 for a size that is none. \param depth bits of a pixel: unless given, those of
/// the player's images
inline qint64 imageBytes(QSize size, int depth = 32)
{
    constexpr qint64 kLineBits = 32;
    constexpr qint64 kMost = std::numeric_limits<qint64>::max();
    if (size.isEmpty())
        return 0;
    const qint64 line = (qint64(size.width()) * depth + kLineBits - 1) / kLineBits * 4;
    return line > kMost / size.height() ? kMost : line * size.height();
}
