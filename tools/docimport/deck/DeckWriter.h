#pragma once

#include "tools/docimport/deck/XmlNode.h"

#include <functional>
#include <vector>

class BinaryData;
class XmlWriter;

/// Writes decks that look like another one, and have other pages.
class DeckWriter
{
public:
    enum class Masters { AsTheyAre, WithoutDecoration };
    using WritePages = std::function<void(XmlWriter &writer)>;

    /// \param styles are written beside those of the deck
    DeckWriter(const XmlNode &deck, const std::vector<XmlNode> &styles, BinaryData &pictures)
        : m_deck(deck)
        , m_styles(styles)
        , m_pictures(pictures)
    {
    }

    /// \return what went wrong; empty when the file is there
    QString write(const QString &path, Masters masters, const WritePages &writePages) const;

private:
    void writePart(const XmlNode &part, Masters masters, const WritePages &writePages,
                   XmlWriter &writer) const;
    void writeStyles(const XmlNode &styles, XmlWriter &writer) const;

    const XmlNode &m_deck;
    const std::vector<XmlNode> &m_styles;
    BinaryData &m_pictures;
};
