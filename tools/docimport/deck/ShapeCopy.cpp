#include "tools/docimport/deck/ShapeCopy.h"

#include "tools/docimport/deck/DeckElements.h"
#include "tools/docimport/deck/DeckStyles.h"
#include "tools/docimport/deck/TextOutline.h"

#include <algorithm>

namespace {

// Where it is does not depend on what is not there: a connector joins shapes of other layers, too.
void removeTies(XmlNode &node)
{
    for (const char *tie : {"xml:id", "draw:id", "text:id", "draw:start-shape", "draw:end-shape",
                            "draw:start-glue-point", "draw:end-glue-point"})
        node.removeAttribute(tie);
    const auto isListener = [](const XmlNode &child) { return child.is("office:event-listeners"); };
    node.children.erase(std::remove_if(node.children.begin(), node.children.end(), isListener),
                        node.children.end());
    for (XmlNode &child : node.children) {
        if (!isForeign(child))
            removeTies(child);
    }
}

void makeText(XmlNode &node, const QString &text)
{
    node = XmlNode();
    node.text = text;
}

void fillFields(XmlNode &node, const SlideFields &fields)
{
    if (node.is("text:page-number"))
        makeText(node, QString::number(fields.page));
    else if (node.is("text:page-count"))
        makeText(node, QString::number(fields.pages));
    else if (node.is("text:page-name") || node.is("loext:page-name"))
        makeText(node, fields.pageName);
    for (XmlNode &child : node.children) {
        if (!isForeign(child))
            fillFields(child, fields);
    }
}

// Each span has a colour of its own.
void hideSpans(XmlNode &node, DeckStyles &styles)
{
    for (XmlNode &child : node.children) {
        if (child.is("text:span"))
            child.setAttribute("text:style-name",
                               styles.invisibleText(child.attribute("text:style-name")));
        hideSpans(child, styles);
    }
}

void hideParagraph(const OutlineParagraph &paragraph, DeckStyles &styles)
{
    XmlNode &node = *paragraph.node;
    hideSpans(node, styles);
    XmlNode all = XmlNode::element("text:span");
    all.setAttribute("text:style-name", styles.invisibleText({}));
    all.children = std::move(node.children);
    node.children.clear();
    node.children.push_back(std::move(all));
    if (paragraph.item)
        paragraph.item->setAttribute("text:style-override", styles.blankList(paragraph.list));
}

// What comes before it counts, even if it has lost its sign.
void keepNumber(const OutlineParagraph &paragraph)
{
    if (paragraph.item && paragraph.number > 0)
        paragraph.item->setAttribute("text:start-value", QString::number(paragraph.number));
}

/// The style of a shape, which has one of two families.
struct ShapeStyle
{
    explicit ShapeStyle(const XmlNode &shape)
        : isPlaceholder(shape.hasAttribute("presentation:style-name"))
        , attribute(isPlaceholder ? "presentation:style-name" : "draw:style-name")
        , family(isPlaceholder ? QStringLiteral("presentation") : QStringLiteral("graphic"))
        , name(shape.attribute(attribute))
    {
    }

    bool isPlaceholder;
    const char *attribute;
    QString family;
    QString name;
};

void hideParagraphs(XmlNode &shape, const std::vector<int> &shown, DeckStyles &styles)
{
    XmlNode *text = textOf(shape);
    if (!text)
        return;
    const ShapeStyle style(shape);
    const std::vector<OutlineParagraph> paragraphs =
        outlineOf(*text, styles.listOfShape(style.family, style.name), styles);
    for (size_t i = 0; i < paragraphs.size(); ++i) {
        if (std::binary_search(shown.begin(), shown.end(), static_cast<int>(i)))
            keepNumber(paragraphs[i]);
        else
            hideParagraph(paragraphs[i], styles);
    }
}

void removeBody(XmlNode &shape, DeckStyles &styles)
{
    const ShapeStyle style(shape);
    shape.setAttribute(style.attribute, styles.bareShape(style.family, style.name));
    const QString text = shape.attribute("draw:text-style-name");
    if (!text.isEmpty())
        shape.setAttribute("draw:text-style-name", styles.bareParagraph(text));
}

} // namespace

XmlNode shapeCopy(const XmlNode &shape, const LayerPiece &piece, const SlideFields &fields,
                  DeckStyles &styles)
{
    XmlNode copy = shape;
    removeTies(copy);
    fillFields(copy, fields);
    if (!piece.isWhole)
        hideParagraphs(copy, piece.paragraphs, styles);
    if (!piece.hasBody)
        removeBody(copy, styles);
    return copy;
}
