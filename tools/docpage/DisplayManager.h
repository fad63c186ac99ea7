#pragma once

#include "docdisplay/DocDisplayMgr.h"

#include <QStringList>

#include <memory>

struct DestroyManager
{
    void operator()(DocDisplayMgr *manager) const { manager->Destroy(); }
};
using ManagerPointer = std::unique_ptr<DocDisplayMgr, DestroyManager>;

/// Of the step of a position, the last one; of its time, the end of the step.
constexpr quint32 kEnd = 0xFFFFFFFF;

/// Starts a document of these files, one for each page.
void startDocument(DocDisplayMgr &manager, DocCovRslt::DOCRSLT_TYPE kind, const QStringList &files);

/// What is wrong with a page that no image was to be had of, when nothing else tells.
QString undecodedFault(bool isSlide);
