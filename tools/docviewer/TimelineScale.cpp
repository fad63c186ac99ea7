#include "tools/docviewer/TimelineScale.h"

#include <algorithm>

namespace {

constexpr quint32 kFrame = 40;      // ms
constexpr int kMinSegmentWidth = 8; // pixels; wide enough to be hit

} // namespace

TimelineScale::TimelineScale(const QVector<quint32> &durations, int width)
    : m_durations(durations)
{
    const int segments = durations.size() + 1; // with home, which takes no time
    const int room = qMax(width, 0);
    const int least = qMin(kMinSegmentWidth, room / segments);
    const int spare = room - least * segments;

    quint64 total = 0;
    for (const quint32 each : durations)
        total += each;
    // All steps count alike where none takes time, or where there is not a pixel for each.
    const bool alike = total == 0 || least == 0;
    if (alike)
        total = static_cast<quint64>(durations.size());

    m_edges.resize(1);
    quint64 before = 0;
    for (int i = 0; i < durations.size(); ++i) {
        const double part = double(before) / double(total);
        m_edges.append(least * (i + 1) + static_cast<int>(spare * part));
        before += alike ? 1 : durations.at(i);
    }
    m_edges.append(room);
}

quint32 TimelineScale::duration(quint32 step) const
{
    return step == 0 ? 0 : m_durations.value(static_cast<int>(step) - 1);
}

SlideMoment TimelineScale::momentAt(int x) const
{
    if (x < m_edges.first())
        return {};
    if (x >= m_edges.last())
        return end();
    // The segment whose first pixel is the last one not right of x; empty segments are passed over.
    const auto behind = std::upper_bound(m_edges.cbegin(), m_edges.cend(), x);
    const auto step = static_cast<quint32>(behind - m_edges.cbegin() - 1);
    const auto last = static_cast<quint64>(qMax(right(step) - left(step) - 1, 1));
    const auto passed = static_cast<quint64>(x - left(step));
    return {step, static_cast<quint32>((duration(step) * passed + last / 2) / last)};
}

int TimelineScale::xOf(SlideMoment moment) const
{
    const SlideMoment inside = bounded(moment);
    const quint64 whole = duration(inside.step);
    const int start = left(inside.step);
    const int last = right(inside.step) - start - 1;
    if (whole == 0 || last <= 0)
        return start;
    return start + static_cast<int>((static_cast<quint64>(last) * inside.ms + whole / 2) / whole);
}

SlideMoment TimelineScale::bounded(SlideMoment moment) const
{
    const quint32 step = qMin(moment.step, static_cast<quint32>(stepCount()));
    return {step, qMin(moment.ms, duration(step))};
}

SlideMoment TimelineScale::nextFrame(SlideMoment moment) const
{
    const quint32 whole = duration(moment.step);
    if (moment.ms < whole)
        return {moment.step, whole - moment.ms < kFrame ? whole : moment.ms + kFrame};
    return moment.step < static_cast<quint32>(stepCount()) ? SlideMoment{moment.step + 1, 0}
                                                           : end();
}

SlideMoment TimelineScale::previousFrame(SlideMoment moment) const
{
    if (moment.ms > 0 || moment.step == 0)
        return {moment.step, moment.ms - qMin(moment.ms, kFrame)};
    return {moment.step - 1, duration(moment.step - 1)};
}

SlideMoment TimelineScale::nextStep(SlideMoment moment) const
{
    return moment.step < static_cast<quint32>(stepCount()) ? SlideMoment{moment.step + 1, 0}
                                                           : end();
}

SlideMoment TimelineScale::previousStep(SlideMoment moment) const
{
    if (moment.ms > 0 || moment.step == 0)
        return {moment.step, 0};
    return {moment.step - 1, 0};
}

SlideMoment TimelineScale::end() const
{
    const auto last = static_cast<quint32>(stepCount());
    return {last, duration(last)};
}
