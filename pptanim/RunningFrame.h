#pragma once

#include "pptanim/FrameBuffers.h"
#include "pptanim/ReadyPictures.h"
#include "pptanim/Scene.h"

class QPainter;

/// Paints scenes of one kind. What rests is painted once: the whole of it, which is what a frame
/// shows but for where pictures move, and what is below the lowest moving one, on which a frame is
/// painted there.
class RunningFrame
{
public:
    /// Whether there can be one for scenes like this.
    static bool fits(const Scene &scene);

    /// `scene` is of the kind `kind`, and one that fits.
    RunningFrame(const Scene &scene, const SceneKind &kind);

    const SceneKind &kind() const { return m_kind; }

    /// Null when the scene is none that goes on from that kind, or when memory lacks.
    QImage paint(const Scene &scene, ReadyPictures &ready);

private:
    struct Touched
    {
        QRegion region;     // where a frame is other than what rests
        QRegion seeThrough; // the part of it in which what is below may be seen
    };

    Touched touched(const Scene &scene, const std::vector<bool> &movers,
                    ReadyPictures &ready) const;
    void drawPictures(QPainter &painter, const QRect &rect, const Scene &scene,
                      ReadyPictures &ready) const;

    SceneKind m_kind;
    bool m_isByRows; // and from the pictures as they are
    size_t m_lowestMoving;
    QImage m_resting;
    QImage m_below; // only the rows that pictures move in
    int m_belowTop = 0;
    FrameBuffers m_buffers;
};
