#pragma once

#include "tools/docimport/deck/DeckSplitter.h"
#include "tools/docimport/deck/LayerPiece.h"
#include "tools/docimport/deck/SlideShapes.h"

#include <vector>

struct SlideEffect;

/// How a slide is taken apart, and what plays.
struct SlidePlan
{
    explicit SlidePlan(const XmlNode &page);
    SlidePlan(const XmlNode &page, const std::vector<SlideEffect> &slideEffects);

    SlideShapes shapes;
    SlideLayer background;          ///< what rests below all that moves
    std::vector<SlideLayer> layers; ///< lowest first; empty when nothing moves
    std::vector<PlannedEffect> effects;
    QVector<EffectReport> report;
};
