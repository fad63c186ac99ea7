#include "tools/docviewer/SlideStills.h"

#include "tools/docpage/SlidePlayer.h"

SlideStills::SlideStills(const PageContent &content, quint32 page)
    : m_player(CreatePPTAnimDisplayer())
{
    if (m_player->Init(static_cast<int>(page), content.slide, kFramesPerSecond))
        m_player->SetCachPic(true);
}

QImage SlideStills::frame(const DocDisplayMgr::AnimStatus &position)
{
    m_player->SetAnimStep(position.step);
    m_player->SetAnimPassedDuration(position.passedDuration);
    return m_player->GetImg();
}
