#pragma once

#include "common/DocCovRslt.h"

#include <QByteArray>
#include <QString>

/// What a picture's bytes are and whether all of it is there, judged by content and structure.
/// Nothing is decoded. Bytes after the picture's end are ignored.
struct PictureCheck
{
    DocCovRslt::PAGE_FORMAT_DEF format = DocCovRslt::PAGE_FORMAT_NONE; ///< JPG, PNG or none
    QString fault; ///< why it is no complete picture; empty when it is one

    static PictureCheck of(const QByteArray &bytes);
};
