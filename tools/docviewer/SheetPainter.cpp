#include "tools/docviewer/SheetPainter.h"

#include "tools/docviewer/SheetWorker.h"

SheetPainter::SheetPainter(const ViewerDocument &document, QPagedPaintDevice *device, Sheets sheets,
                           Paper paper, QObject *parent)
    : QObject(parent)
    , m_worker(std::make_unique<SheetWorker>(document, device, sheets, paper, this))
{
}

SheetPainter::~SheetPainter() = default;

void SheetPainter::setRange(int first, int last)
{
    m_worker->setRange(first, last);
}

void SheetPainter::start()
{
    m_worker->start();
}

void SheetPainter::stop()
{
    m_isStopped = true;
    m_worker->stop();
}

int SheetPainter::pageCount() const
{
    return m_worker->pageCount();
}

void SheetPainter::tellPages(int count)
{
    if (!m_isStopped)
        Q_EMIT pagesDone(count);
}

void SheetPainter::tellEnd(const QString &fault)
{
    if (m_isStopped)
        Q_EMIT stopped();
    else
        Q_EMIT finished(fault);
}
