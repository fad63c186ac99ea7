#pragma once

#include "emfdeal/PageResultHeader.h"
#include "tools/docpage/check/DecodingBudget.h"
#include "tools/docpage/check/Finding.h"
#include "tools/docpage/check/PictureVerdict.h"

#include <vector>

/// A picture in a page result file.
struct FilePicture
{
    QByteArray bytes;
    PictureUse use;
    QString name;  ///< as "picture of shape 1"; empty when the file has no other
    qint64 offset; ///< of its first byte in the file
};

/// The image of one that was decoded.
struct DecodedImage
{
    qint64 offset; ///< of the picture in the file
    QSize size;
    qint64 bytes;
};

/// Whether a page result file would show, and what it takes.
struct PageReport
{
    qint32 format = DocCovRslt::PAGE_FORMAT_NONE; ///< that the file announces; none if refused
    Findings findings;
    std::vector<DecodedImage> images; ///< in the order in which they stand in the file
    qint64 decodedBytes = 0;          ///< of all of them

    /// Checks a file.
    /// \param maxMemory bytes that the decoding of a picture, and the pictures of a slide, may take
    static PageReport of(const QString &file, qint64 maxMemory);

    /// Decodes a picture, says what is wrong with it, and counts it when it is decoded.
    PictureVerdict addPicture(const FilePicture &picture, DecodingBudget &budget);
};
