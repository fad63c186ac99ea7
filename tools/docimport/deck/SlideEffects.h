#pragma once

#include <QString>

#include <vector>

struct XmlNode;

/// What an effect moves.
struct EffectTarget
{
    enum class Part { Whole, Background, Text };

    QString id; ///< of a shape or of a paragraph
    Part part = Part::Whole;
};

/// An effect of a slide's main sequence, as the deck has it.
struct SlideEffect
{
    QString kind;           ///< the preset class: "entrance", "exit", ...; "other" when it has none
    int trigger = 1;        ///< as in the model: 1 on click, 2 with the previous effect, 3 after it
    double duration = 0;    ///< seconds
    double delay = 0;       ///< seconds after what triggers it
    int click = 0;          ///< which part of the sequence it is in: each begins with a click
    double start = 0;       ///< seconds after the beginning of that part
    bool isEndless = false; ///< `duration` is that of one turn
    bool isByLetters = false; ///< or words
    std::vector<EffectTarget> targets;

    bool isEntrance() const { return kind == QLatin1String("entrance"); }
    bool isExit() const { return kind == QLatin1String("exit"); }
    bool isPlayed() const { return isEntrance() || isExit(); } ///< the player knows no others
};

/// The effects of a page in playing order. Effects that a click on a shape starts are none of them.
std::vector<SlideEffect> slideEffects(const XmlNode &page);
