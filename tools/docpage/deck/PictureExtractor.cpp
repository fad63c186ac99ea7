#include "tools/docpage/deck/PictureExtractor.h"

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

QString PictureExtractor::save(const QByteArray &picture, const QString &stem)
{
    QString &path = m_saved[picture];
    if (!path.isEmpty() || !m_fault.isEmpty())
        return path;
    path = QDir(m_folder).filePath(stem + extension(picture));
    const QString fault = createFolder(m_folder);
    if (!fault.isEmpty())
        fail(m_folder, fault);
    else
        fail(path, saveFile(path, m_rules, {picture}));
    return path;
}

void PictureExtractor::fail(const QString &file, const QString &fault)
{
    if (fault.isEmpty())
        return;
    m_failedFile = file;
    m_fault = fault;
}
