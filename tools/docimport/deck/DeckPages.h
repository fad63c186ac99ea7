#pragma once

#include "tools/docimport/deck/DeckStyles.h"
#include "tools/docimport/deck/SlidePlan.h"

#include <vector>

/// Makes the pages of the two decks that a deck is split into.
class DeckPages
{
public:
    /// \param slides the pages of the deck, which has them as long as this lives
    DeckPages(const XmlNode &deck, std::vector<const XmlNode *> slides);

    size_t size() const { return m_slides.size(); }
    const SlidePlan &plan(size_t slide) const { return m_plans[slide]; }
    DeckStyles &styles() { return m_styles; }

    /// What rests at the bottom of the slide.
    XmlNode background(size_t slide);

    /// A page that only has its number.
    XmlNode blank(size_t slide);

    /// On no paper.
    XmlNode layer(size_t slide, size_t layer);

private:
    void addPieces(size_t slide, const SlideLayer &pieces, XmlNode &page);

    DeckStyles m_styles;
    std::vector<const XmlNode *> m_slides;
    std::vector<SlidePlan> m_plans;
};

/// Puts the page on paper of this colour.
void setPaper(XmlNode &page, const QString &colour, DeckStyles &styles);
