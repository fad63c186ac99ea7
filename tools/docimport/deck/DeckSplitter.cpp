#include "tools/docimport/deck/DeckSplitter.h"

#include "tools/docimport/deck/BinaryData.h"
#include "tools/docimport/deck/DeckPages.h"
#include "tools/docimport/deck/DeckWriter.h"
#include "tools/docimport/deck/XmlFile.h"

#include <QDir>

#include <algorithm>
#include <optional>

namespace {

const XmlNode *presentationOf(const XmlNode &deck)
{
    const XmlNode *body = deck.is("office:document") ? deck.child("office:body") : nullptr;
    return body ? body->child("office:presentation") : nullptr;
}

/// \throws XmlFault when there are none
std::vector<const XmlNode *> slidesOf(const XmlNode &deck)
{
    const XmlNode *presentation = presentationOf(deck);
    if (!presentation)
        throw XmlFault{QStringLiteral("no presentation")};
    std::vector<const XmlNode *> slides;
    for (const XmlNode &child : presentation->children) {
        if (child.is("draw:page"))
            slides.push_back(&child);
    }
    if (slides.empty())
        throw XmlFault{QStringLiteral("no slides")};
    return slides;
}

// What is made of its styles needs a place.
void needAutomaticStyles(XmlNode &deck)
{
    if (deck.child("office:automatic-styles"))
        return;
    const auto body = std::find_if(deck.children.begin(), deck.children.end(),
                                   [](const XmlNode &part) { return part.is("office:body"); });
    deck.children.insert(body, XmlNode::element("office:automatic-styles"));
}

} // namespace

class DeckSplitter::Private
{
public:
    Private(const QString &path, const QString &workFolder);

    QString write(const QString &backgroundFile, const QString &layerFile, const QSet<int> &wanted);

    std::vector<DeckSlide> slides;

private:
    void numberPages(const QSet<int> &wanted);
    template <typename Take>
    void eachBackground(Take take);
    template <typename Take>
    void eachLayer(Take take);

    BinaryData m_pictures;
    XmlNode m_deck;
    std::optional<DeckPages> m_pages; // of m_deck
};

DeckSplitter::Private::Private(const QString &path, const QString &workFolder)
    : m_pictures(QDir(workFolder).filePath(QStringLiteral("pictures.base64")))
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw XmlFault{file.errorString()};
    m_deck = readXml(m_pictures.takeFrom(file));
    needAutomaticStyles(m_deck);
    m_pages.emplace(m_deck, slidesOf(m_deck));
    for (size_t i = 0; i < m_pages->size(); ++i) {
        const SlidePlan &plan = m_pages->plan(i);
        DeckSlide slide;
        slide.layers = static_cast<int>(plan.layers.size());
        slide.effects = plan.effects;
        slide.report = plan.report;
        slides.push_back(std::move(slide));
    }
}

void DeckSplitter::Private::numberPages(const QSet<int> &wanted)
{
    int layerPage = 0;
    for (size_t i = 0; i < slides.size(); ++i) {
        DeckSlide &slide = slides[i];
        const bool isSplit = slide.layers > 0 && wanted.contains(static_cast<int>(i));
        slide.backgroundPage = isSplit ? static_cast<int>(i) : -1;
        slide.firstLayerPage = isSplit ? layerPage : -1;
        if (isSplit)
            layerPage += 2 * slide.layers;
    }
}

// All slides have their page, so that those that are shown have their numbers.
template <typename Take>
void DeckSplitter::Private::eachBackground(Take take)
{
    for (size_t i = 0; i < slides.size(); ++i)
        take(slides[i].backgroundPage < 0 ? m_pages->blank(i) : m_pages->background(i));
}

template <typename Take>
void DeckSplitter::Private::eachLayer(Take take)
{
    for (size_t i = 0; i < slides.size(); ++i) {
        if (slides[i].firstLayerPage < 0)
            continue;
        for (size_t layer = 0; layer < m_pages->plan(i).layers.size(); ++layer) {
            XmlNode page = m_pages->layer(i, layer);
            // Yellow, on which automatic text colours stay dark.
            for (const char *colour : {"#ffffff", "#ffff00"}) {
                setPaper(page, QLatin1String(colour), m_pages->styles());
                take(page);
            }
        }
    }
}

QString DeckSplitter::Private::write(const QString &backgroundFile, const QString &layerFile,
                                     const QSet<int> &wanted)
{
    numberPages(wanted);
    if (std::none_of(slides.begin(), slides.end(),
                     [](const DeckSlide &slide) { return slide.firstLayerPage >= 0; }))
        return {};
    // Once for their styles, which stand before the pages, so that one page is held at a time.
    const auto leave = [](const XmlNode &) {};
    eachBackground(leave);
    eachLayer(leave);
    const DeckWriter writer(m_deck, m_pages->styles().made(), m_pictures);
    const auto writingTo = [](XmlWriter &to) {
        return [&to](const XmlNode &page) { to.write(page); };
    };
    const QString fault = writer.write(backgroundFile, DeckWriter::Masters::AsTheyAre,
                                       [&](XmlWriter &to) { eachBackground(writingTo(to)); });
    if (!fault.isEmpty())
        return fault;
    return writer.write(layerFile, DeckWriter::Masters::WithoutDecoration,
                        [&](XmlWriter &to) { eachLayer(writingTo(to)); });
}

DeckSplitter::DeckSplitter() = default;
DeckSplitter::~DeckSplitter() = default;

QString DeckSplitter::read(const QString &path, const QString &workFolder)
{
    d.reset();
    try {
        d = std::make_unique<Private>(path, workFolder);
    } catch (const XmlFault &fault) {
        return fault.text;
    }
    return {};
}

const std::vector<DeckSlide> &DeckSplitter::slides() const
{
    static const std::vector<DeckSlide> kNone;
    return d ? d->slides : kNone;
}

QString DeckSplitter::write(const QString &backgrounds, const QString &layers,
                            const QSet<int> &wanted)
{
    return d ? d->write(backgrounds, layers, wanted) : QStringLiteral("no deck is read");
}
