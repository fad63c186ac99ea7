#pragma once

#include "tools/docviewer/Presentation.h"

/// What the status line says of a presentation, in its parts; a part is empty when there is nothing
/// to say. Pages count from 1.
struct StatusText
{
    QString page; ///< "Page 2 of 5"
    QString step; ///< "Step 1 of 3"; of slides with steps only
    QString time; ///< "400 of 1500 ms"
    QString next; ///< "playing, next: end of step 1", "next: step 2 of 3", "next: page 4", "end"

    static StatusText of(const Presentation &show, const DocDisplayMgr::AnimStatus &position);
};
