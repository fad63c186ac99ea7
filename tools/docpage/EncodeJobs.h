#pragma once

#include "common/DocCovRslt.h"

#include <QStringList>
#include <QVector>

#include <functional>

class EndRequest;

/// A picture to be encoded.
struct EncodeInput
{
    QString file; ///< is consumed
    qint64 size;
    DocCovRslt::PAGE_FORMAT_DEF format;
};

/// What came of encoding pictures.
struct EncodeResult
{
    QStringList pages; ///< the page result files, in the order of the pictures
    int failed = -1;   ///< the picture that failed, if it was one
    QString fault;     ///< why it failed; empty when it did not or was cancelled
};

/// Encodes pictures on the encoder's thread, with a job for each format, as page result files whose
/// names begin with `prefix`. Ends early, and leaves none of them, when one fails or `end` is made.
/// \param onPage called for each picture that is done, in this thread's event loop
EncodeResult encodePictures(const QVector<EncodeInput> &pictures, const QString &prefix,
                            const EndRequest &end,
                            const std::function<void(const EncodeInput &)> &onPage);
