// The questions that the window asks, and what it tells in windows of their own. None of them
// waits: the page stays alive behind each.
#include "tools/docviewer/FrameFile.h"
#include "tools/docviewer/MainWindow.h"
#include "tools/docviewer/OutputJob.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QStatusBar>

namespace {

constexpr int kMessageTime = 5000; // ms

QFileDialog *newDialog(QWidget *window, const QString &title, QFileDialog::FileMode mode)
{
    auto *dialog = new QFileDialog(window, title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(mode);
    return dialog;
}

QFileDialog *newSaveDialog(QWidget *window, const QString &title, const QString &path,
                           const QString &filter)
{
    QFileDialog *dialog = newDialog(window, title, QFileDialog::AnyFile);
    dialog->setAcceptMode(QFileDialog::AcceptSave); // asks before it gives the name of a file
    dialog->setNameFilter(filter);
    dialog->setDefaultSuffix(QFileInfo(path).suffix());
    dialog->setDirectory(QFileInfo(path).path());
    dialog->selectFile(QFileInfo(path).fileName());
    return dialog;
}

} // namespace

void MainWindow::askForFolder()
{
    QFileDialog *dialog = newDialog(this, tr("Open Folder"), QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, &MainWindow::open);
    dialog->open();
}

void MainWindow::askForFile()
{
    QFileDialog *dialog = newDialog(this, tr("Open File"), QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &MainWindow::open);
    dialog->open();
}

void MainWindow::askForPage()
{
    auto *dialog = new QInputDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Go to Page"));
    dialog->setLabelText(tr("Page, from 1 to %1:").arg(m_presentation.pageCount()));
    dialog->setInputMode(QInputDialog::IntInput);
    dialog->setIntRange(1, static_cast<int>(m_presentation.pageCount()));
    dialog->setIntValue(static_cast<int>(m_presentation.position().page) + 1);
    connect(dialog, &QInputDialog::intValueSelected, this,
            [this](int number) { goToNumber(static_cast<quint32>(number)); });
    dialog->open();
}

// Beside the document, never within it: there it would be a page of it.
QString MainWindow::suggestedName(const QString &suffix) const
{
    const QFileInfo document(QFileInfo(m_presentation.document().name).absoluteFilePath());
    return document.dir().filePath(document.fileName() + suffix);
}

void MainWindow::askForFrameName()
{
    const QString suffix = tr("-page-%1.png").arg(m_presentation.position().page + 1);
    QFileDialog *dialog =
        newSaveDialog(this, tr("Save Picture"), suggestedName(suffix), tr("PNG pictures (*.png)"));
    // What is shown now, not what will be when the name is chosen.
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, image = m_view->image()](const QString &path) { saveFrame(image, path); });
    dialog->open();
}

void MainWindow::saveFrame(const QImage &image, const QString &path)
{
    QString fault = m_presentation.document().savingFault(path);
    if (fault.isEmpty())
        fault = savePng(image, path);
    if (fault.isEmpty())
        statusBar()->showMessage(tr("Saved %1").arg(path), kMessageTime);
    else
        tellFault(tr("%1 cannot be saved").arg(path), fault);
}

void MainWindow::askForPdfName()
{
    QFileDialog *dialog =
        newSaveDialog(this, tr("Save as PDF"), suggestedName(QStringLiteral(".pdf")),
                      tr("PDF documents (*.pdf)"));
    connect(dialog, &QFileDialog::fileSelected, this, &MainWindow::savePdf);
    dialog->open();
}

SheetPainter::Sheets MainWindow::sheets() const
{
    return m_actions.eachStep->isChecked() ? SheetPainter::Sheets::EachStep
                                           : SheetPainter::Sheets::Final;
}

OutputJob *MainWindow::savePdf(const QString &path)
{
    const QString fault = m_presentation.document().savingFault(path);
    if (!fault.isEmpty()) {
        tellFault(tr("%1 cannot be saved").arg(path), fault);
        return nullptr;
    }
    OutputJob *job = OutputJob::pdf(m_presentation.document(), path, sheets(), this);
    tell(job, tr("Saved %1").arg(path), tr("%1 cannot be saved").arg(path));
    return job;
}

void MainWindow::askForPrinter()
{
    auto printer = std::make_shared<std::unique_ptr<QPrinter>>(
        std::make_unique<QPrinter>(QPrinter::HighResolution));
    auto *dialog = new QPrintDialog(printer->get(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QAbstractPrintDialog::PrintPageRange);
    dialog->setMinMax(1, static_cast<int>(m_presentation.pageCount()));
    connect(dialog, qOverload<QPrinter *>(&QPrintDialog::accepted), this,
            [this, printer, document = m_presentation.document()] {
                tell(OutputJob::print(document, std::move(*printer), sheets(), this), tr("Printed"),
                     tr("The document cannot be printed"));
            });
    dialog->open();
}

void MainWindow::tell(OutputJob *job, const QString &success, const QString &failure)
{
    connect(job, &OutputJob::done, this, [this, success, failure](const QString &fault) {
        if (fault.isEmpty())
            statusBar()->showMessage(success, kMessageTime);
        else
            tellFault(failure, fault);
    });
}

void MainWindow::tellFault(const QString &what, const QString &fault)
{
    auto *box =
        new QMessageBox(QMessageBox::Warning, tr("Document Viewer"), what, QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(fault);
    for (QLabel *label : box->findChildren<QLabel *>())
        label->setTextFormat(Qt::PlainText); // a file name may look like a tag
    box->open();
}

void MainWindow::showHelp()
{
    auto *box = new QMessageBox(this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(tr("Keys and Mouse"));
    box->setTextFormat(Qt::RichText);
    box->setText(tr("<table cellspacing='6'>"
                    "<tr><td>Space, Right, Page Down, click, forward button, wheel down</td><td>a "
                    "step on</td></tr>"
                    "<tr><td>Left, Page Up, Backspace, right click, back button, wheel "
                    "up</td><td>a step back</td></tr>"
                    "<tr><td>Home, End</td><td>the first and the last page</td></tr>"
                    "<tr><td>digits, then Enter</td><td>the page of that number</td></tr>"
                    "<tr><td>Ctrl+G</td><td>to a page, which is asked for</td></tr>"
                    "<tr><td>F5, F11, Escape</td><td>full screen, and back</td></tr>"
                    "<tr><td>B, then any key</td><td>black, and back</td></tr>"
                    "<tr><td>Ctrl and wheel, Ctrl++, Ctrl+-</td><td>larger, smaller</td></tr>"
                    "<tr><td>Ctrl+0, Ctrl+1</td><td>fitted, in its original size</td></tr>"
                    "<tr><td>Ctrl+O, Ctrl+Shift+O</td><td>open a folder, a file</td></tr>"
                    "<tr><td>Ctrl+S, Ctrl+Shift+S, Ctrl+P</td>"
                    "<td>save the picture, a PDF document, print</td></tr>"
                    "<tr><td>F1, Ctrl+Q</td><td>this help, close the window</td></tr>"
                    "<tr><td colspan='2'><b>On the line of steps</b></td></tr>"
                    "<tr><td>Left, Right, drag</td><td>a moment back, on, any moment</td></tr>"
                    "<tr><td>Page Up, Page Down</td><td>a step back, on</td></tr>"
                    "<tr><td>Home, End</td><td>before the first step, after the last</td></tr>"
                    "<tr><td>Escape, Enter</td><td>back to what is presented</td></tr>"
                    "</table>"));
    box->open();
}
