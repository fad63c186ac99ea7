#include "tools/docpage/SlideSteps.h"

#include "tools/docpage/SlidePlayer.h"

#include <memory>

namespace {

// A model of the one page, without its pictures: the player is given no more than it needs, however
// many pages there are.
QByteArray effectsOf(PPT_fileDat &model, quint16 pageId)
{
    QByteArray bytes;
    PPT_fileDat one;
    if (!model.makePageFileDat(pageId, one))
        return bytes;
    PPT_Page page;
    page.pageId = pageId;
    page.effects = one.pages[pageId]->effects;
    one.pages[pageId] = &page;
    {
        CStdDataStream stream(&bytes, QIODevice::WriteOnly);
        one.streamTo(stream);
    }
    one.pages.clear(); // neither page nor effects are this model's
    return bytes;
}

} // namespace

QVector<SlideStep> slideSteps(PPT_fileDat &model, quint16 pageId)
{
    QVector<SlideStep> steps;
    const std::unique_ptr<PPTAnimDisplayBase> player(CreatePPTAnimDisplayer());
    if (!player->Init(pageId, effectsOf(model, pageId), kFramesPerSecond))
        return steps;
    player->nextFrame(0); // from home into a first step that starts by itself
    const bool isFirstByItself = player->GetAnimStep() == 1;
    for (unsigned int step = 1; step <= player->GetStepCount(); ++step)
        steps.append({step == 1 && isFirstByItself, player->GetStepDuration(step)});
    return steps;
}
