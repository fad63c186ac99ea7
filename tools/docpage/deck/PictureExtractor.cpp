#include "tools/docpage/deck/PictureExtractor.h"

#include "tools/docpage/Console.h"
#include "tools/docpage/JpgStructure.h"
#include "tools/docpage/PngStructure.h"

#include <QDir>

namespace {

QString extension(const QByteArray &picture)
{
    if (PngStructure::isPng(picture))
        return QStringLiteral(".png");
    return JpgStructure::isJpg(picture) ? QStringLiteral(".jpg") : QStringLiteral(".bin");
}

} // namespace

QString PictureExtractor::add(const QByteArray &picture, const QString &stem)
{
    QString &name = m_names[picture];
    if (name.isEmpty()) {
        name = stem + extension(picture);
        m_files.push_back({name, picture});
    }
    return m_namedFolder.isEmpty() ? name : QDir(m_namedFolder).filePath(name);
}

QStringList PictureExtractor::fileNames() const
{
    return m_names.values();
}

QString PictureExtractor::pathOf(const File &file) const
{
    return QDir(m_folder).filePath(file.name);
}

int PictureExtractor::reportRefusals(const OutputRules &rules) const
{
    int status = ExitStatus::Done;
    for (const File &file : m_files) {
        const QString refusal = rules.refusal(pathOf(file));
        if (!refusal.isEmpty())
            status = reportFault(pathOf(file), refusal);
    }
    return status;
}

int PictureExtractor::save(const OutputRules &rules) const
{
    QString fault = m_folder.isEmpty() ? QString() : createFolder(m_folder);
    if (!fault.isEmpty())
        return reportFault(m_folder, fault);
    for (const File &file : m_files) {
        fault = saveFile(pathOf(file), rules, {file.picture});
        if (!fault.isEmpty())
            return reportFault(pathOf(file), fault);
    }
    return ExitStatus::Done;
}
