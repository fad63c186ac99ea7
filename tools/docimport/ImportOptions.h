#pragma once

#include "tools/docimport/PageList.h"
#include "tools/docimport/pdf/Resolution.h"

#include <QStringList>

/// What a call is to do.
struct ImportOptions
{
    QStringList inputs;
    QString output;
    bool isForced = false;
    Resolution resolution;
    int jpegQuality = 90;
    PageList pages;
    bool isStatic = false; ///< no animations
    int timeout = 120;     ///< seconds that the engine has for a document, and a page to be drawn
    bool keepsWork = false;
    QString report; ///< a file; empty for none
    QString engine; ///< that to take; empty to look for one
};
