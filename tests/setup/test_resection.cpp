// Free-station resection: by directions, with distances, and the orientation from one sighting.
#include "check.hpp"
#include "records.hpp"

#include <algorithm>
#include <vector>

using qtest::Call;

namespace {

const SurveyPoint STATION = {5000.0, 2000.0, 312.0};
// Known points all round the station, at azimuths 16, 67, 122, 204, 266, 319 degrees.
const SurveyPoint AROUND[] = {{5120, 2035, 0}, {5060, 2140, 0}, {4930, 2110, 0},
                              {4890, 1950, 0}, {4990, 1870, 0}, {5080, 1930, 0}};
const std::vector<double> TARGETS(21, 1.3);

double distance_to(const SurveyPoint& p) { return std::hypot(p.X - STATION.X, p.Y - STATION.Y); }

// Exact level sightings to AROUND[which], azimuth = reading + turn. Readings are folded
// for the directions alone: the fit would feel that 1296000 seconds is not a true turn.
struct Sightings {
    std::vector<SurveyPoint> known;
    std::vector<AngleObservation> obs;
    std::vector<DistanceRecord> shots;
};

Sightings sight(const std::vector<int>& which, double turn, bool fold)
{
    Sightings s;
    for (int i : which) {
        const SurveyPoint& p = AROUND[i];
        const double hz = std::atan2(p.Y - STATION.Y, p.X - STATION.X) * QUILLON_RHO_SEC - turn;
        s.known.push_back(p);
        s.obs.push_back({fold ? std::fmod(hz + 2592000.0, 1296000.0) : hz, 324000.0, 0});
        s.shots.push_back(qtest::shot(0.0, distance_to(p), 0.0));
    }
    return s;
}

ResultCode fit(const Sightings& s, unsigned char n, ResectionResult* r, unsigned char m = 0)
{
    return LIB_RESDist(1.5, s.shots.data(), s.obs.data(), s.known.data(), TARGETS.data(), n, r, m);
}

} // namespace

TEST(ResectionByDirections, DistancesToTheTruncationAndTheIndexQuirk)
{
    // The second has readings 37, 92 and 346 degrees: the sequence restarts after the gap.
    const struct {
        std::vector<int> known;
        double turn;
    } cases[] = {{{0, 1, 2}, 0.0},
                 {{0, 1, 2}, 108000.0},
                 {{5, 0, 1, 2}, 1000000.0},
                 {{4, 5, 0, 1, 2}, 12345.6}};
    for (const auto& [call, c] : qtest::rows("LIB_RESA2D", cases)) {
        const Sightings s = sight(c.known, c.turn, true);
        double distances[5] = {qtest::NaN, qtest::NaN, qtest::NaN, qtest::NaN, qtest::NaN};
        ASSERT_STATUS(call, LIB_RESA2D(s.obs.data(), s.known.data(), s.known.size(), distances), 0);
        // Cutting the difference of the unknown angles to whole seconds costs
        // tenths of a millimetre; an exact solution agrees far better.
        double worst = 0.0;
        for (std::size_t i = 0; i < s.known.size(); ++i)
            worst = std::max(std::fabs(distances[i] - distance_to(s.known[i])), worst);
        EXPECT_BETWEEN(call, worst, 1e-5, 1e-3);
    }
    // A full circle added to the readings after the gap leaves the figure as it is: starting
    // just after the gap must give the very same distances as the readings that have none.
    const Call gap("LIB_RESA2D", "a full circle added after the gap");
    Sightings turned = sight({0, 1, 2}, 108000.0, true);
    double after_gap[3], no_gap[3];
    ASSERT_STATUS(gap, LIB_RESA2D(turned.obs.data(), turned.known.data(), 3, after_gap), 0);
    turned.obs[1].Horizontal += 1296000.0, turned.obs[2].Horizontal += 1296000.0;
    ASSERT_STATUS(gap, LIB_RESA2D(turned.obs.data(), turned.known.data(), 3, no_gap), 0);
    EXPECT_BITS(gap, after_gap, no_gap);
    // 3 to 20 points. Only five carry their own index: the sixth one's result
    // lands in distances[0], and distances[5] onward keep the caller's values.
    const auto s = sight({0, 1, 2, 3, 4, 5, 0, 1, 2, 3, 4, 5, 0, 1, 2, 3, 4, 5, 0, 1, 2}, 0, true);
    double distances[21];
    for (const unsigned char n : {2, 21, 20, 6}) {
        const Call call("LIB_RESA2D", std::to_string(n) + " points");
        qtest::fill_sentinel(distances);
        const bool fails = n == 2 || n == 21;
        EXPECT_STATUS(call, LIB_RESA2D(s.obs.data(), s.known.data(), n, distances), fails ? 1 : 0);
        for (int i = 0; i < 21; ++i) {
            EXPECT_WRITTEN_IF(call.at("distance " + std::to_string(i)), distances[i],
                              !fails && i < 5);
        }
    }
    const Call six("LIB_RESA2D", "6 points");
    EXPECT_WITHIN(six, distances[0], distance_to(AROUND[5]), 1e-3);
    EXPECT_WITHIN(six, distances[4], distance_to(AROUND[4]), 1e-3);
}

TEST(ResectionWithDistances, StationHeightAndOrientation)
{
    const Sightings all = sight(std::vector<int>(21, 0), 0.0, false);
    const struct {
        unsigned char n, mode;
    } counts[] = {{1, 0}, {21, 0}, {0, 1}, {21, 1}};
    for (const auto& [call, c] : qtest::rows("LIB_RESDist", counts)) {
        ResectionResult out = qtest::sentinel_filled<ResectionResult>();
        EXPECT_STATUS(call, fit(all, c.n, &out, c.mode), 1);
        EXPECT_UNTOUCHED(call, out);
    }
    // Orientation as delivered: whole seconds, and past a quarter circle turned by a half
    // circle (648000.011 with the true pi). Two points leave no redundancy: no deviations.
    const struct {
        double turn, orientation;
    } turns[] = {{100000.5, 100000.0},
                 {-100000.5, -100000.0},
                 {400000.5, -247999.0},
                 {1000000.5, -295999.0}};
    for (const std::vector<int>& which : {std::vector<int>{0, 2, 4}, std::vector<int>{0, 3}}) {
        for (const auto& [row, c] : qtest::rows("LIB_RESDist", turns)) {
            const Call call = row.at(std::to_string(which.size()) + " points");
            ResectionResult out;
            ASSERT_STATUS(call, fit(sight(which, c.turn, false), which.size(), &out), 0);
            EXPECT_BELOW(call, std::hypot(out.X - STATION.X, out.Y - STATION.Y), 1e-8);
            EXPECT_BITS(call, out.Orientation, c.orientation);
            if (which.size() == 2) {
                EXPECT_BITS(call, out.mX, 0.0);
                EXPECT_BITS(call, out.mY, 0.0);
            } else {
                EXPECT_BELOW(call, out.mX, 1e-8);
                EXPECT_BELOW(call, out.mY, 1e-8);
            }
            EXPECT_WITHIN(call, out.H, -0.2, 1e-12); // (1.3 + 0) - 0 - 1.5
            EXPECT_BITS(call, out.mH, 0.0);
        }
    }
    // Millimetres on the distances, seconds on the directions.
    Sightings s = sight({0, 1, 2, 3, 4}, 250000.0, false);
    const struct {
        double distance, direction;
    } noise[] = {{0.004, 2}, {-0.003, -3}, {0.002, 1.5}, {-0.005, 2.5}, {0.001, -2}};
    for (int i = 0; i < 5; ++i)
        s.shots[i].HorizontalDistance += noise[i].distance,
            s.obs[i].Horizontal += noise[i].direction;
    const Call noisy("LIB_RESDist", "five noisy sightings");
    ResectionResult out;
    ASSERT_STATUS(noisy, fit(s, 5, &out), 0);
    EXPECT_BELOW(noisy, std::hypot(out.X - STATION.X, out.Y - STATION.Y), 0.005);
    EXPECT_WITHIN(noisy, out.Orientation, 250000.0, 3.0);
    EXPECT_BETWEEN(noisy, out.mX, 0.0005, 0.01);
    EXPECT_BETWEEN(noisy, out.mY, 0.0005, 0.01);
    // 10 m north, east, south and west, measured 0.1 m long north and south, 0.1 m short east
    // and west: scale a = 400 / (2 * 10.1^2 + 2 * 9.9^2) = 1 / 1.0001, residuals
    // +-(10.1 a - 10) = +-0.099 / 1.0001 in X and +-0.101 / 1.0001 in Y, each on two points;
    // m = sqrt(2 r^2 / (4 - 1)).
    Sightings cross;
    cross.known = {{10, 0, 0}, {0, 10, 0}, {-10, 0, 0}, {0, -10, 0}};
    for (int i = 0; i < 4; ++i) {
        cross.obs.push_back({i * 324000.0, 324000.0, 0.0});
        cross.shots.push_back(qtest::shot(0.0, i % 2 ? 9.9 : 10.1, 0.0));
    }
    const Call scaled("LIB_RESDist", "cross measured long and short");
    ASSERT_STATUS(scaled, fit(cross, 4, &out), 0);
    EXPECT_WITHIN(scaled, out.mX, 0.099 / 1.0001 * std::sqrt(2.0 / 3.0), 1e-6);
    EXPECT_WITHIN(scaled, out.mY, 0.101 / 1.0001 * std::sqrt(2.0 / 3.0), 1e-6);
    // Two sightings leave no redundancy, even when no distance was measured and the fit is
    // singular (0 / 0): deviations 0, not residuals of not-a-number.
    cross.shots[0].HorizontalDistance = cross.shots[1].HorizontalDistance = 0.0;
    const Call singular("LIB_RESDist", "two sightings, no distances");
    ASSERT_STATUS(singular, fit(cross, 2, &out), 0);
    EXPECT_BITS(singular, out.X, qtest::NaN);
    EXPECT_BITS(singular, out.mX, 0.0);
    EXPECT_BITS(singular, out.mY, 0.0);
    // Height only. Vertical sights to heights 10, 10, 13 weigh 1 / (1 + 1), 1 / (1 + 1) and
    // 1 / (0 + 1): the cosine is added, not multiplied. Level 100 m sights to 100.0 and 100.1:
    // a deviation of 0.05 * sqrt(2 / 10000) through single precision.
    const SurveyPoint k[] = {{0, 0, 10}, {0, 0, 10}, {0, 0, 13}, {0, 0, 100}, {0, 0, 100.1}};
    const AngleObservation o[] = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 324e3, 0}, {0, 324e3, 0}};
    const DistanceRecord d[] = {{0, 1, 0, 0}, {0, 1, 0, 0}, {}, {0, 100, 0, 0}, {0, 100, 0, 0}};
    const double zero[] = {0, 0, 0};
    const Call weighted("LIB_RESDist", "height only, vertical sights");
    out = qtest::sentinel_filled<ResectionResult>();
    ASSERT_STATUS(weighted, LIB_RESDist(0.0, d, o, k, zero, 3, &out, 1), 0);
    ResectionResult height_only = qtest::sentinel_filled<ResectionResult>();
    height_only.H = 11.5; // X, Y, mX, mY and Orientation stay
    height_only.mH = 1.5;
    EXPECT_BITS(weighted, out, height_only);
    const Call level("LIB_RESDist", "height only, level sights");
    ASSERT_STATUS(level, LIB_RESDist(0.0, d + 3, o + 3, k + 3, zero, 2, &out, 1), 0);
    EXPECT_WITHIN(level, out.mH, 7.0710678e-4, 1e-10);
    EXPECT_BITS(level, out.mH, static_cast<double>(static_cast<float>(out.mH)));
    // 100.0 and 100.01: 0.005 * sqrt(2 / 10000) = 7.1e-5 is under 0.0001 and counts as none.
    const Call small("LIB_RESDist", "height only, a deviation under 0.0001");
    const SurveyPoint close[] = {{0, 0, 100}, {0, 0, 100.01}};
    ASSERT_STATUS(small, LIB_RESDist(0.0, d + 3, o + 3, close, zero, 2, &out, 1), 0);
    EXPECT_BITS(small, out.mH, 0.0);
    // One sighting: no deviation. An unknown mode takes any count, even none.
    const Call one("LIB_RESDist", "height only, one sighting");
    ASSERT_STATUS(one, LIB_RESDist(1.25, d + 3, o + 3, k + 3, zero, 1, &out, 1), 0);
    EXPECT_BITS(one, out.H, 98.75);
    EXPECT_BITS(one, out.mH, 0.0);
    const Call unknown("LIB_RESDist", "mode 2, no sightings");
    out = qtest::sentinel_filled<ResectionResult>();
    ASSERT_STATUS(unknown, LIB_RESDist(1.25, d, o, k, zero, 0, &out, 2), 0);
    ResectionResult no_height = qtest::sentinel_filled<ResectionResult>();
    no_height.H = qtest::NaN;
    no_height.mH = 0.0;
    EXPECT_BITS(unknown, out, no_height);
    // The orientation from one sighting. With coincident points the caller's azimuth stays and
    // is used.
    const SurveyPoint north = {STATION.X + 100.0, STATION.Y, 0.0};
    const Call to_north("LIB_RESSetAngle", "known point due north");
    double orientation = 10.0, azimuth = -1.0;
    EXPECT_STATUS(to_north, LIB_RESSetAngle(&STATION, &north, 20.0, &orientation, &azimuth), 0);
    EXPECT_BITS(to_north, azimuth, 0.0);
    EXPECT_BITS(to_north, orientation, 30.0);
    const Call on_station("LIB_RESSetAngle", "known point on the station");
    azimuth = 500.0;
    EXPECT_STATUS(on_station, LIB_RESSetAngle(&STATION, &STATION, 20.0, &orientation, &azimuth), 0);
    EXPECT_BITS(on_station, azimuth, 500.0);
    EXPECT_BITS(on_station, orientation, -450.0);
}
