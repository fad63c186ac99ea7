// The window: what keys, mouse, wheel, buttons and dropped files do, and what it says.
#include "ViewerPages.h"

#include "tools/docviewer/MainWindow.h"
#include "tools/docviewer/ThreadLog.h"
#include "tools/docviewer/ViewerSettings.h"

#include <KxBase/KxLog.h>

#include <QAccessible>
#include <QDragEnterEvent>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QSignalSpy>
#include <QStatusBar>
#include <QToolBar>
#include <QWheelEvent>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

Q_DECLARE_METATYPE(Qt::MouseButton)
Q_DECLARE_METATYPE(DocDisplayMgr::AnimStatus)

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

// A window that is shown with the first page of a document.
class Window : public MainWindow
{
public:
    explicit Window(const QString &document = {}, Memory memory = Memory::None)
        : MainWindow(memory)
    {
        resize(800, 600);
        show();
        activateWindow();
        if (!QTest::qWaitForWindowActive(this))
            qFatal("the test's window is not shown");
        if (!document.isEmpty())
            open(document);
    }

    int page() { return static_cast<int>(presentation()->position().page); }
    QString colour() const { return view()->image().pixelColor(0, 0).name(); }
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(view(), static_cast<Qt::Key>(key), modifiers);
    }
    void click(Qt::MouseButton button) { QTest::mouseClick(view()->viewport(), button); }
    void wheel(int angle, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        const QPointF at = view()->viewport()->rect().center();
        QWheelEvent event(at, view()->viewport()->mapToGlobal(at.toPoint()), {}, {0, angle},
                          Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view()->viewport(), &event);
    }

    bool waitForStop()
    {
        return QTest::qWaitFor([this] { return !presentation()->isRunning(); });
    }
};

// What of the process is in memory, in bytes.
qint64 residentMemory()
{
    QFile statm(text("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        qFatal("the memory of the test is not known");
    return statm.readAll().split(' ').at(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

// A JPG picture of 128 x 128 with nothing to compress.
QByteArray noisyJpg()
{
    QImage noise(128, 128, QImage::Format_RGB32);
    quint32 state = 1;
    for (int y = 0; y < noise.height(); ++y) {
        for (int x = 0; x < noise.width(); ++x) {
            state = state * 1664525 + 1013904223;
            noise.setPixel(x, y, 0xff000000 | (state >> 8));
        }
    }
    return PageFiles::encoded(noise, "JPG");
}

// A slide whose shape is a picture of 400 million pixels in 50 KB; decoded it takes 50 MB at least.
QByteArray hugeSlide(int number)
{
    static const QByteArray picture = [] {
        QImage image(20000, 20000, QImage::Format_Mono);
        image.fill(0);
        QByteArray bytes; // few, unlike those of PageFiles: what reading them takes does not count
        QBuffer buffer(&bytes);
        if (!image.save(&buffer, "PNG"))
            qFatal("cannot encode the test's picture");
        return bytes;
    }();
    PPT_Page *page = AnimModel::newPage({AnimModel::newShape(1, 0, 0, 40, 30, picture)}, {},
                                        PageFiles::picture(Qt::green, "PNG", {40, 30}), number);
    return PageFiles::pageResultFile(DocCovRslt::PAGE_FORMAT_PPT_ANIM,
                                     AnimModel::modelBytes({page}, 40, 30));
}

} // namespace

class tst_DocViewer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void keys_data();
    void keys();
    void mouse_data();
    void mouse();
    void wheelTurnsPages();
    void wheelZoomsAndScrolls();
    void dragScrollsAndIsNoClick();
    void numbers_data();
    void numbers();
    void numberForgotten_data();
    void numberForgotten();
    void keysWithTheFocusInTheList();
    void black();
    void fullScreen();

    void steps();
    void firstStepStartsByItself();
    void jumpToTheEndOfAStep();
    void backIntoASlide();
    void actions_data();
    void actions();
    void hold();

    void badPages_data();
    void badPages();
    void otherLogLines_data();
    void otherLogLines();
    void otherLogLinesOnTheSamePage();
    void logLevels();
    void slideOfADeckAlone();
    void hugePictures_data();
    void hugePictures();
    void badDocuments_data();
    void badDocuments();
    void noDocument();
    void oneNameHoweverGiven_data();
    void oneNameHoweverGiven();

    void recentDocuments();
    void closedInFullScreen();
    void oddTitle();
    void timelineHidden();
    void oneChangePerMove();
    void noMemory();
    void dropped();
    void refusedDrops_data();
    void refusedDrops();
    void timeline();
    void movingEndsScrubbing_data();
    void movingEndsScrubbing();
    void scrubbingWhileAStepRuns();
    void deletedWhileScrubbing();
    void thumbnailChosen();
    void anotherDocumentWhileAStepRuns();
    void closingWhileThumbnailsLoad();
    void thousandPages_data();
    void thousandPages();
    void arrowsOnDarkGround();
    void focusAndNames();

private:
    QTemporaryDir m_settings;
    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_DocViewer::initTestCase()
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
    ThreadLog::divert();
}

void tst_DocViewer::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    ViewerSettings().clear();
}

void tst_DocViewer::keys_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("expected");
    QTest::newRow("space") << 0 << int(Qt::Key_Space) << 1;
    QTest::newRow("right") << 0 << int(Qt::Key_Right) << 1;
    QTest::newRow("page down") << 1 << int(Qt::Key_PageDown) << 2;
    QTest::newRow("left") << 2 << int(Qt::Key_Left) << 1;
    QTest::newRow("page up") << 1 << int(Qt::Key_PageUp) << 0;
    QTest::newRow("backspace") << 1 << int(Qt::Key_Backspace) << 0;
    QTest::newRow("home") << 2 << int(Qt::Key_Home) << 0;
    QTest::newRow("end") << 0 << int(Qt::Key_End) << 2;
    QTest::newRow("right on the last page") << 2 << int(Qt::Key_Right) << 2;
    QTest::newRow("left on the first page") << 0 << int(Qt::Key_Left) << 0;
    QTest::newRow("a key without a meaning") << 1 << int(Qt::Key_X) << 1;
}

void tst_DocViewer::keys()
{
    QFETCH(int, page);
    QFETCH(int, key);
    QFETCH(int, expected);
    Window window(ViewerPages::pictures(*m_dir));
    window.presentation()->goTo(static_cast<quint32>(page));
    window.key(key);
    QCOMPARE(window.page(), expected);
    QCOMPARE(window.colour(),
             QStringList({text("#ff0000"), text("#00ff00"), text("#0000ff")}).at(expected));
}

void tst_DocViewer::mouse_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<int>("expected");
    QTest::newRow("left") << Qt::LeftButton << 2;
    QTest::newRow("right") << Qt::RightButton << 0;
    QTest::newRow("forward") << Qt::ForwardButton << 2;
    QTest::newRow("back") << Qt::BackButton << 0;
    QTest::newRow("middle") << Qt::MiddleButton << 1;
}

void tst_DocViewer::mouse()
{
    QFETCH(Qt::MouseButton, button);
    QFETCH(int, expected);
    Window window(ViewerPages::pictures(*m_dir));
    window.presentation()->goTo(1);
    window.click(button);
    QCOMPARE(window.page(), expected);
}

void tst_DocViewer::wheelTurnsPages()
{
    Window window(ViewerPages::pictures(*m_dir));
    window.wheel(-120);
    QCOMPARE(window.page(), 1);
    window.wheel(-60); // half a notch is kept
    QCOMPARE(window.page(), 1);
    window.wheel(-60);
    QCOMPARE(window.page(), 2);
    window.wheel(240);
    QCOMPARE(window.page(), 0);
}

void tst_DocViewer::wheelZoomsAndScrolls()
{
    const QString large = ViewerPages::document(
        *m_dir, text("large"),
        {ViewerPages::picturePage(Qt::red, {3000, 3000}), ViewerPages::picturePage(Qt::green)});
    Window window(large);
    QVERIFY(window.view()->isFitted());
    window.view()->setZoom(1);
    window.wheel(120, Qt::ControlModifier);
    QCOMPARE(window.view()->scale(), 1.5);
    window.wheel(-120, Qt::ControlModifier);
    QCOMPARE(window.view()->scale(), 1.0);
    const double before = window.view()->pageRect().top();
    window.wheel(-120);
    QCOMPARE(window.page(), 0);
    QVERIFY(window.view()->pageRect().top() < before);
}

void tst_DocViewer::dragScrollsAndIsNoClick()
{
    const QString large = ViewerPages::document(
        *m_dir, text("large"),
        {ViewerPages::picturePage(Qt::red, {3000, 3000}), ViewerPages::picturePage(Qt::green)});
    Window window(large);
    window.view()->setZoom(1);
    QWidget *viewport = window.view()->viewport();
    const QPointF before = window.view()->pageRect().topLeft();
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, {200, 200});
    QMouseEvent move(QEvent::MouseMove, QPointF(150, 170), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &move);
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, {150, 170});
    QCOMPARE(window.view()->pageRect().topLeft(), before + QPointF(-50, -30));
    QCOMPARE(window.page(), 0);
}

void tst_DocViewer::numbers_data()
{
    QTest::addColumn<QList<int>>("typed");
    QTest::addColumn<QString>("note"); // before the last key
    QTest::addColumn<int>("expected");
    QTest::newRow("3, Enter") << QList<int>{'3', Qt::Key_Return} << "Go to page 3" << 2;
    QTest::newRow("keypad's Enter") << QList<int>{'2', Qt::Key_Enter} << "Go to page 2" << 1;
    QTest::newRow("0 0 2, Enter") << QList<int>{'0', '0', '2', Qt::Key_Return} << "Go to page 002"
                                  << 1;
    QTest::newRow("corrected") << QList<int>{'3', Qt::Key_Backspace, '2', Qt::Key_Return}
                               << "Go to page 2" << 1;
    QTest::newRow("no such page") << QList<int>{'4', Qt::Key_Return} << "Go to page 4" << 0;
    QTest::newRow("page 0") << QList<int>{'0', Qt::Key_Return} << "Go to page 0" << 0;
    QTest::newRow("given up") << QList<int>{'3', Qt::Key_Escape, Qt::Key_Return} << "" << 0;
    QTest::newRow("another key") << QList<int>{'3', Qt::Key_Right, Qt::Key_Return} << "" << 1;
    QTest::newRow("digits only") << QList<int>{'3', '3'} << "Go to page 3" << 0;
    QTest::newRow("Enter only") << QList<int>{Qt::Key_Return} << "" << 0;
}

void tst_DocViewer::numbers()
{
    QFETCH(QList<int>, typed);
    QFETCH(QString, note);
    QFETCH(int, expected);
    Window window(ViewerPages::pictures(*m_dir));
    const int lastKey = typed.takeLast();
    for (const int key : qAsConst(typed))
        window.key(key);
    QCOMPARE(window.view()->note(), note);
    window.key(lastKey);
    QCOMPARE(window.page(), expected);
}

void tst_DocViewer::numberForgotten_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<int>("expected");
    QTest::newRow("Down in the list") << "down" << 1;
    QTest::newRow("Up in the list, at its top") << "up" << 0;
    QTest::newRow("another key in the list") << "x" << 0;
    QTest::newRow("click") << "click" << 1;
    QTest::newRow("right click on the first page") << "right click" << 0;
    QTest::newRow("wheel") << "wheel" << 1;
    QTest::newRow("Next") << "next" << 1;
    QTest::newRow("another document") << "open" << 0;
}

// Digits are no number any more when something else has been done before Enter.
void tst_DocViewer::numberForgotten()
{
    QFETCH(QString, what);
    QFETCH(int, expected);
    const QString deck = ViewerPages::deck(*m_dir);
    Window window(ViewerPages::pictures(*m_dir));
    window.thumbnails()->setFocus();
    QTest::keyClick(window.thumbnails(), Qt::Key_3);
    QCOMPARE(window.view()->note(), text("Go to page 3"));
    if (what == text("down"))
        QTest::keyClick(window.thumbnails(), Qt::Key_Down);
    else if (what == text("up"))
        QTest::keyClick(window.thumbnails(), Qt::Key_Up);
    else if (what == text("x"))
        QTest::keyClick(window.thumbnails(), Qt::Key_X);
    else if (what == text("click"))
        window.click(Qt::LeftButton);
    else if (what == text("right click"))
        window.click(Qt::RightButton);
    else if (what == text("wheel"))
        window.wheel(-120);
    else if (what == text("next"))
        window.actionSet().next->trigger();
    else
        window.open(deck);
    QCOMPARE(window.view()->note(), QString());
    QCOMPARE(window.page(), expected);
    QTest::keyClick(window.thumbnails(), Qt::Key_Return);
    QCOMPARE(window.page(), expected);
}

void tst_DocViewer::keysWithTheFocusInTheList()
{
    Window window(ViewerPages::pictures(*m_dir));
    window.thumbnails()->setFocus();
    QTest::keyClick(window.thumbnails(), Qt::Key_Space);
    QCOMPARE(window.page(), 1);
    QTest::keyClick(window.thumbnails(), Qt::Key_Left);
    QCOMPARE(window.page(), 0);
    QTest::keyClick(window.thumbnails(), Qt::Key_3);
    QTest::keyClick(window.thumbnails(), Qt::Key_Return);
    QCOMPARE(window.page(), 2);
}

void tst_DocViewer::black()
{
    Window window(ViewerPages::pictures(*m_dir));
    const auto middle = [&] {
        const QImage image = window.view()->grab().toImage();
        return image.pixelColor(image.rect().center()).name();
    };
    QCOMPARE(middle(), text("#ff0000"));
    for (const int key : {Qt::Key_Right, Qt::Key_B, Qt::Key_X, Qt::Key_5, Qt::Key_Escape}) {
        window.key(Qt::Key_B);
        QVERIFY(window.view()->isBlack());
        QCOMPARE(middle(), text("#000000"));
        window.key(Qt::Key_Shift); // on its own it is none
        QVERIFY(window.view()->isBlack());
        window.key(key);
        QVERIFY(!window.view()->isBlack());
        QCOMPARE(window.page(), 0);
        QCOMPARE(window.view()->note(), QString());
    }
    window.key(Qt::Key_B);
    window.click(Qt::LeftButton);
    QVERIFY(!window.view()->isBlack());
    QCOMPARE(window.page(), 0);
    window.key(Qt::Key_B);
    window.wheel(-120);
    QVERIFY(!window.view()->isBlack());
    QCOMPARE(window.page(), 0);
}

void tst_DocViewer::fullScreen()
{
    Window window(ViewerPages::deck(*m_dir));
    auto *dock = window.findChild<QDockWidget *>();
    const QList<QWidget *> around{window.menuBar(), window.statusBar(),
                                  window.findChild<QToolBar *>(), dock, window.timeline()};
    for (const QWidget *widget : around)
        QVERIFY(widget->isVisible());
    window.key(Qt::Key_F5);
    QVERIFY(window.isFullScreen());
    for (const QWidget *widget : around)
        QVERIFY(!widget->isVisible());
    QTRY_COMPARE(window.view()->size(), window.size());
    QCOMPARE(window.view()->grab().toImage().pixelColor(0, 0).name(), text("#000000"));
    window.key(Qt::Key_Escape);
    QVERIFY(!window.isFullScreen());
    for (const QWidget *widget : around)
        QVERIFY(widget->isVisible());
    window.view()->clearFocus();
    window.actionSet().fullScreen->trigger();
    QVERIFY(window.view()->hasFocus()); // its keys work wherever the focus was
    window.actionSet().fullScreen->trigger();
    dock->close();
    window.key(Qt::Key_F5);
    window.key(Qt::Key_F5);
    QVERIFY(!window.isFullScreen());
    QVERIFY(!dock->isVisible()); // what was closed stays closed
}

void tst_DocViewer::steps()
{
    Window window(ViewerPages::deck(*m_dir));
    QCOMPARE(window.statusText(),
             text("Page 1 of 3 | Step 0 of 1 | 0 of 0 ms | next: step 1 of 1"));
    window.key(Qt::Key_Right);
    QVERIFY(window.presentation()->isRunning());
    QVERIFY2(window.statusText().startsWith(text("Page 1 of 3 | Step 1 of 1 | ")),
             qPrintable(window.statusText()));
    QVERIFY2(window.statusText().endsWith(text(" of 200 ms | playing, next: end of step 1")),
             qPrintable(window.statusText()));
    QSignalSpy changes(window.presentation(), &Presentation::changed);
    QVERIFY(window.waitForStop());
    QVERIFY(changes.count() >= 3);
    QCOMPARE(window.statusText(), text("Page 1 of 3 | Step 1 of 1 | 200 of 200 ms | next: page 2"));
    QCOMPARE(window.view()->image().pixelColor(20, 15).name(), text("#000000"));
    window.key(Qt::Key_End);
    QCOMPARE(window.statusText(), text("Page 3 of 3 | end"));
    QCOMPARE(window.colour(), text("#0000ff"));
}

void tst_DocViewer::firstStepStartsByItself()
{
    Window window(ViewerPages::deck(*m_dir));
    window.key('2');
    window.key(Qt::Key_Return);
    QVERIFY(window.presentation()->isRunning());
    QVERIFY2(window.statusText().startsWith(text("Page 2 of 3 | Step 1 of 2 | ")),
             qPrintable(window.statusText()));
    QVERIFY(window.waitForStop());
    QCOMPARE(window.statusText(),
             text("Page 2 of 3 | Step 1 of 2 | 120 of 120 ms | next: step 2 of 2"));
}

void tst_DocViewer::jumpToTheEndOfAStep()
{
    Window window(ViewerPages::deck(*m_dir));
    window.key(Qt::Key_Right);
    window.key(Qt::Key_Right);
    QVERIFY(!window.presentation()->isRunning());
    QCOMPARE(window.statusText(), text("Page 1 of 3 | Step 1 of 1 | 200 of 200 ms | next: page 2"));
    window.key(Qt::Key_Right);
    QCOMPARE(window.page(), 1);
}

void tst_DocViewer::backIntoASlide()
{
    Window window(ViewerPages::deck(*m_dir));
    window.key(Qt::Key_End);
    window.key(Qt::Key_Left);
    QCOMPARE(window.statusText(), text("Page 2 of 3 | Step 2 of 2 | 80 of 80 ms | next: page 3"));
    window.key(Qt::Key_Left);
    QCOMPARE(window.statusText(),
             text("Page 2 of 3 | Step 1 of 2 | 120 of 120 ms | next: step 2 of 2"));
    window.key(Qt::Key_Left);
    QCOMPARE(window.statusText(),
             text("Page 2 of 3 | Step 0 of 2 | 0 of 0 ms | next: step 1 of 2"));
    window.key(Qt::Key_Left);
    QCOMPARE(window.statusText(), text("Page 1 of 3 | Step 1 of 1 | 200 of 200 ms | next: page 2"));
}

void tst_DocViewer::actions_data()
{
    QTest::addColumn<bool>("animated");
    QTest::addColumn<quint32>("page");
    QTest::addColumn<quint32>("step");
    QTest::addColumn<quint32>("ms");
    QTest::addColumn<bool>("canGoBack");
    QTest::addColumn<bool>("canGoOn");
    QTest::newRow("first picture") << false << 0U << 0U << 0U << false << true;
    QTest::newRow("picture between") << false << 1U << 0U << 0U << true << true;
    QTest::newRow("last picture") << false << 2U << 0U << 0U << true << false;
    QTest::newRow("first slide, home") << true << 0U << 0U << 0U << false << true;
    QTest::newRow("first slide, step") << true << 0U << 1U << 0U << true << true;
    QTest::newRow("second slide, home") << true << 1U << 0U << 0U << true << true;
    QTest::newRow("picture at the deck's end") << true << 2U << 0U << 0U << true << false;
}

void tst_DocViewer::actions()
{
    QFETCH(bool, animated);
    QFETCH(quint32, page);
    QFETCH(quint32, step);
    QFETCH(quint32, ms);
    Window window(animated ? ViewerPages::deck(*m_dir) : ViewerPages::pictures(*m_dir));
    window.presentation()->hold({page, step, ms});
    const ViewerActions &actions = window.actionSet();
    QTEST(actions.previous->isEnabled(), "canGoBack");
    QTEST(actions.next->isEnabled(), "canGoOn");
    QVERIFY(actions.first->isEnabled() && actions.last->isEnabled());
    QVERIFY(actions.saveFrame->isEnabled() && actions.savePdf->isEnabled());
    if (animated && page == 0 && step == 0) {
        window.presentation()->goTo(0); // started, but there is still nothing before it
        QVERIFY(!actions.previous->isEnabled());
    }
}

void tst_DocViewer::hold()
{
    Window window(ViewerPages::deck(*m_dir));
    window.presentation()->hold({0, 1, 100});
    QVERIFY(!window.presentation()->isRunning());
    QCOMPARE(window.statusText(),
             text("Page 1 of 3 | Step 1 of 1 | 100 of 200 ms | next: end of step 1"));
    // Halfway from beyond the left edge, -10, to 15: at 2.
    const QImage &image = window.view()->image();
    QCOMPARE(image.pixelColor(1, 15).name(), text("#ff0000"));
    QCOMPARE(image.pixelColor(2, 15).name(), text("#000000"));
    QCOMPARE(image.pixelColor(11, 15).name(), text("#000000"));
    QCOMPARE(image.pixelColor(12, 15).name(), text("#ff0000"));
    window.key(Qt::Key_Right);
    QCOMPARE(window.statusText(), text("Page 1 of 3 | Step 1 of 1 | 200 of 200 ms | next: page 2"));
}

void tst_DocViewer::badPages_data()
{
    using PageFiles::pageResultFile;
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason"); // %1: the file
    QTest::newRow("no page result file") << QByteArray("this is no page result file at all")
                                         << "IsEmfDealRsltFile, file format err! "
                                            "(0x73696874,0x6920)";
    QTest::newRow("empty") << QByteArray()
                           << "IsEmfDealRsltFile, file too small! (file:%1, size:0)";
    QTest::newRow("cut off") << pageResultFile(4, QByteArray(100, 'x')).left(24)
                             << "getPicDataFromFile readSize:10 != headDatSize:100";
    QTest::newRow("no picture") << pageResultFile(4, "no picture")
                                << "the picture cannot be decoded";
    QTest::newRow("a format of its own")
        << pageResultFile(1, "x") << "decodeEmf, picFormat(1) not support! (file:%1)";
    const QByteArray jpg = noisyJpg();
    QTest::newRow("half a JPG") << pageResultFile(2, jpg.left(jpg.size() / 2))
                                << "JPG picture is truncated";
    QTest::newRow("a JPG whose data is half there")
        << pageResultFile(2, jpg.left(jpg.size() / 2) + QByteArray::fromHex("00ffd9"))
        << "JPG picture is corrupt (picture data)";
    QTest::newRow("half a PNG") << pageResultFile(
                                       4, PageFiles::picture(Qt::red, "PNG", {40, 30}).chopped(20))
                                << "PNG picture is truncated";
    QTest::newRow("no animation data") << pageResultFile(3, "no model at all")
                                       << "the slide animation data is truncated or corrupt";
    QTest::newRow("another slide")
        << ViewerPages::slidePage(7, Qt::red, "click 1") << "holds no page 1; its pages: 7";
}

void tst_DocViewer::badPages()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    const QString folder = ViewerPages::document(
        *m_dir, text("bad"),
        {ViewerPages::picturePage(Qt::red), content, ViewerPages::picturePage(Qt::blue)});
    Window window(folder);
    window.key(Qt::Key_Right);
    QCOMPARE(window.view()->message(), text("Page 2 cannot be shown\n") +
                                           reason.replace(text("%1"), folder + text("/page_2")));
    QVERIFY(window.view()->image().isNull());
    QCOMPARE(window.view()->accessibleDescription(), window.view()->message());
    QVERIFY(!window.actionSet().saveFrame->isEnabled());
    QCOMPARE(window.statusText(), text("Page 2 of 3 | next: page 3"));
    window.key(Qt::Key_Right);
    QCOMPARE(window.view()->message(), QString());
    QCOMPARE(window.colour(), text("#0000ff"));
}

// What is logged before a page is read, or without being an error, is no fault of the page.
void tst_DocViewer::otherLogLines_data()
{
    QTest::addColumn<bool>("isBad");
    QTest::addColumn<QString>("message");
    QTest::newRow("page that can be shown") << false << "";
    QTest::newRow("page that cannot")
        << true << "Page 2 cannot be shown\ndecodeEmf, picFormat(1) not support! (file:%1)";
}

void tst_DocViewer::otherLogLines()
{
    QFETCH(bool, isBad);
    QFETCH(QString, message);
    const QString folder = ViewerPages::document(
        *m_dir, text("log"),
        {ViewerPages::picturePage(Qt::red),
         isBad ? PageFiles::pageResultFile(1, "x") : ViewerPages::picturePage(Qt::green)});
    Window window(folder);
    KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, "test", "about another page");
    window.key(Qt::Key_Right);
    if (isBad)
        message = message.arg(folder + text("/page_2"));
    QCOMPARE(window.view()->message(), message);
}

// The page's file is not read again for it.
void tst_DocViewer::otherLogLinesOnTheSamePage()
{
    const QString folder =
        ViewerPages::document(*m_dir, text("log"), {PageFiles::pageResultFile(4, "no picture")});
    Window window(folder);
    KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, "test", "about another page");
    window.presentation()->goTo(0);
    QCOMPARE(window.view()->message(),
             text("Page 1 cannot be shown\nthe picture cannot be decoded"));
}

void tst_DocViewer::logLevels()
{
    ThreadLog::takeFirstLine();
    KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_DEBUG, "test", "debugging");
    KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_INFO, "test", "information");
    KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, "test", "the first error");
    KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, "test", "the second error");
    QCOMPARE(ThreadLog::takeFirstLine(), text("the first error"));
    QCOMPARE(ThreadLog::takeFirstLine(), QString());
}

// A file of a deck alone is page 0, which it does not hold.
void tst_DocViewer::slideOfADeckAlone()
{
    const QString deck = ViewerPages::deck(*m_dir);
    Window window(deck + text("/page_2"));
    QCOMPARE(window.view()->message(), text("Page 1 cannot be shown\n"
                                            "this is slide 2 of a deck; open its folder"));
    window.open(deck + text("/page_1"));
    QCOMPARE(window.colour(), text("#ff0000"));
}

void tst_DocViewer::hugePictures_data()
{
    using Position = DocDisplayMgr::AnimStatus;
    QTest::addColumn<Position>("from"); // a time of 1: it is running
    QTest::addColumn<QList<int>>("keys");
    QTest::newRow("next") << Position{0, 1, 0} << QList<int>{Qt::Key_Right, Qt::Key_Right};
    QTest::newRow("next, from a picture") << Position{3, 0, 0} << QList<int>{Qt::Key_Right};
    QTest::newRow("previous") << Position{2, 0, 0} << QList<int>{Qt::Key_Left};
    QTest::newRow("previous, running") << Position{2, 0, 1} << QList<int>{Qt::Key_Left};
    QTest::newRow("by number") << Position{0, 0, 0} << QList<int>{'2', Qt::Key_Return};
    QTest::newRow("last") << Position{0, 0, 0} << QList<int>{Qt::Key_End};
}

// They are neither decoded nor make the window wait.
void tst_DocViewer::hugePictures()
{
    QFETCH(DocDisplayMgr::AnimStatus, from);
    QFETCH(QList<int>, keys);
    Window window(
        ViewerPages::document(*m_dir, text("huge"),
                              {ViewerPages::slidePage(0, Qt::red, "click 0.2"), hugeSlide(1),
                               ViewerPages::slidePage(2, Qt::blue, "after 5"),
                               ViewerPages::picturePage(Qt::red), hugeSlide(4)}));
    if (from.passedDuration == 1)
        window.presentation()->goTo(from.page);
    else
        window.presentation()->hold(from);
    QCOMPARE(window.view()->message(), QString());
    const qint64 before = residentMemory();
    for (const int key : qAsConst(keys))
        window.key(key);
    QCOMPARE(window.view()->message(),
             text("Page %1 cannot be shown\npicture of shape 1: picture too large: "
                  "20000 x 20000 pixels")
                 .arg(window.page() + 1));
    const qint64 taken = residentMemory() - before;
    QVERIFY2(taken < 25'000'000, qPrintable(QString::number(taken)));
    // The pages beside it are shown as ever.
    window.presentation()->hold({0, 1, 200});
    QCOMPARE(window.colour(), text("#ff0000"));
}

void tst_DocViewer::badDocuments_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("fault");
    QTest::newRow("missing") << "missing"
                             << "No such file or directory";
    QTest::newRow("empty folder") << "empty"
                                  << "the folder holds no pages";
    QTest::newRow("pipe") << "pipe"
                          << "is neither a folder nor a file";
}

void tst_DocViewer::badDocuments()
{
    QFETCH(QString, name);
    QFETCH(QString, fault);
    QVERIFY(QDir(m_dir->path()).mkdir(text("empty")));
    QCOMPARE(::mkfifo(QFile::encodeName(m_dir->filePath(text("pipe"))).constData(), 0600), 0);
    Window window(ViewerPages::pictures(*m_dir));
    window.open(m_dir->filePath(name));
    QCOMPARE(window.view()->message(),
             text("The document cannot be shown\n%1: %2").arg(m_dir->filePath(name), fault));
    QCOMPARE(window.statusText(), QString());
    QVERIFY(!window.actionSet().next->isEnabled() && !window.actionSet().previous->isEnabled());
    QVERIFY(!window.actionSet().savePdf->isEnabled() && !window.actionSet().print->isEnabled());
    for (const int key : {Qt::Key_Right, Qt::Key_Left, Qt::Key_Home, Qt::Key_End})
        window.key(key); // there is nowhere to go
    QCOMPARE(window.presentation()->pageCount(), 0U);
}

void tst_DocViewer::noDocument()
{
    Window window;
    QCOMPARE(window.view()->message(),
             text("No document\nOpen a folder of page result files, or drop it here."));
    QCOMPARE(window.windowTitle(), text("Document Viewer"));
}

void tst_DocViewer::oneNameHoweverGiven_data()
{
    QTest::addColumn<QString>("folder"); // that is the current one
    QTest::addColumn<QString>("given");
    QTest::newRow("slash") << "."
                           << "deck/";
    QTest::newRow("relative") << "."
                              << "deck";
    QTest::newRow("detour") << "."
                            << "./deck//../deck/";
    QTest::newRow("dot") << "deck"
                         << ".";
    QTest::newRow("two dots") << "deck/inner"
                              << "..";
}

void tst_DocViewer::oneNameHoweverGiven()
{
    QFETCH(QString, folder);
    QFETCH(QString, given);
    const QString deck = ViewerPages::deck(*m_dir);
    QVERIFY(QDir(deck).mkdir(text("inner")));
    const QString before = QDir::currentPath();
    const auto goBack = qScopeGuard([&] { QDir::setCurrent(before); });
    QVERIFY(QDir::setCurrent(m_dir->filePath(folder)));
    Window window({}, MainWindow::Memory::Kept);
    window.open(given);
    window.open(deck);
    QCOMPARE(window.presentation()->pageCount(), 3U);
    QCOMPARE(window.recentDocuments()->paths(), QStringList({deck}));
    window.open(given);
    QCOMPARE(window.recentDocuments()->paths(), QStringList({deck}));
    QCOMPARE(window.presentation()->document().name, deck);
    QCOMPARE(window.windowTitle(), text("deck - Document Viewer"));
    window.actionSet().savePdf->trigger();
    auto *dialog = window.findChild<QFileDialog *>();
    QVERIFY(dialog);
    QCOMPARE(dialog->selectedFiles(), QStringList({deck + text(".pdf")}));
}

void tst_DocViewer::recentDocuments()
{
    const QString pictures = ViewerPages::pictures(*m_dir);
    const QString deck = ViewerPages::deck(*m_dir);
    {
        Window window({}, MainWindow::Memory::Kept);
        window.open(pictures);
        window.open(deck);
        window.open(m_dir->filePath(text("missing")));
        window.open(pictures);
        QCOMPARE(window.recentDocuments()->paths(), QStringList({pictures, deck}));
    }
    Window window({}, MainWindow::Memory::Kept);
    QMenu *menu = window.actionSet().recent;
    QStringList entries;
    for (const QAction *action : menu->actions())
        entries += action->text();
    QCOMPARE(entries, QStringList({text("&1 ") + pictures, text("&2 ") + deck, QString(),
                                   text("&Clear List")}));
    menu->actions().at(1)->trigger();
    QCOMPARE(window.presentation()->document().name, deck);
    QCOMPARE(window.recentDocuments()->paths(), QStringList({deck, pictures}));
    for (int i = 0; i < 12; ++i)
        window.recentDocuments()->add(text("/document %1 & more").arg(i));
    QCOMPARE(window.recentDocuments()->paths().size(), 10);
    QCOMPARE(menu->actions().constFirst()->text(), text("&1 /document 11 && more"));
    menu->actions().constLast()->trigger();
    QCOMPARE(window.recentDocuments()->paths(), QStringList());
    QVERIFY(!menu->isEnabled());
}

void tst_DocViewer::closedInFullScreen()
{
    const QString deck = ViewerPages::deck(*m_dir);
    {
        Window window(deck, MainWindow::Memory::Kept);
        window.key(Qt::Key_F5);
        QVERIFY(window.isFullScreen());
        window.close();
    }
    Window window(deck, MainWindow::Memory::Kept);
    QVERIFY(!window.isFullScreen());
    QVERIFY(window.findChild<QDockWidget *>()->isVisible());
    QVERIFY(window.findChild<QToolBar *>()->isVisible());
    QVERIFY(window.menuBar()->isVisible());
}

// What Qt would take for a place to mark changes in is a name all the same.
void tst_DocViewer::oddTitle()
{
    Window window(
        ViewerPages::document(*m_dir, text("a[*]b"), {ViewerPages::picturePage(Qt::red)}));
    QCOMPARE(window.windowTitle(), text("a[*][*]b - Document Viewer"));
}

void tst_DocViewer::timelineHidden()
{
    Window window(ViewerPages::deck(*m_dir));
    QAction *entry = nullptr;
    for (QAction *action : window.actionSet().panels->actions()) {
        if (action->text() == text("&Timeline"))
            entry = action;
    }
    QVERIFY(entry && entry->isChecked());
    entry->trigger();
    QVERIFY(!window.timeline()->isVisible());
    window.key(Qt::Key_End);
    window.key(Qt::Key_Home);
    QVERIFY(!window.timeline()->isVisible());
    entry->trigger();
    QVERIFY(window.timeline()->isVisible());
}

// One move is one change, though the manager has a signal of its own for it.
void tst_DocViewer::oneChangePerMove()
{
    Window window(ViewerPages::deck(*m_dir));
    QSignalSpy changed(window.presentation(), &Presentation::changed);
    window.presentation()->goTo(2);
    QCOMPARE(changed.count(), 1);
    window.presentation()->previous();
    QCOMPARE(changed.count(), 2);
}

void tst_DocViewer::noMemory()
{
    Window window(ViewerPages::pictures(*m_dir));
    QCOMPARE(window.recentDocuments()->paths(), QStringList());
}

void tst_DocViewer::dropped()
{
    const QString pictures = ViewerPages::pictures(*m_dir);
    Window window(ViewerPages::deck(*m_dir));
    for (const QString &path : {pictures, pictures + text("/page_2")}) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(&window, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &drop);
        QCOMPARE(window.presentation()->document().name, path);
    }
    QCOMPARE(window.colour(), text("#00ff00"));
    QCOMPARE(window.statusText(), text("Page 1 of 1 | end"));
    QCOMPARE(window.windowTitle(), text("page_2 - Document Viewer"));
}

void tst_DocViewer::refusedDrops_data()
{
    QTest::addColumn<QList<QUrl>>("urls");
    QTest::newRow("none") << QList<QUrl>();
    QTest::newRow("elsewhere") << QList<QUrl>{QUrl(text("https://example.com/deck"))};
    QTest::newRow("two") << QList<QUrl>{QUrl(text("file:///a")), QUrl(text("file:///b"))};
}

void tst_DocViewer::refusedDrops()
{
    QFETCH(QList<QUrl>, urls);
    Window window;
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&window, &enter);
    QVERIFY(!enter.isAccepted());
}

void tst_DocViewer::timeline()
{
    Window window(ViewerPages::deck(*m_dir));
    QVERIFY(window.timeline()->isVisible());
    QVERIFY(window.timeline()->isEnabled());
    QSignalSpy scrubbed(window.timeline(), &Timeline::scrubbed);
    QTest::keyClick(window.timeline(), Qt::Key_PageDown);
    QTRY_COMPARE(scrubbed.count(), 1);
    QCOMPARE(window.view()->image(), scrubbed.at(0).at(0).value<QImage>());
    QCOMPARE(window.statusText(),
             text("Page 1 of 3 | Step 1 of 1 | %1 of 200 ms | looking at another moment")
                 .arg(scrubbed.at(0).at(2).toUInt()));
    QCOMPARE(window.presentation()->position().step, 0U); // what is presented has not moved
    QTest::keyClick(window.timeline(), Qt::Key_Escape);
    QCOMPARE(window.statusText(),
             text("Page 1 of 3 | Step 0 of 1 | 0 of 0 ms | next: step 1 of 1"));
    window.key(Qt::Key_End);
    QVERIFY(!window.timeline()->isVisible()); // a picture has no steps
}

void tst_DocViewer::movingEndsScrubbing_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("status");
    QTest::newRow("Space") << "space"
                           << "Page 1 of 3 | Step 1 of 1 | 200 of 200 ms | next: page 2";
    QTest::newRow("Next") << "next"
                          << "Page 1 of 3 | Step 1 of 1 | 200 of 200 ms | next: page 2";
    QTest::newRow("Previous") << "previous"
                              << "Page 1 of 3 | Step 0 of 1 | 0 of 0 ms | next: step 1 of 1";
    QTest::newRow("First") << "first"
                           << "Page 1 of 3 | Step 0 of 1 | 0 of 0 ms | next: step 1 of 1";
    QTest::newRow("held") << "hold"
                          << "Page 1 of 3 | Step 1 of 1 | 120 of 200 ms | next: end of step 1";
}

void tst_DocViewer::movingEndsScrubbing()
{
    QFETCH(QString, what);
    QFETCH(QString, status);
    Window window(ViewerPages::deck(*m_dir));
    window.presentation()->hold({0, 1, 80});
    QSignalSpy scrubbed(window.timeline(), &Timeline::scrubbed);
    window.timeline()->setFocus();
    QTest::keyClick(window.timeline(), Qt::Key_Right);
    QTRY_COMPARE(scrubbed.count(), 1);
    QVERIFY(window.timeline()->isScrubbing());
    if (what == text("space"))
        QTest::keyClick(window.timeline(), Qt::Key_Space);
    else if (what == text("next"))
        window.actionSet().next->trigger();
    else if (what == text("previous"))
        window.actionSet().previous->trigger();
    else if (what == text("first"))
        window.actionSet().first->trigger();
    else
        window.presentation()->hold({0, 1, 120});
    QVERIFY(!window.timeline()->isScrubbing());
    QCOMPARE(window.statusText(), status);
    QCOMPARE(window.view()->image(), window.presentation()->picture().image);
}

void tst_DocViewer::scrubbingWhileAStepRuns()
{
    Window window(ViewerPages::document(*m_dir, text("slow"),
                                        {ViewerPages::slidePage(0, Qt::red, "click 0.4")}));
    window.key(Qt::Key_Right);
    QSignalSpy scrubbed(window.timeline(), &Timeline::scrubbed);
    QTest::keyClick(window.timeline(), Qt::Key_End);
    QTRY_COMPARE(scrubbed.count(), 1);
    const QString looking = text("Page 1 of 1 | Step 1 of 1 | 400 of 400 ms | "
                                 "looking at another moment");
    QVERIFY(window.presentation()->isRunning());
    QSignalSpy changed(window.presentation(), &Presentation::changed);
    QVERIFY(changed.wait());
    QVERIFY(window.presentation()->isRunning());
    QCOMPARE(window.statusText(), looking);
    QCOMPARE(window.view()->image(), scrubbed.at(0).at(0).value<QImage>());
    QVERIFY(window.waitForStop());
    QVERIFY(window.timeline()->isScrubbing());
    QCOMPARE(window.statusText(), looking);
}

// Its widgets live a little longer than the window, and the timeline lets go when it is hidden.
void tst_DocViewer::deletedWhileScrubbing()
{
    auto window = std::make_unique<Window>(ViewerPages::deck(*m_dir));
    window->timeline()->setFocus();
    QTest::keyClick(window->timeline(), Qt::Key_PageDown);
    QVERIFY(window->timeline()->isScrubbing());
    QSignalSpy ended(window->timeline(), &Timeline::scrubEnded);
    QSignalSpy changed(window->presentation(), &Presentation::changed);
    window.reset();
    QCOMPARE(ended.count(), 1);
    QCOMPARE(changed.count(), 0);
}

void tst_DocViewer::thumbnailChosen()
{
    Window window(ViewerPages::pictures(*m_dir));
    QCOMPARE(window.thumbnails()->currentIndex().row(), 0);
    Q_EMIT window.thumbnails()->pageChosen(2);
    QCOMPARE(window.page(), 2);
    window.key(Qt::Key_Left);
    QCOMPARE(window.thumbnails()->currentIndex().row(), 1);
}

void tst_DocViewer::anotherDocumentWhileAStepRuns()
{
    const QString pictures = ViewerPages::pictures(*m_dir);
    Window window(ViewerPages::deck(*m_dir));
    window.key(Qt::Key_Right);
    QVERIFY(window.presentation()->isRunning());
    window.open(pictures);
    QVERIFY(!window.presentation()->isRunning());
    QCOMPARE(window.statusText(), text("Page 1 of 3 | next: page 2"));

    // In the midst of a frame, too.
    window.open(m_dir->filePath(text("deck")));
    window.key(Qt::Key_Right);
    bool isOpened = false;
    connect(window.presentation(), &Presentation::changed, &window, [&] {
        if (!std::exchange(isOpened, true))
            window.open(pictures);
    });
    QTRY_VERIFY(isOpened);
    QVERIFY(!window.presentation()->isRunning());
    QCOMPARE(window.statusText(), text("Page 1 of 3 | next: page 2"));
    QCOMPARE(window.colour(), text("#ff0000"));
}

void tst_DocViewer::closingWhileThumbnailsLoad()
{
    QList<QByteArray> pages;
    for (int i = 0; i < 20; ++i)
        pages += ViewerPages::picturePage(QColor::fromHsv(i * 10, 255, 255), {1500, 1500});
    const QString folder = ViewerPages::document(*m_dir, text("large"), pages);
    auto window = std::make_unique<Window>(folder);
    QCoreApplication::processEvents();
    QElapsedTimer timer;
    timer.start();
    window->close();
    window.reset();
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
}

void tst_DocViewer::thousandPages_data()
{
    QTest::addColumn<bool>("animated");
    QTest::addColumn<QString>("status");
    QTest::newRow("pictures") << false << "Page 1 of 1000 | next: page 2";
    QTest::newRow("slides") << true
                            << "Page 1 of 1000 | Step 0 of 1 | 0 of 0 ms | next: step 1 of 1";
}

void tst_DocViewer::thousandPages()
{
    QFETCH(bool, animated);
    QFETCH(QString, status);
    const QString folder = ViewerPages::document(*m_dir, text("long"), {});
    QString picture;
    for (int i = 0; i < 1000; ++i) {
        const QString name = text("long/page_%1").arg(i);
        if (animated) // each has its own number
            PageFiles::write(*m_dir, name, ViewerPages::slidePage(i, Qt::red, "click 0.2"));
        else if (i == 0)
            picture =
                PageFiles::write(*m_dir, name, ViewerPages::picturePage(Qt::red, {1280, 720}));
        else // a link, or the files would take gigabytes
            QVERIFY(QFile::link(picture, m_dir->filePath(name)));
    }
    qint64 best = 60000;
    for (int attempt = 0; attempt < 3 && best >= 1000; ++attempt) {
        QElapsedTimer timer;
        timer.start();
        Window window(folder);
        window.view()->repaint();
        best = qMin(best, timer.elapsed());
        QCOMPARE(window.statusText(), status);
        QCOMPARE(window.colour(), text("#ff0000"));
    }
    QVERIFY2(best < 1000, qPrintable(QString::number(best)));
}

// Arrows of the palette's colour, whichever it is when they are painted.
void tst_DocViewer::arrowsOnDarkGround()
{
    const QPalette before = QApplication::palette();
    Window window;
    for (const QColor &colour : {QColor(0xf0, 0xe0, 0xd0), QColor(0x10, 0x20, 0x30)}) {
        QPalette palette = before;
        palette.setColor(QPalette::Active, QPalette::ButtonText, colour);
        QApplication::setPalette(palette);
        const ViewerActions &actions = window.actionSet();
        for (const QAction *action :
             {actions.first, actions.previous, actions.next, actions.last}) {
            const QImage icon = action->icon().pixmap(32, 32).toImage();
            int solid = 0;
            for (int y = 0; y < icon.height(); ++y) {
                for (int x = 0; x < icon.width(); ++x) {
                    if (icon.pixelColor(x, y).alpha() == 255) {
                        QCOMPARE(icon.pixelColor(x, y).name(), colour.name());
                        ++solid;
                    }
                }
            }
            QVERIFY2(solid > 20, qPrintable(action->text()));
        }
    }
    QApplication::setPalette(before);
}

void tst_DocViewer::focusAndNames()
{
    Window window(ViewerPages::deck(*m_dir));
    QVERIFY(window.view()->hasFocus());
    QTest::keyClick(window.view(), Qt::Key_Tab);
    QVERIFY(window.timeline()->hasFocus());
    QTest::keyClick(window.timeline(), Qt::Key_Tab);
    QVERIFY(window.thumbnails()->hasFocus());
    QTest::keyClick(window.thumbnails(), Qt::Key_Tab);
    QVERIFY(window.view()->hasFocus());
    QCOMPARE(window.view()->accessibleName(), text("Page"));
    QCOMPARE(window.view()->accessibleDescription(), text("Page 1 of 3"));
    QCOMPARE(window.timeline()->accessibleName(), text("Timeline"));
    QCOMPARE(window.thumbnails()->accessibleName(), text("Pages"));
}

QTEST_MAIN(tst_DocViewer)

#include "tst_docviewer.moc"
