#include "tools/docimport/deck/DeckStyles.h"

namespace {

constexpr int kMostAncestors = 100; // of a style, which might be its own
constexpr int kListLevels = 10;

QString keyOf(const QString &family, const QString &name)
{
    return family + QLatin1Char('/') + name;
}

// How its colour comes about is forgotten: that of the theme may go before the colour that is set.
void removeColour(XmlNode &textProperties)
{
    std::vector<XmlAttribute> kept;
    for (XmlAttribute &attribute : textProperties.attributes) {
        if (attribute.name != QLatin1String("style:use-window-font-color") &&
            !attribute.name.startsWith(QLatin1String("loext:color")) &&
            !attribute.name.startsWith(QLatin1String("loext:theme")))
            kept.push_back(std::move(attribute));
    }
    textProperties.attributes = std::move(kept);
    textProperties.children.clear();
}

void removeFill(XmlNode &graphicProperties)
{
    graphicProperties.setAttribute("draw:fill", QStringLiteral("none"));
    graphicProperties.setAttribute("draw:stroke", QStringLiteral("none"));
    graphicProperties.setAttribute("draw:shadow", QStringLiteral("hidden"));
}

// Without a font of its own: a space may be a sign in that.
XmlNode blankLevel(const XmlNode &level)
{
    const bool isNumber = level.is("text:list-level-style-number");
    XmlNode blank = XmlNode::element(isNumber ? "text:list-level-style-number"
                                              : "text:list-level-style-bullet");
    blank.setAttribute("text:level", level.attribute("text:level"));
    if (isNumber)
        blank.setAttribute("style:num-format", QLatin1String(""));
    else
        blank.setAttribute("text:bullet-char", QStringLiteral(" "));
    if (const XmlNode *properties = level.child("style:list-level-properties"))
        blank.children.push_back(*properties);
    return blank;
}

XmlNode plainLevel(int number)
{
    XmlNode level = XmlNode::element("text:list-level-style-bullet");
    level.setAttribute("text:level", QString::number(number));
    return level;
}

} // namespace

DeckStyles::DeckStyles(const XmlNode &deck)
{
    take(deck.child("office:styles"));
    take(deck.child("office:automatic-styles"));
}

void DeckStyles::take(const XmlNode *styles)
{
    if (!styles)
        return;
    for (const XmlNode &style : styles->children) {
        const QString name = style.attribute("style:name");
        m_names.insert(name);
        if (style.is("text:list-style"))
            m_lists.insert(name, &style);
        else if (style.is("style:style"))
            m_styles.insert(keyOf(style.attribute("style:family"), name), &style);
        if (styles->is("office:automatic-styles"))
            m_automatic.insert(&style);
    }
}

const XmlNode *DeckStyles::find(const QString &family, const QString &name) const
{
    return m_styles.value(keyOf(family, name));
}

const XmlNode *DeckStyles::findList(const QString &name) const
{
    return m_lists.value(name);
}

const XmlNode *DeckStyles::listOfShape(const QString &family, const QString &name) const
{
    const XmlNode *style = find(family, name);
    for (int i = 0; style && i < kMostAncestors; ++i) {
        const XmlNode *properties = style->child("style:graphic-properties");
        if (const XmlNode *list = properties ? properties->child("text:list-style") : nullptr)
            return list;
        style = find(family, style->attribute("style:parent-style-name"));
    }
    return nullptr;
}

QString DeckStyles::newName()
{
    QString name;
    do
        name = QStringLiteral("layer%1").arg(++m_count);
    while (m_names.contains(name));
    return name;
}

XmlNode &DeckStyles::made(XmlNode style)
{
    m_made.push_back(std::move(style));
    return m_made.back();
}

XmlNode &DeckStyles::makeLike(const QString &family, const QString &name)
{
    const XmlNode *original = find(family, name);
    XmlNode style = XmlNode::element("style:style");
    if (original && m_automatic.contains(original))
        style = *original;
    else if (!name.isEmpty())
        style.setAttribute("style:parent-style-name", name);
    style.setAttribute("style:family", family);
    style.setAttribute("style:name", newName());
    return made(std::move(style));
}

QString DeckStyles::invisibleText(const QString &name)
{
    QString &known = m_nameOf[keyOf(QStringLiteral("invisible"), name)];
    if (known.isEmpty()) {
        XmlNode &style = makeLike(QStringLiteral("text"), name);
        known = style.attribute("style:name");
        XmlNode &properties = style.needChild("style:text-properties");
        removeColour(properties);
        // No opacity counts without a colour.
        properties.setAttribute("fo:color", QStringLiteral("#000000"));
        properties.setAttribute("loext:opacity", QStringLiteral("0%"));
        properties.setAttribute("fo:background-color", QStringLiteral("transparent"));
        for (const char *decoration :
             {"fo:text-shadow", "style:font-relief", "style:text-underline-style",
              "style:text-overline-style", "style:text-line-through-style",
              "style:text-line-through-type", "style:text-emphasize"})
            properties.setAttribute(decoration, QStringLiteral("none"));
        properties.setAttribute("style:text-outline", QStringLiteral("false"));
    }
    return known;
}

QString DeckStyles::bareShape(const QString &family, const QString &name)
{
    QString &known = m_nameOf[keyOf(family, name)];
    if (known.isEmpty()) {
        XmlNode &style = makeLike(family, name);
        known = style.attribute("style:name");
        removeFill(style.needChild("style:graphic-properties"));
    }
    return known;
}

QString DeckStyles::bareParagraph(const QString &name)
{
    const QString family = QStringLiteral("paragraph");
    const XmlNode *original = find(family, name);
    if (!original || !original->child("loext:graphic-properties"))
        return name;
    QString &known = m_nameOf[keyOf(family, name)];
    if (known.isEmpty()) {
        XmlNode &style = makeLike(family, name);
        known = style.attribute("style:name");
        removeFill(style.needChild("loext:graphic-properties"));
    }
    return known;
}

QString DeckStyles::blankList(const XmlNode *list)
{
    QString &known =
        m_nameOf[QStringLiteral("list/%1").arg(reinterpret_cast<quintptr>(list), 0, 16)];
    if (known.isEmpty()) {
        XmlNode style = XmlNode::element("text:list-style");
        known = newName();
        style.setAttribute("style:name", known);
        if (list) {
            for (const XmlNode &level : list->children) {
                if (!level.name.isEmpty())
                    style.children.push_back(blankLevel(level));
            }
        } else {
            for (int level = 1; level <= kListLevels; ++level)
                style.children.push_back(blankLevel(plainLevel(level)));
        }
        made(std::move(style));
    }
    return known;
}

QString DeckStyles::paper(const QString &colour)
{
    QString &known = m_nameOf[keyOf(QStringLiteral("paper"), colour)];
    if (known.isEmpty()) {
        XmlNode &style = makeLike(QStringLiteral("drawing-page"), {});
        known = style.attribute("style:name");
        XmlNode &properties = style.needChild("style:drawing-page-properties");
        properties.setAttribute("draw:fill", QStringLiteral("solid"));
        properties.setAttribute("draw:fill-color", colour);
        properties.setAttribute("presentation:background-visible", QStringLiteral("true"));
        for (const char *object :
             {"presentation:background-objects-visible", "presentation:display-header",
              "presentation:display-footer", "presentation:display-page-number",
              "presentation:display-date-time"})
            properties.setAttribute(object, QStringLiteral("false"));
    }
    return known;
}
