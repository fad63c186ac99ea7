#pragma once

#include <QString>

#include <KxCommon/KxGlobal.h>

/// The value of `key` in the part of the configuration file `file` that `section` names; an empty
/// string when there is no such file, section or key.
///
/// The file is UTF-8 text, with or without a byte order mark, its lines ended by LF or CR LF:
///
///     ; a comment, as is a line that begins with #
///     [VER]
///     Ver = 1.2
///
/// - White space around names of sections, keys and values does not count. Case does.
/// - A value is everything behind the first =, further ones, quotes and semicolons included.
/// - Of several lines for one key the first counts, also when its section comes more than once.
/// - Lines before the first section belong to the section named by the empty string.
/// - What stands behind the ] of a section is ignored, and so is every other line.
///
/// Bytes that are no UTF-8 are read as U+FFFD. Anything but a regular file counts as missing, and
/// so does one above 1 MiB. The file is read anew by each call. Reentrant; never fails otherwise.
KXCOMMON_EXPORT QString GetInifileString(const QString &section, const QString &key,
                                         const QString &file);
