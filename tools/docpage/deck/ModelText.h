#pragma once

#include "tools/docpage/deck/SlideModel.h"

#include <QString>

/// The size of a model's pages, how much there is on them and what follows the model in its
/// payload, on one line without its end.
QString modelSummary(const SlideModel &model);

/// A model in full, page by page, on indented lines.
QString modelText(const PPT_fileDat &model);
