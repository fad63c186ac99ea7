#include "tools/docpage/PageFormatName.h"

#include "common/DocCovRslt.h"

PageFormatName pageFormatName(qint32 format)
{
    switch (format) {
    case DocCovRslt::PAGE_FORMAT_JPG:
        return {"JPG picture", "jpg"};
    case DocCovRslt::PAGE_FORMAT_PNG:
        return {"PNG picture", "png"};
    default:
        return {"slide animation data", "slide-animation"};
    }
}
