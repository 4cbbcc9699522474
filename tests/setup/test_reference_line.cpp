// Base line, projection on a line and the reference-line functions.
#include "bits.hpp"
#include "quillon.h"
#include "records.hpp"

namespace {

// The 3-4-5 line scaled by 100: 500 m from (100, 200) toward the north-east,
// rising 10 m; its unit vector is (0.6, 0.8).
const SurveyPoint A = {100.0, 200.0, 50.0};
const SurveyPoint B = {400.0, 600.0, 60.0};

SurveyPoint at(double along, double across, double h)
{
    return {A.X + along * 0.6 - across * 0.8, A.Y + along * 0.8 + across * 0.6, h};
}

} // namespace

TEST(ReferenceLine, BaseLineMeasuresAndFailures)
{
    const SurveyPoint cases[][2] = {
        {A, B},
        {{}, {qtest::LIMIT, 0, 0}},
        {{}, {qtest::ABOVE_LIMIT, 0, 0}},
        {{}, {0, qtest::INF, 0}},
        {{}, {1e-200, 0, 0}}, // a direction but no distance: the squares underflow
        {A, {A.X, A.Y, 99.0}}};
    const int status[] = {0, 0, 2, 2, 3, 3};
    for (int i = 0; i < 6; ++i) {
        BaselineRecord out = qtest::sentinel_filled<BaselineRecord>();
        EXPECT_EQ(LIB_BaseLine(cases[i], &out), status[i]) << i;
        EXPECT_EQ(qtest::untouched(out), status[i] != 0) << i;
        EXPECT_TRUE(qtest::untouched(out.Spare1) && qtest::untouched(out.Spare3));
        if (i == 0) {
            EXPECT_BITS(out.HorizontalDistance, 500.0);
            EXPECT_BITS(out.Grade, 0.02);
            EXPECT_BITS(out.Azimuth, 191268.3717376482); // atan2(400, 300) with RHO_SEC
        }
    }
    // A and B apart in height only: the other three refuse too.
    const SurveyPoint same[] = {A, {A.X, A.Y, 99.0}, B};
    ProjectionRecord projection = qtest::sentinel_filled<ProjectionRecord>();
    EXPECT_EQ(LIB_Project(same, &projection), 3);
    EXPECT_EQ(LIB_LSO_Line(same, 1.0, &projection), 3);
    EXPECT_TRUE(qtest::untouched(projection));
    const LinePosition pos = {1.0, 2.0};
    SurveyPoint point = qtest::sentinel_filled<SurveyPoint>();
    EXPECT_EQ(LIB_LSO_Point(same, &pos, &point), 3);
    EXPECT_TRUE(qtest::untouched(point));
}

TEST(ReferenceLine, PointSetOutIsFoundAgain)
{
    // LIB_LSO_Point cuts the direction from A to whole seconds: some tenths
    // of a millimetre here. Behind A, angles near a half circle of 3.1415926
    // leave some micrometres. Heights follow the grade 0.02 along the line only.
    const LinePosition cases[] = {{120, 30}, {120, -30}, {-40, 10}, {-40, -10},
                                  {0, 25},   {650, 0},   {-50, 0}};
    for (const LinePosition& pos : cases) {
        const SurveyPoint line[] = {A, B};
        SurveyPoint set_out;
        ASSERT_EQ(LIB_LSO_Point(line, &pos, &set_out), 0);
        EXPECT_NEAR(set_out.X, at(pos.Along, pos.Across, 0).X, 2e-3) << pos.Along << pos.Across;
        EXPECT_NEAR(set_out.Y, at(pos.Along, pos.Across, 0).Y, 2e-3) << pos.Along << pos.Across;
        EXPECT_NEAR(set_out.H, A.H + pos.Along * 0.02, 1e-9);

        const SurveyPoint pts[] = {A, B, at(pos.Along, pos.Across, 57.0)};
        ProjectionRecord found;
        ASSERT_EQ(LIB_Project(pts, &found), 0);
        EXPECT_NEAR(found.Along, pos.Along, 1e-5);
        EXPECT_NEAR(found.Across, pos.Across, 1e-5);
        EXPECT_NEAR(found.FootX, at(pos.Along, 0, 0).X, 1e-5);
        EXPECT_NEAR(found.FootY, at(pos.Along, 0, 0).Y, 1e-5);
        EXPECT_NEAR(found.FootH, A.H + pos.Along * 0.02, 1e-7);
        EXPECT_NEAR(found.LineDH, 57.0 - A.H - pos.Along * 0.02, 1e-7);

        ProjectionRecord against = qtest::sentinel_filled<ProjectionRecord>();
        ASSERT_EQ(LIB_LSO_Line(pts, 5.0, &against), 0);
        EXPECT_BITS(against.Along, found.Along);
        EXPECT_NEAR(against.Across, pos.Across - 5.0, 1e-5);
        EXPECT_BITS(against.LineDH, found.LineDH);
        EXPECT_TRUE(qtest::untouched(against.FootX) && qtest::untouched(against.FootY) &&
                    qtest::untouched(against.FootH));
    }
}

TEST(ReferenceLine, ExactCases)
{
    // P on A: no direction, a distance of 0; the angle is minus the line's
    // azimuth, so its negative sine gives -0.
    const SurveyPoint on_a[] = {A, B, {A.X, A.Y, 47.5}};
    ProjectionRecord out;
    ASSERT_EQ(LIB_Project(on_a, &out), 0);
    EXPECT_BITS(out.Along, 0.0);
    EXPECT_BITS(out.Across, -0.0);
    EXPECT_BITS(out.FootX, A.X);
    EXPECT_BITS(out.FootY, A.Y);
    EXPECT_BITS(out.FootH, A.H);
    EXPECT_BITS(out.LineDH, -2.5);
    // An offset equal to the measured across distance leaves exactly 0.
    const SurveyPoint off[] = {A, B, at(120.0, 30.0, 57.0)};
    ASSERT_EQ(LIB_Project(off, &out), 0);
    ASSERT_EQ(LIB_LSO_Line(off, out.Across, &out), 0);
    EXPECT_BITS(out.Across, 0.0);

    // No offset at all: A itself.
    LinePosition pos = {0.0, 0.0};
    SurveyPoint point;
    ASSERT_EQ(LIB_LSO_Point(on_a, &pos, &point), 0);
    EXPECT_TRUE(point.X == A.X && point.Y == A.Y && point.H == A.H);
    // 4 mm across at 1000 m is 0.825 seconds off the line, cut to 0: the point
    // is set out on the line at the full radial distance.
    const SurveyPoint north[] = {{0.0, 0.0, 0.0}, {10.0, 0.0, 0.0}};
    pos = {1000.0, 0.004};
    ASSERT_EQ(LIB_LSO_Point(north, &pos, &point), 0);
    EXPECT_BITS(point.X, 1000.000000008);
    EXPECT_BITS(point.Y, 0.0);
}
