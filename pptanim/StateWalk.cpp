#include "pptanim/StateWalk.h"

#include <algorithm>
#include <unordered_map>

StateWalk::StateWalk(const std::map<unsigned int, PPTAnimDisplay::EffectStep> &steps,
                     std::map<int, ShapeAnimDat> &entries)
{
    size_t groups = 0;
    size_t effects = 0;
    for (const auto &[number, step] : steps) {
        groups += step.effectGrps.size();
        for (const auto &group : step.effectGrps)
            effects += group.effects.size();
    }
    m_steps.reserve(steps.size());
    m_groups.reserve(groups);
    m_effects.reserve(effects);

    for (const auto &[number, step] : steps) {
        unsigned int end = 0;
        for (const auto &group : step.effectGrps) {
            for (PPT_Effect *effect : group.effects)
                m_effects.push_back({&entries[effect->shapeId], effect});
            end += group.grpDuration;
            m_groups.push_back({end, static_cast<quint32>(m_effects.size())});
        }
        m_steps.push_back({number, static_cast<quint32>(m_groups.size())});
    }
}

bool StateWalk::moveTo(unsigned int step, unsigned int passed)
{
    if (m_stage == Nowhere || step != m_step) {
        enter(step);
        const Range now = effectsOfStep();
        const Range page = whole(m_effects);
        evaluate({page.first, now.first}, {now.last, page.last}, passed);
    } else if (passed != m_passed) {
        stay();
        evaluate(whole(m_earlier), whole(m_later), passed);
    } else {
        return false;
    }
    m_passed = passed;
    return true;
}

void StateWalk::enter(unsigned int step)
{
    const auto found =
        std::lower_bound(m_steps.begin(), m_steps.end(), step,
                         [](const Step &a, unsigned int number) { return a.number < number; });
    m_groupsBegin = found == m_steps.begin() ? 0 : std::prev(found)->groupsEnd;
    m_groupsEnd =
        found == m_steps.end() || found->number != step ? m_groupsBegin : found->groupsEnd;
    m_step = step;
    m_stage = Entered;
}

// Not at once when the step is entered: that is dear, and a host may jump from step to step.
void StateWalk::stay()
{
    if (m_stage == Stayed)
        return;
    const Range now = effectsOfStep();
    const Range page = whole(m_effects);
    m_earlier = deciding({page.first, now.first}, ShapeAnimDat::EFFECT_END);
    m_later = deciding({now.last, page.last}, ShapeAnimDat::EFFECT_WAIT);
    m_stage = Stayed;
}

// Of the effects that are all in one phase one decides on a shape, as on a shape without a state.
StateWalk::Effects StateWalk::deciding(Range effects, Phase phase) const
{
    std::unordered_map<ShapeAnimDat *, ShapeAnimDat> shapes;
    for (const Effect &effect : effectsOfStep())
        shapes[effect.entry];
    for (const Effect &effect : effects) {
        const auto found = shapes.find(effect.entry);
        if (found != shapes.end())
            found->second.updateAnimDat(effect.effect, phase);
    }
    Effects result;
    for (const auto &[entry, dat] : shapes) {
        if (dat.effect)
            result.push_back({entry, dat.effect});
    }
    return result;
}

void StateWalk::evaluate(Range earlier, Range later, unsigned int passed) const
{
    update(earlier, ShapeAnimDat::EFFECT_END);
    play(passed);
    update(later, ShapeAnimDat::EFFECT_WAIT);
}

void StateWalk::play(unsigned int passed) const
{
    unsigned int start = 0;
    for (quint32 group = m_groupsBegin; group < m_groupsEnd; ++group) {
        const unsigned int end = m_groups[group].end;
        const Range effects = effectsOf(group, group + 1);
        if (passed > end) {
            update(effects, ShapeAnimDat::EFFECT_END);
        } else if (passed < start) {
            update(effects, ShapeAnimDat::EFFECT_WAIT);
        } else {
            for (const Effect &effect : effects)
                effect.entry->playEffect(effect.effect, passed - start);
        }
        start = end;
    }
}

void StateWalk::update(Range effects, Phase phase)
{
    for (const Effect &effect : effects)
        effect.entry->updateAnimDat(effect.effect, phase);
}

StateWalk::Range StateWalk::whole(const Effects &effects)
{
    return {effects.data(), effects.data() + effects.size()};
}

StateWalk::Range StateWalk::effectsOf(quint32 groupsBegin, quint32 groupsEnd) const
{
    const auto endOf = [&](quint32 group) {
        return group == 0 ? 0 : m_groups[group - 1].effectsEnd;
    };
    return {m_effects.data() + endOf(groupsBegin), m_effects.data() + endOf(groupsEnd)};
}

StateWalk::Range StateWalk::effectsOfStep() const
{
    return effectsOf(m_groupsBegin, m_groupsEnd);
}
