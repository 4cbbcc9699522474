// Base line, projection on a line and the reference-line functions.
#include "check.hpp"
#include "records.hpp"

using qtest::Call;

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
    // underflow, and a point plumb over the origin. The spares are never written.
    const struct {
        SurveyPoint to;
        int status;
        double distance, grade, azimuth;
    } cases[] = {{{300, 400, 10}, 0, 500.0, 0.02, 191268.3717376482},
                 {{qtest::LIMIT, 0, 0}, 0, qtest::LIMIT, 0.0, 0.0},
                 {{qtest::ABOVE_LIMIT, 0, 0}, 2, 0, 0, 0},
                 {{1e-200, 0, 0}, 3, 0, 0, 0},
                 {{0, 0, 9}, 3, 0, 0, 0}};
    for (const auto& [call, c] : qtest::rows("LIB_BaseLine", cases)) {
        BaselineRecord out = qtest::sentinel_filled<BaselineRecord>();
        const SurveyPoint pts[] = {{}, c.to};
        EXPECT_STATUS(call, LIB_BaseLine(pts, &out), c.status);
        if (c.status != 0) {
            EXPECT_UNTOUCHED(call, out);
            continue;
        }
        BaselineRecord expected = qtest::sentinel_filled<BaselineRecord>();
        expected.HorizontalDistance = c.distance;
        expected.Grade = c.grade;
        expected.Azimuth = c.azimuth;
        EXPECT_BITS(call, out, expected);
    }
    // A and B apart in height only: the other three refuse too.
    const SurveyPoint same[] = {A, {A.X, A.Y, 99.0}, B};
    const LinePosition pos = {1.0, 2.0};
    const Call project("LIB_Project", "A plumb over B"), line("LIB_LSO_Line", "A plumb over B"),
        set_out("LIB_LSO_Point", "A plumb over B");
    ProjectionRecord projection = qtest::sentinel_filled<ProjectionRecord>();
    SurveyPoint point = qtest::sentinel_filled<SurveyPoint>();
    EXPECT_STATUS(project, LIB_Project(same, &projection), 3);
    EXPECT_UNTOUCHED(project, projection);
    EXPECT_STATUS(line, LIB_LSO_Line(same, 1.0, &projection), 3);
    EXPECT_UNTOUCHED(line, projection);
    EXPECT_STATUS(set_out, LIB_LSO_Point(same, &pos, &point), 3);
    EXPECT_UNTOUCHED(set_out, point);
}

TEST(ReferenceLine, PointSetOutIsFoundAgainAndExactCases)
{
    // LIB_LSO_Point cuts the direction from A to whole seconds: some tenths
    // of a millimetre here. Heights follow the grade 0.02 along the line only.
    // P on A has no direction and a distance of 0; the angle is minus the line's azimuth, so
    // its negative sine gives -0.
    const LinePosition cases[] = {{120, 30}, {-40, -10}, {0, 25}, {650, 0}, {-50, 0}, {0, 0}};
    for (const auto& [row, pos] : qtest::rows(cases)) {
        const Call set_out_call = row.of("LIB_LSO_Point"), project = row.of("LIB_Project"),
                   line = row.of("LIB_LSO_Line");
        const SurveyPoint pts[] = {A, B, at(pos.Along, pos.Across, 57.0)},
                          foot = at(pos.Along, 0, 0);
        const double line_h = A.H + pos.Along * 0.02;
        SurveyPoint set_out;
        ASSERT_STATUS(set_out_call, LIB_LSO_Point(pts, &pos, &set_out), 0);
        EXPECT_BELOW(set_out_call, std::hypot(set_out.X - pts[2].X, set_out.Y - pts[2].Y), 2e-3);
        EXPECT_WITHIN(set_out_call, set_out.H, line_h, 1e-9);
        ProjectionRecord found;
        ASSERT_STATUS(project, LIB_Project(pts, &found), 0);
        if (pos.Along == 0.0 && pos.Across == 0.0) {
            EXPECT_BITS(project, found.Across, -0.0);
        }
        EXPECT_BELOW(project, std::hypot(found.Along - pos.Along, found.Across - pos.Across), 1e-5);
        EXPECT_BELOW(project, std::hypot(found.FootX - foot.X, found.FootY - foot.Y), 1e-5);
        // Together within 1e-7.
        EXPECT_WITHIN(project, found.FootH, line_h, 7e-8);
        EXPECT_WITHIN(project, found.LineDH, 57.0 - line_h, 7e-8);
        ProjectionRecord against = qtest::sentinel_filled<ProjectionRecord>();
        ASSERT_STATUS(line, LIB_LSO_Line(pts, 5.0, &against), 0);
        EXPECT_BITS(line, against.Along, found.Along);
        EXPECT_BITS(line, against.LineDH, found.LineDH);
        EXPECT_WITHIN(line, against.Across, pos.Across - 5.0, 1e-5);
        EXPECT_UNTOUCHED(line, against.FootX);
        EXPECT_UNTOUCHED(line, against.FootY);
        EXPECT_UNTOUCHED(line, against.FootH);
    }
    // 4 mm across at 1000 m is 0.825 seconds off the line, cut to 0: the point
    // is set out on the line at the full radial distance.
    const Call close("LIB_LSO_Point", "4 mm across at 1000 m");
    const SurveyPoint north[] = {{0.0, 0.0, 0.0}, {10.0, 0.0, 0.0}};
    const LinePosition pos = {1000.0, 0.004};
    SurveyPoint point;
    ASSERT_STATUS(close, LIB_LSO_Point(north, &pos, &point), 0);
    EXPECT_BITS(close, point.X, 1000.000000008);
    EXPECT_BITS(close, point.Y, 0.0);
    // 100 m to the left: -324000 seconds, taken round to 972000, which with pi as 3.1415926
    // falls short of the true west by 3 pi / 2 - 4.7123889 = 8.0384690e-8 radians.
    const Call to_the_left("LIB_LSO_Point", "100 m to the left");
    const LinePosition left = {0.0, -100.0};
    ASSERT_STATUS(to_the_left, LIB_LSO_Point(north, &left, &point), 0);
    EXPECT_WITHIN(to_the_left, point.X, -100.0 * 8.0384690e-8, 1e-12);
}
