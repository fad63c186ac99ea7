#pragma once

#include "common/DocDisplayGlobal.h"

#include <QFileInfo>
#include <QString>

/// \file
/// Paths and file names as texts. The separator is '/'; a backslash is a foreign one. Nothing here
/// looks at the file system but for the folders of the user, and nothing fails. All functions are
/// reentrant.
///
/// The functions named after a backslash add and remove '/': the names are older than the system
/// they run on.

/// The backslash.
DOCDISPLAY_EXPORT char GetBackslash_reverse();

/// `path` with '/' for every backslash; all else stays, such as doubled separators and "..".
DOCDISPLAY_EXPORT QString CorrectPathFormat(const QString &path);

/// CorrectPathFormat(), with one '/' in front unless there is one.
DOCDISPLAY_EXPORT QString AddBackslashAtBegin(const QString &path);

/// CorrectPathFormat(), without the first character if that is '/'.
DOCDISPLAY_EXPORT QString RmBackslashAtBegin(const QString &path);

/// CorrectPathFormat(), with one '/' at the end unless there is one.
DOCDISPLAY_EXPORT QString AddBackslashAtend(const QString &path);

/// CorrectPathFormat(), without the last character if that is '/'.
DOCDISPLAY_EXPORT QString RmBackslashAtend(const QString &path);

/// The folder for temporary files, the application's data (it depends on the application's name),
/// the user's documents and downloads, with '/' at the end; "/" when there is none. The folders
/// need not exist, but a temporary folder that does not exist gives "/".
DOCDISPLAY_EXPORT QString GetSysTempPath();
DOCDISPLAY_EXPORT QString GetSysAppDataPath();
DOCDISPLAY_EXPORT QString GetSysDocumentsPath();
DOCDISPLAY_EXPORT QString GetSysDownloadPath();

/// The user's home folder as Qt gives it: with '/' at the end only if it is the root.
DOCDISPLAY_EXPORT QString GetSysHomePath();

/// `name` as a file name for any file system: without carriage returns, and with '_' for each of
/// \ / : * " ' < > | ? and line feed. Neither trimmed nor made non-empty.
DOCDISPLAY_EXPORT QString FileNameIllegalCharDeal(const QString &name);

/// The last '.' of the file name and what follows it; empty when nothing does.
DOCDISPLAY_EXPORT QString GetSuffixWithDot(const QFileInfo &info);

/// What is before the first ':', and ":\" behind it: "D:\" for "D:/a/b". Empty when there is no ':'
/// or nothing before it.
DOCDISPLAY_EXPORT QString GetDriveNameFromFile(const QString &path);

/// Whether the text names a local file and not a URL: it begins with '.' or '/', has ':' as its
/// second character, or has none.
DOCDISPLAY_EXPORT bool IsLocFile(const QString &path);
