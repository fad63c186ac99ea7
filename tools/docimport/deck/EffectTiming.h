#pragma once

#include "tools/docimport/deck/SlideEffects.h"

#include <QStringList>

/// When the effects that are kept play. The model knows no delays: an effect starts with what
/// triggers it.
class EffectTiming
{
public:
    struct Kept
    {
        int trigger = 1;
        QStringList reasons; ///< why it plays at another time than in the deck
    };

    /// What is left out leaves its trigger to the next of the same click.
    void skip(const SlideEffect &effect);
    Kept keep(const SlideEffect &effect);

private:
    int triggerFor(const SlideEffect &effect) const;

    int m_left = 2;       // the trigger that was left
    int m_click = -1;     // of the step's first effect
    double m_begin = 0;   // of the group, in seconds after that of the step
    double m_longest = 0; // effect of the group
};
