// Area of a polygon and the missing line between two measured points.
#include "bits.hpp"
#include "records.hpp"

TEST(Area, KnownPolygonsInBothOrientationsAndFailures)
{
    // Rectangles w, h: 10000 m square is over the limit, 1 cm less passes;
    // an area of exactly the limit passes, the next double above it does not.
    const double cases[][4] = {{1, 1, 0, 4},
                               {1e4, 9999.99, 0, 39999.98},
                               {1e4, 1e4, 2, 0},
                               {1, qtest::LIMIT, 0, 200000001.9998},
                               {1, qtest::ABOVE_LIMIT, 2, 0}};
    const SurveyPoint tri[] = {{5e6, 5e6, 0}, {5e6 + 3, 5e6, 0}, {5e6, 5e6 + 4, 0}};
    const SurveyPoint back[] = {tri[2], tri[1], tri[0]};
    for (int turn = 0; turn < 2; ++turn) {
        for (const auto& c : cases) {
            const SurveyPoint p[] = {{0, 0, 0}, {c[0], 0, 0}, {c[0], c[1], 0}, {0, c[1], 0}};
            const SurveyPoint q[] = {p[3], p[2], p[1], p[0]};
            AreaResult out = qtest::sentinel_filled<AreaResult>();
            EXPECT_EQ(LIB_Area(4, turn == 0 ? p : q, &out), c[2]);
            EXPECT_EQ(qtest::untouched(out), c[2] != 0);
            EXPECT_TRUE(c[2] != 0 || (std::fabs(out.Area - c[0] * c[1]) < 1e-6 &&
                                      std::fabs(out.Perimeter - c[3]) < 1e-6));
            EXPECT_TRUE(c[2] != 0 || out.Hectares == out.Area * 0.0001); // not / 10000
        }
        AreaResult out = qtest::sentinel_filled<AreaResult>();
        EXPECT_EQ(LIB_Area(2, tri, &out), 1);
        EXPECT_TRUE(qtest::untouched(out));
        EXPECT_EQ(LIB_Area(3, turn == 0 ? tri : back, &out), 0);
        EXPECT_TRUE(out.Area == 6 && out.Perimeter == 12);
    }
}

TEST(MissLine, JoinOfTheComputedPointsFoldsFacesAndCoincidence)
{
    // The join of the shots' coordinates; the azimuth is cut to whole seconds.
    const StationRecord s1 = qtest::station(500, 800, 100, 1, 1, 1.5, 1.3);
    const StationRecord s2 = qtest::station(500, 800, 100, 1, 1, 1.5, 1.6);
    const DistanceRecord shots[] = {qtest::shot(0, 30, 1), qtest::shot(0, 45, -2)};
    const double angles[] = {100000, 11, 22, 400000, 33, 44};
    SurveyPoint pair[2];
    ASSERT_EQ(LIB_MeasCoor(&s1, &shots[0], &angles[0], &pair[0]), 0);
    ASSERT_EQ(LIB_MeasCoor(&s2, &shots[1], &angles[3], &pair[1]), 0);
    BearingRecord join{};
    ASSERT_EQ(LIB_CalDist(pair, &join), 0);
    MissLineResult out = qtest::sentinel_filled<MissLineResult>();
    EXPECT_EQ(LIB_MissLine(&s1, shots, angles, 1.3, 1.6, &out), 0);
    EXPECT_NEAR(out.HorizontalDistance, join.HorizontalDistance, 1e-5);
    EXPECT_NEAR(out.HeightDifference, join.HeightDifference, 1e-12);
    EXPECT_NEAR(out.Grade, 100.0 * join.HeightDifference / join.HorizontalDistance, 1e-6);
    EXPECT_NEAR(out.Azimuth, join.Azimuth, 1.0);
    EXPECT_BITS(out.Azimuth, std::trunc(out.Azimuth));
    // signB, HA1, HA2, HD2, preset, azimuth; level, the first 10 m out. Each
    // branch of HA2 - HA1 (at or below -648000 stays negative, 26000.0055 cut);
    // one direction: only the caller's azimuth is folded, strictly.
    const double cases[][6] = {
        {1, 0, 324000, 10, 0, 486000},        {-1, 0, 324000, 10, 0, 1134000},
        {1, 100000, 900000, 10, 0, 824000},   {1, 36000, 684000, 50, 0, 684000},
        {1, 900000, 700000, 10, 0, 476000},   {1, 100000, -600000, 10, 0, -574000},
        {1, 50000, 50000, 25, 1300000, 4000}, {1, 50000, 50000, 25, 1296000, 1296000},
        {-1, 50000, 50000, 25, 700000, 52000}};
    for (const auto& c : cases) {
        const StationRecord s = qtest::station(0, 0, 0, 1, static_cast<signed char>(c[0]));
        const DistanceRecord level[] = {qtest::shot(0, 10, 0), qtest::shot(0, c[3], 0)};
        const double readings[] = {c[1], 0, 0, c[2], 0, 0};
        out = qtest::sentinel_filled<MissLineResult>();
        out.Azimuth = c[4];
        EXPECT_EQ(LIB_MissLine(&s, level, readings, 0.0, 0.0, &out), 0);
        EXPECT_BITS(out.Azimuth, c[5]);
        EXPECT_TRUE(out.Grade == 0.0 && out.SlopeDistance == out.HorizontalDistance);
    }
    const DistanceRecord same[] = {qtest::shot(0, 10, 1), qtest::shot(0, 10, 5)};
    const double one_way[] = {1000, 0, 0, 1000, 0, 0};
    out = qtest::sentinel_filled<MissLineResult>();
    EXPECT_EQ(LIB_MissLine(&s1, same, one_way, 0.0, 0.0, &out), 3);
    EXPECT_TRUE(qtest::untouched(out));
}
