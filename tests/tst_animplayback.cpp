#include "AnimModel.h"

#include <QDateTime>
#include <QRandomGenerator>
#include <QtTest>

#include <iterator>

using namespace AnimModel;

namespace {

constexpr quint32 kMax = 0xFFFFFFFF;
constexpr int kNothing = -1; // result of an operation without one

/// What the position operations do, told by the steps' durations and how the first step starts.
struct Reference
{
    QVector<quint32> durations{0}; // by step; home lasts no time
    bool startsByItself = false;
    quint32 step = 0;
    quint32 passed = 0;
    bool isRunning = false;

    quint32 last() const { return static_cast<quint32>(durations.size()) - 1; }
    quint32 duration() const { return durations[static_cast<int>(step)]; }
    int stopAt(quint32 newStep, quint32 newPassed, int result)
    {
        step = newStep;
        passed = newPassed;
        isRunning = false;
        return result;
    }
    int pass(quint32 newPassed, int result)
    {
        passed = newPassed;
        return result;
    }
};

using Player = PPTAnimDisplayBase;

struct Operation
{
    const char *name;
    int (*play)(Player &, quint32);
    int (*tell)(Reference &, quint32);
};

const Operation kOperations[] = {
    {"IsAtHome", [](Player &p, quint32) -> int { return p.IsAtHome(); },
     [](Reference &r, quint32) -> int { return r.step == 0 && r.passed == 0; }},
    {"IsAtEnd", [](Player &p, quint32) -> int { return p.IsAtEnd(); },
     [](Reference &r, quint32) -> int { return r.step == r.last() && r.passed >= r.duration(); }},
    {"IsRunning", [](Player &p, quint32) -> int { return p.IsRunning(); },
     [](Reference &r, quint32) -> int { return r.isRunning; }},
    {"GotoHome", [](Player &p, quint32) { return p.GotoHome(), kNothing; },
     [](Reference &r, quint32) { return r.stopAt(0, 0, kNothing); }},
    {"GotoEnd", [](Player &p, quint32) { return p.GotoEnd(), kNothing; },
     [](Reference &r, quint32) { return r.stopAt(r.last(), r.durations.last(), kNothing); }},
    {"SetAnimStep", [](Player &p, quint32 n) { return p.SetAnimStep(n), kNothing; },
     [](Reference &r, quint32 n) { return r.stopAt(n < r.last() ? n : r.last(), 0, kNothing); }},
    {"SetAnimPassedDuration",
     [](Player &p, quint32 n) { return p.SetAnimPassedDuration(n), kNothing; },
     [](Reference &r, quint32 n) { return r.pass(n < r.duration() ? n : r.duration(), kNothing); }},
    {"nextStep", [](Player &p, quint32) -> int { return p.nextStep(); },
     [](Reference &r, quint32) -> int {
         if (r.passed < r.duration())
             return r.pass(r.duration(), true);
         return r.step < r.last() ? r.stopAt(r.step + 1, 0, true) : false;
     }},
    {"prevStep", [](Player &p, quint32) -> int { return p.prevStep(); },
     [](Reference &r, quint32) -> int {
         if (r.step == 0)
             return false;
         return r.stopAt(r.step - 1, r.durations[static_cast<int>(r.step) - 1], true);
     }},
    {"nextFrame", [](Player &p, quint32 n) -> int { return p.nextFrame(n); },
     [](Reference &r, quint32 n) -> int {
         if (r.step == 0 && r.startsByItself)
             r.step = 1;
         return r.passed < r.duration() ? r.pass(r.passed + n, true) : false;
     }},
    {"prevFrame", [](Player &p, quint32 n) -> int { return p.prevFrame(n); },
     [](Reference &r, quint32 n) -> int {
         return r.passed ? r.pass(r.passed < n ? 0 : r.passed - n, true) : false;
     }},
    {"StartRun", [](Player &p, quint32) { return p.StartRun(), kNothing; },
     [](Reference &r, quint32) {
         r.isRunning = true;
         return r.pass(r.passed ? r.passed : 1, kNothing);
     }},
    {"StopRun", [](Player &p, quint32) { return p.StopRun(), kNothing; },
     [](Reference &r, quint32) { return r.stopAt(r.step, r.passed, kNothing); }},
};

const Operation &operation(const QString &name)
{
    for (const Operation &candidate : kOperations)
        if (name == QLatin1String(candidate.name))
            return candidate;
    qFatal("the test names an operation that it has not got");
}

} // namespace

class AnimPlaybackTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void positions_data()
    {
        QTest::addColumn<QByteArray>("effects");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("name");
        QTest::addColumn<quint32>("argument");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("timer");
        const auto row = [](const char *effects, const char *from, const char *name,
                            quint32 argument, int result, const char *to, const char *timer) {
            QTest::addRow("[%s] %s %s %u", effects, from, name, argument)
                << QByteArray(effects) << QString::fromLatin1(from) << QString::fromLatin1(name)
                << argument << result << QString::fromLatin1(to) << QString::fromLatin1(timer);
        };
        const auto asks = [&](const char *effects, const char *at, const char *name, bool result) {
            row(effects, at, name, 0, result, at, "kept");
        };
        const auto stays = [&](const char *effects, const char *at, const char *name,
                               quint32 argument = 0) {
            row(effects, at, name, argument, false, at, "kept");
        };
        const char *const three = kThreeSteps;
        const char *const none = "";
        const char *const instant = "click 1, click 0, click 1";
        const char *const endless = "click 1e10";

        asks(three, "0:0", "IsAtHome", true);
        asks(three, "0:1", "IsAtHome", false);
        asks(three, "1:0", "IsAtHome", false);
        asks(three, "3:250", "IsAtHome", false);
        asks(none, "0:0", "IsAtHome", true);
        asks(none, "0:1", "IsAtHome", false);

        asks(three, "0:0", "IsAtEnd", false);
        asks(three, "2:500", "IsAtEnd", false);
        asks(three, "2:4294967295", "IsAtEnd", false);
        asks(three, "3:0", "IsAtEnd", false);
        asks(three, "3:249", "IsAtEnd", false);
        asks(three, "3:250", "IsAtEnd", true);
        asks(three, "3:251", "IsAtEnd", true);
        asks(three, "4:0", "IsAtEnd", true);
        asks(none, "0:0", "IsAtEnd", true);
        asks(none, "0:1", "IsAtEnd", true);
        asks("click 1, click 0", "2:0", "IsAtEnd", true);
        asks("click 1, click 0", "1:1000", "IsAtEnd", false);
        asks(endless, "1:4294967294", "IsAtEnd", false);
        asks(endless, "1:4294967295", "IsAtEnd", true);

        row(three, "2:30", "GotoHome", 0, kNothing, "0:0", "stopped");
        row(three, "0:1", "GotoHome", 0, kNothing, "0:0", "stopped");
        row(three, "0:0", "GotoHome", 0, kNothing, "0:0", "stopped");

        row(three, "0:0", "GotoEnd", 0, kNothing, "3:250", "stopped");
        row(three, "3:10", "GotoEnd", 0, kNothing, "3:250", "stopped");
        row(three, "3:999", "GotoEnd", 0, kNothing, "3:250", "stopped");
        row(none, "0:1", "GotoEnd", 0, kNothing, "0:0", "stopped");
        row(endless, "0:0", "GotoEnd", 0, kNothing, "1:4294967295", "stopped");
        row("click 1, click 0", "0:0", "GotoEnd", 0, kNothing, "2:0", "stopped");

        row(three, "2:30", "SetAnimStep", 0, kNothing, "0:0", "stopped");
        row(three, "2:30", "SetAnimStep", 1, kNothing, "1:0", "stopped");
        row(three, "2:30", "SetAnimStep", 2, kNothing, "2:0", "stopped");
        row(three, "2:30", "SetAnimStep", 3, kNothing, "3:0", "stopped");
        row(three, "2:30", "SetAnimStep", 4, kNothing, "3:0", "stopped");
        row(three, "0:0", "SetAnimStep", 100, kNothing, "3:0", "stopped");
        row(three, "0:0", "SetAnimStep", kMax, kNothing, "3:0", "stopped");
        row(none, "0:1", "SetAnimStep", 1, kNothing, "0:0", "stopped");

        row(three, "2:30", "SetAnimPassedDuration", 0, kNothing, "2:0", "kept");
        row(three, "2:30", "SetAnimPassedDuration", 499, kNothing, "2:499", "kept");
        row(three, "2:30", "SetAnimPassedDuration", 500, kNothing, "2:500", "kept");
        row(three, "2:30", "SetAnimPassedDuration", 501, kNothing, "2:500", "kept");
        row(three, "2:900", "SetAnimPassedDuration", kMax, kNothing, "2:500", "kept");
        row(three, "0:1", "SetAnimPassedDuration", 1, kNothing, "0:0", "kept");
        row(none, "0:1", "SetAnimPassedDuration", 7, kNothing, "0:0", "kept");
        row(endless, "1:0", "SetAnimPassedDuration", kMax, kNothing, "1:4294967295", "kept");

        row(three, "0:0", "nextStep", 0, true, "1:0", "stopped");
        row(three, "0:1", "nextStep", 0, true, "1:0", "stopped");
        row(three, "1:0", "nextStep", 0, true, "1:1000", "kept");
        row(three, "1:999", "nextStep", 0, true, "1:1000", "kept");
        row(three, "1:1000", "nextStep", 0, true, "2:0", "stopped");
        row(three, "1:1001", "nextStep", 0, true, "2:0", "stopped");
        row(three, "3:0", "nextStep", 0, true, "3:250", "kept");
        stays(three, "3:250", "nextStep");
        stays(three, "3:251", "nextStep");
        stays(none, "0:0", "nextStep");
        stays(none, "0:1", "nextStep");
        row(instant, "1:1000", "nextStep", 0, true, "2:0", "stopped");
        row(instant, "2:0", "nextStep", 0, true, "3:0", "stopped");
        row(instant, "2:1", "nextStep", 0, true, "3:0", "stopped");
        stays("click 1, click 0", "2:0", "nextStep");
        row("after 1", "0:0", "nextStep", 0, true, "1:0", "stopped");

        stays(three, "0:0", "prevStep");
        stays(three, "0:7", "prevStep");
        row(three, "1:0", "prevStep", 0, true, "0:0", "stopped");
        row(three, "1:1000", "prevStep", 0, true, "0:0", "stopped");
        row(three, "3:0", "prevStep", 0, true, "2:500", "stopped");
        row(three, "3:250", "prevStep", 0, true, "2:500", "stopped");
        row(three, "2:500", "prevStep", 0, true, "1:1000", "stopped");
        row(instant, "3:7", "prevStep", 0, true, "2:0", "stopped");
        stays(none, "0:1", "prevStep");

        stays(three, "0:0", "nextFrame", 40);
        stays(three, "0:1", "nextFrame", 40);
        row(three, "1:0", "nextFrame", 40, true, "1:40", "kept");
        row(three, "1:40", "nextFrame", 0, true, "1:40", "kept");
        row(three, "1:900", "nextFrame", 1000, true, "1:1900", "kept");
        row(three, "1:999", "nextFrame", 1, true, "1:1000", "kept");
        stays(three, "1:1000", "nextFrame", 40);
        stays(three, "1:1900", "nextFrame", 1000);
        stays(three, "3:250", "nextFrame", 1);
        stays(instant, "2:0", "nextFrame", 40);
        stays(none, "0:0", "nextFrame", 40);
        stays(none, "0:1", "nextFrame", 40);
        // A first step that starts by itself keeps the time.
        row("after 1, click 1", "0:0", "nextFrame", 40, true, "1:40", "kept");
        row("with 1, click 1", "0:0", "nextFrame", 40, true, "1:40", "kept");
        row("0 1", "0:0", "nextFrame", 40, true, "1:40", "kept");
        row("-1 1", "0:0", "nextFrame", 40, true, "1:40", "kept");
        row("127 1", "0:0", "nextFrame", 40, true, "1:40", "kept");
        row("after 1", "0:0", "nextFrame", 0, true, "1:0", "kept");
        row("after 1", "0:1", "nextFrame", 40, true, "1:41", "kept");
        row("after 1", "0:999", "nextFrame", 40, true, "1:1039", "kept");
        row("after 1", "0:1000", "nextFrame", 40, false, "1:1000", "kept");
        row("after 0", "0:0", "nextFrame", 40, false, "1:0", "kept");
        row("click 1, after 0.5", "0:0", "nextFrame", 40, true, "1:40", "kept");
        row("click 1, after 0.5, click 1", "0:0", "nextFrame", 40, true, "1:40", "kept");
        stays("click 1, with 0.5", "0:0", "nextFrame", 40);
        stays("click 1, with 0.5, click 1, after 1", "0:0", "nextFrame", 40);
        row("after 1, after 1", "1:1000", "nextFrame", 40, true, "1:1040", "kept");
        // Past the end of 32 bits.
        row(endless, "1:4294967294", "nextFrame", 1, true, "1:4294967295", "kept");
        row(endless, "1:4294967294", "nextFrame", 40, true, "1:38", "kept");
        row(endless, "1:1", "nextFrame", kMax, true, "1:0", "kept");
        stays(endless, "1:4294967295", "nextFrame", 40);

        row(three, "1:30", "prevFrame", 50, true, "1:0", "kept");
        row(three, "1:30", "prevFrame", 30, true, "1:0", "kept");
        row(three, "1:31", "prevFrame", 30, true, "1:1", "kept");
        row(three, "1:5", "prevFrame", 0, true, "1:5", "kept");
        row(three, "1:1900", "prevFrame", 100, true, "1:1800", "kept");
        row(three, "2:7", "prevFrame", kMax, true, "2:0", "kept");
        row(three, "0:1", "prevFrame", 1, true, "0:0", "kept");
        stays(three, "1:0", "prevFrame", 50);
        stays(three, "2:0", "prevFrame", 0);
        stays(none, "0:0", "prevFrame", 1);

        row(three, "0:0", "StartRun", 0, kNothing, "0:1", "started");
        row(three, "1:0", "StartRun", 0, kNothing, "1:1", "started");
        row(three, "1:1", "StartRun", 0, kNothing, "1:1", "started");
        row(three, "1:30", "StartRun", 0, kNothing, "1:30", "started");
        row(three, "3:250", "StartRun", 0, kNothing, "3:250", "started");
        row(instant, "2:0", "StartRun", 0, kNothing, "2:1", "started");
        row("after 1", "0:0", "StartRun", 0, kNothing, "0:1", "started");
        row(none, "0:0", "StartRun", 0, kNothing, "0:1", "started");

        row(three, "1:30", "StopRun", 0, kNothing, "1:30", "stopped");
        row(three, "0:1", "StopRun", 0, kNothing, "0:1", "stopped");
    }
    void positions()
    {
        QFETCH(QByteArray, effects);
        QFETCH(QString, from);
        QFETCH(QString, name);
        QFETCH(quint32, argument);
        QFETCH(QString, timer);
        for (const bool running : {false, true}) {
            OpenPlayer player;
            QVERIFY(player.Init(1, effectsBytes(effects), 25));
            player.animStep = from.section(QLatin1Char(':'), 0, 0).toUInt();
            player.passedDuration = from.section(QLatin1Char(':'), 1).toUInt();
            if (running)
                player.animTimer.start();
            QCOMPARE(player.IsRunning(), running);
            QTEST(operation(name).play(player, argument), "result");
            QTEST(position(player), "to");
            QCOMPARE(position(player), position(player.animStep, player.passedDuration));
            QCOMPARE(player.IsRunning(), timer == QLatin1String("started") ||
                                             (timer == QLatin1String("kept") && running));
        }
    }

    void aClearedPlayerIsLikeAPageWithoutSteps()
    {
        OpenPlayer player;
        for (int kind = 0; kind < 4; ++kind) {
            for (const char *name : {"IsAtHome", "IsAtEnd"})
                QCOMPARE(operation(QLatin1String(name)).play(player, 0), 1);
            for (const char *name : {"nextStep", "prevStep", "nextFrame", "prevFrame"})
                QCOMPARE(operation(QLatin1String(name)).play(player, 40), 0);
            for (const char *name : {"GotoHome", "GotoEnd", "SetAnimStep", "SetAnimPassedDuration"})
                operation(QLatin1String(name)).play(player, 40);
            for (const quint32 step : {0U, 1U, kMax})
                QCOMPARE(player.GetStepDuration(step), 0U);
            QCOMPARE(position(player), QStringLiteral("0:0"));
            player.StartRun(); // its millisecond stays until the next positioning
            player.StopRun();
            QCOMPARE(player.IsAtHome(), false);
            QCOMPARE(player.IsAtEnd(), true);
            player.GotoHome();
            QCOMPARE(player.IsAtHome(), true);

            if (kind == 0) {
                QCOMPARE(player.Init(7, effectsBytes(kThreeSteps), 25), false);
            } else if (kind == 1) {
                QCOMPARE(player.Init(1, effectsBytes(""), 25), true);
            } else {
                QCOMPARE(player.Init(1, effectsBytes(kThreeSteps), 25), true);
                player.GotoEnd();
                player.Clear();
            }
        }
    }

    // A step that starts by itself starts a page as step 1 only.
    void noFirstStep()
    {
        OpenPlayer player;
        player.load(pageOf({{kWith, 1, 1}}, {1}));
        auto node = player.effectSteps.extract(1);
        node.key() = 2;
        player.effectSteps.insert(std::move(node));
        QCOMPARE(player.nextFrame(40), false);
        QCOMPARE(position(player), QStringLiteral("0:0"));
    }

    void stepDurations()
    {
        OpenPlayer player;
        QVERIFY(player.Init(1, effectsBytes(kThreeSteps), 25));
        QCOMPARE(player.GetStepCount(), 3U);
        QVector<quint32> durations;
        for (const quint32 step : {0U, 1U, 2U, 3U, 4U, kMax})
            durations << player.GetStepDuration(step);
        QCOMPARE(durations, (QVector<quint32>{0, 1000, 500, 250, 0, 0}));
    }

    void startRunReadsTheClock()
    {
        OpenPlayer player;
        QVERIFY(player.Init(1, effectsBytes("click 1"), 25));
        for (int i = 0; i < 2; ++i) { // the second time it runs already
            player.lastTickMSecs = 0;
            const qint64 before = QDateTime::currentMSecsSinceEpoch();
            player.StartRun();
            QVERIFY(player.lastTickMSecs >= before);
            QVERIFY(player.lastTickMSecs <= QDateTime::currentMSecsSinceEpoch());
        }
        player.lastTickMSecs = 77;
        player.StopRun();
        player.Clear();
        QCOMPARE(player.lastTickMSecs, qint64(77));
    }

    void randomSequences_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 60; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }
    void randomSequences()
    {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        const auto pick = [&random](const QVector<quint32> &values) {
            return values[random.bounded(values.size())];
        };

        const auto seconds = [](quint32 ms) {
            return ' ' + QByteArray::number(ms / 1000.0, 'g', 12);
        };

        // A step is one group, or a group and another after it. Eighths of a second are exact.
        Reference expected;
        QByteArrayList effects;
        for (quint32 step = random.bounded(6U); step > 0; --step) {
            const bool isFirst = effects.isEmpty();
            const quint32 trigger = isFirst ? pick({0, 1, 1, 2, 3}) : 1;
            const quint32 longest = pick({0, 0, 125, 250, 1000, 4194304000});
            effects << QByteArray::number(trigger) + seconds(longest);
            if (random.bounded(2))
                effects << "with" + seconds(longest / 2);
            const bool hasMore = random.bounded(3) == 0;
            const quint32 more = hasMore ? pick({0, 125, 4194304000}) : 0;
            if (hasMore)
                effects << "after" + seconds(more);
            expected.durations << longest + more; // modulo 2^32
            expected.startsByItself |= isFirst && (trigger != 1 || hasMore);
        }

        OpenPlayer player;
        const QByteArray page = effects.join(", ");
        QVERIFY(player.Init(1, effectsBytes(page), 25));
        QStringList story{QString::fromLatin1(page)};
        for (int i = 0; i < 400; ++i) {
            const Operation &next =
                kOperations[random.bounded(static_cast<int>(std::size(kOperations)))];
            const quint32 argument = pick({0, 1, 2, 3, 4, 40, 125, 126, 1000, 0x7FFFFFFF, kMax});
            story << QStringLiteral("%1 %2").arg(QLatin1String(next.name)).arg(argument);
            const int result = next.play(player, argument);
            const int due = next.tell(expected, argument);
            if (result != due || player.GetAnimStep() != expected.step ||
                player.GetAnimPassedDuration() != expected.passed ||
                player.IsRunning() != expected.isRunning)
                QFAIL(qPrintable(story.join(QStringLiteral("; "))));
        }
    }
};

QTEST_GUILESS_MAIN(AnimPlaybackTest)
#include "tst_animplayback.moc"
