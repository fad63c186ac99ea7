#include "AnimModel.h"
#include "PlainStates.h"
#include "RandomEffects.h"

#include <QRandomGenerator>
#include <QTest>

using namespace AnimModel;
using ShapeAnimDat = PPTAnimDisplay::ShapeAnimDat;
using ShapeList = QList<ShapeAnimDat *>;

namespace {

void evaluate(OpenPlayer &player, unsigned int step, unsigned int passed)
{
    player.animStep = step;
    player.passedDuration = passed;
    player.getAllShapeDrawState();
}

QString stateInWords(int state)
{
    static const char *const kNames[] = {"rest", "show", "move", "hide"};
    return state >= 0 && state < 4 ? QString::fromLatin1(kNames[state]) : QString::number(state);
}

// "ID: STATE #EFFECT PASSED/DURATION", the effect by its place on the page, from 0; "-" is none,
// "?" none of the page's. Entries that have no shape end in " lost".
QStringList entriesInWords(const OpenPlayer &player)
{
    const QVector<PPT_Effect *> known(player.curPage->effects.begin(),
                                      player.curPage->effects.end());
    QStringList words;
    for (const auto &[id, dat] : player.shapeAnimDats) {
        const int at = known.indexOf(dat.effect);
        const QString effect = !dat.effect ? QStringLiteral("-")
                               : at < 0    ? QStringLiteral("?")
                                           : QString::number(at);
        words << QStringLiteral("%1: %2 #%3 %4/%5%6")
                     .arg(id)
                     .arg(stateInWords(dat.drawState))
                     .arg(effect)
                     .arg(dat.effectPassed)
                     .arg(dat.effectDuration)
                     .arg(dat.shape ? QString() : QStringLiteral(" lost"));
    }
    return words;
}

} // namespace

Q_DECLARE_METATYPE(Effects)

/// What is hidden, at rest or moving at a position.
class AnimShapeStateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void records()
    {
        QCOMPARE(int(PPTAnimDisplay::DRAW_DEFAULT), 0);
        QCOMPARE(int(PPTAnimDisplay::DRAW_SHOW), 1);
        QCOMPARE(int(PPTAnimDisplay::DRAW_MOVE), 2);
        QCOMPARE(int(PPTAnimDisplay::DRAW_HIDE), 3);
        QCOMPARE(int(ShapeAnimDat::EFFECT_WAIT), 0);
        QCOMPARE(int(ShapeAnimDat::EFFECT_RUN), 1);
        QCOMPARE(int(ShapeAnimDat::EFFECT_END), 2);
        const ShapeAnimDat dat;
        QVERIFY(AnimModel::areInOrder(&dat.shape, &dat.drawState, &dat.effect, &dat.effectDuration,
                                      &dat.effectPassed));
        QVERIFY(!dat.shape);
        QCOMPARE(dat.drawState, 0);
        QVERIFY(!dat.effect);
        QCOMPARE(dat.effectDuration, 0U);
        QCOMPARE(dat.effectPassed, 0U);
    }

    void collects()
    {
        OpenPlayer player;
        player.take(pageOf({{1, 1, 8, 0, 0}}, {7, 65535, 0, 7, 32768}));
        const std::vector<PPT_Shape *> shapes(player.curPage->shapes.begin(),
                                              player.curPage->shapes.end());
        PPT_Effect effect;
        player.shapeAnimDats[7] = moving(effect, 5, 6); // of before: must leave nothing
        player.shapeAnimDats[7].shape = shapes[0];
        player.shapeAnimDats[-1] = moving(effect, 5, 6);
        player.shapeAnimDats[8] = moving(effect, 5, 6);
        player.CollectShapes();
        QCOMPARE(entriesInWords(player), lines({"0: rest #- 0/0", "7: rest #- 0/0",
                                                "32768: rest #- 0/0", "65535: rest #- 0/0"}));
        QCOMPARE(player.shapeAnimDats[0].shape, shapes[2]);
        QCOMPARE(player.shapeAnimDats[7].shape, shapes[3]); // the later one
        QCOMPARE(player.shapeAnimDats[32768].shape, shapes[4]);
        QCOMPARE(player.shapeAnimDats[65535].shape, shapes[1]);

        player.curPage->ClearDat(player.curPage->shapes);
        player.CollectShapes();
        QVERIFY(player.shapeAnimDats.empty());
    }

    void collectingTouchesNothingElse()
    {
        OpenPlayer player;
        player.load(pageOf({{1, 1, 8, 0, 0}}, {7}));
        player.animStep = 4;
        player.passedDuration = 5;
        player.CollectShapes();
        QCOMPARE(player.animStep, 4U);
        QCOMPARE(player.passedDuration, 5U);
        QCOMPARE(player.effectSteps.size(), size_t(1));
    }

    void initCollects()
    {
        OpenPlayer player;
        const QByteArray bytes =
            modelBytes({pageOf({{1, 1, 8, 0, 0}}, {7, 9}), newPage({newShape(3)}, {}, {}, 2)});
        QVERIFY(player.Init(1, bytes, 25));
        QCOMPARE(entriesInWords(player), lines({"7: rest #- 0/0", "9: rest #- 0/0"}));
        player.getAllShapeDrawState();
        QCOMPARE(entriesInWords(player),
                 lines({"7: rest #- 0/0", "8: hide #0 0/0 lost", "9: rest #- 0/0"}));
        QVERIFY(player.Init(2, bytes, 25));
        QCOMPARE(entriesInWords(player), lines({"3: rest #- 0/0"}));
        QVERIFY(!player.Init(5, bytes, 25));
        QVERIFY(player.shapeAnimDats.empty());
    }

    void update_data()
    {
        QTest::addColumn<int>("presentNumber"); // -99999: there is no present effect
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("exit");
        QTest::addColumn<int>("phase");
        QTest::addColumn<bool>("takesOver");
        QTest::addColumn<int>("state"); // 2 before

        constexpr int kNone = -99999;
        constexpr int kWait = 0;
        constexpr int kRun = 1;
        constexpr int kEnd = 2;
        const auto row = [](const char *name, int present, int number, int exit, int phase,
                            bool takesOver, int state) {
            QTest::newRow(name) << present << number << exit << phase << takesOver << state;
        };
        row("entrance runs", kNone, 5, 0, kRun, true, 2);
        row("exit runs", kNone, 5, -1, kRun, true, 2);
        row("greater number runs", 1, 5, 0, kRun, true, 2);
        row("entrance has ended", kNone, 5, 0, kEnd, true, 1);
        row("exit has ended", kNone, 5, -1, kEnd, true, 3);
        row("greater number has ended", 1, 5, 0, kEnd, true, 1);
        row("greater number has left", 1, -1, -1, kEnd, true, 3);
        for (int other : {1, 2, -2, 127, -128}) {
            QTest::addRow("exit %d is an entrance: ends", other)
                << 5 << 5 << other << kEnd << true << 1;
            QTest::addRow("exit %d is an entrance: waits", other)
                << 5 << 5 << other << kWait << true << 3;
        }
        row("entrance waits, first", kNone, 5, 0, kWait, true, 3);
        row("exit waits, first", kNone, 5, -1, kWait, true, 1);
        row("waits, greatest number, first", kNone, -1, 0, kWait, true, 3);
        row("waits, lower number", 5, 4, 0, kWait, true, 3);
        row("exit waits, lower number", 5, 4, -1, kWait, true, 1);
        row("waits, equal number", 5, 5, 0, kWait, true, 3);
        row("exit waits, equal number", 5, 5, -1, kWait, true, 1);
        row("waits, greater number", 5, 6, 0, kWait, false, 2);
        row("exit waits, greater number", 5, 6, -1, kWait, false, 2);
        row("-1 waits behind 0: is 65535", 0, -1, 0, kWait, false, 2);
        row("-1 waits behind 32767", 32767, -1, 0, kWait, false, 2);
        row("-32768 waits behind 32767", 32767, -32768, 0, kWait, false, 2);
        row("-1 waits behind -2", -2, -1, 0, kWait, false, 2);
        row("-2 waits, -1 is present", -1, -2, 0, kWait, true, 3);
        row("0 waits, -1 is present", -1, 0, 0, kWait, true, 3);
        row("32767 waits, -32768 is present", -32768, 32767, -1, kWait, true, 1);
        row("-1 waits, -1 is present", -1, -1, 0, kWait, true, 3);
        for (int other : {3, 4, -1, -2, 256, 257, 258, kMost, kLeast}) {
            QTest::addRow("phase %d", other) << 5 << 4 << 0 << other << false << 2;
            QTest::addRow("phase %d of an exit, first", other)
                << kNone << 4 << -1 << other << false << 2;
        }
    }

    void update()
    {
        QFETCH(int, presentNumber);
        QFETCH(int, number);
        QFETCH(int, exit);
        QFETCH(int, phase);
        QFETCH(bool, takesOver);
        PPT_Effect present;
        present.effectNo = static_cast<qint16>(presentNumber);
        PPT_Effect effect;
        effect.effectNo = static_cast<qint16>(number);
        effect.exit = static_cast<qint8>(exit);
        effect.timing.duration = 9;
        PPT_Shape shape;

        ShapeAnimDat dat = moving(present, 11, 22);
        dat.shape = &shape;
        if (presentNumber == -99999)
            dat.effect = nullptr;
        PPT_Effect *before = dat.effect;
        dat.updateAnimDat(&effect, static_cast<ShapeAnimDat::EFFECT_STATE>(phase));
        QCOMPARE(dat.effect, takesOver ? &effect : before);
        QTEST(dat.drawState, "state");
        QCOMPARE(dat.shape, &shape);
        QCOMPARE(dat.effectPassed, 11U);
        QCOMPARE(dat.effectDuration, 22U);
    }

    // A path of positions on one player: what an evaluation leaves behind, the next one finds.
    void positions_data()
    {
        QTest::addColumn<Effects>("effects");
        QTest::addColumn<QStringList>("path"); // "STEP MS = ENTRY, ENTRY"

        const auto row = [](const char *name, const Effects &effects, Lines path) {
            QTest::newRow(name) << effects << lines(path);
        };
        row("entrance in step 1 of two", {{1, 0.5F, 1, 0, 0}, {1, 0.25F, 2, 0, 1}},
            {"0 0 = 1: hide #0 0/0, 2: hide #1 0/0", "1 0 = 1: move #0 0/500, 2: hide #1 0/0",
             "1 1 = 1: move #0 1/500, 2: hide #1 0/0", "1 499 = 1: move #0 499/500, 2: hide #1 0/0",
             "1 500 = 1: show #0 500/500, 2: hide #1 0/0",
             "2 0 = 1: show #0 500/500, 2: move #1 0/250",
             "2 250 = 1: show #0 500/500, 2: show #1 250/250"});
        row("exit in step 2 of three",
            {{1, 0.5F, 2, 0, 0}, {1, 0.25F, 1, -1, 1}, {1, 0.5F, 2, -1, 2}},
            {"0 0 = 1: show #1 0/0, 2: hide #0 0/0", "1 250 = 1: show #1 0/0, 2: move #0 250/500",
             "1 500 = 1: show #1 0/0, 2: show #0 500/500",
             "2 125 = 1: move #1 125/250, 2: show #0 500/500",
             "2 250 = 1: hide #1 250/250, 2: show #0 500/500",
             "3 0 = 1: hide #1 250/250, 2: move #2 0/500",
             "3 500 = 1: hide #1 250/250, 2: hide #2 500/500"});
        row("beyond the last step, and beyond the end of one", {{1, 0.5F, 1, 0, 0}},
            {"1 501 = 1: show #0 0/0", "1 4294967295 = 1: show #0 0/0", "2 0 = 1: show #0 0/0",
             "2 100 = 1: show #0 0/0", "4294967295 0 = 1: show #0 0/0"});
        row("home, but time has passed", {{1, 0.5F, 1, 0, 0}, {1, 0.5F, 2, -1, 0}},
            {"0 100 = 1: hide #0 0/0, 2: show #1 0/0"});

        // Groups of 250 and 125 ms.
        const Effects groups{{1, 0.25F, 1, 0, 0}, {3, 0.125F, 2, 0, 1}, {2, 0.0625F, 3, -1, 2}};
        row("boundaries of groups", groups,
            {"1 249 = 1: move #0 249/250, 2: hide #1 0/0, 3: show #2 0/0",
             "1 250 = 1: show #0 250/250, 2: move #1 0/125, 3: move #2 0/62",
             "1 251 = 1: show #0 250/250, 2: move #1 1/125, 3: move #2 1/62",
             "1 311 = 1: show #0 250/250, 2: move #1 61/125, 3: move #2 61/62",
             "1 312 = 1: show #0 250/250, 2: move #1 62/125, 3: hide #2 62/62",
             "1 313 = 1: show #0 250/250, 2: move #1 63/125, 3: hide #2 63/62",
             "1 374 = 1: show #0 250/250, 2: move #1 124/125, 3: hide #2 124/62",
             "1 375 = 1: show #0 250/250, 2: show #1 125/125, 3: hide #2 125/62",
             "1 376 = 1: show #0 250/250, 2: show #1 125/125, 3: hide #2 125/62"});
        row("the times stay while the group is not current", groups,
            {"1 10 = 1: move #0 10/250, 2: hide #1 0/0, 3: show #2 0/0",
             "1 300 = 1: show #0 10/250, 2: move #1 50/125, 3: move #2 50/62",
             "1 20 = 1: move #0 20/250, 2: hide #1 50/125, 3: show #2 50/62",
             "0 0 = 1: hide #0 20/250, 2: hide #1 50/125, 3: show #2 50/62",
             "2 0 = 1: show #0 20/250, 2: show #1 50/125, 3: hide #2 50/62",
             "1 0 = 1: move #0 0/250, 2: hide #1 50/125, 3: show #2 50/62"});
        row("groups of no length", {{1, 0.0F, 1, 0, 0}, {3, 0.0F, 2, -1, 1}, {3, 0.25F, 3, 0, 2}},
            {"0 0 = 1: hide #0 0/0, 2: show #1 0/0, 3: hide #2 0/0",
             "1 0 = 1: show #0 0/0, 2: hide #1 0/0, 3: move #2 0/250",
             "1 1 = 1: show #0 0/0, 2: hide #1 0/0, 3: move #2 1/250",
             "1 250 = 1: show #0 0/0, 2: hide #1 0/0, 3: show #2 250/250"});
        row("group of no length in the midst",
            {{1, 0.25F, 1, 0, 0}, {3, 0.0F, 2, 0, 1}, {3, 0.25F, 3, 0, 2}},
            {"1 249 = 1: move #0 249/250, 2: hide #1 0/0, 3: hide #2 0/0",
             "1 250 = 1: show #0 250/250, 2: show #1 0/0, 3: move #2 0/250",
             "1 251 = 1: show #0 250/250, 2: show #1 0/0, 3: move #2 1/250"});

        row("durations to ms",
            {{1, 0.5F, 1, 0, 0},
             {2, 0.253F, 2, 0, 0},
             {2, kNaN, 3, 0, 0},
             {2, -1.0F, 4, -1, 0},
             {2, 0.0019F, 5, 0, 0},
             {2, 0.029F, 6, 0, 0}},
            {"1 1 = 1: move #0 1/500, 2: move #1 1/252, 3: show #2 1/0, 4: hide #3 1/0, "
             "5: show #4 1/1, 6: move #5 1/29",
             "1 28 = 1: move #0 28/500, 2: move #1 28/252, 3: show #2 28/0, 4: hide #3 28/0, "
             "5: show #4 28/1, 6: move #5 28/29",
             "1 0 = 1: move #0 0/500, 2: move #1 0/252, 3: show #2 0/0, 4: hide #3 0/0, "
             "5: move #4 0/1, 6: move #5 0/29"});
        row("longest duration, and the sum of 32 bits", {{1, 1e10F, 1, 0, 0}, {3, 1.0F, 2, 0, 1}},
            {"1 0 = 1: move #0 0/4294967295, 2: hide #1 0/0",
             "1 998 = 1: move #0 998/4294967295, 2: hide #1 0/0",
             "1 999 = 1: move #0 999/4294967295, 2: hide #1 0/0",
             "1 1000 = 1: move #0 1000/4294967295, 2: show #1 0/0",
             "1 4294967295 = 1: show #0 4294967295/4294967295, 2: show #1 0/0"});

        row("two effects of a group: the later one", {{1, 0.5F, 1, 0, 0}, {2, 0.25F, 1, -1, 1}},
            {"0 0 = 1: hide #0 0/0", "1 100 = 1: move #1 100/250", "1 250 = 1: hide #1 250/250",
             "1 400 = 1: hide #1 400/250", "1 501 = 1: hide #1 400/250"});
        row("entrance, then exit", {{1, 0.5F, 1, 0, 0}, {1, 0.25F, 1, -1, 1}},
            {"0 0 = 1: hide #0 0/0", "1 250 = 1: move #0 250/500", "1 500 = 1: show #0 500/500",
             "2 0 = 1: move #1 0/250", "2 250 = 1: hide #1 250/250", "1 500 = 1: show #0 500/500",
             "0 0 = 1: hide #0 500/500"});
        row("exit, then entrance", {{1, 0.5F, 1, -1, 0}, {1, 0.25F, 1, 0, 1}},
            {"0 0 = 1: show #0 0/0", "1 250 = 1: move #0 250/500", "1 500 = 1: hide #0 500/500",
             "2 0 = 1: move #1 0/250", "2 250 = 1: show #1 250/250"});
        row("waiting with an equal number takes over", {{1, 0.5F, 1, 0, 3}, {1, 0.25F, 1, -1, 3}},
            {"0 0 = 1: show #1 0/0", "1 250 = 1: show #1 250/500", "1 500 = 1: show #1 500/500",
             "2 0 = 1: move #1 0/250"});
        row("waiting with a lower number takes over from one that runs or has ended",
            {{1, 0.5F, 1, -1, 4}, {1, 0.25F, 1, 0, 3}},
            {"0 0 = 1: hide #1 0/0", "1 250 = 1: hide #1 250/500", "1 500 = 1: hide #1 500/500",
             "2 125 = 1: move #1 125/250"});
        row("waiting with number -1, which is 65535, does not",
            {{1, 0.5F, 1, -1, 4}, {1, 0.25F, 1, 0, -1}},
            {"0 0 = 1: show #0 0/0", "1 250 = 1: move #0 250/500", "1 500 = 1: hide #0 500/500",
             "2 125 = 1: move #1 125/250", "0 0 = 1: show #0 125/250"});
        row("the lowest number of those to come, and of equal ones the last",
            {{1, 0.5F, 1, 0, 7},
             {1, 0.5F, 1, 0, 2},
             {1, 0.5F, 1, 0, 3},
             {1, 0.5F, 1, -1, 2},
             {1, 0.5F, 1, 0, 9}},
            {"0 0 = 1: show #3 0/0", "1 250 = 1: show #3 250/500", "4 250 = 1: move #3 250/500",
             "4 500 = 1: hide #3 500/500", "5 0 = 1: move #4 0/500"});
        row("back from the end", {{1, 0.5F, 1, 0, 5}, {1, 0.25F, 1, -1, 6}},
            {"2 251 = 1: hide #1 0/0", "0 0 = 1: hide #0 0/0", "2 100 = 1: move #1 100/250",
             "1 501 = 1: show #0 100/250", "1 100 = 1: move #0 100/500"});
        row("shape 65535", {{1, 0.5F, 65535, 0, 5}}, {"0 0 = 65535: hide #0 0/0"});
    }

    void positions()
    {
        QFETCH(Effects, effects);
        QFETCH(QStringList, path);
        for (bool lost : {false, true}) { // without shapes everything is the same but that
            OpenPlayer player;
            PPT_Page *page = pageOf(effects);
            for (const Effect &effect : qAsConst(effects)) {
                if (!lost)
                    page->shapes.push_back(newShape(effect.shapeId));
            }
            player.load(page);
            PlainStates plain(*page);
            for (const QString &stop : qAsConst(path)) {
                const QString position = stop.section(QLatin1String(" = "), 0, 0);
                const unsigned int step = position.section(QLatin1Char(' '), 0, 0).toUInt();
                const unsigned int passed = position.section(QLatin1Char(' '), 1, 1).toUInt();
                evaluate(player, step, passed);
                plain.evaluate(step, passed);
                QStringList words = entriesInWords(player);
                if (lost)
                    words.replaceInStrings(QStringLiteral(" lost"), QString());
                QCOMPARE(position + QLatin1String(" = ") + words.join(QLatin1String(", ")), stop);
                QVERIFY(isSame(plain.m_entries, player.shapeAnimDats));
                for (const auto &entry : player.shapeAnimDats)
                    QCOMPARE(entry.second.shape == nullptr, lost);
            }
        }
    }

    void lostShapes()
    {
        OpenPlayer player;
        player.load(pageOf({{1, 0.5F, 9, 0, 0}, {2, 0.5F, 40000, -1, 0}}, {10}));
        QCOMPARE(entriesInWords(player), lines({"10: rest #- 0/0"}));
        evaluate(player, 0, 0);
        QCOMPARE(entriesInWords(player),
                 lines({"9: hide #0 0/0 lost", "10: rest #- 0/0", "40000: show #1 0/0 lost"}));
        evaluate(player, 1, 100);
        QCOMPARE(entriesInWords(player), lines({"9: move #0 100/500 lost", "10: rest #- 0/0",
                                                "40000: move #1 100/500 lost"}));
        player.CollectShapes();
        QCOMPARE(entriesInWords(player), lines({"10: rest #- 0/0"}));
    }

    void withoutStepsNothingIsTouched()
    {
        OpenPlayer player;
        player.load(pageOf({}, {1, 2}));
        PPT_Effect effect;
        player.shapeAnimDats[2] = moving(effect, 3, 4);
        for (unsigned int step : {0U, 1U}) {
            evaluate(player, step, 100);
            QCOMPARE(entriesInWords(player), lines({"1: rest #- 0/0", "2: move #? 3/4 lost"}));
        }
        player.Clear();
        player.getAllShapeDrawState();
        QVERIFY(player.shapeAnimDats.empty());
    }

    // An effect that is not the page's can be the holder only by hand; one of the page's always
    // meets itself on the walk.
    void entriesAreNotReset()
    {
        OpenPlayer player;
        player.load(pageOf({{1, 0.5F, 1, 0, 4}}, {1, 2}));
        PPT_Effect foreign;
        foreign.effectNo = 3;
        player.shapeAnimDats[1].effect = &foreign;
        player.shapeAnimDats[2] = moving(foreign, 7, 8);
        evaluate(player, 0, 0);
        QCOMPARE(entriesInWords(player), lines({"1: rest #? 0/0", "2: move #? 7/8 lost"}));
        foreign.effectNo = 4;
        evaluate(player, 0, 0);
        QCOMPARE(entriesInWords(player), lines({"1: hide #0 0/0", "2: move #? 7/8 lost"}));
    }

    // Groups are played as they are recorded, whatever their effects' durations.
    void groupsCountByTheirOwnDuration()
    {
        OpenPlayer player;
        player.take(pageOf({{1, 0.5F, 1, 0, 0}, {3, 0.25F, 2, 0, 0}}, {1, 2}));
        player.CollectShapes();
        auto &step = player.effectSteps[3];
        step.stepIndex = 8; // the key is the step's number
        step.effectGrps = {{{player.curPage->effects.front()}, 100},
                           {{player.curPage->effects.back()}, 1000}};
        evaluate(player, 2, 50);
        QCOMPARE(entriesInWords(player), lines({"1: hide #0 0/0", "2: hide #1 0/0"}));
        evaluate(player, 3, 99);
        QCOMPARE(entriesInWords(player), lines({"1: move #0 99/500", "2: hide #1 0/0"}));
        evaluate(player, 3, 100);
        QCOMPARE(entriesInWords(player), lines({"1: move #0 100/500", "2: move #1 0/250"}));
        evaluate(player, 3, 101);
        QCOMPARE(entriesInWords(player), lines({"1: show #0 100/500", "2: move #1 1/250"}));
        evaluate(player, 3, 1100);
        QCOMPARE(entriesInWords(player), lines({"1: show #0 100/500", "2: show #1 1000/250"}));
        evaluate(player, 3, 1101);
        QCOMPARE(entriesInWords(player), lines({"1: show #0 100/500", "2: show #1 1000/250"}));
        evaluate(player, 4, 0);
        QCOMPARE(entriesInWords(player), lines({"1: show #0 100/500", "2: show #1 1000/250"}));
    }

    void randomEvaluations_data()
    {
        QTest::addColumn<unsigned int>("seed");
        for (unsigned int seed = 1; seed <= 10; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }

    void randomEvaluations()
    {
        QFETCH(unsigned int, seed);
        QRandomGenerator random(seed);
        for (int round = 0; round < 200; ++round) {
            OpenPlayer player;
            player.load(RandomEffects::page(random));
            PlainStates plain(*player.curPage);
            QVERIFY(isSame(plain.m_entries, player.shapeAnimDats));
            PPT_Effect foreign;
            foreign.effectNo = 1;
            foreign.exit = -1;
            for (int move = 0; move < 20; ++move) {
                if (random.bounded(10) == 0 && !player.shapeAnimDats.empty()) {
                    const int id = player.shapeAnimDats.begin()->first;
                    player.shapeAnimDats[id].effect = plain.m_entries[id].effect = &foreign;
                }
                const auto step = unsigned(random.bounded(int(player.effectSteps.size()) + 2));
                const unsigned int passed = RandomEffects::passed(random, player, step);
                evaluate(player, step, passed);
                plain.evaluate(step, passed);
                QVERIFY2(isSame(plain.m_entries, player.shapeAnimDats),
                         qPrintable(QStringLiteral("round %1, move %2: step %3, %4 ms")
                                        .arg(round)
                                        .arg(move)
                                        .arg(step)
                                        .arg(passed)));
            }
        }
    }

    void paintList()
    {
        std::map<int, ShapeAnimDat> map;
        for (int state : {0, 3, 1, 2, 3, 4, -1}) // by identifiers that begin below zero
            map[int(map.size()) * 10 - 20].drawState = state;
        ShapeAnimDat before;
        ShapeList list{&before, nullptr};
        OpenPlayer player;
        player.CoverShapes(map, list);
        QCOMPARE(list,
                 (ShapeList{&before, nullptr, &map[-20], &map[0], &map[10], &map[30], &map[40]}));
        QCOMPARE(map.size(), size_t(7));

        std::map<int, ShapeAnimDat> empty;
        player.CoverShapes(empty, list);
        QCOMPARE(list.size(), 7);
    }

    void layers_data()
    {
        QTest::addColumn<QString>("states"); // by identifier, from 0; 2 moves, 3 is hidden
        QTest::addColumn<QString>("below");  // identifiers; B, M and A are what was there
        QTest::addColumn<QString>("moving");
        QTest::addColumn<QString>("above");

        const auto row = [](const char *states, const char *below, const char *moving,
                            const char *above) {
            QTest::addRow("'%s'", states)
                << QString::fromLatin1(states) << QString::fromLatin1(below)
                << QString::fromLatin1(moving) << QString::fromLatin1(above);
        };
        row("", "B", "M", "A");
        row("3", "B", "M", "A");
        row("0", "B0", "M", "A");
        row("2", "B", "M0", "A");
        row("01", "B01", "M", "A");
        row("12", "B0", "M1", "A");
        row("21", "B", "M0", "A1");
        row("22", "B", "M01", "A");
        row("232", "B", "M02", "A");
        row("212", "B", "M0A12", "");
        row("2112", "B", "M0A123", "");
        row("010201", "B012", "M3", "A45");
        row("02120", "B0", "M1A23", "4");
        row("0212021", "B0", "M1A2345", "6");
        row("022122", "B0", "M12A345", "");
        row("13203123", "B0", "M2A356", "");
        row("333", "B", "M", "A");
        row("323", "B", "M1", "A");
    }

    void layers()
    {
        QFETCH(QString, states);
        std::map<int, ShapeAnimDat> map;
        for (int i = 0; i < states.size(); ++i)
            map[i].drawState = states[i].digitValue();
        ShapeAnimDat b;
        ShapeAnimDat m;
        ShapeAnimDat a;
        ShapeList below{&b};
        ShapeList moving{&m};
        ShapeList above{&a};
        OpenPlayer player;
        player.CoverShapes(map, below, moving, above);
        const auto inWords = [&](const ShapeList &list) {
            QString words;
            for (const ShapeAnimDat *dat : list) {
                if (dat == &b || dat == &m || dat == &a)
                    words += QLatin1Char(dat == &b ? 'B' : dat == &m ? 'M' : 'A');
                for (const auto &entry : map) {
                    if (dat == &entry.second)
                        words += QString::number(entry.first);
                }
            }
            return words;
        };
        QTEST(inWords(below), "below");
        QTEST(inWords(moving), "moving");
        QTEST(inWords(above), "above");
    }

    // Every pattern of states of up to six shapes, with and without something in the lists before.
    void allLayers_data()
    {
        QTest::addColumn<int>("shapes");
        QTest::addColumn<bool>("prefilled");
        for (int shapes = 0; shapes <= 6; ++shapes) {
            QTest::addRow("%d", shapes) << shapes << false;
            QTest::addRow("%d, appended", shapes) << shapes << true;
        }
    }

    void allLayers()
    {
        QFETCH(int, shapes);
        QFETCH(bool, prefilled);
        OpenPlayer player;
        ShapeAnimDat b;
        ShapeAnimDat m;
        ShapeAnimDat a;
        for (int pattern = 0; pattern < 1 << (2 * shapes); ++pattern) {
            std::map<int, ShapeAnimDat> map;
            ShapeList visible;
            for (int i = 0; i < shapes; ++i) {
                map[i].drawState = pattern >> (2 * i) & 3;
                if (map[i].drawState != 3)
                    visible << &map[i];
            }
            ShapeList below;
            ShapeList moving;
            ShapeList above;
            if (prefilled) {
                below << &b;
                moving << &m;
                above << &a;
            }

            // By the places of the first and last moving one, and of the end of the first run.
            int first = 0;
            while (first < visible.size() && visible[first]->drawState != 2)
                ++first;
            int runEnd = first;
            while (runEnd < visible.size() && visible[runEnd]->drawState == 2)
                ++runEnd;
            int end = visible.size();
            while (end > runEnd && visible[end - 1]->drawState != 2)
                --end;
            const ShapeList between = visible.mid(runEnd, end - runEnd);
            const ShapeList moved = between.isEmpty() ? ShapeList() : above;
            const ShapeList kept = between.isEmpty() ? above : ShapeList();
            const ShapeList expectedBelow = below + visible.mid(0, first);
            const ShapeList expectedMoving =
                moving + visible.mid(first, runEnd - first) + moved + between;
            const ShapeList expectedAbove = kept + visible.mid(end);

            player.CoverShapes(map, below, moving, above);
            const QByteArray which = "pattern " + QByteArray::number(pattern, 4);
            QVERIFY2(below == expectedBelow, which.constData());
            QVERIFY2(moving == expectedMoving, which.constData());
            QVERIFY2(above == expectedAbove, which.constData());
        }
    }
};

QTEST_GUILESS_MAIN(AnimShapeStateTest)
#include "tst_animshapestate.moc"
