#pragma once

#include <vector>

/// What a layer shows of a shape.
struct LayerPiece
{
    int shape = 0;
    bool isWhole = true;
    bool hasBody = true;         ///< all but the text
    std::vector<int> paragraphs; ///< that are seen, ascending; not given of a whole shape
};

/// Pieces that never move against each other, lowest first.
using SlideLayer = std::vector<LayerPiece>;
