#include "docdisplay/DocDisplay_Imp.h"

#include "emfdeal/EmfDeal.h"

#include <QFile>

namespace {

constexpr quint32 kEnd = 0xFFFFFFFF; // of a page's steps, or of a step's duration

} // namespace

DocDisplay_Imp::DocDisplay_Imp()
{
    qRegisterMetaType<DocCovRslt::DOCRSLT_TYPE>("DocCovRslt::DOCRSLT_TYPE");
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
    return state;
}

bool DocDisplay_Imp::NextAction()
{
    return SetAnimStatus({animStatus.page + 1, 0, 1});
}

bool DocDisplay_Imp::PrevAction()
{
    // Before page 0 the subtraction wraps to a page that does not exist.
    const quint32 page = animStatus.page - 1;
    return SetAnimStatus(IsDocHaveAnimation() ? AnimStatus{page, kEnd, kEnd}
                                              : AnimStatus{page, 0, 1});
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
    QByteArray data; // read for the format alone
    const int fmt = EmfDeal::decodeEmf(file, data);
    data.clear(); // not kept beside the payload that the picture is made of
    if (fmt == DocCovRslt::PAGE_FORMAT_PPT_ANIM)
        return {};
    return GetNoPPTAnimPageImage(status.page);
}

void DocDisplay_Imp::ClearPicCach() {}

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
