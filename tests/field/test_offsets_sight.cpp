// Offsets along the line of sight and by horizontal angle to a wall line.
#include "bits.hpp"
#include "records.hpp"

#include <algorithm>
#include <cmath>

TEST(SightOffsets, SlopeDistanceAndHorizontalAngleToAWall)
{
    // Face, zenith, offset, slope, direction, zenith out: no offset gives the
    // measured point; the instrument is not beyond it; beyond, the sight turns.
    const DistanceRecord measured = qtest::shot(10.0, 9.0, 4.0);
    const double cases[][6] = {{1, 300000, 0, 10, 0, 300000},
                               {1, 300000, -10, 0, 0, 300000},
                               {1, 300000, -12, 2, 648000, 348000},
                               {-1, 900000, -12, 2, 648000, 1044000},
                               {1, 300000, 2e8}};
    for (const auto& c : cases) {
        const auto face = static_cast<signed char>(c[0]);
        const StationRecord st = qtest::station(0, 0, 0, face, face, 1.5, 1.25);
        const double angles[2] = {0.0, c[1]}, point[8] = {9, 0, 4.25, 10, 9, 4, 0, 300000};
        double out[8];
        qtest::fill_sentinel(out);
        EXPECT_EQ(LIB_OS_SDist(&st, &measured, angles, nullptr, c[2], out, 0), c[2] > 1e8 ? 2 : 0);
        EXPECT_TRUE(c[2] > 1e8 ? qtest::untouched(out)
                               : out[3] == c[3] && out[6] == c[4] && out[7] == c[5]);
        EXPECT_TRUE(c[2] != 0 || std::equal(out, out + 8, point));
    }
    // Mode 1 raises the known point on every call; the measured slope distance
    // alone decides the side (0 - 0.5 is beyond though the point is 50 m out).
    StationRecord st = qtest::station(0, 0, 0, 1, 1, 1.5, 1.25);
    SurveyPoint known{30.0, 40.0, 10.0};
    const DistanceRecord ahead = qtest::shot(1, 0, 0), at_instrument = qtest::shot(0, 0, 0);
    double out[8];
    ASSERT_EQ(LIB_OS_SDist(&st, &ahead, nullptr, &known, 0.0, out, 1), 0);
    EXPECT_TRUE(std::hypot(out[0] - 30, out[1] - 40) < 1e-9 && std::fabs(out[2] - 10) < 1e-9);
    ASSERT_EQ(LIB_OS_SDist(&st, &at_instrument, nullptr, &known, -0.5, out, 1), 0);
    EXPECT_TRUE(known.H == 12.5 && out[6] > 648000.0);
    // (15, -10, 6) lies a quarter of the way along; face II reads 648000 round.
    const SurveyPoint wall[2] = {{10.0, -20.0, 5.0}, {30.0, 20.0, 9.0}};
    const SurveyPoint origin{0.0, 0.0, 0.0}, on_wall{15.0, -10.0, 6.0};
    double az = 0.0;
    ASSERT_EQ(LIB_CalAZ(&origin, &on_wall, &az), 0);
    for (signed char face : {1, -1}) {
        const StationRecord t = qtest::station(0.0, 0.0, 100.0, 1, face, 1.5, 1.25);
        DistAngleRecord hit{};
        ASSERT_EQ(LIB_OS_Ha(&t, wall, face == 1 ? az : az + 648000.0, &hit), 0);
        EXPECT_TRUE(std::hypot(hit.X - 15, hit.Y + 10) < 1e-5 && std::fabs(hit.H - 6) < 1e-5);
        EXPECT_NEAR(hit.Azimuth, face == 1 ? az : az - 648000.0, 1e-1);
    }
    // Ends, angle, status: behind; through the station, ending on it, around
    // it; constant northing; sights parallel to the line, due north and at
    // 162000" (the line rising by exactly that sight's tangent); out of range.
    const double rise = std::tan(162000.0 * (3.1415926 / 648000.0));
    const double lines[][6] = {{10, -20, 30, 20, 648000, 5}, {10, 10, 20, 20, 0, 3},
                               {0, 0, 20, 20, 0, 3},         {10, 0, -10, 0, 100000, 3},
                               {10, -5, 10, 5, 0, 2},        {0, 5, 10, 5, 0, 2},
                               {10, 0, 11, rise, 162000, 2}, {2e8 - 1, -1, 2e8 + 1, 1, 0, 2}};
    st = qtest::station(0.0, 0.0, 0.0);
    for (const auto& c : lines) {
        const SurveyPoint line[2] = {{c[0], c[1], 0}, {c[2], c[3], 0}};
        DistAngleRecord refused = qtest::sentinel_filled<DistAngleRecord>();
        EXPECT_EQ(LIB_OS_Ha(&st, line, c[4], &refused), c[5]) << c[0] << " " << c[4];
        EXPECT_TRUE(qtest::untouched(refused));
    }
}
