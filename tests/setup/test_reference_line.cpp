// Base line, projection on a line and the reference-line functions.
#include "bits.hpp"
#include "records.hpp"

namespace {

// The 3-4-5 line scaled by 100: 500 m from (100, 200) toward the north-east,
// rising 10 m; its unit vector is (0.6, 0.8).
const SurveyPoint A = {100.0, 200.0, 50.0}, B = {400.0, 600.0, 60.0};

SurveyPoint at(double along, double across, double h)
{
    return {A.X + along * 0.6 - across * 0.8, A.Y + along * 0.8 + across * 0.6, h};
}

} // namespace

TEST(ReferenceLine, BaseLineMeasuresAndFailures)
{
    // From the origin: the 3-4-5 line, the limit and past it, a direction whose squares
    // underflow, and a point plumb over the origin.
    using qtest::ABOVE_LIMIT;
    const SurveyPoint to[] = {
        {300, 400, 10}, {qtest::LIMIT, 0, 0}, {ABOVE_LIMIT, 0, 0}, {1e-200, 0, 0}, {0, 0, 9}};
    const int status[] = {0, 0, 2, 3, 3};
    for (int i = 0; i < 5; ++i) {
        BaselineRecord out = qtest::sentinel_filled<BaselineRecord>();
        const SurveyPoint pts[] = {{}, to[i]};
        EXPECT_EQ(LIB_BaseLine(pts, &out), status[i]) << i;
        EXPECT_EQ(qtest::untouched(out), status[i] != 0) << i;
        EXPECT_TRUE(qtest::untouched(out.Spare1) && qtest::untouched(out.Spare3));
        EXPECT_TRUE(i != 0 || (out.HorizontalDistance == 500.0 && out.Grade == 0.02 &&
                               out.Azimuth == 191268.3717376482));
    }
    // A and B apart in height only: the other three refuse too.
    const SurveyPoint same[] = {A, {A.X, A.Y, 99.0}, B};
    const LinePosition pos = {1.0, 2.0};
    ProjectionRecord projection = qtest::sentinel_filled<ProjectionRecord>();
    SurveyPoint point = qtest::sentinel_filled<SurveyPoint>();
    EXPECT_EQ(LIB_Project(same, &projection), 3);
    EXPECT_EQ(LIB_LSO_Line(same, 1.0, &projection), 3);
    EXPECT_EQ(LIB_LSO_Point(same, &pos, &point), 3);
    EXPECT_TRUE(qtest::untouched(projection) && qtest::untouched(point));
}

TEST(ReferenceLine, PointSetOutIsFoundAgainAndExactCases)
{
    // LIB_LSO_Point cuts the direction from A to whole seconds: some tenths
    // of a millimetre here. Heights follow the grade 0.02 along the line only.
    // P on A has no direction and a distance of 0; the angle is minus the line's azimuth, so
    // its negative sine gives -0.
    const LinePosition cases[] = {{120, 30}, {-40, -10}, {0, 25}, {650, 0}, {-50, 0}, {0, 0}};
    for (const LinePosition& pos : cases) {
        SCOPED_TRACE(testing::Message() << pos.Along << " " << pos.Across);
        const SurveyPoint pts[] = {A, B, at(pos.Along, pos.Across, 57.0)},
                          foot = at(pos.Along, 0, 0);
        const double line_h = A.H + pos.Along * 0.02;
        SurveyPoint set_out;
        ASSERT_EQ(LIB_LSO_Point(pts, &pos, &set_out), 0);
        EXPECT_NEAR(std::hypot(set_out.X - pts[2].X, set_out.Y - pts[2].Y), 0.0, 2e-3);
        EXPECT_NEAR(set_out.H, line_h, 1e-9);
        ProjectionRecord found;
        ASSERT_EQ(LIB_Project(pts, &found), 0);
        // Across is 0 on the line itself.
        EXPECT_TRUE(pos.Along != 0.0 || pos.Across != 0.0 || std::signbit(found.Across));
        EXPECT_NEAR(std::hypot(found.Along - pos.Along, found.Across - pos.Across), 0.0, 1e-5);
        EXPECT_NEAR(std::hypot(found.FootX - foot.X, found.FootY - foot.Y), 0.0, 1e-5);
        EXPECT_NEAR(std::hypot(found.FootH - line_h, found.LineDH - (57.0 - line_h)), 0.0, 1e-7);
        ProjectionRecord against = qtest::sentinel_filled<ProjectionRecord>();
        ASSERT_EQ(LIB_LSO_Line(pts, 5.0, &against), 0);
        EXPECT_TRUE(against.Along == found.Along && against.LineDH == found.LineDH);
        EXPECT_NEAR(against.Across, pos.Across - 5.0, 1e-5);
        EXPECT_TRUE(qtest::untouched(against.FootX) && qtest::untouched(against.FootY) &&
                    qtest::untouched(against.FootH));
    }
    // 4 mm across at 1000 m is 0.825 seconds off the line, cut to 0: the point
    // is set out on the line at the full radial distance.
    const SurveyPoint north[] = {{0.0, 0.0, 0.0}, {10.0, 0.0, 0.0}};
    const LinePosition pos = {1000.0, 0.004};
    SurveyPoint point;
    ASSERT_EQ(LIB_LSO_Point(north, &pos, &point), 0);
    EXPECT_TRUE(point.X == 1000.000000008 && qtest::same_double(point.Y, 0.0)) << point.X;
    // 100 m to the left: -324000 seconds, taken round to 972000, which with pi as 3.1415926
    // falls short of the true west by 3 pi / 2 - 4.7123889 = 8.0384690e-8 radians.
    const LinePosition left = {0.0, -100.0};
    ASSERT_EQ(LIB_LSO_Point(north, &left, &point), 0);
    EXPECT_NEAR(point.X, -100.0 * 8.0384690e-8, 1e-12);
}
