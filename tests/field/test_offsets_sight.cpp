// Offsets along the line of sight and by horizontal angle to a wall line.
#include "check.hpp"
#include "records.hpp"

#include <cmath>

using qtest::Call;
using qtest::rows;

namespace {

// The eight doubles an offset along the sight writes.
enum SightOutput { X, Y, H, SLOPE, HORIZONTAL, VERTICAL, DIRECTION, ZENITH };

} // namespace

TEST(SightOffsets, SlopeDistanceAndHorizontalAngleToAWall)
{
    // No offset gives the measured point; the instrument is not beyond it;
    // beyond, the sight turns.
    const DistanceRecord measured = qtest::shot(10.0, 9.0, 4.0);
    const struct {
        signed char face;
        double zenith, offset;
        int status;
        double slope, direction, zenith_out;
    } cases[] = {{1, 300000, 0, 0, 10, 0, 300000},
                 {1, 300000, -10, 0, 0, 0, 300000},
                 {1, 300000, -12, 0, 2, 648000, 348000},
                 {-1, 900000, -12, 0, 2, 648000, 1044000},
                 {1, 300000, 2e8, 2, 0, 0, 0}};
    const double point[8] = {9, 0, 4.25, 10, 9, 4, 0, 300000};
    for (const auto& [call, c] : rows("LIB_OS_SDist", cases)) {
        const StationRecord st = qtest::station(0, 0, 0, c.face, c.face, 1.5, 1.25);
        const double angles[2] = {0.0, c.zenith};
        double out[8];
        qtest::fill_sentinel(out);
        EXPECT_STATUS(call, LIB_OS_SDist(&st, &measured, angles, nullptr, c.offset, out, 0),
                      c.status);
        if (c.status != 0) {
            EXPECT_UNTOUCHED(call, out);
        } else if (c.offset == 0) {
            EXPECT_BITS(call, out, point);
        } else {
            EXPECT_BITS(call, out[SLOPE], c.slope);
            EXPECT_BITS(call, out[DIRECTION], c.direction);
            EXPECT_BITS(call, out[ZENITH], c.zenith_out);
        }
    }
    // Mode 1 raises the known point on every call; the measured slope distance
    // alone decides the side (0 - 0.5 is beyond though the point is 50 m out).
    StationRecord st = qtest::station(0, 0, 0, 1, 1, 1.5, 1.25);
    SurveyPoint known{30.0, 40.0, 10.0};
    const DistanceRecord ahead = qtest::shot(1, 0, 0), at_instrument = qtest::shot(0, 0, 0);
    double out[8];
    const Call to_known("LIB_OS_SDist", "known point, no offset");
    ASSERT_STATUS(to_known, LIB_OS_SDist(&st, &ahead, nullptr, &known, 0.0, out, 1), 0);
    EXPECT_BELOW(to_known, std::hypot(out[X] - 30, out[Y] - 40), 1e-9);
    EXPECT_WITHIN(to_known, out[H], 10.0, 1e-9);
    const Call behind("LIB_OS_SDist", "known point, measured at the instrument");
    ASSERT_STATUS(behind, LIB_OS_SDist(&st, &at_instrument, nullptr, &known, -0.5, out, 1), 0);
    EXPECT_BITS(behind, known.H, 12.5);
    EXPECT_GT(out[DIRECTION], 648000.0) << behind;
    // (15, -10, 6) lies a quarter of the way along; face II reads 648000 round.
    const SurveyPoint wall[2] = {{10.0, -20.0, 5.0}, {30.0, 20.0, 9.0}};
    const SurveyPoint origin{0.0, 0.0, 0.0}, on_wall{15.0, -10.0, 6.0};
    double az = 0.0;
    ASSERT_STATUS(Call("LIB_CalAZ"), LIB_CalAZ(&origin, &on_wall, &az), 0);
    for (signed char face : {1, -1}) {
        const Call call("LIB_OS_Ha", face == 1 ? "face I" : "face II");
        const StationRecord t = qtest::station(0.0, 0.0, 100.0, 1, face, 1.5, 1.25);
        DistAngleRecord hit{};
        ASSERT_STATUS(call, LIB_OS_Ha(&t, wall, face == 1 ? az : az + 648000.0, &hit), 0);
        EXPECT_BELOW(call, std::hypot(hit.X - 15, hit.Y + 10), 1e-5);
        EXPECT_WITHIN(call, hit.H, 6.0, 1e-5);
        EXPECT_WITHIN(call, hit.Azimuth, face == 1 ? az : az - 648000.0, 1e-1);
    }
    // Behind; through the station, ending on it, around it; constant
    // northing; sights parallel to the line, due north and at 162000" (the
    // line rising by exactly that sight's tangent); out of range.
    const double rise = std::tan(162000.0 * (3.1415926 / 648000.0));
    const struct {
        PlanePoint from, to;
        double angle;
        int status;
    } lines[] = {{{10, -20}, {30, 20}, 648000, 5}, {{10, 10}, {20, 20}, 0, 3},
                 {{0, 0}, {20, 20}, 0, 3},         {{10, 0}, {-10, 0}, 100000, 3},
                 {{10, -5}, {10, 5}, 0, 2},        {{0, 5}, {10, 5}, 0, 2},
                 {{10, 0}, {11, rise}, 162000, 2}, {{2e8 - 1, -1}, {2e8 + 1, 1}, 0, 2}};
    st = qtest::station(0.0, 0.0, 0.0);
    for (const auto& [call, c] : rows("LIB_OS_Ha", lines)) {
        const SurveyPoint line[2] = {{c.from.X, c.from.Y, 0}, {c.to.X, c.to.Y, 0}};
        DistAngleRecord refused = qtest::sentinel_filled<DistAngleRecord>();
        EXPECT_STATUS(call, LIB_OS_Ha(&st, line, c.angle, &refused), c.status);
        EXPECT_UNTOUCHED(call, refused);
    }
}
