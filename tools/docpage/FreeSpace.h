#pragma once

#include <QString>

/// The room in the file system of a folder. Not by QStorageInfo, which finds none where the root is
/// no mount of its own, as in a chroot.
struct FreeSpace
{
    explicit FreeSpace(const QString &folder);

    qint64 bytes = 0;     ///< for this user; unlimited when the system does not tell
    qint64 blockSize = 1; ///< what files take multiples of, in bytes
};
