#include "tools/docpage/PageImage.h"

#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/PictureFault.h"
#include "tools/docpage/SlidePlayer.h"

#include <memory>
#include <new>

namespace {

QImage imageOf(const Document &document, const DocDisplayMgr::AnimStatus &position)
{
    const std::unique_ptr<DocDisplayMgr, void (*)(DocDisplayMgr *)> manager(
        CreateDisplayMgr(), [](DocDisplayMgr *mgr) { mgr->Destroy(); });
    manager->Init(DocCovRslt::DOCRSLT_PICTURE, document.pages.size());
    for (int i = 0; i < document.pages.size(); ++i)
        manager->AddDocPage(static_cast<unsigned int>(i), document.pages.at(i));
    manager->SetAnimStatus(position);
    return manager->GetImg();
}

QString slideImage(const DocDisplayMgr::AnimStatus &position, const PageFile &file, QImage &image)
{
    SlidePlayer player(file.payload, position.page);
    if (!player.fault().isEmpty())
        return player.fault();
    player->SetAnimStep(position.step);
    player->SetAnimPassedDuration(position.passedDuration);
    image = player.frame();
    return player.fault();
}

QString pictureImage(const Document &document, const DocDisplayMgr::AnimStatus &position,
                     const PageFile &file, QImage &image)
{
    const QString fault = pictureFault(file.payload);
    if (!fault.isEmpty())
        return fault;
    const LibraryLog::DecoderSilence silence;
    image = imageOf(document, position);
    return image.isNull() ? QStringLiteral("the picture cannot be decoded") : QString();
}

} // namespace

QString pageImage(const Document &document, const DocDisplayMgr::AnimStatus &position,
                  const PageFile &file, QImage &image)
{
    try {
        return file.header.picFormat == DocCovRslt::PAGE_FORMAT_PPT_ANIM
                   ? slideImage(position, file, image)
                   : pictureImage(document, position, file, image);
    } catch (const std::bad_alloc &) {
        return QStringLiteral("out of memory");
    }
}
