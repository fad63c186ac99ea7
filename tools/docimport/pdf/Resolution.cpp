#include "tools/docimport/pdf/Resolution.h"

#include <QtMath>

#include <algorithm>

namespace {

constexpr double kMostOfSide = 16384;
constexpr double kMostInAll = 40e6;

int pixels(double size)
{
    return std::max(1, qRound(std::min(size, kMostOfSide)));
}

} // namespace

QSize Resolution::pixelsOf(const QSizeF &points, bool &isReduced) const
{
    const double wanted = dpi > 0 ? dpi / kPointsPerInch : width / points.width();
    const double side = std::max(points.width(), points.height());
    const double area = points.width() * points.height();
    const double scale = std::min({wanted, kMostOfSide / side, std::sqrt(kMostInAll / area)});
    isReduced = scale < wanted;
    return {pixels(points.width() * scale), pixels(points.height() * scale)};
}
