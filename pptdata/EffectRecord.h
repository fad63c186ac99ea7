#pragma once

#include "pptdata/PPT_Objects.h"
#include "pptdata/Record.h"

/// An effect and its timing as records: of one size, so that many can be read at once.
constexpr int kTimingSize = 6 * 8 + 7 * 1;
constexpr int kEffectSize = 4 * 2 + 1 + kTimingSize;

template <int N>
RecordWriter<N> &operator<<(RecordWriter<N> &record, const PPT_Timing &t)
{
    return record << t.accelerate << t.autoReverse << t.decelerate << t.duration << t.timingF5
                  << t.timingB6 << t.timingF7 << t.timingB8 << t.timingB9 << t.timingB10
                  << t.timingB11 << t.timingF12 << t.triggerType;
}

template <int N>
RecordReader<N> &operator>>(RecordReader<N> &record, PPT_Timing &t)
{
    return record >> t.accelerate >> t.autoReverse >> t.decelerate >> t.duration >> t.timingF5 >>
           t.timingB6 >> t.timingF7 >> t.timingB8 >> t.timingB9 >> t.timingB10 >> t.timingB11 >>
           t.timingF12 >> t.triggerType;
}

template <int N>
RecordWriter<N> &operator<<(RecordWriter<N> &record, const PPT_Effect &e)
{
    return record << e.effectNo << e.shapeId << e.effectParamA << e.effectParamB << e.exit
                  << e.timing;
}

template <int N>
RecordReader<N> &operator>>(RecordReader<N> &record, PPT_Effect &e)
{
    return record >> e.effectNo >> e.shapeId >> e.effectParamA >> e.effectParamB >> e.exit >>
           e.timing;
}
