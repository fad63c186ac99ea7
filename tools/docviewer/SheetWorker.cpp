#include "tools/docviewer/SheetWorker.h"

#include <QPageSize>
#include <QPrinter>

#include <algorithm>
#include <new>

namespace {

constexpr double kPixelInPoints = 72.0 / 96.0; // of a picture that gives its sheet the size
constexpr double kLongestInPoints = 14400;     // PDF knows no longer side of a sheet

QPageSize sheetSize(const QSize &picture)
{
    QSizeF size = QSizeF(picture) * kPixelInPoints;
    const double longest = std::max(size.width(), size.height());
    if (longest > kLongestInPoints)
        size *= kLongestInPoints / longest;
    size = size.expandedTo({1, 1}); // there is no sheet without a side
    return QPageSize(size, QPageSize::Point, QString(), QPageSize::ExactMatch);
}

} // namespace

SheetWorker::SheetWorker(const ViewerDocument &document, QPagedPaintDevice *device,
                         SheetPainter::Sheets sheets, SheetPainter::Paper paper,
                         SheetPainter *receiver)
    : m_document(document)
    , m_device(device)
    , m_sheets(sheets)
    , m_paper(paper)
    , m_receiver(receiver)
    , m_last(document.files.size() - 1)
{
    setObjectName(QStringLiteral("Sheets"));
}

SheetWorker::~SheetWorker()
{
    stop();
    wait();
    const std::lock_guard<std::mutex> lock(m_mutex); // its last unlock is before all that follows
}

void SheetWorker::setRange(int first, int last)
{
    m_first = std::max(0, first);
    m_last = std::min(last, m_document.files.size() - 1);
}

void SheetWorker::stop()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isStopped = true;
}

bool SheetWorker::isStopped()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_isStopped;
}

void SheetWorker::run()
{
    updateThreadName();
    QString fault;
    {
        QPainter painter;
        try {
            StillPages pages(m_document);
            fault = paintAll(pages, painter);
        } catch (const std::bad_alloc &) {
            fault = QStringLiteral("out of memory");
        }
        // A printer gets what has been painted, unless it is told before the painter ends.
        auto *printer = dynamic_cast<QPrinter *>(m_device);
        if (printer && painter.isActive() && (isStopped() || !fault.isEmpty()))
            printer->abort();
        if (painter.isActive() && !painter.end() && fault.isEmpty())
            fault = SheetPainter::tr("the printer has refused the last sheet");
    }
    isStopped(); // what the owner does after it has waited comes after all of the above
    QMetaObject::invokeMethod(m_receiver, "tellEnd", Qt::QueuedConnection, Q_ARG(QString, fault));
}

QString SheetWorker::paintAll(StillPages &pages, QPainter &painter)
{
    for (int page = m_first; page <= m_last; ++page) {
        if (!paintPage(pages, painter, page))
            return SheetPainter::tr("the printer cannot be used");
        if (isStopped())
            break;
        QMetaObject::invokeMethod(m_receiver, "tellPages", Qt::QueuedConnection,
                                  Q_ARG(int, page - m_first + 1));
    }
    return {};
}

bool SheetWorker::paintPage(StillPages &pages, QPainter &painter, int page)
{
    const auto number = static_cast<quint32>(page);
    const quint32 sheets = m_sheets == SheetPainter::Sheets::EachStep
                               ? std::max<quint32>(1, pages.content(number).stepCount())
                               : 1;
    for (quint32 step = 1; step <= sheets && !isStopped(); ++step) {
        const PagePicture picture = pages.picture({number, sheets == 1 ? kEnd : step, kEnd});
        if (!beginSheet(painter, picture.image.size()))
            return false;
        paintSheet(painter, picture, page);
    }
    return true;
}

bool SheetWorker::beginSheet(QPainter &painter, const QSize &picture)
{
    if (m_paper == SheetPainter::Paper::AsPage) {
        m_device->setPageSize(picture.isEmpty() ? QPageSize(QPageSize::A4) : sheetSize(picture));
        m_device->setPageMargins(QMarginsF());
    }
    return painter.isActive() ? m_device->newPage() : painter.begin(m_device);
}

void SheetWorker::paintSheet(QPainter &painter, const PagePicture &picture, int page)
{
    const QRect room(0, 0, m_device->width(), m_device->height());
    if (picture.image.isNull()) {
        painter.drawText(
            room.adjusted(room.width() / 10, 0, -room.width() / 10, 0),
            Qt::AlignCenter | Qt::TextWordWrap,
            SheetPainter::tr("Page %1 cannot be shown: %2").arg(page + 1).arg(picture.fault));
        return;
    }
    QRect place = room; // a sheet of the page's size may differ from it by less than a point
    if (m_paper == SheetPainter::Paper::Given) {
        place.setSize(picture.image.size().scaled(room.size(), Qt::KeepAspectRatio));
        place.moveCenter(room.center());
    }
    painter.drawImage(place, picture.image);
}
