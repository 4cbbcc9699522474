// Free-station resection: distances from directions, the similarity fit with
// distances, and the orientation from one sighting.
#include "bits.hpp"
#include "quillon.h"
#include "records.hpp"

#include <cmath>
#include <vector>

namespace {

const SurveyPoint STATION = {5000.0, 2000.0, 312.0};
// Known points all round the station, at azimuths 16, 67, 122, 204, 266, 319
// degrees.
const SurveyPoint AROUND[] = {{5120, 2035, 0}, {5060, 2140, 0}, {4930, 2110, 0},
                              {4890, 1950, 0}, {4990, 1870, 0}, {5080, 1930, 0}};

double distance_to(const SurveyPoint& p) { return std::hypot(p.X - STATION.X, p.Y - STATION.Y); }

// Exact level sightings to AROUND[which] on a circle turned by orientation
// (azimuth = reading + orientation), with target heights of 1.3 m. The
// readings are folded into [0, 1296000) for the directions alone; the fit's
// sines and cosines would feel that 1296000 seconds is not a true turn.
struct Sightings {
    std::vector<SurveyPoint> known;
    std::vector<AngleObservation> obs;
    std::vector<DistanceRecord> dists;
    std::vector<double> targets;
    unsigned char n;
};

Sightings sight(const std::vector<int>& which, double orientation, bool fold)
{
    Sightings s{{}, {}, {}, {}, static_cast<unsigned char>(which.size())};
    for (int i : which) {
        const double azimuth =
            std::atan2(AROUND[i].Y - STATION.Y, AROUND[i].X - STATION.X) * QUILLON_RHO_SEC;
        const double reading = azimuth - orientation;
        s.known.push_back(AROUND[i]);
        s.obs.push_back({fold ? std::fmod(reading + 2592000.0, 1296000.0) : reading, 324000.0, 0});
        s.dists.push_back(qtest::shot(0.0, distance_to(AROUND[i]), 0.0));
        s.targets.push_back(1.3);
    }
    return s;
}

ResultCode fit(const Sightings& s, unsigned char n, ResectionResult* out, unsigned char mode)
{
    return LIB_RESDist(1.5, s.dists.data(), s.obs.data(), s.known.data(), s.targets.data(), n, out,
                       mode);
}

} // namespace

TEST(Resection, CountsOutOfRangeWriteNothing)
{
    const Sightings s = sight(std::vector<int>(21, 0), 0.0, false);
    for (const unsigned char n : {2, 21, 255}) {
        double distances[21];
        qtest::fill_sentinel(distances);
        EXPECT_EQ(LIB_RESA2D(s.obs.data(), s.known.data(), n, distances), 1) << int(n);
        EXPECT_TRUE(qtest::untouched(distances));
    }
    const unsigned char cases[][2] = {{1, 0}, {21, 0}, {0, 1}, {21, 1}}; // n, mode
    for (const auto& c : cases) {
        ResectionResult out = qtest::sentinel_filled<ResectionResult>();
        EXPECT_EQ(fit(s, c[0], &out, c[1]), 1);
        EXPECT_TRUE(qtest::untouched(out)) << int(c[0]) << " " << int(c[1]);
    }
}

TEST(ResectionByDirections, RecoversDistancesToTheTruncation)
{
    const std::vector<int> cases[] = {{0, 1, 2}, {0, 1, 2}, {5, 0, 1, 2}, {4, 5, 0, 1, 2}};
    // The second has readings 37, 92 and 346 degrees: the sequence restarts
    // after the gap.
    const double orientations[] = {0.0, 30 * 3600.0, 1000000.0, 12345.6};
    for (int c = 0; c < 4; ++c) {
        const Sightings s = sight(cases[c], orientations[c], true);
        std::vector<double> distances(s.n, qtest::NaN);
        ASSERT_EQ(LIB_RESA2D(s.obs.data(), s.known.data(), s.n, distances.data()), 0);
        double worst = 0.0;
        for (unsigned char i = 0; i < s.n; ++i) {
            EXPECT_NEAR(distances[i], distance_to(s.known[i]), 1e-3) << c << " " << int(i);
            worst = std::fmax(worst, std::fabs(distances[i] - distance_to(s.known[i])));
        }
        // Cutting the difference of the unknown angles to whole seconds costs
        // tenths of a millimetre; an exact solution agrees far better.
        EXPECT_GT(worst, 1e-5) << c;
    }
}

TEST(ResectionByDirections, OnlyFivePointsCarryTheirIndex)
{
    // Only five points carry their own index: the sixth one's result lands
    // in distances[0], and distances[5] onward keep the caller's values.
    const Sightings s =
        sight({0, 1, 2, 3, 4, 5, 0, 1, 2, 3, 4, 5, 0, 1, 2, 3, 4, 5, 0, 1}, 0, true);
    for (const unsigned char n : {6, 20}) {
        double distances[20];
        qtest::fill_sentinel(distances);
        ASSERT_EQ(LIB_RESA2D(s.obs.data(), s.known.data(), n, distances), 0);
        for (int i = 5; i < 20; ++i) {
            EXPECT_TRUE(qtest::untouched(distances[i])) << i;
        }
        if (n == 6) {
            EXPECT_NEAR(distances[0], distance_to(AROUND[5]), 1e-3);
            EXPECT_NEAR(distances[4], distance_to(AROUND[4]), 1e-3);
        }
    }
}

TEST(ResectionWithDistances, ExactObservationsRecoverTheStation)
{
    // Orientation as delivered: whole seconds, and past a quarter circle
    // turned by a half circle (648000.011 with the true pi).
    const double cases[][2] = {{100000.5, 100000.0},
                               {-100000.5, -100000.0},
                               {400000.5, -247999.0},
                               {1000000.5, -295999.0}};
    for (int two = 0; two <= 1; ++two) {
        for (const auto& c : cases) {
            const Sightings s =
                sight(two ? std::vector<int>{0, 3} : std::vector<int>{0, 2, 4}, c[0], false);
            ResectionResult out = qtest::sentinel_filled<ResectionResult>();
            ASSERT_EQ(fit(s, s.n, &out, 0), 0);
            EXPECT_NEAR(out.X, STATION.X, 1e-8);
            EXPECT_NEAR(out.Y, STATION.Y, 1e-8);
            EXPECT_BITS(out.Orientation, c[1]);
            // Two points leave no redundancy: the deviations are set to 0.
            EXPECT_LE(out.mX, two ? 0.0 : 1e-8);
            EXPECT_LE(out.mY, two ? 0.0 : 1e-8);
            // Every sighting gives (1.3 + 0) - 0 - 1.5: a spread below 0.1 mm.
            EXPECT_NEAR(out.H, -0.2, 1e-12);
            EXPECT_BITS(out.mH, 0.0);
        }
    }
}

TEST(ResectionWithDistances, NoisyObservationsGivePlausibleDeviations)
{
    Sightings s = sight({0, 1, 2, 3, 4}, 250000.0, false);
    // Millimetres on the distances, seconds on the directions.
    const double noise[][2] = {
        {0.004, 2.0}, {-0.003, -3.0}, {0.002, 1.5}, {-0.005, 2.5}, {0.001, -2}};
    for (int i = 0; i < 5; ++i) {
        s.dists[i].HorizontalDistance += noise[i][0];
        s.obs[i].Horizontal += noise[i][1];
    }
    ResectionResult out;
    ASSERT_EQ(fit(s, 5, &out, 0), 0);
    EXPECT_NEAR(out.X, STATION.X, 0.005);
    EXPECT_NEAR(out.Y, STATION.Y, 0.005);
    EXPECT_NEAR(out.Orientation, 250000.0, 3.0);
    EXPECT_TRUE(out.mX > 0.0005 && out.mX < 0.01) << out.mX;
    EXPECT_TRUE(out.mY > 0.0005 && out.mY < 0.01) << out.mY;
}

TEST(ResectionWithDistances, HeightOnly)
{
    // Heights 10, 10 and 13 with weights 1 / (1 + 1), 1 / (1 + 1) and
    // 1 / (0 + 1): the cosine is added to the distance, not multiplied.
    const SurveyPoint known[] = {{0, 0, 10.0}, {0, 0, 10.0}, {0, 0, 13.0}};
    const AngleObservation vertical[] = {{0, 0.0, 0}, {0, 0.0, 0}, {0, 0.0, 0}};
    const DistanceRecord dists[] = {qtest::shot(0, 1, 0), qtest::shot(0, 1, 0),
                                    qtest::shot(0, 0, 0)};
    const double targets[] = {0.0, 0.0, 0.0};
    ResectionResult out = qtest::sentinel_filled<ResectionResult>();
    ASSERT_EQ(LIB_RESDist(0.0, dists, vertical, known, targets, 3, &out, 1), 0);
    EXPECT_BITS(out.H, 11.5);
    EXPECT_BITS(out.mH, 1.5);
    out.H = out.mH = qtest::sentinel_double();
    EXPECT_TRUE(qtest::untouched(out)); // X, Y, mX, mY and Orientation

    // Level 100 m sights to heights 100.0 and 100.1: the deviation
    // 0.05 * sqrt(2 / 10000) comes through single precision.
    const SurveyPoint two[] = {{0, 0, 100.0}, {0, 0, 100.1}};
    const AngleObservation level[] = {{0, 324000.0, 0}, {0, 324000.0, 0}};
    const DistanceRecord far[] = {qtest::shot(0, 100, 0), qtest::shot(0, 100, 0)};
    ASSERT_EQ(LIB_RESDist(0.0, far, level, two, targets, 2, &out, 1), 0);
    EXPECT_NEAR(out.H, 100.05, 1e-12);
    EXPECT_NEAR(out.mH, 7.0710678e-4, 1e-10);
    EXPECT_BITS(out.mH, static_cast<double>(static_cast<float>(out.mH)));

    // One sighting: no deviation. An unknown mode takes any count, even none.
    const DistanceRecord one[] = {qtest::shot(0, 80.0, 2.5)};
    const double target[] = {1.5};
    ASSERT_EQ(LIB_RESDist(1.25, one, level, known, target, 1, &out, 1), 0);
    EXPECT_BITS(out.H, 7.75);
    EXPECT_BITS(out.mH, 0.0);
    out = qtest::sentinel_filled<ResectionResult>();
    ASSERT_EQ(LIB_RESDist(1.25, one, level, known, target, 0, &out, 2), 0);
    EXPECT_TRUE(std::isnan(out.H));
    EXPECT_BITS(out.mH, 0.0);
    EXPECT_TRUE(qtest::untouched(out.X));
}

TEST(ResectionSetAngle, OrientationFromOneSighting)
{
    const SurveyPoint north = {STATION.X + 100.0, STATION.Y, 0.0};
    double orientation = 10.0;
    double azimuth = -1.0;
    EXPECT_EQ(LIB_RESSetAngle(&STATION, &north, 20.0, &orientation, &azimuth), 0);
    EXPECT_BITS(azimuth, 0.0);
    EXPECT_BITS(orientation, 30.0);
    // Coincident points: the caller's azimuth stays and is used.
    azimuth = 500.0;
    EXPECT_EQ(LIB_RESSetAngle(&STATION, &STATION, 20.0, &orientation, &azimuth), 0);
    EXPECT_BITS(azimuth, 500.0);
    EXPECT_BITS(orientation, -450.0);
}
