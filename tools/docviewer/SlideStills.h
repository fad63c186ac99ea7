#pragma once

#include "docdisplay/DocDisplayMgr.h"
#include "pptanim/PPTAnimDisplayBase.h"
#include "tools/docviewer/PageContent.h"

#include <QImage>

#include <memory>

/// A slide at any position, from a player of its own, which is loaded once.
class SlideStills
{
public:
    /// \param content of the page, which is a slide that may be shown
    SlideStills(const PageContent &content, quint32 page);

    /// \param position its page is that of the slide
    /// \return null when the background cannot be decoded
    QImage frame(const DocDisplayMgr::AnimStatus &position);

private:
    std::unique_ptr<PPTAnimDisplayBase> m_player;
};
