// A point on an arc by a sight without a distance.
#include "bits.hpp"
#include "quillon.h"
#include "records.hpp"

#include <cmath>

namespace {

const double PI = 3.141592653589793;
const double R = 100.0;

// A circle of 100 m about (0, 0): three points running clockwise (north,
// east, south), or in mode 1 the chord north -> east with a signed radius.
ArcDefinition circle(double horizontal, double zenith = 324000.0, double radius = R)
{
    ArcDefinition arc = qtest::sentinel_filled<ArcDefinition>();
    arc.P1 = {R, 0.0, 0.0};
    arc.P2 = {0.0, R, 0.0};
    arc.P3 = {-R, 0.0, 0.0};
    arc.Radius = radius;
    arc.Sight = {horizontal, zenith, 0.0};
    return arc;
}

} // namespace

TEST(Arc, SightsWithKnownCrossings)
{
    struct Case {
        double station_x, station_y;
        double horizontal;
        unsigned char mode;
        double radius;
        double x, y, arc_length; // the crossing and its length from P1 = (100, 0)
    };
    const double r2 = R / std::sqrt(2.0);
    const Case cases[] = {
        // From the centre every sight meets the circle at its radius.
        {0, 0, 324000.0, 0, 0, 0, R, R * PI / 2},
        {0, 0, 810000.0, 2, 0, -r2, -r2, R * PI * 5 / 4},
        // From outside the nearer crossing counts.
        {-200, 0, 0.0, 0, 0, -R, 0, R * PI},
        {0, -300, 324000.0, 0, 0, 0, -R, R * PI * 3 / 2},
        // A secant from (0, -300) toward (100, 0) crosses first at (80, -60).
        {0, -300, std::atan2(300.0, 100.0) * QUILLON_RHO_SEC, 0, 0, 80, -60,
         R * (2 * PI - std::atan2(60.0, 80.0))},
        // Inside, off centre: the sight leaves through the far side.
        {0, 60, 0.0, 0, 0, 80, 60, R * std::atan2(60.0, 80.0)},
        // The same circle from the chord and a radius to its right.
        {0, 0, 324000.0, 1, R, 0, R, R * PI / 2},
        // Centre to the left, at (100, 100): the arc turns anticlockwise.
        {100, 100, 648000.0, 1, -R, 0, 100, R * PI / 2},
    };
    for (const Case& c : cases) {
        const StationRecord station = qtest::station(c.station_x, c.station_y, 0.0, 1, 1, 0.0);
        const ArcDefinition arc = circle(c.horizontal, 324000.0, c.radius);
        ArcResult out = qtest::sentinel_filled<ArcResult>();
        ASSERT_EQ(LIB_ArcCalc(&station, &arc, &out, c.mode), 0) << c.x << " " << c.y;
        EXPECT_NEAR(out.Radius, R, 1e-9);
        EXPECT_NEAR(out.X, c.x, 1e-5);
        EXPECT_NEAR(out.Y, c.y, 1e-5);
        EXPECT_NEAR(std::hypot(out.X - out.CentreX, out.Y - out.CentreY), R, 1e-9);
        EXPECT_NEAR(out.HorizontalDistance, std::hypot(c.x - c.station_x, c.y - c.station_y), 1e-5);
        EXPECT_NEAR(out.ArcLength, c.arc_length, 1e-5) << c.x << " " << c.y;
    }
}

TEST(Arc, FaceTwoSightMeetsTheSamePoint)
{
    const StationRecord station = qtest::station(0.0, 0.0, 50.0);
    const ArcDefinition face_one = circle(100000.0, 330000.0);
    const ArcDefinition face_two = circle(748000.0, 966000.0);
    ArcResult one;
    ArcResult two;
    ASSERT_EQ(LIB_ArcCalc(&station, &face_one, &one, 0), 0);
    ASSERT_EQ(LIB_ArcCalc(&station, &face_two, &two, 0), 0);
    EXPECT_NEAR(two.X, one.X, 1e-4);
    EXPECT_NEAR(two.Y, one.Y, 1e-4);
    EXPECT_NEAR(two.H, one.H, 1e-4);
    // 6000 seconds below the horizon, 100 m out.
    EXPECT_NEAR(one.H, 51.5 - 100.0 * std::tan(6000.0 / 206264.8), 1e-4);
    EXPECT_NEAR(one.SightDistance, 100.0 / std::cos(6000.0 / 206264.8), 1e-4);
}

TEST(Arc, FailuresInTheirOrder)
{
    ArcDefinition coincident = circle(324000.0);
    coincident.P3 = {R, 0.0, 5.0};
    ArcDefinition chord_zero = coincident;
    chord_zero.P2 = coincident.P3;
    ArcDefinition collinear = circle(324000.0);
    collinear.P2 = {0.0, 0.0, 0.0};
    ArcDefinition nearly_collinear = collinear;
    nearly_collinear.P2 = {0.0, 1e-9, 0.0};
    struct Case {
        const char* name;
        ArcDefinition arc;
        unsigned char mode;
        int status;
    };
    const Case cases[] = {
        {"two points coincide", coincident, 0, 3},
        {"chord of no length", chord_zero, 1, 3},
        {"collinear points", collinear, 2, 1},
        {"radius 0", circle(324000.0, 324000.0, 0.0), 1, 1},
        {"radius shorter than half the chord", circle(324000.0, 324000.0, 70.0), 1, 1},
        {"radius not a number", circle(324000.0, 324000.0, qtest::NaN), 1, 1},
        {"plumb sight", circle(324000.0, 0.0), 0, 1},
        {"centre out of range", nearly_collinear, 0, 2},
        {"sight away from the circle", circle(972000.0), 0, 5},
        {"sight passing the circle", circle(0.0), 0, 5},
    };
    const StationRecord outside = qtest::station(0.0, -300.0, 0.0);
    for (const Case& c : cases) {
        ArcResult out = qtest::sentinel_filled<ArcResult>();
        EXPECT_EQ(LIB_ArcCalc(&outside, &c.arc, &out, c.mode), c.status) << c.name;
        EXPECT_TRUE(qtest::untouched(out)) << c.name;
    }
}

TEST(Arc, ExactCases)
{
    // P1 due east of the centre, the arc running clockwise through south and
    // west: the point due north lies three quarters of the circle on, with
    // no seam where the turn passes north.
    ArcDefinition arc = circle(0.0);
    arc.P1 = {0.0, R, 0.0};
    arc.P2 = {-R, 0.0, 0.0};
    arc.P3 = {0.0, -R, 0.0};
    const StationRecord centre = qtest::station(0.0, 0.0, 0.0);
    ArcResult out;
    ASSERT_EQ(LIB_ArcCalc(&centre, &arc, &out, 0), 0);
    EXPECT_NEAR(out.ArcLength, 471.23889803846896, 1e-9);

    // A chord of 200 m running east: the centre at its middle, or south of it
    // by sqrt(r^2 - 100^2) for the double nearest 100.000000001.
    const double radii[] = {100.0, 100.000000001};
    const double centre_x[] = {0.0, -0.0004472144084125756};
    const StationRecord middle = qtest::station(0.0, 100.0, 0.0);
    for (int i = 0; i < 2; ++i) {
        arc = circle(0.0, 324000.0, radii[i]);
        arc.P1 = {0.0, 0.0, 0.0};
        arc.P2 = {0.0, 200.0, 0.0};
        ASSERT_EQ(LIB_ArcCalc(&middle, &arc, &out, 1), 0);
        EXPECT_BITS(out.CentreX, centre_x[i]);
        EXPECT_BITS(out.CentreY, 100.0);
    }
}
