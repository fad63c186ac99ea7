#pragma once

#include "pptanim/PPTAnimDisplay.h"

#include <vector>

/// Evaluates the effects of a page's steps, in their order, at one position after another. The
/// lists of the steps and the entries of the shapes are looked up only once. While the step stays
/// the same, only the shapes that have an effect in it are evaluated: the time played of a step
/// makes no difference to the others.
///
/// Valid until somebody else adds, removes or changes steps, entries or effects.
class StateWalk
{
public:
    using ShapeAnimDat = PPTAnimDisplay::ShapeAnimDat;

    /// Makes an entry for every effect that has none.
    StateWalk(const std::map<unsigned int, PPTAnimDisplay::EffectStep> &steps,
              std::map<int, ShapeAnimDat> &entries);

    /// Brings the entries to a position. \return false when they were there already.
    bool moveTo(unsigned int step, unsigned int passed);

private:
    // Small records: a slide may consist of little else than effects.
    struct Effect
    {
        ShapeAnimDat *entry;
        PPT_Effect *effect;
    };
    struct Group // begins where the one before it ends
    {
        unsigned int end;   // ms within the step, modulo 2^32
        quint32 effectsEnd; // in m_effects
    };
    struct Step // likewise
    {
        unsigned int number;
        quint32 groupsEnd; // in m_groups
    };
    struct Range // of effects
    {
        const Effect *first;
        const Effect *last; // behind it
        const Effect *begin() const { return first; }
        const Effect *end() const { return last; }
    };
    using Effects = std::vector<Effect>;
    using Phase = ShapeAnimDat::EFFECT_STATE;

    static Range whole(const Effects &effects);
    static void update(Range effects, Phase phase);

    void enter(unsigned int step);
    void stay();
    Effects deciding(Range effects, Phase phase) const;
    void evaluate(Range earlier, Range later, unsigned int passed) const;
    void play(unsigned int passed) const;
    Range effectsOf(quint32 groupsBegin, quint32 groupsEnd) const;
    Range effectsOfStep() const;

    Effects m_effects;
    std::vector<Group> m_groups;
    std::vector<Step> m_steps;

    // The position.
    unsigned int m_step = 0;
    unsigned int m_passed = 0;
    enum { Nowhere, Entered, Stayed } m_stage = Nowhere; // of the step
    quint32 m_groupsBegin = 0;                           // the step's
    quint32 m_groupsEnd = 0;
    // When it has stayed in the step: those of all other steps that decide on the step's shapes.
    Effects m_earlier;
    Effects m_later;
};
