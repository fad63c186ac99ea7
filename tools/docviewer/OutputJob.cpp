#include "tools/docviewer/OutputJob.h"

#include <QFileInfo>
#include <QLabel>
#include <QPdfWriter>
#include <QPrinter>
#include <QProgressBar>

namespace {

constexpr int kPdfResolution = 96; // a pixel of a picture is a unit of the sheet
constexpr int kPatience = 500;     // ms without a dialog

} // namespace

OutputJob::OutputJob(const QString &label, QWidget *window)
    : QObject(window)
    , m_bar(new QProgressBar)
    , m_dialog(window)
{
    m_dialog.setBar(m_bar);
    m_dialog.setLabelText(label);
    m_dialog.findChild<QLabel *>()->setTextFormat(Qt::PlainText); // a file name may look like a tag
    m_dialog.setWindowModality(Qt::WindowModal);
    m_dialog.setMinimumDuration(kPatience);
    m_dialog.setAutoReset(false);
    m_dialog.setAutoClose(false);
    connect(&m_dialog, &QProgressDialog::canceled, this, &OutputJob::cancel);
}

OutputJob::~OutputJob() = default;

OutputJob *OutputJob::pdf(const ViewerDocument &document, const QString &path,
                          SheetPainter::Sheets sheets, QWidget *window)
{
    auto *job = new OutputJob(tr("Writing %1 ...").arg(QFileInfo(path).fileName()), window);
    job->m_file = std::make_unique<QSaveFile>(path);
    if (job->m_file->open(QIODevice::WriteOnly)) {
        auto writer = std::make_unique<QPdfWriter>(job->m_file.get());
        writer->setResolution(kPdfResolution);
        writer->setTitle(QFileInfo(document.name).fileName());
        job->m_device = std::move(writer);
        job->m_painter = std::make_unique<SheetPainter>(document, job->m_device.get(), sheets,
                                                        SheetPainter::Paper::AsPage);
    }
    job->run();
    return job;
}

OutputJob *OutputJob::print(const ViewerDocument &document, std::unique_ptr<QPrinter> printer,
                            SheetPainter::Sheets sheets, QWidget *window)
{
    auto *job = new OutputJob(tr("Printing ..."), window);
    const int first = printer->fromPage(); // 0: all
    const int last = printer->toPage();
    job->m_device = std::move(printer);
    job->m_painter = std::make_unique<SheetPainter>(document, job->m_device.get(), sheets,
                                                    SheetPainter::Paper::Given);
    if (first > 0)
        job->m_painter->setRange(first - 1, last - 1);
    job->run();
    return job;
}

void OutputJob::run()
{
    if (!m_painter) { // told later, when somebody listens
        QMetaObject::invokeMethod(
            this, [this] { finish(m_file->errorString()); }, Qt::QueuedConnection);
        return;
    }
    m_dialog.setRange(0, m_painter->pageCount());
    // Not the dialog's own setValue(), which handles events: this object's end may be among them.
    connect(m_painter.get(), &SheetPainter::pagesDone, m_bar, &QProgressBar::setValue);
    connect(m_painter.get(), &SheetPainter::finished, this, &OutputJob::finish);
    connect(m_painter.get(), &SheetPainter::stopped, this, &QObject::deleteLater);
    m_painter->start();
}

void OutputJob::cancel()
{
    m_dialog.hide();
    if (m_painter)
        m_painter->stop(); // without waiting for the sheet in work
    else
        deleteLater();
}

void OutputJob::finish(QString fault)
{
    if (m_file && fault.isEmpty() && !m_file->commit())
        fault = m_file->errorString();
    m_dialog.hide();
    Q_EMIT done(fault);
    deleteLater();
}
