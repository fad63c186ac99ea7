#pragma once

#include <QString>

/// The exit statuses of the program.
namespace ExitStatus {
constexpr int Done = 0;
constexpr int Failed = 1;
constexpr int WrongUsage = 2;
} // namespace ExitStatus

/// Writes `text` to standard output, at once and in UTF-8.
void print(const QString &text);

/// Why standard output did not take all that was printed; empty when it did.
QString printFault();

/// The program that messages come from: "docpage" unless set. Not copied.
void setProgramName(const char *name);
const char *programName();

/// Writes the line "docpage: message" to standard error.
void printError(const QString &message);

/// Writes the line "docpage: FILE: what is wrong" to standard error.
/// \return ExitStatus::Failed
int reportFault(const QString &file, const QString &fault);

/// `text` as part of one line: what would end or garble the line is shown as \n, \u001b and so on.
QString escaped(const QString &text);

/// "1 page", "2 pages": a count and what is counted.
QString counted(qint64 count, const char *noun);

/// "followed by 2 bytes that are ignored".
QString followedByIgnored(qint64 bytes);
