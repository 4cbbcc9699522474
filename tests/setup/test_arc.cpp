// A point on an arc by a sight without a distance.
#include "check.hpp"
#include "records.hpp"

namespace {

const double PI = 3.141592653589793, R = 100.0;

// A circle of 100 m about (0, 0): three points running clockwise (north,
// east, south), or in mode 1 the chord north -> east with a signed radius.
ArcDefinition circle(double horizontal, double zenith = 324000.0, double radius = R)
{
    return {{R, 0.0, 0.0}, {0.0, R, 0.0}, {-R, 0.0, 0.0}, radius, {horizontal, zenith, 0.0}};
}

} // namespace

using qtest::Call;

TEST(Arc, SightsWithKnownCrossings)
{
    const double r2 = R / std::sqrt(2.0), secant = std::atan2(300.0, 100.0) * QUILLON_RHO_SEC;
    // The crossing and its length from P1 = (100, 0). From the centre,
    // outside (the nearer crossing: toward (100, 0) first (80, -60)), inside
    // off centre (the one ahead); from the chord, centre right or left at
    // (100, 100).
    const struct {
        PlanePoint station;
        double reading;
        unsigned char mode;
        double radius;
        PlanePoint crossing;
        double length;
    } cases[] = {
        {{0, 0}, 324000.0, 0, 0, {0, R}, R * PI / 2},
        {{0, 0}, 810000.0, 2, 0, {-r2, -r2}, R * PI * 5 / 4},
        {{-200, 0}, 0.0, 0, 0, {-R, 0}, R * PI},
        {{0, -300}, secant, 0, 0, {80, -60}, R * (2 * PI - std::atan2(60.0, 80.0))},
        {{0, 60}, 0.0, 0, 0, {80, 60}, R * std::atan2(60.0, 80.0)},
        {{0, -100}, 324000.0, 0, 0, {0, R}, R * PI / 2}, // from the circle: the far crossing
        {{0, -0.0}, -0.0, 0, 0, {R, 0}, 0.0},            // on P1 with a turn of -0: length +0
        {{0, 0}, 324000.0, 1, R, {0, R}, R * PI / 2},
        {{100, 100}, 648000.0, 1, -R, {0, 100}, R * PI / 2},
    };
    for (const auto& [call, c] : qtest::rows("LIB_ArcCalc", cases)) {
        const StationRecord station = qtest::station(c.station.X, c.station.Y, 0.0, 1, 1, 0.0);
        const ArcDefinition arc = circle(c.reading, 324000.0, c.radius);
        ArcResult out;
        ASSERT_STATUS(call, LIB_ArcCalc(&station, &arc, &out, c.mode), 0);
        EXPECT_WITHIN(call, out.Radius, R, 1e-9);
        EXPECT_WITHIN(call, std::hypot(out.X - out.CentreX, out.Y - out.CentreY), R, 1e-9);
        EXPECT_BELOW(call, std::hypot(out.X - c.crossing.X, out.Y - c.crossing.Y), 1e-5);
        EXPECT_WITHIN(call, out.HorizontalDistance,
                      std::hypot(c.crossing.X - c.station.X, c.crossing.Y - c.station.Y), 1e-5);
        EXPECT_WITHIN(call, out.ArcLength, c.length, 1e-5);
        EXPECT_FALSE(std::signbit(out.ArcLength)) << call;
    }
    // 6000 seconds below the horizon toward azimuth 100000 seconds, 100 m out.
    const StationRecord station = qtest::station(0.0, 0.0, 50.0);
    const double hz = 100000.0 / QUILLON_RHO_SEC, v = 6000.0 / QUILLON_RHO_SEC;
    for (const bool face_two : {false, true}) {
        const Call call("LIB_ArcCalc",
                        face_two ? "below the horizon, face II" : "below the horizon, face I");
        const ArcDefinition arc =
            face_two ? circle(748000.0, 966000.0) : circle(100000.0, 330000.0);
        ArcResult out;
        ASSERT_STATUS(call, LIB_ArcCalc(&station, &arc, &out, 0), 0);
        EXPECT_BELOW(call, std::hypot(out.X - R * std::cos(hz), out.Y - R * std::sin(hz)), 1e-4);
        EXPECT_WITHIN(call, out.H, 51.5 - R * std::tan(v), 1e-4);
        EXPECT_WITHIN(call, out.SightDistance, R / std::cos(v), 1e-4);
    }
    // A chord of 200 m running east: the centre at its middle, or south of it
    // by sqrt(r^2 - 100^2) for the double nearest 100.000000001.
    const struct {
        double radius, centre_x;
    } chords[] = {{100.0, 0.0}, {100.000000001, -0.0004472144084125756}};
    const StationRecord middle = qtest::station(0.0, 100.0, 0.0);
    for (const auto& [call, c] : qtest::rows("LIB_ArcCalc", chords)) {
        ArcDefinition arc = {
            {0.0, 0.0, 0.0}, {0.0, 200.0, 0.0}, {}, c.radius, {0.0, 324000.0, 0.0}};
        ArcResult out;
        ASSERT_STATUS(call, LIB_ArcCalc(&middle, &arc, &out, 1), 0);
        EXPECT_BITS(call, out.CentreX, c.centre_x);
        EXPECT_BITS(call, out.CentreY, 100.0);
    }
}

TEST(Arc, FailuresInTheirOrder)
{
    const StationRecord outside = qtest::station(0.0, -300.0, 0.0);
    auto fails = [](const char* name, const ArcDefinition& arc, unsigned char mode, int status,
                    const StationRecord& station) {
        const Call call("LIB_ArcCalc", name);
        ArcResult out = qtest::sentinel_filled<ArcResult>();
        EXPECT_STATUS(call, LIB_ArcCalc(&station, &arc, &out, mode), status);
        EXPECT_UNTOUCHED(call, out);
    };
    ArcDefinition arc = circle(324000.0);
    arc.P3 = {R, 0.0, 5.0};
    fails("two points coincide", arc, 0, 3, outside);
    arc.P2 = arc.P3;
    fails("chord of no length", arc, 1, 3, outside);
    arc = circle(324000.0);
    arc.P2 = {0.0, 0.0, 0.0};
    fails("collinear points", arc, 2, 1, outside);
    arc.P2 = {0.0, 1e-9, 0.0};
    fails("centre out of range", arc, 0, 2, outside);
    fails("radius 0", circle(324000.0, 324000.0, 0.0), 1, 1, outside);
    fails("radius shorter than half the chord", circle(324000.0, 324000.0, 70.0), 1, 1, outside);
    fails("radius not a number", circle(324000.0, 324000.0, qtest::NaN), 1, 1, outside);
    fails("plumb sight", circle(324000.0, 0.0), 0, 1, outside);
    fails("sight away from the circle", circle(972000.0), 0, 5, outside);
    fails("sight passing the circle", circle(0.0), 0, 5, outside);
    // Tangent from a hair outside, all but plumb: the roots' product underflows to 0, and the
    // sight misses rather than meeting the circle at infinity.
    const StationRecord beside = qtest::station(-0.0, 100.000000000001, 0.0, 1, 1, 0.0);
    fails("sight grazing the circle", circle(-0.0, 1e-152), 0, 5, beside);
}
