#pragma once

#include "common/DocCovRslt.h"

#include <QByteArray>
#include <QImage>
#include <QString>

/// An image as the picture of a page.
struct PagePicture
{
    QByteArray bytes;
    DocCovRslt::PAGE_FORMAT_DEF format = DocCovRslt::PAGE_FORMAT_NONE;
    QString fault; ///< why it cannot be encoded; empty when it is

    /// As PNG, or as JPG where that is far smaller and nobody sees the difference: not where there
    /// are few colours, as in plain text and diagrams.
    static PagePicture of(const QImage &image, int jpegQuality);
};
