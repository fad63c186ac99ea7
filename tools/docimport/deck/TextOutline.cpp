#include "tools/docimport/deck/TextOutline.h"

#include "tools/docimport/deck/DeckElements.h"
#include "tools/docimport/deck/DeckStyles.h"

#include <map>

namespace {

// Null when paragraphs of the level are not numbered.
const XmlNode *numberingOf(const XmlNode *list, int level)
{
    if (!list)
        return nullptr;
    for (const XmlNode &style : list->children) {
        if (style.is("text:list-level-style-number") &&
            style.attribute("text:level").toInt() == level &&
            !style.attribute("style:num-format").isEmpty())
            return &style;
    }
    return nullptr;
}

/// Counts as the engine does: paragraphs of a level are numbered on as long as they look alike and
/// none of a higher level is between them.
class Counter
{
public:
    int numberOf(const XmlNode &item, const XmlNode *list, int level);

private:
    struct Count
    {
        QString look;
        int first = 1;
        int number = 0;
    };
    std::map<int, Count> m_counts; // by level
};

int Counter::numberOf(const XmlNode &item, const XmlNode *list, int level)
{
    m_counts.erase(m_counts.upper_bound(level), m_counts.end());
    const XmlNode *numbering = numberingOf(list, level);
    if (!numbering) {
        m_counts.erase(level);
        return 0;
    }
    Count next;
    for (const char *sign : {"style:num-prefix", "style:num-format", "style:num-suffix"})
        next.look += numbering->attribute(sign) + QLatin1Char('\n');
    if (numbering->hasAttribute("text:start-value"))
        next.first = numbering->attribute("text:start-value").toInt();
    next.number = next.first;
    Count &count = m_counts[level];
    if (item.hasAttribute("text:start-value"))
        next.number = item.attribute("text:start-value").toInt();
    else if (count.look == next.look && count.first == next.first)
        next.number = static_cast<int>(static_cast<unsigned int>(count.number) + 1); // may wrap
    count = next;
    return count.number;
}

/// Goes through the lists of a text.
class OutlineWalk
{
public:
    explicit OutlineWalk(const DeckStyles &styles)
        : m_styles(styles)
    {
    }

    std::vector<OutlineParagraph> take(XmlNode &text, const XmlNode *list)
    {
        walk(text, list, 0);
        return std::move(m_paragraphs);
    }

private:
    void walk(XmlNode &node, const XmlNode *list, int level);
    void walkItem(XmlNode &item, const XmlNode *list, int level);
    void step(XmlNode &node, const XmlNode *list, int level);
    const XmlNode *listNamed(const QString &name, const XmlNode *list) const;

    const DeckStyles &m_styles;
    std::vector<OutlineParagraph> m_paragraphs;
    Counter m_counter;
};

const XmlNode *OutlineWalk::listNamed(const QString &name, const XmlNode *list) const
{
    const XmlNode *named = m_styles.findList(name);
    return named ? named : list;
}

void OutlineWalk::walk(XmlNode &node, const XmlNode *list, int level)
{
    for (XmlNode &child : node.children)
        step(child, list, level);
}

void OutlineWalk::step(XmlNode &node, const XmlNode *list, int level)
{
    if (isParagraph(node))
        m_paragraphs.push_back({&node, nullptr, list, 0});
    else if (node.is("text:list"))
        walk(node, listNamed(node.attribute("text:style-name"), list), level + 1);
    else if (node.is("text:list-item"))
        walkItem(node, list, level);
    else if (isListPart(node))
        walk(node, list, level);
}

// Its sign stands before the first of its own paragraphs.
void OutlineWalk::walkItem(XmlNode &item, const XmlNode *list, int level)
{
    const XmlNode *own = listNamed(item.attribute("text:style-override"), list);
    bool isFirst = true;
    for (XmlNode &child : item.children) {
        if (isFirst && isParagraph(child)) {
            isFirst = false;
            m_paragraphs.push_back({&child, &item, own, m_counter.numberOf(item, own, level)});
        } else {
            step(child, list, level);
        }
    }
}

} // namespace

std::vector<OutlineParagraph> outlineOf(XmlNode &text, const XmlNode *list,
                                        const DeckStyles &styles)
{
    return OutlineWalk(styles).take(text, list);
}
