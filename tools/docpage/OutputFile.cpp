#include "tools/docpage/OutputFile.h"

#include "tools/docpage/Console.h"
#include "tools/docpage/EndHeld.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace {

bool isTaken(const QFileInfo &file)
{
    return file.exists() || file.isSymLink(); // a link that leads nowhere takes the name, too
}

// Of a file with one link only: whatever other path leads there, by a mount or in another case, is
// that link. Null for others, of which each link may be replaced.
QPair<quint64, quint64> identityOf(const QString &path)
{
    struct stat file = {};
    if (::stat(QFile::encodeName(path).constData(), &file) != 0 || file.st_nlink != 1)
        return {};
    return {file.st_dev, file.st_ino};
}

QString alreadyExists()
{
    return QStringLiteral("already exists; use --force to replace it");
}

// It is told by being changed, which only one thread may do at a time.
mode_t fileModeMask()
{
    static const mode_t mask = [] {
        const mode_t present = ::umask(0);
        ::umask(present);
        return present;
    }();
    return mask;
}

// The permissions of a file made in the ordinary way; those of a temporary file are the owner's.
void setDefaultPermissions(QFile &file)
{
    ::fchmod(file.handle(), 0666 & ~fileModeMask());
}

constexpr size_t kBlockSize = 1 << 20; // the end of the program waits for one write of so much

// Not by QFile, which does not know why a write stopped halfway.
bool writeAll(int file, const QByteArray &bytes, const EndHeld &end)
{
    const char *rest = bytes.constData();
    auto left = static_cast<size_t>(bytes.size());
    while (left > 0) {
        if (end.isWaiting()) {
            errno = EINTR;
            return false;
        }
        const ssize_t written = ::write(file, rest, std::min(left, kBlockSize));
        if (written < 0 && errno != EINTR)
            return false;
        if (written > 0) {
            rest += written;
            left -= static_cast<size_t>(written);
        }
    }
    return true;
}

// Gives the temporary file its name. Without force that fails when the name has been taken.
QString publish(QTemporaryFile &file, const QString &path, bool force)
{
    if (force) {
        const QByteArray from = QFile::encodeName(file.fileName());
        if (std::rename(from.constData(), QFile::encodeName(path).constData()) != 0)
            return qt_error_string(errno);
    } else if (!file.rename(path)) {
        return isTaken(QFileInfo(path)) ? alreadyExists() : file.errorString();
    }
    file.setAutoRemove(false);
    return {};
}

} // namespace

OutputRules::OutputRules(bool force, const QStringList &inputs)
    : m_force(force)
{
    m_inputs.reserve(inputs.size());
    for (const QString &input : inputs) {
        const QString path = QFileInfo(input).canonicalFilePath();
        if (path.isEmpty()) // a missing input is no file to be kept
            continue;
        m_inputs.insert(path);
        const QPair<quint64, quint64> identity = identityOf(path);
        if (identity != QPair<quint64, quint64>())
            m_files.insert(identity);
    }
}

QString OutputRules::refusal(const QString &path) const
{
    const QFileInfo target(path);
    if (target.isDir())
        return QStringLiteral("is a directory");
    if (!isTaken(target))
        return {};
    if (target.exists() && (m_inputs.contains(target.canonicalFilePath()) ||
                            m_files.contains(identityOf(target.filePath()))))
        return QStringLiteral("would replace an input");
    if (!m_force)
        return alreadyExists();
    if (target.exists() && !target.isFile())
        return QStringLiteral("not a regular file");
    return {};
}

QString createFolder(const QString &folder)
{
    std::error_code error;
    std::filesystem::create_directories(QFile::encodeName(folder).constData(), error);
    return error ? qt_error_string(error.value()) : QString();
}

// A temporary file's name is made absolute by its text alone, which is wrong for ".." behind a
// symbolic link.
QString temporaryName(const QString &folder)
{
    const QString canonical = QDir(folder).canonicalPath(); // empty when the folder is missing
    return QDir(canonical.isEmpty() ? folder : canonical)
        .filePath(QStringLiteral(".%1-XXXXXX").arg(QLatin1String(programName())));
}

QString saveFile(const QString &path, const OutputRules &rules,
                 std::initializer_list<QByteArray> parts)
{
    const QString refusal = rules.refusal(path);
    if (!refusal.isEmpty())
        return refusal;

    // Not QSaveFile, which syncs each file to the disk: that takes longer than all the rest.
    const EndHeld end; // lives longer than the file, which would stay behind
    QTemporaryFile file(temporaryName(QFileInfo(path).path()));
    if (!file.open())
        return file.errorString();
    setDefaultPermissions(file);
    for (const QByteArray &part : parts) {
        if (!writeAll(file.handle(), part, end))
            return qt_error_string(errno);
    }
    return publish(file, path, rules.force());
}
