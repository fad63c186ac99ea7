#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>

inline QByteArray hex(const char *bytes)
{
    return QByteArray::fromHex(bytes);
}

inline QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// The words of a command line, separated by blanks.
inline QStringList words(const char *line)
{
    return text(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// What one run of docpage came to.
struct Outcome
{
    int status; ///< the exit status; -1 when the program crashed or did not end
    QByteArray out;
    QByteArray err;
};

/// A folder to run docpage in, gone with the object.
class Workplace
{
public:
    Workplace();

    /// Runs docpage with the folder as its current one. `prepare` runs in the child beforehand.
    Outcome run(const QStringList &arguments, const std::function<void()> &prepare = {}) const;

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
