#include "tools/docimport/deck/ShapeParts.h"

#include <algorithm>

ShapeParts::ShapeParts(const SlideShapes &shapes, const std::vector<SlideEffect> &effects)
    : m_shapes(shapes)
{
    split(effects);
    m_states.resize(m_parts.size());
    m_candidates.resize(effects.size());
    for (size_t i = 0; i < effects.size(); ++i) {
        m_isExit.push_back(effects[i].isExit());
        if (effects[i].isPlayed() && !isTooMuch())
            addEvents(i, effects[i]);
    }
    for (State &state : m_states)
        state.isIn = isInAtFirst(state);
}

// What leaves first is there before, unless it comes in with its shape.
bool ShapeParts::isInAtFirst(const State &state)
{
    if (state.own.empty())
        return state.ofShape.empty() || state.ofShape.front().isExit;
    const bool isShapeFirst =
        !state.ofShape.empty() && state.ofShape.front().effect < state.own.front().effect;
    return state.own.front().isExit && (!isShapeFirst || state.ofShape.front().isExit);
}

void ShapeParts::split(const std::vector<SlideEffect> &effects)
{
    struct Split
    {
        std::vector<bool> isSplit; // each paragraph
        bool isBodyApart = false;
    };
    std::vector<Split> splits(m_shapes.all().size());
    for (size_t i = 0; i < splits.size(); ++i)
        splits[i].isSplit.resize(m_shapes.all()[i].paragraphs.size());
    for (const SlideEffect &effect : effects) {
        if (!effect.isPlayed())
            continue;
        for (const EffectTarget &target : effect.targets) {
            const ShapePlace *place = m_shapes.find(target.id);
            if (!place)
                continue;
            Split &split = splits[static_cast<size_t>(place->first)];
            if (place->paragraph >= 0)
                split.isSplit[static_cast<size_t>(place->paragraph)] = true;
            else if (place->first == place->last && target.part != EffectTarget::Part::Whole)
                split.isBodyApart = true;
        }
    }
    for (size_t i = 0; i < splits.size(); ++i)
        addParts(i, splits[i].isSplit, splits[i].isBodyApart);
    m_firstPart.push_back(m_parts.size());
}

void ShapeParts::addParts(size_t shape, const std::vector<bool> &isSplit, bool isBodyApart)
{
    m_firstPart.push_back(m_parts.size());
    const int number = static_cast<int>(shape);
    std::vector<int> apart;
    std::vector<int> rest;
    for (size_t i = 0; i < isSplit.size(); ++i)
        (isSplit[i] ? apart : rest).push_back(static_cast<int>(i));
    if (isSplit.empty() || (apart.empty() && !isBodyApart)) {
        m_parts.push_back({number, true, true, {}});
        return;
    }
    if (isBodyApart) {
        m_parts.push_back({number, false, true, {}});
        if (!rest.empty())
            m_parts.push_back({number, false, false, rest});
    } else {
        m_parts.push_back({number, false, true, rest});
    }
    for (const int paragraph : apart)
        m_parts.push_back({number, false, false, {paragraph}});
}

void ShapeParts::addEvents(size_t effect, const SlideEffect &of)
{
    std::vector<Candidate> &candidates = m_candidates[effect];
    for (const EffectTarget &target : of.targets) {
        const size_t before = candidates.size();
        addCandidates(target, candidates);
        m_bearings += candidates.size() - before;
        if (isTooMuch())
            return;
    }
    for (const Candidate &candidate : candidates) {
        State &state = m_states[candidate.part];
        (candidate.isOwn ? state.own : state.ofShape).push_back({effect, of.isExit()});
    }
}

void ShapeParts::addCandidates(const EffectTarget &target, std::vector<Candidate> &candidates) const
{
    const ShapePlace *place = m_shapes.find(target.id);
    if (!place)
        return;
    for (int shape = place->first; shape <= place->last; ++shape) {
        const size_t first = m_firstPart[static_cast<size_t>(shape)];
        const size_t end = m_firstPart[static_cast<size_t>(shape) + 1];
        for (size_t part = first; part < end; ++part) {
            const LayerPiece &piece = m_parts[part];
            if (place->paragraph >= 0) {
                if (!piece.hasBody && piece.paragraphs.front() == place->paragraph)
                    candidates.push_back({part, true});
            } else if (piece.hasBody ? target.part != EffectTarget::Part::Text || piece.isWhole
                                     : target.part != EffectTarget::Part::Background) {
                candidates.push_back(
                    {part, piece.hasBody || target.part == EffectTarget::Part::Text});
            }
        }
    }
}

bool ShapeParts::isMoving(size_t effect) const
{
    return !m_candidates[effect].empty();
}

bool ShapeParts::entersLater(const State &state, size_t effect) const
{
    const auto next =
        std::upper_bound(state.own.begin(), state.own.end(), effect,
                         [](size_t number, const Event &event) { return number < event.effect; });
    return next != state.own.end() && !next->isExit;
}

std::vector<size_t> ShapeParts::play(size_t effect)
{
    std::vector<size_t> moved;
    const bool isExit = m_isExit[effect];
    for (const Candidate &candidate : m_candidates[effect]) {
        State &state = m_states[candidate.part];
        if (state.isIn != isExit)
            continue;
        if (!isExit && !candidate.isOwn && entersLater(state, effect))
            continue;
        state.isIn = !isExit;
        moved.push_back(candidate.part);
    }
    return moved;
}
