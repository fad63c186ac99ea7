// Any bytes as the payload of a page result file: a document of two such pages is shown and gone
// through. The first bytes are the settings.
#include "docdisplay/DocDisplayMgr.h"
#include "emfdeal/EmfDeal.h"
#include "fuzz/Fuzz.h"
#include "fuzz/Mutators.h"
#include "fuzz/PictureBudget.h"
#include "fuzz/Silence.h"

namespace {

constexpr int kSettings = 4; // bytes before the payload
constexpr quint32 kPages = 2;
constexpr int kMostActions = 40;
constexpr quint32 kEnd = 0xFFFFFFFF;

using Status = DocDisplayMgr::AnimStatus;

// A document and what holds for it wherever it is.
class Document
{
public:
    Document(DocCovRslt::DOCRSLT_TYPE kind, const QString &file)
        : manager(CreateDisplayMgr())
    {
        manager->Init(kind, kPages);
        for (quint32 page = 0; page < kPages; ++page)
            require(manager->AddDocPage(page, file) == (kind <= DocCovRslt::DOCRSLT_PICTURE_ALT));
        require(manager->GetPageCount() == kPages);
        require(manager->IsDocHaveAnimation() == (kind == DocCovRslt::DOCRSLT_PPT_ANIM));
    }
    ~Document() { manager->Destroy(); }
    Q_DISABLE_COPY_MOVE(Document)

    // The payload as a picture is what the decoder makes of it.
    void compareWith(const QImage &picture)
    {
        require(manager->GetImg() == picture);
        require(manager->GetImg({1, 3, kEnd}) == picture);
    }

    void goTo(const Status &status)
    {
        require(manager->SetAnimStatus(status) == (status.page < kPages));
        if (status.page < kPages)
            require(manager->GetCurPage() == status.page);
        look();
        require(manager->GetImg(status).isNull() || status.page < kPages);
    }

    void goThrough()
    {
        require(manager->SetCurPage(0));
        for (int i = 0; i < kMostActions && manager->NextAction(); ++i)
            look();
        manager->ClearPicCach();
        for (int i = 0; i < kMostActions && manager->PrevAction(); ++i)
            look();
    }

private:
    void look()
    {
        Status status = {kEnd, 0, 0};
        manager->GetAnimStatus(status);
        require(status.page == manager->GetCurPage() && status.page < kPages);
        const int state = manager->GetActionState();
        require(((state & DocDisplayMgr::ACTION_FIRST_PAGE) != 0) == (status.page == 0));
        require(((state & DocDisplayMgr::ACTION_LAST_PAGE) != 0) == (status.page == kPages - 1));
        require(manager->GetImg().size() == manager->GetImg().size());
    }

    DocDisplayMgr *manager;
};

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t most, unsigned int seed)
{
    const bool isModel = byteArray(data, size).mid(kSettings).startsWith("PTAM");
    return mutateBehind(kSettings, isModel ? mutateModel : mutatePng, data, size, most, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < kSettings)
        return 0;
    silenceLogs();
    const auto kind = static_cast<DocCovRslt::DOCRSLT_TYPE>(data[0] % 4);
    const auto format = static_cast<DocCovRslt::PAGE_FORMAT_DEF>(data[1] % 6);
    const Status status = {data[2] % 3U, data[2] / 3U, data[3] == 255 ? kEnd : data[3] * 10U};
    const QByteArray payload = byteArray(data, size).mid(kSettings);
    PictureBudget budget;
    budget.add(payload);
    budget.addModel(payload);
    if (!budget.isKept())
        return 0;
    static const MemoryFile file;
    file.write(EmfDeal::getHeader(payload.size(), format) + payload);

    Document document(kind, file.path());
    const bool isPicture =
        format == DocCovRslt::PAGE_FORMAT_JPG || format == DocCovRslt::PAGE_FORMAT_PNG;
    if (isPicture && budget.hasDefinedPixels() && kind <= DocCovRslt::DOCRSLT_PICTURE_ALT)
        document.compareWith(QImage::fromData(payload));
    document.goTo(status);
    document.goThrough();
    return 0;
}
