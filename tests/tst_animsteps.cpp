#include "AnimModel.h"
#include "PlainModel.h"
#include "PlainSteps.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>
#include <type_traits>

using namespace AnimModel;

namespace {

constexpr float kSignalling = std::numeric_limits<float>::signaling_NaN();
constexpr float kDenormal = std::numeric_limits<float>::denorm_min();

// Every step as "NUMBER: type TYPE, MS = GROUP + GROUP", a group as "[EFFECTS] MS", an effect by
// its place on the page, from 0; "?" is none of the page's.
QStringList stepsInWords(const OpenPlayer &player)
{
    const QVector<PPT_Effect *> known(player.curPage->effects.begin(),
                                      player.curPage->effects.end());
    QStringList words;
    for (const auto &[key, step] : player.effectSteps) {
        QStringList groups;
        for (const auto &group : step.effectGrps) {
            QStringList effects;
            for (PPT_Effect *effect : group.effects) {
                const int at = known.indexOf(effect);
                effects << (at < 0 ? QStringLiteral("?") : QString::number(at));
            }
            groups << QStringLiteral("[%1] %2")
                          .arg(effects.join(QLatin1Char(' ')))
                          .arg(group.grpDuration);
        }
        words << QStringLiteral("%1: type %2, %3 = %4")
                     .arg(key)
                     .arg(step.stepType)
                     .arg(step.stepDuration)
                     .arg(groups.join(QLatin1String(" + ")));
        if (step.stepIndex != key)
            words << QStringLiteral("stepIndex %1").arg(step.stepIndex);
    }
    return words;
}

// The same, worked out by counting.
QStringList expectedInWords(const PPT_Page &page)
{
    const std::vector<PlainSteps::Place> places = PlainSteps::places(page);
    QStringList words;
    const unsigned int count = places.empty() ? 0 : places.back().step;
    for (unsigned int step = 1; step <= count; ++step) {
        QStringList groups;
        int type = 0;
        unsigned int group = 1;
        for (;; ++group) {
            QStringList effects;
            for (size_t i = 0; i < places.size(); ++i) {
                if (places[i].step != step || places[i].group != group)
                    continue;
                if (effects.isEmpty())
                    type = places[i].effect->timing.triggerType;
                effects << QString::number(i);
            }
            if (effects.isEmpty())
                break;
            groups << QStringLiteral("[%1] %2")
                          .arg(effects.join(QLatin1Char(' ')))
                          .arg(PlainSteps::groupDuration(places, step, group));
        }
        words << QStringLiteral("%1: type %2, %3 = %4")
                     .arg(step)
                     .arg(type)
                     .arg(PlainSteps::groupStart(places, step, group))
                     .arg(groups.join(QLatin1String(" + ")));
    }
    return words;
}

float randomSeconds(QRandomGenerator &random)
{
    static const float kOdd[] = {0.0F, -0.0F,      -1.0F,   kNaN,   kInfinity, -kInfinity, 1e10F,
                                 5e6F, 4294967.0F, 0.0015F, 0.253F, kDenormal, 3e6F};
    if (random.bounded(4) == 0)
        return kOdd[random.bounded(int(std::size(kOdd)))];
    return float(random.bounded(5000)) / 1000.0F;
}

} // namespace

Q_DECLARE_METATYPE(Effects)

/// How a page's effects are cut into steps, and these into groups.
class AnimStepsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void records()
    {
        static_assert(std::is_same_v<decltype(PPTAnimDisplay::EffectStep::stepType), qint16>);
        static_assert(
            std::is_same_v<decltype(PPTAnimDisplay::EffectStep::stepDuration), unsigned int>);
        static_assert(
            std::is_same_v<decltype(PPTAnimDisplay::EffectGrp::grpDuration), unsigned int>);

        PPTAnimDisplay::EffectStep step;
        QVERIFY(AnimModel::areInOrder(&step.stepIndex, &step.stepType, &step.effectGrps,
                                      &step.stepDuration));
        QCOMPARE(step.stepIndex, 0U);
        QCOMPARE(int(step.stepType), 2);
        QCOMPARE(step.stepDuration, 0U);
        QVERIFY(step.effectGrps.empty());
        PPTAnimDisplay::EffectGrp group;
        QVERIFY(AnimModel::areInOrder(&group.effects, &group.grpDuration));
        QCOMPARE(group.grpDuration, 0U);
        QVERIFY(group.effects.empty());

        PPT_Effect effect;
        group.effects.push_back(&effect);
        step.effectGrps.push_back(group);
        PPTAnimDisplay::EffectStep copy = step;
        copy.effectGrps.front().effects.push_back(&effect);
        QCOMPARE(step.effectGrps.front().effects.size(), size_t(1)); // lists are a copy's own
        QCOMPARE(group.effects.size(), size_t(1));
        QCOMPARE(copy.effectGrps.front().effects.front(), &effect); // effects are shared
    }

    void trigger_data()
    {
        QTest::addColumn<int>("trigger");
        QTest::addColumn<bool>("isClick");
        QTest::addColumn<bool>("isAfter");
        QTest::newRow("click") << 1 << true << false;
        QTest::newRow("with") << 2 << false << false;
        QTest::newRow("after") << 3 << false << true;
        for (int other : {0, -1, -3, 4, 127, -128, -127, -125})
            QTest::addRow("%d", other) << other << false << false;
    }

    void trigger()
    {
        QFETCH(int, trigger);
        PPT_Effect effect;
        effect.exit = 1; // none of the other bytes counts
        effect.effectNo = 3;
        effect.timing.autoReverse = 1;
        effect.timing.timingB11 = 3;
        effect.timing.triggerType = static_cast<qint8>(trigger);
        OpenPlayer player;
        QTEST(player.IsClickEffect(&effect), "isClick");
        QTEST(player.IsAfterEffect(&effect), "isAfter");
    }

    void noEffectHasNoTrigger()
    {
        OpenPlayer player;
        QVERIFY(!player.IsClickEffect(nullptr));
        QVERIFY(!player.IsAfterEffect(nullptr));
    }

    void steps_data()
    {
        QTest::addColumn<Effects>("effects");
        QTest::addColumn<QStringList>("expected");

        const auto row = [](const char *name, const Effects &effects, Lines expected) {
            QTest::newRow(name) << effects << lines(expected);
        };
        row("none", {}, {});
        row("with, after and another click", {{1, 0.5F}, {2, 1.0F}, {3, 0.25F}, {1, 2.0F}},
            {"1: type 3, 1250 = [0 1] 1000 + [2] 250", "2: type 1, 2000 = [3] 2000"});
        row("after, then click", {{3, 1.0F}, {1, 1.0F}},
            {"1: type 3, 1000 = [0] 1000", "2: type 1, 1000 = [1] 1000"});

        row("one click", {{1, 1.0F}}, {"1: type 1, 1000 = [0] 1000"});
        row("one with", {{2, 1.0F}}, {"1: type 2, 1000 = [0] 1000"});
        row("one after", {{3, 1.0F}}, {"1: type 3, 1000 = [0] 1000"});
        row("clicks only", {{1, 1.0F}, {1, 2.0F}, {1, 3.0F}},
            {"1: type 1, 1000 = [0] 1000", "2: type 1, 2000 = [1] 2000",
             "3: type 1, 3000 = [2] 3000"});
        row("withs only: one group", {{2, 1.0F}, {2, 3.0F}, {2, 2.0F}},
            {"1: type 2, 3000 = [0 1 2] 3000"});
        row("afters only: one step", {{3, 1.0F}, {3, 3.0F}, {3, 2.0F}},
            {"1: type 3, 6000 = [0] 1000 + [1] 3000 + [2] 2000"});

        row("click, after: the type of the last group", {{1, 1.0F}, {3, 2.0F}},
            {"1: type 3, 3000 = [0] 1000 + [1] 2000"});
        row("click, with: the type of the first effect", {{1, 1.0F}, {2, 2.0F}},
            {"1: type 1, 2000 = [0 1] 2000"});
        row("click, after, with, after, with",
            {{1, 1.0F}, {3, 2.0F}, {2, 3.0F}, {3, 4.0F}, {2, 1.0F}},
            {"1: type 3, 8000 = [0] 1000 + [1 2] 3000 + [3 4] 4000"});
        row("with, after, click", {{2, 1.0F}, {3, 2.0F}, {1, 3.0F}},
            {"1: type 3, 3000 = [0] 1000 + [1] 2000", "2: type 1, 3000 = [2] 3000"});
        row("after, with, click", {{3, 1.0F}, {2, 2.0F}, {1, 3.0F}},
            {"1: type 3, 2000 = [0 1] 2000", "2: type 1, 3000 = [2] 3000"});
        row("with, with, click, with", {{2, 1.0F}, {2, 2.0F}, {1, 3.0F}, {2, 4.0F}},
            {"1: type 2, 2000 = [0 1] 2000", "2: type 1, 4000 = [2 3] 4000"});
        row("a step leaves nothing to the next", {{1, 9.0F}, {3, 8.0F}, {1, 1.0F}},
            {"1: type 3, 17000 = [0] 9000 + [1] 8000", "2: type 1, 1000 = [2] 1000"});

        row("type 0 plays with the previous", {{1, 1.0F}, {0, 2.0F}},
            {"1: type 1, 2000 = [0 1] 2000"});
        row("type 0 opens", {{0, 1.0F}, {1, 2.0F}},
            {"1: type 0, 1000 = [0] 1000", "2: type 1, 2000 = [1] 2000"});
        row("type -1 opens", {{-1, 1.0F}}, {"1: type -1, 1000 = [0] 1000"});
        row("type 127 opens", {{127, 1.0F}}, {"1: type 127, 1000 = [0] 1000"});
        row("type -128 opens", {{-128, 1.0F}, {-1, 2.0F}, {127, 0.5F}},
            {"1: type -128, 2000 = [0 1 2] 2000"});
        row("other types after a click",
            {{1, 1.0F}, {-128, 2.0F}, {4, 3.0F}, {3, 1.0F}, {127, 2.0F}},
            {"1: type 3, 5000 = [0 1 2] 3000 + [3 4] 2000"});

        row("the longest is first", {{1, 3.0F}, {2, 1.0F}}, {"1: type 1, 3000 = [0 1] 3000"});
        row("of no time", {{1, 0.0F}, {3, 0.0F}, {1, 0.0F}},
            {"1: type 3, 0 = [0] 0 + [1] 0", "2: type 1, 0 = [2] 0"});
        row("group of 7 ms with a NaN at its end", {{1, 0.007F}, {2, kNaN}},
            {"1: type 1, 7 = [0 1] 7"});
        row("with a NaN at its beginning", {{1, kNaN}, {2, 0.007F}}, {"1: type 1, 7 = [0 1] 7"});
        row("with a NaN in its midst", {{1, 0.007F}, {2, -kNaN}, {2, 0.005F}},
            {"1: type 1, 7 = [0 1 2] 7"});
        row("with a signalling NaN in its midst", {{1, 0.003F}, {2, kSignalling}, {2, 0.005F}},
            {"1: type 1, 5 = [0 1 2] 5"});
        row("negative in the midst", {{1, 0.25F}, {2, -5.0F}, {2, 0.125F}},
            {"1: type 1, 250 = [0 1 2] 250"});
        row("only negative", {{1, -1.0F}, {2, -5.0F}, {3, -kInfinity}},
            {"1: type 3, 0 = [0 1] 0 + [2] 0"});
        row("infinity in the midst", {{1, 0.25F}, {2, kInfinity}, {2, 0.125F}, {3, 0.5F}},
            {"1: type 3, 499 = [0 1 2] 4294967295 + [3] 500"});
        row("minus infinity in the midst", {{1, 0.25F}, {2, -kInfinity}, {2, 0.5F}},
            {"1: type 1, 500 = [0 1 2] 500"});

        row("sum of 32 bits", {{1, 1e10F}, {3, 1.0F}},
            {"1: type 3, 999 = [0] 4294967295 + [1] 1000"});
        row("sum of 32 bits, twice over", {{1, 1e10F}, {3, 1e10F}, {3, 1e10F}},
            {"1: type 3, 4294967293 = [0] 4294967295 + [1] 4294967295 + [2] 4294967295"});
        row("sum of 32 bits that is 0", {{1, 2147483.648F}, {3, 2147483.648F}},
            {"1: type 3, 0 = [0] 2147483648 + [1] 2147483648"});
    }

    void steps()
    {
        QFETCH(Effects, effects);
        QFETCH(QStringList, expected);
        OpenPlayer player;
        player.take(pageOf(effects));
        player.AnalyszEffectSteps();
        QCOMPARE(stepsInWords(player), expected);
        QCOMPARE(expectedInWords(*player.curPage), expected); // the random test's measure, too
    }

    void milliseconds_data()
    {
        QTest::addColumn<float>("seconds");
        QTest::addColumn<unsigned int>("expected");
        const auto row = [](const char *name, float seconds, unsigned int expected) {
            QTest::newRow(name) << seconds << expected;
        };
        row("0.0015", 0.0015F, 1);
        row("0.0019", 0.0019F, 1);
        row("0.005", 0.005F, 5);
        row("0.029", 0.029F, 29);
        row("0.033", 0.033F, 33);
        row("0.249", 0.249F, 249);
        row("0.251", 0.251F, 250);
        row("0.253", 0.253F, 252);
        row("-1", -1.0F, 0);
        row("1e10", 1e10F, 4294967295U);
        row("infinity", kInfinity, 4294967295U);
        row("5e6", 5e6F, 4294967295U);
        row("4294967", 4294967.0F, 4294967040U);
        row("NaN", kNaN, 0);
        row("NaN, negative", -kNaN, 0);
        row("NaN, signalling", kSignalling, 0);
        row("minus infinity", -kInfinity, 0);
        row("0", 0.0F, 0);
        row("-0", -0.0F, 0);
        row("-0.0005", -0.0005F, 0);
        row("least denormal", kDenormal, 0);
        row("largest", std::numeric_limits<float>::max(), 4294967295U);
        row("most negative", -std::numeric_limits<float>::max(), 0);
        row("0.0009", 0.0009F, 0);
        row("0.001", 0.001F, 1);
        row("1", 1.0F, 1000);
        row("0.0625", 0.0625F, 62);
        row("2147483.648", 2147483.648F, 2147483648U);
    }

    void milliseconds()
    {
        QFETCH(float, seconds);
        QFETCH(unsigned int, expected);
        OpenPlayer player;
        player.take(pageOf({{1, seconds}, {1, 1.0F}}));
        player.AnalyszEffectSteps();
        QCOMPARE(player.GetStepDuration(1), expected);
        QCOMPARE(player.GetStepDuration(2), 1000U);
        QCOMPARE(player.effectSteps[1].effectGrps.front().grpDuration, expected);
        QCOMPARE(PlainSteps::milliseconds(*player.curPage->effects.front()), expected);
    }

    void lookUp()
    {
        OpenPlayer player;
        player.take(pageOf({{1, 0.5F}, {3, 1.0F}, {1, 2.0F}, {1, 0.25F}}));
        player.AnalyszEffectSteps();
        QCOMPARE(player.GetStepCount(), 3U);
        for (unsigned int step : {1U, 2U, 3U}) {
            QCOMPARE(player.GetEffectStep(step), &player.effectSteps.at(step));
            QCOMPARE(player.GetEffectStep(step)->stepIndex, step);
        }
        for (unsigned int none : {0U, 4U, 5U, 0x10001U, 0x80000001U, 0xFFFFFFFFU}) {
            QVERIFY(!player.GetEffectStep(none));
            QCOMPARE(player.GetStepDuration(none), 0U);
        }
        QCOMPARE(player.effectSteps.size(), size_t(3)); // asking makes no entries

        QCOMPARE(player.GetStepDuration(1), 1500U);
        QCOMPARE(player.GetStepDuration(2), 2000U);
        QCOMPARE(player.GetStepDuration(3), 250U);
    }

    void lookUpIsExact()
    {
        OpenPlayer player;
        player.effectSteps[2].stepDuration = 20;
        player.effectSteps[7].stepDuration = 70;
        for (unsigned int none : {0U, 1U, 3U, 6U, 8U}) {
            QVERIFY(!player.GetEffectStep(none));
            QCOMPARE(player.GetStepDuration(none), 0U);
        }
        QCOMPARE(player.GetStepDuration(2), 20U);
        QCOMPARE(player.GetStepDuration(7), 70U);
        QCOMPARE(player.GetStepCount(), 2U);
    }

    void noPage()
    {
        OpenPlayer player;
        QCOMPARE(player.GetStepCount(), 0U);
        QVERIFY(!player.GetEffectStep(0));
        QVERIFY(!player.GetEffectStep(1));
        QCOMPARE(player.GetStepDuration(0), 0U);
        QCOMPARE(player.GetStepDuration(1), 0U);
    }

    void rebuiltFromThePage()
    {
        OpenPlayer player;
        player.take(pageOf({{1, 1.0F}, {1, 2.0F}, {1, 3.0F}}));
        player.AnalyszEffectSteps();
        player.effectSteps[9].stepDuration = 9;
        player.AnalyszEffectSteps();
        QCOMPARE(stepsInWords(player),
                 lines({"1: type 1, 1000 = [0] 1000", "2: type 1, 2000 = [1] 2000",
                        "3: type 1, 3000 = [2] 3000"}));

        player.curPage->effects.front()->timing.triggerType = 3;
        player.curPage->effects.back()->timing.triggerType = 0;
        player.AnalyszEffectSteps();
        QCOMPARE(stepsInWords(player),
                 lines({"1: type 3, 1000 = [0] 1000", "2: type 1, 3000 = [1 2] 3000"}));

        player.curPage->ClearDat(player.curPage->effects);
        player.AnalyszEffectSteps();
        QCOMPARE(player.GetStepCount(), 0U);
    }

    void onlyTheStepsAreTouched()
    {
        OpenPlayer player;
        player.take(pageOf({{1, 1.0F}, {1, 2.0F}}));
        player.animStep = 5;
        player.passedDuration = 77;
        player.shapeAnimDats[3].drawState = PPTAnimDisplay::DRAW_MOVE;
        player.AnalyszEffectSteps();
        QCOMPARE(player.animStep, 5U);
        QCOMPARE(player.passedDuration, 77U);
        QCOMPARE(player.shapeAnimDats.size(), size_t(1));
        QCOMPARE(player.curPage->effects.size(), size_t(2));
    }

    void initMakesTheSteps()
    {
        OpenPlayer player;
        const QByteArray bytes = modelBytes({
            pageOf({{-128, 0.5F}, {3, 0.253F}, {1, 2.0F}}),
            newPage({}, {newEffect(kClick, 4)}, {}, 2),
            newPage({}, {}, {}, 3),
        });
        QVERIFY(player.Init(1, bytes, 25));
        QCOMPARE(stepsInWords(player),
                 lines({"1: type 3, 752 = [0] 500 + [1] 252", "2: type 1, 2000 = [2] 2000"}));
        QVERIFY(player.Init(2, bytes, 25));
        QCOMPARE(stepsInWords(player), lines({"1: type 1, 4000 = [0] 4000"}));
        QVERIFY(player.Init(3, bytes, 25));
        QCOMPARE(player.GetStepCount(), 0U);
        QVERIFY(player.Init(1, bytes, 25));
        QVERIFY(!player.Init(4, bytes, 25));
        QCOMPARE(player.GetStepCount(), 0U);
    }

    void startsByItself_data()
    {
        QTest::addColumn<Effects>("effects");
        QTest::addColumn<bool>("byItself");
        QTest::newRow("click") << Effects{{1, 1.0F}} << false;
        QTest::newRow("click, with") << Effects{{1, 1.0F}, {2, 1.0F}} << false;
        QTest::newRow("click, after") << Effects{{1, 1.0F}, {3, 1.0F}} << true;
        QTest::newRow("with") << Effects{{2, 1.0F}} << true;
        QTest::newRow("after") << Effects{{3, 1.0F}} << true;
        QTest::newRow("0") << Effects{{0, 1.0F}} << true;
        QTest::newRow("-1") << Effects{{-1, 1.0F}} << true;
        QTest::newRow("127") << Effects{{127, 1.0F}} << true;
        QTest::newRow("after, with, click") << Effects{{3, 1.0F}, {2, 1.0F}, {1, 1.0F}} << true;
    }

    void startsByItself()
    {
        QFETCH(Effects, effects);
        QFETCH(bool, byItself);
        OpenPlayer player;
        QVERIFY(player.Init(1, modelBytes({pageOf(effects)}), 25));
        QCOMPARE(player.nextFrame(40), byItself);
        QCOMPARE(player.GetAnimStep(), byItself ? 1U : 0U);
        QCOMPARE(player.GetAnimPassedDuration(), byItself ? 40U : 0U);
    }

    void randomPages_data()
    {
        QTest::addColumn<unsigned int>("seed");
        for (unsigned int seed = 1; seed <= 10; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }

    void randomPages()
    {
        QFETCH(unsigned int, seed);
        static const int kTriggers[] = {1, 1, 1, 2, 2, 2, 3, 3, 3, 0, -1, 127, -128};
        QRandomGenerator random(seed);
        OpenPlayer player;
        for (int round = 0; round < 400; ++round) {
            PPT_Page *page = newPage({}, {});
            for (int i = random.bounded(13); i > 0; --i) {
                page->effects.push_back(new PPT_Effect);
                PPT_Effect &effect = *page->effects.back();
                PlainModel::setRandom(random, effect); // all but these two make no difference
                effect.timing.triggerType =
                    static_cast<qint8>(kTriggers[random.bounded(int(std::size(kTriggers)))]);
                effect.timing.duration = randomSeconds(random);
            }
            player.take(page);
            player.AnalyszEffectSteps();
            const QStringList expected = expectedInWords(*player.curPage);
            QCOMPARE(stepsInWords(player), expected);
            QCOMPARE(player.GetStepCount(), unsigned(expected.size()));
        }
    }
};

QTEST_GUILESS_MAIN(AnimStepsTest)
#include "tst_animsteps.moc"
