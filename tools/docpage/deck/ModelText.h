#pragma once

#include "pptdata/PPT_fileDat.h"

#include <QString>

/// The size of a model's pages and how much there is on them, on one line without its end.
QString modelSummary(const PPT_fileDat &model);

/// A model in full, page by page, on indented lines.
QString modelText(const PPT_fileDat &model);
