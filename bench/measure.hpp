// What a benchmark leaves for the table: one row per function, device
// functions with the time of their floor, the survey layer and the tool
// with their time alone.
#ifndef QUILLON_BENCH_MEASURE_HPP
#define QUILLON_BENCH_MEASURE_HPP

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

namespace bench {

// Counters a benchmark sets after its loop, read back by the table.
constexpr const char* NS_PER_CALL = "ns";
constexpr const char* FLOOR_NS_PER_CALL = "floor_ns";
constexpr const char* RATIO = "ratio";
constexpr const char* SPREAD = "spread";
constexpr const char* CASES = "cases";

inline void set_counter(benchmark::State& state, const char* name, double value)
{
    state.counters[name] = benchmark::Counter(value);
}

// The median of some samples (the middle one, or the mean of the middle two).
inline double median(std::vector<double> samples)
{
    if (samples.empty()) {
        return 0.0;
    }
    std::sort(samples.begin(), samples.end());
    const size_t n = samples.size();
    return n % 2 == 1 ? samples[n / 2] : 0.5 * (samples[n / 2 - 1] + samples[n / 2]);
}

// The spread of samples about their median: half the interquartile range
// over the median.
inline double relative_spread(std::vector<double> samples)
{
    if (samples.size() < 4) {
        return 0.0;
    }
    std::sort(samples.begin(), samples.end());
    const size_t n = samples.size();
    const double q1 = samples[n / 4];
    const double q3 = samples[(3 * n) / 4];
    const double mid = median(samples);
    return mid > 0.0 ? 0.5 * (q3 - q1) / mid : 0.0;
}

// Registers the benchmarks of the survey layer (survey_bench.cpp).
void register_survey_benchmarks();

// Registers the end-to-end benchmark of the office tool, when it is built
// (tool_bench.cpp).
void register_tool_benchmarks();

} // namespace bench

#endif
