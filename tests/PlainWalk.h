#pragma once

#include "common/FloatToInt.h"
#include "pptanim/PPTAnimDisplay.h"

#include <map>

/// Brings `entries` to a position by letting every effect of every step decide, one after the
/// other: what every shorter way must lead to.
inline void walkPlainly(const std::map<unsigned int, PPTAnimDisplay::EffectStep> &steps,
                        std::map<int, PPTAnimDisplay::ShapeAnimDat> &entries, unsigned int step,
                        unsigned int passed)
{
    using ShapeAnimDat = PPTAnimDisplay::ShapeAnimDat;
    for (const auto &[number, record] : steps) {
        unsigned int start = 0;
        for (const auto &group : record.effectGrps) {
            const unsigned int end = start + group.grpDuration;
            for (PPT_Effect *effect : group.effects) {
                ShapeAnimDat &dat = entries[effect->shapeId];
                auto phase = ShapeAnimDat::EFFECT_WAIT;
                if (number < step || (number == step && passed > end)) {
                    phase = ShapeAnimDat::EFFECT_END;
                } else if (number == step && passed >= start) {
                    dat.effectPassed = passed - start;
                    dat.effectDuration =
                        toUInt32(static_cast<double>(effect->timing.duration * 1000.0F));
                    phase = dat.effectDuration > dat.effectPassed ? ShapeAnimDat::EFFECT_RUN
                                                                  : ShapeAnimDat::EFFECT_END;
                }
                dat.updateAnimDat(effect, phase);
            }
            start = end;
        }
    }
}
