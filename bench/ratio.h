// Benchmarks of ours beside a limit or a peer, taken in turns in one run: on a machine that other work shares, times
// wander but ratios hold.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace vdt::bench {

/// Gives free memory back to the system, so that what is allocated next is fresh.
inline void ForgetFreeMemory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

/// The processor time of one call, in seconds. What the call returns is destroyed after the clock has stopped.
template <class Work> double Timed(const Work& work)
{
    const std::clock_t start = std::clock();
    auto result = work();
    benchmark::DoNotOptimize(result);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

inline double Median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

/// Runs both in turns; reports the medians of both times and of the ratio of each pair. `prepare` runs before each of
/// the two, untimed.
template <class Ours, class Anchor, class Prepare>
void CompareTimes(benchmark::State& state, const Ours& ours, const Anchor& anchor, const Prepare& prepare)
{
    std::vector<double> times, anchorTimes, ratios;
    for (auto _ : state) {
        prepare();
        anchorTimes.push_back(Timed(anchor));
        prepare();
        times.push_back(Timed(ours));
        ratios.push_back(times.back() / anchorTimes.back());
        state.SetIterationTime(times.back());
    }
    state.counters["ms"] = 1000 * Median(times);
    state.counters["anchor_ms"] = 1000 * Median(anchorTimes);
    state.counters["ratio"] = Median(ratios);
}

} // namespace vdt::bench
