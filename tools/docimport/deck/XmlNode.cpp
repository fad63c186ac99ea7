#include "tools/docimport/deck/XmlNode.h"

#include <algorithm>

namespace {

template <typename Attributes>
auto findAttribute(Attributes &attributes, const char *name)
{
    return std::find_if(
        attributes.begin(), attributes.end(),
        [name](const XmlAttribute &attribute) { return attribute.name == QLatin1String(name); });
}

template <typename Children>
auto *findChild(Children &children, const char *name)
{
    const auto found = std::find_if(children.begin(), children.end(),
                                    [name](const XmlNode &child) { return child.is(name); });
    return found == children.end() ? nullptr : &*found;
}

void appendText(const XmlNode &node, QString &text)
{
    text += node.text;
    for (const XmlNode &child : node.children)
        appendText(child, text);
}

} // namespace

XmlNode XmlNode::element(const char *name)
{
    XmlNode node;
    node.name = QLatin1String(name);
    return node;
}

bool XmlNode::hasAttribute(const char *what) const
{
    return findAttribute(attributes, what) != attributes.end();
}

QString XmlNode::attribute(const char *what) const
{
    const auto found = findAttribute(attributes, what);
    return found == attributes.end() ? QString() : found->value;
}

void XmlNode::setAttribute(const char *what, const QString &value)
{
    const auto found = findAttribute(attributes, what);
    if (found == attributes.end())
        attributes.push_back({QLatin1String(what), value});
    else
        found->value = value;
}

void XmlNode::removeAttribute(const char *what)
{
    const auto found = findAttribute(attributes, what);
    if (found != attributes.end())
        attributes.erase(found);
}

const XmlNode *XmlNode::child(const char *what) const
{
    return findChild(children, what);
}

XmlNode *XmlNode::child(const char *what)
{
    return findChild(children, what);
}

XmlNode &XmlNode::needChild(const char *what)
{
    if (XmlNode *found = child(what))
        return *found;
    children.push_back(element(what));
    return children.back();
}

QString XmlNode::allText() const
{
    QString all;
    appendText(*this, all);
    return all;
}
