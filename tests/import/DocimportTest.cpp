#include "DocimportTest.h"

#include "tools/docpage/PageFile.h"

#include <QDir>

QImage DocimportTest::picture(const char *page) const
{
    return QImage::fromData(PageFile::read(place->path(text(page))).payload);
}

QStringList DocimportTest::processes() const
{
    QStringList found;
    const QString folder = QDir(place->path({})).canonicalPath();
    for (const QString &id : QDir(text("/proc")).entryList({text("[0-9]*")}, QDir::Dirs)) {
        if (QFile::symLinkTarget(text("/proc/%1/cwd").arg(id)).startsWith(folder))
            found << id;
    }
    return found;
}

void DocimportTest::init()
{
    place = std::make_unique<Workplace>();
    place->program = text(DOCIMPORT_PROGRAM);
}
