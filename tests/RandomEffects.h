#pragma once

#include "AnimModel.h"

#include <QRandomGenerator>

#include <iterator>

/// Slides of few shapes with effects of all kinds, and positions in them.
namespace RandomEffects {

/// `most` effects at the most.
inline PPT_Page *page(QRandomGenerator &random, int most = 9)
{
    static const int kTriggers[] = {1, 1, 2, 2, 3, 3, 3, 0, -1};
    static const float kSeconds[] = {
        0.0F, 0.1F, 0.1F, 0.2F, 0.2F, 0.3F, 0.029F, -1.0F, AnimModel::kNaN, 1e10F, 2e6F};
    static const int kNumbers[] = {0, 1, 2, 2, 3, 32767, -32768, -1};
    static const int kExits[] = {-1, -1, 0, 0, 1, -128};
    const auto any = [&](const auto &values) {
        return values[random.bounded(int(std::size(values)))];
    };
    AnimModel::Effects effects;
    for (int i = random.bounded(most + 1); i > 0; --i) {
        const int rare = random.bounded(8) == 0 ? 11 : 7; // the last four durations are odd
        effects.append({any(kTriggers), kSeconds[random.bounded(rare)],
                        random.bounded(10) == 0 ? 65535 : 1 + random.bounded(4), any(kExits),
                        any(kNumbers)});
    }
    PPT_Page *slide = AnimModel::pageOf(effects);
    for (int i = random.bounded(6); i > 0; --i)
        slide->shapes.push_back(AnimModel::newShape(1 + random.bounded(5)));
    return slide;
}

/// A time within a step, preferably about where a group of it begins.
inline unsigned int passed(QRandomGenerator &random, const AnimModel::OpenPlayer &player,
                           unsigned int step)
{
    const auto found = player.effectSteps.find(step);
    const int kind = random.bounded(10);
    if (kind == 0)
        return random.generate();
    if (kind < 4 || found == player.effectSteps.end())
        return unsigned(random.bounded(1000));
    unsigned int start = unsigned(random.bounded(3)) - 1;
    for (const auto &group : found->second.effectGrps) {
        if (random.bounded(3) == 0)
            break;
        start += group.grpDuration;
    }
    return start;
}

} // namespace RandomEffects
