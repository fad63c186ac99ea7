#pragma once

#include "tools/docpage/check/Finding.h"
#include "tools/docpage/check/PictureVerdict.h"

/// Whether a page result file would show, and what it takes.
struct PageReport
{
    Findings findings;
    qint64 pictures = 0;     ///< that are decoded
    qint64 decodedBytes = 0; ///< of all of them

    /// Checks a file.
    /// \param maxMemory bytes that the decoding of a picture, and the pictures of a slide, may take
    static PageReport of(const QString &file, qint64 maxMemory);

    /// Decodes a picture, says what is wrong with it, and counts it when it is decoded.
    /// \param name what it is called, as "picture of shape 1"; empty when the file has no other
    /// \param offset of its first byte in the file
    PictureVerdict addPicture(const QByteArray &picture, const QString &name, qint64 offset,
                              qint64 maxMemory);
};
