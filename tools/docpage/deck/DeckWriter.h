#pragma once

#include "tools/docpage/deck/SlideModel.h"

class PictureExtractor;

/// The JSON that describes a deck of these models, each for a file of its own, so that the same
/// bytes are built of it.
/// \param extractor is given the pictures, which the JSON names then; without it the JSON holds
/// them
QString deckJson(const SlideModels &models, PictureExtractor *extractor);
