#include "tools/docpage/StagingFolder.h"

#include "tools/docpage/EndHeld.h"
#include "tools/docpage/PageFile.h"

#include <QDir>
#include <QTemporaryDir>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The folders on the way to `folder` that are not there.
QStringList missingFolders(const QString &folder)
{
    QStringList missing;
    std::filesystem::path path;
    std::error_code error;
    for (const auto &part : std::filesystem::path(QFile::encodeName(folder).constData())) {
        path /= part;
        if (!std::filesystem::exists(path, error))
            missing.append(QFile::decodeName(path.c_str()));
    }
    return missing;
}

bool renameWith(const QByteArray &from, const QByteArray &to, unsigned int flags)
{
    return ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), flags) == 0;
}

// Fails when there is a file `to` already.
bool renameToNew(const QByteArray &from, const QByteArray &to)
{
    if (renameWith(from, to, RENAME_NOREPLACE))
        return true;
    if (errno != EINVAL) // that of a file system which cannot do it
        return false;
    if (::link(from.constData(), to.constData()) == 0)
        return ::unlink(from.constData()) == 0;
    if (errno != EPERM && errno != EOPNOTSUPP) // those of one without hard links
        return false;
    struct stat taken = {};
    if (::lstat(to.constData(), &taken) == 0) {
        errno = EEXIST;
        return false;
    }
    return std::rename(from.constData(), to.constData()) == 0;
}

// Puts each of two files in the other's place; in two steps where the file system needs them.
bool exchange(const QByteArray &staged, const QByteArray &page)
{
    if (renameWith(staged, page, RENAME_EXCHANGE))
        return true;
    if (errno != EINVAL)
        return false;
    const QByteArray aside = staged + ".old";
    if (std::rename(page.constData(), aside.constData()) != 0)
        return false;
    if (std::rename(staged.constData(), page.constData()) != 0) {
        const int error = errno;
        std::rename(aside.constData(), page.constData());
        errno = error;
        return false;
    }
    return std::rename(aside.constData(), staged.constData()) == 0;
}

// Whether it may be replaced: a file, or a link to whatever it is.
bool isFileOrLink(const QByteArray &path)
{
    struct stat status = {};
    return ::lstat(path.constData(), &status) == 0 &&
           (S_ISREG(status.st_mode) || S_ISLNK(status.st_mode));
}

/// The files that have been given their names, which are taken from them again unless it is kept.
class Renamed
{
public:
    Renamed() = default;
    ~Renamed()
    {
        while (!m_done.isEmpty())
            undo(m_done.takeLast());
    }
    Q_DISABLE_COPY_MOVE(Renamed)

    QString rename(const QString &staged, const QString &page, const OutputRules &rules)
    {
        const QString refusal = rules.refusal(page);
        if (!refusal.isEmpty())
            return refusal;
        Step step{QFile::encodeName(staged), QFile::encodeName(page), false};
        if (!renameToNew(step.staged, step.page)) {
            step.isSwap = errno == EEXIST && rules.force();
            if (!step.isSwap || !exchange(step.staged, step.page))
                return refusalOrError(rules, page);
            if (!isFileOrLink(step.staged)) { // it came after the refusal was asked for
                undo(step);
                return refusalOrError(rules, page);
            }
        }
        m_done.append(step);
        return {};
    }

    void keep() { m_done.clear(); }

private:
    struct Step
    {
        QByteArray staged;
        QByteArray page;
        bool isSwap; // there was a file of the page's name
    };

    // The name may have been taken since the refusal was asked for, which tells that better.
    static QString refusalOrError(const OutputRules &rules, const QString &page)
    {
        const int error = errno;
        const QString refusal = rules.refusal(page);
        return refusal.isEmpty() ? qt_error_string(error) : refusal;
    }

    static void undo(const Step &step)
    {
        if (step.isSwap)
            exchange(step.staged, step.page);
        else
            std::rename(step.page.constData(), step.staged.constData());
    }

    QVector<Step> m_done;
};

} // namespace

StagingFolder::StagingFolder(const QString &folder)
    : m_folder(folder)
{
}

StagingFolder::~StagingFolder()
{
    const EndHeld end;
    removeStaging();
    while (!m_isPublished && !m_created.isEmpty()) // one that is in use by now stays
        ::rmdir(QFile::encodeName(m_created.takeLast()).constData());
}

QString StagingFolder::create()
{
    m_created = missingFolders(m_folder);
    const QString fault = createFolder(m_folder);
    if (!fault.isEmpty())
        return fault;
    m_staging = std::make_unique<QTemporaryDir>(temporaryName(m_folder));
    return m_staging->isValid() ? QString() : m_staging->errorString();
}

QString StagingFolder::filePath(const QString &name) const
{
    return m_staging->path() + QLatin1Char('/') + name;
}

QString StagingFolder::publish(const QStringList &staged, const OutputRules &rules, QString &file)
{
    const EndHeld end; // in between, some pages would have their names and others not
    Renamed renamed;
    for (int i = 0; i < staged.size(); ++i) {
        file = QDir(m_folder).filePath(pageFileName(i));
        const QString fault = renamed.rename(staged.at(i), file, rules);
        if (!fault.isEmpty())
            return fault;
    }
    renamed.keep();
    m_isPublished = true;
    removeStaging();
    return {};
}

// Not by the destructor of QTemporaryDir, which lets an exception end the program. What did not go
// for a moment, as for want of memory, goes the second time.
void StagingFolder::removeStaging()
{
    const std::unique_ptr<QTemporaryDir> staging = std::move(m_staging);
    if (!staging)
        return;
    staging->setAutoRemove(false);
    const auto remove = [&staging] {
        try {
            return staging->remove();
        } catch (const std::bad_alloc &) {
            return false;
        }
    };
    if (!remove())
        remove();
}
