// Exact transition curves: against an independent 34-digit reference over a
// grid of lengths, curvatures and arc lengths, against the buildingSMART
// clothoid test set, against closed forms and symmetries, and bad input.
#include "check.hpp"
#include "records.hpp"
#include "survey_road_support.hpp"

#include "quillon/survey.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using qtest::INF;
using qtest::NaN;
using roadtest::azimuth_difference;

// Tolerances: the layer promises 1e-9 m; azimuths come from the exact
// turn formula and agree to rounding.
constexpr double POSITION_TOLERANCE = 1e-9; // m
constexpr double AZIMUTH_TOLERANCE = 1e-6;  // arc-seconds
constexpr double EAST = 324000.0;           // arc-seconds, true pi

qs_pose point_at(const qs_transition& curve, double s)
{
    qs_pose pose{};
    EXPECT_EQ(qs_transition_point(&curve, s, &pose), QS_OK);
    return pose;
}

// Rows written by transition_reference.py (mpmath, 34 digits).
TEST(SurveyTransition, AgreesWithTheHighPrecisionReferenceToANanometre)
{
    std::ifstream file(QUILLON_SURVEY_DATA_DIR "/transition_reference.txt");
    ASSERT_TRUE(file.good());
    std::string line;
    int rows = 0;
    while (std::getline(file, line)) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        std::istringstream fields(line);
        qs_transition curve{};
        double s = 0.0;
        std::string bar;
        std::string x, y, azimuth;
        fields >> curve.x >> curve.y >> curve.azimuth >> curve.curvature_start >>
            curve.curvature_end >> curve.length >> s >> bar >> x >> y >> azimuth;
        ASSERT_EQ(bar, "|") << line;
        const qs_pose pose = point_at(curve, s);
        EXPECT_LE(std::hypot(pose.x - std::stod(x), pose.y - std::stod(y)), POSITION_TOLERANCE)
            << line;
        EXPECT_LE(std::fabs(azimuth_difference(pose.azimuth, std::stod(azimuth))),
                  AZIMUTH_TOLERANCE)
            << line;
        ++rows;
    }
    EXPECT_GE(rows, 500);
}

// The clothoid cases of the buildingSMART IFC 4.3 alignment test set
// (IFC4.x-IF, Alignment-atomic-testset, HorizontalAlignment/Clothoid_100.0_
// <start radius>_<end radius>_1_Meter): 100 m from (0, 0) heading along +x,
// radius positive turning left (counter-clockwise); the end points are the
// start points of the closing segments in the files with generated
// geometry, published with 15 significant digits. Here x is easting, y
// northing, so the start azimuth is east and a left turn is a negative
// curvature.
struct IfcCase {
    double start_radius; // 0 for a straight end
    double end_radius;
    double end_x;
    double end_y;
};

const IfcCase IFC_CLOTHOIDS[] = {
    {0.0, 300.0, 99.7225792178275, 5.54454236562881},
    {0.0, -300.0, 99.7225792178275, -5.54454236562881},
    {300.0, 0.0, 99.2605646656708, 11.0758773084716},
    {-300.0, 0.0, 99.2605646656708, -11.0758773084716},
    {1000.0, 300.0, 99.4068642447563, 8.85797863211986},
    {-1000.0, -300.0, 99.4068642447563, -8.85797863211986},
    {300.0, 1000.0, 98.9869256442883, 12.7191586166162},
    {-300.0, -1000.0, 98.9869256442883, -12.7191586166162},
};

double ifc_curvature(double radius) { return radius == 0.0 ? 0.0 : -1.0 / radius; }

TEST(SurveyTransition, ReproducesTheIfcClothoidTestSet)
{
    for (const IfcCase& c : IFC_CLOTHOIDS) {
        const qs_transition curve{
            0.0, 0.0, EAST, ifc_curvature(c.start_radius), ifc_curvature(c.end_radius), 100.0};
        const qs_pose end = point_at(curve, 100.0);
        // Published to 15 digits: 5e-14 m on the larger coordinate.
        EXPECT_NEAR(end.y, c.end_x, 1e-12) << c.start_radius << " " << c.end_radius;
        EXPECT_NEAR(end.x, c.end_y, 1e-12) << c.start_radius << " " << c.end_radius;
    }
}

TEST(SurveyTransition, StartIsTheGivenPoseAndArcsAndStraightsAreClosedForms)
{
    const qs_transition spiral{5000.0, 2000.0, 1296000.0 + 4000.0, 0.0, 1.0 / 250.0, 80.0};
    const qs_pose start = point_at(spiral, 0.0);
    EXPECT_BITS(qtest::Call("qs_transition_point", "start"), start.x, 5000.0);
    EXPECT_BITS(qtest::Call("qs_transition_point", "start"), start.y, 2000.0);
    EXPECT_BITS(qtest::Call("qs_transition_point", "start"), start.azimuth, 4000.0);

    const double radius = 400.0;
    for (double sense : {1.0, -1.0}) {
        const qs_transition arc{0.0, 0.0, 0.0, sense / radius, sense / radius, 700.0};
        const double turn = 700.0 / radius;
        const qs_pose end = point_at(arc, 700.0);
        EXPECT_NEAR(end.x, radius * std::sin(turn), 1e-10);
        EXPECT_NEAR(end.y, sense * radius * (1.0 - std::cos(turn)), 1e-10);
        EXPECT_NEAR(azimuth_difference(end.azimuth, sense * turn * QS_RHO_SEC), 0.0, 1e-7);
    }
    const qs_transition straight{10.0, 20.0, EAST / 2.0, 0.0, 0.0, 100.0};
    const qs_pose end = point_at(straight, 100.0);
    EXPECT_NEAR(end.x, 10.0 + 100.0 * std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(end.y, 20.0 + 100.0 * std::sqrt(0.5), 1e-12);
}

// Driven backward from its end with the curvatures swapped and the turning
// sense reversed, a curve returns to its start; mirrored, it mirrors.
TEST(SurveyTransition, ReversedCurvesReturnAndMirroredCurvesMirror)
{
    const double k = 2.0 * 3.141592653589793 / 1000.0; // total turn pi
    const qs_transition curves[] = {
        {100.0, 200.0, 45000.0, 0.0, k, 1000.0},
        {100.0, 200.0, 45000.0, 0.3 * k, 1.7 * k, 1000.0},
        {100.0, 200.0, 45000.0, -0.5 * k, 1.5 * k, 1000.0},
    };
    for (const qs_transition& forward : curves) {
        const qs_pose end = point_at(forward, forward.length);
        const qs_transition backward{end.x,
                                     end.y,
                                     end.azimuth + 648000.0,
                                     -forward.curvature_end,
                                     -forward.curvature_start,
                                     forward.length};
        const qs_pose back = point_at(backward, backward.length);
        EXPECT_NEAR(back.x, forward.x, POSITION_TOLERANCE);
        EXPECT_NEAR(back.y, forward.y, POSITION_TOLERANCE);
        EXPECT_NEAR(azimuth_difference(back.azimuth, forward.azimuth + 648000.0), 0.0, 1e-6);

        // Mirrored in the start tangent (azimuth 45000" here).
        const qs_transition mirror{forward.x,
                                   forward.y,
                                   forward.azimuth,
                                   -forward.curvature_start,
                                   -forward.curvature_end,
                                   forward.length};
        const qs_pose image = point_at(mirror, 640.0);
        const qs_pose original = point_at(forward, 640.0);
        const double a = forward.azimuth * QS_RAD_PER_SEC;
        const double dx = original.x - forward.x, dy = original.y - forward.y;
        const double along = dx * std::cos(a) + dy * std::sin(a);
        const double across = -dx * std::sin(a) + dy * std::cos(a);
        EXPECT_NEAR(image.x, forward.x + along * std::cos(a) + across * std::sin(a), 1e-9);
        EXPECT_NEAR(image.y, forward.y + along * std::sin(a) - across * std::cos(a), 1e-9);
    }
}

// Every bad field refuses the call and leaves the output alone; the bounds
// themselves are taken.
TEST(SurveyTransition, RefusesBadInputAndLeavesTheOutputAlone)
{
    const double far = std::nextafter(QS_MAX_COORDINATE, INF);
    const struct {
        const char* what;
        qs_transition curve;
        double s;
        qs_status status;
    } cases[] = {
        {"x NaN", {NaN, 0, 0, 0, 0.01, 100}, 50, QS_BAD_ARGUMENT},
        {"y infinite", {0, INF, 0, 0, 0.01, 100}, 50, QS_BAD_ARGUMENT},
        {"azimuth NaN", {0, 0, NaN, 0, 0.01, 100}, 50, QS_BAD_ARGUMENT},
        {"azimuth infinite", {0, 0, -INF, 0, 0.01, 100}, 50, QS_BAD_ARGUMENT},
        {"start curvature NaN", {0, 0, 0, NaN, 0.01, 100}, 50, QS_BAD_ARGUMENT},
        {"end curvature infinite", {0, 0, 0, 0, INF, 100}, 50, QS_BAD_ARGUMENT},
        {"length 0", {0, 0, 0, 0, 0.01, 0}, 0, QS_BAD_ARGUMENT},
        {"length negative", {0, 0, 0, 0, 0.01, -100}, -50, QS_BAD_ARGUMENT},
        {"length NaN", {0, 0, 0, 0, 0.01, NaN}, 50, QS_BAD_ARGUMENT},
        {"length beyond the range", {0, 0, 0, 0, 0, far}, 50, QS_BAD_ARGUMENT},
        {"x beyond the range", {far, 0, 0, 0, 0.01, 100}, 50, QS_BAD_ARGUMENT},
        {"s negative", {0, 0, 0, 0, 0.01, 100}, -1e-300, QS_BAD_ARGUMENT},
        {"s beyond the length",
         {0, 0, 0, 0, 0.01, 100},
         std::nextafter(100.0, INF),
         QS_BAD_ARGUMENT},
        {"s NaN", {0, 0, 0, 0, 0.01, 100}, NaN, QS_BAD_ARGUMENT},
        {"turn beyond the bound",
         {0, 0, 0, 0, std::nextafter(10.0, INF), 1000},
         1,
         QS_BAD_ARGUMENT},
        // Within the turn bound, but the curvature changes by 1e145 over
        // 1e-307 m: its rate of change is no double. Found by fuzzing: the
        // quadrature cut such a curve into endless panels.
        {"change of curvature too steep", {0, 0, 0, 1e145, 0, 1e-307}, 5e-308, QS_BAD_ARGUMENT},
        {"change of curvature too steep, turning left",
         {0, 0, 0, 2e-311, -1e270, 4e-270},
         6e-308,
         QS_BAD_ARGUMENT},
        {"the largest turn, at the length", {0, 0, 0, -10.0, 0.0, 1000.0}, 1000.0, QS_OK},
        {"the farthest start", {-QS_MAX_COORDINATE, QS_MAX_COORDINATE, 0, 0, 0, 1.0}, 0.0, QS_OK},
    };
    for (const auto& c : cases) {
        qs_pose out = qtest::sentinel_filled<qs_pose>();
        EXPECT_EQ(qs_transition_point(&c.curve, c.s, &out), c.status) << c.what;
        EXPECT_TRUE(c.status == QS_OK ? roadtest::written_whole(out) : qtest::untouched(out))
            << c.what;
    }
}

} // namespace
