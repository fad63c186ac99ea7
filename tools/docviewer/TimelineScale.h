#pragma once

#include <QVector>
#include <QtGlobal>

/// A moment of a slide: a step, 0 being home, before the first one, and the ms played within it.
struct SlideMoment
{
    quint32 step = 0;
    quint32 ms = 0;
};

inline bool operator==(SlideMoment a, SlideMoment b)
{
    return a.step == b.step && a.ms == b.ms;
}
inline bool operator!=(SlideMoment a, SlideMoment b)
{
    return !(a == b);
}

/// Where the moments of a slide lie on a line of pixels: first home, then one segment per step.
/// Each segment has a minimum width, and what is left is shared out by duration. The first pixel of
/// a segment is the step's start and the last one its end, so that the end of a step and the start
/// of the next are neighbours and not the same place.
class TimelineScale
{
public:
    TimelineScale() = default;

    /// \param durations of the steps from step 1, in ms
    /// \param width of the whole line in pixels
    TimelineScale(const QVector<quint32> &durations, int width);

    int stepCount() const { return m_durations.size(); }
    quint32 duration(quint32 step) const;

    /// The segment of a step, or of home, as its first pixel and the one behind its last. Empty
    /// where the line has fewer pixels than the slide has steps.
    int left(quint32 step) const { return m_edges.at(static_cast<int>(step)); }
    int right(quint32 step) const { return m_edges.at(static_cast<int>(step) + 1); }

    /// The moment at a pixel, the nearest one for pixels beside the line.
    SlideMoment momentAt(int x) const;

    /// The pixel of a moment, which is moved into the slide first.
    int xOf(SlideMoment moment) const;

    /// The nearest moment that the slide has.
    SlideMoment bounded(SlideMoment moment) const;

    /// 40 ms on or back. Leads from the end of a step to the start of the next and the other way.
    SlideMoment nextFrame(SlideMoment moment) const;
    SlideMoment previousFrame(SlideMoment moment) const;

    /// The start of the next step, or the end of the last one.
    SlideMoment nextStep(SlideMoment moment) const;
    /// The start of the step, or from there of the one before.
    SlideMoment previousStep(SlideMoment moment) const;

    SlideMoment end() const;

private:
    QVector<quint32> m_durations;
    QVector<int> m_edges{0, 0}; // of home, then of each step; one more than there are segments
};
