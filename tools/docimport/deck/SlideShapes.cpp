#include "tools/docimport/deck/SlideShapes.h"

#include "tools/docimport/deck/DeckElements.h"

#include <algorithm>

namespace {

// Of a shape, or of a paragraph.
QString idOf(const XmlNode &node)
{
    for (const char *name : {"xml:id", "draw:id", "text:id"}) {
        QString id = node.attribute(name);
        if (!id.isEmpty())
            return id;
    }
    return {};
}

bool isMoving(const XmlNode &node, const QSet<QString> &moving)
{
    return moving.contains(idOf(node));
}

bool hasMoving(const XmlNode &node, const QSet<QString> &moving)
{
    return !isForeign(node) &&
           std::any_of(node.children.begin(), node.children.end(), [&](const XmlNode &child) {
               return isMoving(child, moving) || hasMoving(child, moving);
           });
}

// Of a text, in order.
void addParagraphs(const XmlNode &node, std::vector<const XmlNode *> &paragraphs)
{
    for (const XmlNode &child : node.children) {
        if (isParagraph(child))
            paragraphs.push_back(&child);
        else if (isListPart(child))
            addParagraphs(child, paragraphs);
    }
}

std::vector<const XmlNode *> paragraphsOf(const XmlNode &shape)
{
    std::vector<const XmlNode *> paragraphs;
    if (const XmlNode *text = textOf(shape))
        addParagraphs(*text, paragraphs);
    return paragraphs;
}

} // namespace

QString nameOf(const XmlNode &shape)
{
    const QString name = shape.attribute("draw:name");
    return name.isEmpty() ? shape.name.section(QLatin1Char(':'), 1) : name;
}

QString SlideShape::text(int paragraph) const
{
    return paragraphs[static_cast<size_t>(paragraph)]->allText().simplified();
}

SlideShapes::SlideShapes(const XmlNode &page, const QSet<QString> &moving)
{
    for (const XmlNode &child : page.children) {
        if (isShape(child))
            add(child, moving);
    }
}

const ShapePlace *SlideShapes::find(const QString &id) const
{
    const auto found = m_places.find(id);
    return found == m_places.end() ? nullptr : &*found;
}

void SlideShapes::add(const XmlNode &node, const QSet<QString> &moving)
{
    if (!isShapeHolder(node) || !hasMoving(node, moving)) {
        addShape(node);
        return;
    }
    const int first = static_cast<int>(m_shapes.size());
    for (const XmlNode &child : node.children) {
        if (isShape(child))
            add(child, moving);
    }
    const int last = static_cast<int>(m_shapes.size()) - 1;
    if (last >= first)
        addPlace({&node, first, last, -1, false});
}

void SlideShapes::addShape(const XmlNode &node)
{
    const int number = static_cast<int>(m_shapes.size());
    m_shapes.push_back({&node, paragraphsOf(node)});
    addPlace({&node, number, number, -1, false});
    const std::vector<const XmlNode *> &paragraphs = m_shapes.back().paragraphs;
    for (size_t i = 0; i < paragraphs.size(); ++i)
        addPlace({paragraphs[i], number, number, static_cast<int>(i), false});
    addInner(node, number);
}

// The first of those that have the same counts.
void SlideShapes::addPlace(const ShapePlace &place)
{
    const QString id = idOf(*place.node);
    if (!id.isEmpty() && !m_places.contains(id))
        m_places.insert(id, place);
}

void SlideShapes::addInner(const XmlNode &node, int shape)
{
    if (isForeign(node))
        return;
    for (const XmlNode &child : node.children) {
        addPlace({&child, shape, shape, -1, true});
        addInner(child, shape);
    }
}
