#include "tools/docpage/deck/DeckWriter.h"

#include "tools/docpage/deck/FieldText.h"
#include "tools/docpage/deck/FloatText.h"
#include "tools/docpage/deck/JsonPrinter.h"
#include "tools/docpage/deck/PictureExtractor.h"

#include <algorithm>

namespace {

using Layout = JsonPrinter::Layout;

// Whether each file has one page, and all have the same size: the plain form of a deck.
bool isPlain(const SlideModels &models)
{
    const PPT_FileHead &first = models.front().data.head;
    return std::all_of(models.begin(), models.end(), [&first](const SlideModel &model) {
        const PPT_FileHead &head = model.data.head;
        return model.data.pages.size() == 1 && bitsOf(head.width) == bitsOf(first.width) &&
               bitsOf(head.height) == bitsOf(first.height);
    });
}

class DeckWriter
{
public:
    explicit DeckWriter(PictureExtractor *extractor)
        : m_extractor(extractor)
    {
    }

    QString text(const SlideModels &models);

private:
    void addPages(const PPT_fileDat &model);
    void addPage(const PPT_Page &page, int defaultId);
    template <typename Object>
    void addFields(const Object &object);
    void addTransition(const PPT_SlideShowTransition &transition);
    void addShape(const PPT_Shape &shape, const QString &stem);
    void addEffect(const PPT_Effect &effect);
    void addPicture(const char *key, const QByteArray &picture, const QString &stem);
    void addField(const char *key, const QString &text);

    JsonPrinter m_json;
    PictureExtractor *m_extractor;
    int m_fileNumber = 0;  // of the next file
    int m_slideNumber = 0; // of the next slide, over all files
};

QString DeckWriter::text(const SlideModels &models)
{
    m_json.beginObject();
    if (isPlain(models)) {
        addFields(models.front().data.head);
        m_json.key("slides");
        m_json.beginArray();
        for (const SlideModel &model : models)
            addPages(model.data);
    } else {
        m_json.key("files");
        m_json.beginArray();
        for (const SlideModel &model : models) {
            m_json.beginObject();
            addFields(model.data.head);
            m_json.key("slides");
            m_json.beginArray();
            addPages(model.data);
            m_json.end();
            m_json.end();
        }
    }
    m_json.end();
    m_json.end();
    return m_json.text();
}

void DeckWriter::addField(const char *key, const QString &text)
{
    m_json.key(key);
    m_json.add(text);
}

template <typename Object>
void DeckWriter::addFields(const Object &object)
{
    const auto add = [this](const char *key, const QString &text) { addField(key, text); };
    visitFields(object, printingFields(add));
}

void DeckWriter::addPages(const PPT_fileDat &model)
{
    int defaultId = m_fileNumber++;
    for (const auto &entry : model.pages) {
        addPage(*entry.second, defaultId++);
        ++m_slideNumber;
    }
}

void DeckWriter::addPage(const PPT_Page &page, int defaultId)
{
    // Never the same for two pictures: slides are counted over all files, shapes on each slide.
    const QString stem = QStringLiteral("slide_%1-").arg(m_slideNumber);
    m_json.beginObject();
    if (page.pageId != defaultId)
        addField("pageId", fieldText(page.pageId));
    addPicture("background", page.pageImage, stem + QStringLiteral("background"));
    addTransition(page.transition);
    m_json.key("shapes");
    m_json.beginArray();
    int number = 0;
    for (const PPT_Shape *shape : page.shapes)
        addShape(*shape, stem + QStringLiteral("shape_%1").arg(number++));
    m_json.end();
    m_json.key("effects");
    m_json.beginArray();
    for (const PPT_Effect *effect : page.effects)
        addEffect(*effect);
    m_json.end();
    m_json.end();
}

void DeckWriter::addTransition(const PPT_SlideShowTransition &transition)
{
    bool isBegun = false;
    const auto add = [&](const char *key, const QString &text) {
        if (!isBegun) {
            m_json.key("transition");
            m_json.beginObject(Layout::OneLine);
            isBegun = true;
        }
        addField(key, text);
    };
    visitFields(transition, printingFields(add));
    if (isBegun)
        m_json.end();
}

void DeckWriter::addShape(const PPT_Shape &shape, const QString &stem)
{
    m_json.beginObject(Layout::OneLine);
    addFields(shape);
    // A shape's picture is never null in a file, so that null may stand for an empty one.
    addPicture("picture", shape.picDat.isEmpty() ? QByteArray() : shape.picDat, stem);
    m_json.end();
}

void DeckWriter::addEffect(const PPT_Effect &effect)
{
    m_json.beginObject(Layout::OneLine);
    addFields(effect);
    m_json.end();
}

void DeckWriter::addPicture(const char *key, const QByteArray &picture, const QString &stem)
{
    m_json.key(key);
    if (picture.isNull()) {
        m_json.add(QStringLiteral("null"));
    } else if (m_extractor && !picture.isEmpty()) {
        m_json.addString(m_extractor->add(picture, stem));
    } else {
        m_json.beginObject(Layout::OneLine);
        m_json.key("base64");
        m_json.addString(QString::fromLatin1(picture.toBase64()));
        m_json.end();
    }
}

} // namespace

QString deckJson(const SlideModels &models, PictureExtractor *extractor)
{
    return DeckWriter(extractor).text(models);
}
