// Face status, sums, distances, azimuths and polar points.
#include "check.hpp"
#include "quillon.h"
#include "records.hpp"

#include <cmath>

using namespace qtest;

TEST(FaceStatus, Boundaries)
{
    const struct {
        double zenith;
        int status;
        int face; // -1: untouched
    } cases[] = {
        {0.0, 0, 1},         {-0.0, 0, 1},  {648000.0, 0, 1}, {648000.0001, 0, 255},
        {1300000.0, 0, 255}, {INF, 0, 255}, {-0.0001, 1, -1}, {NaN, 1, -1},
    };
    for (const auto& [call, c] : rows("LIB_GetFaceStatus", cases)) {
        unsigned char face = SENTINEL_BYTE;
        EXPECT_STATUS(call, LIB_GetFaceStatus(c.zenith, &face), c.status);
        EXPECT_BITS(call, face, c.face < 0 ? SENTINEL_BYTE : c.face);
    }
}

TEST(Sum, AddsOntoTheCallersValueAndKeepsAnOutOfRangeSum)
{
    const double values[] = {1.0, 2.0, LIMIT, NaN};
    const struct {
        double start;
        int first, count, status;
        double sum;
    } cases[] = {
        {5.0, 0, 2, 0, 8.0},         {5.0, 0, 0, 0, 5.0}, {0.0, 2, 1, 0, LIMIT},
        {1.0, 2, 1, 2, LIMIT + 1.0}, {0.0, 3, 1, 2, NaN},
    };
    for (const auto& [call, c] : rows("LIB_Sum", cases)) {
        double sum = c.start;
        EXPECT_STATUS(call, LIB_Sum(values + c.first, static_cast<unsigned char>(c.count), &sum),
                      c.status);
        EXPECT_BITS(call, sum, c.sum);
    }
}

TEST(TwoPointDistance, WrittenBeforeTheUpperBoundTest)
{
    const SurveyPoint origin{0.0, 0.0, 0.0};
    const struct {
        SurveyPoint far;
        unsigned char mode;
        double preset;
        int status;
        double distance;
    } cases[] = {
        {{3.0, 4.0, 12.0}, 0, 0.0, 0, 5.0},
        {{3.0, 4.0, 12.0}, 1, 0.0, 0, 13.0},
        {{LIMIT, 0.0, 0.0}, 0, 0.0, 0, LIMIT},
        {{ABOVE_LIMIT, 0.0, 0.0}, 0, 0.0, 2, ABOVE_LIMIT},
        {{0.0, 0.0, ABOVE_LIMIT}, 0, 0.0, 0, 0.0}, // plan distance ignores H
        {{0.0, 0.0, ABOVE_LIMIT}, 1, 0.0, 2, ABOVE_LIMIT},
        {{NaN, 0.0, 0.0}, 0, 0.0, 0, NaN}, // only "greater than" is tested
        {{3.0, 4.0, 0.0}, 7, 1.0, 0, 1.0}, // another mode writes nothing...
        {{3.0, 4.0, 0.0}, 7, 1e9, 2, 1e9}, // ...but tests the caller's value
    };
    for (const auto& [call, c] : rows("LIB_Cal2PointDist", cases)) {
        double d = c.preset;
        EXPECT_STATUS(call, LIB_Cal2PointDist(&origin, &c.far, &d, c.mode), c.status);
        EXPECT_BITS(call, d, c.distance);
    }
}

TEST(Azimuth, QuadrantsCarryThePiMismatch)
{
    const SurveyPoint origin{0.0, 0.0, 0.0};
    const struct {
        SurveyPoint to;
        double azimuth;
    } cases[] = {
        {{1.0, 0.0, 0.0}, 0.0},
        {{0.0, 1.0, 0.0}, EAST},
        {{-1.0, 0.0, 0.0}, SOUTH},
        {{0.0, -1.0, 0.0}, WEST},
        {{1.0, 1.0, 5.0}, 162000.00276342212},
        {{1.0, -1e-300, 0.0}, 1296000.0}, // a hair west of north wraps to a full circle
    };
    for (const auto& [call, c] : rows("LIB_CalAZ", cases)) {
        double az = -1.0;
        EXPECT_STATUS(call, LIB_CalAZ(&origin, &c.to, &az), 0);
        EXPECT_BITS(call, az, c.azimuth);
    }
    const Call plumb("LIB_CalAZ", "point plumb above");
    const SurveyPoint above{0.0, 0.0, 99.0};
    double az = sentinel_double();
    EXPECT_STATUS(plumb, LIB_CalAZ(&origin, &above, &az), 3);
    EXPECT_UNTOUCHED(plumb, az);
}

TEST(DistAngle, LevelSightOnBothFaces)
{
    const SurveyPoint from{0.0, 0.0, 5.0};
    const SurveyPoint to{0.0, 10.0, 5.0};
    const struct {
        unsigned char face;
        double zenith;
    } cases[] = {{1, EAST}, {254, EAST}, {255, WEST}};
    for (const auto& [call, c] : rows("LIB_CalDistAngle", cases)) {
        DistAngleRecord out = sentinel_filled<DistAngleRecord>();
        EXPECT_STATUS(call, LIB_CalDistAngle(&from, &to, c.face, &out), 0);
        DistAngleRecord expected = sentinel_filled<DistAngleRecord>(); // X, Y, H untouched
        expected.SlopeDistance = 10.0;
        expected.HorizontalDistance = 10.0;
        expected.HeightDifference = 0.0;
        expected.Azimuth = EAST;
        expected.ZenithAngle = c.zenith;
        EXPECT_BITS(call, out, expected);
    }
}

TEST(DistAngle, FailuresWriteTheDistancesOnly)
{
    const SurveyPoint from{1.0, 2.0, 3.0};
    const struct {
        SurveyPoint to;
        int status;
        double slope, horizontal;
    } cases[] = {
        {{1.0, 2.0, 10.0}, 3, 7.0, 0.0}, // plumb
        {{1.0 + 2.0 * LIMIT, 2.0, 3.0}, 2, 2.0 * LIMIT, 2.0 * LIMIT},
        {{2.0, 2.0, 3.0 + 2.0 * LIMIT}, 2, 2.0 * LIMIT, 1.0},
    };
    for (const auto& [call, c] : rows("LIB_CalDistAngle", cases)) {
        DistAngleRecord out = sentinel_filled<DistAngleRecord>();
        EXPECT_STATUS(call, LIB_CalDistAngle(&from, &c.to, 1, &out), c.status);
        EXPECT_WITHIN(call, out.SlopeDistance, c.slope, 1e-6);
        EXPECT_WITHIN(call, out.HorizontalDistance, c.horizontal, 1e-6);
        EXPECT_BITS(call, out.HeightDifference, c.to.H - 3.0);
        EXPECT_UNTOUCHED(call, out.Azimuth);
        EXPECT_UNTOUCHED(call, out.ZenithAngle);
    }
}

TEST(MeasuredPoint, FaceSignsTurnTheDistanceAndRangeLeavesItAlone)
{
    const DistanceRecord d = shot(0.0, 100.0, 2.0);
    const double north = 0.0;
    const struct {
        StationRecord s;
        int status;
        double x;
    } cases[] = {
        {station(1000.0, 500.0, 50.0, 1, 1), 0, 1100.0},
        {station(1000.0, 500.0, 50.0, -1, -1), 0, 1100.0},
        {station(1000.0, 500.0, 50.0, -1, 1), 0, 900.0},
        {station(LIMIT, 0.0, 0.0), 2, 0.0},
        {station(0.0, NaN, 0.0), 2, 0.0},
        {station(0.0, 0.0, LIMIT), 2, 0.0},
    };
    for (const auto& [call, c] : rows("LIB_MeasCoor", cases)) {
        SurveyPoint p = sentinel_filled<SurveyPoint>();
        EXPECT_STATUS(call, LIB_MeasCoor(&c.s, &d, &north, &p), c.status);
        if (c.status != 0) {
            EXPECT_UNTOUCHED(call, p);
            continue;
        }
        EXPECT_BITS(call, p, (SurveyPoint{c.x, 500.0, 52.3})); // H: ((1.5 + 2) + 50) - 1.2
    }
}

TEST(PolarPoint, OnlyThePlanPositionIsRangeTested)
{
    const SurveyPoint from{LIMIT - 1.0, 0.0, LIMIT};
    const struct {
        double azimuth, distance;
        int status;
    } cases[] = {{0.0, 1.0, 0}, {0.0, 2.0, 2}, {648000.0, 2.0 * LIMIT + 1.0, 2}, {0.0, NaN, 2}};
    for (const auto& [call, c] : rows("LIB_CalCoor", cases)) {
        SurveyPoint p = sentinel_filled<SurveyPoint>();
        EXPECT_STATUS(call, LIB_CalCoor(&from, c.azimuth, c.distance, 1.0, &p), c.status);
        if (c.status != 0) {
            EXPECT_UNTOUCHED(call, p);
        } else {
            EXPECT_BITS(call, p.X, LIMIT);
            EXPECT_BITS(call, p.H, LIMIT + 1.0); // beyond the limit, yet delivered
        }
    }
}

TEST(PolarPoint, RoundTripThroughTheJoin)
{
    const SurveyPoint from{5000.0, 3000.0, 100.0};
    const double azimuths[] = {0.5, 123456.7, 324000.0, 700000.25, 1295999.0};
    const double distances[] = {0.01, 12.345, 25000.0};
    for (double azimuth : azimuths) {
        for (double distance : distances) {
            const Call call("LIB_CalCoor then LIB_CalDist", "azimuth " + std::to_string(azimuth) +
                                                                ", distance " +
                                                                std::to_string(distance));
            SurveyPoint pair[2] = {from, {}};
            ASSERT_STATUS(call, LIB_CalCoor(&from, azimuth, distance, -3.25, &pair[1]), 0);
            BearingRecord join = sentinel_filled<BearingRecord>();
            ASSERT_STATUS(call, LIB_CalDist(pair, &join), 0);
            EXPECT_WITHIN(call, join.HorizontalDistance, distance, 1e-9);
            // Both conversions use pi as 3.1415926 and undo each other, but
            // atan2 wraps at the true pi: past it the join comes back short
            // by 1296000 * (pi / 3.1415926 - 1), about 0.0221 seconds.
            const double wrap_loss = 1296000.0 * (3.14159265358979312 / 3.1415926 - 1.0);
            const double expected = azimuth * 4.848136728395062e-6 > 3.14159265358979312
                                        ? azimuth - wrap_loss
                                        : azimuth;
            EXPECT_WITHIN(call, join.Azimuth, expected, 2e-5 / distance + 1e-6);
            EXPECT_BITS(call, join.HeightDifference, pair[1].H - from.H);
            EXPECT_UNTOUCHED(call, join.Spare1);
            EXPECT_UNTOUCHED(call, join.Spare4);
        }
    }
}

TEST(Join, CoincidentPointsFailAndLongDistancesPass)
{
    const Call coincident("LIB_CalDist", "coincident in plan");
    const SurveyPoint same[2] = {{1.0, 1.0, 0.0}, {1.0, 1.0, 5.0}};
    BearingRecord join = sentinel_filled<BearingRecord>();
    EXPECT_STATUS(coincident, LIB_CalDist(same, &join), 3);
    EXPECT_UNTOUCHED(coincident, join);

    const Call long_join("LIB_CalDist", "twice the limit");
    const SurveyPoint far[2] = {{0.0, 0.0, 0.0}, {2.0 * LIMIT, 0.0, 0.0}};
    EXPECT_STATUS(long_join, LIB_CalDist(far, &join), 0);
    BearingRecord expected = sentinel_filled<BearingRecord>(); // the spares stay
    expected.HorizontalDistance = 2.0 * LIMIT;
    expected.HeightDifference = 0.0;
    expected.Azimuth = 0.0;
    EXPECT_BITS(long_join, join, expected);
}
