#include "tools/docviewer/PageContent.h"

#include "emfdeal/EmfDeal.h"
#include "tools/docpage/PictureFault.h"
#include "tools/docpage/SlidePlayer.h"
#include "tools/docviewer/ThreadLog.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cerrno>
#include <new>

namespace {

// Reads a page's payload, and says why there is none to be shown.
QString readPayload(const QString &path, int &format, QByteArray &payload)
{
    const QFileInfo file(path);
    if (!file.exists())
        return qt_error_string(ENOENT);
    if (!file.isFile()) // a pipe would be waited for
        return QCoreApplication::translate("PageContent", "is not a file");
    ThreadLog::takeFirstLine(); // about other pages
    format = EmfDeal::decodeEmf(path, payload);
    const QString reason = ThreadLog::takeFirstLine();
    if (format != DocCovRslt::PAGE_FORMAT_NONE)
        return {};
    return reason.isEmpty() ? QCoreApplication::translate("PageContent", "cannot be read") : reason;
}

// One file of a deck, opened alone, is page 0, but holds the slide of its own number.
QString strayFault(const QByteArray &payload)
{
    SlideModel model;
    if (!model.read(payload).isEmpty() || model.data.pages.size() != 1 ||
        model.data.pages.cbegin()->first == 0)
        return {};
    return QCoreApplication::translate("PageContent", "this is slide %1 of a deck; open its folder")
        .arg(model.data.pages.cbegin()->first + 1); // people count from 1
}

} // namespace

PageContent PageContent::read(const ViewerDocument &document, unsigned int page)
{
    try {
        return whatIsIn(document, page);
    } catch (const std::bad_alloc &) {
        PageContent content;
        content.fault = QCoreApplication::translate("PageContent", "out of memory");
        return content;
    }
}

PageContent PageContent::whatIsIn(const ViewerDocument &document, unsigned int page)
{
    const QString &file = document.files.at(static_cast<int>(page));
    PageContent content;
    int format = DocCovRslt::PAGE_FORMAT_NONE;
    QByteArray payload;
    content.fault = readPayload(file, format, payload);
    if (!content.fault.isEmpty())
        return content;
    if (format != DocCovRslt::PAGE_FORMAT_PPT_ANIM) {
        content.fault = pictureStructureFault(payload);
        return content;
    }
    content = ofSlide(payload, page);
    const QString stray =
        content.fault.isEmpty() || !document.isSingleFile() ? QString() : strayFault(payload);
    if (!stray.isEmpty())
        content.fault = stray;
    return content;
}

PageContent PageContent::ofSlide(const QByteArray &payload, unsigned int page)
{
    PageContent content;
    SlideModel model;
    content.fault = slideSizeFault(payload, page, model);
    if (!content.fault.isEmpty())
        return content;
    content.slide = payload;
    content.steps = slideSteps(model.data, static_cast<quint16>(page));
    return content;
}

quint32 PageContent::duration(quint32 step) const
{
    return step == 0 || step > stepCount() ? 0 : steps.at(static_cast<int>(step) - 1).duration;
}
