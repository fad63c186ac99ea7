#pragma once

#include "common/DocDisplayGlobal.h"

#include <QByteArray>
#include <QList>
#include <QSize>
#include <QString>

/// \file
/// Whole files, digests, identifiers, and small numbers in texts. Failures are told by the result
/// alone: nothing is logged here, and nothing thrown on bad input. Qt itself may warn, as of
/// corrupt zlib data or an empty file name. All functions are reentrant.
///
/// An error code is a QFileDevice::FileError; 0 means that there was none.

/// Reads a whole file. What cannot be read after the file was opened is left out; of a file
/// of 2 GiB or more that is everything: `data` is empty then, and the result true.
/// \return false, with `data` untouched, when the file cannot be opened.
DOCDISPLAY_EXPORT bool ReadDataFromFile(const QString &path, QByteArray &data);

/// Writes a file anew, or, with `append`, at its end. Folders are not created. Without `append`,
/// what was in the file is gone also when writing fails.
/// \return the error code; also 0 when fewer bytes were written and Qt knows of no error, and when
/// a small write (Qt keeps up to 16 KiB back) fails only at closing, as on a full disk.
DOCDISPLAY_EXPORT int WriteDataToFile2(const QByteArray &data, const QString &path, bool append);

/// Whether WriteDataToFile2() returned 0.
DOCDISPLAY_EXPORT bool WriteDataToFile(const QByteArray &data, const QString &path, bool append);

/// The MD5 digest as 32 lower-case hexadecimal digits.
DOCDISPLAY_EXPORT QString MakeMd5(const QByteArray &data);

/// The MD5 digest of a file's content, of which 1 MiB is held at a time. It ends where the file's
/// size says: a file without one, as there are in /proc, has the digest of no bytes. Of a file that
/// shrinks meanwhile the digest is that of the part that was read, and the result is 0.
/// \return the error code; `md5` is untouched when it is not 0.
DOCDISPLAY_EXPORT int GetFileMd5(const QString &path, QString &md5);

/// A new random identifier of 36 characters, as 6f1c2b9e-3d4a-4c8e-9b0a-1e2f3a4b5c6d.
DOCDISPLAY_EXPORT QString makeUUID();

/// Inflates a zlib stream (RFC 1950) of `len` bytes; empty when it is corrupt or `len` is negative.
///
/// Qt is given `len`, least significant byte first, as the size of the result, and reads it most
/// significant byte first. So with a `len` whose lowest byte is 0x80 or more nothing is inflated:
/// Qt 5.15 refuses sizes of 2 GiB and above. With others Qt may ask for up to 2 GiB of memory for
/// the time of the call.
DOCDISPLAY_EXPORT QByteArray uncompressRowZlibDat(const unsigned char *data, int len);

/// The size `src` in its proportions, made to fit into `max`; one side is that of `max` then, the
/// other is rounded up. A size that fits already, or has a side below 1, is returned as it is.
/// Products are 32-bit numbers and wrap. `max` is not checked.
DOCDISPLAY_EXPORT QSize GetEncodeSize(const QSize &src, const QSize &max);

/// The first two numbers of a text of numbers with `sep` between them, as "1920x1080"; (-1, -1)
/// when it has fewer parts. Empty parts do not count; what is no number is 0.
DOCDISPLAY_EXPORT QSize GetSizeFromString(const QString &str, const QString &sep);

/// The numbers of a text of numbers with `sep` between them. Empty parts do not count; what is no
/// number is 0.
DOCDISPLAY_EXPORT QList<int> strToIntList(const QString &str, const QString &sep);
