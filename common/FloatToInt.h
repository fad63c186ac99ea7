#pragma once

#include <QtGlobal>

#include <limits>

/// \file
/// Conversions from floating point that no compiler and no processor does in its own way: toward
/// zero, what is too large or too small for the result becomes its end, and NaN becomes 0.

/// `value` without its fraction, from -2147483648 to 2147483647.
constexpr qint32 toInt32(double value)
{
    constexpr double kLeast = -2147483648.0;
    constexpr double kMost = 2147483647.0;
    if (value >= kMost)
        return std::numeric_limits<qint32>::max();
    if (value <= kLeast)
        return std::numeric_limits<qint32>::min();
    return value == value ? static_cast<qint32>(value) : 0;
}

/// A length or place in pixels: `pageUnits` and a half, without the fraction of the sum. That is
/// the nearest pixel, but for negative places, which are cut toward zero: -0.7 and -1.4 are both 0.
constexpr qint32 toPixels(float pageUnits)
{
    return toInt32(static_cast<double>(pageUnits) + 0.5);
}

/// `value` without its fraction, from 0 to 4294967295.
constexpr quint32 toUInt32(double value)
{
    constexpr double kMost = 4294967295.0;
    if (value >= kMost)
        return std::numeric_limits<quint32>::max();
    return value > 0 ? static_cast<quint32>(value) : 0;
}
