#pragma once

#include "tools/docviewer/ViewerDocument.h"

#include <QObject>
#include <QPagedPaintDevice>

#include <memory>

class SheetWorker;

/// Paints the pages of a document on paper or into a PDF, on a thread of its own, so that the
/// window lives meanwhile. The device belongs to that thread from start() on until finished() or
/// stopped(), or the end of this object.
class SheetPainter : public QObject
{
    Q_OBJECT

public:
    /// What a slide with steps gives: its end, or the end of each of its steps.
    enum class Sheets { Final, EachStep };
    /// The sheet: as the device has it, or of the size of the page that is painted.
    enum class Paper { Given, AsPage };

    /// \param device must live as long as this object
    SheetPainter(const ViewerDocument &document, QPagedPaintDevice *device, Sheets sheets,
                 Paper paper, QObject *parent = nullptr);

    /// Waits for the sheet in work.
    ~SheetPainter() override;

    /// Only pages `first` to `last`, counted from 0. Before start().
    void setRange(int first, int last);

    void start();

    /// Asks for an end after the sheet in work. Then stopped() comes in place of finished().
    void stop();

    int pageCount() const;

Q_SIGNALS:
    /// So many pages are complete.
    void pagesDone(int count);
    /// All are, or the device has refused: what is wrong with it, empty when it is done.
    void finished(const QString &fault);
    void stopped();

private:
    friend class SheetWorker;
    Q_INVOKABLE void tellPages(int count);
    Q_INVOKABLE void tellEnd(const QString &fault);

    std::unique_ptr<SheetWorker> m_worker;
    bool m_isStopped = false;
};
