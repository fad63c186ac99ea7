#pragma once

#include <QImage>

/// The share of the pixels, 0 to 1, in which two pictures differ by more than 32 of the 256 levels
/// in any colour; 1 when their sizes do.
/// \param one, other RGB32
double differenceOf(const QImage &one, const QImage &other);
