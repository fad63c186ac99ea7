#include "tools/docpage/PageImage.h"

#include "tools/docpage/DisplayManager.h"
#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/PictureFault.h"
#include "tools/docpage/SlidePlayer.h"

#include <new>

namespace {

QImage imageOf(const Document &document, const DocDisplayMgr::AnimStatus &position,
               DocCovRslt::DOCRSLT_TYPE kind)
{
    const ManagerPointer manager(CreateDisplayMgr());
    startDocument(*manager, kind, document.pages);
    manager->SetAnimStatus(position);
    return manager->GetImg();
}

} // namespace

QString pageImage(const Document &document, const DocDisplayMgr::AnimStatus &position,
                  const PageFile &file, QImage &image)
{
    const bool isSlide = file.header.picFormat == DocCovRslt::PAGE_FORMAT_PPT_ANIM;
    try {
        const QString fault =
            isSlide ? slideFault(file.payload, position.page) : pictureFault(file.payload);
        if (!fault.isEmpty())
            return fault;
        const LibraryLog::DecoderSilence silence;
        image = imageOf(document, position,
                        isSlide ? DocCovRslt::DOCRSLT_PPT_ANIM : DocCovRslt::DOCRSLT_PICTURE);
    } catch (const std::bad_alloc &) {
        return QStringLiteral("out of memory");
    }
    return image.isNull() ? undecodedFault(isSlide) : QString();
}
