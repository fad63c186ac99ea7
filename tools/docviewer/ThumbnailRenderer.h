#pragma once

#include "tools/docviewer/StillPages.h"

#include <QSize>

/// Makes thumbnails of a document's pages, slides in their final state. To be used on the thread
/// that creates it only, which needs no event loop.
class ThumbnailRenderer
{
public:
    /// \param box in pixels of the screen, that each thumbnail fits into
    ThumbnailRenderer(const ViewerDocument &document, QSize box);

    /// A small picture of a page, or why there is none.
    PagePicture render(int page);

private:
    QImage fitted(const QImage &image) const;

    QSize m_box;
    StillPages m_pages;
};
