#pragma once

#include "emfdeal/PageResultHeader.h"

#include <QString>

#include <limits>

/// The most that a payload may have: the header's length is a signed 32-bit number, and the library
/// reads no more than one QByteArray holds, which is a little less.
constexpr qint64 kMaxPayloadSize = std::numeric_limits<qint32>::max() - 64;

/// The name that the page result file of page `number` is given.
QString pageFileName(int number);

/// A page result file as read by the library.
struct PageFile
{
    PageResultHeader header;
    QByteArray payload;
    qint64 trailingBytes = 0;   ///< what follows the payload in the file and is ignored
    QString fault;              ///< why the file is refused; empty when all of the above holds
    const char *faultCode = ""; ///< that in a word, which stays
    qint64 faultOffset = 0;     ///< where in the file that stands which is wrong

    static PageFile read(const QString &path);
};
