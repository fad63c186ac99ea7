#pragma once

#include "tools/docimport/deck/LayerPiece.h"
#include "tools/docimport/deck/SlideEffects.h"
#include "tools/docimport/deck/SlideShapes.h"

#include <vector>

/// The pieces in which the shapes of a slide move, and which of them are seen while its effects
/// play one after the other.
///
/// A shape of which paragraphs or the background move by themselves has several parts. Those of its
/// text come in with the shape, unless they have an entrance of their own to come, and leave with
/// it.
class ShapeParts
{
public:
    ShapeParts(const SlideShapes &shapes, const std::vector<SlideEffect> &effects);

    /// Lowest first.
    const std::vector<LayerPiece> &all() const { return m_parts; }

    /// Whether the effects bear on more parts than can be gone through. They then move none.
    bool isTooMuch() const { return m_bearings > kMostBearings; }

    /// Whether the effect would move any part.
    bool isMoving(size_t effect) const;

    /// Plays the next effect.
    /// \return the parts that come in, or leave, by it
    std::vector<size_t> play(size_t effect);

private:
    static constexpr size_t kMostBearings = 1'000'000; // of one effect on one part each

    // An effect that may bear on a part.
    struct Event
    {
        size_t effect = 0;
        bool isExit = false;
    };
    struct State
    {
        std::vector<Event> own;     // of effects on no more than it, in order
        std::vector<Event> ofShape; // of effects on all of its shape
        bool isIn = true;
    };
    struct Candidate
    {
        size_t part = 0;
        bool isOwn = true;
    };

    void split(const std::vector<SlideEffect> &effects);
    void addParts(size_t shape, const std::vector<bool> &isSplit, bool isBodyApart);
    void addEvents(size_t effect, const SlideEffect &of);
    void addCandidates(const EffectTarget &target, std::vector<Candidate> &candidates) const;
    static bool isInAtFirst(const State &state);
    bool entersLater(const State &state, size_t effect) const;

    const SlideShapes &m_shapes;
    std::vector<LayerPiece> m_parts;
    std::vector<size_t> m_firstPart;                  // of each shape; and behind the last one
    std::vector<State> m_states;                      // of each part
    std::vector<std::vector<Candidate>> m_candidates; // of each effect
    std::vector<bool> m_isExit;                       // each effect
    size_t m_bearings = 0;
};
