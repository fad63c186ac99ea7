#pragma once

#include "pptdata/PPT_fileDat.h"

#include <type_traits>

/// \file
/// The plain fields of the model by their keys in a deck's JSON: visitFields() calls
/// `visit(key, field, presence)` for those of an object.
///
/// A field's type says what its JSON is: qint8 true (-1), false (0) or a number; Trigger a name or
/// a number; others a number.

/// Whether a field has to be given, and when it is printed.
enum class Presence {
    Required, ///< has to be given
    Usual,    ///< may be left out; always printed
    Carried   ///< may be left out; printed unless it is zero
};

/// What starts an effect.
template <typename Byte>
struct Trigger
{
    explicit Trigger(Byte &field)
        : type(field)
    {
    }
    Byte &type;
};

struct TriggerName
{
    const char *name;
    qint8 type;
    const char *inWords;
};
inline constexpr TriggerName kTriggerNames[] = {{"click", 1, "on click"},
                                                {"with", 2, "with the previous effect"},
                                                {"after", 3, "after the previous effect"}};

template <typename Head, typename Visit>
void visitHead(Head &head, Visit &&visit)
{
    visit("width", head.width, Presence::Usual);
    visit("height", head.height, Presence::Usual);
}

template <typename Shape, typename Visit>
void visitShape(Shape &shape, Visit &&visit)
{
    visit("id", shape.shapeId, Presence::Required);
    visit("left", shape.left, Presence::Usual);
    visit("top", shape.top, Presence::Usual);
    visit("width", shape.width, Presence::Usual);
    visit("height", shape.height, Presence::Usual);
}

template <typename Effect, typename Visit>
void visitEffect(Effect &effect, Visit &&visit)
{
    auto &timing = effect.timing;
    visit("shape", effect.shapeId, Presence::Required);
    visit("exit", effect.exit, Presence::Usual);
    visit("trigger", Trigger(timing.triggerType), Presence::Usual);
    visit("duration", timing.duration, Presence::Usual);
    visit("effectNo", effect.effectNo, Presence::Usual);
    visit("effectParamA", effect.effectParamA, Presence::Carried);
    visit("effectParamB", effect.effectParamB, Presence::Carried);
    visit("accelerate", timing.accelerate, Presence::Carried);
    visit("decelerate", timing.decelerate, Presence::Carried);
    visit("autoReverse", timing.autoReverse, Presence::Carried);
    visit("timingF5", timing.timingF5, Presence::Carried);
    visit("timingB6", timing.timingB6, Presence::Carried);
    visit("timingF7", timing.timingF7, Presence::Carried);
    visit("timingB8", timing.timingB8, Presence::Carried);
    visit("timingB9", timing.timingB9, Presence::Carried);
    visit("timingB10", timing.timingB10, Presence::Carried);
    visit("timingB11", timing.timingB11, Presence::Carried);
    visit("timingF12", timing.timingF12, Presence::Carried);
}

template <typename Transition, typename Visit>
void visitTransition(Transition &transition, Visit &&visit)
{
    visit("advanceOnClick", transition.advanceOnClick, Presence::Carried);
    visit("advanceOnTime", transition.advanceOnTime, Presence::Carried);
    visit("advanceTime", transition.advanceTime, Presence::Carried);
    visit("entryEffect", transition.entryEffect, Presence::Carried);
    visit("hidden", transition.hidden, Presence::Carried);
    visit("loopSoundUntilNext", transition.loopSoundUntilNext, Presence::Carried);
}

/// Of the head, a shape, an effect or a transition, which may be const.
template <typename Object, typename Visit>
void visitFields(Object &object, Visit &&visit)
{
    using Class = std::remove_const_t<Object>;
    if constexpr (std::is_same_v<Class, PPT_FileHead>)
        visitHead(object, visit);
    else if constexpr (std::is_same_v<Class, PPT_Shape>)
        visitShape(object, visit);
    else if constexpr (std::is_same_v<Class, PPT_Effect>)
        visitEffect(object, visit);
    else
        visitTransition(object, visit);
}
