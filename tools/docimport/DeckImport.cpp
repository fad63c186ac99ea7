#include "tools/docimport/DeckImport.h"

#include "tools/docimport/SlideComposer.h"
#include "tools/docimport/engine/EngineLocation.h"
#include "tools/docpage/EndRequest.h"
#include "tools/docpage/OutputFile.h"

#include <QFileInfo>

#include <algorithm>

namespace {

QString backgroundDeck()
{
    return QStringLiteral("backgrounds.fodp");
}

QString layerDeck()
{
    return QStringLiteral("layers.fodp");
}

bool hasContent(const QString &path)
{
    return QFileInfo(path).size() > 0;
}

// What was to be kept of a slide that is static in the end.
void dropEffects(SlideReport &report)
{
    for (EffectReport &effect : report.effects) {
        if (effect.result == QLatin1String("kept")) {
            effect.result = QStringLiteral("dropped");
            effect.reason = QStringLiteral("the slide is static");
        }
    }
}

} // namespace

DeckImport::DeckImport(const QString &input, const QString &suffix, const QString &work,
                       const ImportOptions &options, const EndRequest &request)
    : m_input(input)
    , m_name(QStringLiteral("deck.") + suffix)
    , m_work(work)
    , m_options(options)
    , m_request(request)
    , m_deadline(1000 * qint64(options.timeout))
{
}

QString DeckImport::open()
{
    QString fault = startConversions();
    if (fault.isEmpty())
        fault = m_toPdf->finish(m_deadline, m_request);
    return fault.isEmpty() && !m_request.isMade() ? takeReference() : fault;
}

// The engine is given a copy: what is beside the deck is not beside that, so that links to it lead
// nowhere, and the name is one that has no meaning to the engine.
QString DeckImport::startConversions()
{
    QString fault = findEngine(m_options.engine, usualEngineFolders(), m_engine);
    if (!fault.isEmpty())
        return fault;
    QFile input(m_input);
    if (!input.copy(m_work + QLatin1Char('/') + m_name))
        return QStringLiteral("cannot be copied: ") + input.errorString();
    fault = startConversion(m_toPdf, "reference", EngineFilter::pdf());
    if (fault.isEmpty() && !m_options.isStatic)
        fault = startConversion(m_toXml, "parts", EngineFilter::flatXml());
    return fault;
}

QString DeckImport::startConversion(std::unique_ptr<EngineRun> &run, const char *folder,
                                    const QString &filter)
{
    const QString path = m_work + QLatin1Char('/') + QLatin1String(folder);
    const QString fault = createFolder(path);
    if (!fault.isEmpty())
        return fault;
    run = std::make_unique<EngineRun>(m_engine, path);
    return run->start(filter, {m_name});
}

QString DeckImport::takeReference()
{
    const QString pdf = m_toPdf->result(m_name, QStringLiteral("pdf"));
    if (!hasContent(pdf))
        return QStringLiteral("LibreOffice cannot read it");
    m_reference = std::make_unique<PdfImport>(pdf, m_options);
    return m_reference->open();
}

// What the engine cannot do for want of a way leaves pages without animations, and is noted. When
// it takes too long or breaks down there are none.
QString DeckImport::prepare(const QVector<int> &pages)
{
    if (!m_toXml)
        return {};
    QString fault = m_toXml->finish(m_deadline, m_request);
    if (!fault.isEmpty() || m_request.isMade())
        return fault;
    QString lack = split(pages);
    const bool hasParts =
        lack.isEmpty() &&
        std::any_of(pages.begin(), pages.end(), [this](int page) { return hasLayers(page); });
    if (hasParts)
        fault = convertParts(lack);
    if (!lack.isEmpty())
        m_note = QStringLiteral("all pages are static: ") + lack;
    return fault;
}

QString DeckImport::split(const QVector<int> &pages)
{
    const QString xml = m_toXml->result(m_name, QStringLiteral("fodp"));
    if (!hasContent(xml))
        return QStringLiteral(
            "LibreOffice cannot write it as flat XML, as with sound or film in it");
    const QString fault = m_splitter.read(xml, m_work);
    if (!fault.isEmpty())
        return fault;
    if (static_cast<int>(m_splitter.slides().size()) != pageCount())
        return QStringLiteral("its flat XML has %1 slides, not %2")
            .arg(m_splitter.slides().size())
            .arg(pageCount());
    m_isSplit = true;
    return m_splitter.write(m_work + QLatin1Char('/') + backgroundDeck(),
                            m_work + QLatin1Char('/') + layerDeck(),
                            QSet<int>(pages.begin(), pages.end()));
}

QString DeckImport::convertParts(QString &lack)
{
    QString fault = m_toXml->start(EngineFilter::pdf(), {backgroundDeck(), layerDeck()});
    if (fault.isEmpty())
        fault = m_toXml->finish(m_deadline, m_request);
    if (!fault.isEmpty() || m_request.isMade())
        return fault;
    const QString backgrounds = m_toXml->result(backgroundDeck(), QStringLiteral("pdf"));
    const QString layers = m_toXml->result(layerDeck(), QStringLiteral("pdf"));
    if (!hasContent(backgrounds) || !hasContent(layers)) {
        lack = QStringLiteral("LibreOffice cannot draw the parts of its animated slides");
        return {};
    }
    m_backgrounds = backgrounds;
    m_layers = layers;
    return {};
}

bool DeckImport::hasLayers(int page) const
{
    return m_splitter.slides().at(static_cast<size_t>(page)).layers > 0;
}

QString DeckImport::makePage(int page, int number, SlideTools &tools, PagePayload &payload,
                             SlideReport &report) const
{
    if (m_isSplit)
        report.effects = m_splitter.slides()[static_cast<size_t>(page)].report;
    QImage reference;
    QString fault = m_reference->draw(page, tools, reference, report);
    if (!fault.isEmpty())
        return fault;
    if (!m_layers.isEmpty() && hasLayers(page)) {
        ComposedSlide composed;
        fault = compose(page, number, reference, tools, composed);
        if (!fault.isEmpty())
            composed.reason = fault;
        report.difference = composed.difference;
        report.reason = composed.reason;
        report.isAnimated = composed.reason.isEmpty();
        payload = composed.payload;
    }
    if (report.isAnimated)
        return {};
    dropEffects(report);
    return m_reference->encode(reference, payload);
}

QString DeckImport::compose(int page, int number, const QImage &reference, SlideTools &tools,
                            ComposedSlide &composed) const
{
    const auto drawFrom = [&](const QString &pdf) {
        return [&tools, &reference, &pdf](int part, const QColor &paper, QImage &image) {
            return drawPage(pdf, part, reference.size(), paper, tools, image);
        };
    };
    return composeSlide({m_splitter.slides()[static_cast<size_t>(page)], number, reference,
                         drawFrom(m_backgrounds), drawFrom(m_layers), m_options.jpegQuality},
                        composed);
}
