#pragma once

#include "emfdeal/PageResultHeader.h"

#include <QString>

/// A page result file as read by the library.
struct PageFile
{
    PageResultHeader header;
    QByteArray payload;
    qint64 trailingBytes = 0; ///< what follows the payload in the file and is ignored
    QString fault;            ///< why the file is refused; empty when all of the above holds

    static PageFile read(const QString &path);
};
