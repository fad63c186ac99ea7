#pragma once

#include "docdisplay/DocDisplayMgr.h"
#include "tools/docpage/CommandLine.h"

/// Reads the options --page, --step and --ms. What is not given stays as it is in `position`.
/// \return what is wrong with them, a sentence; empty when nothing is
QString readPosition(const CommandLine &line, DocDisplayMgr::AnimStatus &position);
