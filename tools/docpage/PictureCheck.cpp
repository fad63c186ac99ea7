#include "tools/docpage/PictureCheck.h"

#include "tools/docpage/JpgStructure.h"
#include "tools/docpage/PngStructure.h"

PictureCheck PictureCheck::of(const QByteArray &bytes)
{
    if (PngStructure::isPng(bytes))
        return {DocCovRslt::PAGE_FORMAT_PNG, PngStructure::fault(bytes)};
    if (JpgStructure::isJpg(bytes))
        return {DocCovRslt::PAGE_FORMAT_JPG, JpgStructure::fault(bytes)};
    return {DocCovRslt::PAGE_FORMAT_NONE, QStringLiteral("neither a JPG nor a PNG picture")};
}
