#pragma once

#include "pptdata/PPT_fileDat.h"

#include <QDataStream>
#include <QRandomGenerator>
#include <QStringList>

#include <cmath>
#include <cstring>
#include <type_traits>

/// The animation model once more, field by field over a plain QDataStream and without regard to
/// time or memory: what the library's records must come to. Also ways to name and to fill fields.
namespace PlainModel {

/// Also for classes derived from the containers: what is said of them is not a template.
template <typename T>
using IfNoContainer =
    std::enable_if_t<!std::is_base_of_v<PPT_Page, T> && !std::is_base_of_v<PPT_fileDat, T>>;

template <typename Visitor>
void eachField(PPT_RECT &rect, Visitor &&visit)
{
    visit("left", rect.left);
    visit("top", rect.top);
    visit("width", rect.width);
    visit("height", rect.height);
}

template <typename Visitor>
void eachField(PPT_PicDat &picture, Visitor &&visit)
{
    eachField(static_cast<PPT_RECT &>(picture), visit);
    visit("picDat", picture.picDat);
}

template <typename Visitor>
void eachField(PPT_Shape &shape, Visitor &&visit)
{
    visit("shapeId", shape.shapeId);
    eachField(static_cast<PPT_PicDat &>(shape), visit);
}

template <typename Visitor>
void eachField(PPT_Timing &timing, Visitor &&visit)
{
    visit("accelerate", timing.accelerate);
    visit("autoReverse", timing.autoReverse);
    visit("decelerate", timing.decelerate);
    visit("duration", timing.duration);
    visit("timingF5", timing.timingF5);
    visit("timingB6", timing.timingB6);
    visit("timingF7", timing.timingF7);
    visit("timingB8", timing.timingB8);
    visit("timingB9", timing.timingB9);
    visit("timingB10", timing.timingB10);
    visit("timingB11", timing.timingB11);
    visit("timingF12", timing.timingF12);
    visit("triggerType", timing.triggerType);
}

template <typename Visitor>
void eachField(PPT_Effect &effect, Visitor &&visit)
{
    visit("effectNo", effect.effectNo);
    visit("shapeId", effect.shapeId);
    visit("effectParamA", effect.effectParamA);
    visit("effectParamB", effect.effectParamB);
    visit("exit", effect.exit);
    eachField(effect.timing, visit);
}

template <typename Visitor>
void eachField(PPT_SlideShowTransition &transition, Visitor &&visit)
{
    visit("advanceOnClick", transition.advanceOnClick);
    visit("advanceOnTime", transition.advanceOnTime);
    visit("advanceTime", transition.advanceTime);
    visit("entryEffect", transition.entryEffect);
    visit("hidden", transition.hidden);
    visit("loopSoundUntilNext", transition.loopSoundUntilNext);
}

template <typename Visitor>
void eachField(PPT_FileHead &head, Visitor &&visit)
{
    visit("magic", head.magic);
    visit("version", head.version);
    visit("width", head.width);
    visit("height", head.height);
}

// Bit by bit: what is equal here is the same.
inline QString inWords(float value)
{
    quint32 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return QStringLiteral("%1 (%2)").arg(double(value)).arg(bits, 8, 16, QLatin1Char('0'));
}
inline QString inWords(const QByteArray &bytes)
{
    return bytes.isNull()
               ? QStringLiteral("null")
               : QStringLiteral("%1 bytes ").arg(bytes.size()) + QString::fromLatin1(bytes.toHex());
}
template <typename Integer>
QString inWords(Integer value)
{
    return QString::number(value);
}

/// Every streamed field of a leaf object with its name and value.
template <typename T, typename = IfNoContainer<T>>
QStringList fields(T object)
{
    QStringList list;
    eachField(object, [&](const char *name, const auto &value) {
        list << QString::fromLatin1(name) + QLatin1Char('=') + inWords(value);
    });
    return list;
}

inline QStringList fields(PPT_Page &page)
{
    QStringList list{QStringLiteral("page %1, image ").arg(page.pageId) + inWords(page.pageImage)};
    list << fields(page.transition);
    for (PPT_Shape *shape : page.shapes)
        list << QStringLiteral("shape") << fields(*shape);
    for (PPT_Effect *effect : page.effects)
        list << QStringLiteral("effect") << fields(*effect);
    return list;
}

inline QStringList fields(PPT_fileDat &model)
{
    QStringList list = fields(model.head);
    for (const auto &entry : model.pages)
        list << QStringLiteral("under %1:").arg(entry.first) << fields(*entry.second);
    return list;
}

inline int wireSize(float)
{
    return 8;
}
inline int wireSize(const QByteArray &bytes)
{
    return 4 + bytes.size();
}
template <typename Integer>
int wireSize(Integer)
{
    return sizeof(Integer);
}

/// Sets the fields of a leaf object to zero that do not lie within its first bytes.
template <typename T>
void cutAfter(int bytes, T &object)
{
    int end = 0;
    eachField(object, [&](const char *, auto &field) {
        end += wireSize(field);
        if (end > bytes)
            field = {};
    });
}

template <typename T, typename = IfNoContainer<T>>
void read(QDataStream &stream, T &object)
{
    eachField(object, [&](const char *, auto &value) { stream >> value; });
}

template <typename T, typename = IfNoContainer<T>>
void write(QDataStream &stream, T object)
{
    eachField(object, [&](const char *, const auto &value) { stream << value; });
}

inline void write(QDataStream &stream, PPT_PicDat picture)
{
    write(stream, static_cast<const PPT_RECT &>(picture));
    stream << QByteArray(picture.picDat.constData(), picture.picDat.size()); // never null
}

inline void write(QDataStream &stream, PPT_Shape shape)
{
    stream << shape.shapeId;
    write(stream, static_cast<PPT_PicDat &>(shape));
}

// More children than any test's data has: what comes after them is empty and makes no difference.
constexpr qint32 kEnough = 3000;

template <typename Child>
void readList(QDataStream &stream, std::list<Child *> &list)
{
    qint32 count = 0;
    stream >> count;
    for (qint32 i = 0; i < qMin(count, kEnough); ++i) {
        list.push_back(new Child);
        read(stream, *list.back());
        if (stream.status() != QDataStream::Ok)
            list.back()->release();
    }
}

inline bool read(QDataStream &stream, PPT_Page &page)
{
    qint16 id = 0;
    stream >> id >> page.pageImage;
    page.pageId = static_cast<quint16>(id);
    read(stream, page.transition);
    readList(stream, page.shapes);
    readList(stream, page.effects);
    if (stream.status() != QDataStream::Ok)
        page.release();
    return stream.status() == QDataStream::Ok;
}

inline bool read(QDataStream &stream, PPT_fileDat &model)
{
    read(stream, model.head);
    if (stream.status() != QDataStream::Ok || model.head.magic != 0x5054414D ||
        model.head.version != 2)
        return false;
    qint32 count = 0;
    stream >> count;
    for (qint32 i = 0; i < qMin(count, kEnough); ++i) {
        auto *page = new PPT_Page;
        read(stream, *page);
        PPT_Page *&entry = model.pages[page->pageId];
        std::map<unsigned short, PPT_Page *> detached{{page->pageId, entry}};
        entry = page;
        model.ClearDat(detached);
    }
    if (stream.status() != QDataStream::Ok)
        model.release();
    return stream.status() == QDataStream::Ok;
}

inline void write(QDataStream &stream, const PPT_Page &page)
{
    stream << static_cast<qint16>(page.pageId) << page.pageImage;
    write(stream, page.transition);
    stream << static_cast<qint32>(page.shapes.size());
    for (const PPT_Shape *shape : page.shapes)
        write(stream, *shape);
    stream << static_cast<qint32>(page.effects.size());
    for (const PPT_Effect *effect : page.effects)
        write(stream, *effect);
}

inline void write(QDataStream &stream, const PPT_fileDat &model)
{
    write(stream, model.head);
    stream << static_cast<qint32>(model.pages.size());
    for (const auto &entry : model.pages)
        write(stream, *entry.second);
}

/// Any value, also infinities and numbers that are none.
inline void setRandom(QRandomGenerator &random, float &value)
{
    quint32 bits = random.generate();
    std::memcpy(&value, &bits, sizeof bits);
    if (std::isnan(value))
        value = std::nanf(""); // only quiet ones keep their bits on the way through a double
}
inline void setRandom(QRandomGenerator &random, QByteArray &bytes)
{
    bytes = QByteArray(static_cast<int>(random.bounded(40)), '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(random.bounded(256));
}
template <typename T, typename = IfNoContainer<T>>
void setRandom(QRandomGenerator &random, T &value)
{
    if constexpr (std::is_integral_v<T>)
        value = static_cast<T>(random.generate());
    else
        eachField(value, [&](const char *, auto &field) { setRandom(random, field); });
}
inline void setRandom(QRandomGenerator &random, PPT_Page &page)
{
    page.pageId = static_cast<quint16>(random.generate());
    if (random.bounded(3) != 0)
        setRandom(random, page.pageImage);
    setRandom(random, page.transition);
    for (int i = random.bounded(4); i > 0; --i) {
        page.shapes.push_back(new PPT_Shape);
        setRandom(random, *page.shapes.back());
    }
    for (int i = random.bounded(4); i > 0; --i) {
        page.effects.push_back(new PPT_Effect);
        setRandom(random, *page.effects.back());
    }
}
inline void setRandom(QRandomGenerator &random, PPT_fileDat &model)
{
    setRandom(random, model.head.width);
    setRandom(random, model.head.height);
    for (int i = random.bounded(5); i > 0; --i) {
        const auto id = static_cast<quint16>(random.generate());
        PPT_Page *&page = model.pages[id];
        if (!page)
            page = new PPT_Page;
        setRandom(random, *page);
        page->pageId = id;
    }
}

} // namespace PlainModel
