#pragma once

#include "Bounds.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <time.h>

/// \file
/// Works that are compared with one another: by turns in one run, by medians, against a bound.

/// Ends the benchmark unless `condition` holds.
inline void require(bool condition, const std::string &what)
{
    if (condition)
        return;
    std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, what.c_str());
    std::exit(EXIT_FAILURE);
}

/// The processor time that `work` takes in all threads of this program. What is compared by it
/// waits for nothing, and other programs make time pass, but not this.
template <typename Work>
double seconds(Work work)
{
    const auto now = [] {
        timespec time = {};
        ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    };
    const double begin = now();
    work();
    return now() - begin;
}

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The turns of one path. Either operation is called once.
class Turns
{
public:
    Turns(benchmark::State &state, const Bound &bound)
        : m_state(state)
        , m_bound(bound)
    {
    }

    /// Both works return the seconds that they take. Every round begins with the other one. What
    /// is measured is the median of the ratios within a round.
    template <typename Work, typename Baseline>
    void compare(Work work, Baseline baseline)
    {
        work(); // the first of each finds everything cold
        baseline();
        std::vector<double> works;
        std::vector<double> baselines;
        std::vector<double> ratios;
        for (auto _ : m_state) {
            const bool isFirst = works.size() % 2 == 0;
            const double early = isFirst ? work() : baseline();
            const double late = isFirst ? baseline() : work();
            works.push_back(isFirst ? early : late);
            baselines.push_back(isFirst ? late : early);
            ratios.push_back(works.back() / baselines.back());
            m_state.SetIterationTime(works.back());
        }
        m_state.counters["work_ms"] = 1000 * median(works);
        m_state.counters["baseline_ms"] = 1000 * median(baselines);
        report(median(ratios));
    }

    /// The amount in the unit of the bound, of which the median is taken.
    template <typename Amount>
    void measure(Amount amount)
    {
        std::vector<double> amounts;
        for (auto _ : m_state) {
            amounts.push_back(amount());
            m_state.SetIterationTime(1e-6); // no time is asked for
        }
        report(median(amounts));
    }

    static inline bool isBoundMissed = false; // of any path

private:
    void report(double measured)
    {
        m_state.counters["measured"] = measured;
        m_state.counters["bound"] = m_bound.most;
        m_state.SetLabel(m_bound.unit);
        isBoundMissed = isBoundMissed || measured > m_bound.most;
    }

    benchmark::State &m_state;
    const Bound &m_bound;
};

/// A path of kBounds is measured in so many rounds.
inline void addBenchmark(const std::string &path, int rounds, std::function<void(Turns &)> run)
{
    const auto *bound = std::find_if(std::begin(kBounds), std::end(kBounds),
                                     [&](const Bound &b) { return path == b.path; });
    require(bound != std::end(kBounds), path + " has no bound");
    benchmark::RegisterBenchmark(path.c_str(),
                                 [bound, run = std::move(run)](benchmark::State &state) {
                                     Turns turns(state, *bound);
                                     run(turns);
                                 })
        ->Iterations(rounds)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

/// The rest of main(): the exit status is 1 when a bound is missed.
inline int runBenchmarks(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    return Turns::isBoundMissed ? EXIT_FAILURE : EXIT_SUCCESS;
}
