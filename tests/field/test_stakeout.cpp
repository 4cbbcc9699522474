// Stakeout by distance and angle, by coordinates, by height and by divisions.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>

namespace {

const double PI = 3.141592653589793;

StationRecord station_at(double x, double y, double h, signed char a, signed char b)
{
    StationRecord s{};
    s.X = x;
    s.Y = y;
    s.H = h;
    s.InstrumentHeight = 1.5;
    s.TargetHeight = 1.2;
    s.signA = a;
    s.signB = b;
    s.refractionMode = 0;
    return s;
}

DistanceRecord shot(double slope, double horizontal, double vertical)
{
    return DistanceRecord{slope, horizontal, vertical, 0.0};
}

} // namespace

TEST(StakeoutDistAngle, RefusedInputsLeaveOutUntouched)
{
    const StationRecord s = station_at(0, 0, 0, 1, 1);
    const DistanceRecord m = shot(10, 9, 1);
    const double angle = 100.0;
    struct Case {
        double distance, angle;
        unsigned char type;
        int status;
    };
    const Case cases[] = {
        {0.0, 0.0, 1, 1}, {-1.0, 0.0, 2, 1}, {0.0, 0.0, 7, 1},     {1e-300, 0.0, 1, 0},
        {0.0, 0.0, 3, 0}, {-5.0, 0.0, 3, 0}, {5.0, -0.0001, 1, 1}, {5.0, -0.0, 1, 0},
    };
    for (const Case& c : cases) {
        SODistAngleResult out = qtest::sentinel_filled<SODistAngleResult>();
        EXPECT_EQ(LIB_SO_DistAngle(&s, &m, &angle, c.distance, c.angle, &out, c.type), c.status)
            << c.distance << " " << c.angle << " " << int(c.type);
        EXPECT_EQ(qtest::untouched(out), c.status != 0);
    }
    EXPECT_EQ(LIB_SO_DistAngle(&s, &m, &angle, 5.0, 0.0, nullptr, 1), 1);
}

TEST(StakeoutDistAngle, DistanceByType)
{
    const StationRecord s = station_at(0, 0, 0, 1, 1);
    const DistanceRecord m = shot(10.5, 10.25, 2.5);
    const double angle = 0.0;
    struct Case {
        unsigned char type;
        double design, expected;
    };
    // Type 3: ((2.5 - 1) + 1.5) - 1.2, the height of the target mark.
    const Case cases[] = {{1, 10.0, 0.5}, {2, 10.0, 0.25}, {3, 1.0, 1.8}, {3, -1.0, 3.8}};
    for (const Case& c : cases) {
        SODistAngleResult out = qtest::sentinel_filled<SODistAngleResult>();
        EXPECT_EQ(LIB_SO_DistAngle(&s, &m, &angle, c.design, 0.0, &out, c.type), 0);
        EXPECT_BITS(out.DistanceDifference, c.expected);
        EXPECT_BITS(out.AngleDifference, 0.0);
    }
    SODistAngleResult out = qtest::sentinel_filled<SODistAngleResult>();
    EXPECT_EQ(LIB_SO_DistAngle(&s, &m, &angle, 1.0, 0.0, &out, 4), 0);
    EXPECT_TRUE(qtest::untouched(out.DistanceDifference));
}

TEST(StakeoutDistAngle, AngleTurnedAndFolded)
{
    struct Case {
        signed char a, b;
        double measured, design, expected;
    };
    const Case cases[] = {
        {1, 1, 10.0, 0.0, 10.0},
        {1, -1, 10.0, 0.0, -647990.0}, // face II takes the half circle off
        {-1, 1, 648000.0, 0.0, 0.0},
        {1, 1, 1295000.0, 0.0, -1000.0},
        {1, 1, 648000.0, 0.0, 648000.0}, // the fold is strict
        {1, 1, 0.0, 648000.0, -648000.0},
        {1, 1, 0.0, 648001.0, 647999.0},
        {1, -1, 0.0, 1.0, 647999.0}, // -648001 folded up
    };
    const DistanceRecord m = shot(10, 10, 0);
    for (const Case& c : cases) {
        const StationRecord s = station_at(0, 0, 0, c.a, c.b);
        SODistAngleResult out = qtest::sentinel_filled<SODistAngleResult>();
        EXPECT_EQ(LIB_SO_DistAngle(&s, &m, &c.measured, 10.0, c.design, &out, 2), 0);
        EXPECT_BITS(out.AngleDifference, c.expected) << c.measured << " " << c.design;
    }
}

TEST(StakeoutDistAngle, NullMeasurementsFoldTheCallersAngle)
{
    const StationRecord s = station_at(0, 0, 0, 1, -1);
    const DistanceRecord m = shot(10, 10, 0);
    SODistAngleResult out = qtest::sentinel_filled<SODistAngleResult>();
    out.AngleDifference = 700000.0;
    EXPECT_EQ(LIB_SO_DistAngle(&s, &m, nullptr, 9.0, 0.0, &out, 2), 0);
    EXPECT_BITS(out.AngleDifference, -596000.0);
    EXPECT_BITS(out.DistanceDifference, 1.0);

    out = qtest::sentinel_filled<SODistAngleResult>();
    const double angle = 30.0;
    EXPECT_EQ(LIB_SO_DistAngle(&s, nullptr, &angle, 9.0, 0.0, &out, 2), 0);
    EXPECT_BITS(out.AngleDifference, -647970.0);
    EXPECT_TRUE(qtest::untouched(out.DistanceDifference));
}

TEST(StakeoutCoor, DesignOnTheStationIsRefused)
{
    const StationRecord s = station_at(100, 200, 50, 1, 1);
    const DistanceRecord m = shot(10, 10, 0);
    const double angle = 0.0;
    const SurveyPoint design{100, 200, 50};
    SOCoorResult out = qtest::sentinel_filled<SOCoorResult>();
    EXPECT_EQ(LIB_SO_Coor(&s, &m, &angle, &design, &out), 1);
    EXPECT_TRUE(qtest::untouched(out));
}

TEST(StakeoutCoor, DesignPlumbOverTheStationUsesAzimuthZero)
{
    const StationRecord s = station_at(100, 200, 50, 1, 1);
    const DistanceRecord m = shot(3, 2.5, 1);
    const double angle = 100.0;
    const SurveyPoint design{100, 200, 60};
    SOCoorResult out = qtest::sentinel_filled<SOCoorResult>();
    EXPECT_EQ(LIB_SO_Coor(&s, &m, &angle, &design, &out), 0);
    EXPECT_BITS(out.AngleDifference, 100.0);
    EXPECT_BITS(out.HorizontalDistanceDifference, 2.5);
    EXPECT_BITS(out.ForwardDifference, 2.5);
    EXPECT_BITS(out.LateralDifference, 0.0);
    EXPECT_BITS(out.H, 51.3);
    EXPECT_NEAR(out.HeightDifference, -8.7, 1e-12);
}

TEST(StakeoutCoor, ShotOnTheDesignPointLeavesNothingToMove)
{
    // Design 30 m north, 40 m east of the station: 50 m away.
    const SurveyPoint design{1030, 2040, 102};
    struct Case {
        signed char a, b;
        double reading_turn; // face II reads half a circle off
    };
    const Case cases[] = {{1, 1, 0.0}, {1, -1, 648000.0}, {-1, 1, 648000.0}, {-1, -1, 0.0}};
    for (const Case& c : cases) {
        const StationRecord s = station_at(1000, 2000, 100, c.a, c.b);
        const SurveyPoint at{s.X, s.Y, s.H};
        double azimuth = 0.0;
        ASSERT_EQ(LIB_CalAZ(&at, &design, &azimuth), 0);
        const double reading = azimuth + c.reading_turn;
        // 102 = 1.5 + v + 100 - 1.2
        const DistanceRecord m = shot(50.03, 50.0, 1.7);
        SOCoorResult out = qtest::sentinel_filled<SOCoorResult>();
        EXPECT_EQ(LIB_SO_Coor(&s, &m, &reading, &design, &out), 0);
        EXPECT_NEAR(out.AngleDifference, 0.0, 1e-9);
        EXPECT_BITS(out.HorizontalDistanceDifference, 0.0);
        EXPECT_NEAR(out.ForwardDifference, 0.0, 1e-12);
        EXPECT_NEAR(out.LateralDifference, 0.0, 1e-12);
        EXPECT_NEAR(out.HeightDifference, 0.0, 1e-12);
        // A face II reading turned by 648000 seconds misses by pi - 3.1415926
        // radians: 2.7e-6 m at 50 m.
        EXPECT_NEAR(out.X, 1030.0, 3e-6);
        EXPECT_NEAR(out.Y, 2040.0, 3e-6);
    }
}

TEST(StakeoutCoor, HalfCircleAddedThenFolded)
{
    // Design due north: azimuth exactly 0.
    const SurveyPoint design{110, 0, 0};
    const DistanceRecord m = shot(10, 10, 0);
    struct Case {
        signed char a, b;
        double measured, expected;
    };
    const Case cases[] = {
        {1, -1, 10.0, -647990.0},                                    // 648010 folded
        {1, -1, -10.0, 647990.0},     {1, -1, -1296001.0, 647999.0}, // -648001 folded up
        {1, 1, -648000.0, -648000.0},                                // the fold is strict
        {1, 1, 648000.5, -647999.5},
    };
    for (const Case& c : cases) {
        const StationRecord s = station_at(100, 0, 0, c.a, c.b);
        SOCoorResult out = qtest::sentinel_filled<SOCoorResult>();
        EXPECT_EQ(LIB_SO_Coor(&s, &m, &c.measured, &design, &out), 0);
        EXPECT_BITS(out.AngleDifference, c.expected) << c.measured;
    }
}

TEST(StakeoutCoor, RightOfTheDesignGivesPositiveLateral)
{
    const StationRecord s = station_at(0, 0, 0, 1, 1);
    const SurveyPoint design{100, 0, 0};
    const DistanceRecord m = shot(100, 100, 0);
    const double reading = 3600.0; // one degree clockwise of the design
    SOCoorResult out = qtest::sentinel_filled<SOCoorResult>();
    EXPECT_EQ(LIB_SO_Coor(&s, &m, &reading, &design, &out), 0);
    EXPECT_NEAR(out.LateralDifference, 100.0 * std::sin(PI / 180.0), 1e-6);
    EXPECT_NEAR(out.ForwardDifference, 100.0 * (1.0 - std::cos(PI / 180.0)), 1e-6);
}

TEST(StakeoutCoor, MeasuredPointOutOfRangeReadsAsOrigin)
{
    const StationRecord s = station_at(0, 0, 0, 1, 1);
    const SurveyPoint design{100, 0, 7};
    const DistanceRecord m = shot(2e8, 2e8, 0);
    const double reading = 0.0;
    SOCoorResult out = qtest::sentinel_filled<SOCoorResult>();
    EXPECT_EQ(LIB_SO_Coor(&s, &m, &reading, &design, &out), 0);
    EXPECT_BITS(out.X, 0.0);
    EXPECT_BITS(out.Y, 0.0);
    EXPECT_BITS(out.H, 0.0);
    EXPECT_BITS(out.HeightDifference, -7.0);
    EXPECT_BITS(out.HorizontalDistanceDifference, 2e8 - 100.0);
}

TEST(StakeoutHeight, FacesAndRange)
{
    const StationRecord s = station_at(0, 0, 0, 1, 1);
    const DistanceRecord m = shot(20, 20, 0.5);
    double out = qtest::sentinel_double();
    // Level sight: 10 - (-0.5 + 1.2).
    const double level[] = {0.0, 324000.0};
    EXPECT_EQ(LIB_SO_Height(&s, &m, level, 10.0, &out), 0);
    EXPECT_BITS(out, 9.3);

    // 20 degrees below the horizon on face I and face II.
    const double face1[] = {0.0, 396000.0};
    const double face2[] = {0.0, 900000.0};
    double out1 = 0.0;
    double out2 = 0.0;
    EXPECT_EQ(LIB_SO_Height(&s, &m, face1, 10.0, &out1), 0);
    EXPECT_EQ(LIB_SO_Height(&s, &m, face2, 10.0, &out2), 0);
    EXPECT_BITS(out1, out2);
    EXPECT_NEAR(out1, 10.0 - ((-20.0 * std::tan(20.0 * PI / 180.0) - 0.5) + 1.2), 1e-6);

    out = 0.0;
    EXPECT_EQ(LIB_SO_Height(&s, &m, level, 2e8, &out), 2);
    EXPECT_BITS(out, 199999999.3);
}

TEST(StakeoutDivide, CountsOutOfRange)
{
    const double lengths[] = {100.0, 50.0};
    const double directions[] = {0.0, 0.0};
    struct Case {
        unsigned char n, i;
        int status;
    };
    const Case cases[] = {{0, 1, 1},  {100, 1, 1}, {4, 0, 1},    {4, 199, 1},
                          {99, 1, 0}, {1, 198, 0}, {255, 255, 1}};
    for (const Case& c : cases) {
        const unsigned char counts[] = {c.n, c.i};
        SODivideResult out = qtest::sentinel_filled<SODivideResult>();
        EXPECT_EQ(LIB_SO_Divide(lengths, directions, counts, &out), c.status);
        EXPECT_EQ(qtest::untouched(out), c.status != 0);
    }
}

TEST(StakeoutDivide, PointsAlongAndBeyondTheLine)
{
    struct Case {
        unsigned char n, i;
        double measured, line_direction, measured_direction;
        double forward, angle;
    };
    const Case cases[] = {
        {4, 8, 200.0, 0.0, 0.0, 0.0, 0.0}, // twice the line length
        {4, 1, 20.0, 0.0, 0.0, -5.0, 0.0}, // 5 m short
        {3, 2, 80.0, 1200000.0, 10.0, 0.0, 96010.0}, {3, 2, 80.0, 10.0, 1200000.0, 0.0, -96010.0},
        {2, 1, 50.0, 0.0, 648000.0, 0.0, 648000.0}, // strict fold
    };
    for (const Case& c : cases) {
        const double lengths[] = {100.0, c.measured};
        const double directions[] = {c.line_direction, c.measured_direction};
        const unsigned char counts[] = {c.n, c.i};
        SODivideResult out = qtest::sentinel_filled<SODivideResult>();
        EXPECT_EQ(LIB_SO_Divide(lengths, directions, counts, &out), 0);
        EXPECT_BITS(out.AngleDifference, c.angle);
        if (c.angle == 0.0) {
            EXPECT_BITS(out.ForwardDifference, c.forward);
            EXPECT_BITS(out.LateralDifference, 0.0);
        }
    }
    // A quarter circle to the right: the lateral difference is the whole
    // design distance.
    const double lengths[] = {100.0, 0.0};
    const double directions[] = {0.0, 324000.0};
    const unsigned char counts[] = {2, 1};
    SODivideResult out{};
    EXPECT_EQ(LIB_SO_Divide(lengths, directions, counts, &out), 0);
    EXPECT_NEAR(out.LateralDifference, 50.0, 1e-9);
    EXPECT_NEAR(out.ForwardDifference, 0.0, 1e-5);
}
