#include "tools/docimport/PdfImport.h"

#include "tools/docimport/pdf/PagePicture.h"

namespace {

QString damagedPage(int page)
{
    return QStringLiteral("page %1 is damaged").arg(page + 1);
}

QString undrawnPage(int page, const SlideTools &tools)
{
    if (tools.deadline.hasExpired())
        return QStringLiteral("page %1 takes too long to draw; --timeout allows it more")
            .arg(page + 1);
    return QStringLiteral("page %1 cannot be drawn; it is damaged, or memory lacks").arg(page + 1);
}

} // namespace

QString drawPage(const QString &pdf, int page, const QSize &pixels, const QColor &paper,
                 SlideTools &tools, QImage &image)
{
    const PdfFile *file = nullptr;
    const QString fault = tools.pdfs.open(pdf, file);
    if (!fault.isEmpty())
        return fault;
    image = file->render(page, pixels, paper, tools.isStopped);
    return image.isNull() ? undrawnPage(page, tools) : QString();
}

PdfImport::PdfImport(const QString &path, const ImportOptions &options)
    : m_path(path)
    , m_options(options)
{
}

QString PdfImport::open()
{
    PdfFile file;
    const QString fault = file.open(m_path);
    if (fault.isEmpty())
        m_pageCount = file.pageCount();
    return fault;
}

QString PdfImport::makePage(int page, int, SlideTools &tools, PagePayload &payload,
                            SlideReport &report) const
{
    QImage image;
    const QString fault = draw(page, tools, image, report);
    return fault.isEmpty() ? encode(image, payload) : fault;
}

QString PdfImport::draw(int page, SlideTools &tools, QImage &image, SlideReport &report) const
{
    const PdfFile *file = nullptr;
    const QString fault = tools.pdfs.open(m_path, file);
    if (!fault.isEmpty())
        return fault;
    const QSizeF points = file->pageSize(page);
    if (points.isEmpty())
        return damagedPage(page);
    bool isReduced = false;
    const QSize pixels = m_options.resolution.pixelsOf(points, isReduced);
    if (isReduced)
        report.note = QStringLiteral("drawn smaller, with %1 x %2 pixels: it would be too large")
                          .arg(pixels.width())
                          .arg(pixels.height());
    return drawPage(m_path, page, pixels, Qt::white, tools, image);
}

QString PdfImport::encode(const QImage &image, PagePayload &payload) const
{
    PagePicture picture = PagePicture::of(image, m_options.jpegQuality);
    payload = {picture.bytes, picture.format};
    return picture.fault;
}
