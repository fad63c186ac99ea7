#pragma once

#include "Turns.h"
#include "tests/AnimModel.h"
#include "tests/PageFiles.h"

#include <QPainter>
#include <QRandomGenerator>

#include <cmath>

/// A slide to be painted: many shapes at rest, and in their midst one that flies in.
namespace FlyIn {

constexpr int kTick = 40; // ms from frame to frame

struct Look
{
    QSize size;
    int shapes;   // one of which flies in
    double pages; // that the shapes would cover side by side
    int frames = 25;
    QImage::Format background = QImage::Format_RGB32;
    int quality = 100; // of the encoded pictures; 100: not compressed, soon decoded
};

constexpr QSize kHd{1920, 1080};
constexpr QSize k4K{3840, 2160};

/// Where the flying shape is in the stack, and its identifier.
inline int flyingIndex(const Look &look)
{
    return look.shapes / 2;
}
inline int flyingId(const Look &look)
{
    return 1 + flyingIndex(look);
}

/// No two pixels nearby are alike.
inline QImage coloured(QSize size, QRandomGenerator &random)
{
    QImage image(size, QImage::Format_ARGB32);
    const uint colour = random.generate();
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            line[x] = (colour + 0x10305U * uint(x) + 0x50201U * uint(y)) | 0xFF000000U;
    }
    return image;
}

template <typename AlphaAt>
QImage withAlpha(QImage image, AlphaAt alphaAt)
{
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            line[x] = (line[x] & 0xFFFFFFU) | uint(alphaAt(x, y)) << 24;
    }
    return image;
}

/// Opaque, but for a border that fades out.
inline QImage softEdged(QSize size, QRandomGenerator &random)
{
    constexpr int kEdge = 12;
    return withAlpha(coloured(size, random), [&](int x, int y) {
        const int edge = std::min({x + 1, y + 1, size.width() - x, size.height() - y, kEdge});
        return 255 * edge / kEdge;
    });
}

inline QImage translucent(QSize size, QRandomGenerator &random)
{
    return withAlpha(coloured(size, random), [](int x, int y) { return 96 + (x + y) % 64; });
}

/// Lines of thin strokes on nothing.
inline QImage textLike(QSize size, QRandomGenerator &random)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(QRgb(random.generate())), 2.5));
    for (int bottom = 24; bottom < size.height(); bottom += 30) {
        for (int left = 4; left < size.width() - 12; left += 14) {
            const auto corner = [&] {
                return QPointF(left + random.bounded(10.0), bottom - random.bounded(18.0));
            };
            const QPointF corners[] = {corner(), corner(), corner(), corner()};
            painter.drawPolyline(corners, 4);
        }
    }
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

/// Half of the shapes have soft edges; so has the one that flies.
inline QImage picture(int index, QSize size, const Look &look, QRandomGenerator &random)
{
    const int kind = index - flyingIndex(look) + look.shapes; // not negative
    if (kind % 2 == 0)
        return softEdged(size, random);
    switch (kind / 2 % 3) {
    case 0:
        return textLike(size, random);
    case 1:
        return translucent(size, random);
    default:
        return coloured(size, random).convertToFormat(QImage::Format_RGB32);
    }
}

inline QImage background(const Look &look, QRandomGenerator &random)
{
    const QImage image = coloured(look.size, random);
    if (look.background == QImage::Format_ARGB32)
        return withAlpha(image, [](int x, int y) { return 128 + (x + y) % 128; });
    return image.convertToFormat(look.background);
}

/// The shape that flies covers 5 % of the page and comes to rest in its middle.
inline QRect flyingRect(const Look &look)
{
    const QSize size = look.size * std::sqrt(0.05);
    return {
        QPoint((look.size.width() - size.width()) / 2, (look.size.height() - size.height()) / 2),
        size};
}

/// The shapes at rest lie all over the page, as evenly as their number allows.
inline QRect restingRect(int index, const Look &look, QRandomGenerator &random)
{
    const double area = (look.pages - 0.05) / (look.shapes - 1);
    const double stretch = 0.7 + random.bounded(0.7);
    const QSize size(qRound(look.size.width() * std::min(1.0, std::sqrt(area) * stretch)),
                     qRound(look.size.height() * std::min(1.0, std::sqrt(area) / stretch)));
    const QSize room = look.size - size;
    // Multiples of these numbers, without their integers, fill the unit square evenly.
    constexpr double kAcross = 0.7548776662466927;
    constexpr double kDown = 0.5698402909980532;
    return {QPoint(int(room.width() * std::fmod(0.5 + index * kAcross, 1.0)),
                   int(room.height() * std::fmod(0.5 + index * kDown, 1.0))),
            size};
}

/// The bytes of a model whose page has one step, in which the shape flies in. `seed` tells slides
/// apart.
inline QByteArray model(const Look &look, int pageId = 1, uint seed = 1)
{
    QRandomGenerator random(seed);
    const QByteArray image = PageFiles::encoded(background(look, random), "PNG", look.quality);
    std::list<PPT_Shape *> shapes;
    for (int i = 0; i < look.shapes; ++i) {
        const QRect rect = i == flyingIndex(look) ? flyingRect(look) : restingRect(i, look, random);
        shapes.push_back(AnimModel::newShape(
            1 + i, float(rect.left()), float(rect.top()), float(rect.width()), float(rect.height()),
            PageFiles::encoded(picture(i, rect.size(), look, random), "PNG", look.quality)));
    }
    PPT_Effect *flight =
        AnimModel::newEffect(AnimModel::kClick, float(look.frames * kTick) / 1000, flyingId(look));
    return AnimModel::modelBytes({AnimModel::newPage(std::move(shapes), {flight}, image, pageId)},
                                 float(look.size.width()), float(look.size.height()));
}

/// Loads the slide into a player as the display manager does.
inline void load(PPTAnimDisplay &player, const QByteArray &model)
{
    require(player.Init(1, model, 1000 / kTick), "the slide is refused");
    player.SetCachPic(true);
}

/// Plays the step as the timer and a host do: image for image, the one after the end too.
/// `show` is given the player and the number of the frame, from 0.
template <typename Show>
void play(PPTAnimDisplay &player, Show show)
{
    player.SetAnimStep(1);
    player.StartRun();
    int frame = 0;
    do {
        show(player, frame++);
    } while (player.nextFrame(kTick));
    player.StopRun();
}

} // namespace FlyIn
