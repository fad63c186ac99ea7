#include "DocpageRun.h"

#include <QCryptographicHash>
#include <QDirIterator>

namespace {

class Process : public QProcess
{
public:
    std::function<void()> prepare;

protected:
    void setupChildProcess() override
    {
        if (prepare)
            prepare();
    }
};

QString describe(const QFileInfo &entry)
{
    if (entry.isSymLink())
        return QStringLiteral(" -> ") + entry.symLinkTarget();
    if (entry.isDir())
        return QStringLiteral("/");
    if (!entry.isFile())
        return QStringLiteral(" (special)");
    QFile file(entry.filePath());
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral(" (unreadable)");
    QCryptographicHash hash(QCryptographicHash::Md5);
    hash.addData(&file);
    return QStringLiteral(" ") + QString::fromLatin1(hash.result().toHex());
}

} // namespace

Workplace::Workplace()
    : program(QStringLiteral(DOCPAGE_PROGRAM))
    , environment(QProcessEnvironment::systemEnvironment())
{
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("TMPDIR"), QStringLiteral("/dev/null"));
}

Outcome Workplace::run(const QStringList &arguments, const std::function<void()> &prepare) const
{
    Process process;
    process.prepare = prepare;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(dir.path());
    process.start(program, arguments);
    if (!process.waitForFinished(300000))
        qFatal("the program does not end");
    const bool isExit = process.exitStatus() == QProcess::NormalExit;
    return {isExit ? process.exitCode() : -process.exitCode(), process.readAllStandardOutput(),
            process.readAllStandardError()};
}

void Workplace::preload(const QString &libraries)
{
    environment.insert(QStringLiteral("LD_PRELOAD"), libraries);
}

void Workplace::write(const QString &name, const QByteArray &content) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write the test's file");
}

QByteArray Workplace::read(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be read)");
}

QStringList Workplace::entries() const
{
    QStringList entries;
    QDirIterator at(dir.path(),
                    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (at.hasNext()) {
        at.next();
        entries << QDir(dir.path()).relativeFilePath(at.filePath()) + describe(at.fileInfo());
    }
    entries.sort();
    return entries;
}
