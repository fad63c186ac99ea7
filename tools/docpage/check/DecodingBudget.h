#pragma once

#include "tools/docpage/check/ChildRun.h"

/// What the decoding of the pictures of a file may take. The time is for all of them together: a
/// file may hold any number, and each may be a slow one.
class DecodingBudget
{
public:
    /// \param memory bytes, for each picture
    explicit DecodingBudget(qint64 memory);

    qint64 memory() const { return m_memory; }
    bool isTimeLeft() const { return m_cpuTime > 0 && m_wallTime > 0; }

    /// Those of a process that decodes the next picture.
    ChildLimits limits() const;

    /// Counts what the process took.
    void spend(const ChildResult &result);

private:
    qint64 m_memory;
    qint64 m_cpuTime;  // ms
    qint64 m_wallTime; // ms
};
