// Offset points by angle, by distances and by extension of a line.
#include "check.hpp"
#include "field/sighting.hpp"
#include "records.hpp"

using qtest::Call;
using qtest::rows;

namespace {

// Target height 2.0: the sight's height differences come out exact.
StationRecord station(double x, double y, double h, signed char b = 1)
{
    return qtest::station(x, y, h, 1, b, 1.5, 2.0);
}

// A record whose point alone is written.
DistAngleRecord point_only(double x, double y, double h)
{
    DistAngleRecord record = qtest::sentinel_filled<DistAngleRecord>();
    record.X = x;
    record.Y = y;
    record.H = h;
    return record;
}

} // namespace

TEST(OffsetDistances, ReferencePointsLinesAndFailures)
{
    // A half-circle turn of a reading folds strictly.
    const struct {
        double reading, turned;
    } turns[] = {{648000, 1296000}, {648000.5, 0.5}, {-10, 647990}};
    for (const auto& [call, c] : rows("turn_reading_half_circle", turns)) {
        EXPECT_BITS(call, quillon::turn_reading_half_circle(c.reading), c.turned);
    }
    const StationRecord s = station(1000, 2000, 100), face2 = station(0, 0, 0, -1);
    const DistanceRecord m = qtest::shot(30.1, 30.0, 2.0), m10 = qtest::shot(10, 10, 0);
    const SurveyPoint north{1020, 2000, 102}, above{1000, 2000, 150}; // azimuth exactly 0
    const double reading = 162000.0, south = 648000.0, far[] = {0, 2e8, 0}, back[] = {0, -20, 0};
    const double zero[] = {0, 0, 0}, moved[] = {-2.0, 3.0, -0.5}, right[] = {1, 2, 0};
    SurveyPoint measured{}; // zero offsets give the measured point itself
    ASSERT_STATUS(Call("LIB_MeasCoor"), LIB_MeasCoor(&s, &m, &reading, &measured), 0);

    const Call plumb("LIB_OS_Dist1", "known point plumb over the station");
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_STATUS(plumb, LIB_OS_Dist1(&s, &m, &reading, &above, zero, &out, 1), 1);
    EXPECT_UNTOUCHED(plumb, out);
    const Call mode2("LIB_OS_Dist1", "mode 2");
    EXPECT_STATUS(mode2, LIB_OS_Dist1(&s, &m, &reading, &north, zero, &out, 2), 1);
    EXPECT_UNTOUCHED(mode2, out);
    const Call measured_far("LIB_OS_Dist1", "measured point out of range");
    const DistanceRecord beyond = qtest::shot(2e8, 2e8, 0);
    EXPECT_STATUS(measured_far, LIB_OS_Dist1(&s, &beyond, &reading, &north, zero, &out, 0), 2);
    EXPECT_UNTOUCHED(measured_far, out);
    // Out of range: written, not sighted. Onto the plumb line: no angles.
    const Call offset_far("LIB_OS_Dist1", "offset point out of range");
    EXPECT_STATUS(offset_far, LIB_OS_Dist1(&s, &m, &reading, &north, far, &out, 1), 2);
    EXPECT_BITS(offset_far, out, point_only(1020.0 + 2e8, 2000, 102));
    const Call under("LIB_OS_Dist1", "offset point plumb over the instrument");
    EXPECT_STATUS(under, LIB_OS_Dist1(&s, &m, &reading, &north, back, &out, 1), 3);
    EXPECT_BITS(under, out.X, 1000.0);
    EXPECT_BITS(under, out.Y, 2000.0);
    EXPECT_BITS(under, out.H, 102.0);
    EXPECT_WRITTEN(under, out.SlopeDistance);
    EXPECT_BITS(under, out.HorizontalDistance, 0.0);
    EXPECT_WRITTEN(under, out.HeightDifference);
    EXPECT_UNTOUCHED(under, out.Azimuth);
    EXPECT_UNTOUCHED(under, out.ZenithAngle);
    const Call no_offset("LIB_OS_Dist1", "measured point, zero offsets");
    EXPECT_STATUS(no_offset, LIB_OS_Dist1(&s, &m, &reading, nullptr, zero, &out, 0), 0);
    EXPECT_BITS(no_offset, out.X, measured.X);
    EXPECT_BITS(no_offset, out.Y, measured.Y);
    EXPECT_BITS(no_offset, out.H, measured.H);
    EXPECT_WITHIN(no_offset, out.Azimuth, 162000.0, 1e-4);
    const Call known("LIB_OS_Dist1", "known point moved");
    EXPECT_STATUS(known, LIB_OS_Dist1(&s, nullptr, nullptr, &north, moved, &out, 1), 0);
    EXPECT_BITS(known, out.X, 1023.0);
    EXPECT_BITS(known, out.Y, 1998.0);
    EXPECT_BITS(known, out.H, 101.5);
    // Face II: a reading of 648000 points north; atan(1 / 12) past south.
    const Call face_two("LIB_OS_Dist1", "face II");
    EXPECT_STATUS(face_two, LIB_OS_Dist1(&face2, &m10, &south, nullptr, right, &out, 0), 0);
    EXPECT_BELOW(face_two, std::hypot(out.X - 12.0, out.Y - 1.0), 1e-5);
    EXPECT_GT(out.ZenithAngle, 648000.0) << face_two;
    EXPECT_WITHIN(face_two, out.Azimuth, 648000.0 + 17149.11, 0.05);
    // Along a line, past its end, a plumb line, back onto the station, a
    // sight of 1.8e8 m, a line of one point, out of range.
    const StationRecord stations[] = {station(-10, -10, 0), station(-9e7, 0, 0)};
    const SurveyPoint lines[][2] = {{{0, 0, 0}, {3, 4, 0}},
                                    {{5, 6, 1}, {5, 6, 4}},
                                    {{-10, -8, 0}, {-10, -9, 0}},
                                    {{8e7, 0, 0}, {9e7, 0, 0}},
                                    {{1, 2, 3}, {1, 2, 3}}};
    const struct {
        int station, line;
        double extension;
        int status;
        SurveyPoint point;
    } cases[] = {{0, 0, 0, 0, {3, 4, 0}},     {0, 0, 5, 0, {6, 8, 0}},   {0, 1, 2, 0, {5, 6, 6}},
                 {0, 2, 1, 3, {-10, -10, 0}}, {1, 3, 0, 3, {9e7, 0, 0}}, {0, 4, 1, 1, {}},
                 {0, 0, 2e8, 2, {}}};
    for (const auto& [call, c] : rows("LIB_OS_Dist2", cases)) {
        out = qtest::sentinel_filled<DistAngleRecord>();
        EXPECT_STATUS(call, LIB_OS_Dist2(&stations[c.station], lines[c.line], c.extension, &out),
                      c.status);
        EXPECT_WRITTEN_IF(call, out.Azimuth, c.status == 0);
        if (c.line == 0 && c.extension == 0) {
            EXPECT_BITS(call, out.HorizontalDistance, 19.1049731745428);
        }
        if (c.status == 1 || c.status == 2) {
            EXPECT_UNTOUCHED(call, out);
        } else {
            EXPECT_BITS(call, out.X, c.point.X);
            EXPECT_BITS(call, out.Y, c.point.Y);
            EXPECT_BITS(call, out.H, c.point.H);
        }
    }
}

TEST(OffsetAngle, MeasuredOrKnownDistanceWithTheCentreAngles)
{
    // The centre of a tree 25 m due east, 45 degrees up: H = 10 + 1.5 + 25 - 2.
    const Call tree("LIB_OS_Angle", "measured distance");
    const StationRecord s = station(100, 200, 10);
    const DistanceRecord m = qtest::shot(0.0, 25.0, 0.0);
    const double angles[] = {324000.0, 162000.0}, up[] = {0.0, 0.0};
    DistAngleRecord out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_STATUS(tree, LIB_OS_Angle(&s, &m, angles, nullptr, &out, 0), 0);
    EXPECT_WITHIN(tree, out.Y, 225.0, 1e-9);
    EXPECT_WITHIN(tree, out.H, 34.5, 1e-5);
    EXPECT_BITS(tree, out.HorizontalDistance, 25.0);
    EXPECT_BITS(tree, out.Azimuth, 324000.0);
    EXPECT_BITS(tree, out.ZenithAngle, 162000.0);
    EXPECT_WITHIN(tree, out.SlopeDistance, 35.3553391, 1e-5);
    // Mode 1: the plan distance to the known point, whose H is raised on
    // every call, even out of range (a sight to the zenith).
    const Call known_call("LIB_OS_Angle", "known point");
    SurveyPoint known{115.0, 220.0, 5.0};
    EXPECT_STATUS(known_call, LIB_OS_Angle(&s, nullptr, angles, &known, &out, 1), 0);
    EXPECT_BITS(known_call, out.HorizontalDistance, 25.0);
    const Call zenith("LIB_OS_Angle", "sight to the zenith");
    out = qtest::sentinel_filled<DistAngleRecord>();
    EXPECT_STATUS(zenith.at("mode 0"), LIB_OS_Angle(&s, &m, up, &known, &out, 0), 2);
    EXPECT_STATUS(zenith.at("mode 1"), LIB_OS_Angle(&s, &m, up, &known, &out, 1), 2);
    EXPECT_UNTOUCHED(zenith, out);
    EXPECT_BITS(zenith, known, (SurveyPoint{115.0, 220.0, 9.0}));
}
