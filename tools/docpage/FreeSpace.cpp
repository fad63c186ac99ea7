#include "tools/docpage/FreeSpace.h"

#include <QFile>

#include <limits>

#include <sys/statvfs.h>

FreeSpace::FreeSpace(const QString &folder)
    : bytes(std::numeric_limits<qint64>::max())
{
    struct statvfs status = {};
    if (::statvfs(QFile::encodeName(folder).constData(), &status) != 0 || status.f_blocks == 0)
        return; // there are file systems that do not count
    bytes = static_cast<qint64>(status.f_bavail) * static_cast<qint64>(status.f_frsize);
    blockSize = qMax<qint64>(static_cast<qint64>(status.f_frsize), 1);
}
