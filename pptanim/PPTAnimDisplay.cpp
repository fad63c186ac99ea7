#include "pptanim/PPTAnimDisplay.h"

#include "common/FloatToInt.h"
#include "pptanim/StateWalk.h"

namespace {

// A page is not smaller than one pixel.
int pageSide(float pageUnits)
{
    return pageUnits < 1 ? 1 : toPixels(pageUnits);
}

} // namespace

PPTAnimDisplay::PPTAnimDisplay()
{
    connect(&animTimer, SIGNAL(timeout()), this, SLOT(slot_AnimTimeout()));
    PPTAnimDisplay::Clear();
}

PPTAnimDisplay::~PPTAnimDisplay()
{
    PPTAnimDisplay::Clear();
}

bool PPTAnimDisplay::Init(int pageId, const QByteArray &data, int fps)
{
    return InitAndDrop(pageId, QByteArray(data), fps);
}

bool PPTAnimDisplay::InitAndDrop(int pageId, QByteArray &&data, int fps)
{
    Clear();
    if (!decode(std::move(data)))
        return false;
    curPage = fileDat.getPage(static_cast<unsigned short>(pageId));
    if (!curPage)
        return false;
    curPageId = pageId;
    pageWidth = pageSide(fileDat.head.width);
    pageHeight = pageSide(fileDat.head.height);
    AnalyszEffectSteps();
    CollectShapes();
    animTimer.setInterval(fps > 0 ? 1000 / fps : 1000);
    SetAnimStep(0);
    return true;
}

bool PPTAnimDisplay::decode(QByteArray data)
{
    CStdDataStream stream(data);
    data.clear(); // the stream's copy is the last one
    return fileDat.streamFrom(stream);
}

int PPTAnimDisplay::GetPageID()
{
    return curPageId;
}

void PPTAnimDisplay::Clear()
{
    pageWidth = 1;
    pageHeight = 1;
    fileDat.ClearDat(fileDat.pages);
    curPageId = -1;
    curPage = nullptr;
    animStep = 0;
    passedDuration = 0;
    stateWalk.reset();
    effectSteps.clear();
    shapeAnimDats.clear();
    StopRun();
    cachPic = false;
    ClearPicCachs();
}
