#include "AnimPaint.h"
#include "PageFiles.h"

#include "docdisplay/DocDisplayMgr.h"
#include "tools/docviewer/Timeline.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QToolTip>
#include <QtTest>

#include <memory>

using namespace AnimModel;
using namespace AnimPaint;

Q_DECLARE_METATYPE(SlideMoment)

namespace {

using Durations = QVector<quint32>;

const Durations kTwoSteps{1000, 500};
const Durations kLongStep{4294967295, 500, 0};

// What a test fails with.
QString inWords(SlideMoment moment)
{
    return QStringLiteral("step %1, %2 ms").arg(moment.step).arg(moment.ms);
}

// Page 0, 60 x 40: step 1 moves a red shape in for a second, step 2 a green one out for half of it.
QByteArray slide()
{
    return modelBytes({newPage({newShape(1, 40, 5, 20, 10, png(20, 10, kRed)),
                                newShape(2, 0, 20, 10, 10, png(10, 10, kGreen))},
                               {newEffect(kClick, 1, 1), newEffect(kClick, 0.5F, 2, kLeave)},
                               png(60, 40, kGrey), 0)},
                      60, 40);
}

QByteArray slideOf(const QByteArray &effects)
{
    return modelBytes({newPage({}, newEffects(effects), png(60, 40, kGrey), 0)}, 60, 40);
}

// The frame with the left edges of the two shapes of slide().
QImage frame(int red, int green)
{
    QImage image = flat(60, 40, kGrey);
    fill(image, QRect(red, 5, 20, 10), kRed);
    fill(image, QRect(green, 20, 10, 10), kGreen);
    return image;
}

// A timeline whose line is 324 pixels wide: of slide(), home takes the first 8 of them, step 1 the
// next 208 and step 2 the last 108.
class Line : public Timeline
{
public:
    explicit Line(const QByteArray &payload = slide())
    {
        resize(332, 30);
        show(); // lays it out
        setSlide(PageContent::ofSlide(payload, 0), 0);
    }

    void mouse(QEvent::Type type, int x, Qt::MouseButton button = Qt::LeftButton)
    {
        const bool isMove = type == QEvent::MouseMove;
        QMouseEvent event(type, QPointF(4 + x, 15), isMove ? Qt::NoButton : button,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : button,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(this, &event);
    }
    void press(int x) { mouse(QEvent::MouseButtonPress, x); }
    void move(int x) { mouse(QEvent::MouseMove, x); }
    void release(int x) { mouse(QEvent::MouseButtonRelease, x); }

    bool keeps(Qt::Key key)
    {
        QKeyEvent event(QEvent::ShortcutOverride, key, Qt::NoModifier);
        event.ignore();
        QCoreApplication::sendEvent(this, &event);
        return event.isAccepted();
    }

    QString toolTipAt(int x)
    {
        QHelpEvent event(QEvent::ToolTip, QPoint(4 + x, 15), mapToGlobal(QPoint(4 + x, 15)));
        QCoreApplication::sendEvent(this, &event);
        const QString text = QToolTip::text();
        QToolTip::hideText();
        return text;
    }

    // The pixels that the cursor is painted in, as the middle one; -1 when there is none.
    int cursor()
    {
        const QImage image = grab().toImage();
        const QColor colour = palette().color(QPalette::WindowText);
        int first = 0;
        while (first < image.width() && image.pixelColor(first, 2) != colour)
            ++first;
        return first == image.width() ? -1 : first + 1 - 4;
    }
};

// What a timeline sends, in words; frames may still be due until take().
class Received
{
public:
    explicit Received(Timeline &timeline)
    {
        QObject::connect(&timeline, &Timeline::scrubbed, &m_context,
                         [this](const QImage &image, quint32 step, quint32 ms) {
                             words << inWords({step, ms});
                             frames << image;
                         });
        QObject::connect(&timeline, &Timeline::scrubEnded, &m_context,
                         [this] { words << QStringLiteral("end"); });
    }

    QStringList take()
    {
        QCoreApplication::processEvents();
        return std::exchange(words, QStringList());
    }

    QStringList words;
    QVector<QImage> frames;

private:
    QObject m_context;
};

QStringList list(std::initializer_list<const char *> words)
{
    QStringList strings;
    for (const char *word : words)
        strings << QString::fromLatin1(word);
    return strings;
}

struct Destroy
{
    void operator()(DocDisplayMgr *manager) const { manager->Destroy(); }
};

} // namespace

class TestTimeline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void momentOfPixel_data()
    {
        QTest::addColumn<Durations>("durations");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("x");
        QTest::addColumn<SlideMoment>("moment");
        const auto row = [](const char *name, const Durations &durations, int width, int x,
                            SlideMoment moment) {
            QTest::addRow("%s, x %d", name, x) << durations << width << x << moment;
        };
        row("two steps", kTwoSteps, 324, -100, {0, 0});
        row("two steps", kTwoSteps, 324, 0, {0, 0});
        row("two steps", kTwoSteps, 324, 7, {0, 0});
        row("two steps", kTwoSteps, 324, 8, {1, 0});
        row("two steps", kTwoSteps, 324, 9, {1, 5});
        row("two steps", kTwoSteps, 324, 108, {1, 483});
        row("two steps", kTwoSteps, 324, 215, {1, 1000});
        row("two steps", kTwoSteps, 324, 216, {2, 0});
        row("two steps", kTwoSteps, 324, 323, {2, 500});
        row("two steps", kTwoSteps, 324, 324, {2, 500});
        row("two steps", kTwoSteps, 324, 100000, {2, 500});
        row("49 days", kLongStep, 332, 8, {1, 0});
        row("49 days", kLongStep, 332, 161, {1, 2147483648});
        row("49 days", kLongStep, 332, 314, {1, 4294967295});
        row("49 days", kLongStep, 332, 315, {2, 0});
        row("49 days", kLongStep, 332, 323, {2, 500});
        row("49 days", kLongStep, 332, 324, {3, 0});
        row("49 days", kLongStep, 332, 331, {3, 0});
        row("no time", {0, 0}, 216, 7, {0, 0});
        row("no time", {0, 0}, 216, 8, {1, 0});
        row("no time", {0, 0}, 216, 111, {1, 0});
        row("no time", {0, 0}, 216, 112, {2, 0});
        row("more steps than pixels", Durations(500, 100), 400, 0, {2, 0});
        row("more steps than pixels", Durations(500, 100), 400, 399, {500, 0});
        row("more steps than pixels", Durations(500, 100), 400, 400, {500, 100});
        row("no steps", {}, 100, 50, {0, 0});
        row("no room", kTwoSteps, 0, 0, {2, 500});
        row("less than no room", kTwoSteps, -5, 0, {2, 500});
        row("so many days that they do not fit 64 bits", Durations(100000, 4294967295), 700000,
            699999, {100000, 4294967295});
    }
    void momentOfPixel()
    {
        QFETCH(Durations, durations);
        QFETCH(int, width);
        QFETCH(int, x);
        QFETCH(SlideMoment, moment);
        QCOMPARE(inWords(TimelineScale(durations, width).momentAt(x)), inWords(moment));
    }

    void pixelOfMoment_data()
    {
        QTest::addColumn<Durations>("durations");
        QTest::addColumn<int>("width");
        QTest::addColumn<SlideMoment>("moment");
        QTest::addColumn<int>("x");
        const auto row = [](const char *name, const Durations &durations, int width,
                            SlideMoment moment, int x) {
            QTest::addRow("%s, %s", name, qPrintable(inWords(moment)))
                << durations << width << moment << x;
        };
        row("two steps", kTwoSteps, 324, {0, 0}, 0);
        row("two steps", kTwoSteps, 324, {0, 77}, 0);
        row("two steps", kTwoSteps, 324, {1, 0}, 8);
        row("two steps", kTwoSteps, 324, {1, 2}, 8);
        row("two steps", kTwoSteps, 324, {1, 3}, 9);
        row("two steps", kTwoSteps, 324, {1, 483}, 108);
        row("two steps", kTwoSteps, 324, {1, 1000}, 215);
        row("two steps", kTwoSteps, 324, {1, 1040}, 215);
        row("two steps", kTwoSteps, 324, {2, 0}, 216);
        row("two steps", kTwoSteps, 324, {2, 500}, 323);
        row("two steps", kTwoSteps, 324, {3, 0}, 216);
        row("two steps", kTwoSteps, 324, {4294967295, 4294967295}, 323);
        row("49 days", kLongStep, 332, {1, 2147483648}, 161);
        row("49 days", kLongStep, 332, {1, 4294967295}, 314);
        row("49 days", kLongStep, 332, {3, 0}, 324);
        row("more steps than pixels", Durations(500, 100), 400, {500, 100}, 399);
        row("no steps", {}, 100, {1, 1}, 0);
        row("no room", kTwoSteps, 0, {1, 500}, 0);
    }
    void pixelOfMoment()
    {
        QFETCH(Durations, durations);
        QFETCH(int, width);
        QFETCH(SlideMoment, moment);
        QFETCH(int, x);
        QCOMPARE(TimelineScale(durations, width).xOf(moment), x);
    }

    // Every pixel is found again, and no segment is too small to be hit.
    void everySegmentCanBeHit_data()
    {
        QTest::addColumn<Durations>("durations");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("least");
        QTest::newRow("two steps") << kTwoSteps << 324 << 8;
        QTest::newRow("49 days") << kLongStep << 332 << 8;
        QTest::newRow("no time") << Durations{0, 0, 0} << 32 << 8;
        QTest::newRow("500 steps, wide") << Durations(500, 3000) << 5000 << 8;
        QTest::newRow("500 steps, narrow") << Durations(500, 3000) << 800 << 1;
        QTest::newRow("one of 500 takes 49 days")
            << Durations(499, 0) + Durations{4294967295} << 800 << 1;
    }
    void everySegmentCanBeHit()
    {
        QFETCH(Durations, durations);
        QFETCH(int, width);
        QFETCH(int, least);
        const TimelineScale scale(durations, width);
        QCOMPARE(scale.left(0), 0);
        QCOMPARE(scale.right(static_cast<quint32>(durations.size())), width);
        for (quint32 step = 0; step <= static_cast<quint32>(durations.size()); ++step) {
            QVERIFY(scale.right(step) - scale.left(step) >= least);
            QCOMPARE(inWords(scale.momentAt(scale.left(step))), inWords({step, 0}));
            const int last = scale.right(step) - 1;
            if (last > scale.left(step))
                QCOMPARE(inWords(scale.momentAt(last)), inWords({step, scale.duration(step)}));
        }
        for (int x = 0; x < width; ++x) {
            const SlideMoment moment = scale.momentAt(x);
            if (scale.duration(moment.step) > quint32(width))
                QCOMPARE(scale.xOf(moment), x);
        }
    }

    void keys_data()
    {
        QTest::addColumn<SlideMoment>("from");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("to");
        const auto row = [](SlideMoment from, const char *name, Qt::Key key, SlideMoment to) {
            QTest::addRow("%s from %s", name, qPrintable(inWords(from)))
                << from << int(key) << inWords(to);
        };
        row({0, 0}, "right", Qt::Key_Right, {1, 0});
        row({1, 0}, "right", Qt::Key_Right, {1, 40});
        row({1, 960}, "right", Qt::Key_Right, {1, 1000});
        row({1, 961}, "right", Qt::Key_Right, {1, 1000});
        row({1, 1000}, "right", Qt::Key_Right, {2, 0});
        row({2, 500}, "right", Qt::Key_Right, {2, 500});
        row({0, 0}, "left", Qt::Key_Left, {0, 0});
        row({1, 0}, "left", Qt::Key_Left, {0, 0});
        row({1, 40}, "left", Qt::Key_Left, {1, 0});
        row({1, 39}, "left", Qt::Key_Left, {1, 0});
        row({2, 0}, "left", Qt::Key_Left, {1, 1000});
        row({2, 500}, "left", Qt::Key_Left, {2, 460});
        row({0, 0}, "page down", Qt::Key_PageDown, {1, 0});
        row({1, 500}, "page down", Qt::Key_PageDown, {2, 0});
        row({2, 0}, "page down", Qt::Key_PageDown, {2, 500});
        row({2, 500}, "page down", Qt::Key_PageDown, {2, 500});
        row({2, 500}, "page up", Qt::Key_PageUp, {2, 0});
        row({2, 0}, "page up", Qt::Key_PageUp, {1, 0});
        row({1, 0}, "page up", Qt::Key_PageUp, {0, 0});
        row({0, 0}, "page up", Qt::Key_PageUp, {0, 0});
        row({2, 300}, "home", Qt::Key_Home, {0, 0});
        row({0, 0}, "end", Qt::Key_End, {2, 500});
    }
    void keys()
    {
        QFETCH(SlideMoment, from);
        QFETCH(int, key);
        QFETCH(QString, to);
        Line line;
        Received received(line);
        line.setPosition(from.step, from.ms);
        QTest::keyClick(&line, static_cast<Qt::Key>(key));
        QVERIFY(line.isScrubbing());
        QCOMPARE(received.take(), QStringList{to});
    }

    // 49 days on there is no wrapping round.
    void framesAtTheEndOfALongStep()
    {
        const TimelineScale scale(kLongStep, 332);
        QCOMPARE(inWords(scale.nextFrame({1, 4294967200})), inWords({1, 4294967240}));
        QCOMPARE(inWords(scale.nextFrame({1, 4294967280})), inWords({1, 4294967295}));
        QCOMPARE(inWords(scale.nextFrame({1, 4294967295})), inWords({2, 0}));
        QCOMPARE(inWords(scale.previousFrame({2, 0})), inWords({1, 4294967295}));
        QCOMPARE(inWords(scale.nextFrame({3, 0})), inWords({3, 0}));
    }

    void keysScrubUntilTheyAreLetGo_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Escape") << int(Qt::Key_Escape);
        QTest::newRow("Return") << int(Qt::Key_Return);
        QTest::newRow("Enter") << int(Qt::Key_Enter);
        QTest::newRow("the focus is lost") << 0;
    }
    void keysScrubUntilTheyAreLetGo()
    {
        QFETCH(int, key);
        Line line;
        Received received(line);
        QTest::keyClick(&line, Qt::Key_PageDown);
        QCOMPARE(received.take(), list({"step 1, 0 ms"}));
        QTest::keyClick(&line, Qt::Key_Right);
        if (key != 0) {
            QTest::keyClick(&line, static_cast<Qt::Key>(key));
        } else {
            QFocusEvent out(QEvent::FocusOut);
            QCoreApplication::sendEvent(&line, &out);
        }
        QVERIFY(!line.isScrubbing());
        QCOMPARE(received.words, list({"step 1, 40 ms", "end"})); // the frame that was due, too
        received.take();
        QTest::keyClick(&line, Qt::Key_Escape); // nothing to end
        QCOMPARE(received.take(), QStringList());
    }

    // With the focus its keys are not the shortcuts of the window; all others are.
    void keepsItsKeys()
    {
        Line line;
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_PageUp, Qt::Key_PageDown,
                                  Qt::Key_Home, Qt::Key_End})
            QVERIFY(line.keeps(key));
        QVERIFY(!line.keeps(Qt::Key_Space));
        QVERIFY(!line.keeps(Qt::Key_Escape));
        line.press(100);
        QVERIFY(line.keeps(Qt::Key_Escape));
        line.release(100);
        QVERIFY(!line.keeps(Qt::Key_Escape));
        line.clear();
        QVERIFY(!line.keeps(Qt::Key_Left));
    }

    void dragging()
    {
        Line line;
        Received received(line);
        line.press(108);
        QVERIFY(line.isScrubbing());
        QCOMPARE(received.words, QStringList()); // not at once
        QCOMPARE(received.take(), list({"step 1, 483 ms"}));
        QCOMPARE(received.take(), QStringList());
        line.move(108); // no other moment
        QCOMPARE(received.take(), QStringList());
        line.move(150);
        line.move(9);
        line.move(216);
        QCOMPARE(received.take(), list({"step 2, 0 ms"})); // of a round the last
        line.move(-50);
        QCOMPARE(received.take(), list({"step 0, 0 ms"}));
        line.move(5000);
        line.release(5000);
        QVERIFY(!line.isScrubbing());
        QCOMPARE(received.words, list({"step 2, 500 ms", "end"}));
        received.take();
        line.move(100);
        line.release(100);
        QCOMPARE(received.take(), QStringList());
        line.mouse(QEvent::MouseButtonPress, 100, Qt::RightButton);
        QVERIFY(!line.isScrubbing());
        QCOMPARE(received.take(), QStringList());
    }

    void cursorFollowsTheUserThenThePosition()
    {
        Line line;
        QCOMPARE(line.cursor(), 0);
        line.setPosition(1, 483);
        QCOMPARE(line.cursor(), 108);
        line.press(216);
        QCOMPARE(line.cursor(), 216);
        line.setPosition(1, 1000); // goes on meanwhile
        QCOMPARE(line.cursor(), 216);
        line.release(216);
        QCOMPARE(line.cursor(), 215);
        line.setPosition(4294967295, 4294967295);
        QCOMPARE(line.cursor(), 323);
        line.setSlide(PageContent::ofSlide(slide(), 0), 0);
        QCOMPARE(line.cursor(), 0);
    }

    void frames_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<SlideMoment>("moment");
        QTest::addColumn<QImage>("image");
        const auto row = [](int x, SlideMoment moment, const QImage &image) {
            QTest::addRow("%s", qPrintable(inWords(moment))) << x << moment << image;
        };
        row(0, {0, 0}, frame(-20, 0));
        row(8, {1, 0}, frame(-20, 0));
        row(108, {1, 483}, frame(8, 0)); // -20 + 0.483 x 60
        row(60, {1, 251}, frame(-4, 0));
        row(215, {1, 1000}, frame(40, 0));
        row(216, {2, 0}, frame(40, 0));
        row(270, {2, 252}, frame(40, 30));
        row(323, {2, 500}, frame(40, 60));
    }
    void frames()
    {
        QFETCH(int, x);
        QFETCH(SlideMoment, moment);
        QFETCH(QImage, image);
        const QTemporaryDir dir;
        const QString file =
            PageFiles::write(dir, QStringLiteral("page_0"), PageFiles::pageResultFile(3, slide()));
        const std::unique_ptr<DocDisplayMgr, Destroy> manager(CreateDisplayMgr());
        manager->Init(DocCovRslt::DOCRSLT_PPT_ANIM, 1);
        manager->AddDocPage(0, file);

        Line line;
        Received received(line);
        line.press(x);
        QCOMPARE(received.take(), QStringList{inWords(moment)});
        QCOMPARE(received.frames.first().convertToFormat(QImage::Format_RGB32), image);
        QCOMPARE(received.frames.first(), manager->GetImg({0, moment.step, moment.ms}));
    }

    void liveManagerIsUntouched()
    {
        const QTemporaryDir dir;
        const QString file =
            PageFiles::write(dir, QStringLiteral("page_0"), PageFiles::pageResultFile(3, slide()));
        const std::unique_ptr<DocDisplayMgr, Destroy> manager(CreateDisplayMgr());
        manager->Init(DocCovRslt::DOCRSLT_PPT_ANIM, 1);
        manager->AddDocPage(0, file);
        manager->SetAnimStatus({0, 2, 0}); // stands there, loaded
        QSignalSpy updates(manager.get(), &DocDisplayMgr::s_PptAnimUpdate);
        QSignalSpy finishes(manager.get(), &DocDisplayMgr::s_PptAnimFnished);

        Line line;
        Received received(line);
        line.press(8);
        for (int x = 8; x < 324; x += 40) {
            line.move(x);
            received.take();
        }
        line.release(323);
        QTest::keyClick(&line, Qt::Key_Home);
        received.take();

        QCOMPARE(updates.size(), 0);
        QCOMPARE(finishes.size(), 0);
        DocDisplayMgr::AnimStatus status{};
        manager->GetAnimStatus(status);
        QCOMPARE(status.step, 2U);
        QCOMPARE(status.passedDuration, 0U);
        QCOMPARE(manager->GetImg().convertToFormat(QImage::Format_RGB32), frame(40, 0));
        QCOMPARE(manager->GetActionState(), 9);
    }

    void slideThatCannotBeScrubbed_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<int>("page");
        QTest::newRow("no steps") << slideOf("") << 0;
        QTest::newRow("nothing") << QByteArray() << 0;
        QTest::newRow("no model") << garbage() << 0;
        QTest::newRow("cut off") << slide().chopped(1) << 0;
        QTest::newRow("another page") << slide() << 1;
        QTest::newRow("page before the first") << slide() << -1;
        QTest::newRow("page beyond the identifiers") << slide() << 65536;
        // Announces 30000 x 30000 pixels.
        const QByteArray huge =
            QByteArray::fromHex("89504e470d0a1a0a0000000d4948445200007530000075300802000000e9456f"
                                "ed0000000949444154789c630000000100015eff7df90000000049454e44ae42"
                                "6082");
        QTest::newRow("picture too large")
            << modelBytes({newPage({newShape(1, 0, 0, 4, 4, huge)}, {newEffect(kClick, 1, 1)},
                                   png(8, 6, kGrey), 0)})
            << 0;
    }
    void slideThatCannotBeScrubbed()
    {
        QFETCH(QByteArray, payload);
        QFETCH(int, page);
        Line line;
        QVERIFY(line.isEnabled());
        line.setSlide(PageContent::ofSlide(payload, static_cast<unsigned int>(page)), page);
        QVERIFY(!line.isEnabled());
        QCOMPARE(line.accessibleDescription(), QStringLiteral("No steps"));
        Received received(line);
        line.setPosition(1, 20);
        line.press(100);
        QTest::keyClick(&line, Qt::Key_Right);
        QVERIFY(!line.isScrubbing());
        line.setEnabled(true); // even so
        line.press(100);
        QTest::keyClick(&line, Qt::Key_Right);
        line.release(100);
        QCOMPARE(received.take(), QStringList());
        line.setEnabled(false);
        QCOMPARE(line.cursor(), -1);

        line.setSlide(PageContent::ofSlide(slide(), 0), 0);
        QVERIFY(line.isEnabled());
        line.press(215);
        QCOMPARE(received.take(), list({"step 1, 1000 ms"}));
    }

    // A background that is no picture: steps, but no frames.
    void brokenBackground()
    {
        Line line(modelBytes({newPage({}, newEffects("click 1"), garbage(), 0)}));
        Received received(line);
        QVERIFY(line.isEnabled());
        line.press(8);
        QCOMPARE(received.take(), list({"step 1, 0 ms"}));
        QVERIFY(received.frames.first().isNull());
    }

    void otherSlideEndsTheScrub_data()
    {
        QTest::addColumn<int>("how");
        QTest::newRow("another slide") << 0;
        QTest::newRow("no slide") << 1;
        QTest::newRow("disabled") << 2;
    }
    void otherSlideEndsTheScrub()
    {
        QFETCH(int, how);
        Line line;
        Received received(line);
        line.press(8);
        QCOMPARE(received.take(), list({"step 1, 0 ms"}));
        if (how == 0)
            line.setSlide(PageContent::ofSlide(slideOf("click 2"), 0), 0);
        else if (how == 1)
            line.clear();
        else
            line.setEnabled(false);
        QVERIFY(!line.isScrubbing());
        QCOMPARE(received.take(), list({"end"}));
        line.setEnabled(true);
        line.move(200); // the button is still down
        line.release(200);
        QCOMPARE(received.take(), QStringList());
    }

    // A receiver may do anything.
    void deletedInASlot_data()
    {
        QTest::addColumn<bool>("atEnd");
        QTest::addColumn<bool>("isDeleted");
        QTest::newRow("deleted with a frame") << false << true;
        QTest::newRow("cleared with a frame") << false << false;
        QTest::newRow("deleted at the end") << true << true;
        QTest::newRow("cleared at the end") << true << false;
    }
    void deletedInASlot()
    {
        QFETCH(bool, atEnd);
        QFETCH(bool, isDeleted);
        QPointer<Line> line(new Line);
        QObject context;
        int calls = 0;
        const auto act = [&] {
            ++calls;
            if (isDeleted)
                delete line.data();
            else
                line->clear();
        };
        if (atEnd)
            connect(line.data(), &Timeline::scrubEnded, &context, act);
        else
            connect(line.data(), &Timeline::scrubbed, &context, act);
        QTest::keyClick(line.data(), Qt::Key_PageDown);
        if (atEnd || !isDeleted)
            QTest::keyClick(line.data(), Qt::Key_Escape);
        QCoreApplication::processEvents();
        QCOMPARE(calls, 1);
        QCOMPARE(line.isNull(), isDeleted);
        delete line.data();
    }

    void toolTips_data()
    {
        QTest::addColumn<QByteArray>("effects");
        QTest::addColumn<int>("x");
        QTest::addColumn<QString>("text");
        QTest::newRow("home") << QByteArray("click 1,click 0.5") << 3
                              << QStringLiteral("Before step 1 of 2");
        QTest::newRow("in a step") << QByteArray("click 1,click 0.5") << 108
                                   << QStringLiteral("Step 1 of 2, 0.48 s of 1.00 s");
        QTest::newRow("at its end") << QByteArray("click 1,click 0.5") << 215
                                    << QStringLiteral("Step 1 of 2, 1.00 s of 1.00 s");
        QTest::newRow("start of the next") << QByteArray("click 1,click 0.5") << 216
                                           << QStringLiteral("Step 2 of 2, 0.00 s of 0.50 s");
        QTest::newRow("minutes") << QByteArray("click 125.25") << 323
                                 << QStringLiteral("Step 1 of 1, 2:05.2 of 2:05.2");
        QTest::newRow("49 days") << QByteArray("click 9999999") << 323
                                 << QStringLiteral("Step 1 of 1, 1193:02:47.2 of 1193:02:47.2");
    }
    void toolTips()
    {
        QFETCH(QByteArray, effects);
        QFETCH(int, x);
        QFETCH(QString, text);
        Line line(slideOf(effects));
        QCOMPARE(line.toolTipAt(x), text);
        line.press(x);
        QCOMPARE(line.accessibleDescription(), text);
    }

    void isAWidgetOfAWindow()
    {
        Line line;
        QCOMPARE(line.accessibleName(), QStringLiteral("Timeline"));
        QCOMPARE(line.accessibleDescription(), QStringLiteral("Before step 1 of 2"));
        line.setPosition(2, 0);
        QCOMPARE(line.accessibleDescription(), QStringLiteral("Step 2 of 2, 0.00 s of 0.50 s"));
        QCOMPARE(line.focusPolicy(), Qt::StrongFocus);
        QVERIFY(line.sizeHint().width() >= line.minimumSizeHint().width());
        QVERIFY(line.minimumSizeHint().height() > line.fontMetrics().height());
        line.resize(0, 0);
        line.grab();
        line.press(0);
    }

    // What is played, what is ahead, the gap between two steps and the cursor, in any palette.
    void colours_data()
    {
        QTest::addColumn<QColor>("window");
        QTest::addColumn<QColor>("text");
        QTest::addColumn<QColor>("ahead");
        QTest::newRow("light") << QColor(255, 255, 255) << QColor(0, 0, 0) << QColor(178, 178, 178);
        QTest::newRow("dark") << QColor(0, 0, 0) << QColor(255, 255, 255) << QColor(77, 77, 77);
    }
    void colours()
    {
        QFETCH(QColor, window);
        QFETCH(QColor, text);
        QFETCH(QColor, ahead);
        Line line;
        QPalette palette;
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        palette.setColor(QPalette::Highlight, QColor(1, 2, 250));
        line.setPalette(palette);
        line.setPosition(1, 483);
        const QImage image = line.grab().toImage();
        const auto at = [&](int x) { return image.pixelColor(4 + x, 15); };
        QCOMPARE(at(-2), window);
        QCOMPARE(at(3), QColor(1, 2, 250));
        QCOMPARE(at(50), QColor(1, 2, 250));
        QCOMPARE(at(108), text);
        QVERIFY(qAbs(at(150).red() - ahead.red()) <= 1);
        QCOMPARE(at(215), window);
        QVERIFY(qAbs(at(216).red() - ahead.red()) <= 1);
    }

    void focusIsSeen()
    {
        Line line;
        line.setAttribute(Qt::WA_KeyboardFocusChange); // as with the Tab key
        line.activateWindow();
        line.setFocus();
        QTRY_VERIFY(line.hasFocus());
        const QImage with = line.grab().toImage();
        line.clearFocus();
        QVERIFY(line.grab().toImage() != with);
    }

    // Scrubbing from end to end through hundreds of steps, each move with its frame.
    void hundredsOfSteps()
    {
        QByteArrayList effects;
        for (int i = 0; i < 700; ++i)
            effects << (i % 2 == 0 ? "click 9999999" : "click 0");
        Line line(slideOf(effects.join(',')));
        line.resize(4 + 1000 + 4, 30);
        Received received(line);
        line.press(0);
        for (int x = 0; x < 1000; ++x) {
            line.move(x);
            received.take();
        }
        QVERIFY(received.frames.size() >= 700);
        line.move(1000);
        QCOMPARE(received.take(), QStringList()); // step 700 takes no time
        QTest::keyClick(&line, Qt::Key_Left);
        QCOMPARE(received.take(), list({"step 699, 4294967295 ms"}));
    }
};

QTEST_MAIN(TestTimeline)
#include "tst_timeline.moc"
