#pragma once

#include "AnimModel.h"
#include "PageFiles.h"

#include "common/DocCovRslt.h"

#include <QDir>

/// Documents for the tests of the viewer.
namespace ViewerPages {

using PageFiles::picture;

/// A page result file that holds a picture of one colour.
inline QByteArray picturePage(const QColor &colour, QSize size = {40, 30})
{
    return PageFiles::pageResultFile(DocCovRslt::PAGE_FORMAT_PNG, picture(colour, "PNG", size));
}

enum Ending { AllStay, LastLeaves };

/// A page result file that holds a slide of 40 x 30 with these effects, as "click 0.5, with 1". A
/// shape of 10 x 10 that is black moves in from the left to the middle with the first of them, and
/// may leave with the last.
inline QByteArray slidePage(int number, const QColor &colour, const QByteArray &effects,
                            Ending ending = AllStay)
{
    using namespace AnimModel;
    std::list<PPT_Effect *> list = newEffects(effects);
    if (!list.empty())
        list.front()->shapeId = 1;
    if (ending == LastLeaves) {
        list.back()->shapeId = 1;
        list.back()->exit = kLeave;
    }
    PPT_Page *page = newPage({newShape(1, 15, 10, 10, 10, picture(Qt::black, "PNG", {10, 10}))},
                             std::move(list), picture(colour, "PNG", {40, 30}), number);
    return PageFiles::pageResultFile(DocCovRslt::PAGE_FORMAT_PPT_ANIM, modelBytes({page}, 40, 30));
}

/// Writes files "page_1" and so on into a new folder of `dir`, and returns its path.
inline QString document(const QTemporaryDir &dir, const QString &name,
                        const QList<QByteArray> &pages)
{
    if (!QDir(dir.path()).mkdir(name))
        qFatal("cannot make the test's folder");
    int number = 0;
    for (const QByteArray &page : pages)
        PageFiles::write(dir, QStringLiteral("%1/page_%2").arg(name).arg(++number), page);
    return dir.filePath(name);
}

/// Three pictures: red, green and blue.
inline QString pictures(const QTemporaryDir &dir)
{
    return document(dir, QStringLiteral("pictures"),
                    {picturePage(Qt::red), picturePage(Qt::green), picturePage(Qt::blue)});
}

/// Three pages: a red slide with a step by click, a green one whose first step starts by itself,
/// with another by click, and a blue picture.
inline QString deck(const QTemporaryDir &dir)
{
    return document(dir, QStringLiteral("deck"),
                    {slidePage(0, Qt::red, "click 0.2"),
                     slidePage(1, Qt::green, "after 0.12, click 0.08"), picturePage(Qt::blue)});
}

} // namespace ViewerPages
