#pragma once

#include "tools/docviewer/SheetPainter.h"

#include <QProgressDialog>
#include <QSaveFile>

#include <memory>

class QPrinter;
class QProgressBar;

/// A document on its way to a printer or into a PDF, with a dialog that tells how far it is and can
/// cancel. Deletes itself when it has come to an end.
class OutputJob : public QObject
{
    Q_OBJECT

public:
    /// Makes the file, or replaces it when it is complete.
    static OutputJob *pdf(const ViewerDocument &document, const QString &path,
                          SheetPainter::Sheets sheets, QWidget *window);
    static OutputJob *print(const ViewerDocument &document, std::unique_ptr<QPrinter> printer,
                            SheetPainter::Sheets sheets, QWidget *window);
    ~OutputJob() override;

    void cancel();

Q_SIGNALS:
    /// It is over: what went wrong, empty when nothing did. Not sent when it is cancelled.
    void done(const QString &fault);

private:
    OutputJob(const QString &label, QWidget *window);
    void run();
    void finish(QString fault);

    // In the order in which they depend on one another.
    std::unique_ptr<QSaveFile> m_file;
    std::unique_ptr<QPagedPaintDevice> m_device;
    std::unique_ptr<SheetPainter> m_painter;
    QProgressBar *m_bar; // the dialog's
    QProgressDialog m_dialog;
};
