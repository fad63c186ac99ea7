#include "AnimModel.h"
#include "PlainStates.h"
#include "PlainWalk.h"
#include "RandomEffects.h"

#include <QTest>

using namespace AnimModel;
using ShapeAnimDat = PPTAnimDisplay::ShapeAnimDat;
using Entries = std::map<int, ShapeAnimDat>;

namespace {

constexpr int kMark = 77; // a state that no evaluation gives

quint64 update(OpenPlayer &player, unsigned int step, unsigned int passed)
{
    player.animStep = step;
    player.passedDuration = passed;
    return player.updateShapeStates();
}

// Which entries an update evaluates, by the marks that it takes away.
QList<int> evaluatedBy(OpenPlayer &player, unsigned int step, unsigned int passed)
{
    for (auto &entry : player.shapeAnimDats)
        entry.second.drawState = kMark;
    update(player, step, passed);
    QList<int> ids;
    for (const auto &[id, dat] : player.shapeAnimDats) {
        if (dat.drawState != kMark)
            ids << id;
    }
    return ids;
}

// Plays along on entries of its own.
class Companion
{
public:
    explicit Companion(const OpenPlayer &player)
        : m_player(player)
        , m_entries(player.shapeAnimDats)
    {
    }

    bool agrees()
    {
        walkPlainly(m_player.effectSteps, m_entries, m_player.animStep, m_player.passedDuration);
        return isSame(m_entries, m_player.shapeAnimDats);
    }

private:
    const OpenPlayer &m_player;
    Entries m_entries;
};

QByteArray positionOf(const OpenPlayer &player, int round, int move)
{
    return QStringLiteral("round %1, move %2: step %3, %4 ms")
        .arg(round)
        .arg(move)
        .arg(player.animStep)
        .arg(player.passedDuration)
        .toUtf8();
}

// Three steps; shape 4 has effects in all of them, 5 has none, 6 has no shape.
PPT_Page *threeSteps()
{
    return pageOf({{kClick, 0.5F, 1, kEnter, 0},
                   {kWith, 0.5F, 4, kEnter, 1},
                   {kClick, 0.5F, 2, kEnter, 2},
                   {kAfter, 0.5F, 4, kLeave, 3},
                   {kClick, 0.5F, 3, kLeave, 4},
                   {kWith, 0.5F, 4, kEnter, 5},
                   {kWith, 0.5F, 6, kEnter, 6}},
                  {1, 2, 3, 4, 5});
}

} // namespace

/// The shorter way from one position's states to those of another.
class AnimStateWalkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomRuns_data()
    {
        QTest::addColumn<unsigned int>("seed");
        QTest::addColumn<int>("effects"); // at the most
        QTest::addColumn<int>("rounds");
        for (unsigned int seed = 1; seed <= 5; ++seed) {
            QTest::addRow("few effects, seed %u", seed) << seed << 9 << 300;
            QTest::addRow("many effects, seed %u", seed) << seed << 60 << 100;
        }
    }

    // Mostly within a step, as when it is played; sometimes to another one, sometimes nowhere.
    void randomRuns()
    {
        QFETCH(unsigned int, seed);
        QFETCH(int, effects);
        QFETCH(int, rounds);
        QRandomGenerator random(seed);
        for (int round = 0; round < rounds; ++round) {
            OpenPlayer player;
            player.load(RandomEffects::page(random, effects));
            Companion plain(player);
            quint64 before = 0;
            for (int move = 0; move < 40; ++move) {
                const unsigned int stepBefore = player.animStep;
                const unsigned int passedBefore = player.passedDuration;
                const int kind = random.bounded(10);
                if (kind < 2)
                    player.animStep = unsigned(random.bounded(int(player.effectSteps.size()) + 2));
                if (kind < 8)
                    player.passedDuration = RandomEffects::passed(random, player, player.animStep);
                const bool isThere = move > 0 && player.animStep == stepBefore &&
                                     player.passedDuration == passedBefore;
                const quint64 now = player.updateShapeStates();
                const QByteArray where = positionOf(player, round, move);
                QVERIFY2(plain.agrees(), where.constData());
                QVERIFY2((now == before) == isThere, where.constData());
                before = now;
            }
        }
    }

    // As it is played: every frame of every step, forwards and backwards.
    void wholeSlides_data()
    {
        QTest::addColumn<unsigned int>("seed");
        for (unsigned int seed = 1; seed <= 10; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }

    void wholeSlides()
    {
        QFETCH(unsigned int, seed);
        QRandomGenerator random(seed);
        for (int round = 0; round < 50; ++round) {
            OpenPlayer player;
            player.load(RandomEffects::page(random, 30));
            Companion plain(player);
            PlainStates byShapes(*player.curPage);
            const auto agree = [&] {
                player.updateShapeStates();
                byShapes.evaluate(player.animStep, player.passedDuration);
                return plain.agrees() && isSame(byShapes.m_entries, player.shapeAnimDats);
            };
            QVERIFY(agree());
            int move = 0;
            while (player.nextStep()) {
                QVERIFY2(agree(), positionOf(player, round, move++).constData());
                for (int frames = 0; frames < 30 && player.nextFrame(40); ++frames)
                    QVERIFY2(agree(), positionOf(player, round, move++).constData());
            }
            while (player.prevStep()) {
                QVERIFY2(agree(), positionOf(player, round, move++).constData());
                for (int frames = 0; frames < 10 && player.prevFrame(90); ++frames)
                    QVERIFY2(agree(), positionOf(player, round, move++).constData());
            }
        }
    }

    void whatIsEvaluated()
    {
        const QList<int> all{1, 2, 3, 4, 6};
        OpenPlayer player;
        player.load(threeSteps());
        QCOMPARE(evaluatedBy(player, 1, 0), all);
        QCOMPARE(evaluatedBy(player, 1, 0), QList<int>{});
        QCOMPARE(evaluatedBy(player, 1, 1), (QList<int>{1, 4}));
        QCOMPARE(evaluatedBy(player, 1, 501), (QList<int>{1, 4}));
        QCOMPARE(evaluatedBy(player, 2, 501), all);
        QCOMPARE(evaluatedBy(player, 2, 0), (QList<int>{2, 4}));
        QCOMPARE(evaluatedBy(player, 2, 0), QList<int>{});
        QCOMPARE(evaluatedBy(player, 3, 0), all);
        QCOMPARE(evaluatedBy(player, 3, 1), (QList<int>{3, 4, 6}));
        QCOMPARE(evaluatedBy(player, 1, 1), all);
        QCOMPARE(evaluatedBy(player, 0, 1), all);
        QCOMPARE(evaluatedBy(player, 0, 2), QList<int>{}); // no effect is in step 0
        QCOMPARE(evaluatedBy(player, 4, 2), all);
        QCOMPARE(evaluatedBy(player, 4, 3), QList<int>{});
    }

    // Whoever changes something by hand has every effect evaluated.
    void evaluatingAll()
    {
        OpenPlayer player;
        player.load(threeSteps());
        Companion plain(player);
        const quint64 first = update(player, 2, 0);
        QVERIFY(plain.agrees());
        player.shapeAnimDats[1].drawState = kMark;
        player.getAllShapeDrawState();
        QVERIFY(plain.agrees());
        QVERIFY(player.updateShapeStates() != first);

        update(player, 2, 1);
        QVERIFY(plain.agrees());
        player.shapeAnimDats[1].drawState = kMark;
        player.passedDuration = 2;
        player.getAllShapeDrawState();
        QVERIFY(plain.agrees());

        player.effectSteps.erase(3);
        player.getAllShapeDrawState();
        QVERIFY(plain.agrees());
        player.shapeAnimDats.erase(1); // made anew, but without its shape
        player.getAllShapeDrawState();
        QCOMPARE(player.shapeAnimDats.at(1).drawState, 1);
        QVERIFY(!player.shapeAnimDats.at(1).shape);
    }

    // New steps and new entries are evaluated at a position where the old ones have been.
    void whatIsMadeAnew_data()
    {
        QTest::addColumn<bool>("isAfterStay"); // within the step
        QTest::newRow("step entered") << false;
        QTest::newRow("stayed in the step") << true;
    }

    void whatIsMadeAnew()
    {
        QFETCH(bool, isAfterStay);
        OpenPlayer player;
        quint64 last = 0;
        const auto hasChanged = [&] {
            const quint64 before = last;
            if (isAfterStay)
                update(player, 1, 99);
            last = update(player, 1, 100);
            return last != before;
        };
        player.load(threeSteps());
        QVERIFY(hasChanged());
        QVERIFY(isAfterStay || !hasChanged());

        player.CollectShapes();
        Companion collected(player);
        QVERIFY(hasChanged());
        QVERIFY(collected.agrees());

        player.curPage->effects.front()->timing.triggerType = kWith;
        player.curPage->effects.back()->timing.triggerType = kClick;
        player.AnalyszEffectSteps();
        QCOMPARE(player.GetStepCount(), 4U);
        Companion analysed(player);
        QVERIFY(hasChanged());
        QVERIFY(analysed.agrees());

        player.load(pageOf({{kClick, 0.25F, 9, kLeave, 0}}, {9}));
        Companion loaded(player);
        QVERIFY(hasChanged());
        QVERIFY(loaded.agrees());
        QCOMPARE(player.shapeAnimDats.at(9).effectPassed, 100U);

        QVERIFY(player.Init(1, modelBytes({threeSteps()}), 25));
        Companion read(player);
        QVERIFY(hasChanged());
        QVERIFY(read.agrees());

        player.Clear();
        QVERIFY(hasChanged());
        QVERIFY(player.shapeAnimDats.empty());
    }

    void withoutSteps()
    {
        OpenPlayer player;
        player.load(pageOf({}, {1, 2}));
        QCOMPARE(evaluatedBy(player, 0, 0), QList<int>{});
        QCOMPARE(evaluatedBy(player, 0, 1), QList<int>{});
        QCOMPARE(evaluatedBy(player, 0, 2), QList<int>{});
        QCOMPARE(evaluatedBy(player, 1, 2), QList<int>{});
        QCOMPARE(player.shapeAnimDats.size(), size_t(2));
    }

    // A frame has the states of its position, whatever the last one's was.
    void frames()
    {
        OpenPlayer player;
        PPT_Page *page = threeSteps();
        page->pageImage = "P6 1 1 255 abc";
        player.load(page);
        Companion plain(player);
        for (const auto &[step, passed] : {std::pair{0U, 0U},
                                           {1U, 0U},
                                           {1U, 40U},
                                           {1U, 40U},
                                           {1U, 500U},
                                           {2U, 501U},
                                           {2U, 20U},
                                           {0U, 0U},
                                           {3U, 100U},
                                           {3U, 50U},
                                           {9U, 0U}}) {
            player.animStep = step;
            player.passedDuration = passed;
            QVERIFY(!player.GetImg().isNull());
            QVERIFY2(plain.agrees(), positionOf(player, 0, 0).constData());
        }
    }
};

QTEST_MAIN(AnimStateWalkTest)
#include "tst_animstatewalk.moc"
