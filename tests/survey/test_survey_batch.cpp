// Polar points and joins with the true pi, and the batches: every element of
// a batch is the single function's result to the bit, a bad element leaves
// every output alone, and a point the single function cannot place gets NaN.
#include "check.hpp"
#include "records.hpp"
#include "survey_road_support.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace {

using qtest::Call;
using qtest::INF;
using qtest::NaN;

// Points on known directions. The true pi puts due north, east and south on
// whole quarter circles exactly; the rest within 1e-9 arc-seconds and 1e-12 m.
const struct {
    const char* name;
    SurveyPoint from, to;
    double azimuth, horizontal_distance, zenith;
    bool exact_azimuth;
} JOINS[] = {
    {"due north", {100.0, 200.0, 10.0}, {130.0, 200.0, 10.0}, 0.0, 30.0, 324000.0, true},
    {"due east", {100.0, 200.0, 10.0}, {100.0, 230.0, 10.0}, 324000.0, 30.0, 324000.0, true},
    {"due south", {100.0, 200.0, 10.0}, {70.0, 200.0, 10.0}, 648000.0, 30.0, 324000.0, true},
    {"due west", {100.0, 200.0, 10.0}, {100.0, 170.0, 10.0}, 972000.0, 30.0, 324000.0, false},
    {"north-east, rising 45 degrees",
     {0.0, 0.0, 0.0},
     {3.0, 4.0, 5.0},
     191268.36847496152,
     5.0,
     162000.0,
     false},
    {"south-west, falling 45 degrees",
     {0.0, 0.0, 0.0},
     {-1.0, -1.0, -1.4142135623730951},
     810000.0,
     1.4142135623730951,
     486000.0,
     false},
    {"one unit in the last place north",
     {100.0, 200.0, 0.0},
     {std::nextafter(100.0, INF), 200.0, 0.0},
     0.0,
     std::nextafter(100.0, INF) - 100.0,
     324000.0,
     true},
};

TEST(SurveyPolar, JoinsOnKnownDirections)
{
    for (const auto& c : JOINS) {
        const Call call("qs_join", c.name);
        qs_join_result join = qtest::sentinel_filled<qs_join_result>();
        ASSERT_STATUS(call, qs_join(&c.from, &c.to, &join), QS_OK);
        EXPECT_TRUE(roadtest::written_whole(join)) << call;
        if (c.exact_azimuth) {
            EXPECT_BITS(call, join.azimuth, c.azimuth);
        }
        EXPECT_WITHIN(call, join.azimuth, c.azimuth, 1e-9);
        EXPECT_WITHIN(call, join.horizontal_distance, c.horizontal_distance, 1e-12);
        EXPECT_BITS(call, join.height_difference, c.to.H - c.from.H);
        EXPECT_WITHIN(call, join.zenith, c.zenith, 1e-9);
        EXPECT_WITHIN(call, join.slope_distance,
                      std::hypot(c.horizontal_distance, join.height_difference), 1e-12);
    }
}

// A point set out is found again by the join, whatever the azimuth's fold.
TEST(SurveyPolar, PointSetOutIsJoinedAgain)
{
    const SurveyPoint station{5000.0, -2000.0, 312.5};
    for (double azimuth : {0.0, 1.0, 324000.0, 700000.25, 1295999.999, -90000.0, 5e6}) {
        for (double distance : {0.001, 12.5, 1000.0, 87654.321}) {
            const Call call("qs_polar_point",
                            std::to_string(azimuth) + " at " + std::to_string(distance));
            SurveyPoint point{};
            ASSERT_STATUS(call, qs_polar_point(&station, azimuth, distance, &point), QS_OK);
            EXPECT_BITS(call, point.H, station.H);
            qs_join_result join{};
            ASSERT_STATUS(call.of("qs_join"), qs_join(&station, &point, &join), QS_OK);
            const double expected = std::fmod(std::fmod(azimuth, 1296000.0) + 1296000.0, 1296000.0);
            // Coordinates near 5000 m carry 1e-12 m of rounding: over the
            // shortest distance that is 2e-4 arc-seconds of direction.
            EXPECT_WITHIN(call, roadtest::azimuth_difference(join.azimuth, expected), 0.0,
                          2.5e-10 / distance * QS_RHO_SEC);
            // The distance comes back within a few units in the last place
            // of the coordinates it was taken from (1.5e-11 m near 9e4 m).
            EXPECT_WITHIN(call, join.horizontal_distance, distance, 1e-11 + 4e-16 * distance);
        }
    }
}

TEST(SurveyPolar, NegativeDistanceSetsOutTheOppositeWay)
{
    const SurveyPoint station{10.0, 20.0, 0.0};
    const Call call("qs_polar_point", "negative distance");
    SurveyPoint ahead{}, behind{};
    ASSERT_STATUS(call, qs_polar_point(&station, 100000.0, -25.0, &behind), QS_OK);
    ASSERT_STATUS(call, qs_polar_point(&station, 100000.0 + 648000.0, 25.0, &ahead), QS_OK);
    EXPECT_WITHIN(call, behind.X, ahead.X, 1e-12);
    EXPECT_WITHIN(call, behind.Y, ahead.Y, 1e-12);
}

TEST(SurveyPolar, BadInputWritesNothing)
{
    const double beyond = std::nextafter(QS_MAX_LENGTH, INF);
    const struct {
        const char* name;
        SurveyPoint from;
        double azimuth, distance;
        qs_status status;
    } polars[] = {
        {"azimuth NaN", {0, 0, 0}, NaN, 1.0, QS_BAD_ARGUMENT},
        {"azimuth infinite", {0, 0, 0}, INF, 1.0, QS_BAD_ARGUMENT},
        {"distance NaN", {0, 0, 0}, 0.0, NaN, QS_BAD_ARGUMENT},
        {"distance beyond the bound", {0, 0, 0}, 0.0, beyond, QS_BAD_ARGUMENT},
        {"distance below the bound", {0, 0, 0}, 0.0, -beyond, QS_BAD_ARGUMENT},
        {"station X infinite", {INF, 0, 0}, 0.0, 1.0, QS_BAD_ARGUMENT},
        {"station Y beyond the bound", {0, 2e9, 0}, 0.0, 1.0, QS_BAD_ARGUMENT},
        {"station H NaN", {0, 0, NaN}, 0.0, 1.0, QS_BAD_ARGUMENT},
        {"distance on the bound", {0, 0, 0}, 0.0, QS_MAX_LENGTH, QS_OK},
        {"distance on the bound below", {0, 0, 0}, 0.0, -QS_MAX_LENGTH, QS_OK},
    };
    for (const auto& c : polars) {
        const Call call("qs_polar_point", c.name);
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        EXPECT_STATUS(call, qs_polar_point(&c.from, c.azimuth, c.distance, &out), c.status);
        EXPECT_WRITTEN_IF(call, out, c.status == QS_OK);
    }
    // Two points on one plumb line have no azimuth.
    const SurveyPoint a{100.0, 200.0, 0.0};
    const SurveyPoint plumb{100.0, 200.0, 50.0};
    qs_join_result out = qtest::sentinel_filled<qs_join_result>();
    EXPECT_STATUS(Call("qs_join", "plumb"), qs_join(&a, &plumb, &out), QS_SINGULAR);
    const SurveyPoint bad[] = {{NaN, 0, 0}, {0, -INF, 0}, {0, 0, 1.5e9}};
    for (const auto& [row, p] : qtest::rows("qs_join", bad)) {
        EXPECT_STATUS(row, qs_join(&a, &p, &out), QS_BAD_ARGUMENT);
        EXPECT_STATUS(row, qs_join(&p, &a, &out), QS_BAD_ARGUMENT);
    }
    EXPECT_TRUE(qtest::untouched(out));
}

// ---- batches ----------------------------------------------------------------

// A reproducible spread of values in [low, high).
std::vector<double> spread(std::size_t n, double low, double high, std::uint64_t seed)
{
    std::vector<double> values(n);
    std::uint64_t state = seed;
    for (double& v : values) {
        state = state * 6364136223846793005ull + 1442695040888963407ull;
        v = low + (high - low) * (static_cast<double>(state >> 11) / 9007199254740992.0);
    }
    return values;
}

const SurveyPoint STATION{4321.5, -876.25, 99.0};

const std::vector<HElement>& road() { return roadtest::sample_table(); }

// Azimuths over several circles both ways and distances of both signs, also
// computed in place over the inputs.
TEST(SurveyBatch, PolarPointsAreTheSingleResultsToTheBit)
{
    const std::size_t n = 2000;
    const std::vector<double> azimuths = spread(n, -3e6, 3e6, 1);
    const std::vector<double> distances = spread(n, -5000.0, 5000.0, 2);
    std::vector<double> x(n), y(n), a = azimuths, d = distances;
    ASSERT_STATUS(
        Call("qs_polar_points"),
        qs_polar_points(&STATION, azimuths.data(), distances.data(), n, x.data(), y.data()), QS_OK);
    ASSERT_STATUS(Call("qs_polar_points", "in place"),
                  qs_polar_points(&STATION, a.data(), d.data(), n, a.data(), d.data()), QS_OK);
    for (std::size_t i = 0; i < n; ++i) {
        const Call element("qs_polar_points", static_cast<std::ptrdiff_t>(i));
        SurveyPoint single{};
        ASSERT_STATUS(element.of("qs_polar_point"),
                      qs_polar_point(&STATION, azimuths[i], distances[i], &single), QS_OK);
        ASSERT_BITS(element, x[i], single.X);
        ASSERT_BITS(element, y[i], single.Y);
        ASSERT_BITS(element.at("in place"), a[i], single.X);
        ASSERT_BITS(element.at("in place"), d[i], single.Y);
    }
}

TEST(SurveyBatch, JoinsAreTheSingleResultsToTheBit)
{
    const std::size_t n = 2000;
    std::vector<double> x = spread(n, 3000.0, 6000.0, 3);
    std::vector<double> y = spread(n, -2000.0, 1000.0, 4);
    x[7] = STATION.X; // on the station in plan
    y[7] = STATION.Y;
    std::vector<double> azimuths(n), distances(n);
    ASSERT_STATUS(Call("qs_joins"),
                  qs_joins(&STATION, x.data(), y.data(), n, azimuths.data(), distances.data()),
                  QS_OK);
    for (std::size_t i = 0; i < n; ++i) {
        const Call element("qs_joins", static_cast<std::ptrdiff_t>(i));
        const SurveyPoint to{x[i], y[i], 0.0};
        qs_join_result single{};
        if (i == 7) {
            EXPECT_STATUS(element.of("qs_join"), qs_join(&STATION, &to, &single), QS_SINGULAR);
            EXPECT_TRUE(std::isnan(azimuths[i])) << element;
            EXPECT_BITS(element, distances[i], 0.0);
            continue;
        }
        ASSERT_STATUS(element.of("qs_join"), qs_join(&STATION, &to, &single), QS_OK);
        ASSERT_BITS(element, azimuths[i], single.azimuth);
        ASSERT_BITS(element, distances[i], single.horizontal_distance);
    }
}

// Points about the sample road, one far behind its start on the extension
// of the first straight: beyond both ends, it gets NaN.
TEST(SurveyBatch, LocateManyIsTheSingleResultsToTheBit)
{
    const std::size_t n = 500;
    std::vector<double> x = spread(n, 4800.0, 5800.0, 5);
    std::vector<double> y = spread(n, 1800.0, 2800.0, 6);
    x[0] = roadtest::ROAD_X - 1000.0 * std::cos(roadtest::ROAD_AZIMUTH * QS_RAD_PER_SEC);
    y[0] = roadtest::ROAD_Y - 1000.0 * std::sin(roadtest::ROAD_AZIMUTH * QS_RAD_PER_SEC);
    std::vector<double> chainages(n), offsets(n);
    ASSERT_STATUS(Call("qs_alignment_locate_many"),
                  qs_alignment_locate_many(road().data(), road().size(), x.data(), y.data(), n,
                                           chainages.data(), offsets.data()),
                  QS_OK);
    std::size_t outside = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const Call element("qs_alignment_locate_many", static_cast<std::ptrdiff_t>(i));
        qs_station_offset single = qtest::sentinel_filled<qs_station_offset>();
        if (qs_alignment_locate(road().data(), road().size(), x[i], y[i], &single) ==
            QS_OUTSIDE_ALIGNMENT) {
            ++outside;
            EXPECT_TRUE(std::isnan(chainages[i]) && std::isnan(offsets[i])) << element;
            continue;
        }
        ASSERT_BITS(element, chainages[i], single.chainage);
        ASSERT_BITS(element, offsets[i], single.offset);
    }
    EXPECT_GE(outside, 1u);
    EXPECT_LT(outside, n / 2);
}

// The three batches over arrays a and b (the inputs) into c and d, with the
// station or table given.
struct Batch {
    const char* function;
    qs_status (*run)(const SurveyPoint& station, const HElement* table, std::size_t records,
                     const double* a, const double* b, std::size_t count, double* c, double* d);
};

#define BATCH(call)                                                                                \
    [](const SurveyPoint& s, const HElement* t, std::size_t r, const double* a, const double* b,   \
       std::size_t n, double* c, double* d) {                                                      \
        (void)s, (void)t, (void)r;                                                                 \
        return call;                                                                               \
    }

const Batch BATCHES[] = {
    {"qs_polar_points", BATCH(qs_polar_points(&s, a, b, n, c, d))},
    {"qs_polar_points", BATCH(qs_polar_points(&s, b, a, n, c, d))},
    {"qs_joins", BATCH(qs_joins(&s, a, b, n, c, d))},
    {"qs_joins", BATCH(qs_joins(&s, b, a, n, c, d))},
    {"qs_alignment_locate_many", BATCH(qs_alignment_locate_many(t, r, a, b, n, c, d))},
    {"qs_alignment_locate_many", BATCH(qs_alignment_locate_many(t, r, b, a, n, c, d))},
};

// A bad element anywhere, the last one included, a bad station or a bad
// table refuses the whole batch and leaves every output element alone. (Any
// finite azimuth is taken, so a polar batch is refused only for its
// distances there.) An empty batch reads and writes nothing; a count beyond
// the bound is refused before any array is read (null arrays stand in).
TEST(SurveyBatch, BadInputLeavesEveryOutputAlone)
{
    constexpr std::size_t n = 5;
    const SurveyPoint bad_station{0.0, NaN, 0.0};
    std::vector<HElement> broken = road();
    broken[3].Length = -1.0;
    const std::vector<double> good(n, 10.0);
    const std::size_t oversized = static_cast<std::size_t>(QS_MAX_BATCH) + 1;
    for (const auto& [row, batch] : qtest::rows(BATCHES)) {
        const Call call = row.of(batch.function);
        const auto refused = [&](const Call& where, const SurveyPoint& station,
                                 const std::vector<HElement>& table, std::size_t records,
                                 const std::vector<double>& b) {
            double c[n], d[n];
            qtest::fill_sentinel(c);
            qtest::fill_sentinel(d);
            EXPECT_STATUS(where,
                          batch.run(station, table.data(), records, good.data(), b.data(), n, c, d),
                          QS_BAD_ARGUMENT);
            EXPECT_UNTOUCHED(where, c);
            EXPECT_UNTOUCHED(where, d);
        };
        for (double bad : {NaN, INF, -INF, std::nextafter(QS_MAX_LENGTH, INF)}) {
            if (std::isfinite(bad) && &batch == &BATCHES[1]) {
                continue; // an azimuth beyond QS_MAX_LENGTH is still an angle
            }
            for (std::size_t at : {std::size_t{0}, n - 1}) {
                std::vector<double> spoiled = good;
                spoiled[at] = bad;
                refused(call.at(std::to_string(bad) + " at " + std::to_string(at)), STATION, road(),
                        road().size(), spoiled);
            }
        }
        if (std::string(batch.function) == "qs_alignment_locate_many") {
            refused(call.at("bad table"), STATION, broken, broken.size(), good);
            refused(call.at("one record"), STATION, road(), 1, good);
        } else {
            refused(call.at("bad station"), bad_station, road(), road().size(), good);
        }
        EXPECT_STATUS(
            call.at("empty"),
            batch.run(STATION, road().data(), road().size(), nullptr, nullptr, 0, nullptr, nullptr),
            QS_OK);
        EXPECT_STATUS(call.at("oversized"),
                      batch.run(STATION, road().data(), road().size(), nullptr, nullptr, oversized,
                                nullptr, nullptr),
                      QS_BAD_ARGUMENT);
    }
}

} // namespace
