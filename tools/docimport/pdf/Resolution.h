#pragma once

#include <QSize>

constexpr double kPointsPerInch = 72;

/// How many pixels a page gets.
struct Resolution
{
    int width = 1280; ///< pixels of a page's width, unless `dpi` is set
    int dpi = 0;      ///< pixels per inch

    /// The size of a page of `points`. No side has more than 16384 pixels, and the page no more
    /// than 40 million: of a larger one `isReduced` tells.
    QSize pixelsOf(const QSizeF &points, bool &isReduced) const;
};
