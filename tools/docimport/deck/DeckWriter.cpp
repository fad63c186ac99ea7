#include "tools/docimport/deck/DeckWriter.h"

#include "tools/docimport/deck/DeckElements.h"
#include "tools/docimport/deck/XmlFile.h"

#include <QFile>

#include <algorithm>

namespace {

template <typename Predicate>
void removeChildren(XmlNode &node, Predicate isRemoved)
{
    node.children.erase(std::remove_if(node.children.begin(), node.children.end(), isRemoved),
                        node.children.end());
}

// How the slide is changed to, with sounds from elsewhere.
XmlNode withoutTransition(const XmlNode &style)
{
    XmlNode still = style;
    if (XmlNode *properties = still.child("style:drawing-page-properties")) {
        for (const char *attribute :
             {"presentation:transition-type", "presentation:transition-style",
              "presentation:transition-speed", "presentation:duration", "smil:type", "smil:subtype",
              "smil:direction", "smil:fadeColor"})
            properties->removeAttribute(attribute);
        removeChildren(*properties,
                       [](const XmlNode &child) { return child.is("presentation:sound"); });
    }
    return still;
}

// What only tells the place of a slide's own objects: it is not seen.
bool isOutline(const XmlNode &shape)
{
    const QString what = shape.attribute("presentation:class");
    return what == QLatin1String("title") || what == QLatin1String("outline") ||
           what == QLatin1String("subtitle");
}

XmlNode withoutDecoration(const XmlNode &masters)
{
    XmlNode bare = masters;
    for (XmlNode &master : bare.children) {
        if (master.is("style:master-page"))
            removeChildren(
                master, [](const XmlNode &child) { return isShape(child) && !isOutline(child); });
    }
    return bare;
}

void writeBody(const XmlNode &body, const DeckWriter::WritePages &writePages, XmlWriter &writer)
{
    writer.begin(body);
    for (const XmlNode &part : body.children) {
        if (!part.is("office:presentation"))
            continue;
        writer.begin(part);
        for (const XmlNode &child : part.children) {
            if (!child.is("draw:page") && !child.is("presentation:settings"))
                writer.write(child);
        }
        writePages(writer);
        writer.end();
    }
    writer.end();
}

} // namespace

QString DeckWriter::write(const QString &path, Masters masters, const WritePages &writePages) const
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return file.errorString();
    XmlWriter writer(file, m_pictures);
    writer.begin(m_deck);
    for (const XmlNode &part : m_deck.children)
        writePart(part, masters, writePages, writer);
    writer.end();
    const QString fault = writer.finish();
    if (!fault.isEmpty())
        return fault;
    return file.flush() ? QString() : file.errorString();
}

void DeckWriter::writePart(const XmlNode &part, Masters masters, const WritePages &writePages,
                           XmlWriter &writer) const
{
    if (part.is("office:body"))
        writeBody(part, writePages, writer);
    else if (part.is("office:automatic-styles"))
        writeStyles(part, writer);
    else if (part.is("office:master-styles") && masters == Masters::WithoutDecoration)
        writer.write(withoutDecoration(part));
    else if (!part.is("office:scripts"))
        writer.write(part);
}

void DeckWriter::writeStyles(const XmlNode &styles, XmlWriter &writer) const
{
    writer.begin(styles);
    for (const XmlNode &style : styles.children) {
        const bool isOfPages = style.attribute("style:family") == QLatin1String("drawing-page");
        writer.write(isOfPages ? withoutTransition(style) : style);
    }
    for (const XmlNode &style : m_styles)
        writer.write(style);
    writer.end();
}
