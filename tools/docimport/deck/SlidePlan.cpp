#include "tools/docimport/deck/SlidePlan.h"

#include "tools/docimport/deck/EffectTiming.h"
#include "tools/docimport/deck/ShapeParts.h"
#include "tools/docimport/deck/SlideEffects.h"

#include <algorithm>

namespace {

constexpr size_t kMostLayers = 250; // each is a picture and two pages for the engine

QSet<QString> movingIds(const std::vector<SlideEffect> &effects)
{
    QSet<QString> ids;
    for (const SlideEffect &effect : effects) {
        if (!effect.isPlayed())
            continue;
        for (const EffectTarget &target : effect.targets)
            ids.insert(target.id);
    }
    return ids;
}

QString kindOf(const SlideEffect &effect)
{
    static constexpr const char *kKinds[] = {"entrance", "exit", "emphasis", "motion-path",
                                             "media-call"};
    const bool isKnown = std::any_of(std::begin(kKinds), std::end(kKinds), [&](const char *kind) {
        return effect.kind == QLatin1String(kind);
    });
    return isKnown ? effect.kind : QStringLiteral("other");
}

QString triggerOf(const SlideEffect &effect)
{
    static constexpr const char *kNames[] = {"click", "with", "after"};
    return QLatin1String(kNames[effect.trigger - 1]);
}

/// Goes through the effects of a slide in order, and keeps those that change what is seen.
class Planner
{
public:
    Planner(SlidePlan &plan, const std::vector<SlideEffect> &effects)
        : m_plan(plan)
        , m_effects(effects)
        , m_parts(plan.shapes, effects)
    {
    }

    void plan();

private:
    void planEffect(size_t number);
    void keep(const SlideEffect &effect, const std::vector<size_t> &moved, EffectReport &report);
    QStringList coarser(const SlideEffect &effect) const;
    QString targetName(const SlideEffect &effect) const;
    void makeLayers();
    void giveUp();

    SlidePlan &m_plan;
    const std::vector<SlideEffect> &m_effects;
    ShapeParts m_parts;
    EffectTiming m_timing;
    std::vector<int> m_movedParts; // of each effect that is kept
};

void Planner::plan()
{
    for (size_t i = 0; i < m_effects.size(); ++i)
        planEffect(i);
    makeLayers();
    if (m_plan.layers.size() > kMostLayers)
        giveUp();
}

void Planner::planEffect(size_t number)
{
    const SlideEffect &effect = m_effects[number];
    EffectReport report;
    report.target = targetName(effect);
    report.kind = kindOf(effect);
    report.trigger = triggerOf(effect);
    report.duration = effect.duration;
    report.result = QStringLiteral("dropped");
    if (!effect.isPlayed()) {
        report.reason = QStringLiteral("only entrances and exits are played");
    } else if (m_parts.isTooMuch()) {
        report.reason = QStringLiteral("the effects of the slide move too many shapes");
    } else if (!m_parts.isMoving(number)) {
        report.reason = effect.targets.empty()
                            ? QStringLiteral("moves nothing")
                            : QStringLiteral("what it moves is not on the slide");
    } else {
        const std::vector<size_t> moved = m_parts.play(number);
        if (!moved.empty()) {
            keep(effect, moved, report);
        } else {
            report.result = QStringLiteral("merged");
            report.reason = effect.isExit() ? QStringLiteral("has left already")
                                            : QStringLiteral("is there already");
        }
    }
    if (report.result != QLatin1String("kept"))
        m_timing.skip(effect);
    m_plan.report.append(report);
}

void Planner::keep(const SlideEffect &effect, const std::vector<size_t> &moved,
                   EffectReport &report)
{
    const EffectTiming::Kept kept = m_timing.keep(effect);
    int trigger = kept.trigger;
    for (const size_t part : moved) {
        m_plan.effects.push_back({0, trigger, effect.isExit(), effect.duration});
        m_movedParts.push_back(static_cast<int>(part));
        trigger = 2;
    }
    report.result = QStringLiteral("kept");
    report.reason = (kept.reasons + coarser(effect)).join(QStringLiteral("; "));
}

QStringList Planner::coarser(const SlideEffect &effect) const
{
    QStringList reasons;
    if (effect.isEndless)
        reasons += QStringLiteral("plays once, not until the next click");
    if (effect.isByLetters)
        reasons += QStringLiteral("moves all of the text at once");
    for (const EffectTarget &target : effect.targets) {
        const ShapePlace *place = m_plan.shapes.find(target.id);
        if (place && place->isInner) {
            reasons += QStringLiteral("moves all of the shape");
            break;
        }
    }
    return reasons;
}

QString Planner::targetName(const SlideEffect &effect) const
{
    constexpr int kMostCharacters = 40;
    if (effect.targets.empty())
        return {};
    const ShapePlace *place = m_plan.shapes.find(effect.targets.front().id);
    if (!place)
        return effect.targets.front().id;
    const SlideShape &shape = m_plan.shapes.all()[static_cast<size_t>(place->first)];
    QString name = nameOf(place->isInner ? *shape.node : *place->node);
    if (place->paragraph >= 0) {
        name = nameOf(*shape.node);
        const QString text = shape.text(place->paragraph);
        if (!text.isEmpty())
            name =
                text.size() > kMostCharacters ? text.left(kMostCharacters) + QChar(0x2026) : text;
    }
    if (effect.targets.size() > 1)
        name += QStringLiteral(" and %1 more").arg(effect.targets.size() - 1);
    return name;
}

// What rests between two that move is a layer as well, so that it stays between them.
void Planner::makeLayers()
{
    std::vector<int> layerOf(m_parts.all().size(), -1);
    for (const int part : m_movedParts)
        layerOf[static_cast<size_t>(part)] = 0;
    bool isResting = true;
    SlideLayer *resting = &m_plan.background;
    for (size_t part = 0; part < layerOf.size(); ++part) {
        const bool isMoving = layerOf[part] >= 0;
        if (isMoving || !isResting)
            resting = &m_plan.layers.emplace_back();
        isResting = !isMoving;
        resting->push_back(m_parts.all()[part]);
        layerOf[part] = static_cast<int>(m_plan.layers.size()) - 1;
    }
    for (size_t i = 0; i < m_movedParts.size(); ++i)
        m_plan.effects[i].layer = layerOf[static_cast<size_t>(m_movedParts[i])];
}

void Planner::giveUp()
{
    m_plan.layers.clear();
    m_plan.effects.clear();
    for (EffectReport &report : m_plan.report) {
        if (report.result != QLatin1String("kept"))
            continue;
        report.result = QStringLiteral("dropped");
        report.reason = QStringLiteral("the slide has more than %1 layers").arg(kMostLayers);
    }
}

} // namespace

SlidePlan::SlidePlan(const XmlNode &page)
    : SlidePlan(page, slideEffects(page))
{
}

SlidePlan::SlidePlan(const XmlNode &page, const std::vector<SlideEffect> &slideEffects)
    : shapes(page, movingIds(slideEffects))
{
    Planner(*this, slideEffects).plan();
}
