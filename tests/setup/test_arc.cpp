// A point on an arc by a sight without a distance.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>
#include <limits>

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double PI = 3.141592653589793;

StationRecord station_at(double x, double y, double h, double instrument_height)
{
    StationRecord s{};
    s.X = x;
    s.Y = y;
    s.H = h;
    s.InstrumentHeight = instrument_height;
    s.signA = 1;
    s.signB = 1;
    return s;
}

// A circle of 100 m about (0, 0), given by three points running clockwise
// (north, east, south) and sighted level.
ArcDefinition clockwise_circle(double horizontal, double zenith)
{
    ArcDefinition arc;
    qtest::fill_sentinel(arc);
    arc.P1 = {100.0, 0.0, 0.0};
    arc.P2 = {0.0, 100.0, 0.0};
    arc.P3 = {-100.0, 0.0, 0.0};
    arc.Sight = {horizontal, zenith, 0.0};
    return arc;
}

ArcDefinition chord_circle(double radius, double horizontal)
{
    ArcDefinition arc;
    qtest::fill_sentinel(arc);
    arc.P1 = {100.0, 0.0, 0.0};
    arc.P2 = {0.0, 100.0, 0.0};
    arc.Radius = radius;
    arc.Sight = {horizontal, 324000.0, 0.0};
    return arc;
}

} // namespace

TEST(Arc, CircleThroughThreePoints)
{
    const StationRecord station = station_at(-200.0, 0.0, 10.0, 1.5);
    const ArcDefinition arc = clockwise_circle(0.0, 324000.0);
    ArcResult out = qtest::sentinel_filled<ArcResult>();
    ASSERT_EQ(LIB_ArcCalc(&station, &arc, &out, 0), 0);
    EXPECT_BITS(out.CentreX, 0.0);
    EXPECT_BITS(out.CentreY, 0.0);
    EXPECT_BITS(out.Radius, 100.0);
    // Looking north from 200 m south of the centre: the near crossing is the
    // southern point, half the circle from P1 going clockwise.
    EXPECT_NEAR(out.X, -100.0, 1e-9);
    EXPECT_NEAR(out.Y, 0.0, 1e-9);
    EXPECT_NEAR(out.H, 11.5, 1e-5);
    EXPECT_NEAR(out.HorizontalDistance, 100.0, 1e-9);
    EXPECT_NEAR(out.SightDistance, 100.0, 1e-9);
    EXPECT_NEAR(out.ArcLength, 100.0 * PI, 1e-5);
}

TEST(Arc, SightsWithKnownCrossings)
{
    struct Case {
        const char* name;
        double station_x, station_y;
        double horizontal; // arc-seconds
        unsigned char mode;
        double radius;
        double x, y;       // crossing
        double arc_length; // from P1 = (100, 0)
    };
    const double R = 100.0;
    const double r2 = R / std::sqrt(2.0);
    const Case cases[] = {
        // From the centre every sight meets the circle at its radius.
        {"centre, east", 0, 0, 324000.0, 0, 0, 0, R, R * PI / 2},
        {"centre, south-west", 0, 0, 810000.0, 0, 0, -r2, -r2, R * PI * 5 / 4},
        // From outside the nearer crossing counts.
        {"west of circle, looking east", 0, -300, 324000.0, 0, 0, 0, -R, R * PI * 3 / 2},
        // A secant: from (0, -300) toward (100, 0) crosses first at (80, -60).
        {"secant", 0, -300, std::atan2(300.0, 100.0) * QUILLON_RHO_SEC, 0, 0, 80, -60,
         R * (2 * PI - std::atan2(60.0, 80.0))},
        // Inside, off centre: the sight leaves through the far side.
        {"inside, north", 0, 60, 0.0, 0, 0, 80, 60, R * std::atan2(60.0, 80.0)},
        // The same circle from the chord P1 -> P2 and a radius to its right.
        {"chord, right", 0, 0, 324000.0, 1, R, 0, R, R * PI / 2},
        // Centre to the left: (100, 100), the arc turning anticlockwise;
        // from there the crossing to the west is P1's twin at (100, 0).
        {"chord, left", 100, 100, 972000.0, 1, -R, 100, 0, 0.0},
        {"chord, left, south", 100, 100, 648000.0, 1, -R, 0, 100, R * PI / 2},
    };
    for (const Case& c : cases) {
        const StationRecord station = station_at(c.station_x, c.station_y, 0.0, 0.0);
        const ArcDefinition arc = c.mode == 1 ? chord_circle(c.radius, c.horizontal)
                                              : clockwise_circle(c.horizontal, 324000.0);
        ArcResult out = qtest::sentinel_filled<ArcResult>();
        ASSERT_EQ(LIB_ArcCalc(&station, &arc, &out, c.mode), 0) << c.name;
        EXPECT_NEAR(out.Radius, R, 1e-9) << c.name;
        EXPECT_NEAR(out.X, c.x, 1e-5) << c.name;
        EXPECT_NEAR(out.Y, c.y, 1e-5) << c.name;
        EXPECT_NEAR(std::hypot(out.X - out.CentreX, out.Y - out.CentreY), R, 1e-9) << c.name;
        EXPECT_NEAR(std::fmod(out.ArcLength + 1e-3, 2 * PI * R) - 1e-3, c.arc_length, 1e-4)
            << c.name;
    }
}

TEST(Arc, FaceTwoSightMeetsTheSamePoint)
{
    // Reading turned by a half circle, zenith angle read from the other side.
    const StationRecord station = station_at(0.0, 0.0, 50.0, 1.5);
    const double zenith = 330000.0;
    const ArcDefinition face_one = clockwise_circle(100000.0, zenith);
    const ArcDefinition face_two = clockwise_circle(748000.0, 1296000.0 - zenith);
    ArcResult one;
    ArcResult two;
    ASSERT_EQ(LIB_ArcCalc(&station, &face_one, &one, 0), 0);
    ASSERT_EQ(LIB_ArcCalc(&station, &face_two, &two, 0), 0);
    EXPECT_NEAR(two.X, one.X, 1e-4);
    EXPECT_NEAR(two.Y, one.Y, 1e-4);
    EXPECT_NEAR(two.H, one.H, 1e-4);
    // Below the horizon by 6000 seconds at 100 m.
    EXPECT_NEAR(one.H, 51.5 - 100.0 * std::tan(6000.0 / 206264.8), 1e-4);
    EXPECT_NEAR(one.SightDistance, 100.0 / std::cos(6000.0 / 206264.8), 1e-4);
}

TEST(Arc, Failures)
{
    const StationRecord outside = station_at(0.0, -300.0, 0.0, 0.0);
    struct Case {
        const char* name;
        ArcDefinition arc;
        unsigned char mode;
        int status;
    };
    ArcDefinition coincident = clockwise_circle(324000.0, 324000.0);
    coincident.P3 = {100.0, 0.0, 5.0};
    ArcDefinition collinear = clockwise_circle(324000.0, 324000.0);
    collinear.P2 = {0.0, 0.0, 0.0};
    ArcDefinition nearly_collinear = collinear;
    nearly_collinear.P2 = {0.0, 1e-9, 0.0};
    ArcDefinition chord_zero = chord_circle(100.0, 324000.0);
    chord_zero.P2 = {100.0, 0.0, 7.0};
    const Case cases[] = {
        {"two points coincide", coincident, 0, 3},
        {"chord of no length", chord_zero, 1, 3},
        {"collinear points", collinear, 2, 1},
        {"radius 0", chord_circle(0.0, 324000.0), 1, 1},
        {"radius shorter than half the chord", chord_circle(70.0, 324000.0), 1, 1},
        {"radius not a number", chord_circle(NaN, 324000.0), 1, 1},
        {"plumb sight", clockwise_circle(324000.0, 0.0), 0, 1},
        {"centre out of range", nearly_collinear, 0, 2},
        {"sight away from the circle", clockwise_circle(972000.0, 324000.0), 0, 5},
        {"sight passing the circle", clockwise_circle(0.0, 324000.0), 0, 5},
    };
    for (const Case& c : cases) {
        ArcResult out = qtest::sentinel_filled<ArcResult>();
        EXPECT_EQ(LIB_ArcCalc(&outside, &c.arc, &out, c.mode), c.status) << c.name;
        EXPECT_TRUE(qtest::untouched(out)) << c.name;
    }
}

TEST(Arc, RadiusAsLongAsHalfTheChord)
{
    // A half circle on the chord: the centre is the chord's middle.
    const StationRecord station = station_at(50.0, 50.0, 0.0, 0.0);
    const ArcDefinition arc = chord_circle(std::sqrt(20000.0) / 2.0, 0.0);
    ArcResult out;
    ASSERT_EQ(LIB_ArcCalc(&station, &arc, &out, 1), 0);
    EXPECT_NEAR(out.CentreX, 50.0, 1e-6);
    EXPECT_NEAR(out.CentreY, 50.0, 1e-6);
}

TEST(Arc, LengthRunsOnAcrossNorthOfTheCentre)
{
    // P1 due east of the centre, the arc running clockwise through south and
    // west: the point due north lies three quarters of the circle on.
    const StationRecord station = station_at(0.0, 0.0, 0.0, 0.0);
    ArcDefinition arc = clockwise_circle(0.0, 324000.0);
    arc.P1 = {0.0, 100.0, 0.0};
    arc.P2 = {-100.0, 0.0, 0.0};
    arc.P3 = {0.0, -100.0, 0.0};
    ArcResult out;
    ASSERT_EQ(LIB_ArcCalc(&station, &arc, &out, 0), 0);
    EXPECT_NEAR(out.ArcLength, 471.23889803846896, 1e-9);
}

TEST(Arc, RadiusAHairLongerThanHalfTheChord)
{
    // Chord of 200 m running east; the centre lies south of its middle by
    // sqrt(r^2 - 100^2) for the double nearest 100.000000001.
    const StationRecord station = station_at(0.0, 100.0, 0.0, 0.0);
    ArcDefinition arc = chord_circle(100.000000001, 0.0);
    arc.P1 = {0.0, 0.0, 0.0};
    arc.P2 = {0.0, 200.0, 0.0};
    ArcResult out;
    ASSERT_EQ(LIB_ArcCalc(&station, &arc, &out, 1), 0);
    EXPECT_BITS(out.CentreX, -0.0004472144084125756);
    EXPECT_BITS(out.CentreY, 100.0);
}
