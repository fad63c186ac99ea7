#include "DeckHost.h"

#include <QThread>
#include <QtTest>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <vector>

// With the real timer: for what is sent and in which order, never for its rate.

using namespace DeckHost;
using Reaction = std::function<void(Host &)>;

Q_DECLARE_METATYPE(Reaction)

namespace {

constexpr int kPatience = 20000; // ms

QStringList list(const char *lines)
{
    const QString all = QString::fromLatin1(lines);
    return all.isEmpty() ? QStringList() : all.split(QStringLiteral(", "));
}

int count(const Host &host, const char *name)
{
    return host.log.filter(QLatin1String(name)).size();
}

/// Waits for the end of a run, and for what might be sent after it.
bool awaitFinish(const Host &host, int finishes = 1)
{
    if (!QTest::qWaitFor([&] { return count(host, "finish") >= finishes; }, kPatience))
        return false;
    const int sent = host.log.size();
    QTest::qWait(100); // more than two ticks
    return host.log.size() == sent;
}

} // namespace

/// What animated decks send while a slide runs, and what receivers may do.
class TestDisplayDeckSignals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStepForward()
    {
        Host host;
        QVERIFY(host.mgr->SetCurPage(0));
        QCOMPARE(host.takeLog(), list("update 0:0"));
        QVERIFY(host.mgr->NextAction());
        QCOMPARE(host.log, QStringList()); // nothing by itself
        QVector<int> lefts;
        host.atUpdate = [&] {
            QCOMPARE(host.position(), QStringLiteral("0 1 1")); // that of the start
            const QImage image = host.mgr->GetImg();
            int x = 0;
            while (x < 60 && image.pixel(x, 10) != kRed)
                ++x;
            lefts << x;
        };
        QVERIFY(awaitFinish(host));
        QCOMPARE(host.position(), QStringLiteral("0 1 1"));
        QCOMPARE(host.player().IsRunning(), false);
        QVERIFY(count(host, "update") >= 2);
        QCOMPARE(count(host, "finish"), 1);
        QCOMPARE(host.log.last(), QStringLiteral("finish ") + host.played());
        for (const QString &line : qAsConst(host.log))
            QCOMPARE(line.endsWith(QStringLiteral(" runs")),
                     line.startsWith(QStringLiteral("update 1:")));
        // The shape has moved on with each frame, and rests in the last one.
        QVERIFY(std::is_sorted(lefts.begin(), lefts.end()));
        QCOMPARE(lefts.first(), 0);
        QCOMPARE(lefts.last(), 20);
    }

    void aStepBack()
    {
        Host host;
        QVERIFY(host.mgr->SetAnimStatus({0, 2, 100}));
        QVERIFY(host.mgr->PrevAction());
        QVERIFY(!host.player().IsRunning());
        host.takeLog();
        QTest::qWait(100);
        QCOMPARE(host.log, QStringList());
        QCOMPARE(host.position(), QStringLiteral("0 1 500"));
    }

    void shortRuns_data()
    {
        QTest::addColumn<quint32>("page");
        QTest::addColumn<quint32>("step");
        QTest::addColumn<quint32>("passed");
        QTest::addColumn<bool>("isForward"); // what is done there
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<QString>("position");
        QTest::addColumn<int>("state");
        QTest::newRow("back to the slide before: its final state, started once")
            << 1U << 0U << 0U << false << list("update 2:250, update 2:250 runs, finish 2:250")
            << QStringLiteral("0 end end") << 5;
        QTest::newRow("back to a slide without steps")
            << 3U << 0U << 0U << false << list("update 0:0, update 0:1 runs, finish 0:1")
            << QStringLiteral("2 end end") << 4;
        QTest::newRow("on to a slide without steps")
            << 1U << 1U << 200U << true << list("update 0:0, update 0:1 runs, finish 0:1")
            << QStringLiteral("2 0 1") << 4;
        QTest::newRow("on to a slide that starts with a click")
            << 2U << 0U << 0U << true << list("update 0:0, update 0:1 runs, finish 0:1")
            << QStringLiteral("3 0 1") << 8;
        QTest::newRow("to the end of a step")
            << 0U << 1U << 250U << true << list("update 1:500 runs, finish 1:500")
            << QStringLiteral("0 1 500") << 1;
    }
    void shortRuns()
    {
        QFETCH(quint32, page);
        QFETCH(quint32, step);
        QFETCH(quint32, passed);
        QFETCH(bool, isForward);
        Host host(threeSlides() << comesAndGoes(3));
        QVERIFY(host.mgr->SetAnimStatus({page, step, passed}));
        host.takeLog();
        QVERIFY(isForward ? host.mgr->NextAction() : host.mgr->PrevAction());
        QVERIFY(awaitFinish(host));
        QTEST(host.log, "log");
        QTEST(host.position(), "position");
        QTEST(host.mgr->GetActionState(), "state");
    }

    void aSlideThatStartsByItself()
    {
        Host host;
        QVERIFY(host.mgr->SetAnimStatus({0, 2, 250}));
        host.takeLog();
        QVERIFY(host.mgr->NextAction());
        QCOMPARE(host.position(), QStringLiteral("1 0 1"));
        QCOMPARE(host.played(), QStringLiteral("0:1 runs"));
        QVERIFY(awaitFinish(host));
        QCOMPARE(host.log.mid(0, 2), list("update 0:0, update 0:1 runs"));
        QVERIFY(host.log.size() >= 4);
        for (int i = 2; i < host.log.size() - 1; ++i)
            QVERIFY2(host.log[i].startsWith(QStringLiteral("update 1:")), qPrintable(host.log[i]));
        QVERIFY(host.log.last().startsWith(QStringLiteral("finish 1:")));
        QCOMPARE(host.position(), QStringLiteral("1 0 1"));
        QCOMPARE(host.mgr->GetActionState(), 4);
        QCOMPARE(host.mgr->GetImg(), frame(kGreen, kBlue, 20));
    }

    // What stands still until it is told to go.
    void aPositionedSlideWaits()
    {
        Host host;
        QVERIFY(host.mgr->SetAnimStatus({1, 0, 0}));
        QVERIFY(host.mgr->SetAnimStatus({1, 1, 0}));
        host.takeLog();
        QTest::qWait(100);
        QCOMPARE(host.log, QStringList());
    }

    void imagesOfOtherSlidesWhileOneRuns()
    {
        Host host;
        QVERIFY(host.mgr->SetAnimStatus({0, 1, 1}));
        host.atUpdate = [&] {
            const QString played = host.played();
            QCOMPARE(host.mgr->GetImg({1, 1, 100}), frame(kGreen, kBlue, 5));
            QCOMPARE(host.mgr->GetImg({1, 0, 1}), frame(kGreen, kBlue, kUnseen));
            QCOMPARE(host.played(), played);
        };
        QVERIFY(awaitFinish(host));
        QCOMPARE(count(host, "finish"), 1);
        for (const QString &line : qAsConst(host.log).mid(1))
            QVERIFY2(line.contains(QStringLiteral(" 1:")), qPrintable(line));
        QCOMPARE(host.mgr->GetImg(), frame(kGrey, kRed, 20));
    }

    // From signal to signal: within the player's, and nothing waits in an event queue.
    void signalsAreForwardedAtOnce()
    {
        Host host;
        QVERIFY(host.mgr->SetAnimStatus({0, 1, 500}));
        host.takeLog();
        host.tick(0);
        QCOMPARE(host.log, list("update 1:500 runs, finish 1:500"));
        Q_EMIT host.player().s_AnimFnished();
        Q_EMIT host.player().s_AnimUpdate();
        QCOMPARE(host.log.mid(2), list("finish 1:500, update 1:500"));
    }

    void signalsComeOnTheThreadOfTheManager()
    {
        std::atomic<int> here{0};
        std::atomic<int> elsewhere{0};
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            Host host;
            host.atUpdate = host.atFinish = [&, own = QThread::currentThread()] {
                ++(QThread::currentThread() == own ? here : elsewhere);
            };
            if (host.mgr->SetAnimStatus({2, 0, 1}))
                awaitFinish(host);
        }));
        thread->start();
        QVERIFY(thread->wait(kPatience));
        QCOMPARE(here.load(), 3); // the positioning, the frame and the end
        QCOMPARE(elsewhere.load(), 0);
    }

    void destroyEndsTheSignals()
    {
        Host host;
        QVERIFY(host.mgr->SetAnimStatus({0, 1, 1}));
        const QPointer<PPTAnimDisplayBase> player(&host.player());
        host.takeLog();
        host.mgr->Destroy();
        QVERIFY(host.mgr.isNull());
        QVERIFY(player.isNull());
        QTest::qWait(100);
        QCOMPARE(host.log, QStringList());
    }

    void destroyWithinAnAction()
    {
        const QVector<bool (*)(DocDisplayMgr &)> actions{
            [](DocDisplayMgr &mgr) { return mgr.SetCurPage(1); },
            [](DocDisplayMgr &mgr) {
                return mgr.SetAnimStatus({2, kEnd, kEnd});
            },
            [](DocDisplayMgr &mgr) { return mgr.NextAction(); },
            [](DocDisplayMgr &mgr) { return mgr.PrevAction(); }};
        for (const auto action : actions) {
            Host host;
            QVERIFY(host.mgr->SetAnimStatus({1, 0, 0}));
            QVERIFY(action != actions[2] || host.mgr->SetAnimStatus({1, kEnd, kEnd}));
            host.takeLog();
            host.atUpdate = [&] { host.mgr->Destroy(); };
            QCOMPARE(action(*host.mgr), true);
            QVERIFY(host.mgr.isNull());
            QCOMPARE(host.log.size(), 1);
        }
    }

    // A deck that plays all by itself: each end of a run is the click for the next.
    void clicksInTheSlots()
    {
        Host host;
        QStringList stops;
        bool isOver = false;
        host.atFinish = [&] {
            stops << host.position();
            isOver = !host.mgr->NextAction();
        };
        QVERIFY(host.mgr->SetAnimStatus({0, 0, 1}));
        QTRY_VERIFY_WITH_TIMEOUT(isOver, kPatience);
        QCOMPARE(stops, list("0 0 1, 0 1 1, 0 2 1, 1 0 1, 2 0 1"));
        QVERIFY(awaitFinish(host, 5));
    }

    // What a receiver does in the slot of a signal, once.
    void reactions_data()
    {
        QTest::addColumn<Reaction>("reaction");
        QTest::addColumn<QString>("position"); // afterwards; nothing when there is no manager
        QTest::addColumn<int>("livePage");
        // What is sent after it when it is done at the update of a positioning, at that of a tick,
        // and at the end of a run. Home of page 0 was started in all three cases.
        QTest::addColumn<QStringList>("afterPositioning");
        QTest::addColumn<QStringList>("afterUpdate");
        QTest::addColumn<QStringList>("afterFinish");

        const auto row = [](const char *name, const Reaction &reaction, const char *position,
                            int livePage, const char *afterPositioning, const char *afterUpdate,
                            const char *afterFinish) {
            QTest::newRow(name) << reaction << QString::fromLatin1(position) << livePage
                                << list(afterPositioning) << list(afterUpdate) << list(afterFinish);
        };
        const auto init = [](DocCovRslt::DOCRSLT_TYPE kind, int pages) {
            return [=](Host &host) { host.mgr->Init(kind, pages); };
        };
        const auto go = [](Status status) {
            return [=](Host &host) { QVERIFY(host.mgr->SetAnimStatus(status)); };
        };
        const char *const kRun = "update 0:1 runs, finish 0:1"; // of home

        row(
            "Destroy", [](Host &host) { host.mgr->Destroy(); }, "", -1, "", "", "");
        // The tick that is under way still comes to its end.
        row("Init of the same deck", init(DocCovRslt::DOCRSLT_PPT_ANIM, 3), "0 0 0", -1, "",
            "finish 0:0", "");
        row("Init of a deck without pages", init(DocCovRslt::DOCRSLT_PPT_ANIM, 0), "0 0 0", -1, "",
            "finish 0:0", "");
        row("Init of pictures", init(DocCovRslt::DOCRSLT_PICTURE, 3), "0 0 0", -1, "", "finish 0:0",
            "");
        row(
            "Init of pictures, and a position",
            [](Host &host) {
                host.mgr->Init(DocCovRslt::DOCRSLT_PICTURE, 3);
                QVERIFY(host.mgr->SetAnimStatus({1, 0, 1}));
            },
            "1 0 1", -1, "", "finish 0:0", "");
        row("SetAnimStatus home", go({0, 0, 0}), "0 0 0", 0, "update 0:0", "update 0:0, finish 0:0",
            "update 0:0");
        // Here the tick plays on from the new position, which has not ended.
        row("SetAnimStatus to a step", go({0, 1, 0}), "0 1 0", 0, "update 1:0", "update 1:0",
            "update 1:0");
        row("SetAnimStatus to the end of a step", go({0, 1, 500}), "0 1 500", 0,
            "update 1:500, update 1:500 runs, finish 1:500", "update 1:500, finish 1:500",
            "update 1:500, update 1:500 runs, finish 1:500");
        row("SetAnimStatus to another slide", go({2, 0, 0}), "2 0 0", 2, "update 0:0",
            "update 0:0, finish 0:0", "update 0:0");
        row("SetAnimStatus to another slide, started", go({2, 0, 1}), "2 0 1", 2,
            "update 0:0, update 0:1 runs, finish 0:1", "update 0:0, finish 0:1",
            "update 0:0, update 0:1 runs, finish 0:1");
        row("SetAnimStatus to a page that is missing", go({3, 0, 1}), "3 0 1", -1, "", "finish 0:0",
            "");
        row(
            "SetAnimStatus to a page that does not exist",
            [](Host &host) { QVERIFY(!host.mgr->SetCurPage(4)); }, "0 0 1", 0, kRun, "finish 0:1",
            "");
        row(
            "ClearPicCach", [](Host &host) { host.mgr->ClearPicCach(); }, "0 0 1", 0, kRun,
            "finish 0:1", "");
        row(
            "images",
            [](Host &host) {
                QCOMPARE(host.mgr->GetImg(), frame(kGrey, kRed, kUnseen));
                QCOMPARE(host.mgr->GetImg({2, 0, 0}), frame(kYellow, kRed, 20));
            },
            "0 0 1", 0, kRun, "finish 0:1", "");
        row(
            "NextAction to the end of a step",
            [](Host &host) {
                QVERIFY(host.mgr->NextAction());
                QVERIFY(host.mgr->NextAction());
            },
            "0 1 500", 0, "update 1:500 runs, finish 1:500", "finish 1:500",
            "update 1:500 runs, finish 1:500");
        row(
            "PrevAction within the slide",
            [](Host &host) {
                QVERIFY(host.mgr->NextAction());
                QVERIFY(host.mgr->PrevAction());
            },
            "0 0 0", 0, "", "finish 0:0", "");
        row(
            "PrevAction to the slide before",
            [](Host &host) {
                QVERIFY(host.mgr->SetCurPage(2));
                QVERIFY(host.mgr->PrevAction());
            },
            "1 end end", 1, "update 0:0, update 1:200, update 1:200 runs, finish 1:200",
            "update 0:0, update 1:200, finish 1:200",
            "update 0:0, update 1:200, update 1:200 runs, finish 1:200");
        row(
            "PrevAction on the first page", [](Host &host) { QVERIFY(!host.mgr->PrevAction()); },
            "0 0 1", 0, kRun, "finish 0:1", "");
    }
    void reactions()
    {
        QFETCH(Reaction, reaction);
        QFETCH(QString, position);
        QFETCH(int, livePage);
        QFETCH(QStringList, afterPositioning);
        QFETCH(QStringList, afterUpdate);
        QFETCH(QStringList, afterFinish);
        // The signals are the update of the positioning, then update and end of the only tick.
        const QVector<QStringList> after{afterPositioning, afterUpdate, afterFinish};
        std::vector<std::unique_ptr<Host>> hosts;
        std::array<int, 3> signalsLeft{1, 2, 3};
        for (int &left : signalsLeft) {
            hosts.push_back(std::make_unique<Host>(threeSlides() << still(3)));
            Host &host = *hosts.back();
            host.removePage(3);
            host.atUpdate = host.atFinish = [&host, &left, &reaction] {
                if (--left == 0)
                    reaction(host);
            };
            QVERIFY(host.mgr->SetAnimStatus({0, 0, 1}));
        }
        for (int i = 0; i < 3; ++i) {
            QTRY_VERIFY_WITH_TIMEOUT(hosts[size_t(i)]->log.size() > i + after[i].size(), kPatience);
        }
        QTest::qWait(100); // more than two ticks
        for (int i = 0; i < 3; ++i) {
            const Host &host = *hosts[size_t(i)];
            QCOMPARE(host.log.mid(i + 1), after[i]);
            QCOMPARE(host.mgr ? host.position() : QString(), position);
            QCOMPARE(host.mgr ? host.player().GetPageID() : -1, livePage);
        }
    }
};

QTEST_GUILESS_MAIN(TestDisplayDeckSignals)
#include "tst_displaydeck_signals.moc"
