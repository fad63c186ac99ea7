#pragma once

#include <QtGlobal>

/// What a format of a page result file is called.
struct PageFormatName
{
    const char *inWords; ///< "PNG picture"
    const char *key;     ///< "png"
};

/// \param format one of PAGE_FORMAT_JPG, PAGE_FORMAT_PNG and PAGE_FORMAT_PPT_ANIM
PageFormatName pageFormatName(qint32 format);
