// Base line, projection on a line and the reference-line functions.
#include "bits.hpp"
#include "quillon.h"

#include <cmath>
#include <limits>

namespace {

const double INF = std::numeric_limits<double>::infinity();
const double LIMIT = 99999999.9999;

// The 3-4-5 line scaled by 100: 500 m from (100, 200) toward the north-east.
const SurveyPoint A = {100.0, 200.0, 50.0};
const SurveyPoint B = {400.0, 600.0, 60.0};
// atan2(400, 300) in arc-seconds with RHO_SEC.
const double AZ_AB = 191268.3717376482;

} // namespace

TEST(BaseLine, MeasuresOfTheLine)
{
    const SurveyPoint pts[] = {A, B};
    BaselineRecord out = qtest::sentinel_filled<BaselineRecord>();
    ASSERT_EQ(LIB_BaseLine(pts, &out), 0);
    EXPECT_BITS(out.HorizontalDistance, 500.0);
    EXPECT_BITS(out.Grade, 0.02);
    EXPECT_BITS(out.Azimuth, AZ_AB);
    EXPECT_TRUE(qtest::untouched(out.Spare1));
    EXPECT_TRUE(qtest::untouched(out.Spare3));
}

TEST(BaseLine, Failures)
{
    struct Case {
        SurveyPoint a;
        SurveyPoint b;
        int status;
    };
    const Case cases[] = {
        // Same plan position at another height.
        {{1.0, 2.0, 3.0}, {1.0, 2.0, 9.0}, 3},
        // A direction but no distance: the squares underflow.
        {{0.0, 0.0, 0.0}, {1e-200, 0.0, 0.0}, 3},
        {{-LIMIT, 0.0, 0.0}, {1.0, 0.0, 0.0}, 2},
        {{0.0, 0.0, 0.0}, {0.0, INF, 0.0}, 2},
    };
    for (const Case& c : cases) {
        const SurveyPoint pts[] = {c.a, c.b};
        BaselineRecord out = qtest::sentinel_filled<BaselineRecord>();
        EXPECT_EQ(LIB_BaseLine(pts, &out), c.status);
        EXPECT_TRUE(qtest::untouched(out));
    }
}

TEST(BaseLine, LongestLineAccepted)
{
    const SurveyPoint pts[] = {{0.0, 0.0, 0.0}, {LIMIT, 0.0, 0.0}};
    BaselineRecord out;
    EXPECT_EQ(LIB_BaseLine(pts, &out), 0);
    EXPECT_BITS(out.HorizontalDistance, LIMIT);
}

TEST(Project, PointsOnTheLine)
{
    // Along the X axis the angle is exactly 0 ahead of A and the across
    // distance exactly 0; behind A it is a half circle of 3.1415926.
    const SurveyPoint a = {0.0, 0.0, 10.0};
    const SurveyPoint b = {10.0, 0.0, 12.0};
    struct Case {
        SurveyPoint p;
        double along;
        double foot_h;
    };
    const Case cases[] = {
        {{15.0, 0.0, 20.0}, 15.0, 13.0},
        {{4.0, 0.0, 11.0}, 4.0, 10.8},
        {{-5.0, 0.0, 0.0}, -5.0, 9.0},
    };
    for (const Case& c : cases) {
        const SurveyPoint pts[] = {a, b, c.p};
        ProjectionRecord out = qtest::sentinel_filled<ProjectionRecord>();
        ASSERT_EQ(LIB_Project(pts, &out), 0);
        EXPECT_NEAR(out.Along, c.along, 1e-12);
        EXPECT_NEAR(out.Across, 0.0, 1e-6);
        EXPECT_NEAR(out.FootX, c.p.X, 1e-12);
        EXPECT_NEAR(out.FootY, 0.0, 1e-12);
        EXPECT_NEAR(out.FootH, c.foot_h, 1e-12);
        EXPECT_NEAR(out.LineDH, c.p.H - c.foot_h, 1e-12);
    }
    const SurveyPoint ahead[] = {a, b, {15.0, 0.0, 20.0}};
    ProjectionRecord out;
    ASSERT_EQ(LIB_Project(ahead, &out), 0);
    EXPECT_BITS(out.Across, 0.0);
    EXPECT_BITS(out.Along, 15.0);
}

TEST(Project, PointOffTheLine)
{
    // 120 m along A->B and 30 m to the right (south-east of the line).
    const double ux = 0.6;
    const double uy = 0.8;
    const SurveyPoint p = {A.X + 120.0 * ux - 30.0 * uy, A.Y + 120.0 * uy + 30.0 * ux, 57.0};
    const SurveyPoint pts[] = {A, B, p};
    ProjectionRecord out;
    ASSERT_EQ(LIB_Project(pts, &out), 0);
    EXPECT_NEAR(out.Along, 120.0, 1e-6);
    EXPECT_NEAR(out.Across, 30.0, 1e-6);
    EXPECT_NEAR(out.FootX, A.X + 120.0 * ux, 1e-6);
    EXPECT_NEAR(out.FootY, A.Y + 120.0 * uy, 1e-6);
    EXPECT_NEAR(out.FootH, 52.4, 1e-6);
    EXPECT_NEAR(out.LineDH, 4.6, 1e-6);
}

TEST(Project, PointOnA)
{
    const SurveyPoint pts[] = {A, B, {A.X, A.Y, 47.5}};
    ProjectionRecord out;
    ASSERT_EQ(LIB_Project(pts, &out), 0);
    // The angle is then minus the line's azimuth: its negative sine times a
    // distance of 0 gives -0.
    EXPECT_BITS(out.Along, 0.0);
    EXPECT_BITS(out.Across, -0.0);
    EXPECT_BITS(out.FootX, A.X);
    EXPECT_BITS(out.FootY, A.Y);
    EXPECT_BITS(out.FootH, A.H);
    EXPECT_BITS(out.LineDH, -2.5);
}

TEST(ReferenceLine, CoincidentLinePointsLeaveOutputsUntouched)
{
    const SurveyPoint pts[] = {A, {A.X, A.Y, 99.0}, B};
    ProjectionRecord projection = qtest::sentinel_filled<ProjectionRecord>();
    EXPECT_EQ(LIB_Project(pts, &projection), 3);
    EXPECT_TRUE(qtest::untouched(projection));
    EXPECT_EQ(LIB_LSO_Line(pts, 1.0, &projection), 3);
    EXPECT_TRUE(qtest::untouched(projection));
    const LinePosition pos = {1.0, 2.0};
    SurveyPoint point = qtest::sentinel_filled<SurveyPoint>();
    EXPECT_EQ(LIB_LSO_Point(pts, &pos, &point), 3);
    EXPECT_TRUE(qtest::untouched(point));
}

TEST(ReferenceLinePoint, PositionsAroundTheLine)
{
    // The direction from A is cut to whole seconds: up to a second, some
    // tenths of a millimetre at these distances.
    const SurveyPoint pts[] = {A, B};
    const double ux = 0.6;
    const double uy = 0.8;
    const LinePosition cases[] = {
        {120.0, 30.0}, {120.0, -30.0}, {-40.0, 10.0}, {-40.0, -10.0}, {0.0, 25.0}, {700.0, 0.0},
    };
    for (const LinePosition& pos : cases) {
        SurveyPoint out;
        ASSERT_EQ(LIB_LSO_Point(pts, &pos, &out), 0);
        EXPECT_NEAR(out.X, A.X + pos.Along * ux - pos.Across * uy, 2e-3);
        EXPECT_NEAR(out.Y, A.Y + pos.Along * uy + pos.Across * ux, 2e-3);
        // The height follows the grade 0.02 along the line only.
        EXPECT_NEAR(out.H, A.H + pos.Along * 0.02, 1e-9);
    }
}

TEST(ReferenceLinePoint, NoOffsetGivesA)
{
    const SurveyPoint pts[] = {A, B};
    const LinePosition pos = {0.0, 0.0};
    SurveyPoint out;
    ASSERT_EQ(LIB_LSO_Point(pts, &pos, &out), 0);
    EXPECT_BITS(out.X, A.X);
    EXPECT_BITS(out.Y, A.Y);
    EXPECT_BITS(out.H, A.H);
}

TEST(ReferenceLineLine, DesignOffsetTakenOffTheAcross)
{
    const double ux = 0.6;
    const double uy = 0.8;
    const SurveyPoint p = {A.X + 120.0 * ux - 30.0 * uy, A.Y + 120.0 * uy + 30.0 * ux, 57.0};
    const SurveyPoint pts[] = {A, B, p};
    ProjectionRecord projection;
    ASSERT_EQ(LIB_Project(pts, &projection), 0);

    struct Case {
        double design_offset;
        double across;
    };
    const Case cases[] = {{0.0, 30.0}, {30.0, 0.0}, {-5.0, 35.0}, {45.0, -15.0}};
    for (const Case& c : cases) {
        ProjectionRecord out = qtest::sentinel_filled<ProjectionRecord>();
        ASSERT_EQ(LIB_LSO_Line(pts, c.design_offset, &out), 0);
        EXPECT_NEAR(out.Across, c.across, 1e-6);
        EXPECT_BITS(out.Along, projection.Along);
        EXPECT_NEAR(out.LineDH, 4.6, 1e-6);
        EXPECT_TRUE(qtest::untouched(out.FootX));
        EXPECT_TRUE(qtest::untouched(out.FootY));
        EXPECT_TRUE(qtest::untouched(out.FootH));
    }
    // An offset equal to the measured across distance leaves exactly 0.
    ProjectionRecord out;
    ASSERT_EQ(LIB_LSO_Line(pts, projection.Across, &out), 0);
    EXPECT_BITS(out.Across, 0.0);
}

TEST(ReferenceLinePoint, DirectionCutToWholeSeconds)
{
    // 4 mm across at 1000 m is 0.825 seconds off the line: cut to 0, so the
    // point is set out on the line itself at the full radial distance.
    const SurveyPoint pts[] = {{0.0, 0.0, 0.0}, {10.0, 0.0, 0.0}};
    const LinePosition pos = {1000.0, 0.004};
    SurveyPoint out;
    ASSERT_EQ(LIB_LSO_Point(pts, &pos, &out), 0);
    EXPECT_BITS(out.X, std::sqrt(0.004 * 0.004 + 1000.0 * 1000.0));
    EXPECT_BITS(out.Y, 0.0);
}
