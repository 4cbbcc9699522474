// The survey layer: a free station from 10 and from 100 sightings, and
// points located on an alignment of 100 elements. Times per call; the
// rigorous computations have no floor of library calls worth the name (their
// iterations decide their cost).
#include "measure.hpp"

#include "quillon.h"
#include "quillon/survey.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <vector>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

// A small deterministic stream for the synthetic observations.
class Stream {
  public:
    explicit Stream(std::uint64_t seed) : state_(seed) {}
    double uniform(double lo, double hi)
    {
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        const double unit = static_cast<double>(state_ >> 11) * 0x1p-53;
        return lo + (hi - lo) * unit;
    }

  private:
    std::uint64_t state_;
};

// Sightings from a station at (5000, 2000, 300) to points 40 to 600 m away
// all round, observed with a 1" instrument and a 2 mm distance meter; the
// circle's zero points at azimuth 37 degrees.
struct FreeStation {
    std::vector<qs_sighting> sightings;
    qs_free_station_options options{};
    std::vector<qs_sighting_result> residuals;
};

FreeStation free_station_case(size_t count)
{
    constexpr double station_x = 5000.0;
    constexpr double station_y = 2000.0;
    constexpr double station_h = 300.0;
    constexpr double instrument = 1.55;
    constexpr double orientation = 37.0 * 3600.0;
    FreeStation c;
    Stream stream(count);
    for (size_t i = 0; i < count; ++i) {
        const double bearing = 2.0 * M_PI * (static_cast<double>(i) + stream.uniform(0.0, 0.8)) /
                               static_cast<double>(count);
        const double distance = stream.uniform(40.0, 600.0);
        qs_sighting s{};
        s.x = station_x + distance * std::cos(bearing);
        s.y = station_y + distance * std::sin(bearing);
        s.h = station_h + stream.uniform(-15.0, 15.0);
        s.target_height = 1.3;
        const double rise = (s.h + s.target_height) - (station_h + instrument);
        double direction = bearing * QS_RHO_SEC - orientation + stream.uniform(-1.0, 1.0);
        direction = std::fmod(direction + 2.0 * 1296000.0, 1296000.0);
        s.direction = direction;
        s.zenith = std::atan2(distance, rise) * QS_RHO_SEC + stream.uniform(-1.5, 1.5);
        s.slope_distance = std::hypot(distance, rise) + stream.uniform(-0.002, 0.002);
        s.has_distance = 1;
        s.has_zenith = 1;
        c.sightings.push_back(s);
    }
    c.options.instrument_height = instrument;
    c.options.sigma_direction = 1.0;
    c.options.sigma_zenith = 1.5;
    c.options.sigma_distance_mm = 2.0;
    c.options.sigma_distance_ppm = 2.0;
    c.options.refraction = 0.13;
    c.options.earth_radius = QS_EARTH_RADIUS;
    c.options.blunder_threshold = QS_BLUNDER_THRESHOLD;
    c.options.curvature = 0;
    c.options.max_iterations = 20;
    c.residuals.resize(count);
    return c;
}

void run_free_station(benchmark::State& state, size_t count)
{
    FreeStation c = free_station_case(count);
    qs_free_station_result result{};
    std::vector<double> samples;
    for (auto _ : state) {
        const auto start = Clock::now();
        const qs_status status = qs_free_station(c.sightings.data(), c.sightings.size(), &c.options,
                                                 &result, c.residuals.data());
        const auto stop = Clock::now();
        benchmark::DoNotOptimize(result);
        if (status != QS_OK) {
            state.SkipWithError(qs_status_message(status));
            return;
        }
        const double t = std::chrono::duration<double>(stop - start).count();
        state.SetIterationTime(t);
        samples.push_back(t);
    }
    set_counter(state, NS_PER_CALL, median(samples) * 1e9);
    set_counter(state, CASES, 1.0);
}

// An alignment of 100 elements: straights, entry spirals, arcs and exit
// spirals in turn, turning right and left, from the survey layer's builder.
std::vector<HElement> alignment_of(size_t elements)
{
    std::vector<HElement> table(elements + 1);
    Stream stream(elements);
    for (size_t i = 0; i < elements; ++i) {
        HElement& e = table[i];
        const size_t group = i / 4;
        const unsigned char turn = group % 2 == 0 ? 1 : 0;
        const double radius = 400.0 + 100.0 * static_cast<double>(group % 5);
        switch (i % 4) {
        case 0: e.Type = 1, e.Length = stream.uniform(150.0, 400.0); break;
        case 1: e.Type = 3, e.Length = 80.0, e.Radius = radius, e.Turn = turn, e.Spiral = 0; break;
        case 2:
            e.Type = 2, e.Length = stream.uniform(100.0, 300.0), e.Radius = radius, e.Turn = turn;
            break;
        default: e.Type = 3, e.Length = 80.0, e.Radius = radius, e.Turn = turn, e.Spiral = 1; break;
        }
    }
    table[0].X = 5000.0;
    table[0].Y = 2000.0;
    table[0].Azimuth = 100000.0;
    table[0].Chainage = 0.0;
    if (qs_alignment_build(table.data(), table.size(), table.data()) != QS_OK) {
        table.clear();
    }
    return table;
}

void run_locate(benchmark::State& state, size_t elements)
{
    const std::vector<HElement> table = alignment_of(elements);
    if (table.empty()) {
        state.SkipWithError("alignment not built");
        return;
    }
    // Points either side of the centre line, all along it.
    Stream stream(7);
    std::vector<qs_station_offset> points;
    const double end = table.back().Chainage;
    for (int k = 0; k < 64; ++k) {
        qs_station_offset p{};
        if (qs_alignment_point(table.data(), table.size(), stream.uniform(0.0, end),
                               stream.uniform(-30.0, 30.0), &p) == QS_OK) {
            points.push_back(p);
        }
    }
    std::vector<double> samples;
    for (auto _ : state) {
        const auto start = Clock::now();
        for (const qs_station_offset& p : points) {
            qs_station_offset found;
            const qs_status status =
                qs_alignment_locate(table.data(), table.size(), p.x, p.y, &found);
            benchmark::DoNotOptimize(status);
            benchmark::DoNotOptimize(found);
        }
        const auto stop = Clock::now();
        const double t = std::chrono::duration<double>(stop - start).count();
        state.SetIterationTime(t);
        samples.push_back(t / static_cast<double>(points.size()));
    }
    set_counter(state, NS_PER_CALL, median(samples) * 1e9);
    set_counter(state, CASES, static_cast<double>(points.size()));
}

} // namespace

void register_survey_benchmarks()
{
    benchmark::RegisterBenchmark("qs_free_station/10", run_free_station, size_t{10})
        ->UseManualTime();
    benchmark::RegisterBenchmark("qs_free_station/100", run_free_station, size_t{100})
        ->UseManualTime();
    benchmark::RegisterBenchmark("qs_alignment_locate/100", run_locate, size_t{100})
        ->UseManualTime();
}

} // namespace bench
