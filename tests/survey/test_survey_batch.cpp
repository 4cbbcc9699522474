// Polar points and joins with the true pi, and the batches: every element of
// a batch is the single function's result to the bit, a bad element leaves
// every output alone, and a point the single function cannot place gets NaN.
#include "check.hpp"
#include "records.hpp"
#include "survey_road_support.hpp"

#include <cstdint>
#include <vector>

namespace {

using qtest::INF;
using qtest::NaN;

// Points on known directions, whose azimuths and distances are exact or
// known in closed form. Tolerances: 1e-9 arc-seconds and 1e-12 m.
struct JoinCase {
    const char* name;
    SurveyPoint from;
    SurveyPoint to;
    double azimuth;
    double horizontal_distance;
    double zenith;
};

const JoinCase JOINS[] = {
    {"due north", {100.0, 200.0, 10.0}, {130.0, 200.0, 10.0}, 0.0, 30.0, 324000.0},
    {"due east", {100.0, 200.0, 10.0}, {100.0, 230.0, 10.0}, 324000.0, 30.0, 324000.0},
    {"due south", {100.0, 200.0, 10.0}, {70.0, 200.0, 10.0}, 648000.0, 30.0, 324000.0},
    {"due west", {100.0, 200.0, 10.0}, {100.0, 170.0, 10.0}, 972000.0, 30.0, 324000.0},
    {"north-east, rising 45 degrees",
     {0.0, 0.0, 0.0},
     {3.0, 4.0, 5.0},
     191268.36847496152,
     5.0,
     162000.0},
    {"south-west, falling 45 degrees",
     {0.0, 0.0, 0.0},
     {-1.0, -1.0, -1.4142135623730951},
     810000.0,
     1.4142135623730951,
     486000.0},
};

TEST(SurveyPolar, JoinsOnKnownDirections)
{
    for (const JoinCase& c : JOINS) {
        const qtest::Call call("qs_join", c.name);
        qs_join_result join{};
        ASSERT_STATUS(call, qs_join(&c.from, &c.to, &join), QS_OK);
        EXPECT_WITHIN(call, join.azimuth, c.azimuth, 1e-9);
        EXPECT_TRUE(join.azimuth >= 0.0 && join.azimuth < 1296000.0) << call;
        EXPECT_WITHIN(call, join.horizontal_distance, c.horizontal_distance, 1e-12);
        EXPECT_BITS(call, join.height_difference, c.to.H - c.from.H);
        EXPECT_WITHIN(call, join.zenith, c.zenith, 1e-9);
        EXPECT_WITHIN(call, join.slope_distance,
                      std::sqrt(c.horizontal_distance * c.horizontal_distance +
                                join.height_difference * join.height_difference),
                      1e-12);
    }
}

// The true pi puts due east and due south on whole quarter circles, where
// the device's pi leaves them a few thousandths of a second off.
TEST(SurveyPolar, QuarterCirclesAreExact)
{
    const SurveyPoint origin{0.0, 0.0, 0.0};
    const SurveyPoint east{0.0, 1.0, 0.0};
    const SurveyPoint south{-1.0, 0.0, 0.0};
    const qtest::Call call("qs_join", "quarter circles");
    qs_join_result join{};
    ASSERT_STATUS(call, qs_join(&origin, &east, &join), QS_OK);
    EXPECT_BITS(call.at("east"), join.azimuth, 324000.0);
    ASSERT_STATUS(call, qs_join(&origin, &south, &join), QS_OK);
    EXPECT_BITS(call.at("south"), join.azimuth, 648000.0);
}

// A point set out is found again by the join, whatever the azimuth's fold.
TEST(SurveyPolar, PointSetOutIsJoinedAgain)
{
    const SurveyPoint station{5000.0, -2000.0, 312.5};
    const double azimuths[] = {0.0, 1.0, 324000.0, 700000.25, 1295999.999, -90000.0, 5e6};
    const double distances[] = {0.001, 12.5, 1000.0, 87654.321};
    for (double azimuth : azimuths) {
        for (double distance : distances) {
            const qtest::Call call("qs_polar_point",
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
    const qtest::Call call("qs_polar_point", "negative distance");
    SurveyPoint ahead{};
    SurveyPoint behind{};
    ASSERT_STATUS(call, qs_polar_point(&station, 100000.0, -25.0, &behind), QS_OK);
    ASSERT_STATUS(call, qs_polar_point(&station, 100000.0 + 648000.0, 25.0, &ahead), QS_OK);
    EXPECT_WITHIN(call, behind.X, ahead.X, 1e-12);
    EXPECT_WITHIN(call, behind.Y, ahead.Y, 1e-12);
}

struct BadPolar {
    const char* name;
    SurveyPoint from;
    double azimuth;
    double distance;
};

const BadPolar BAD_POLARS[] = {
    {"azimuth NaN", {0, 0, 0}, NaN, 1.0},
    {"azimuth infinite", {0, 0, 0}, INF, 1.0},
    {"distance NaN", {0, 0, 0}, 0.0, NaN},
    {"distance beyond the bound", {0, 0, 0}, 0.0, std::nextafter(QS_MAX_LENGTH, INF)},
    {"distance below the bound", {0, 0, 0}, 0.0, -std::nextafter(QS_MAX_LENGTH, INF)},
    {"station X infinite", {INF, 0, 0}, 0.0, 1.0},
    {"station Y beyond the bound", {0, 2e9, 0}, 0.0, 1.0},
    {"station H NaN", {0, 0, NaN}, 0.0, 1.0},
};

TEST(SurveyPolar, BadInputWritesNothing)
{
    for (const BadPolar& c : BAD_POLARS) {
        const qtest::Call call("qs_polar_point", c.name);
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        EXPECT_STATUS(call, qs_polar_point(&c.from, c.azimuth, c.distance, &out), QS_BAD_ARGUMENT);
        EXPECT_UNTOUCHED(call, out);
    }
    const qtest::Call call("qs_polar_point", "distance on the bound");
    SurveyPoint edge{};
    const SurveyPoint origin{0, 0, 0};
    EXPECT_STATUS(call, qs_polar_point(&origin, 0.0, QS_MAX_LENGTH, &edge), QS_OK);
    EXPECT_STATUS(call, qs_polar_point(&origin, 0.0, -QS_MAX_LENGTH, &edge), QS_OK);
}

TEST(SurveyPolar, JoinRefusesCoincidentAndBadPoints)
{
    const SurveyPoint a{100.0, 200.0, 0.0};
    const SurveyPoint plumb{100.0, 200.0, 50.0};
    const SurveyPoint bad[] = {{NaN, 0, 0}, {0, -INF, 0}, {0, 0, 1.5e9}};
    const qtest::Call call("qs_join");
    qs_join_result out = qtest::sentinel_filled<qs_join_result>();
    EXPECT_STATUS(call.at("plumb"), qs_join(&a, &plumb, &out), QS_SINGULAR);
    EXPECT_TRUE(qtest::untouched(out)) << call.at("plumb");
    for (const auto& [row, p] : qtest::rows("qs_join", bad)) {
        EXPECT_STATUS(row, qs_join(&a, &p, &out), QS_BAD_ARGUMENT);
        EXPECT_STATUS(row, qs_join(&p, &a, &out), QS_BAD_ARGUMENT);
        EXPECT_TRUE(qtest::untouched(out)) << row;
    }
    // A step of one unit in the last place is a direction.
    const SurveyPoint next{std::nextafter(100.0, INF), 200.0, 0.0};
    EXPECT_STATUS(call.at("one unit north"), qs_join(&a, &next, &out), QS_OK);
    EXPECT_BITS(call.at("one unit north"), out.azimuth, 0.0);
}

// ---- batches ----------------------------------------------------------------

// A reproducible spread of values: azimuths over several circles both ways,
// distances of both signs, coordinates around a station.
std::vector<double> spread(std::size_t n, double low, double high, std::uint64_t seed)
{
    std::vector<double> values(n);
    std::uint64_t state = seed;
    for (double& v : values) {
        state = state * 6364136223846793005ull + 1442695040888963407ull;
        const double unit = static_cast<double>(state >> 11) / 9007199254740992.0;
        v = low + (high - low) * unit;
    }
    return values;
}

TEST(SurveyBatch, PolarPointsAreTheSingleResultsToTheBit)
{
    const SurveyPoint station{4321.5, -876.25, 99.0};
    const std::size_t n = 2000;
    const std::vector<double> azimuths = spread(n, -3e6, 3e6, 1);
    const std::vector<double> distances = spread(n, -5000.0, 5000.0, 2);
    const qtest::Call call("qs_polar_points");
    std::vector<double> x(n), y(n);
    ASSERT_STATUS(
        call, qs_polar_points(&station, azimuths.data(), distances.data(), n, x.data(), y.data()),
        QS_OK);
    for (std::size_t i = 0; i < n; ++i) {
        const qtest::Call element("qs_polar_points", static_cast<std::ptrdiff_t>(i));
        SurveyPoint single{};
        ASSERT_STATUS(element.of("qs_polar_point"),
                      qs_polar_point(&station, azimuths[i], distances[i], &single), QS_OK);
        ASSERT_BITS(element, x[i], single.X);
        ASSERT_BITS(element, y[i], single.Y);
    }
    // In place: the outputs written over the inputs.
    std::vector<double> a = azimuths;
    std::vector<double> d = distances;
    ASSERT_STATUS(call.at("in place"),
                  qs_polar_points(&station, a.data(), d.data(), n, a.data(), d.data()), QS_OK);
    for (std::size_t i = 0; i < n; ++i) {
        ASSERT_BITS(call.at("in place, element " + std::to_string(i)), a[i], x[i]);
        ASSERT_BITS(call.at("in place, element " + std::to_string(i)), d[i], y[i]);
    }
}

TEST(SurveyBatch, JoinsAreTheSingleResultsToTheBit)
{
    const SurveyPoint station{4321.5, -876.25, 99.0};
    const std::size_t n = 2000;
    std::vector<double> x = spread(n, 3000.0, 6000.0, 3);
    std::vector<double> y = spread(n, -2000.0, 1000.0, 4);
    x[7] = station.X; // on the station in plan
    y[7] = station.Y;
    std::vector<double> azimuths(n), distances(n);
    ASSERT_STATUS(qtest::Call("qs_joins"),
                  qs_joins(&station, x.data(), y.data(), n, azimuths.data(), distances.data()),
                  QS_OK);
    for (std::size_t i = 0; i < n; ++i) {
        const qtest::Call element("qs_joins", static_cast<std::ptrdiff_t>(i));
        const SurveyPoint to{x[i], y[i], 0.0};
        qs_join_result single{};
        if (i == 7) {
            EXPECT_STATUS(element.of("qs_join"), qs_join(&station, &to, &single), QS_SINGULAR);
            EXPECT_TRUE(std::isnan(azimuths[i]));
            EXPECT_BITS(element, distances[i], 0.0);
            continue;
        }
        ASSERT_STATUS(element.of("qs_join"), qs_join(&station, &to, &single), QS_OK);
        ASSERT_BITS(element, azimuths[i], single.azimuth);
        ASSERT_BITS(element, distances[i], single.horizontal_distance);
    }
}

TEST(SurveyBatch, LocateManyIsTheSingleResultsToTheBit)
{
    const std::vector<HElement> table =
        roadtest::exact_table(roadtest::sample_road(), roadtest::ROAD_X, roadtest::ROAD_Y,
                              roadtest::ROAD_AZIMUTH, roadtest::ROAD_CHAINAGE);
    const std::size_t n = 500;
    std::vector<double> x = spread(n, 4800.0, 5800.0, 5);
    std::vector<double> y = spread(n, 1800.0, 2800.0, 6);
    // Far behind the start, on the extension of the first straight.
    x[0] = roadtest::ROAD_X - 1000.0 * std::cos(roadtest::ROAD_AZIMUTH * QS_RAD_PER_SEC);
    y[0] = roadtest::ROAD_Y - 1000.0 * std::sin(roadtest::ROAD_AZIMUTH * QS_RAD_PER_SEC);
    std::vector<double> chainages(n), offsets(n);
    ASSERT_STATUS(qtest::Call("qs_alignment_locate_many"),
                  qs_alignment_locate_many(table.data(), table.size(), x.data(), y.data(), n,
                                           chainages.data(), offsets.data()),
                  QS_OK);
    std::size_t outside = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const qtest::Call element("qs_alignment_locate_many", static_cast<std::ptrdiff_t>(i));
        qs_station_offset single = qtest::sentinel_filled<qs_station_offset>();
        const qs_status status =
            qs_alignment_locate(table.data(), table.size(), x[i], y[i], &single);
        if (status == QS_OUTSIDE_ALIGNMENT) {
            ++outside;
            EXPECT_TRUE(std::isnan(chainages[i])) << element;
            EXPECT_TRUE(std::isnan(offsets[i])) << element;
            continue;
        }
        ASSERT_STATUS(element.of("qs_alignment_locate"), status, QS_OK);
        ASSERT_BITS(element, chainages[i], single.chainage);
        ASSERT_BITS(element, offsets[i], single.offset);
    }
    EXPECT_GE(outside, 1u);
    EXPECT_LT(outside, n / 2);
}

// The three batches over arrays a and b (the inputs) into c and d.
struct Batch {
    const char* function;
    qs_status (*run)(const double* a, const double* b, std::size_t count, double* c, double* d);
};

const SurveyPoint STATION{0.0, 0.0, 0.0};

const std::vector<HElement>& road()
{
    static const std::vector<HElement> table =
        roadtest::exact_table(roadtest::sample_road(), roadtest::ROAD_X, roadtest::ROAD_Y,
                              roadtest::ROAD_AZIMUTH, roadtest::ROAD_CHAINAGE);
    return table;
}

const Batch BATCHES[] = {
    {"qs_polar_points", [](const double* a, const double* b, std::size_t n, double* c,
                           double* d) { return qs_polar_points(&STATION, a, b, n, c, d); }},
    {"qs_polar_points", [](const double* a, const double* b, std::size_t n, double* c,
                           double* d) { return qs_polar_points(&STATION, b, a, n, c, d); }},
    {"qs_joins", [](const double* a, const double* b, std::size_t n, double* c,
                    double* d) { return qs_joins(&STATION, a, b, n, c, d); }},
    {"qs_joins", [](const double* a, const double* b, std::size_t n, double* c,
                    double* d) { return qs_joins(&STATION, b, a, n, c, d); }},
    {"qs_alignment_locate_many",
     [](const double* a, const double* b, std::size_t n, double* c, double* d) {
         return qs_alignment_locate_many(road().data(), road().size(), a, b, n, c, d);
     }},
    {"qs_alignment_locate_many",
     [](const double* a, const double* b, std::size_t n, double* c, double* d) {
         return qs_alignment_locate_many(road().data(), road().size(), b, a, n, c, d);
     }},
};

// A bad element anywhere, the last one included, refuses the whole batch and
// leaves every output element alone. (Any finite azimuth is taken, so a
// polar batch is refused only for its distances there.)
TEST(SurveyBatch, OneBadElementLeavesEveryOutputAlone)
{
    constexpr std::size_t n = 5;
    const double bad_values[] = {NaN, INF, -INF, std::nextafter(QS_MAX_LENGTH, INF)};
    for (const auto& [row, batch] : qtest::rows(BATCHES)) {
        const qtest::Call call = row.of(batch.function);
        for (double bad : bad_values) {
            if (std::isfinite(bad) && &batch == &BATCHES[1]) {
                continue; // an azimuth beyond QS_MAX_LENGTH is still an angle
            }
            for (std::size_t at : {std::size_t{0}, n - 1}) {
                std::vector<double> good(n, 10.0);
                std::vector<double> spoiled = good;
                spoiled[at] = bad;
                double c[n];
                double d[n];
                qtest::fill_sentinel(c);
                qtest::fill_sentinel(d);
                const qtest::Call where =
                    call.at(std::to_string(bad) + " at " + std::to_string(at));
                EXPECT_STATUS(where, batch.run(good.data(), spoiled.data(), n, c, d),
                              QS_BAD_ARGUMENT);
                EXPECT_UNTOUCHED(where, c);
                EXPECT_UNTOUCHED(where, d);
            }
        }
    }
}

TEST(SurveyBatch, BadStationOrTableLeavesEveryOutputAlone)
{
    const SurveyPoint bad_station{0.0, NaN, 0.0};
    std::vector<HElement> broken = road();
    broken[3].Length = -1.0;
    constexpr std::size_t n = 5;
    std::vector<double> good(n, 10.0);
    double c[n];
    double d[n];
    qtest::fill_sentinel(c);
    qtest::fill_sentinel(d);
    const qtest::Call call("bad station or table");
    EXPECT_STATUS(call.of("qs_polar_points"),
                  qs_polar_points(&bad_station, good.data(), good.data(), n, c, d),
                  QS_BAD_ARGUMENT);
    EXPECT_STATUS(call.of("qs_joins"), qs_joins(&bad_station, good.data(), good.data(), n, c, d),
                  QS_BAD_ARGUMENT);
    EXPECT_STATUS(
        call.of("qs_alignment_locate_many"),
        qs_alignment_locate_many(broken.data(), broken.size(), good.data(), good.data(), n, c, d),
        QS_BAD_ARGUMENT);
    EXPECT_STATUS(call.of("qs_alignment_locate_many").at("one record"),
                  qs_alignment_locate_many(road().data(), 1, good.data(), good.data(), n, c, d),
                  QS_BAD_ARGUMENT);
    EXPECT_UNTOUCHED(call, c);
    EXPECT_UNTOUCHED(call, d);
}

// An empty batch reads and writes nothing; a count beyond the bound is
// refused before any array is read (null arrays stand in for them here).
TEST(SurveyBatch, EmptyAndOversizedCounts)
{
    const std::size_t oversized = static_cast<std::size_t>(QS_MAX_BATCH) + 1;
    for (const auto& [row, batch] : qtest::rows(BATCHES)) {
        const qtest::Call call = row.of(batch.function);
        EXPECT_STATUS(call.at("empty"), batch.run(nullptr, nullptr, 0, nullptr, nullptr), QS_OK);
        EXPECT_STATUS(call.at("oversized"),
                      batch.run(nullptr, nullptr, oversized, nullptr, nullptr), QS_BAD_ARGUMENT);
    }
}

} // namespace
