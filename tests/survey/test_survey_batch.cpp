// Polar points and joins with the true pi, and the batches: every element of
// a batch is the single function's result to the bit, a bad element leaves
// every output alone, and a point the single function cannot place gets NaN.
#include "bits.hpp"
#include "records.hpp"
#include "survey_road_support.hpp"

#include <cstdint>
#include <vector>

namespace {

using qtest::INF;
using qtest::NaN;
using qtest::sentinel_double;

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
        qs_join_result join{};
        ASSERT_EQ(qs_join(&c.from, &c.to, &join), QS_OK) << c.name;
        EXPECT_NEAR(join.azimuth, c.azimuth, 1e-9) << c.name;
        EXPECT_GE(join.azimuth, 0.0) << c.name;
        EXPECT_LT(join.azimuth, 1296000.0) << c.name;
        EXPECT_NEAR(join.horizontal_distance, c.horizontal_distance, 1e-12) << c.name;
        EXPECT_BITS(join.height_difference, c.to.H - c.from.H);
        EXPECT_NEAR(join.zenith, c.zenith, 1e-9) << c.name;
        EXPECT_NEAR(join.slope_distance,
                    std::sqrt(c.horizontal_distance * c.horizontal_distance +
                              join.height_difference * join.height_difference),
                    1e-12)
            << c.name;
    }
}

// The true pi puts due east and due south on whole quarter circles, where
// the device's pi leaves them a few thousandths of a second off.
TEST(SurveyPolar, QuarterCirclesAreExact)
{
    const SurveyPoint origin{0.0, 0.0, 0.0};
    const SurveyPoint east{0.0, 1.0, 0.0};
    const SurveyPoint south{-1.0, 0.0, 0.0};
    qs_join_result join{};
    ASSERT_EQ(qs_join(&origin, &east, &join), QS_OK);
    EXPECT_BITS(join.azimuth, 324000.0);
    ASSERT_EQ(qs_join(&origin, &south, &join), QS_OK);
    EXPECT_BITS(join.azimuth, 648000.0);
}

// A point set out is found again by the join, whatever the azimuth's fold.
TEST(SurveyPolar, PointSetOutIsJoinedAgain)
{
    const SurveyPoint station{5000.0, -2000.0, 312.5};
    const double azimuths[] = {0.0, 1.0, 324000.0, 700000.25, 1295999.999, -90000.0, 5e6};
    const double distances[] = {0.001, 12.5, 1000.0, 87654.321};
    for (double azimuth : azimuths) {
        for (double distance : distances) {
            SurveyPoint point{};
            ASSERT_EQ(qs_polar_point(&station, azimuth, distance, &point), QS_OK);
            EXPECT_BITS(point.H, station.H);
            qs_join_result join{};
            ASSERT_EQ(qs_join(&station, &point, &join), QS_OK);
            const double expected = std::fmod(std::fmod(azimuth, 1296000.0) + 1296000.0, 1296000.0);
            // Coordinates near 5000 m carry 1e-12 m of rounding: over the
            // shortest distance that is 2e-4 arc-seconds of direction.
            EXPECT_NEAR(roadtest::azimuth_difference(join.azimuth, expected), 0.0,
                        2.5e-10 / distance * QS_RHO_SEC)
                << azimuth << " " << distance;
            EXPECT_NEAR(join.horizontal_distance, distance, 1e-11) << azimuth << " " << distance;
        }
    }
}

TEST(SurveyPolar, NegativeDistanceSetsOutTheOppositeWay)
{
    const SurveyPoint station{10.0, 20.0, 0.0};
    SurveyPoint ahead{};
    SurveyPoint behind{};
    ASSERT_EQ(qs_polar_point(&station, 100000.0, -25.0, &behind), QS_OK);
    ASSERT_EQ(qs_polar_point(&station, 100000.0 + 648000.0, 25.0, &ahead), QS_OK);
    EXPECT_NEAR(behind.X, ahead.X, 1e-12);
    EXPECT_NEAR(behind.Y, ahead.Y, 1e-12);
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
        SurveyPoint out = qtest::sentinel_filled<SurveyPoint>();
        EXPECT_EQ(qs_polar_point(&c.from, c.azimuth, c.distance, &out), QS_BAD_ARGUMENT) << c.name;
        EXPECT_TRUE(qtest::untouched(out)) << c.name;
    }
    SurveyPoint edge{};
    const SurveyPoint origin{0, 0, 0};
    EXPECT_EQ(qs_polar_point(&origin, 0.0, QS_MAX_LENGTH, &edge), QS_OK);
    EXPECT_EQ(qs_polar_point(&origin, 0.0, -QS_MAX_LENGTH, &edge), QS_OK);
}

TEST(SurveyPolar, JoinRefusesCoincidentAndBadPoints)
{
    const SurveyPoint a{100.0, 200.0, 0.0};
    const SurveyPoint plumb{100.0, 200.0, 50.0};
    const SurveyPoint bad[] = {{NaN, 0, 0}, {0, -INF, 0}, {0, 0, 1.5e9}};
    qs_join_result out = qtest::sentinel_filled<qs_join_result>();
    EXPECT_EQ(qs_join(&a, &plumb, &out), QS_SINGULAR);
    EXPECT_TRUE(qtest::untouched(out));
    for (const SurveyPoint& p : bad) {
        EXPECT_EQ(qs_join(&a, &p, &out), QS_BAD_ARGUMENT);
        EXPECT_EQ(qs_join(&p, &a, &out), QS_BAD_ARGUMENT);
        EXPECT_TRUE(qtest::untouched(out));
    }
    // A step of one unit in the last place is a direction.
    const SurveyPoint next{std::nextafter(100.0, INF), 200.0, 0.0};
    EXPECT_EQ(qs_join(&a, &next, &out), QS_OK);
    EXPECT_BITS(out.azimuth, 0.0);
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
    std::vector<double> x(n), y(n);
    ASSERT_EQ(qs_polar_points(&station, azimuths.data(), distances.data(), n, x.data(), y.data()),
              QS_OK);
    for (std::size_t i = 0; i < n; ++i) {
        SurveyPoint single{};
        ASSERT_EQ(qs_polar_point(&station, azimuths[i], distances[i], &single), QS_OK);
        ASSERT_BITS(x[i], single.X);
        ASSERT_BITS(y[i], single.Y);
    }
    // In place: the outputs written over the inputs.
    std::vector<double> a = azimuths;
    std::vector<double> d = distances;
    ASSERT_EQ(qs_polar_points(&station, a.data(), d.data(), n, a.data(), d.data()), QS_OK);
    for (std::size_t i = 0; i < n; ++i) {
        ASSERT_BITS(a[i], x[i]);
        ASSERT_BITS(d[i], y[i]);
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
    ASSERT_EQ(qs_joins(&station, x.data(), y.data(), n, azimuths.data(), distances.data()), QS_OK);
    for (std::size_t i = 0; i < n; ++i) {
        const SurveyPoint to{x[i], y[i], 0.0};
        qs_join_result single{};
        if (i == 7) {
            EXPECT_EQ(qs_join(&station, &to, &single), QS_SINGULAR);
            EXPECT_TRUE(std::isnan(azimuths[i]));
            EXPECT_BITS(distances[i], 0.0);
            continue;
        }
        ASSERT_EQ(qs_join(&station, &to, &single), QS_OK);
        ASSERT_BITS(azimuths[i], single.azimuth);
        ASSERT_BITS(distances[i], single.horizontal_distance);
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
    ASSERT_EQ(qs_alignment_locate_many(table.data(), table.size(), x.data(), y.data(), n,
                                       chainages.data(), offsets.data()),
              QS_OK);
    std::size_t outside = 0;
    for (std::size_t i = 0; i < n; ++i) {
        qs_station_offset single = qtest::sentinel_filled<qs_station_offset>();
        const qs_status status =
            qs_alignment_locate(table.data(), table.size(), x[i], y[i], &single);
        if (status == QS_OUTSIDE_ALIGNMENT) {
            ++outside;
            EXPECT_TRUE(std::isnan(chainages[i])) << i;
            EXPECT_TRUE(std::isnan(offsets[i])) << i;
            continue;
        }
        ASSERT_EQ(status, QS_OK);
        ASSERT_BITS(chainages[i], single.chainage);
        ASSERT_BITS(offsets[i], single.offset);
    }
    EXPECT_GE(outside, 1u);
    EXPECT_LT(outside, n / 2);
}

// A bad element anywhere, the last one included, refuses the whole batch and
// leaves every output element alone.
TEST(SurveyBatch, OneBadElementLeavesEveryOutputAlone)
{
    const SurveyPoint station{0.0, 0.0, 0.0};
    const SurveyPoint bad_station{0.0, NaN, 0.0};
    const std::vector<HElement> table =
        roadtest::exact_table(roadtest::sample_road(), roadtest::ROAD_X, roadtest::ROAD_Y,
                              roadtest::ROAD_AZIMUTH, roadtest::ROAD_CHAINAGE);
    std::vector<HElement> broken = table;
    broken[3].Length = -1.0;
    const std::size_t n = 5;
    const double bad_values[] = {NaN, INF, -INF, std::nextafter(QS_MAX_LENGTH, INF)};
    for (double bad : bad_values) {
        for (std::size_t at : {std::size_t{0}, n - 1}) {
            std::vector<double> good(n, 10.0);
            std::vector<double> spoiled = good;
            spoiled[at] = bad;
            std::vector<double> a(n, sentinel_double()), b(n, sentinel_double());
            auto untouched = [&] {
                for (std::size_t i = 0; i < n; ++i) {
                    if (!qtest::same_double(a[i], sentinel_double()) ||
                        !qtest::same_double(b[i], sentinel_double())) {
                        return false;
                    }
                }
                return true;
            };
            if (!std::isfinite(bad)) { // any finite azimuth is taken
                EXPECT_EQ(
                    qs_polar_points(&station, spoiled.data(), good.data(), n, a.data(), b.data()),
                    QS_BAD_ARGUMENT);
            }
            EXPECT_EQ(qs_polar_points(&station, good.data(), spoiled.data(), n, a.data(), b.data()),
                      QS_BAD_ARGUMENT);
            EXPECT_EQ(qs_joins(&station, spoiled.data(), good.data(), n, a.data(), b.data()),
                      QS_BAD_ARGUMENT);
            EXPECT_EQ(qs_joins(&station, good.data(), spoiled.data(), n, a.data(), b.data()),
                      QS_BAD_ARGUMENT);
            EXPECT_EQ(qs_alignment_locate_many(table.data(), table.size(), good.data(),
                                               spoiled.data(), n, a.data(), b.data()),
                      QS_BAD_ARGUMENT);
            EXPECT_TRUE(untouched()) << bad << " at " << at;
        }
    }
    std::vector<double> good(n, 10.0);
    std::vector<double> a(n, sentinel_double()), b(n, sentinel_double());
    EXPECT_EQ(qs_polar_points(&bad_station, good.data(), good.data(), n, a.data(), b.data()),
              QS_BAD_ARGUMENT);
    EXPECT_EQ(qs_joins(&bad_station, good.data(), good.data(), n, a.data(), b.data()),
              QS_BAD_ARGUMENT);
    EXPECT_EQ(qs_alignment_locate_many(broken.data(), broken.size(), good.data(), good.data(), n,
                                       a.data(), b.data()),
              QS_BAD_ARGUMENT);
    EXPECT_EQ(
        qs_alignment_locate_many(table.data(), 1, good.data(), good.data(), n, a.data(), b.data()),
        QS_BAD_ARGUMENT);
    for (std::size_t i = 0; i < n; ++i) {
        EXPECT_BITS(a[i], sentinel_double());
        EXPECT_BITS(b[i], sentinel_double());
    }
}

// An empty batch reads and writes nothing; a count beyond the bound is
// refused before any array is read (null arrays stand in for them here).
TEST(SurveyBatch, EmptyAndOversizedCounts)
{
    const SurveyPoint station{0.0, 0.0, 0.0};
    const std::vector<HElement> table =
        roadtest::exact_table(roadtest::sample_road(), roadtest::ROAD_X, roadtest::ROAD_Y,
                              roadtest::ROAD_AZIMUTH, roadtest::ROAD_CHAINAGE);
    const std::size_t oversized = static_cast<std::size_t>(QS_MAX_BATCH) + 1;
    EXPECT_EQ(qs_polar_points(&station, nullptr, nullptr, 0, nullptr, nullptr), QS_OK);
    EXPECT_EQ(qs_joins(&station, nullptr, nullptr, 0, nullptr, nullptr), QS_OK);
    EXPECT_EQ(
        qs_alignment_locate_many(table.data(), table.size(), nullptr, nullptr, 0, nullptr, nullptr),
        QS_OK);
    EXPECT_EQ(qs_polar_points(&station, nullptr, nullptr, oversized, nullptr, nullptr),
              QS_BAD_ARGUMENT);
    EXPECT_EQ(qs_joins(&station, nullptr, nullptr, oversized, nullptr, nullptr), QS_BAD_ARGUMENT);
    EXPECT_EQ(qs_alignment_locate_many(table.data(), table.size(), nullptr, nullptr, oversized,
                                       nullptr, nullptr),
              QS_BAD_ARGUMENT);
}

} // namespace
