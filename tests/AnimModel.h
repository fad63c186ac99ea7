#pragma once

#include "pptanim/PPTAnimDisplay.h"

#include <QByteArrayList>
#include <QStringList>
#include <QVector>

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <limits>

/// Animation models made in memory, for tests of the player.
namespace AnimModel {

enum Trigger : qint8 { kClick = 1, kWith = 2, kAfter = 3 };
enum Exit : qint8 { kEnter = 0, kLeave = -1 };

constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kLeast = std::numeric_limits<int>::min();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// The caller's until it is in a page's list, as every object made here.
inline PPT_Effect *newEffect(int trigger, float seconds, int shapeId = 0, int exit = kEnter,
                             int effectNo = 0)
{
    auto *effect = new PPT_Effect;
    effect->effectNo = static_cast<qint16>(effectNo);
    effect->shapeId = static_cast<quint16>(shapeId);
    effect->exit = static_cast<qint8>(exit);
    effect->timing.duration = seconds;
    effect->timing.triggerType = static_cast<qint8>(trigger);
    return effect;
}

/// "click 0.5, with 1, after 0.25": triggers, which may be numbers, and seconds.
inline std::list<PPT_Effect *> newEffects(const QByteArray &text)
{
    static const QByteArrayList kTriggers{"", "click", "with", "after"};
    std::list<PPT_Effect *> effects;
    for (const QByteArray &effect : text.isEmpty() ? QByteArrayList() : text.split(',')) {
        const QByteArrayList words = effect.trimmed().split(' ');
        const int named = kTriggers.indexOf(words.first());
        effects.push_back(
            newEffect(named > 0 ? named : words.first().toInt(), words.last().toFloat()));
    }
    return effects;
}

inline PPT_Shape *newShape(int id, float left = 0, float top = 0, float width = 0, float height = 0,
                           const QByteArray &picture = {})
{
    auto *shape = new PPT_Shape;
    shape->shapeId = static_cast<quint16>(id);
    shape->left = left;
    shape->top = top;
    shape->width = width;
    shape->height = height;
    shape->picDat = picture;
    return shape;
}

inline PPT_Page *newPage(std::list<PPT_Shape *> shapes, std::list<PPT_Effect *> effects,
                         const QByteArray &image = {}, int id = 1)
{
    auto *page = new PPT_Page;
    page->pageId = static_cast<quint16>(id);
    page->pageImage = image;
    page->shapes = std::move(shapes);
    page->effects = std::move(effects);
    return page;
}

/// An effect as a row of a test's table.
struct Effect
{
    int trigger;
    float seconds;
    int shapeId = 0;
    int exit = kEnter;
    int number = 0;
};
using Effects = QVector<Effect>;

/// A page without pictures.
inline PPT_Page *pageOf(const Effects &effects, std::initializer_list<int> shapes = {})
{
    PPT_Page *page = newPage({}, {});
    for (int id : shapes)
        page->shapes.push_back(newShape(id));
    for (const Effect &e : effects)
        page->effects.push_back(newEffect(e.trigger, e.seconds, e.shapeId, e.exit, e.number));
    return page;
}

/// The bytes of a model of these pages, which are released and deleted.
inline QByteArray modelBytes(std::initializer_list<PPT_Page *> pages, float width = 1000,
                             float height = 500)
{
    PPT_fileDat model;
    model.head.width = width;
    model.head.height = height;
    for (PPT_Page *page : pages)
        model.pages[page->pageId] = page;
    QByteArray bytes;
    {
        CStdDataStream stream(&bytes, QIODevice::WriteOnly);
        model.streamTo(stream);
    }
    model.release();
    return bytes;
}

/// The bytes of a model of the page 1 with these effects and nothing else.
inline QByteArray effectsBytes(const QByteArray &effects)
{
    return modelBytes({newPage({}, newEffects(effects))});
}

constexpr char kThreeSteps[] = "click 1, click 0.5, click 0.25"; // as newEffects() reads them

/// "STEP:MS".
inline QString position(quint32 step, quint32 passed)
{
    return QStringLiteral("%1:%2").arg(step).arg(passed);
}

inline QString position(PPTAnimDisplayBase &player)
{
    return position(player.GetAnimStep(), player.GetAnimPassedDuration());
}

using Lines = std::initializer_list<const char *>;

inline QStringList lines(Lines texts)
{
    QStringList list;
    for (const char *text : texts)
        list << QLatin1String(text);
    return list;
}

/// An entry in motion.
inline PPTAnimDisplay::ShapeAnimDat moving(PPT_Effect &effect, unsigned int passed,
                                           unsigned int duration)
{
    PPTAnimDisplay::ShapeAnimDat dat;
    dat.drawState = PPTAnimDisplay::DRAW_MOVE;
    dat.effect = &effect;
    dat.effectPassed = passed;
    dat.effectDuration = duration;
    return dat;
}

/// Whether fields of one object follow each other in memory as they are given.
template <typename... Fields>
bool areInOrder(const Fields *...fields)
{
    const std::initializer_list<const void *> addresses{fields...};
    return std::is_sorted(addresses.begin(), addresses.end(), std::less<>());
}

/// The player with its fields in reach.
class OpenPlayer : public PPTAnimDisplay
{
public:
    using PPTAnimDisplay::animStep;
    using PPTAnimDisplay::animTimer;
    using PPTAnimDisplay::cachPic;
    using PPTAnimDisplay::curPage;
    using PPTAnimDisplay::curPageId;
    using PPTAnimDisplay::effectSteps;
    using PPTAnimDisplay::fileDat;
    using PPTAnimDisplay::lastTickMSecs;
    using PPTAnimDisplay::pageHeight;
    using PPTAnimDisplay::pageWidth;
    using PPTAnimDisplay::passedDuration;
    using PPTAnimDisplay::picCachs;
    using PPTAnimDisplay::shapeAnimDats;

    /// Makes the page, which is the player's from here on, the one that is played; no more: neither
    /// steps nor shapes are made of it. It does not go through a stream, so its numbers keep every
    /// bit.
    void take(PPT_Page *page)
    {
        Clear();
        fileDat.pages[page->pageId] = page;
        curPage = page;
        curPageId = page->pageId;
    }

    /// The same with steps and shapes, as Init() makes them.
    void load(PPT_Page *page)
    {
        take(page);
        AnalyszEffectSteps();
        CollectShapes();
    }
};

} // namespace AnimModel
