#pragma once

#include "pptdata/PPT_fileDat.h"

#include <QtGlobal>

#include <cmath>
#include <vector>

/// The steps of a page once more, by counting: of each effect on its own it is said which step and
/// which group of the step it is in, and everything else follows from that.
namespace PlainSteps {

struct Place
{
    PPT_Effect *effect = nullptr;
    unsigned int step = 0;  // from 1
    unsigned int group = 0; // within the step, from 1
};

inline quint32 milliseconds(const PPT_Effect &effect)
{
    const float product = effect.timing.duration * 1000.0F;
    if (std::isnan(product))
        return 0;
    return static_cast<quint32>(qBound(0.0, std::floor(double(product)), 4294967295.0));
}

inline std::vector<Place> places(const PPT_Page &page)
{
    const std::vector<PPT_Effect *> effects(page.effects.begin(), page.effects.end());
    // How many effects from `begin` up to and including `end`, `begin` in any case, say so.
    const auto count = [&](size_t begin, size_t end, bool alsoAfter) {
        unsigned int sum = 1;
        for (size_t i = begin + 1; i <= end; ++i) {
            const int trigger = effects[i]->timing.triggerType;
            sum += trigger == 1 || (alsoAfter && trigger == 3);
        }
        return sum;
    };
    std::vector<Place> result;
    for (size_t i = 0; i < effects.size(); ++i) {
        size_t first = i; // of the step
        while (first > 0 && effects[first]->timing.triggerType != 1)
            --first;
        result.push_back({effects[i], count(0, i, false), count(first, i, true)});
    }
    return result;
}

inline quint32 groupDuration(const std::vector<Place> &places, unsigned int step,
                             unsigned int group)
{
    quint32 longest = 0;
    for (const Place &place : places) {
        if (place.step == step && place.group == group)
            longest = qMax(longest, milliseconds(*place.effect));
    }
    return longest;
}

/// When a group of a step starts; for the group behind the last one, how long the step lasts.
inline quint32 groupStart(const std::vector<Place> &places, unsigned int step, unsigned int group)
{
    quint32 start = 0;
    for (unsigned int before = 1; before < group; ++before)
        start += groupDuration(places, step, before);
    return start;
}

} // namespace PlainSteps
