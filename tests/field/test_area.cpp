// Area of a polygon and the missing line between two measured points.
#include "check.hpp"
#include "records.hpp"

using qtest::Call;
using qtest::rows;

TEST(Area, KnownPolygonsInBothOrientationsAndFailures)
{
    // Rectangles: 10000 m square is over the limit, 1 cm less passes; an
    // area of exactly the limit passes, the next double above it does not.
    const struct {
        double width, height;
        int status;
        double perimeter;
    } cases[] = {{1, 1, 0, 4},
                 {1e4, 9999.99, 0, 39999.98},
                 {1e4, 1e4, 2, 0},
                 {1, qtest::LIMIT, 0, 200000001.9998},
                 {1, qtest::ABOVE_LIMIT, 2, 0}};
    const SurveyPoint tri[] = {{5e6, 5e6, 0}, {5e6 + 3, 5e6, 0}, {5e6, 5e6 + 4, 0}};
    const SurveyPoint back[] = {tri[2], tri[1], tri[0]};
    for (const bool clockwise : {true, false}) {
        const std::string turn = clockwise ? "clockwise" : "counter-clockwise";
        for (const auto& [row, c] : rows("LIB_Area", cases)) {
            const Call call = row.at(turn);
            // North, east, south and west round the rectangle: clockwise in plan.
            const SurveyPoint p[] = {
                {0, 0, 0}, {c.width, 0, 0}, {c.width, c.height, 0}, {0, c.height, 0}};
            const SurveyPoint q[] = {p[3], p[2], p[1], p[0]};
            AreaResult out = qtest::sentinel_filled<AreaResult>();
            EXPECT_STATUS(call, LIB_Area(4, clockwise ? p : q, &out), c.status);
            EXPECT_WRITTEN_IF(call, out, c.status == 0);
            if (c.status == 0) {
                EXPECT_WITHIN(call, out.Area, c.width * c.height, 1e-6);
                EXPECT_WITHIN(call, out.Perimeter, c.perimeter, 1e-6);
                EXPECT_BITS(call, out.Hectares, out.Area * 0.0001); // not / 10000
            }
        }
        const Call two("LIB_Area", "two points, " + turn);
        AreaResult out = qtest::sentinel_filled<AreaResult>();
        EXPECT_STATUS(two, LIB_Area(2, tri, &out), 1);
        EXPECT_UNTOUCHED(two, out);
        const Call triangle("LIB_Area", "3-4-5 triangle far out, " + turn);
        EXPECT_STATUS(triangle, LIB_Area(3, clockwise ? tri : back, &out), 0);
        EXPECT_BITS(triangle, out, (AreaResult{6.0, 6.0 * 0.0001, 12.0}));
    }
}

TEST(MissLine, JoinOfTheComputedPointsFoldsFacesAndCoincidence)
{
    // The join of the shots' coordinates; the azimuth is cut to whole seconds.
    const Call join_call("LIB_MissLine", "against the join of LIB_MeasCoor points");
    const StationRecord s1 = qtest::station(500, 800, 100, 1, 1, 1.5, 1.3);
    const StationRecord s2 = qtest::station(500, 800, 100, 1, 1, 1.5, 1.6);
    const DistanceRecord shots[] = {qtest::shot(0, 30, 1), qtest::shot(0, 45, -2)};
    const double angles[] = {100000, 11, 22, 400000, 33, 44};
    SurveyPoint pair[2];
    ASSERT_STATUS(join_call, LIB_MeasCoor(&s1, &shots[0], &angles[0], &pair[0]), 0);
    ASSERT_STATUS(join_call, LIB_MeasCoor(&s2, &shots[1], &angles[3], &pair[1]), 0);
    BearingRecord join{};
    ASSERT_STATUS(join_call, LIB_CalDist(pair, &join), 0);
    MissLineResult out = qtest::sentinel_filled<MissLineResult>();
    EXPECT_STATUS(join_call, LIB_MissLine(&s1, shots, angles, 1.3, 1.6, &out), 0);
    EXPECT_WITHIN(join_call, out.HorizontalDistance, join.HorizontalDistance, 1e-5);
    EXPECT_WITHIN(join_call, out.HeightDifference, join.HeightDifference, 1e-12);
    EXPECT_WITHIN(join_call, out.Grade, 100.0 * join.HeightDifference / join.HorizontalDistance,
                  1e-6);
    EXPECT_WITHIN(join_call, out.Azimuth, join.Azimuth, 1.0);
    EXPECT_BITS(join_call, out.Azimuth, std::trunc(out.Azimuth));
    // Level sights, the first 10 m out. Each branch of HA2 - HA1 (at or
    // below -648000 stays negative, 26000.0055 cut); one direction: only the
    // caller's azimuth is folded, strictly.
    const struct {
        signed char face; // signB
        double first_reading, second_reading, second_distance;
        double preset, azimuth;
    } cases[] = {{1, 0, 324000, 10, 0, 486000},        {-1, 0, 324000, 10, 0, 1134000},
                 {1, 100000, 900000, 10, 0, 824000},   {1, 36000, 684000, 50, 0, 684000},
                 {1, 900000, 700000, 10, 0, 476000},   {1, 100000, -600000, 10, 0, -574000},
                 {1, 50000, 50000, 25, 1300000, 4000}, {1, 50000, 50000, 25, 1296000, 1296000},
                 {-1, 50000, 50000, 25, 700000, 52000}};
    for (const auto& [call, c] : rows("LIB_MissLine", cases)) {
        const StationRecord s = qtest::station(0, 0, 0, 1, c.face);
        const DistanceRecord level[] = {qtest::shot(0, 10, 0),
                                        qtest::shot(0, c.second_distance, 0)};
        const double readings[] = {c.first_reading, 0, 0, c.second_reading, 0, 0};
        out = qtest::sentinel_filled<MissLineResult>();
        out.Azimuth = c.preset;
        EXPECT_STATUS(call, LIB_MissLine(&s, level, readings, 0.0, 0.0, &out), 0);
        EXPECT_BITS(call, out.Azimuth, c.azimuth);
        EXPECT_BITS(call, out.Grade, 0.0);
        EXPECT_BITS(call, out.SlopeDistance, out.HorizontalDistance);
    }
    const Call coincident("LIB_MissLine", "both shots on one point");
    const DistanceRecord same[] = {qtest::shot(0, 10, 1), qtest::shot(0, 10, 5)};
    const double one_way[] = {1000, 0, 0, 1000, 0, 0};
    out = qtest::sentinel_filled<MissLineResult>();
    EXPECT_STATUS(coincident, LIB_MissLine(&s1, same, one_way, 0.0, 0.0, &out), 3);
    EXPECT_UNTOUCHED(coincident, out);
}
