#include "tools/docimport/deck/SlideEffects.h"

#include "tools/docimport/deck/TimeValue.h"
#include "tools/docimport/deck/XmlNode.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kLongest = 86400; // seconds: nobody waits longer

struct TriggerName
{
    const char *name;
    int type;
};
constexpr TriggerName kTriggers[] = {{"on-click", 1}, {"with-previous", 2}, {"after-previous", 3}};

// 0: the node is no effect.
int triggerOf(const XmlNode &node)
{
    const QString type = node.attribute("presentation:node-type");
    const auto *found =
        std::find_if(std::begin(kTriggers), std::end(kTriggers), [&](const TriggerName &trigger) {
            return type == QLatin1String(trigger.name);
        });
    return found == std::end(kTriggers) ? 0 : found->type;
}

double secondsOr0(const XmlNode &node, const char *attribute)
{
    return std::clamp(secondsOf(node.attribute(attribute)).value_or(0), 0.0, kLongest);
}

/// How long nodes take, those below them included.
class Extent
{
public:
    double ofChildren(const XmlNode &node)
    {
        double longest = 0;
        for (const XmlNode &child : node.children)
            longest = std::max(longest, secondsOr0(child, "smil:begin") + ofNode(child));
        return std::min(longest * turns(node), kLongest);
    }

    bool isEndless() const { return m_isEndless; }

private:
    double ofNode(const XmlNode &node)
    {
        const double duration = std::min(secondsOr0(node, "smil:dur") * turns(node), kLongest);
        return std::max(duration, ofChildren(node));
    }

    double turns(const XmlNode &node)
    {
        const QString count = node.attribute("smil:repeatCount");
        const double times = count.toDouble();
        m_isEndless = m_isEndless || count == QLatin1String("indefinite");
        const bool isThereAndBack = node.attribute("smil:autoReverse") == QLatin1String("true");
        const double all =
            (std::isfinite(times) && times > 0 ? times : 1) * (isThereAndBack ? 2 : 1);
        return std::min(all, std::numeric_limits<double>::max()); // infinitely often nothing is NaN
    }

    bool m_isEndless = false;
};

/// Collects the effects of a main sequence.
class EffectCollector
{
public:
    std::vector<SlideEffect> take(const XmlNode &sequence)
    {
        for (const XmlNode &click : sequence.children) {
            collect(click, 0);
            ++m_click;
        }
        return std::move(m_effects);
    }

private:
    void collect(const XmlNode &node, double start);
    void addEffect(const XmlNode &node, int trigger, double start);
    static void addTargets(const XmlNode &node, SlideEffect &effect);
    static bool isByLetters(const XmlNode &node);

    std::vector<SlideEffect> m_effects;
    int m_click = 0;
};

void EffectCollector::collect(const XmlNode &node, double start)
{
    const double begin = start + secondsOr0(node, "smil:begin");
    const size_t before = m_effects.size();
    for (const XmlNode &child : node.children)
        collect(child, begin);
    // What has effects in it only holds them together.
    const int trigger = triggerOf(node);
    if (trigger != 0 && m_effects.size() == before)
        addEffect(node, trigger, begin);
}

void EffectCollector::addEffect(const XmlNode &node, int trigger, double start)
{
    SlideEffect effect;
    addTargets(node, effect);
    effect.kind = node.attribute("presentation:preset-class");
    if (effect.kind.isEmpty()) {
        if (effect.targets.empty())
            return;
        effect.kind = QStringLiteral("other");
    }
    Extent extent;
    effect.trigger = trigger;
    effect.duration = extent.ofChildren(node);
    effect.isEndless = extent.isEndless();
    effect.delay = secondsOr0(node, "smil:begin");
    effect.click = m_click;
    effect.start = start;
    effect.isByLetters = isByLetters(node);
    m_effects.push_back(std::move(effect));
}

EffectTarget::Part partOf(const XmlNode &node)
{
    const QString item = node.attribute("anim:sub-item");
    if (item == QLatin1String("background"))
        return EffectTarget::Part::Background;
    return item == QLatin1String("text") ? EffectTarget::Part::Text : EffectTarget::Part::Whole;
}

// Of one target not all nodes tell the part.
void EffectCollector::addTargets(const XmlNode &node, SlideEffect &effect)
{
    const QString id = node.attribute("smil:targetElement");
    if (!id.isEmpty()) {
        const EffectTarget::Part part = partOf(node);
        const auto known =
            std::find_if(effect.targets.begin(), effect.targets.end(),
                         [&](const EffectTarget &target) { return target.id == id; });
        if (known == effect.targets.end())
            effect.targets.push_back({id, part});
        else if (known->part == EffectTarget::Part::Whole)
            known->part = part;
    }
    for (const XmlNode &child : node.children)
        addTargets(child, effect);
}

bool EffectCollector::isByLetters(const XmlNode &node)
{
    return node.is("anim:iterate") ||
           std::any_of(node.children.begin(), node.children.end(), isByLetters);
}

const XmlNode *childOfType(const XmlNode &node, const char *name, const char *type)
{
    for (const XmlNode &child : node.children) {
        if (child.is(name) && child.attribute("presentation:node-type") == QLatin1String(type))
            return &child;
    }
    return nullptr;
}

} // namespace

std::vector<SlideEffect> slideEffects(const XmlNode &page)
{
    const XmlNode *root = childOfType(page, "anim:par", "timing-root");
    const XmlNode *sequence = root ? childOfType(*root, "anim:seq", "main-sequence") : nullptr;
    return sequence ? EffectCollector().take(*sequence) : std::vector<SlideEffect>();
}
