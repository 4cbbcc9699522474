// Stakeout by distance and angle, by coordinates, by height and by divisions.
#include "check.hpp"
#include "records.hpp"

using qtest::Call;
using qtest::rows;
using qtest::sentinel_filled;
using qtest::shot;
using qtest::station;

TEST(StakeoutDistAngle, StatusAndDifferences)
{
    const DistanceRecord m = shot(10.5, 10.25, 2.5);
    const double none = qtest::sentinel_double();
    // Only type 3 may be 0 or below; -0 passes; face II takes 648000 off;
    // strict folds. Another type leaves the distance alone.
    const struct {
        signed char face; // signB
        double measured_angle, design_angle;
        unsigned char type;
        double design;
        int status;
        double angle_difference, distance_difference; // none: untouched
    } cases[] = {{1, 0, 0, 1, 0, 1, none, none},        {1, 0, -0.0001, 3, 5, 1, none, none},
                 {1, 10, -0.0, 1, 1e-300, 0, 10, 10.5}, {-1, 10, 0, 2, 10, 0, -647990, 0.25},
                 {-1, 0, 1, 3, 1, 0, 647999, 1.8},      {1, 648000, 0, 3, -1, 0, 648000, 3.8},
                 {1, 0, 648001, 7, 1, 0, 647999, none}};
    for (const auto& [call, c] : rows("LIB_SO_DistAngle", cases)) {
        const StationRecord s = station(0, 0, 0, 1, c.face);
        SODistAngleResult out = sentinel_filled<SODistAngleResult>();
        EXPECT_STATUS(
            call,
            LIB_SO_DistAngle(&s, &m, &c.measured_angle, c.design, c.design_angle, &out, c.type),
            c.status);
        EXPECT_BITS(call, out, (SODistAngleResult{c.distance_difference, c.angle_difference}));
    }
    // No result record: refused; no measurement: no distance; no angle: folded.
    const StationRecord s = station(0, 0, 0);
    const double angle = 30.0;
    SODistAngleResult out = sentinel_filled<SODistAngleResult>();
    EXPECT_STATUS(Call("LIB_SO_DistAngle", "no result record"),
                  LIB_SO_DistAngle(&s, &m, &angle, 5.0, 0.0, nullptr, 1), 1);
    const Call no_shot("LIB_SO_DistAngle", "no measurement");
    EXPECT_STATUS(no_shot, LIB_SO_DistAngle(&s, nullptr, &angle, 9.0, 0.0, &out, 2), 0);
    EXPECT_BITS(no_shot, out, (SODistAngleResult{none, 30.0}));
    const Call no_angle("LIB_SO_DistAngle", "no measured angle");
    out.AngleDifference = 700000.0;
    EXPECT_STATUS(no_angle, LIB_SO_DistAngle(&s, &m, nullptr, 10.0, 0.0, &out, 2), 0);
    EXPECT_BITS(no_angle, out, (SODistAngleResult{0.25, -596000.0}));
}

TEST(StakeoutCoor, RefusalPlumbDesignFoldsAndAShotOnTheDesignPoint)
{
    const StationRecord s = station(100, 0, 50);
    const DistanceRecord m = shot(3, 2.5, 1), beyond = shot(2e8, 2e8, 0);
    const SurveyPoint on{100, 0, 50}, over{100, 0, 60}, north{110, 0, 7};
    SOCoorResult out = sentinel_filled<SOCoorResult>();
    const double angle = 100.0;
    const Call on_station("LIB_SO_Coor", "design on the station");
    EXPECT_STATUS(on_station, LIB_SO_Coor(&s, &m, &angle, &on, &out), 1);
    EXPECT_UNTOUCHED(on_station, out);
    const Call plumb("LIB_SO_Coor", "design plumb over the station"); // no azimuth: 0 is used
    EXPECT_STATUS(plumb, LIB_SO_Coor(&s, &m, &angle, &over, &out), 0);
    EXPECT_BITS(plumb, out.AngleDifference, 100.0);
    EXPECT_BITS(plumb, out.ForwardDifference, 2.5);
    EXPECT_BITS(plumb, out.H, 51.3);
    // A measured point beyond the range limit reads as the origin.
    const Call far("LIB_SO_Coor", "measured point out of range");
    EXPECT_STATUS(far, LIB_SO_Coor(&s, &beyond, &angle, &north, &out), 0);
    EXPECT_BITS(far, out.X, 0.0);
    EXPECT_BITS(far, out.Y, 0.0);
    EXPECT_BITS(far, out.H, 0.0);
    EXPECT_BITS(far, out.HeightDifference, -7.0);
    // Face II adds a half circle; folds are strict.
    const struct {
        signed char face; // signB
        double measured_angle, difference;
    } cases[] = {
        {-1, 10, -647990}, {-1, -1296001, 647999}, {1, -648000, -648000}, {1, 648000, 648000}};
    for (const auto& [call, c] : rows("LIB_SO_Coor", cases)) {
        const StationRecord t = station(100, 0, 50, 1, c.face);
        EXPECT_STATUS(call, LIB_SO_Coor(&t, &m, &c.measured_angle, &north, &out), 0);
        EXPECT_BITS(call, out.AngleDifference, c.difference);
    }
    // A face II shot on the design point 50 m away leaves nothing to move.
    const Call hit_call("LIB_SO_Coor", "face II shot on the design point");
    const StationRecord t = station(1000, 2000, 100, 1, -1);
    const SurveyPoint at{1000, 2000, 100}, design{1030, 2040, 102}; // 1.5 + 1.7 + 100 - 1.2
    const DistanceRecord hit = shot(50.03, 50.0, 1.7);
    double reading = 0.0;
    ASSERT_STATUS(hit_call, LIB_CalAZ(&at, &design, &reading), 0);
    reading += 648000.0;
    EXPECT_STATUS(hit_call, LIB_SO_Coor(&t, &hit, &reading, &design, &out), 0);
    // Together within 1e-9.
    EXPECT_WITHIN(hit_call, out.AngleDifference, 0.0, 2.5e-10);
    EXPECT_WITHIN(hit_call, out.ForwardDifference, 0.0, 2.5e-10);
    EXPECT_WITHIN(hit_call, out.LateralDifference, 0.0, 2.5e-10);
    EXPECT_WITHIN(hit_call, out.HeightDifference, 0.0, 2.5e-10);
    EXPECT_BITS(hit_call, out.HorizontalDistanceDifference, 0.0);
}

TEST(StakeoutHeightAndDivide, FacesRangeCountsAndPoints)
{
    const StationRecord s = station(0, 0, 0);
    const DistanceRecord m = shot(20, 20, 0.5);
    const double level[] = {0, 324000}, face1[] = {0, 396000}, face2[] = {0, 900000};
    const struct {
        const char* name;
        const double* angles;
        double design;
        int status;
        double height, tolerance;                     // tolerance 0: exact
    } heights[] = {{"level", level, 10.0, 0, 9.3, 0}, // 10 - (-0.5 + 1.2)
                   {"20 degrees down, face I", face1, 10.0, 0, 16.5794047,
                    1e-6}, // 10 - ((-20 tan 20 - 0.5) + 1.2)
                   {"20 degrees down, face II", face2, 10.0, 0, 16.5794047, 1e-6},
                   {"out of range", level, 2e8, 2, 199999999.3, 0},
                   {"design not a number", level, qtest::NaN, 2, qtest::NaN, 0}};
    double on_face[2] = {};
    for (const auto& c : heights) {
        const Call call("LIB_SO_Height", c.name);
        double out = 0.0;
        EXPECT_STATUS(call, LIB_SO_Height(&s, &m, c.angles, c.design, &out), c.status);
        if (c.tolerance > 0) {
            EXPECT_WITHIN(call, out, c.height, c.tolerance);
            on_face[c.angles == face2] = out;
        } else {
            EXPECT_BITS(call, out, c.height);
        }
    }
    EXPECT_BITS(Call("LIB_SO_Height", "face II against face I"), on_face[1], on_face[0]);
    // i up to 2n; strict fold.
    const double none = qtest::sentinel_double();
    const struct {
        unsigned char n, i;
        double measured_distance, line_direction, measured_direction;
        int status;
        double angle_difference;
    } cases[] = {{0, 1, 0, 0, 0, 1, none},         {100, 1, 0, 0, 0, 1, none},
                 {4, 0, 0, 0, 0, 1, none},         {4, 199, 0, 0, 0, 1, none},
                 {99, 198, 195, 0, 0, 0, 0},       {2, 1, 50, 0, 648000, 0, 648000},
                 {3, 2, 0, 1200000, 10, 0, 96010}, {3, 2, 0, 10, 1200000, 0, -96010}};
    for (const auto& [call, c] : rows("LIB_SO_Divide", cases)) {
        const double lengths[] = {100.0, c.measured_distance};
        const double directions[] = {c.line_direction, c.measured_direction};
        const unsigned char counts[] = {c.n, c.i};
        SODivideResult out = sentinel_filled<SODivideResult>();
        EXPECT_STATUS(call, LIB_SO_Divide(lengths, directions, counts, &out), c.status);
        EXPECT_WRITTEN_IF(call, out, c.status == 0);
        EXPECT_BITS(call, out.AngleDifference, c.angle_difference);
        if (c.i == 198) {
            EXPECT_BITS(call, out.ForwardDifference, -5.0); // 195 - 198 * 100 / 99
        }
    }
}
