#include "tools/docimport/engine/EngineLocation.h"

#include <QDir>
#include <QStandardPaths>

namespace {

QString programName()
{
    return QStringLiteral("soffice.bin");
}

bool isProgram(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

// Its other parts may be installed without that for presentations, which is a library of its own or
// in one with all others.
bool hasPresentations(const QDir &folder)
{
    return folder.exists(QStringLiteral("libsdlo.so")) ||
           folder.exists(QStringLiteral("libmergedlo.so"));
}

QString fromGiven(const QString &given, QString &engine)
{
    const QFileInfo file(QFileInfo(given).canonicalFilePath());
    const QString beside = file.dir().filePath(programName());
    const bool isScript = file.fileName() == QLatin1String("soffice") && isProgram(beside);
    engine = isScript ? beside : file.filePath();
    return isProgram(engine) ? QString()
                             : QStringLiteral("%1 is no program to be started").arg(given);
}

} // namespace

QStringList usualEngineFolders()
{
    QStringList folders{QStringLiteral("/usr/lib/libreoffice/program")};
    const QDir opt(QStringLiteral("/opt"));
    const QStringList versions = opt.entryList({QStringLiteral("libreoffice*")}, QDir::Dirs,
                                               QDir::Name | QDir::Reversed); // the newest first
    for (const QString &version : versions)
        folders += opt.filePath(version + QStringLiteral("/program"));
    const QString inPath = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (!inPath.isEmpty())
        folders += QFileInfo(QFileInfo(inPath).canonicalFilePath()).path();
    return folders;
}

QString findEngine(const QString &given, const QStringList &folders, QString &engine)
{
    if (!given.isEmpty())
        return fromGiven(given, engine);
    for (const QString &folder : folders) {
        const QDir program(QDir(folder).canonicalPath());
        engine = program.filePath(programName());
        if (isProgram(engine) && hasPresentations(program))
            return {};
    }
    return QStringLiteral("LibreOffice is not found; install it (Debian: libreoffice-impress), or "
                          "say where it is with --engine");
}
