#include "tools/docimport/SlideComposer.h"

#include "tools/docimport/LayerPicture.h"
#include "tools/docimport/PictureDifference.h"
#include "tools/docimport/pdf/PagePicture.h"
#include "tools/docpage/PageFile.h"
#include "tools/docpage/PngEncoder.h"
#include "tools/docpage/deck/SlideModel.h"

#include <QPainter>

#include <limits>

namespace {

constexpr double kMostDifference = 0.015;

QString memoryLacks()
{
    return QStringLiteral("out of memory");
}

/// A slide in the making: its model, and how it looks with all of its shapes in place.
class Composition
{
public:
    explicit Composition(int number)
        : m_page(m_model.data.pages[static_cast<quint16>(number)] = new PPT_Page)
    {
        m_page->pageId = static_cast<quint16>(number);
    }

    // Returns what went wrong; so does addLayer().
    QString setBackground(const QImage &image, int jpegQuality)
    {
        const PagePicture picture = PagePicture::of(image, jpegQuality);
        m_page->pageImage = picture.bytes;
        m_model.data.head.width = static_cast<float>(image.width());
        m_model.data.head.height = static_cast<float>(image.height());
        m_shown = QImage::fromData(picture.bytes).convertToFormat(QImage::Format_RGB32);
        return picture.fault.isEmpty() && m_shown.isNull() ? memoryLacks() : picture.fault;
    }

    QString addLayer(const QImage &onWhite, const QImage &onYellow)
    {
        const LayerPicture layer = layerOf(onWhite, onYellow);
        if (layer.image.isNull())
            return memoryLacks();
        auto *shape = new PPT_Shape;
        m_page->shapes.push_back(shape);
        shape->shapeId = static_cast<quint16>(m_page->shapes.size());
        shape->left = static_cast<float>(layer.at.x());
        shape->top = static_cast<float>(layer.at.y());
        shape->width = static_cast<float>(layer.image.width());
        shape->height = static_cast<float>(layer.image.height());
        QPainter(&m_shown).drawImage(layer.at, layer.image);
        return encodePng(layer.image, shape->picDat);
    }

    void addEffect(const PlannedEffect &planned)
    {
        auto *effect = new PPT_Effect;
        m_page->effects.push_back(effect);
        effect->effectNo = static_cast<qint16>(m_page->effects.size());
        effect->shapeId = static_cast<quint16>(planned.layer + 1);
        effect->exit = planned.isExit ? -1 : 0;
        effect->timing.duration = static_cast<float>(planned.duration);
        effect->timing.triggerType = static_cast<qint8>(planned.trigger);
    }

    /// All of it, each shape in its place.
    const QImage &shown() const { return m_shown; }

    const SlideModel &model() const { return m_model; }

private:
    SlideModel m_model;
    PPT_Page *const m_page;
    QImage m_shown;
};

QString addParts(Composition &composition, const SlideParts &parts)
{
    QImage image;
    QString fault = parts.background(parts.slide.backgroundPage, Qt::white, image);
    if (fault.isEmpty())
        fault = composition.setBackground(image, parts.jpegQuality);
    for (int layer = 0; layer < parts.slide.layers && fault.isEmpty(); ++layer) {
        const int page = parts.slide.firstLayerPage + 2 * layer;
        QImage onYellow;
        fault = parts.layer(page, Qt::white, image);
        if (fault.isEmpty())
            fault = parts.layer(page + 1, Qt::yellow, onYellow);
        if (fault.isEmpty())
            fault = composition.addLayer(image, onYellow);
    }
    for (const PlannedEffect &effect : parts.slide.effects)
        composition.addEffect(effect);
    return fault;
}

// More than the fields of the model can number.
bool hasTooMany(const SlideParts &parts)
{
    return parts.slide.layers > std::numeric_limits<quint16>::max() ||
           parts.slide.effects.size() > size_t(std::numeric_limits<qint16>::max()) ||
           parts.number > std::numeric_limits<quint16>::max();
}

} // namespace

QString composeSlide(const SlideParts &parts, ComposedSlide &composed)
{
    if (hasTooMany(parts)) {
        composed.reason = QStringLiteral("it has more parts than slide animation data can number");
        return {};
    }
    Composition composition(parts.number);
    const QString fault = addParts(composition, parts);
    if (!fault.isEmpty())
        return fault;
    composed.difference = differenceOf(composition.shown(), parts.reference);
    if (composed.difference >= kMostDifference) {
        composed.reason = QStringLiteral("put together, its parts look different");
    } else if (composition.model().payloadSize() > kMaxPayloadSize) {
        composed.reason = QStringLiteral("its parts are too large for a page result file");
    } else {
        composed.payload.bytes = composition.model().payload();
        composed.payload.format = DocCovRslt::PAGE_FORMAT_PPT_ANIM;
    }
    return {};
}
