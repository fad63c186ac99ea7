#include "tools/docpage/check/DecodingBudget.h"

#include <sys/resource.h>

namespace {

constexpr qint64 kSecond = 1000;
constexpr qint64 kCpuTime = 60 * kSecond;
constexpr qint64 kWallTime = 600 * kSecond;

// No more than a process may take, when its user has decided so.
qint64 cpuTime()
{
    rlimit limit = {};
    ::getrlimit(RLIMIT_CPU, &limit);
    return limit.rlim_cur < kCpuTime / kSecond ? static_cast<qint64>(limit.rlim_cur) * kSecond
                                               : kCpuTime;
}

// Limits are in whole seconds.
int seconds(qint64 milliseconds)
{
    return static_cast<int>((milliseconds + kSecond - 1) / kSecond);
}

} // namespace

DecodingBudget::DecodingBudget(qint64 memory)
    : m_memory(memory)
    , m_cpuTime(cpuTime())
    , m_wallTime(kWallTime)
{
}

ChildLimits DecodingBudget::limits() const
{
    return {m_memory, seconds(m_cpuTime), seconds(m_wallTime)};
}

void DecodingBudget::spend(const ChildResult &result)
{
    m_cpuTime -= result.cpuTime;
    m_wallTime -= result.wallTime;
    if (result.ending == ChildResult::Ending::TimedOut)
        m_cpuTime = 0; // it had all that was left, whatever the clocks say
}
