#include "tools/docpage/deck/DeckReader.h"

#include "tools/docpage/InputFile.h"
#include "tools/docpage/PictureSize.h"
#include "tools/docpage/deck/FieldReader.h"
#include "tools/docpage/deck/PictureReader.h"

#include <QFileInfo>

#include <algorithm>
#include <limits>

namespace {

template <typename... Keys>
QStringList keyList(Keys... keys)
{
    return {QLatin1String(keys)...};
}

// The keys of the plain fields.
template <typename Object>
QStringList keysOf()
{
    QStringList keys;
    const Object fresh;
    visitFields(fresh, collectingKeys(keys));
    return keys;
}

/// Reads the description into models. Everything that is wrong with it throws JsonFault.
class DeckReader
{
public:
    DeckReader(PictureReader &pictures, SlideModels &models)
        : m_pictures(pictures)
        , m_models(models)
    {
    }

    void readDeck(const JsonNode &deck);

private:
    void readFile(const JsonNode &file);
    void readHead(const JsonNode &node, const std::vector<JsonNode> &slides, PPT_FileHead &head);
    void readSlide(const JsonNode &slide, size_t defaultId, PPT_fileDat &model);
    static PPT_Page *addPage(const JsonNode &slide, size_t defaultId, PPT_fileDat &model);
    void readShape(const JsonNode &node, PPT_Shape &shape);
    void readEffect(const JsonNode &node, size_t place, PPT_Effect &effect) const;

    const QStringList m_shapeKeys = keyList("picture") + keysOf<PPT_Shape>();
    const QStringList m_effectKeys = keysOf<PPT_Effect>();
    PictureReader &m_pictures;
    SlideModels &m_models;
};

// Before any default is looked for in them, so that a misspelt key is told as such.
std::vector<JsonNode> slidesOf(const JsonNode &node)
{
    std::vector<JsonNode> slides = node.require("slides").elements();
    for (const JsonNode &slide : slides)
        slide.expectKeys(keyList("pageId", "background", "transition", "shapes", "effects"));
    return slides;
}

void DeckReader::readDeck(const JsonNode &deck)
{
    if (deck.has("files")) {
        deck.expectKeys(keyList("$schema", "files"));
        const std::vector<JsonNode> files = deck.require("files").elements();
        if (files.empty())
            deck.at("files").fail(QStringLiteral("must not be empty"));
        for (const JsonNode &file : files)
            readFile(file);
        return;
    }
    deck.expectKeys(keyList("$schema") + keysOf<PPT_FileHead>() + keyList("slides"));
    const std::vector<JsonNode> slides = slidesOf(deck);
    if (slides.empty())
        deck.at("slides").fail(QStringLiteral("must not be empty"));
    PPT_FileHead head;
    readHead(deck, slides, head);
    for (const JsonNode &slide : slides) {
        const size_t number = m_models.size();
        PPT_fileDat &model = m_models.emplace_back().data;
        model.head = head;
        readSlide(slide, number, model);
    }
}

void DeckReader::readFile(const JsonNode &file)
{
    file.expectKeys(keysOf<PPT_FileHead>() + keyList("slides"));
    const std::vector<JsonNode> slides = slidesOf(file);
    size_t number = m_models.size();
    PPT_fileDat &model = m_models.emplace_back().data;
    readHead(file, slides, model.head);
    for (const JsonNode &slide : slides)
        readSlide(slide, number++, model);
}

// What is not given is taken from `picture`, which is the node's `what`.
template <typename Sized>
void setDefaultSize(const JsonNode &node, const QByteArray &picture, const char *what, Sized &sized)
{
    const char *missing = !node.has("width") ? "width" : !node.has("height") ? "height" : nullptr;
    if (!missing)
        return;
    const QSize size = pictureSize(picture);
    if (!size.isValid())
        node.at(missing).fail(
            (picture.isEmpty() ? QStringLiteral("missing, and there is no %1 to take it from")
                               : QStringLiteral("missing, and the size of the %1 is unreadable"))
                .arg(QLatin1String(what)));
    sized.width = static_cast<float>(size.width());
    sized.height = static_cast<float>(size.height());
}

void DeckReader::readHead(const JsonNode &node, const std::vector<JsonNode> &slides,
                          PPT_FileHead &head)
{
    QByteArray background;
    for (const JsonNode &slide : slides) {
        const std::optional<JsonNode> picture = slide.find("background");
        if (picture && !picture->value().isNull()) {
            background = m_pictures.read(*picture);
            break;
        }
    }
    setDefaultSize(node, background, "background", head);
    visitFields(head, readingFields(node));
}

// `defaultId` makes the first slide of each file the one that is shown of it.
PPT_Page *DeckReader::addPage(const JsonNode &slide, size_t defaultId, PPT_fileDat &model)
{
    quint16 pageId = 0;
    if (const std::optional<JsonNode> given = slide.find("pageId"))
        readField(*given, pageId);
    else if (defaultId <= std::numeric_limits<quint16>::max())
        pageId = static_cast<quint16>(defaultId);
    else
        slide.at("pageId").fail(QStringLiteral("missing, and its default is too large"));

    PPT_Page *&page = model.pages[pageId];
    if (page)
        slide.at("pageId").fail(
            QStringLiteral("another slide of the file has the number %1, too").arg(pageId));
    page = new PPT_Page;
    page->pageId = pageId;
    return page;
}

void DeckReader::readSlide(const JsonNode &slide, size_t defaultId, PPT_fileDat &model)
{
    PPT_Page *page = addPage(slide, defaultId, model);
    if (const std::optional<JsonNode> background = slide.find("background"))
        page->pageImage = m_pictures.read(*background);
    if (const std::optional<JsonNode> transition = slide.find("transition")) {
        transition->expectKeys(keysOf<PPT_SlideShowTransition>());
        visitFields(page->transition, readingFields(*transition));
    }
    if (const std::optional<JsonNode> shapes = slide.find("shapes")) {
        for (const JsonNode &shape : shapes->elements()) {
            page->shapes.push_back(new PPT_Shape);
            readShape(shape, *page->shapes.back());
        }
    }
    if (const std::optional<JsonNode> effects = slide.find("effects")) {
        for (const JsonNode &effect : effects->elements()) {
            page->effects.push_back(new PPT_Effect);
            readEffect(effect, page->effects.size(), *page->effects.back());
        }
    }
}

void DeckReader::readShape(const JsonNode &node, PPT_Shape &shape)
{
    node.expectKeys(m_shapeKeys);
    shape.picDat = m_pictures.read(node.require("picture"));
    setDefaultSize(node, shape.picDat, "picture", shape);
    visitFields(shape, readingFields(node));
}

// `place` is that in the list, from 1. It is the default of the number, so that a shape with
// several effects waits for the next one to come.
void DeckReader::readEffect(const JsonNode &node, size_t place, PPT_Effect &effect) const
{
    constexpr size_t kHighest = std::numeric_limits<quint16>::max(); // it counts as unsigned
    effect.effectNo = static_cast<qint16>(std::min(place, kHighest));
    effect.timing.triggerType = 1; // on click
    effect.timing.duration = 0.5F;
    node.expectKeys(m_effectKeys);
    visitFields(effect, readingFields(node));
}

} // namespace

void Deck::read(const QString &file)
{
    inputs = QStringList{file};
    QByteArray text;
    fault = readInput(file, text);
    if (!fault.isEmpty())
        return;
    PictureReader pictures(QFileInfo(file).dir());
    try {
        DeckReader(pictures, models).readDeck(JsonNode::parse(text));
    } catch (const JsonFault &wrong) {
        fault = wrong.text;
    }
    inputs += pictures.files();
}
