// Area of a polygon and the missing line between two measured points.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>
#include <vector>

namespace {

const double PI = 3.141592653589793;

StationRecord station_at(double x, double y, signed char a, signed char b)
{
    StationRecord s{};
    s.X = x;
    s.Y = y;
    s.H = 100.0;
    s.InstrumentHeight = 1.5;
    s.TargetHeight = 0.0;
    s.signA = a;
    s.signB = b;
    return s;
}

// Difference of two directions brought into (-648000, 648000].
double direction_gap(double a, double b)
{
    double gap = std::fmod(a - b, 1296000.0);
    if (gap > 648000.0) {
        gap -= 1296000.0;
    }
    if (gap <= -648000.0) {
        gap += 1296000.0;
    }
    return gap;
}

} // namespace

TEST(Area, KnownPolygonsInBothOrientations)
{
    struct Case {
        std::vector<SurveyPoint> points;
        double area, perimeter;
    };
    const Case cases[] = {
        {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, 1.0, 4.0},
        {{{0, 0, 0}, {3, 0, 0}, {0, 4, 0}}, 6.0, 12.0},
        // Far from the origin: the products cancel exactly for whole metres.
        {{{5e6, 5e6, 0}, {5e6 + 1, 5e6, 0}, {5e6 + 1, 5e6 + 1, 0}, {5e6, 5e6 + 1, 0}}, 1.0, 4.0},
        // A bow tie: the two loops cancel.
        {{{0, 0, 0}, {1, 1, 0}, {1, 0, 0}, {0, 1, 0}}, 0.0, 2.0 + 2.0 * std::sqrt(2.0)},
    };
    for (const Case& c : cases) {
        const std::vector<SurveyPoint> reversed(c.points.rbegin(), c.points.rend());
        for (const std::vector<SurveyPoint>* points : {&c.points, &reversed}) {
            AreaResult out = qtest::sentinel_filled<AreaResult>();
            const unsigned char count = static_cast<unsigned char>(points->size());
            EXPECT_EQ(LIB_Area(count, points->data(), &out), 0);
            EXPECT_BITS(out.Area, c.area);
            EXPECT_BITS(out.Hectares, c.area * 0.0001);
            EXPECT_NEAR(out.Perimeter, c.perimeter, 1e-12);
        }
    }
}

TEST(Area, MostPointsApproachACircle)
{
    std::vector<SurveyPoint> points;
    for (int i = 0; i < 255; ++i) {
        const double t = 2.0 * PI * i / 255.0;
        points.push_back(SurveyPoint{10.0 * std::cos(t), 10.0 * std::sin(t), 0.0});
    }
    AreaResult out{};
    EXPECT_EQ(LIB_Area(255, points.data(), &out), 0);
    EXPECT_NEAR(out.Area, 0.5 * 255 * 100.0 * std::sin(2.0 * PI / 255.0), 1e-9);
    EXPECT_NEAR(out.Perimeter, 2.0 * 255 * 10.0 * std::sin(PI / 255.0), 1e-9);
}

TEST(Area, FailurePaths)
{
    const SurveyPoint two[] = {{0, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    // 10000 m by 10000 m is one hectare too many for the range limit;
    // a centimetre less passes.
    const SurveyPoint big[] = {{0, 0, 0}, {10000, 0, 0}, {10000, 10000, 0}, {0, 10000, 0}};
    const SurveyPoint fits[] = {{0, 0, 0}, {10000, 0, 0}, {10000, 9999.99, 0}, {0, 9999.99, 0}};
    AreaResult out = qtest::sentinel_filled<AreaResult>();
    EXPECT_EQ(LIB_Area(2, two, &out), 1);
    EXPECT_EQ(LIB_Area(0, two, &out), 1);
    EXPECT_EQ(LIB_Area(4, big, &out), 2);
    EXPECT_TRUE(qtest::untouched(out));
    EXPECT_EQ(LIB_Area(4, fits, &out), 0);
    EXPECT_NEAR(out.Area, 99999900.0, 1e-6);
}

TEST(MissLine, EqualsTheJoinOfTheComputedPoints)
{
    struct Case {
        double ha1, hd1, vd1, th1;
        double ha2, hd2, vd2, th2;
    };
    // One case for every branch of the relative direction s = HA2 - HA1.
    const Case cases[] = {
        {100000.0, 30.0, 1.0, 1.3, 400000.0, 45.0, -2.0, 1.6}, // 0 < s <= 648000
        {100000.0, 30.0, 1.0, 1.3, 900000.0, 45.0, -2.0, 1.6}, // s > 648000
        {900000.0, 30.0, 1.0, 1.3, 700000.0, 12.0, 3.5, 2.0},  // -648000 < s < 0
        {1000000.0, 20.0, 0.0, 1.0, 100000.0, 25.0, 0.0, 1.0}, // s <= -648000
        {36000.0, 50.0, 0.0, 1.5, 684000.0, 50.0, 0.0, 1.5},   // s = 648000
    };
    for (const Case& c : cases) {
        StationRecord s1 = station_at(500.0, 800.0, 1, 1);
        StationRecord s2 = s1;
        s1.TargetHeight = c.th1;
        s2.TargetHeight = c.th2;
        const DistanceRecord measured[] = {{0.0, c.hd1, c.vd1, 0.0}, {0.0, c.hd2, c.vd2, 0.0}};
        SurveyPoint pair[2];
        ASSERT_EQ(LIB_MeasCoor(&s1, &measured[0], &c.ha1, &pair[0]), 0);
        ASSERT_EQ(LIB_MeasCoor(&s2, &measured[1], &c.ha2, &pair[1]), 0);
        BearingRecord join{};
        ASSERT_EQ(LIB_CalDist(pair, &join), 0);

        const double angles[] = {c.ha1, 11.0, 22.0, c.ha2, 33.0, 44.0};
        MissLineResult out = qtest::sentinel_filled<MissLineResult>();
        EXPECT_EQ(LIB_MissLine(&s1, measured, angles, c.th1, c.th2, &out), 0);
        // Folding the angle between the sights by 1296000 seconds is off the
        // true full circle by 1.07e-7 rad: about a micrometre here.
        EXPECT_NEAR(out.HorizontalDistance, join.HorizontalDistance, 1e-5);
        EXPECT_NEAR(out.HeightDifference, join.HeightDifference, 1e-12);
        EXPECT_NEAR(out.SlopeDistance, std::hypot(join.HorizontalDistance, join.HeightDifference),
                    1e-5);
        EXPECT_NEAR(out.Grade, 100.0 * join.HeightDifference / join.HorizontalDistance, 1e-6);
        // The angle at the first point is cut to whole seconds.
        EXPECT_NEAR(direction_gap(out.Azimuth, join.Azimuth), 0.0, 1.05) << c.ha1 << " " << c.ha2;
        EXPECT_BITS(out.Azimuth, std::trunc(out.Azimuth));
    }
}

TEST(MissLine, FaceTwoTurnsTheAzimuth)
{
    const DistanceRecord measured[] = {{0.0, 10.0, 0.0, 0.0}, {0.0, 10.0, 0.0, 0.0}};
    // First point due north, second due east: the join runs south-east.
    const double angles[] = {0.0, 0.0, 0.0, 324000.0, 0.0, 0.0};
    const StationRecord face1 = station_at(0, 0, 1, 1);
    const StationRecord face2 = station_at(0, 0, 1, -1);
    MissLineResult out1{};
    MissLineResult out2{};
    EXPECT_EQ(LIB_MissLine(&face1, measured, angles, 0.0, 0.0, &out1), 0);
    EXPECT_EQ(LIB_MissLine(&face2, measured, angles, 0.0, 0.0, &out2), 0);
    EXPECT_BITS(out1.Azimuth, 486000.0);
    EXPECT_BITS(out2.Azimuth, 1134000.0);
    // A level line: no grade, the slope distance is the horizontal one.
    EXPECT_BITS(out1.Grade, 0.0);
    EXPECT_BITS(out1.SlopeDistance, out1.HorizontalDistance);
}

TEST(MissLine, SameDirectionKeepsTheCallersAzimuth)
{
    const DistanceRecord measured[] = {{0.0, 10.0, 0.0, 0.0}, {0.0, 25.0, 0.0, 0.0}};
    const double angles[] = {50000.0, 0.0, 0.0, 50000.0, 0.0, 0.0};
    struct Case {
        signed char b;
        double preset, expected;
    };
    const Case cases[] = {
        {1, 1234.5, 1234.5},       {1, 1300000.0, 4000.0},
        {1, 1296000.0, 1296000.0}, // only above a full circle is reduced
        {-1, 100.0, 648100.0},     {-1, 700000.0, 52000.0},
    };
    for (const Case& c : cases) {
        const StationRecord s = station_at(0, 0, 1, c.b);
        MissLineResult out = qtest::sentinel_filled<MissLineResult>();
        out.Azimuth = c.preset;
        EXPECT_EQ(LIB_MissLine(&s, measured, angles, 0.0, 0.0, &out), 0);
        EXPECT_BITS(out.HorizontalDistance, 15.0);
        EXPECT_BITS(out.Azimuth, c.expected) << c.preset;
    }
}

TEST(MissLine, NegativeAzimuthIsNotFolded)
{
    // Directions not normalised by the caller: s = -700000 and the azimuth
    // (HA1 - 648000) - g comes out below zero and stays there.
    const DistanceRecord measured[] = {{0.0, 10.0, 0.0, 0.0}, {0.0, 10.0, 0.0, 0.0}};
    const double angles[] = {100000.0, 0.0, 0.0, -600000.0, 0.0, 0.0};
    const StationRecord s = station_at(0, 0, 1, 1);
    MissLineResult out{};
    EXPECT_EQ(LIB_MissLine(&s, measured, angles, 0.0, 0.0, &out), 0);
    // Isosceles triangle with 596000 at the station: 26000 at each base.
    EXPECT_LT(out.Azimuth, 0.0);
    EXPECT_NEAR(out.Azimuth, -548000.0 - 26000.0, 1.0);
}

TEST(MissLine, PointsCoincidingInPlan)
{
    const DistanceRecord measured[] = {{0.0, 10.0, 1.0, 0.0}, {0.0, 10.0, 5.0, 0.0}};
    const double angles[] = {1000.0, 0.0, 0.0, 1000.0, 0.0, 0.0};
    const StationRecord s = station_at(0, 0, 1, 1);
    MissLineResult out = qtest::sentinel_filled<MissLineResult>();
    EXPECT_EQ(LIB_MissLine(&s, measured, angles, 0.0, 0.0, &out), 3);
    EXPECT_TRUE(qtest::untouched(out));
}
