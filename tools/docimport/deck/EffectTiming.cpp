#include "tools/docimport/deck/EffectTiming.h"

#include <algorithm>
#include <cmath>

namespace {

// How much of what went before a trigger sets an effect apart from.
int rank(int trigger)
{
    switch (trigger) {
    case 1:
        return 2;
    case 3:
        return 1;
    default:
        return 0;
    }
}

} // namespace

int EffectTiming::triggerFor(const SlideEffect &effect) const
{
    return rank(m_left) > rank(effect.trigger) ? m_left : effect.trigger;
}

void EffectTiming::skip(const SlideEffect &effect)
{
    m_left = triggerFor(effect);
}

EffectTiming::Kept EffectTiming::keep(const SlideEffect &effect)
{
    Kept kept;
    kept.trigger = triggerFor(effect);
    m_left = 2;
    if (kept.trigger != effect.trigger)
        kept.reasons += QStringLiteral("starts in place of an effect that is left out");
    if (kept.trigger == 1 || m_click < 0) {
        m_click = effect.click;
        m_begin = 0;
        m_longest = 0;
    } else if (kept.trigger == 3) {
        m_begin += m_longest;
        m_longest = 0;
    }
    m_longest = std::max(m_longest, effect.duration);

    // In tenths of a second: nobody sees less.
    const double later = effect.click == m_click ? effect.start - m_begin : effect.delay;
    const double tenths = std::round(later * 10);
    if (tenths != 0)
        kept.reasons += QStringLiteral("starts %1 s %2")
                            .arg(QString::number(std::abs(tenths) / 10),
                                 tenths > 0 ? QStringLiteral("earlier") : QStringLiteral("later"));
    return kept;
}
