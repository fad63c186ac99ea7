#pragma once

#include <QImage>

/// A part of a page with its place on it.
struct LayerPicture
{
    QPoint at;
    QImage image; ///< RGB32 where all of it is opaque, else ARGB32
};

/// What was painted on both papers, of which one is white (FFFFFF) and one yellow (FFFF00): as much
/// of the blue as differs is the paper's. Without any paint it is one transparent pixel.
/// \param onWhite, onYellow RGB32, of one size
LayerPicture layerOf(const QImage &onWhite, const QImage &onYellow);
