// What leaves the window: pictures, PDF, print-outs; and the program itself.
#include "Emulator.h"
#include "EventGaps.h"
#include "ViewerPages.h"

#include "tools/docviewer/FrameFile.h"
#include "tools/docviewer/MainWindow.h"
#include "tools/docviewer/OutputJob.h"
#include "tools/docviewer/Screenshot.h"
#include "tools/docviewer/ThreadLog.h"

#include <QAbstractButton>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPdfWriter>
#include <QPrinter>
#include <QRegularExpression>
#include <QSettings>
#include <QSignalSpy>
#include <QtTest>

Q_DECLARE_METATYPE(SheetPainter::Sheets)

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be read)");
}

// The number of sheets that a PDF file has, and the size of each in points.
QStringList sheetsOf(const QString &path)
{
    const QByteArray bytes = contentOf(path);
    const QString pdf = QString::fromLatin1(bytes.constData(), bytes.size());
    QStringList sheets;
    static const QRegularExpression sheet(
        text("/Type /Page\n[^>]*?/MediaBox \\[0 0 ([0-9.]+) ([0-9.]+)\\]"));
    QRegularExpressionMatchIterator at = sheet.globalMatch(pdf);
    while (at.hasNext()) {
        const QRegularExpressionMatch match = at.next();
        sheets += text("%1x%2").arg(match.captured(1).toDouble()).arg(match.captured(2).toDouble());
    }
    return sheets;
}

struct Outcome
{
    int status;
    QByteArray out;
    QByteArray err;
};

// What the program itself has said; the platform plugin may have something to say, too.
QByteArray ownLines(const QByteArray &err)
{
    QByteArray lines;
    for (const QByteArray &line : err.split('\n')) {
        if (line.contains("docviewer"))
            lines += line + '\n';
    }
    return lines;
}

Outcome run(const QStringList &arguments, const QStringList &environment = {})
{
    ForkedProcess process;
    QStringList variables = QProcess::systemEnvironment();
    variables += QStringLiteral("QT_FONT_DPI=96"); // the screen's, unless another is asked for
    process.setEnvironment(variables + environment);
    process.start(QStringLiteral(DOCVIEWER_PROGRAM), arguments);
    const bool hasEnded =
        process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
    return {hasEnded ? process.exitCode() : -1, process.readAllStandardOutput(),
            ownLines(process.readAllStandardError())};
}

// Keeps the sheets that are painted on it.
class SheetStack : public QPdfWriter
{
public:
    SheetStack()
        : QPdfWriter(static_cast<QIODevice *>(nullptr))
        , m_sheet(80, 60, QImage::Format_RGB32)
    {
        m_sheet.fill(Qt::white);
    }

    QList<QImage> sheets() const { return m_done + QList<QImage>{m_sheet.copy()}; }

    bool newPage() override
    {
        m_done += m_sheet.copy();
        m_sheet.fill(Qt::white);
        return true;
    }
    QPaintEngine *paintEngine() const override { return m_sheet.paintEngine(); }

protected:
    QPaintDevice *redirected(QPoint *offset) const override
    {
        if (offset)
            *offset = {};
        return &m_sheet;
    }
    int metric(PaintDeviceMetric which) const override
    {
        switch (which) {
        case PdmWidth:
            return m_sheet.width();
        case PdmHeight:
            return m_sheet.height();
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(devicePixelRatioFScale());
        default:
            return 96;
        }
    }

private:
    mutable QImage m_sheet;
    QList<QImage> m_done;
};

} // namespace

class tst_DocViewerOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void saveFrame();
    void saveFrameAsksBeforeReplacing();
    void saveFrameFails();
    void neverOverAPage_data();
    void neverOverAPage();
    void pdf_data();
    void pdf();
    void sheets_data();
    void sheets();
    void pdfOfPagesThatCannotBeShown();
    void pdfWithoutItsFirstPage();
    void pdfCancelled();
    void windowClosedWhilePdfIsWritten();
    void pdfThatCannotBeWritten();
    void windowLivesWhilePdfIsWritten();
    void pdfCancelledWithinASheet();
    void longestSheet_data();
    void longestSheet();
    void slideIsReadOnce();
    void print_data();
    void print();

    void help();
    void wrongUsage_data();
    void wrongUsage();
    void screenshot_data();
    void screenshot();
    void refused_data();
    void refused();
    void screenshotBesideASingleFile();
    void screenshotOfAnEmptyWindow();
    void nameLikeATag();
    void noDisplay();

private:
    QString path(const char *name) const { return m_dir->filePath(text(name)); }
    QString largePages() const;

    QTemporaryDir m_settings;
    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_DocViewerOutput::initTestCase()
{
    // File dialogs, and the program itself, keep theirs, too.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
    qputenv("XDG_CONFIG_HOME", m_settings.path().toUtf8());
    ThreadLog::divert();
}

void tst_DocViewerOutput::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

QString tst_DocViewerOutput::largePages() const
{
    const QByteArray page = ViewerPages::picturePage(Qt::red, {6000, 5000});
    return ViewerPages::document(*m_dir, text("large"), {page, page});
}

void tst_DocViewerOutput::saveFrame()
{
    MainWindow window(MainWindow::Memory::None);
    window.open(ViewerPages::deck(*m_dir));
    window.show();
    window.presentation()->hold({0, 1, 100});
    window.actionSet().saveFrame->trigger();
    auto *dialog = window.findChild<QFileDialog *>();
    QVERIFY(dialog);
    QCOMPARE(dialog->selectedFiles(), QStringList({path("deck-page-1.png")}));
    window.presentation()->goTo(1); // what was shown when it was asked for is what counts
    dialog->selectFile(path("frame"));
    QMetaObject::invokeMethod(dialog, "accept");
    const QImage image(path("frame.png"));
    QCOMPARE(image.size(), QSize(40, 30));
    QCOMPARE(image.pixelColor(1, 15).name(), text("#ff0000"));
    QCOMPARE(image.pixelColor(2, 15).name(), text("#000000"));
}

void tst_DocViewerOutput::saveFrameAsksBeforeReplacing()
{
    PageFiles::write(*m_dir, text("old.png"), "old");
    MainWindow window(MainWindow::Memory::None);
    window.open(ViewerPages::pictures(*m_dir));
    window.show();
    window.actionSet().saveFrame->trigger();
    auto *dialog = window.findChild<QFileDialog *>();
    QVERIFY(dialog);
    dialog->selectFile(path("old.png"));
    bool isAsked = false;
    const auto answer = [&](QMessageBox::StandardButton button) {
        isAsked = false;
        QTimer::singleShot(0, dialog, [&, button] {
            if (auto *box = dialog->findChild<QMessageBox *>()) {
                isAsked = true;
                box->button(button)->click();
            }
        });
        QMetaObject::invokeMethod(dialog, "accept");
    };
    answer(QMessageBox::No);
    QVERIFY(isAsked);
    QCOMPARE(contentOf(path("old.png")), QByteArray("old"));
    answer(QMessageBox::Yes);
    QVERIFY(isAsked);
    QCOMPARE(QImage(path("old.png")).size(), QSize(40, 30));
}

void tst_DocViewerOutput::saveFrameFails()
{
    MainWindow window(MainWindow::Memory::None);
    window.open(ViewerPages::pictures(*m_dir));
    window.show();
    window.saveFrame(window.view()->image(), path("no/folder.png"));
    auto *box = window.findChild<QMessageBox *>();
    QVERIFY(box);
    QCOMPARE(box->text(), path("no/folder.png") + text(" cannot be saved"));
    QCOMPARE(box->informativeText(), text("No such file or directory"));
    QCOMPARE(savePng({}, path("null.png")), text("the image cannot be encoded"));
    QVERIFY(!QFile::exists(path("null.png")));
}

void tst_DocViewerOutput::neverOverAPage_data()
{
    QTest::addColumn<bool>("isPdf");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    const QString page = text("is a page of the document");
    const QString beside = text("is in the document's folder, whose files are its pages");
    QTest::newRow("picture, page") << false << "page_2" << page;
    QTest::newRow("picture, beside") << false << "new.png" << beside;
    QTest::newRow("PDF, page") << true << "page_2" << page;
    QTest::newRow("PDF, by a link to what is not there") << true << "../link.pdf" << beside;
    QTest::newRow("picture, by such a link") << false << "../link.pdf" << beside;
    QTest::newRow("PDF, beside") << true << "new.pdf" << beside;
}

void tst_DocViewerOutput::neverOverAPage()
{
    QFETCH(bool, isPdf);
    QFETCH(QString, name);
    QFETCH(QString, reason);
    const QString folder = ViewerPages::pictures(*m_dir);
    const QByteArray page = contentOf(folder + text("/page_2"));
    QVERIFY(QFile::link(folder + text("/page_9"), folder + text("/../link.pdf")));
    const QString target = folder + QLatin1Char('/') + name;
    MainWindow window(MainWindow::Memory::None);
    window.open(folder);
    window.show();
    if (isPdf)
        QVERIFY(!window.savePdf(target));
    else
        window.saveFrame(window.view()->image(), target);
    auto *box = window.findChild<QMessageBox *>();
    QVERIFY(box);
    QCOMPARE(box->text(), target + text(" cannot be saved"));
    QCOMPARE(box->informativeText(), reason);
    QCOMPARE(contentOf(folder + text("/page_2")), page);
    QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 3);
}

void tst_DocViewerOutput::pdf_data()
{
    QTest::addColumn<bool>("animated");
    QTest::addColumn<bool>("eachStep");
    QTest::addColumn<int>("sheets");
    QTest::newRow("pictures") << false << false << 3;
    QTest::newRow("pictures, each step") << false << true << 3;
    QTest::newRow("deck") << true << false << 3;
    QTest::newRow("deck, each step") << true << true << 4;
}

void tst_DocViewerOutput::pdf()
{
    QFETCH(bool, animated);
    QFETCH(bool, eachStep);
    QFETCH(int, sheets);
    MainWindow window(MainWindow::Memory::None);
    window.open(animated ? ViewerPages::deck(*m_dir) : ViewerPages::pictures(*m_dir));
    window.show();
    window.actionSet().eachStep->setChecked(eachStep);
    window.presentation()->goTo(1);
    QSignalSpy changes(window.presentation(), &Presentation::pageChanged);
    QSignalSpy done(window.savePdf(path("out.pdf")), &OutputJob::done);
    QVERIFY(done.wait());
    QCOMPARE(done.at(0).at(0).toString(), QString());
    // 40 x 30 pixels, of which 96 are an inch of 72 points.
    QStringList expected;
    for (int i = 0; i < sheets; ++i)
        expected += text("30x23");
    QCOMPARE(sheetsOf(path("out.pdf")), expected);
    QVERIFY(contentOf(path("out.pdf")).contains("/Count " + QByteArray::number(sheets) + "\n"));
    QCOMPARE(changes.count(), 0); // what is presented has not moved
}

void tst_DocViewerOutput::sheets_data()
{
    QTest::addColumn<SheetPainter::Sheets>("sheets");
    QTest::addColumn<QStringList>("expected"); // the colours of a corner and of the middle
    const QString red = text("#ff0000 #000000");
    const QString green = text("#00ff00 #000000");
    const QString out = text("#00ff00 #00ff00");
    const QString blue = text("#0000ff #0000ff");
    QTest::newRow("final") << SheetPainter::Sheets::Final << QStringList({red, out, blue});
    QTest::newRow("each step") << SheetPainter::Sheets::EachStep
                               << QStringList({red, green, out, blue});
}

// The shape is in the middle when it has come in, and gone when it has left.
void tst_DocViewerOutput::sheets()
{
    QFETCH(SheetPainter::Sheets, sheets);
    QFETCH(QStringList, expected);
    const QString folder = ViewerPages::document(
        *m_dir, text("leaving"),
        {ViewerPages::slidePage(0, Qt::red, "click 0.2"),
         ViewerPages::slidePage(1, Qt::green, "after 0.1, click 0.1", ViewerPages::LastLeaves),
         ViewerPages::picturePage(Qt::blue)});
    SheetStack stack;
    SheetPainter painter(ViewerDocument::open(folder), &stack, sheets, SheetPainter::Paper::Given);
    QSignalSpy finished(&painter, &SheetPainter::finished);
    painter.start();
    QVERIFY(finished.wait());
    QStringList colours;
    for (const QImage &sheet : stack.sheets())
        colours += sheet.pixelColor(1, 1).name() + text(" ") + sheet.pixelColor(40, 30).name();
    QCOMPARE(colours, expected);
}

void tst_DocViewerOutput::pdfOfPagesThatCannotBeShown()
{
    const QString folder = ViewerPages::document(
        *m_dir, text("bad"),
        {ViewerPages::picturePage(Qt::red), "bad", ViewerPages::picturePage(Qt::red)});
    MainWindow window(MainWindow::Memory::None);
    window.open(folder);
    QSignalSpy done(window.savePdf(path("out.pdf")), &OutputJob::done);
    QVERIFY(done.wait());
    QCOMPARE(sheetsOf(path("out.pdf")),
             QStringList({text("30x23"), text("595x842"), text("30x23")}));
}

// Slides have to be had whatever became of the file of page 0.
void tst_DocViewerOutput::pdfWithoutItsFirstPage()
{
    const QString folder = ViewerPages::deck(*m_dir);
    const ViewerDocument document = ViewerDocument::open(folder);
    QVERIFY(QFile::remove(folder + text("/page_1")));
    StillPages pages(document);
    QCOMPARE(pages.picture({0, 0, 0}).fault, text("No such file or directory"));
    const PagePicture picture = pages.picture({1, 1, 60});
    QCOMPARE(picture.fault, QString());
    QCOMPARE(picture.image.pixelColor(1, 15).name(), text("#00ff00"));
    QCOMPARE(picture.image.pixelColor(2, 15).name(), text("#000000"));
}

void tst_DocViewerOutput::pdfCancelled()
{
    PageFiles::write(*m_dir, text("out.pdf"), "old");
    MainWindow window(MainWindow::Memory::None);
    window.open(ViewerPages::pictures(*m_dir));
    OutputJob *job = window.savePdf(path("out.pdf"));
    QSignalSpy done(job, &OutputJob::done);
    QSignalSpy destroyed(job, &QObject::destroyed);
    job->cancel();
    QVERIFY(destroyed.wait());
    QCOMPARE(done.count(), 0);
    QCOMPARE(contentOf(path("out.pdf")), QByteArray("old"));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden),
             QStringList({text("out.pdf")}));
}

void tst_DocViewerOutput::windowClosedWhilePdfIsWritten()
{
    QList<QByteArray> pages; // far more than are painted meanwhile
    for (int i = 0; i < 300; ++i)
        pages << ViewerPages::picturePage(Qt::red, {400, 300});
    auto window = std::make_unique<MainWindow>(MainWindow::Memory::None);
    window->open(ViewerPages::document(*m_dir, text("long"), pages));
    window->savePdf(path("out.pdf"));
    QCoreApplication::processEvents(); // a sheet or two
    window.reset();
    QVERIFY(!QFile::exists(path("out.pdf")));
}

void tst_DocViewerOutput::pdfThatCannotBeWritten()
{
    MainWindow window(MainWindow::Memory::None);
    window.open(ViewerPages::pictures(*m_dir));
    window.show();
    QSignalSpy done(window.savePdf(path("no/out.pdf")), &OutputJob::done);
    QVERIFY(done.wait());
    QCOMPARE(done.at(0).at(0).toString(), text("No such file or directory"));
    auto *box = window.findChild<QMessageBox *>();
    QVERIFY(box);
    QCOMPARE(box->text(), path("no/out.pdf") + text(" cannot be saved"));
}

// Sheets of which each takes far longer than a tenth of a second.
void tst_DocViewerOutput::windowLivesWhilePdfIsWritten()
{
    MainWindow window(MainWindow::Memory::None);
    window.open(largePages());
    window.show();
    qint64 best = 60000;
    for (int attempt = 0; attempt < 3 && best > 100; ++attempt) {
        EventGaps idle;
        QTest::qWait(300);
        const qint64 baseline = idle.largest();
        EventGaps gaps;
        QSignalSpy done(window.savePdf(path("out.pdf")), &OutputJob::done);
        QVERIFY(done.wait(60000));
        best = qMin(best, gaps.largest() - baseline);
        QCOMPARE(sheetsOf(path("out.pdf")), QStringList({text("4500x3750"), text("4500x3750")}));
    }
    QVERIFY2(best <= 100, qPrintable(QString::number(best)));
}

// It does not wait for the sheet in work, but the sheet's end is waited for.
void tst_DocViewerOutput::pdfCancelledWithinASheet()
{
    MainWindow window(MainWindow::Memory::None);
    window.open(largePages());
    window.show();
    OutputJob *job = window.savePdf(path("out.pdf"));
    QSignalSpy done(job, &OutputJob::done);
    QSignalSpy destroyed(job, &QObject::destroyed);
    auto *dialog = window.findChild<QProgressDialog *>();
    QVERIFY(dialog);
    QTRY_COMPARE_WITH_TIMEOUT(dialog->value(), 1, 60000);
    QElapsedTimer clock;
    clock.start();
    job->cancel();
    QVERIFY2(clock.elapsed() < 100, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(!dialog->isVisible());
    QVERIFY(destroyed.wait(60000));
    QCOMPARE(done.count(), 0);
    QVERIFY(!QFile::exists(path("out.pdf")));
}

// PDF knows no side beyond 14400 points; 96 pixels are 72 of them.
void tst_DocViewerOutput::longestSheet_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QString>("sheet");
    QTest::newRow("the longest") << QSize(19200, 400) << text("14400x300");
    QTest::newRow("wider") << QSize(38400, 400) << text("14400x150");
    QTest::newRow("a line") << QSize(100000, 1) << text("14400x1");
    QTest::newRow("higher") << QSize(400, 28800) << text("200x14400");
}

void tst_DocViewerOutput::longestSheet()
{
    QFETCH(QSize, picture);
    QFETCH(QString, sheet);
    MainWindow window(MainWindow::Memory::None);
    window.open(
        ViewerPages::document(*m_dir, text("long"), {ViewerPages::picturePage(Qt::red, picture)}));
    QSignalSpy done(window.savePdf(path("out.pdf")), &OutputJob::done);
    QVERIFY(done.wait());
    QCOMPARE(done.at(0).at(0).toString(), QString());
    QCOMPARE(sheetsOf(path("out.pdf")), QStringList({sheet}));
}

// As long as the same page is asked for.
void tst_DocViewerOutput::slideIsReadOnce()
{
    const QString folder = ViewerPages::deck(*m_dir);
    StillPages pages(ViewerDocument::open(folder));
    QCOMPARE(pages.content(0).stepCount(), 1U);
    QVERIFY(QFile::remove(folder + text("/page_1")));
    QCOMPARE(pages.picture({0, 0, 0}).image.pixelColor(20, 15).name(), text("#ff0000"));
    QCOMPARE(pages.picture({0, 1, 200}).image.pixelColor(20, 15).name(), text("#000000"));
    QCOMPARE(pages.picture({0, 0, 0}).image.pixelColor(20, 15).name(), text("#ff0000"));
    QCOMPARE(pages.picture({2, 0, 0}).image.pixelColor(20, 15).name(), text("#0000ff"));
    QCOMPARE(pages.picture({0, 0, 0}).fault, text("No such file or directory"));
}

void tst_DocViewerOutput::print_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<SheetPainter::Sheets>("sheets");
    QTest::addColumn<int>("expected");
    QTest::newRow("all") << 0 << 0 << SheetPainter::Sheets::Final << 3;
    QTest::newRow("a range") << 2 << 3 << SheetPainter::Sheets::Final << 2;
    QTest::newRow("a range, each step") << 2 << 2 << SheetPainter::Sheets::EachStep << 2;
}

void tst_DocViewerOutput::print()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(SheetPainter::Sheets, sheets);
    QFETCH(int, expected);
    QWidget window;
    auto printer = std::make_unique<QPrinter>();
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(path("printed.pdf"));
    printer->setPageSize(QPageSize(QPageSize::A5));
    printer->setFromTo(from, to);
    OutputJob *job = OutputJob::print(ViewerDocument::open(ViewerPages::deck(*m_dir)),
                                      std::move(printer), sheets, &window);
    QSignalSpy done(job, &OutputJob::done);
    QVERIFY(done.wait());
    QCOMPARE(done.at(0).at(0).toString(), QString());
    QStringList paper;
    for (int i = 0; i < expected; ++i)
        paper += text("420x595");
    QTRY_COMPARE(sheetsOf(path("printed.pdf")), paper);
}

void tst_DocViewerOutput::help()
{
    const Outcome help = run({text("--help")});
    QCOMPARE(help.status, 0);
    QCOMPARE(help.err, QByteArray());
    QVERIFY(help.out.contains("The page to begin with, counted from 0."));
    QVERIFY(help.out.startsWith("Usage: docviewer [FOLDER|FILE] [--page N] [--step S] [--ms M]"));
    const QList<QByteArray> lines = help.out.split('\n');
    for (const QByteArray &line : lines)
        QVERIFY2(line.size() < 80, line.constData());
    // Every option is in the manual, too.
    const QByteArray manual = contentOf(QStringLiteral(DOCVIEWER_MAN_PAGE)).replace("\\-", "-");
    QVERIFY(manual.contains(".TH DOCVIEWER 1 \"\" \"DocDisplay " DOCVIEWER_VERSION "\""));
    static const QRegularExpression option(text("--[a-z]+"));
    auto at = option.globalMatch(QString::fromUtf8(help.out));
    int count = 0;
    for (; at.hasNext(); ++count) {
        const QString name = at.next().captured();
        QVERIFY2(manual.contains(name.toUtf8()), qPrintable(name));
    }
    QVERIFY(count >= 6);
    // What nobody could read was not done.
    for (const char *asked : {"--help", "--version"}) {
        ForkedProcess process;
        process.setStandardOutputFile(text("/dev/full"));
        process.start(QStringLiteral(DOCVIEWER_PROGRAM), {text(asked)});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 1);
        QCOMPARE(process.readAllStandardError(),
                 QByteArray("docviewer: standard output: No space left on device\n"));
    }
    const Outcome version = run({text("--version")});
    QCOMPARE(version.status, 0);
    QCOMPARE(version.out, QByteArray("docviewer " DOCVIEWER_VERSION "\n"));
}

void tst_DocViewerOutput::wrongUsage_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("unknown option") << "--bogus" << QByteArray("Unknown option 'bogus'.");
    QTest::newRow("two documents") << "a b" << QByteArray("More than one FOLDER|FILE given.");
    QTest::newRow("page -1") << "a --page=-1" << QByteArray("'-1' is no page number.");
    QTest::newRow("page x") << "a --page x" << QByteArray("'x' is no page number.");
    QTest::newRow("step -1") << "a --step=-1" << QByteArray("'-1' is no step number.");
    QTest::newRow("ms x") << "a --step 1 --ms x" << QByteArray("'x' is no number of milliseconds.");
    QTest::newRow("ms alone") << "a --ms 5"
                              << QByteArray("--ms is a time within a --step, which is missing.");
    QTest::newRow("screenshot of nothing")
        << "--screenshot x.png" << QByteArray("No document given.");
    QTest::newRow("page of nothing") << "--page 2" << QByteArray("No document given.");
}

void tst_DocViewerOutput::wrongUsage()
{
    QFETCH(QString, line);
    QFETCH(QByteArray, message);
    const Outcome outcome = run(line.split(QLatin1Char(' ')));
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.out, QByteArray());
    QCOMPARE(outcome.err, "docviewer: " + message + "\nTry 'docviewer --help'.\n");
}

void tst_DocViewerOutput::screenshot_data()
{
    QTest::addColumn<QString>("document");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("environment");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<int>("pixels"); // that have it, right of the list of pages
    const QStringList none;
    const QSize size(1100, 720);
    QTest::newRow("pictures") << "pictures" << none << none << size << QColor(Qt::red) << 1200;
    QTest::newRow("page") << "pictures" << QStringList({text("--page"), text("2")}) << none << size
                          << QColor(Qt::blue) << 1200;
    // The shape has come in by 5 of its 10 x 10 pixels.
    QTest::newRow("step") << "deck"
                          << QStringList({text("--step"), text("1"), text("--ms"), text("40")})
                          << none << size << QColor(Qt::red) << 1150;
    // A pixel stays a pixel.
    QTest::newRow("large screen") << "pictures" << none << QStringList({text("QT_SCALE_FACTOR=2")})
                                  << QSize(2200, 1440) << QColor(Qt::red) << 1200;
    // Nor is a scale of 150 % rounded.
    QTest::newRow("dense screen") << "pictures" << none << QStringList({text("QT_FONT_DPI=144")})
                                  << QSize(1650, 1080) << QColor(Qt::red) << 1200;
    QTest::newRow("another locale")
        << "Büro" << none << QStringList({text("LC_ALL=C")}) << size << QColor(Qt::red) << 1200;
}

void tst_DocViewerOutput::screenshot()
{
    QFETCH(QString, document);
    QFETCH(QStringList, options);
    QFETCH(QStringList, environment);
    QFETCH(QSize, size);
    QFETCH(QColor, colour);
    QFETCH(int, pixels);
    ViewerPages::pictures(*m_dir);
    ViewerPages::document(*m_dir, text("Büro"), {ViewerPages::picturePage(Qt::red)});
    ViewerPages::deck(*m_dir);
    const Outcome outcome = run(
        QStringList({text("--screenshot"), path("out.png"), m_dir->filePath(document)}) + options,
        environment);
    QCOMPARE(outcome.err, QByteArray());
    QCOMPARE(outcome.status, 0);
    const QImage image(path("out.png"));
    QCOMPARE(image.size(), size);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = image.width() / 4; x < image.width(); ++x)
            count += image.pixelColor(x, y) == colour ? 1 : 0;
    }
    QCOMPARE(count, pixels);
}

void tst_DocViewerOutput::refused_data()
{
    QTest::addColumn<QString>("line"); // DIR/ is the test's folder
    QTest::addColumn<QString>("message");
    QTest::newRow("no folder for the picture") << "DIR/pictures --screenshot DIR/no/out.png"
                                               << "DIR/no/out.png: No such file or directory";
    QTest::newRow("no such page")
        << "DIR/pictures --page 3 --screenshot DIR/out.png"
        << "DIR/pictures: page 3 is out of range, the document has 3 pages";
    QTest::newRow("no such page of a file")
        << "DIR/pictures/page_1 --page 1"
        << "DIR/pictures/page_1: page 1 is out of range, the document has 1 page";
    QTest::newRow("missing, picture") << "DIR/missing --screenshot DIR/out.png"
                                      << "DIR/missing: No such file or directory";
    QTest::newRow("missing, page") << "DIR/missing --page 0"
                                   << "DIR/missing: No such file or directory";
    QTest::newRow("missing, step") << "DIR/missing --step 1"
                                   << "DIR/missing: No such file or directory";
    QTest::newRow("empty, picture") << "DIR/empty --screenshot DIR/out.png"
                                    << "DIR/empty: the folder holds no pages";
    QTest::newRow("empty, page") << "DIR/empty --page 0"
                                 << "DIR/empty: the folder holds no pages";
    QTest::newRow("in place of a page") << "DIR/pictures --screenshot DIR/pictures/page_1"
                                        << "DIR/pictures/page_1: is a page of the document";
    QTest::newRow("in place of the only page")
        << "DIR/pictures/page_1 --screenshot DIR/pictures/../pictures/page_1"
        << "DIR/pictures/../pictures/page_1: is a page of the document";
    QTest::newRow("by way of a link") << "DIR/pictures --screenshot DIR/link"
                                      << "DIR/link: is a page of the document";
    QTest::newRow("beside the pages")
        << "DIR/pictures --screenshot DIR/pictures/new.png"
        << "DIR/pictures/new.png: is in the document's folder, whose files are its pages";
    QTest::newRow("folder with a slash")
        << "DIR/pictures/ --screenshot DIR/linked/new.png"
        << "DIR/linked/new.png: is in the document's folder, whose files are its pages";
}

void tst_DocViewerOutput::refused()
{
    QFETCH(QString, line);
    QFETCH(QString, message);
    const QString folder = ViewerPages::pictures(*m_dir);
    QVERIFY(QDir(m_dir->path()).mkdir(text("empty")));
    QVERIFY(QFile::link(folder + text("/page_1"), path("link")));
    QVERIFY(QFile::link(folder, path("linked")));
    const QByteArray page = contentOf(folder + text("/page_1"));
    const QString dir = m_dir->path() + QLatin1Char('/');
    const Outcome outcome = run(line.replace(text("DIR/"), dir).split(QLatin1Char(' ')));
    QCOMPARE(outcome.err, text("docviewer: %1\n").arg(message.replace(text("DIR/"), dir)).toUtf8());
    QCOMPARE(outcome.status, 1);
    QVERIFY(!QFile::exists(path("out.png")));
    QCOMPARE(contentOf(folder + text("/page_1")), page);
    QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 3);
}

// A page of its own file may have others beside it that do not belong to the document.
void tst_DocViewerOutput::screenshotBesideASingleFile()
{
    const QString page = ViewerPages::pictures(*m_dir) + text("/page_1");
    const Outcome outcome = run({page, text("--screenshot"), path("pictures/out.png")});
    QCOMPARE(outcome.err, QByteArray());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(QImage(path("pictures/out.png")).size(), QSize(1100, 720));
}

// Without pages there are no small pictures to be waited for.
void tst_DocViewerOutput::screenshotOfAnEmptyWindow()
{
    MainWindow window(MainWindow::Memory::None);
    window.show();
    Screenshot screenshot(&window, path("empty.png"));
    QSignalSpy done(&screenshot, &Screenshot::done);
    QVERIFY(done.wait());
    QCOMPARE(done.at(0).at(0).toString(), QString());
    QVERIFY(!QImage(path("empty.png")).isNull());
}

// A name is shown as it is, whatever it looks like.
void tst_DocViewerOutput::nameLikeATag()
{
    MainWindow window(MainWindow::Memory::None);
    window.open(ViewerPages::pictures(*m_dir));
    window.show();
    window.saveFrame(window.view()->image(), path("no/<b>bold</b>.png"));
    auto *box = window.findChild<QMessageBox *>();
    QVERIFY(box);
    const QList<QLabel *> labels = box->findChildren<QLabel *>();
    QVERIFY(labels.size() >= 2);
    for (const QLabel *label : labels)
        QCOMPARE(label->textFormat(), Qt::PlainText);
}

void tst_DocViewerOutput::noDisplay()
{
    const Outcome outcome =
        run({path("deck")}, {text("QT_QPA_PLATFORM="), text("DISPLAY="), text("WAYLAND_DISPLAY=")});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.err, QByteArray("docviewer: there is no display to show the window on\n"));
}

QTEST_MAIN(tst_DocViewerOutput)

#include "tst_docviewer_output.moc"
