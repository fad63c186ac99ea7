#include "docdisplay/DocDisplay_Imp.h"

#include "emfdeal/DecodedFormat.h"
#include "emfdeal/EmfDeal.h"
#include "pptanim/PPTAnimDisplay.h"

#include <QFile>
#include <QPointer>

namespace {

constexpr quint32 kEnd = 0xFFFFFFFF; // of a page's steps, or of a step's duration
constexpr int kFramesPerSecond = 25;

// Loads a slide into a player. The library's own lets the payload go as soon as it is decoded.
bool load(PPTAnimDisplayBase &player, quint32 page, QByteArray &&data)
{
    const int pageId = static_cast<int>(page);
    if (auto *own = qobject_cast<PPTAnimDisplay *>(&player))
        return own->InitAndDrop(pageId, std::move(data), kFramesPerSecond);
    return player.Init(pageId, data, kFramesPerSecond);
}

} // namespace

DocDisplay_Imp::DocDisplay_Imp()
    : animDisplayer(CreatePPTAnimDisplayer())
{
    qRegisterMetaType<DocCovRslt::DOCRSLT_TYPE>("DocCovRslt::DOCRSLT_TYPE");
    connect(animDisplayer.get(), SIGNAL(s_AnimUpdate()), this, SIGNAL(s_PptAnimUpdate()));
    connect(animDisplayer.get(), SIGNAL(s_AnimFnished()), this, SIGNAL(s_PptAnimFnished()));
}

DocDisplay_Imp::~DocDisplay_Imp() = default;

void DocDisplay_Imp::Destroy()
{
    delete this;
}

void DocDisplay_Imp::Init(DocCovRslt::DOCRSLT_TYPE type, int pageCount)
{
    pageFileNames.resize(static_cast<size_t>(qMax(pageCount, 0))); // may throw: before any change
    docType = type;
    animStatus = {0, 0, 0};
    animDisplayer->Clear();
    ClearPicCach();
}

bool DocDisplay_Imp::AddDocPage(unsigned int page, const QString &file)
{
    if (docType > DocCovRslt::DOCRSLT_PICTURE_ALT || page >= GetPageCount())
        return false;
    pageFileNames[page] = file;
    return true;
}

bool DocDisplay_Imp::IsPageCanDisplay(unsigned int page)
{
    return page < GetPageCount() && !pageFileNames[page].isEmpty() &&
           QFile::exists(pageFileNames[page]);
}

unsigned int DocDisplay_Imp::GetPageCount()
{
    return static_cast<unsigned int>(pageFileNames.size());
}

bool DocDisplay_Imp::SetCurPage(unsigned int page)
{
    return SetAnimStatus({page, 0, 0});
}

unsigned int DocDisplay_Imp::GetCurPage()
{
    return animStatus.page;
}

bool DocDisplay_Imp::IsDocHaveAnimation()
{
    return docType == DocCovRslt::DOCRSLT_PPT_ANIM;
}

bool DocDisplay_Imp::SetAnimStatus(const AnimStatus &status)
{
    if (status.page >= GetPageCount())
        return false;
    animStatus = status;
    if (!IsDocHaveAnimation())
        return true;
    if (!isLive(animStatus.page) && !loadCurPage())
        return true; // the host learns of it from the image alone
    animDisplayer->SetAnimStep(animStatus.step);
    animDisplayer->SetAnimPassedDuration(animStatus.passedDuration);

    // A receiver may destroy the manager, or give it another position or document, which need not
    // have left a slide to play.
    const QPointer<DocDisplay_Imp> self(this);
    Q_EMIT s_PptAnimUpdate();
    if (self && animStatus.passedDuration != 0 && isLive(animStatus.page))
        animDisplayer->StartRun();
    return true;
}

// Whether the page is the one that the player holds.
bool DocDisplay_Imp::isLive(quint32 page) const
{
    return static_cast<quint32>(animDisplayer->GetPageID()) == page;
}

bool DocDisplay_Imp::loadCurPage()
{
    animDisplayer->Clear();
    QByteArray data;
    if (!GetPPTAnimPageDat(animStatus.page, data) ||
        !load(*animDisplayer, animStatus.page, std::move(data)))
        return false;
    animDisplayer->SetCachPic(true);
    return true;
}

void DocDisplay_Imp::GetAnimStatus(AnimStatus &status)
{
    status = animStatus;
}

int DocDisplay_Imp::GetActionState()
{
    int state = 0;
    if (animStatus.page == 0)
        state |= ACTION_FIRST_PAGE;
    if (animStatus.page + 1 >= GetPageCount())
        state |= ACTION_LAST_PAGE;
    if (IsDocHaveAnimation() && animDisplayer->IsAtHome())
        state |= ACTION_AT_HOME;
    if (IsDocHaveAnimation() && animDisplayer->IsAtEnd())
        state |= ACTION_AT_END;
    return state;
}

bool DocDisplay_Imp::NextAction()
{
    if (IsDocHaveAnimation() && animDisplayer->nextStep()) {
        animDisplayer->StartRun();
        takePlayerPosition();
        return true;
    }
    return SetAnimStatus({animStatus.page + 1, 0, 1});
}

bool DocDisplay_Imp::PrevAction()
{
    if (IsDocHaveAnimation() && animDisplayer->prevStep()) {
        takePlayerPosition();
        return true;
    }
    // Before page 0 the subtraction wraps to a page that does not exist.
    const quint32 page = animStatus.page - 1;
    return SetAnimStatus(IsDocHaveAnimation() ? AnimStatus{page, kEnd, kEnd}
                                              : AnimStatus{page, 0, 1});
}

void DocDisplay_Imp::takePlayerPosition()
{
    animStatus.step = animDisplayer->GetAnimStep();
    animStatus.passedDuration = animDisplayer->GetAnimPassedDuration();
}

QImage DocDisplay_Imp::GetImg()
{
    return GetImg(animStatus);
}

QImage DocDisplay_Imp::GetImg(const AnimStatus &status)
{
    QString file;
    if (!GetPageFileName(status.page, file) || file.isEmpty())
        return {};
    if (decodedFormat(file) == DocCovRslt::PAGE_FORMAT_PPT_ANIM)
        return GetPPTAnimPageImage(IsDocHaveAnimation() ? status
                                                        : AnimStatus{status.page, kEnd, kEnd});
    return GetNoPPTAnimPageImage(status.page);
}

void DocDisplay_Imp::ClearPicCach()
{
    animDisplayer->ClearPicCachs();
}

bool DocDisplay_Imp::GetPageFileName(unsigned int page, QString &name)
{
    if (page >= GetPageCount())
        return false;
    name = pageFileNames[page];
    return true;
}

QImage DocDisplay_Imp::GetNoPPTAnimPageImage(unsigned int page)
{
    QImage image;
    if (!IsPageCanDisplay(page))
        return image;
    QByteArray data;
    const int fmt = EmfDeal::decodeEmf(pageFileNames[page], data);
    if (fmt == DocCovRslt::PAGE_FORMAT_JPG || fmt == DocCovRslt::PAGE_FORMAT_PNG)
        image.loadFromData(data); // the content decides how it is decoded, not the format code
    return image;
}

bool DocDisplay_Imp::GetPPTAnimPageDat(unsigned int page, QByteArray &data)
{
    // Of the current page, whichever is asked for: a document that is gone shows no slide at all.
    if (!IsPageCanDisplay(animStatus.page))
        return false;
    return EmfDeal::decodeEmf(pageFileNames[page], data) == DocCovRslt::PAGE_FORMAT_PPT_ANIM;
}

QImage DocDisplay_Imp::GetPPTAnimPageImage(const AnimStatus &status)
{
    if (isLive(status.page))
        return animDisplayer->GetImg();
    QByteArray data;
    if (!GetPPTAnimPageDat(status.page, data))
        return {};
    const std::unique_ptr<PPTAnimDisplayBase> player(CreatePPTAnimDisplayer());
    if (!player || !load(*player, status.page, std::move(data)))
        return {};
    player->SetCachPic(true);
    player->SetAnimStep(status.step);
    player->SetAnimPassedDuration(status.passedDuration);
    return player->GetImg();
}
