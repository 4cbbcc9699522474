// Face status, sums, distances, azimuths and polar points.
#include "bits.hpp"
#include "quillon.h"
#include "records.hpp"

#include <cmath>
#include <limits>

using qtest::EAST;
using qtest::INF;
using qtest::LIMIT;
using qtest::NaN;
using qtest::SOUTH;
using qtest::WEST;

namespace {

const double ABOVE_LIMIT = qtest::ABOVE_LIMIT;

StationRecord station_at(double x, double y, double h, signed char a, signed char b)
{
    return qtest::station(x, y, h, a, b);
}

} // namespace

TEST(FaceStatus, Boundaries)
{
    struct Case {
        double zenith;
        int status;
        int face; // -1: untouched
    };
    const Case cases[] = {
        {0.0, 0, 1},         {-0.0, 0, 1},        {648000.0, 0, 1}, {648000.0001, 0, 255},
        {1296000.0, 0, 255}, {1300000.0, 0, 255}, {INF, 0, 255},    {-0.0001, 1, -1},
        {-INF, 1, -1},       {NaN, 1, -1},
    };
    for (const Case& c : cases) {
        unsigned char face = 0xA5;
        EXPECT_EQ(LIB_GetFaceStatus(c.zenith, &face), c.status) << c.zenith;
        EXPECT_EQ(face, c.face < 0 ? 0xA5 : c.face) << c.zenith;
    }
}

TEST(Sum, AddsOntoTheCallersValue)
{
    const double values[] = {1.0, 2.0};
    double sum = 5.0;
    EXPECT_EQ(LIB_Sum(values, 2, &sum), 0);
    EXPECT_BITS(sum, 8.0);
    EXPECT_EQ(LIB_Sum(values, 0, &sum), 0);
    EXPECT_BITS(sum, 8.0);
}

TEST(Sum, OutOfRangeSumIsKept)
{
    const double values[] = {LIMIT, 1.0, NaN};
    double sum = 0.0;
    EXPECT_EQ(LIB_Sum(values, 1, &sum), 0);
    EXPECT_EQ(LIB_Sum(values + 1, 1, &sum), 2);
    EXPECT_BITS(sum, LIMIT + 1.0);
    sum = -LIMIT;
    EXPECT_EQ(LIB_Sum(values, 0, &sum), 0);
    EXPECT_EQ(LIB_Sum(values + 2, 1, &sum), 2);
    EXPECT_TRUE(std::isnan(sum));
}

TEST(TwoPointDistance, PlanAndSpatial)
{
    const SurveyPoint a{1.0, 2.0, 3.0};
    const SurveyPoint b{4.0, 6.0, 15.0};
    double d = 0.0;
    EXPECT_EQ(LIB_Cal2PointDist(&a, &b, &d, 0), 0);
    EXPECT_BITS(d, 5.0);
    EXPECT_EQ(LIB_Cal2PointDist(&a, &b, &d, 1), 0);
    EXPECT_BITS(d, 13.0);
}

TEST(TwoPointDistance, UpperBoundOnlyAndWrittenBeforeTheTest)
{
    const SurveyPoint origin{0.0, 0.0, 0.0};
    struct Case {
        SurveyPoint far;
        unsigned char mode;
        int status;
    };
    const Case cases[] = {
        {{LIMIT, 0.0, 0.0}, 0, 0},       {{ABOVE_LIMIT, 0.0, 0.0}, 0, 2},
        {{0.0, 0.0, ABOVE_LIMIT}, 0, 0}, {{0.0, 0.0, ABOVE_LIMIT}, 1, 2},
        {{NaN, 0.0, 0.0}, 0, 0},         {{INF, 0.0, 0.0}, 1, 2},
    };
    for (const Case& c : cases) {
        double d = 0.0;
        EXPECT_EQ(LIB_Cal2PointDist(&origin, &c.far, &d, c.mode), c.status);
        EXPECT_BITS(d, std::fabs(c.mode == 0 ? c.far.X : c.far.X + c.far.H));
    }
}

TEST(TwoPointDistance, OtherModeWritesNothingButTestsTheCallersValue)
{
    const SurveyPoint a{0.0, 0.0, 0.0};
    const SurveyPoint b{3.0, 4.0, 0.0};
    double d = 1.0;
    EXPECT_EQ(LIB_Cal2PointDist(&a, &b, &d, 7), 0);
    EXPECT_BITS(d, 1.0);
    d = 1e9;
    EXPECT_EQ(LIB_Cal2PointDist(&a, &b, &d, 7), 2);
    EXPECT_BITS(d, 1e9);
}

TEST(Azimuth, QuadrantsCarryThePiMismatch)
{
    const SurveyPoint origin{0.0, 0.0, 0.0};
    struct Case {
        SurveyPoint to;
        double azimuth;
    };
    const Case cases[] = {
        {{1.0, 0.0, 0.0}, 0.0},
        {{0.0, 1.0, 0.0}, EAST},
        {{-1.0, 0.0, 0.0}, SOUTH},
        {{0.0, -1.0, 0.0}, WEST},
        {{1.0, 1.0, 5.0}, 162000.00276342212},
        {{1.0, -1e-300, 0.0}, 1296000.0}, // a hair west of north wraps to a full circle
    };
    for (const Case& c : cases) {
        double az = -1.0;
        EXPECT_EQ(LIB_CalAZ(&origin, &c.to, &az), 0);
        EXPECT_BITS(az, c.azimuth);
        EXPECT_GE(az, 0.0);
    }
}

TEST(Azimuth, CoincidentInPlanLeavesOutputAlone)
{
    const SurveyPoint a{10.0, 20.0, 0.0};
    const SurveyPoint b{10.0, 20.0, 99.0};
    double az = qtest::sentinel_double();
    EXPECT_EQ(LIB_CalAZ(&a, &b, &az), 3);
    EXPECT_TRUE(qtest::untouched(az));
}

TEST(DistAngle, LevelSightOnBothFaces)
{
    const SurveyPoint from{0.0, 0.0, 5.0};
    const SurveyPoint to{0.0, 10.0, 5.0};
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_CalDistAngle(&from, &to, 1, &out), 0);
    EXPECT_TRUE(qtest::untouched(out.X) && qtest::untouched(out.Y) && qtest::untouched(out.H));
    EXPECT_BITS(out.SlopeDistance, 10.0);
    EXPECT_BITS(out.HorizontalDistance, 10.0);
    EXPECT_BITS(out.HeightDifference, 0.0);
    EXPECT_BITS(out.Azimuth, EAST);
    EXPECT_BITS(out.ZenithAngle, EAST);
    EXPECT_EQ(LIB_CalDistAngle(&from, &to, 255, &out), 0);
    EXPECT_BITS(out.ZenithAngle, WEST);
    EXPECT_EQ(LIB_CalDistAngle(&from, &to, 254, &out), 0);
    EXPECT_BITS(out.ZenithAngle, EAST);
}

TEST(DistAngle, PlumbSightWritesDistancesOnly)
{
    const SurveyPoint from{1.0, 2.0, 3.0};
    const SurveyPoint to{1.0, 2.0, 10.0};
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_EQ(LIB_CalDistAngle(&from, &to, 1, &out), 3);
    EXPECT_BITS(out.SlopeDistance, 7.0);
    EXPECT_BITS(out.HorizontalDistance, 0.0);
    EXPECT_BITS(out.HeightDifference, 7.0);
    EXPECT_TRUE(qtest::untouched(out.Azimuth));
    EXPECT_TRUE(qtest::untouched(out.ZenithAngle));
}

TEST(DistAngle, OutOfRangeWritesDistancesOnly)
{
    struct Case {
        SurveyPoint to;
    };
    const Case cases[] = {
        {{ABOVE_LIMIT, 0.0, 0.0}}, {{1.0, 0.0, ABOVE_LIMIT}}, {{1.0, 0.0, -ABOVE_LIMIT}}};
    const SurveyPoint from{0.0, 0.0, 0.0};
    for (const Case& c : cases) {
        DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
        EXPECT_EQ(LIB_CalDistAngle(&from, &c.to, 1, &out), 2);
        EXPECT_BITS(out.HeightDifference, c.to.H);
        EXPECT_TRUE(qtest::untouched(out.Azimuth));
        EXPECT_TRUE(qtest::untouched(out.ZenithAngle));
    }
}

TEST(MeasuredPoint, FaceSignsTurnTheDistance)
{
    DistanceRecord d{};
    d.HorizontalDistance = 100.0;
    d.VerticalDifference = 2.0;
    const double north = 0.0;
    struct Case {
        signed char a, b;
        double x;
    };
    const Case cases[] = {{1, 1, 1100.0}, {-1, -1, 1100.0}, {-1, 1, 900.0}, {1, -1, 900.0}};
    for (const Case& c : cases) {
        const StationRecord s = station_at(1000.0, 500.0, 50.0, c.a, c.b);
        SurveyPoint p = qtest::sentinel_filled<SurveyPoint>();
        EXPECT_EQ(LIB_MeasCoor(&s, &d, &north, &p), 0);
        EXPECT_BITS(p.X, c.x);
        EXPECT_BITS(p.Y, 500.0);
        EXPECT_BITS(p.H, ((1.5 + 2.0) + 50.0) - 1.2);
    }
}

TEST(MeasuredPoint, OutOfRangeLeavesPointAlone)
{
    DistanceRecord d{};
    d.HorizontalDistance = 10.0;
    const double north = 0.0;
    const StationRecord cases[] = {
        station_at(LIMIT, 0.0, 0.0, 1, 1),
        station_at(0.0, NaN, 0.0, 1, 1),
        station_at(0.0, 0.0, LIMIT, 1, 1),
    };
    for (const StationRecord& s : cases) {
        SurveyPoint p = qtest::sentinel_filled<SurveyPoint>();
        EXPECT_EQ(LIB_MeasCoor(&s, &d, &north, &p), 2);
        EXPECT_TRUE(qtest::untouched(p));
    }
}

TEST(PolarPoint, HeightIsNeverTested)
{
    const SurveyPoint from{0.0, 0.0, LIMIT};
    SurveyPoint p = qtest::sentinel_filled<SurveyPoint>();
    EXPECT_EQ(LIB_CalCoor(&from, 0.0, 10.0, 1.0, &p), 0);
    EXPECT_BITS(p.X, 10.0);
    EXPECT_BITS(p.Y, 0.0);
    EXPECT_BITS(p.H, LIMIT + 1.0);
}

TEST(PolarPoint, PlanOutOfRangeLeavesPointAlone)
{
    const SurveyPoint from{LIMIT - 1.0, 0.0, 0.0};
    struct Case {
        double azimuth, distance;
        int status;
    };
    const Case cases[] = {
        {0.0, 1.0, 0}, {0.0, 2.0, 2}, {648000.0, 2.0 * LIMIT + 1.0, 2}, {0.0, NaN, 2}};
    for (const Case& c : cases) {
        SurveyPoint p = qtest::sentinel_filled<SurveyPoint>();
        EXPECT_EQ(LIB_CalCoor(&from, c.azimuth, c.distance, 0.0, &p), c.status);
        EXPECT_EQ(qtest::untouched(p), c.status != 0);
    }
}

TEST(PolarPoint, RoundTripThroughTheJoin)
{
    const SurveyPoint from{5000.0, 3000.0, 100.0};
    const double azimuths[] = {0.5, 123456.7, 324000.0, 700000.25, 1295999.0};
    const double distances[] = {0.01, 12.345, 987.654, 25000.0};
    for (double azimuth : azimuths) {
        for (double distance : distances) {
            SurveyPoint pair[2] = {from, {}};
            ASSERT_EQ(LIB_CalCoor(&from, azimuth, distance, -3.25, &pair[1]), 0);
            BearingRecord join = qtest::sentinel_filled<BearingRecord>();
            ASSERT_EQ(LIB_CalDist(pair, &join), 0);
            EXPECT_NEAR(join.HorizontalDistance, distance, 1e-9);
            // Both conversions use pi as 3.1415926 and undo each other, but
            // atan2 wraps at the true pi: past it the join comes back short
            // by 1296000 * (pi / 3.1415926 - 1), about 0.0221 seconds.
            const double wrap_loss = 1296000.0 * (3.14159265358979312 / 3.1415926 - 1.0);
            const double expected = azimuth * 4.848136728395062e-6 > 3.14159265358979312
                                        ? azimuth - wrap_loss
                                        : azimuth;
            EXPECT_NEAR(join.Azimuth, expected, 2e-5 / distance + 1e-6)
                << azimuth << " " << distance;
            EXPECT_BITS(join.HeightDifference, pair[1].H - from.H);
            EXPECT_TRUE(qtest::untouched(join.Spare1));
            EXPECT_TRUE(qtest::untouched(join.Spare4));
        }
    }
}

TEST(Join, CoincidentPointsLeaveRecordAlone)
{
    const SurveyPoint pair[2] = {{1.0, 1.0, 0.0}, {1.0, 1.0, 5.0}};
    BearingRecord join = qtest::sentinel_filled<BearingRecord>();
    EXPECT_EQ(LIB_CalDist(pair, &join), 3);
    EXPECT_TRUE(qtest::untouched(join));
}

TEST(Join, LongDistanceDeliveredWithoutComplaint)
{
    const SurveyPoint pair[2] = {{0.0, 0.0, 0.0}, {2.0 * LIMIT, 0.0, 0.0}};
    BearingRecord join = qtest::sentinel_filled<BearingRecord>();
    EXPECT_EQ(LIB_CalDist(pair, &join), 0);
    EXPECT_BITS(join.HorizontalDistance, 2.0 * LIMIT);
    EXPECT_BITS(join.Azimuth, 0.0);
}
