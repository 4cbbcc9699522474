// Stakeout by distance and angle, by coordinates, by height and by divisions.
#include "bits.hpp"
#include "records.hpp"

using qtest::same_double;
using qtest::sentinel_filled;
using qtest::shot;
using qtest::station;

TEST(StakeoutDistAngle, StatusAndDifferences)
{
    const DistanceRecord m = shot(10.5, 10.25, 2.5);
    const double none = qtest::sentinel_double();
    // signB, measured, design angle, type, design, status, angle, distance: only
    // type 3 may be 0 or below; -0 passes; face II takes 648000 off; strict folds.
    const double cases[][8] = {
        {1, 0, 0, 1, 0, 1, none, none},        {1, 0, -0.0001, 3, 5, 1, none, none},
        {1, 10, -0.0, 1, 1e-300, 0, 10, 10.5}, {-1, 10, 0, 2, 10, 0, -647990, 0.25},
        {-1, 0, 1, 3, 1, 0, 647999, 1.8},      {1, 648000, 0, 3, -1, 0, 648000, 3.8},
        {1, 0, 648001, 7, 1, 0, 647999, none}};
    for (const auto& c : cases) {
        const StationRecord s = station(0, 0, 0, 1, static_cast<signed char>(c[0]));
        SODistAngleResult out = sentinel_filled<SODistAngleResult>();
        const auto type = static_cast<unsigned char>(c[3]);
        EXPECT_EQ(LIB_SO_DistAngle(&s, &m, &c[1], c[4], c[2], &out, type), c[5]);
        EXPECT_TRUE(same_double(out.AngleDifference, c[6]) &&
                    same_double(out.DistanceDifference, c[7]));
    }
    // No result record: refused; no measurement: no distance; no angle: folded.
    const StationRecord s = station(0, 0, 0);
    const double angle = 30.0;
    SODistAngleResult out = sentinel_filled<SODistAngleResult>();
    EXPECT_EQ(LIB_SO_DistAngle(&s, &m, &angle, 5.0, 0.0, nullptr, 1), 1);
    EXPECT_EQ(LIB_SO_DistAngle(&s, nullptr, &angle, 9.0, 0.0, &out, 2), 0);
    EXPECT_TRUE(out.AngleDifference == 30.0 && qtest::untouched(out.DistanceDifference));
    out.AngleDifference = 700000.0;
    EXPECT_EQ(LIB_SO_DistAngle(&s, &m, nullptr, 10.0, 0.0, &out, 2), 0);
    EXPECT_TRUE(out.AngleDifference == -596000.0 && out.DistanceDifference == 0.25);
}

TEST(StakeoutCoor, RefusalPlumbDesignFoldsAndAShotOnTheDesignPoint)
{
    const StationRecord s = station(100, 0, 50);
    const DistanceRecord m = shot(3, 2.5, 1), beyond = shot(2e8, 2e8, 0);
    const SurveyPoint on{100, 0, 50}, over{100, 0, 60}, north{110, 0, 7};
    SOCoorResult out = sentinel_filled<SOCoorResult>();
    const double angle = 100.0;
    EXPECT_EQ(LIB_SO_Coor(&s, &m, &angle, &on, &out), 1);
    EXPECT_TRUE(qtest::untouched(out));
    EXPECT_EQ(LIB_SO_Coor(&s, &m, &angle, &over, &out), 0); // no azimuth: 0 is used
    EXPECT_TRUE(out.AngleDifference == 100 && out.ForwardDifference == 2.5 && out.H == 51.3);
    // A measured point beyond the range limit reads as the origin.
    EXPECT_EQ(LIB_SO_Coor(&s, &beyond, &angle, &north, &out), 0);
    EXPECT_TRUE(out.X == 0 && out.Y == 0 && out.H == 0 && out.HeightDifference == -7);
    // signB, measured, difference: face II adds a half circle; folds are strict.
    const double cases[][3] = {
        {-1, 10, -647990}, {-1, -1296001, 647999}, {1, -648000, -648000}, {1, 648000, 648000}};
    for (const auto& c : cases) {
        const StationRecord t = station(100, 0, 50, 1, static_cast<signed char>(c[0]));
        EXPECT_EQ(LIB_SO_Coor(&t, &m, &c[1], &north, &out), 0);
        EXPECT_BITS(out.AngleDifference, c[2]);
    }
    // A face II shot on the design point 50 m away leaves nothing to move.
    const StationRecord t = station(1000, 2000, 100, 1, -1);
    const SurveyPoint at{1000, 2000, 100}, design{1030, 2040, 102}; // 1.5 + 1.7 + 100 - 1.2
    const DistanceRecord hit = shot(50.03, 50.0, 1.7);
    double reading = 0.0;
    ASSERT_EQ(LIB_CalAZ(&at, &design, &reading), 0);
    reading += 648000.0;
    EXPECT_EQ(LIB_SO_Coor(&t, &hit, &reading, &design, &out), 0);
    const double rest[] = {out.AngleDifference, out.ForwardDifference, out.LateralDifference};
    EXPECT_NEAR(std::hypot(rest[0], rest[1], rest[2]) + std::fabs(out.HeightDifference), 0, 1e-9);
    EXPECT_BITS(out.HorizontalDistanceDifference, 0.0);
}

TEST(StakeoutHeightAndDivide, FacesRangeCountsAndPoints)
{
    const StationRecord s = station(0, 0, 0);
    const DistanceRecord m = shot(20, 20, 0.5);
    const double level[] = {0, 324000}, face1[] = {0, 396000}, face2[] = {0, 900000};
    const auto height = [&](const double* angles, double design, int status) {
        double out = 0.0;
        EXPECT_EQ(LIB_SO_Height(&s, &m, angles, design, &out), status);
        return out;
    };
    EXPECT_BITS(height(level, 10.0, 0), 9.3);                    // 10 - (-0.5 + 1.2)
    EXPECT_BITS(height(face1, 10.0, 0), height(face2, 10.0, 0)); // 20 degrees down
    EXPECT_NEAR(height(face1, 10.0, 0), 16.5794047, 1e-6);       // 10 - ((-20 tan 20 - 0.5) + 1.2)
    EXPECT_BITS(height(level, 2e8, 2), 199999999.3);
    height(level, qtest::NaN, 2);
    // n, i, measured distance, directions, status, angle: i up to 2n; strict fold.
    const double none = qtest::sentinel_double();
    const double cases[][7] = {{0, 1, 0, 0, 0, 1, none},         {100, 1, 0, 0, 0, 1, none},
                               {4, 0, 0, 0, 0, 1, none},         {4, 199, 0, 0, 0, 1, none},
                               {99, 198, 195, 0, 0, 0, 0},       {2, 1, 50, 0, 648000, 0, 648000},
                               {3, 2, 0, 1200000, 10, 0, 96010}, {3, 2, 0, 10, 1200000, 0, -96010}};
    for (const auto& c : cases) {
        const double lengths[] = {100.0, c[2]}, directions[] = {c[3], c[4]};
        const unsigned char counts[] = {static_cast<unsigned char>(c[0]),
                                        static_cast<unsigned char>(c[1])};
        SODivideResult out = sentinel_filled<SODivideResult>();
        EXPECT_EQ(LIB_SO_Divide(lengths, directions, counts, &out), c[5]);
        EXPECT_EQ(qtest::untouched(out), c[5] != 0);
        EXPECT_BITS(out.AngleDifference, c[6]);
        EXPECT_TRUE(c[1] != 198 || out.ForwardDifference == -5.0); // 195 - 198 * 100 / 99
    }
}
