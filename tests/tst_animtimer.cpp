#include "AnimModel.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QEventLoop>
#include <QPointer>
#include <QSignalSpy>
#include <QThread>
#include <QTimerEvent>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>

// The real timer: for order and for the time that passes between two ticks, never for their rate.

using namespace AnimModel;

namespace {

constexpr int kPatience = 20000; // ms

QString positionInRun(OpenPlayer &player)
{
    return position(player) + (player.animTimer.isActive() ? QStringLiteral(" runs") : QString());
}

/// A player that ticks as fast as it can, and the signals that it has sent.
class Run
{
public:
    struct Signal
    {
        bool isUpdate;
        quint32 step, passed;
        qint64 tick; // when it was sent
    };

    /// What is done in the slots, after the signal has been noted.
    std::function<void()> atUpdate, atFinish;
    QVector<Signal> received;
    QStringList log;
    std::unique_ptr<OpenPlayer> player = std::make_unique<OpenPlayer>();

    explicit Run(const QByteArray &effects = {})
        : bytes(effectsBytes(effects))
    {
        if (!effects.isNull() && !player->Init(1, bytes, 1000))
            qFatal("the test's model cannot be read");
        QObject::connect(player.get(), &PPTAnimDisplayBase::s_AnimUpdate,
                         [this] { receive(true, atUpdate); });
        QObject::connect(player.get(), &PPTAnimDisplayBase::s_AnimFnished,
                         [this] { receive(false, atFinish); });
    }
    ~Run() = default;
    Q_DISABLE_COPY_MOVE(Run)

    int updates() const { return received.size() - finishes(); }
    int finishes() const
    {
        return static_cast<int>(std::count_if(received.begin(), received.end(),
                                              [](const Signal &s) { return !s.isUpdate; }));
    }

    /// One tick, now.
    bool tick() const { return QMetaObject::invokeMethod(player.get(), "slot_AnimTimeout"); }

    /// Whether nothing more is sent, though there is time for many ticks.
    bool isOver() const
    {
        const int before = received.size();
        QTest::qWait(30);
        return received.size() == before;
    }

    const QByteArray bytes;

private:
    void receive(bool isUpdate, const std::function<void()> &react)
    {
        received << Signal{isUpdate, player->animStep, player->passedDuration,
                           player->lastTickMSecs};
        log << (isUpdate ? QStringLiteral("update ") : QStringLiteral("finish ")) +
                   positionInRun(*player);
        if (react)
            react();
    }
};

using Move = std::function<void(Run &)>;

qint64 now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

} // namespace

Q_DECLARE_METATYPE(Move)

class AnimTimerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStepRunsToItsEnd()
    {
        Run run("click 0.2, click 1");
        QVERIFY(run.player->nextStep());
        run.player->StartRun();
        const qint64 start = run.player->lastTickMSecs;
        QTRY_COMPARE_WITH_TIMEOUT(run.finishes(), 1, kPatience);
        QVERIFY(run.isOver());
        QCOMPARE(run.finishes(), 1);
        QVERIFY(run.updates() >= 2);
        QCOMPARE(run.received.last().isUpdate, false);
        QCOMPARE(run.player->IsRunning(), false);
        QCOMPARE(run.player->GetAnimStep(), 1U);

        // An update shows the position before the advance of its own tick, which is by the time
        // since the tick before.
        quint32 due = 1;
        qint64 lastTick = start;
        for (int i = 0; i < run.updates(); ++i) {
            const Run::Signal &update = run.received[i];
            QCOMPARE(update.isUpdate, true);
            QCOMPARE(update.step, 1U);
            QCOMPARE(update.passed, due);
            due += static_cast<quint32>(update.tick - lastTick);
            lastTick = update.tick;
            // The end is noticed one tick after it was reached.
            QCOMPARE(update.passed >= 200, i == run.updates() - 1);
        }
        const Run::Signal &finish = run.received.last();
        const Run::Signal &lastUpdate = run.received[run.updates() - 1];
        QCOMPARE(finish.passed, lastUpdate.passed);
        QCOMPARE(finish.tick, lastUpdate.tick);
        QCOMPARE(run.player->GetAnimPassedDuration(), finish.passed);
        for (const QString &line : qAsConst(run.log))
            QCOMPARE(line.endsWith(QStringLiteral(" runs")), line.startsWith(QStringLiteral("up")));
    }

    void realTimeCountsNotTheInterval()
    {
        Run run("click 1000");
        QVERIFY(run.player->nextStep());
        run.atUpdate = [] { QThread::msleep(200); }; // no event is looked at meanwhile
        run.player->StartRun();
        QTRY_VERIFY_WITH_TIMEOUT(run.updates() >= 3, kPatience);
        QVERIFY(run.received[2].passed >= run.received[1].passed + 200);
        QCOMPARE(run.finishes(), 0);
    }

    void ticks_data()
    {
        QTest::addColumn<qint64>("before"); // the last tick, from now
        const qint64 wrap = Q_INT64_C(0x100000000);
        QTest::newRow("now") << qint64(0);
        QTest::newRow("100 ms ago") << qint64(-100);
        QTest::newRow("25 days ago") << qint64(-2160000000);
        QTest::newRow("49.7 days and 100 ms ago") << -wrap - 100;
        QTest::newRow("three times that") << -3 * wrap - 300;
        QTest::newRow("in 500 ms") << qint64(500);
        QTest::newRow("in 49.7 days") << wrap;
        QTest::newRow("before the epoch") << -now() - 12345;
        QTest::newRow("at the epoch") << -now();
    }
    void ticks()
    {
        QFETCH(qint64, before);
        Run run("click 1e10");
        run.player->SetAnimStep(1);
        for (const bool running : {false, true}) { // a tick does not ask
            if (running)
                run.player->animTimer.start();
            run.player->passedDuration = 1000;
            const qint64 start = now();
            const qint64 lastTick = run.player->lastTickMSecs = start + before;
            QVERIFY(run.tick());
            const qint64 newTick = run.player->lastTickMSecs;
            QVERIFY(newTick >= start);
            QVERIFY(newTick <= now());
            // Signals have come by now, and show the new time.
            QCOMPARE(run.received.last().isUpdate, true);
            QCOMPARE(run.received.last().passed, 1000U);
            QCOMPARE(run.received.last().tick, newTick);
            const qint64 elapsed = newTick - lastTick;
            QCOMPARE(qint64(run.player->passedDuration), (1000 + elapsed) & 0xFFFFFFFF);
            QCOMPARE(run.player->IsRunning(), running);
        }
        QCOMPARE(run.updates(), 2);
        QCOMPARE(run.finishes(), 0);
    }

    // Nothing waits in the event queue that could arrive after a stop.
    void theTimerTicksAtOnce()
    {
        Run run("click 9");
        run.player->StartRun();
        QTimerEvent timeout(run.player->animTimer.timerId());
        QCoreApplication::sendEvent(&run.player->animTimer, &timeout);
        QCOMPARE(run.log,
                 (QStringList{QStringLiteral("update 0:1 runs"), QStringLiteral("finish 0:1")}));
    }

    void shortRuns_data()
    {
        QTest::addColumn<QByteArray>("effects");
        QTest::addColumn<quint32>("step");
        QTest::addColumn<quint32>("passed");
        QTest::addColumn<QStringList>("signalled");
        const auto both = [](const char *place) {
            return QStringList{QStringLiteral("update %1 runs").arg(QLatin1String(place)),
                               QStringLiteral("finish ") + QLatin1String(place)};
        };
        QTest::newRow("new player") << QByteArray() << 0U << 0U << both("0:1");
        QTest::newRow("page without effects") << QByteArray("") << 0U << 0U << both("0:1");
        QTest::newRow("home before a click") << QByteArray("click 9") << 0U << 0U << both("0:1");
        QTest::newRow("step of no time") << QByteArray("click 0") << 1U << 0U << both("1:1");
        QTest::newRow("step of 1 ms") << QByteArray("click 0.001") << 1U << 0U << both("1:1");
        QTest::newRow("end of a step")
            << QByteArray("click 9, click 9") << 1U << 9000U << both("1:9000");
        QTest::newRow("beyond its end")
            << QByteArray("click 9, click 9") << 2U << 9999U << both("2:9999");
        QTest::newRow("first step of no time")
            << QByteArray("after 0") << 0U << 0U
            << QStringList{QStringLiteral("update 0:1 runs"), QStringLiteral("finish 1:1")};
    }
    void shortRuns()
    {
        QFETCH(QByteArray, effects);
        QFETCH(quint32, step);
        QFETCH(quint32, passed);
        Run run(effects);
        run.player->SetAnimStep(step);
        run.player->passedDuration = passed;
        run.player->StartRun();
        QTRY_COMPARE_WITH_TIMEOUT(run.finishes(), 1, kPatience);
        QVERIFY(run.isOver());
        QTEST(run.log, "signalled");
    }

    void aClearedPlayerStopsAtTheFirstTick()
    {
        Run run("click 9");
        run.player->Clear();
        run.player->StartRun();
        QTRY_COMPARE_WITH_TIMEOUT(run.finishes(), 1, kPatience);
        QVERIFY(run.isOver());
        QCOMPARE(run.log,
                 (QStringList{QStringLiteral("update 0:1 runs"), QStringLiteral("finish 0:1")}));
    }

    void aFirstStepThatStartsByItself()
    {
        Run run("after 0.05, click 9");
        run.player->StartRun();
        QTRY_COMPARE_WITH_TIMEOUT(run.finishes(), 1, kPatience);
        QVERIFY(run.isOver());
        QCOMPARE(run.log.first(), QStringLiteral("update 0:1 runs"));
        QCOMPARE(run.received[1].step, 1U);
        QCOMPARE(run.received.last().step, 1U);
        QVERIFY(run.received.last().passed >= 50);
    }

    void nextStepWhileRunningEndsTheRunAtTheNextTick()
    {
        Run run("click 1000, click 1");
        QVERIFY(run.player->nextStep());
        run.player->StartRun();
        QTRY_VERIFY_WITH_TIMEOUT(run.updates() > 0, kPatience);
        run.log.clear();
        QVERIFY(run.player->nextStep());
        QCOMPARE(positionInRun(*run.player), QStringLiteral("1:1000000 runs"));
        QTRY_COMPARE_WITH_TIMEOUT(run.finishes(), 1, kPatience);
        QVERIFY(run.isOver());
        QCOMPARE(run.log, (QStringList{QStringLiteral("update 1:1000000 runs"),
                                       QStringLiteral("finish 1:1000000")}));
    }

    void stopsWithoutASignal_data()
    {
        QTest::addColumn<Move>("move");
        const auto row = [](const char *name, const Move &move) { QTest::newRow(name) << move; };
        row("StopRun", [](Run &run) { run.player->StopRun(); });
        row("SetAnimStep", [](Run &run) { run.player->SetAnimStep(1); });
        row("GotoHome", [](Run &run) { run.player->GotoHome(); });
        row("GotoEnd", [](Run &run) { run.player->GotoEnd(); });
        row("prevStep", [](Run &run) { run.player->prevStep(); });
        row("Clear", [](Run &run) { run.player->Clear(); });
        row("Init", [](Run &run) { run.player->Init(1, run.bytes, 1000); });
        row("Init that fails", [](Run &run) { run.player->Init(2, run.bytes, 1000); });
        row("nextStep at the end", [](Run &run) {
            run.player->nextStep();
            run.player->nextStep();
        });
        row("deletion", [](Run &run) { run.player.reset(); });
    }
    void stopsWithoutASignal()
    {
        QFETCH(Move, move);
        Run run("click 1000, click 1000");
        run.player->SetAnimStep(1);
        run.player->StartRun();
        QTRY_VERIFY_WITH_TIMEOUT(run.updates() > 1, kPatience);
        move(run);
        QCOMPARE(run.player && run.player->IsRunning(), false);
        QVERIFY(run.isOver());
        QCOMPARE(run.finishes(), 0);
    }

    // The tick that sends the update goes on with whatever position it finds then.
    void movesInAnUpdate_data()
    {
        QTest::addColumn<Move>("move");
        QTest::addColumn<QString>("end"); // "elapsed" is what the tick has added
        QTest::addColumn<int>("finishes");
        const auto row = [](const char *name, const char *end, int finishes, const Move &move) {
            QTest::newRow(name) << move << QString::fromLatin1(end) << finishes;
        };
        row("Clear", "0:0", 1, [](Run &run) { run.player->Clear(); });
        row("Init", "0:0", 1, [](Run &run) { run.player->Init(1, run.bytes, 1000); });
        row("Init that fails", "0:0", 1, [](Run &run) { run.player->Init(2, run.bytes, 1000); });
        row("Init, first step by itself", "1:elapsed", 0,
            [](Run &run) { run.player->Init(1, effectsBytes("after 1000"), 1000); });
        row("GotoHome", "0:0", 1, [](Run &run) { run.player->GotoHome(); });
        row("GotoEnd", "2:1000000", 1, [](Run &run) { run.player->GotoEnd(); });
        row("SetAnimStep", "2:elapsed", 0, [](Run &run) { run.player->SetAnimStep(2); });
        row("StopRun", "1:1 and elapsed", 0, [](Run &run) { run.player->StopRun(); });
        row("StopRun at the end", "1:1000000", 1, [](Run &run) {
            run.player->SetAnimPassedDuration(0xFFFFFFFF);
            run.player->StopRun();
        });
        row("nextStep", "1:1000000", 1, [](Run &run) { run.player->nextStep(); });
        row("nextStep twice", "2:elapsed", 0, [](Run &run) {
            run.player->nextStep();
            run.player->nextStep();
        });
        row("prevStep", "0:0", 1, [](Run &run) { run.player->prevStep(); });
        row("StartRun at the end", "1:1000000", 1, [](Run &run) {
            run.player->nextStep();
            run.player->StartRun();
        });
    }
    void movesInAnUpdate()
    {
        QFETCH(Move, move);
        QFETCH(QString, end);
        Run run("click 1000, click 1000");
        run.player->SetAnimStep(1);
        run.player->StartRun();
        qint64 lastTick = run.player->lastTickMSecs;
        run.atUpdate = [&] {
            lastTick = run.player->lastTickMSecs - lastTick;
            move(run);
        };
        QTRY_COMPARE_WITH_TIMEOUT(run.updates(), 1, kPatience);
        QCOMPARE(run.player->IsRunning(), false);
        QVERIFY(run.isOver());
        end.replace(QStringLiteral("1 and elapsed"), QString::number(1 + lastTick));
        end.replace(QStringLiteral("elapsed"), QString::number(lastTick));
        QCOMPARE(positionInRun(*run.player), end);
        QTEST(run.finishes(), "finishes");
    }

    void startRunInAnUpdateKeepsItRunning()
    {
        Run run("click 1000");
        run.player->SetAnimStep(1);
        run.atUpdate = [&] { run.player->StartRun(); };
        run.player->StartRun();
        QTRY_VERIFY_WITH_TIMEOUT(run.updates() > 3, kPatience);
        QCOMPARE(run.player->IsRunning(), true);
        QCOMPARE(run.finishes(), 0);
    }

    // As a host does that plays all steps without waiting for clicks.
    void theNextStepCanBeStartedInTheFinish()
    {
        Run run("click 0.01, click 0, click 0.02");
        run.atFinish = [&] {
            if (run.player->nextStep())
                run.player->StartRun();
        };
        run.player->StartRun(); // home ends at once
        QTRY_COMPARE_WITH_TIMEOUT(run.finishes(), 4, kPatience);
        QVERIFY(run.isOver());
        QCOMPARE(run.finishes(), 4);
        QCOMPARE(run.player->IsAtEnd(), true);
        QCOMPARE(run.player->IsRunning(), false);
        QVector<quint32> steps;
        for (const Run::Signal &signal : qAsConst(run.received))
            if (!signal.isUpdate)
                steps << signal.step;
        QCOMPARE(steps, (QVector<quint32>{0, 1, 2, 3}));
    }

    void movesInTheFinish_data()
    {
        QTest::addColumn<Move>("move");
        QTest::addColumn<QString>("end");
        const auto row = [](const char *name, const char *end, const Move &move) {
            QTest::newRow(name) << move << QString::fromLatin1(end);
        };
        row("Clear", "0:0", [](Run &run) { run.player->Clear(); });
        row("Init", "0:0", [](Run &run) { run.player->Init(1, run.bytes, 1000); });
        row("Init that fails", "0:0", [](Run &run) { run.player->Init(2, run.bytes, 1000); });
        row("SetAnimStep", "2:0", [](Run &run) { run.player->SetAnimStep(2); });
        row("GotoEnd", "2:500", [](Run &run) { run.player->GotoEnd(); });
        row("prevStep", "0:0", [](Run &run) { run.player->prevStep(); });
        row("nextStep", "2:0", [](Run &run) { run.player->nextStep(); });
        row("StartRun", "1:1000 runs", [](Run &run) { run.player->StartRun(); });
        row("Init, run", "0:1 runs", [](Run &run) {
            run.player->Init(1, run.bytes, 1000);
            run.player->StartRun();
        });
    }
    void movesInTheFinish()
    {
        QFETCH(Move, move);
        QFETCH(QString, end);
        Run run("click 1, click 0.5");
        run.player->SetAnimStep(1);
        run.player->SetAnimPassedDuration(1000);
        run.player->StartRun();
        QString place;
        run.atFinish = [&] {
            if (run.finishes() == 1) {
                move(run);
                place = positionInRun(*run.player);
            }
        };
        QTRY_VERIFY_WITH_TIMEOUT(run.finishes() > 0, kPatience);
        QCOMPARE(place, end);
        // What was started goes on.
        const bool runs = end.endsWith(QStringLiteral(" runs"));
        QTRY_COMPARE_WITH_TIMEOUT(run.finishes(), runs ? 2 : 1, kPatience);
        QVERIFY(run.isOver());
        QCOMPARE(run.updates(), runs ? 2 : 1);
        QCOMPARE(run.finishes(), runs ? 2 : 1);
    }

    // Here AddressSanitizer sees what is read of a deleted player.
    void deletedInASlot_data()
    {
        QTest::addColumn<bool>("inUpdate");
        QTest::addColumn<bool>("hasMoreReceivers");
        for (const bool inUpdate : {true, false})
            for (const bool hasMore : {true, false})
                QTest::addRow("%s%s", inUpdate ? "update" : "finish",
                              hasMore ? ", before more" : "")
                    << inUpdate << hasMore;
    }
    void deletedInASlot()
    {
        QFETCH(bool, inUpdate);
        QFETCH(bool, hasMoreReceivers);
        Run run(inUpdate ? "click 1000" : "click 0.01");
        int others = 0;
        if (hasMoreReceivers) {
            connect(run.player.get(), &PPTAnimDisplayBase::s_AnimUpdate, this, [&] { ++others; });
            connect(run.player.get(), &PPTAnimDisplayBase::s_AnimFnished, this,
                    [&] { others += 1000; });
        }
        const QPointer<OpenPlayer> alive(run.player.get());
        (inUpdate ? run.atUpdate : run.atFinish) = [&] { run.player.reset(); };
        run.player->SetAnimStep(1);
        run.player->StartRun();
        QTRY_VERIFY_WITH_TIMEOUT(alive.isNull(), kPatience);
        QVERIFY(run.isOver());
        QCOMPARE(run.finishes(), inUpdate ? 0 : 1);
        if (inUpdate)
            QCOMPARE(run.updates(), 1);
        QCOMPARE(others, hasMoreReceivers ? run.updates() - (inUpdate ? 1 : 0) : 0);
    }

    void signalsComeOnThePlayersThread()
    {
        QVector<QThread *> threads;
        const std::unique_ptr<QThread> thread(QThread::create([&threads] {
            QEventLoop loop;
            OpenPlayer player;
            const auto note = [&threads] { threads << QThread::currentThread(); };
            connect(&player, &PPTAnimDisplayBase::s_AnimUpdate, note);
            connect(&player, &PPTAnimDisplayBase::s_AnimFnished, note);
            connect(&player, &PPTAnimDisplayBase::s_AnimFnished, &loop, &QEventLoop::quit);
            player.StartRun();
            loop.exec();
        }));
        QSignalSpy over(thread.get(), &QThread::finished);
        thread->start();
        const bool isOver = over.wait(kPatience);
        if (!isOver)
            thread->terminate();
        QVERIFY(thread->wait());
        QVERIFY(isOver);
        QCOMPARE(threads, (QVector<QThread *>{thread.get(), thread.get()}));
    }

    void twoPlayersDoNotDisturbEachOther()
    {
        Run longRun("click 1000");
        Run shortRun("click 0.03");
        longRun.player->SetAnimStep(1);
        shortRun.player->SetAnimStep(1);
        longRun.player->StartRun();
        const qint64 start = longRun.player->lastTickMSecs;
        shortRun.player->StartRun();
        QTRY_COMPARE_WITH_TIMEOUT(shortRun.finishes(), 1, kPatience);
        const int updates = longRun.updates();
        QTRY_VERIFY_WITH_TIMEOUT(longRun.updates() > updates + 2, kPatience);
        QCOMPARE(longRun.player->IsRunning(), true);
        QCOMPARE(longRun.finishes(), 0);
        QCOMPARE(shortRun.player->IsRunning(), false);
        QCOMPARE(shortRun.finishes(), 1);
        QCOMPARE(qint64(longRun.player->passedDuration), 1 + longRun.player->lastTickMSecs - start);
    }

    void aTickCallsOthers()
    {
        class Spied : public OpenPlayer
        {
        public:
            QStringList log;
            quint32 firstElapsed = 0;
            bool nextFrame(unsigned int ms) override
            {
                log << QStringLiteral("nextFrame");
                if (firstElapsed == 0)
                    firstElapsed = ms;
                return false;
            }
            void StopRun() override { log << QStringLiteral("StopRun"); }
        };
        Spied player;
        QVERIFY(player.Init(1, effectsBytes("click 1000"), 1000));
        player.SetAnimStep(1);
        connect(&player, &PPTAnimDisplayBase::s_AnimUpdate,
                [&] { player.log << QStringLiteral("update"); });
        connect(&player, &PPTAnimDisplayBase::s_AnimFnished,
                [&] { player.log << QStringLiteral("finish"); });
        player.log.clear();
        player.StartRun();
        player.lastTickMSecs -= 5000;
        const QStringList tick{QStringLiteral("update"), QStringLiteral("nextFrame"),
                               QStringLiteral("StopRun"), QStringLiteral("finish")};
        QTRY_VERIFY_WITH_TIMEOUT(player.log.size() >= 8, kPatience);
        // A stop that does not stop lets it go on, from where it was.
        QCOMPARE(player.log.mid(0, 8), tick + tick);
        QVERIFY(player.firstElapsed >= 5000);
        QCOMPARE(player.passedDuration, 1U);
        QCOMPARE(player.IsRunning(), true);
    }
};

QTEST_GUILESS_MAIN(AnimTimerTest)
#include "tst_animtimer.moc"
