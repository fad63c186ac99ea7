#include "tools/docpage/check/ModelCheck.h"

#include "common/FloatToInt.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/SlideSteps.h"

#include <QFileInfo>
#include <QHash>
#include <QRect>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <optional>

namespace {

constexpr qint8 kClick = 1;
constexpr qint8 kAfter = 3;

// The place of a file in its document, as its name tells it.
struct Place
{
    quint16 number;
    bool isCertain; // else the number may also be that of a year, or of anything
};

// The name of a file may end in its place, as "page_3". The player takes the lower 16 bits of it.
std::optional<Place> placeInDocument(const QString &file)
{
    static const QRegularExpression number(QStringLiteral("^(.*)_([0-9]+)$"));
    const QRegularExpressionMatch match = number.match(QFileInfo(file).fileName());
    bool isNumber = false;
    const unsigned int place = match.captured(2).toUInt(&isNumber);
    if (!isNumber)
        return std::nullopt;
    return Place{static_cast<quint16>(place), match.captured(1) == QLatin1String("page")};
}

// Of parts with the same number or id the last one, which replaces the others.
template <typename Part, typename Id>
QHash<quint16, const Part *> lastOnes(const std::vector<Part> &parts, Id id)
{
    QHash<quint16, const Part *> last;
    for (const Part &part : parts)
        last[id(part)] = &part;
    return last;
}

QString nameOf(const LocatedPage &page)
{
    return QStringLiteral("page %1").arg(page.pageId);
}

QString nameOf(const LocatedPage &page, const LocatedShape &shape)
{
    return QStringLiteral("shape %1 of ").arg(shape.shape.shapeId) + nameOf(page);
}

QString sizeText(QSize size)
{
    return QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

int pageSide(float pageUnits)
{
    return pageUnits < 1 ? 1 : toPixels(pageUnits);
}

// From `begin` up to `end`.
struct Span
{
    qint64 begin;
    qint64 end;

    bool meets(const Span &other) const { return begin < other.end && other.begin < end; }
    bool isWithin(const Span &other) const { return begin >= other.begin && end <= other.end; }
};

Span spanOf(float place, int size)
{
    const qint64 begin = toPixels(place);
    return {begin, begin + size};
}

// Where a picture `width` pixels wide is seen while it moves from one place to another.
Span sweep(qint64 from, qint64 to, int width)
{
    return {std::min(from, to), std::max(from, to) + width};
}

// Whether a shape that rests beside the background crosses it as it enters or leaves. The player
// moves it by the size that the model gives the shape and the page, which need not be that of the
// pictures.
bool crossesBackground(const LocatedPage &page, const PPT_Shape &shape, QSize picture,
                       const Span &background, int pageWidth)
{
    const qint64 rest = toPixels(shape.left);
    const Span entering = sweep(-qint64(toPixels(shape.width)), rest, picture.width());
    const Span leaving = sweep(rest, pageWidth, picture.width());
    return std::any_of(page.effects.begin(), page.effects.end(), [&](const LocatedEffect &located) {
        const PPT_Effect &effect = located.effect;
        return effect.shapeId == shape.shapeId &&
               toUInt32(static_cast<double>(effect.timing.duration * 1000.0F)) > 0 &&
               (effect.exit == -1 ? leaving : entering).meets(background);
    });
}

// The effects that begin the steps, one each.
std::vector<size_t> firstEffects(const LocatedPage &page)
{
    std::vector<size_t> firsts;
    for (size_t i = 0; i < page.effects.size(); ++i) {
        if (i == 0 || page.effects[i].effect.timing.triggerType == kClick)
            firsts.push_back(i);
    }
    return firsts;
}

QVector<SlideStep> stepsOf(std::vector<LocatedEffect> effects)
{
    PPT_Page page;
    for (LocatedEffect &located : effects)
        page.effects.push_back(&located.effect);
    PPT_fileDat model;
    model.pages[page.pageId] = &page;
    return slideSteps(model, page.pageId);
}

} // namespace

void ModelCheck::check(const QByteArray &payload, qint64 start, const QString &file)
{
    if (!m_model.read(payload, start, m_report.findings))
        return;
    const qint64 bytesAfter = start + payload.size() - m_model.end;
    if (bytesAfter > 0)
        add(Severity::Warning, "bytes-after-model", m_model.end,
            QStringLiteral("the slide animation data is ") + followedByIgnored(bytesAfter));
    checkPages(file);
}

// Only what is asked for decides whether all would show. When that is not known, each page may be.
void ModelCheck::checkPages(const QString &file)
{
    const std::vector<LocatedPage> &pages = m_model.pages;
    const std::optional<Place> place = placeInDocument(file);
    const auto last = lastOnes(pages, [](const LocatedPage &page) { return page.pageId; });
    const bool isThere = place && last.contains(place->number);
    if (pages.empty())
        add(Severity::Error, "no-page", m_model.pageCountOffset(),
            QStringLiteral("the slide animation data has no pages"));
    else if (place && !isThere)
        add(place->isCertain ? Severity::Error : Severity::Warning, "page-missing",
            m_model.pageCountOffset(),
            QStringLiteral("there is no page %1, the number that the file's name ends in")
                .arg(place->number));
    else if (!place && pages.size() > 1)
        add(Severity::Note, "several-pages", m_model.pageCountOffset(),
            QStringLiteral("of %1 pages only the one is shown whose number is that of the file in "
                           "its document")
                .arg(pages.size()));
    const bool isKnown = place && (isThere || place->isCertain);
    for (const LocatedPage &page : pages) {
        if (isKnown && page.pageId != place->number)
            add(Severity::Warning, "page-unused", page.offset,
                QStringLiteral("%1 is not shown: the file's name ends in %2")
                    .arg(nameOf(page))
                    .arg(place->number));
        else if (last.value(page.pageId) != &page)
            add(Severity::Error, "repeated-page-id", page.offset,
                nameOf(page) + QStringLiteral(" is not shown: a later one has the same number"));
        else
            checkPage(page);
    }
}

void ModelCheck::checkPage(const LocatedPage &page)
{
    m_slideBytes = 0;
    checkShapes(page, checkBackground(page));
    checkEffects(page);
    checkSteps(page);
    if (m_slideBytes > m_budget.memory())
        add(Severity::Error, "slide-too-large", page.offset,
            QStringLiteral("%1: its pictures take %2 bytes, more than %3")
                .arg(nameOf(page))
                .arg(m_slideBytes)
                .arg(m_budget.memory()));
}

// Returns its size, if it has any.
QSize ModelCheck::checkBackground(const LocatedPage &page)
{
    if (page.image.isEmpty()) {
        add(Severity::Error, "no-background", page.imageOffset(),
            nameOf(page) + QStringLiteral(" is not shown: it has no background"));
        return {};
    }
    const QSize background =
        addPicture(page.image, QStringLiteral("background of ") + nameOf(page), page.imageOffset())
            .size;
    const QSize size(pageSide(m_model.head.width), pageSide(m_model.head.height));
    if (background.isValid() && background != size)
        add(Severity::Warning, "page-size-mismatch", page.imageOffset(),
            QStringLiteral("background of %1: %2 pixels, but pages of %3")
                .arg(nameOf(page), sizeText(background), sizeText(size)));
    return background;
}

void ModelCheck::checkShapes(const LocatedPage &page, QSize background)
{
    const auto last =
        lastOnes(page.shapes, [](const LocatedShape &shape) { return shape.shape.shapeId; });
    for (const LocatedShape &shape : page.shapes) {
        if (last.value(shape.shape.shapeId) != &shape)
            add(Severity::Error, "repeated-shape-id", shape.offset,
                nameOf(page, shape) + QStringLiteral(" is not shown: a later one has the same id"));
        else
            checkShape(page, shape, background);
    }
}

void ModelCheck::checkShape(const LocatedPage &page, const LocatedShape &shape, QSize background)
{
    if (shape.shape.picDat.isEmpty()) {
        add(Severity::Warning, "shape-without-picture", shape.offset,
            nameOf(page, shape) + QStringLiteral(" has no picture"));
        return;
    }
    const PictureVerdict verdict =
        addPicture(shape.shape.picDat, nameOf(page, shape), shape.pictureOffset());
    if (verdict.isShown() && background.isValid())
        checkPlace(page, shape, verdict.size, background);
}

PictureVerdict ModelCheck::addPicture(const QByteArray &picture, const QString &name, qint64 offset)
{
    PictureVerdict verdict =
        m_report.addPicture({picture, PictureUse::Slide, name, offset}, m_budget);
    m_slideBytes += verdict.bytes;
    return verdict;
}

// The picture is painted in its own size on the background, whatever the sizes in the model.
void ModelCheck::checkPlace(const LocatedPage &page, const LocatedShape &shape, QSize picture,
                            QSize background)
{
    const Span pageAcross{0, background.width()};
    const Span pageDown{0, background.height()};
    const Span across = spanOf(shape.shape.left, picture.width());
    const Span down = spanOf(shape.shape.top, picture.height());
    if (across.isWithin(pageAcross) && down.isWithin(pageDown))
        return;
    const QString place = QStringLiteral("%1, %2 pixels at %3, %4")
                              .arg(nameOf(page, shape), sizeText(picture))
                              .arg(across.begin)
                              .arg(down.begin);
    if (across.meets(pageAcross) && down.meets(pageDown))
        add(Severity::Note, "shape-partly-off-page", shape.offset,
            place + QStringLiteral(", is partly off the page"));
    else if (down.meets(pageDown) && crossesBackground(page, shape.shape, picture, pageAcross,
                                                       pageSide(m_model.head.width)))
        add(Severity::Warning, "shape-off-page", shape.offset,
            place + QStringLiteral(", is off the page but while it moves"));
    else
        add(Severity::Error, "shape-off-page", shape.offset,
            place + QStringLiteral(", is off the page"));
}

void ModelCheck::checkEffects(const LocatedPage &page)
{
    QSet<quint16> shapes;
    for (const LocatedShape &shape : page.shapes)
        shapes.insert(shape.shape.shapeId);
    for (size_t i = 0; i < page.effects.size(); ++i) {
        const PPT_Effect &effect = page.effects[i].effect;
        const qint8 trigger = effect.timing.triggerType;
        const QString name = QStringLiteral("effect %1 of ").arg(i + 1) + nameOf(page);
        if (!shapes.contains(effect.shapeId))
            add(Severity::Warning, "effect-without-shape", page.effectOffset(i),
                name + QStringLiteral(" shows nothing: there is no shape %1").arg(effect.shapeId));
        if (trigger < kClick || trigger > kAfter)
            add(Severity::Warning, "unknown-trigger", page.triggerOffset(i),
                name +
                    QStringLiteral(" has the unknown trigger %1 and starts with the previous one")
                        .arg(trigger));
    }
}

void ModelCheck::checkSteps(const LocatedPage &page)
{
    const std::vector<size_t> firsts = firstEffects(page);
    const QVector<SlideStep> steps = stepsOf(page.effects);
    for (int step = 0; step < steps.size(); ++step) {
        if (steps.at(step).duration == 0)
            add(Severity::Warning, "zero-length-step",
                page.effectOffset(firsts.at(static_cast<size_t>(step))),
                QStringLiteral("step %1 of %2 has no duration").arg(step + 1).arg(nameOf(page)));
    }
}

void ModelCheck::add(Severity severity, const char *code, qint64 offset, const QString &words)
{
    m_report.findings.add(severity, code, offset, words);
}
