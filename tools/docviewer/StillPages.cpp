#include "tools/docviewer/StillPages.h"

#include "tools/docpage/PictureFault.h"
#include "tools/docviewer/ThreadLog.h"

#include <new>

namespace {

// \param makeImage gives a null image when there is none
template <typename MakeImage>
PagePicture pictureOf(const PageContent &content, MakeImage makeImage)
{
    PagePicture picture;
    picture.fault = content.fault;
    if (!picture.fault.isEmpty())
        return picture;
    ThreadLog::takeFirstLine(); // about other pages
    const ThreadLog::DecoderMessages messages;
    try {
        picture.image = makeImage();
    } catch (const std::bad_alloc &) {
        picture.fault = QStringLiteral("out of memory");
        return picture;
    }
    // A slide is shown even if one of its pictures is corrupt.
    if (content.slide.isEmpty())
        picture.fault = decoderFault(messages.text());
    if (!picture.fault.isEmpty())
        picture.image = {};
    if (!picture.image.isNull() || !picture.fault.isEmpty())
        return picture;
    picture.fault = ThreadLog::takeFirstLine();
    if (picture.fault.isEmpty())
        picture.fault = undecodedFault(!content.slide.isEmpty());
    return picture;
}

} // namespace

StillPages::StillPages(const ViewerDocument &document)
    : m_document(document)
    , m_manager(CreateDisplayMgr())
{
    startDocument(*m_manager, m_document);
}

const PageContent &StillPages::content(quint32 page)
{
    if (m_page != page) {
        m_page.reset();
        m_slide.reset();
        m_content = PageContent::read(m_document, page);
        m_page = page;
    }
    return m_content;
}

PagePicture StillPages::picture(const DocDisplayMgr::AnimStatus &position)
{
    const PageContent &page = content(position.page);
    if (page.slide.isEmpty())
        return pagePicture(*m_manager, position, page);
    return pictureOf(page, [&] {
        if (!m_slide)
            m_slide = std::make_unique<SlideStills>(page, position.page);
        return m_slide->frame(position);
    });
}

PagePicture pagePicture(DocDisplayMgr &manager, const DocDisplayMgr::AnimStatus &position,
                        const PageContent &content)
{
    return pictureOf(content, [&] { return manager.GetImg(position); });
}

PagePicture slidePicture(const PageContent &content, const DocDisplayMgr::AnimStatus &position)
{
    return pictureOf(content, [&] { return SlideStills(content, position.page).frame(position); });
}

void startDocument(DocDisplayMgr &manager, const ViewerDocument &document)
{
    startDocument(manager,
                  document.isAnimated ? DocCovRslt::DOCRSLT_PPT_ANIM : DocCovRslt::DOCRSLT_PICTURE,
                  document.files);
}
