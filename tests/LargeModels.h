#pragma once

#include "AnimModel.h"
#include "TinyPictures.h"

/// Animation models of about `size` bytes, each of what takes the most memory beside its bytes. The
/// slide is the page 1; its picture is tiny. Identifiers of shapes are all that there can be.
namespace LargeModels {

using namespace AnimModel;

using Make = QByteArray (*)(int size);

constexpr int kPage = 1;

/// Puts a number into the bytes, its highest byte first.
template <typename Number>
void overwrite(QByteArray &bytes, int at, Number value)
{
    for (size_t i = 0; i < sizeof value; ++i)
        bytes[at + int(i)] = char(quint64(value) >> (8 * (sizeof value - 1 - i)));
}

inline QByteArray onePage(std::list<PPT_Shape *> shapes, std::list<PPT_Effect *> effects,
                          const QByteArray &image = TinyPictures::png())
{
    return modelBytes({newPage(std::move(shapes), std::move(effects), image, kPage)});
}

inline QByteArray clicks(int size)
{
    std::list<PPT_Effect *> effects;
    for (int i = 0; i < size / 64; ++i)
        effects.push_back(newEffect(kClick, 0.5F, i));
    return onePage({}, std::move(effects));
}

inline QByteArray manyShapes(int size, const QByteArray &picture)
{
    std::list<PPT_Shape *> shapes;
    for (int i = 0; i < size / (38 + picture.size()); ++i)
        shapes.push_back(newShape(i, 0, 0, 0, 0, picture));
    return onePage(std::move(shapes), {});
}
inline QByteArray emptyShapes(int size)
{
    return manyShapes(size, {});
}
inline QByteArray shapesOfAByte(int size)
{
    return manyShapes(size, "p");
}
inline QByteArray shapesAndClicks(int size)
{
    std::list<PPT_Shape *> shapes;
    std::list<PPT_Effect *> effects;
    for (int i = 0; i < size / (38 + 64); ++i) {
        shapes.push_back(newShape(i));
        effects.push_back(newEffect(kClick, 0.5F, i));
    }
    return onePage(std::move(shapes), std::move(effects));
}

/// Its other pages have all other identifiers, by turns.
inline QByteArray manyPages(int size, const QByteArray &image)
{
    constexpr int kCountAt = 24;
    constexpr int kPagesAt = kCountAt + 4;
    const QByteArray other = onePage({}, {}, image).mid(kPagesAt);
    const int others = size / other.size();
    QByteArray bytes = onePage({}, {});
    overwrite<qint32>(bytes, kCountAt, 1 + others);
    bytes.reserve(bytes.size() + others * other.size());
    for (int i = 0; i < others; ++i) {
        const int at = bytes.size();
        bytes += other;
        overwrite(bytes, at, static_cast<quint16>(2 + i % 0xFFFF));
    }
    return bytes;
}
inline QByteArray emptyPages(int size)
{
    return manyPages(size, {});
}
inline QByteArray pagesOfAByte(int size)
{
    return manyPages(size, "p");
}

/// A picture that ends long before its bytes do.
inline QByteArray padded(const QByteArray &picture, int size)
{
    return picture + QByteArray(size - picture.size(), 'x');
}
inline QByteArray longBackground(int size)
{
    return onePage({}, {}, padded(TinyPictures::png(), size));
}
inline QByteArray longShape(int size)
{
    return onePage({newShape(1, 0, 0, 0, 0, padded(TinyPictures::png(), size))}, {});
}

} // namespace LargeModels
