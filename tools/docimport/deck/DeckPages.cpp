#include "tools/docimport/deck/DeckPages.h"

#include "tools/docimport/deck/DeckElements.h"
#include "tools/docimport/deck/ShapeCopy.h"

#include <utility>

namespace {

XmlNode emptyPage(const XmlNode &slide)
{
    XmlNode page = XmlNode::element("draw:page");
    page.attributes = slide.attributes;
    page.removeAttribute("xml:id");
    page.removeAttribute("draw:id");
    return page;
}

} // namespace

DeckPages::DeckPages(const XmlNode &deck, std::vector<const XmlNode *> slides)
    : m_styles(deck)
    , m_slides(std::move(slides))
{
    m_plans.reserve(m_slides.size());
    for (const XmlNode *slide : m_slides)
        m_plans.emplace_back(*slide);
}

void DeckPages::addPieces(size_t slide, const SlideLayer &pieces, XmlNode &page)
{
    if (const XmlNode *forms = m_slides[slide]->child("office:forms"))
        page.children.push_back(*forms); // which controls look like
    SlideFields fields;
    fields.page = static_cast<int>(slide) + 1;
    fields.pages = static_cast<int>(m_slides.size());
    fields.pageName = m_slides[slide]->attribute("draw:name");
    const std::vector<SlideShape> &shapes = m_plans[slide].shapes.all();
    for (const LayerPiece &piece : pieces)
        page.children.push_back(
            shapeCopy(*shapes[static_cast<size_t>(piece.shape)].node, piece, fields, m_styles));
}

XmlNode DeckPages::background(size_t slide)
{
    XmlNode page = emptyPage(*m_slides[slide]);
    addPieces(slide, m_plans[slide].background, page);
    return page;
}

XmlNode DeckPages::blank(size_t slide)
{
    XmlNode page = emptyPage(*m_slides[slide]);
    setPaper(page, QStringLiteral("#ffffff"), m_styles);
    return page;
}

XmlNode DeckPages::layer(size_t slide, size_t layer)
{
    XmlNode page = emptyPage(*m_slides[slide]);
    page.removeAttribute("draw:name"); // which no two may share
    addPieces(slide, m_plans[slide].layers[layer], page);
    return page;
}

void setPaper(XmlNode &page, const QString &colour, DeckStyles &styles)
{
    page.setAttribute("draw:style-name", styles.paper(colour));
}
