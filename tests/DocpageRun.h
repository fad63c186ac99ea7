#pragma once

#include "Emulator.h"
#include "Hex.h"

#include <QStringList>
#include <QTemporaryDir>

#include <functional>

#include <sys/resource.h>
#include <unistd.h>

inline QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// The words of a command line, separated by blanks.
inline QStringList words(const char *line)
{
    return text(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

inline bool isRoot()
{
    return ::geteuid() == 0;
}

/// For the child: writing more than `bytes` into a file fails, as on a full disk.
inline std::function<void()> limitFileSize(rlim_t bytes)
{
    return [bytes] {
        const rlimit limit = {bytes, bytes};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    };
}

/// What one run of docpage came to.
struct Outcome
{
    int status; ///< the exit status; that of a program that a signal ended is the signal, negative
    QByteArray out;
    QByteArray err;
};

/// A folder to run docpage, or another program, in; gone with the object.
class Workplace
{
public:
    Workplace();

    /// Runs the program with the folder as its current one. `prepare` runs in the child beforehand.
    Outcome run(const QStringList &arguments, const std::function<void()> &prepare = {}) const;

    /// Has shared libraries, separated by colons, loaded before all others of the runs.
    void preload(const QString &libraries);

    /// What is run: docpage, unless set.
    QString program;

    /// That of the runs. There is no folder for temporary files in it.
    QProcessEnvironment environment;

    QString path(const QString &name) const { return dir.filePath(name); }
    void write(const QString &name, const QByteArray &content) const;
    QByteArray read(const QString &name) const;

    /// Every entry below the folder, sorted: folders with a slash, files with the hash of their
    /// content, others with their kind.
    QStringList entries() const;

private:
    QTemporaryDir dir;
};
