#include "tools/docimport/deck/DeckElements.h"

namespace {

template <typename Node>
Node *findText(Node &shape)
{
    if (isShapeHolder(shape))
        return nullptr;
    return shape.is("draw:frame") ? shape.child("draw:text-box") : &shape;
}

} // namespace

bool isShape(const XmlNode &node)
{
    return node.name.startsWith(QLatin1String("draw:")) ||
           node.name.startsWith(QLatin1String("dr3d:"));
}

bool isShapeHolder(const XmlNode &node)
{
    return node.is("draw:g") || node.is("draw:a");
}

bool isForeign(const XmlNode &node)
{
    return node.is("draw:object") || node.is("draw:object-ole");
}

bool isParagraph(const XmlNode &node)
{
    return node.is("text:p") || node.is("text:h");
}

bool isListPart(const XmlNode &node)
{
    return node.is("text:list") || node.is("text:list-item") || node.is("text:list-header");
}

const XmlNode *textOf(const XmlNode &shape)
{
    return findText(shape);
}

XmlNode *textOf(XmlNode &shape)
{
    return findText(shape);
}
