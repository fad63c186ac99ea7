#pragma once

#include "FlyIn.h"
#include "tests/PlainPainter.h"

#include <climits>
#include <cstring>

#include <malloc.h>

/// Frames of a scene: as players make them, and the least that they could cost.
namespace Frames {

/// Freed memory stays with the program. Whether glibc returns that of an image, and has the system
/// clear other pages for the next one, is a matter of what lies behind it: it differs from run to
/// run, and takes as long as painting does.
inline void keepFreedMemory()
{
    require(::mallopt(M_MMAP_MAX, 0) != 0 && ::mallopt(M_TRIM_THRESHOLD, INT_MAX) != 0,
            "the allocator cannot be told");
}

/// What a host keeps of the images that it was given; the oldest is let go when a new one has come.
class Host
{
public:
    explicit Host(int kept)
        : m_images(static_cast<size_t>(kept))
    {
    }

    void show(PPTAnimDisplay &player) { place() = player.GetImg(); }
    const QImage &shown() const
    {
        return m_images[(m_next + m_images.size() - 1) % m_images.size()];
    }
    const std::vector<QImage> &images() const { return m_images; }

    /// Where the next image goes.
    QImage &place() { return m_images[m_next++ % m_images.size()]; }

private:
    std::vector<QImage> m_images;
    size_t m_next = 0;
};

/// Plays the step with the player and with the plain one: every image must be the same, when it is
/// shown and as long as the host keeps it.
inline void requireSameFrames(const FlyIn::Look &look, int kept)
{
    const QByteArray model = FlyIn::model(look);
    PPTAnimDisplay player;
    PlainPainter plain;
    FlyIn::load(player, model);
    FlyIn::load(plain, model);
    std::vector<QImage> expected;
    FlyIn::play(plain, [&](PPTAnimDisplay &, int) { expected.push_back(plain.GetImg()); });
    require(expected.size() == size_t(look.frames) + 1 && expected.front() != expected.back(),
            "the scene does not play");
    Host host(kept);
    FlyIn::play(player, [&](PPTAnimDisplay &, int frame) {
        host.show(player);
        require(host.shown() == expected[size_t(frame)], "a frame is another than the plain one");
    });
    for (size_t i = 0; i < host.images().size(); ++i) {
        size_t last = expected.size() - 1;
        while (last % host.images().size() != i)
            --last;
        require(host.images()[i] == expected[last], "an image of the host has changed");
    }
}

/// Where the flying shape is in each frame.
inline std::vector<QPoint> flight(const FlyIn::Look &look, PlainPainter &plain)
{
    std::vector<QPoint> places;
    FlyIn::play(plain, [&](PPTAnimDisplay &, int) {
        plain.getAllShapeDrawState();
        PPTAnimDisplay::ShapeAnimDat &dat = plain.shapeAnimDats.at(FlyIn::flyingId(look));
        QRect atRest = PPTAnimDisplay::GetShapeOrgRect(dat.shape);
        places.push_back(plain.GetAnimCurretRect(dat, atRest).topLeft());
    });
    return places;
}

inline PPT_Shape *flyingShape(const FlyIn::Look &look, PlainPainter &plain)
{
    return plain.shapeAnimDats.at(FlyIn::flyingId(look)).shape;
}

/// LIMIT: a page is copied, and the flying shape drawn on it. The shape is premultiplied, which is
/// what Qt blends the quickest; so no conversion is hidden in what players are compared with.
class Limit
{
public:
    explicit Limit(const FlyIn::Look &look, PlainPainter &plain)
        : m_page(plain.MakeImage(plain.curPage->pageImage))
        , m_shape(plain.MakeImage(flyingShape(look, plain)->picDat)
                      .convertToFormat(QImage::Format_ARGB32_Premultiplied))
        , m_places(flight(look, plain))
    {
    }

    /// An image to paint in, as large as the page.
    QImage page() const { return {m_page.size(), m_page.format()}; }

    void paint(int frame, QImage &image) const
    {
        std::memcpy(image.bits(), m_page.constBits(), static_cast<size_t>(m_page.sizeInBytes()));
        QPainter(&image).drawImage(m_places[static_cast<size_t>(frame)], m_shape);
    }

private:
    QImage m_page;
    QImage m_shape;
    std::vector<QPoint> m_places;
};

} // namespace Frames
