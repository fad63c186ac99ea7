#pragma once

#include "tools/docpage/DisplayManager.h"
#include "tools/docviewer/SlideStills.h"
#include "tools/docviewer/ViewerDocument.h"

#include <optional>

/// A page's picture, or why there is none.
struct PagePicture
{
    QImage image;
    QString fault;
};

/// The pages of a document at any position, from a manager and players of its own: what is being
/// shown does not move. The page asked for last is kept loaded.
class StillPages
{
public:
    explicit StillPages(const ViewerDocument &document);

    const PageContent &content(quint32 page);
    PagePicture picture(const DocDisplayMgr::AnimStatus &position);

private:
    ViewerDocument m_document;
    ManagerPointer m_manager; // for pictures; a slide would be loaded for each image
    std::optional<quint32> m_page;
    PageContent m_content; // of that page
    std::unique_ptr<SlideStills> m_slide;
};

/// What `manager` shows at a position, and why if it is nothing.
/// \param content of the position's page
PagePicture pagePicture(DocDisplayMgr &manager, const DocDisplayMgr::AnimStatus &position,
                        const PageContent &content);

/// The picture of a slide of its own player, and why if it is nothing.
PagePicture slidePicture(const PageContent &content, const DocDisplayMgr::AnimStatus &position);

/// Fills a manager with a document.
void startDocument(DocDisplayMgr &manager, const ViewerDocument &document);
