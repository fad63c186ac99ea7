#pragma once

#include <vector>

class DeckStyles;
struct XmlNode;

/// A paragraph, and how it is numbered.
struct OutlineParagraph
{
    XmlNode *node = nullptr;
    XmlNode *item = nullptr;       ///< of a list, whose sign stands before it; null: nothing does
    const XmlNode *list = nullptr; ///< the style of the list; null when none is known
    int number = 0;                ///< 0: it is not numbered
};

/// The paragraphs of a text in order.
/// \param list the style of lists that name none; may be null
std::vector<OutlineParagraph> outlineOf(XmlNode &text, const XmlNode *list,
                                        const DeckStyles &styles);
