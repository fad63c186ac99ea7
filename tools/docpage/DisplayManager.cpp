#include "tools/docpage/DisplayManager.h"

void startDocument(DocDisplayMgr &manager, DocCovRslt::DOCRSLT_TYPE kind, const QStringList &files)
{
    manager.Init(kind, files.size());
    for (int page = 0; page < files.size(); ++page)
        manager.AddDocPage(static_cast<unsigned int>(page), files.at(page));
}

QString undecodedFault(bool isSlide)
{
    return isSlide ? QStringLiteral("the background cannot be decoded")
                   : QStringLiteral("the picture cannot be decoded");
}
