// Free-station resection: distances from directions, the similarity fit with
// distances, and the orientation from one sighting.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>
#include <limits>
#include <vector>

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();

// A station and the known points it sights, with exact readings taken on a
// circle turned by `orientation` (azimuth = reading + orientation).
struct Sighting {
    std::vector<SurveyPoint> known;
    std::vector<AngleObservation> obs;
    std::vector<DistanceRecord> dists;
    std::vector<double> plan_distance;
};

Sighting sight_from(const SurveyPoint& station, const std::vector<SurveyPoint>& known,
                    double orientation)
{
    Sighting s;
    s.known = known;
    for (const SurveyPoint& p : known) {
        // Not wrapped into the circle: a full turn of 1296000 seconds is not
        // a full turn of the true pi.
        const double azimuth = std::atan2(p.Y - station.Y, p.X - station.X) * QUILLON_RHO_SEC;
        const double reading = azimuth - orientation;
        const double d = std::hypot(p.X - station.X, p.Y - station.Y);
        s.obs.push_back({reading, 324000.0, 0.0});
        s.dists.push_back({d, d, 0.0, 0.0});
        s.plan_distance.push_back(d);
    }
    return s;
}

const SurveyPoint STATION = {5000.0, 2000.0, 312.0};

// Points all round the station, in rising azimuth.
const std::vector<SurveyPoint> AROUND = {
    {5120.0, 2035.0, 0.0}, {5060.0, 2140.0, 0.0}, {4930.0, 2110.0, 0.0},
    {4890.0, 1950.0, 0.0}, {4990.0, 1870.0, 0.0}, {5080.0, 1930.0, 0.0},
};

} // namespace

TEST(ResectionByDirections, CountOutsideThreeToTwenty)
{
    std::vector<SurveyPoint> known(21, SurveyPoint{1.0, 2.0, 3.0});
    std::vector<AngleObservation> obs(21, AngleObservation{0.0, 0.0, 0.0});
    for (unsigned char n : {0, 1, 2, 21, 255}) {
        double distances[21];
        for (double& d : distances) {
            qtest::fill_sentinel(d);
        }
        EXPECT_EQ(LIB_RESA2D(obs.data(), known.data(), n, distances), 1) << int(n);
        for (const double& d : distances) {
            EXPECT_TRUE(qtest::untouched(d));
        }
    }
}

TEST(ResectionByDirections, RecoversDistancesToTheTruncation)
{
    // Three, four and five points, directions spanning less than a half
    // circle, from different circle orientations; the difference of the
    // unknown angles is cut to whole seconds, which costs a few tenths of a
    // millimetre at these distances.
    struct Case {
        std::vector<int> which;
        double orientation;
    };
    const Case cases[] = {
        {{0, 1, 2}, 0.0},
        {{0, 1, 2}, 400000.0},
        {{5, 0, 1, 2}, 1000000.0},
        {{4, 5, 0, 1, 2}, 12345.6},
    };
    for (const Case& c : cases) {
        std::vector<SurveyPoint> known;
        for (int i : c.which) {
            known.push_back(AROUND[i]);
        }
        const Sighting s = sight_from(STATION, known, c.orientation);
        std::vector<double> distances(known.size(), NaN);
        ASSERT_EQ(LIB_RESA2D(s.obs.data(), s.known.data(), static_cast<unsigned char>(known.size()),
                             distances.data()),
                  0);
        double worst = 0.0;
        for (std::size_t i = 0; i < known.size(); ++i) {
            EXPECT_NEAR(distances[i], s.plan_distance[i], 1e-3) << i;
            worst = std::fmax(worst, std::fabs(distances[i] - s.plan_distance[i]));
        }
        // An untruncated solution would agree to far better than this.
        EXPECT_GT(worst, 1e-5);
    }
}

TEST(ResectionByDirections, GapOfMoreThanAHalfCircleRestartsTheSequence)
{
    // Directions 10, 20 and 300 degrees: sorted, the 280-degree step
    // between 20 and 300 is the gap, so 300 leads.
    const SurveyPoint station = {0.0, 0.0, 0.0};
    const double deg = 3600.0;
    const double az[] = {10 * deg, 300 * deg, 20 * deg};
    const double d[] = {100.0, 120.0, 150.0};
    SurveyPoint known[3];
    AngleObservation obs[3];
    for (int i = 0; i < 3; ++i) {
        const double a = az[i] * 3.141592653589793 / 648000.0;
        known[i] = {station.X + d[i] * std::cos(a), station.Y + d[i] * std::sin(a), 0.0};
        obs[i] = {az[i], 324000.0, 0.0};
    }
    double distances[3] = {NaN, NaN, NaN};
    ASSERT_EQ(LIB_RESA2D(obs, known, 3, distances), 0);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(distances[i], d[i], 1e-3) << i;
    }
}

TEST(ResectionByDirections, SymmetricFigureNeedsNoTruncation)
{
    // Equal sides and equal angles: the unknown angles are equal, their
    // difference is 0 and the distances come out exact but for pi taken as
    // 3.1415926 (a few parts in 1e8).
    const SurveyPoint known[] = {{100.0, -100.0, 0.0}, {100.0, 0.0, 0.0}, {100.0, 100.0, 0.0}};
    const AngleObservation obs[] = {{-162000.0, 0, 0}, {0.0, 0, 0}, {162000.0, 0, 0}};
    double distances[3];
    ASSERT_EQ(LIB_RESA2D(obs, known, 3, distances), 0);
    EXPECT_NEAR(distances[0], 100.0 * std::sqrt(2.0), 5e-6);
    EXPECT_NEAR(distances[1], 100.0, 5e-6);
    EXPECT_NEAR(distances[2], 100.0 * std::sqrt(2.0), 5e-6);
}

TEST(ResectionByDirections, SixthPointIsTaggedZero)
{
    // Only five points carry their own index: with six sightings in rising
    // order the sixth is written back into distances[0], and distances[5]
    // keeps the caller's value.
    Sighting s = sight_from(STATION, AROUND, 0.0);
    for (AngleObservation& o : s.obs) {
        if (o.Horizontal < 0.0) {
            o.Horizontal += 1296000.0;
        }
    }
    double distances[6];
    for (double& d : distances) {
        qtest::fill_sentinel(d);
    }
    ASSERT_EQ(LIB_RESA2D(s.obs.data(), s.known.data(), 6, distances), 0);
    EXPECT_NEAR(distances[0], s.plan_distance[5], 1e-3);
    for (int i = 1; i < 5; ++i) {
        EXPECT_NEAR(distances[i], s.plan_distance[i], 1e-3) << i;
    }
    EXPECT_TRUE(qtest::untouched(distances[5]));
}

TEST(ResectionByDirections, TwentyPointsAccepted)
{
    std::vector<SurveyPoint> known;
    for (int i = 0; i < 20; ++i) {
        const double a = (i * 15.0 + 3.0) * 3.141592653589793 / 180.0;
        known.push_back({STATION.X + (80.0 + 7.0 * i) * std::cos(a),
                         STATION.Y + (80.0 + 7.0 * i) * std::sin(a), 0.0});
    }
    const Sighting s = sight_from(STATION, known, 0.0);
    double distances[20];
    for (double& d : distances) {
        qtest::fill_sentinel(d);
    }
    EXPECT_EQ(LIB_RESA2D(s.obs.data(), s.known.data(), 20, distances), 0);
    EXPECT_FALSE(qtest::untouched(distances[0]));
    EXPECT_TRUE(qtest::untouched(distances[19]));
}

TEST(ResectionByDirections, CoincidentPointsGiveNonFiniteDistances)
{
    const SurveyPoint known[] = {{10.0, 0.0, 0.0}, {10.0, 0.0, 0.0}, {0.0, 10.0, 0.0}};
    const AngleObservation obs[] = {{0.0, 0, 0}, {0.0, 0, 0}, {324000.0, 0, 0}};
    double distances[3] = {1.0, 1.0, 1.0};
    EXPECT_EQ(LIB_RESA2D(obs, known, 3, distances), 0);
    EXPECT_FALSE(std::isfinite(distances[0]));
}

TEST(ResectionWithDistances, CountOutOfRangeLeavesResultUntouched)
{
    const std::vector<SurveyPoint> known(21, SurveyPoint{1.0, 2.0, 3.0});
    const std::vector<AngleObservation> obs(21, AngleObservation{0.0, 0.0, 0.0});
    const std::vector<DistanceRecord> dists(21, DistanceRecord{1.0, 1.0, 0.0, 0.0});
    const std::vector<double> targets(21, 0.0);
    struct Case {
        unsigned char n;
        unsigned char mode;
    };
    for (const Case c : {Case{0, 0}, Case{1, 0}, Case{21, 0}, Case{0, 1}, Case{21, 1}}) {
        ResectionResult out = qtest::sentinel_filled<ResectionResult>();
        EXPECT_EQ(LIB_RESDist(1.5, dists.data(), obs.data(), known.data(), targets.data(), c.n,
                              &out, c.mode),
                  1)
            << int(c.n) << " " << int(c.mode);
        EXPECT_TRUE(qtest::untouched(out));
    }
}

TEST(ResectionWithDistances, ExactObservationsRecoverTheStation)
{
    struct Case {
        double orientation; // azimuth minus reading
        double expected;    // delivered, whole seconds, folded by a half circle
    };
    // Past a quarter circle the one-argument arctangent turns the
    // orientation by a half circle (648000.011 with the true pi).
    const Case cases[] = {
        {100000.5, 100000.0},
        {-100000.5, -100000.0},
        {400000.5, -247999.0},
        {1000000.5, -295999.0},
    };
    for (const Case& c : cases) {
        const Sighting s = sight_from(STATION, {AROUND[0], AROUND[2], AROUND[4]}, c.orientation);
        const double targets[] = {1.3, 1.3, 1.3};
        ResectionResult out = qtest::sentinel_filled<ResectionResult>();
        ASSERT_EQ(
            LIB_RESDist(1.5, s.dists.data(), s.obs.data(), s.known.data(), targets, 3, &out, 0), 0);
        EXPECT_NEAR(out.X, STATION.X, 1e-8);
        EXPECT_NEAR(out.Y, STATION.Y, 1e-8);
        EXPECT_BITS(out.Orientation, c.expected);
        EXPECT_LT(out.mX, 1e-8);
        EXPECT_LT(out.mY, 1e-8);
        // All heights agree: (1.3 + 0) - 0 - 1.5 = -0.2, spread below 0.1 mm.
        EXPECT_NEAR(out.H, -0.2, 1e-12);
        EXPECT_BITS(out.mH, 0.0);
    }
}

TEST(ResectionWithDistances, NoisyObservationsGivePlausibleDeviations)
{
    // Millimetres on the distances and seconds on the directions.
    const std::vector<SurveyPoint> known = {AROUND[0], AROUND[1], AROUND[2], AROUND[3], AROUND[4]};
    Sighting s = sight_from(STATION, known, 250000.0);
    const double distance_noise[] = {0.004, -0.003, 0.002, -0.005, 0.001};
    const double direction_noise[] = {2.0, -3.0, 1.5, 2.5, -2.0};
    for (std::size_t i = 0; i < known.size(); ++i) {
        s.dists[i].HorizontalDistance += distance_noise[i];
        s.obs[i].Horizontal += direction_noise[i];
    }
    const double targets[] = {1.3, 1.3, 1.3, 1.3, 1.3};
    ResectionResult out;
    ASSERT_EQ(LIB_RESDist(1.5, s.dists.data(), s.obs.data(), s.known.data(), targets, 5, &out, 0),
              0);
    EXPECT_NEAR(out.X, STATION.X, 0.005);
    EXPECT_NEAR(out.Y, STATION.Y, 0.005);
    EXPECT_NEAR(out.Orientation, 250000.0, 3.0);
    EXPECT_GT(out.mX, 0.0005);
    EXPECT_LT(out.mX, 0.01);
    EXPECT_GT(out.mY, 0.0005);
    EXPECT_LT(out.mY, 0.01);
}

TEST(ResectionWithDistances, TwoPointsFitWithoutDeviations)
{
    const Sighting s = sight_from(STATION, {AROUND[0], AROUND[3]}, 0.5);
    const double targets[] = {0.0, 0.0};
    ResectionResult out = qtest::sentinel_filled<ResectionResult>();
    ASSERT_EQ(LIB_RESDist(0.0, s.dists.data(), s.obs.data(), s.known.data(), targets, 2, &out, 0),
              0);
    EXPECT_NEAR(out.X, STATION.X, 1e-8);
    EXPECT_NEAR(out.Y, STATION.Y, 1e-8);
    EXPECT_BITS(out.Orientation, 0.0);
    EXPECT_BITS(out.mX, 0.0);
    EXPECT_BITS(out.mY, 0.0);
}

TEST(ResectionWithDistances, HeightWeightsAddCosineToDistance)
{
    // Heights 10, 10 and 13 with weights 1 / (1 + 1), 1 / (1 + 1) and
    // 1 / (0 + 1): H = 23 / 2, spread sqrt((0.5 * 2.25 * 2 + 2.25) / 2).
    const SurveyPoint known[] = {{0, 0, 10.0}, {0, 0, 10.0}, {0, 0, 13.0}};
    const AngleObservation obs[] = {{0, 0.0, 0}, {0, 0.0, 0}, {0, 0.0, 0}};
    const DistanceRecord dists[] = {{0, 1.0, 0, 0}, {0, 1.0, 0, 0}, {0, 0.0, 0, 0}};
    const double targets[] = {0.0, 0.0, 0.0};
    ResectionResult out = qtest::sentinel_filled<ResectionResult>();
    ASSERT_EQ(LIB_RESDist(0.0, dists, obs, known, targets, 3, &out, 1), 0);
    EXPECT_BITS(out.H, 11.5);
    EXPECT_BITS(out.mH, 1.5);
    // Height only: the plan fields keep the caller's values.
    EXPECT_TRUE(qtest::untouched(out.X));
    EXPECT_TRUE(qtest::untouched(out.Y));
    EXPECT_TRUE(qtest::untouched(out.mX));
    EXPECT_TRUE(qtest::untouched(out.mY));
    EXPECT_TRUE(qtest::untouched(out.Orientation));
}

TEST(ResectionWithDistances, HeightDeviationInSinglePrecision)
{
    // Two level sights of 100 m, heights 100.0 and 100.1: the deviation
    // 0.05 * sqrt(2 / (10000 + cos^2)) is delivered through a float.
    const SurveyPoint known[] = {{0, 0, 100.0}, {0, 0, 100.1}};
    const AngleObservation obs[] = {{0, 324000.0, 0}, {0, 324000.0, 0}};
    const DistanceRecord dists[] = {{0, 100.0, 0, 0}, {0, 100.0, 0, 0}};
    const double targets[] = {0.0, 0.0};
    ResectionResult out;
    ASSERT_EQ(LIB_RESDist(0.0, dists, obs, known, targets, 2, &out, 1), 0);
    EXPECT_NEAR(out.H, 100.05, 1e-12);
    EXPECT_NEAR(out.mH, 7.0710678e-4, 1e-10);
    EXPECT_BITS(out.mH, static_cast<double>(static_cast<float>(out.mH)));
}

TEST(ResectionWithDistances, OneSightingOrOtherModes)
{
    const SurveyPoint known[] = {{0, 0, 50.0}};
    const AngleObservation obs[] = {{0, 300000.0, 0}};
    const DistanceRecord dists[] = {{0, 80.0, 2.5, 0}};
    const double targets[] = {1.5};
    ResectionResult out = qtest::sentinel_filled<ResectionResult>();
    ASSERT_EQ(LIB_RESDist(1.25, dists, obs, known, targets, 1, &out, 1), 0);
    EXPECT_BITS(out.H, 47.75);
    EXPECT_BITS(out.mH, 0.0);
    EXPECT_TRUE(qtest::untouched(out.Orientation));

    // An unknown mode is height only and takes any count, even none.
    out = qtest::sentinel_filled<ResectionResult>();
    ASSERT_EQ(LIB_RESDist(1.25, dists, obs, known, targets, 0, &out, 2), 0);
    EXPECT_TRUE(std::isnan(out.H));
    EXPECT_BITS(out.mH, 0.0);
    EXPECT_TRUE(qtest::untouched(out.X));
}

TEST(ResectionSetAngle, OrientationFromOneSighting)
{
    const SurveyPoint station = {0.0, 0.0, 0.0};
    const SurveyPoint north = {100.0, 0.0, 0.0};
    double orientation = 10.0;
    double azimuth = -1.0;
    EXPECT_EQ(LIB_RESSetAngle(&station, &north, 20.0, &orientation, &azimuth), 0);
    EXPECT_BITS(azimuth, 0.0);
    EXPECT_BITS(orientation, 30.0);

    // Coincident points: the caller's azimuth stays and is used.
    azimuth = 500.0;
    orientation = 10.0;
    EXPECT_EQ(LIB_RESSetAngle(&station, &station, 20.0, &orientation, &azimuth), 0);
    EXPECT_BITS(azimuth, 500.0);
    EXPECT_BITS(orientation, -470.0);
}
