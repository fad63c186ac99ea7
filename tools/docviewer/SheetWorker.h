#pragma once

#include "common/QNamedThread.h"
#include "tools/docviewer/SheetPainter.h"
#include "tools/docviewer/StillPages.h"

#include <QPainter>

#include <mutex>

/// The thread that paints the sheets for a SheetPainter, and tells it by its tell...() functions.
class SheetWorker : public QNamedThread
{
public:
    SheetWorker(const ViewerDocument &document, QPagedPaintDevice *device,
                SheetPainter::Sheets sheets, SheetPainter::Paper paper, SheetPainter *receiver);

    /// Waits for the sheet in work.
    ~SheetWorker() override;

    void setRange(int first, int last);
    void stop();
    int pageCount() const { return m_last - m_first + 1; }

protected:
    void run() override;

private:
    bool isStopped();
    QString paintAll(StillPages &pages, QPainter &painter);
    bool paintPage(StillPages &pages, QPainter &painter, int page);
    bool beginSheet(QPainter &painter, const QSize &picture);
    void paintSheet(QPainter &painter, const PagePicture &picture, int page);

    const ViewerDocument m_document;
    QPagedPaintDevice *const m_device;
    const SheetPainter::Sheets m_sheets;
    const SheetPainter::Paper m_paper;
    SheetPainter *const m_receiver;
    int m_first = 0;
    int m_last;

    std::mutex m_mutex; // guards what follows
    bool m_isStopped = false;
};
