// The frames of a run on a slide with many effects and nothing to paint, against an evaluation of
// every effect for every frame. The exit status is 1 when the bound is missed.
#include "Turns.h"
#include "tests/AnimPaint.h"
#include "tests/PlainStates.h"
#include "tests/PlainWalk.h"

#include <QCoreApplication>
#include <QRandomGenerator>

namespace {

constexpr int kSteps = 100;
constexpr int kGroups = 20;  // of a step
constexpr int kEffects = 10; // of a group
constexpr int kShapes = 400;
constexpr unsigned int kStep = kSteps / 2; // that is played
constexpr unsigned int kTick = 40;

// Effects of 100 ms in groups, of shapes that the page does not have: so nothing is painted.
PPT_Page *page()
{
    QRandomGenerator random(1);
    std::list<PPT_Effect *> effects;
    for (int i = 0; i < kSteps * kGroups * kEffects; ++i) {
        const bool isGroupFirst = i % kEffects == 0;
        const bool isStepFirst = i % (kGroups * kEffects) == 0;
        effects.push_back(AnimModel::newEffect(
            isStepFirst ? AnimModel::kClick : (isGroupFirst ? AnimModel::kAfter : AnimModel::kWith),
            0.1F, random.bounded(kShapes),
            random.bounded(2) == 0 ? AnimModel::kEnter : AnimModel::kLeave, i));
    }
    return AnimModel::newPage({}, std::move(effects), AnimPaint::png(1, 1, AnimPaint::kGrey));
}

/// A player of the page in the midst of its steps.
class Player : public AnimPaint::Player
{
public:
    Player()
        : AnimPaint::Player(page())
    {
        SetCachPic(true);
        SetAnimStep(kStep);
    }
};

// `show` is called for every frame of the step.
template <typename Show>
void run(Player &player, Show show)
{
    player.SetAnimStep(kStep);
    player.StartRun();
    do {
        show();
    } while (player.nextFrame(kTick));
    player.StopRun();
}

using Entries = std::map<int, PPTAnimDisplay::ShapeAnimDat>;

void walkPlainly(Player &player, Entries &entries)
{
    ::walkPlainly(player.effectSteps, entries, player.GetAnimStep(),
                  player.GetAnimPassedDuration());
}

void requireSameStates()
{
    Player player;
    Entries entries = player.shapeAnimDats;
    for (int times = 0; times < 2; ++times) {
        run(player, [&] {
            player.GetImg();
            walkPlainly(player, entries);
            require(isSame(player.shapeAnimDats, entries), "a state differs");
        });
    }
    require(entries.size() == kShapes, "the slide has too few shapes");
}

void againstFullWalk(Turns &turns)
{
    Player player;
    Entries entries = player.shapeAnimDats;
    QImage image;
    turns.compare(
        [&] { return seconds([&] { run(player, [&] { image = player.GetImg(); }); }); },
        [&] { return seconds([&] { run(player, [&] { walkPlainly(player, entries); }); }); });
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv); // for the player's timer
    requireSameStates();
    addBenchmark("walk/20000_effects", 21, againstFullWalk);
    return runBenchmarks(argc, argv);
}
