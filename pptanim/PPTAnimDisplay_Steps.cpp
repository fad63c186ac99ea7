// Steps: the page's effects, cut at the clicks and grouped by what starts together.
#include "pptanim/PPTAnimDisplay.h"

#include "common/FloatToInt.h"
#include "pptanim/StateWalk.h"

#include <algorithm>

bool PPTAnimDisplay::IsClickEffect(PPT_Effect *e)
{
    return e && e->timing.triggerType == 1;
}

bool PPTAnimDisplay::IsAfterEffect(PPT_Effect *e)
{
    return e && e->timing.triggerType == 3;
}

void PPTAnimDisplay::AnalyszEffectSteps()
{
    EffectGrp group;
    EffectStep step;

    const auto closeGroup = [&] {
        if (group.effects.empty())
            return;
        step.stepDuration += group.grpDuration;
        step.stepType = group.effects.front()->timing.triggerType;
        step.effectGrps.push_back(std::move(group));
        group = {};
    };
    const auto closeStep = [&] {
        if (step.effectGrps.empty())
            return;
        step.stepIndex = static_cast<unsigned int>(effectSteps.size()) + 1;
        effectSteps.emplace_hint(effectSteps.end(), step.stepIndex, std::move(step));
        step = {};
    };

    stateWalk.reset();
    effectSteps.clear();
    for (PPT_Effect *effect : curPage->effects) {
        const bool isClick = IsClickEffect(effect);
        if (isClick || IsAfterEffect(effect))
            closeGroup();
        if (isClick)
            closeStep();
        group.effects.push_back(effect);
        // In this order: a duration that is no number leaves the group's as it is.
        group.grpDuration = toUInt32(static_cast<double>(
            std::max(static_cast<float>(group.grpDuration), effect->timing.duration * 1000.0F)));
    }
    closeGroup();
    closeStep();
}

PPTAnimDisplay::EffectStep *PPTAnimDisplay::GetEffectStep(unsigned int step)
{
    const auto found = effectSteps.find(step);
    if (found == effectSteps.end())
        return nullptr;
    stateWalk.reset(); // the record may be changed by who has it
    return &found->second;
}

unsigned int PPTAnimDisplay::GetStepCount()
{
    return static_cast<unsigned int>(effectSteps.size());
}

unsigned int PPTAnimDisplay::GetStepDuration(unsigned int step)
{
    const auto found = effectSteps.find(step);
    return found == effectSteps.end() ? 0 : found->second.stepDuration;
}
