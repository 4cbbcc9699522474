// Area of a polygon and the missing line between two measured points.
#include "bits.hpp"
#include "records.hpp"

#include <cmath>
#include <vector>

TEST(Area, KnownPolygonsInBothOrientationsAndFailures)
{
    struct Case {
        std::vector<SurveyPoint> points;
        int status;
        double area, perimeter, tolerance;
    };
    // 10000 m square is over the range limit; a centimetre less passes.
    const Case cases[] = {
        {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, 0, 1.0, 4.0, 0.0},
        {{{5e6, 5e6, 0}, {5e6 + 3, 5e6, 0}, {5e6, 5e6 + 4, 0}}, 0, 6.0, 12.0, 0.0},
        {{{0, 0, 0}, {1, 1, 0}, {1, 0, 0}, {0, 1, 0}}, 0, 0.0, 4.82842712474619, 1e-14}, // bow tie
        {{{0, 0, 0}, {1e4, 0, 0}, {1e4, 9999.99, 0}, {0, 9999.99, 0}}, 0, 99999900, 39999.98, 1e-6},
        {{{0, 0, 0}, {1e4, 0, 0}, {1e4, 1e4, 0}, {0, 1e4, 0}}, 2, 0, 0, 0},
        {{{0, 0, 0}, {1, 1, 0}}, 1, 0, 0, 0}};
    for (const Case& c : cases) {
        const std::vector<SurveyPoint> reversed(c.points.rbegin(), c.points.rend());
        for (const std::vector<SurveyPoint>* points : {&c.points, &reversed}) {
            AreaResult out = qtest::sentinel_filled<AreaResult>();
            const auto count = static_cast<unsigned char>(points->size());
            EXPECT_EQ(LIB_Area(count, points->data(), &out), c.status);
            EXPECT_EQ(qtest::untouched(out), c.status != 0);
            if (c.status == 0) {
                EXPECT_NEAR(out.Area, c.area, c.tolerance);
                EXPECT_NEAR(out.Hectares, c.area * 0.0001, c.tolerance); // not / 10000
                EXPECT_NEAR(out.Perimeter, c.perimeter, c.tolerance);
            }
        }
    }
}

TEST(MissLine, EqualsTheJoinOfTheComputedPoints)
{
    // HA1, HD1, VD1, th1, HA2, HD2, VD2, th2: one case per branch of
    // s = HA2 - HA1: (0, 648000), above, (-648000, 0), below, exactly 648000.
    const double cases[][8] = {{100000, 30, 1, 1.3, 400000, 45, -2, 1.6},
                               {100000, 30, 1, 1.3, 900000, 45, -2, 1.6},
                               {900000, 30, 1, 1.3, 700000, 12, 3.5, 2},
                               {1000000, 20, 0, 1, 100000, 25, 0, 1},
                               {36000, 50, 0, 1.5, 684000, 50, 0, 1.5}};
    for (const auto& c : cases) {
        const StationRecord s1 = qtest::station(500, 800, 100, 1, 1, 1.5, c[3]);
        const StationRecord s2 = qtest::station(500, 800, 100, 1, 1, 1.5, c[7]);
        const DistanceRecord measured[] = {qtest::shot(0, c[1], c[2]), qtest::shot(0, c[5], c[6])};
        SurveyPoint pair[2];
        ASSERT_EQ(LIB_MeasCoor(&s1, &measured[0], &c[0], &pair[0]), 0);
        ASSERT_EQ(LIB_MeasCoor(&s2, &measured[1], &c[4], &pair[1]), 0);
        BearingRecord join{};
        ASSERT_EQ(LIB_CalDist(pair, &join), 0);
        const double angles[] = {c[0], 11, 22, c[4], 33, 44};
        MissLineResult out = qtest::sentinel_filled<MissLineResult>();
        EXPECT_EQ(LIB_MissLine(&s1, measured, angles, c[3], c[7], &out), 0);
        // Folding by 1296000 seconds is 1.07e-7 rad off a true full circle.
        EXPECT_NEAR(out.HorizontalDistance, join.HorizontalDistance, 1e-5);
        EXPECT_NEAR(out.HeightDifference, join.HeightDifference, 1e-12);
        EXPECT_NEAR(out.SlopeDistance, std::hypot(join.HorizontalDistance, join.HeightDifference),
                    1e-5);
        EXPECT_NEAR(out.Grade, 100.0 * join.HeightDifference / join.HorizontalDistance, 1e-6);
        // The angle at the first point is cut to whole seconds.
        EXPECT_NEAR(std::remainder(out.Azimuth - join.Azimuth, 1296000.0), 0.0, 1.05);
        EXPECT_BITS(out.Azimuth, std::trunc(out.Azimuth));
    }
}

TEST(MissLine, AzimuthFoldsFacesAndCoincidence)
{
    // signB, HA1, HA2, HD2, azimuth preset, azimuth; the first point 10 m out.
    const double cases[][6] = {{1, 0, 324000, 10, 0, 486000}, // north, east: join south-east
                               {-1, 0, 324000, 10, 0, 1134000},
                               // s <= -648000 (unnormalised): stays negative; 26000.0055 cut
                               {1, 100000, -600000, 10, 0, -574000},
                               // one direction: the caller's azimuth is only folded, strictly
                               {1, 50000, 50000, 25, 1300000, 4000},
                               {1, 50000, 50000, 25, 1296000, 1296000},
                               {-1, 50000, 50000, 25, 700000, 52000}};
    for (const auto& c : cases) {
        const StationRecord s = qtest::station(0, 0, 0, 1, static_cast<signed char>(c[0]));
        const DistanceRecord measured[] = {qtest::shot(0, 10, 0), qtest::shot(0, c[3], 0)};
        const double angles[] = {c[1], 0, 0, c[2], 0, 0};
        MissLineResult out = qtest::sentinel_filled<MissLineResult>();
        out.Azimuth = c[4];
        EXPECT_EQ(LIB_MissLine(&s, measured, angles, 0.0, 0.0, &out), 0);
        EXPECT_BITS(out.Azimuth, c[5]);
        EXPECT_TRUE(out.Grade == 0.0 && out.SlopeDistance == out.HorizontalDistance); // level
    }
    const StationRecord s = qtest::station(0, 0, 0);
    const DistanceRecord same[] = {qtest::shot(0, 10, 1), qtest::shot(0, 10, 5)};
    const double one_way[] = {1000, 0, 0, 1000, 0, 0};
    MissLineResult out = qtest::sentinel_filled<MissLineResult>();
    EXPECT_EQ(LIB_MissLine(&s, same, one_way, 0.0, 0.0, &out), 3);
    EXPECT_TRUE(qtest::untouched(out));
}
