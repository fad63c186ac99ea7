#include "tools/docimport/pdf/PdfFile.h"

#include "tools/docimport/pdf/Resolution.h"
#include "tools/docpage/InputFile.h"

#include <poppler-qt5.h>

#include <cmath>
#include <utility>

namespace {

bool isStoppedOf(const QVariant &closure)
{
    return (*static_cast<std::function<bool()> *>(closure.value<void *>()))();
}

} // namespace

PdfFile::PdfFile() = default;
PdfFile::~PdfFile() = default;

void PdfFile::silence()
{
    Poppler::setDebugErrorFunction([](const QString &, const QVariant &) {}, {});
}

QString PdfFile::open(const QString &path)
{
    QFile file(path);
    const QString fault = openInput(file);
    if (!fault.isEmpty())
        return fault;
    m_document.reset(Poppler::Document::load(path));
    if (!m_document)
        return QStringLiteral("damaged, or no PDF document");
    if (m_document->isLocked())
        return QStringLiteral("encrypted: it opens with a password only");
    if (pageCount() < 1)
        return QStringLiteral("has no pages");
    m_document->setRenderHint(Poppler::Document::Antialiasing);
    m_document->setRenderHint(Poppler::Document::TextAntialiasing);
    return {};
}

int PdfFile::pageCount() const
{
    return m_document->numPages();
}

QSizeF PdfFile::pageSize(int page) const
{
    const std::unique_ptr<Poppler::Page> found(m_document->page(page));
    if (!found)
        return {};
    const QSizeF size = found->pageSizeF();
    const bool isSize = std::isfinite(size.width()) && std::isfinite(size.height()) &&
                        size.width() > 0 && size.height() > 0;
    return isSize ? size : QSizeF();
}

QImage PdfFile::render(int page, const QSize &pixels, const QColor &paper,
                       const std::function<bool()> &isStopped) const
{
    const QSizeF points = pageSize(page);
    if (points.isEmpty())
        return {};
    m_document->setPaperColor(paper);
    const std::unique_ptr<Poppler::Page> found(m_document->page(page));
    std::function<bool()> asked = isStopped; // what is handed through is not constant
    QImage image = found->renderToImage(kPointsPerInch * pixels.width() / points.width(),
                                        kPointsPerInch * pixels.height() / points.height(), 0, 0,
                                        pixels.width(), pixels.height(), Poppler::Page::Rotate0,
                                        nullptr, nullptr, isStoppedOf,
                                        QVariant::fromValue(static_cast<void *>(&asked)));
    if (isStopped() || image.size() != pixels) // one pixel is all that is drawn when memory lacks
        return {};
    return std::move(image).convertToFormat(QImage::Format_RGB32);
}
