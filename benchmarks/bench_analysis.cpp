// The analysis of a slide's effects against the plain one, which copies each list and each record
// when a group or a step is complete. The exit status is 1 when the bound is missed.
#include "Turns.h"
#include "common/FloatToInt.h"
#include "tests/AnimModel.h"

#include <QCoreApplication>
#include <QRandomGenerator>

namespace {

using Group = PPTAnimDisplay::EffectGrp;
using Step = PPTAnimDisplay::EffectStep;
using Steps = std::map<unsigned int, Step>;

constexpr int kEffects = 20'000;

// On average four effects in a group, and four groups in a step.
PPT_Page *page()
{
    QRandomGenerator random(1);
    std::list<PPT_Effect *> effects;
    for (int i = 0; i < kEffects; ++i) {
        const int die = random.bounded(16);
        effects.push_back(AnimModel::newEffect(
            die == 0 ? AnimModel::kClick : (die < 4 ? AnimModel::kAfter : AnimModel::kWith),
            static_cast<float>(random.bounded(2000)) / 1000, i % 1000));
    }
    return AnimModel::newPage({}, std::move(effects));
}

void closeGroup(Step &step, Group &group)
{
    if (!group.effects.empty()) {
        step.effectGrps.push_back(group);
        step.stepDuration += group.grpDuration;
        step.stepType = group.effects.front()->timing.triggerType;
    }
    group = Group();
}

void closeStep(Steps &steps, Step &step)
{
    if (!step.effectGrps.empty()) {
        step.stepIndex = static_cast<unsigned int>(steps.size()) + 1;
        steps[step.stepIndex] = step;
    }
    step = Step();
}

void analysePlainly(const PPT_Page &page, Steps &steps)
{
    Group group;
    Step step;
    for (PPT_Effect *effect : page.effects) {
        const bool isClick = PPTAnimDisplay::IsClickEffect(effect);
        if (isClick || PPTAnimDisplay::IsAfterEffect(effect))
            closeGroup(step, group);
        if (isClick)
            closeStep(steps, step);
        group.effects.push_back(effect);
        group.grpDuration = toUInt32(static_cast<double>(
            std::max(static_cast<float>(group.grpDuration), effect->timing.duration * 1000.0F)));
    }
    closeGroup(step, group);
    closeStep(steps, step);
}

bool areSame(const Group &a, const Group &b)
{
    return a.effects == b.effects && a.grpDuration == b.grpDuration;
}

bool areSame(const Step &a, const Step &b)
{
    return a.stepIndex == b.stepIndex && a.stepType == b.stepType &&
           a.stepDuration == b.stepDuration &&
           std::equal(a.effectGrps.begin(), a.effectGrps.end(), b.effectGrps.begin(),
                      b.effectGrps.end(),
                      [](const Group &x, const Group &y) { return areSame(x, y); });
}

void requireSameSteps()
{
    AnimModel::OpenPlayer player;
    player.take(page());
    player.AnalyszEffectSteps();
    Steps expected;
    analysePlainly(*player.curPage, expected);
    require(expected.size() > 1000, "the slide has too few steps");
    require(std::equal(expected.begin(), expected.end(), player.effectSteps.begin(),
                       player.effectSteps.end(),
                       [](const auto &a, const auto &b) {
                           return a.first == b.first && areSame(a.second, b.second);
                       }),
            "the steps differ");
}

// As when a slide is loaded, there are no steps before.
void againstPlain(Turns &turns)
{
    AnimModel::OpenPlayer player;
    player.take(page());
    turns.compare(
        [&] {
            player.effectSteps.clear();
            return seconds([&] { player.AnalyszEffectSteps(); });
        },
        [&] {
            Steps steps;
            return seconds([&] { analysePlainly(*player.curPage, steps); });
        });
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv); // for the player's timer
    requireSameSteps();
    addBenchmark("analysis/20000_effects", 101, againstPlain);
    return runBenchmarks(argc, argv);
}
