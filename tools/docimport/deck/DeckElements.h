#pragma once

#include "tools/docimport/deck/XmlNode.h"

// What the elements of a flat XML presentation are.

/// Whether the child of a page is a shape: not its notes, forms, effects or titles.
bool isShape(const XmlNode &node);

/// Whether it only holds shapes together.
bool isShapeHolder(const XmlNode &node);

/// Whether it is a document of its own, with its own styles and identifiers.
bool isForeign(const XmlNode &node);

bool isParagraph(const XmlNode &node);

/// Whether it is a list, or an element of one.
bool isListPart(const XmlNode &node);

/// What has the paragraphs of a shape: those of its one text. Null when it has none, or several.
const XmlNode *textOf(const XmlNode &shape);
XmlNode *textOf(XmlNode &shape);
