// Straights, arcs and clothoid transition curves evaluated one at a time.
#include "road_support.hpp"

#include <cstdio>

using namespace roadtest;
using qtest::Call;
using qtest::rows;

namespace {

// The evaluator of an element type: 1 straight, 2 arc, 3 transition curve.
const char* on_name(unsigned char type)
{
    return type == 1   ? "LIB_CalWay_H_Line_On"
           : type == 2 ? "LIB_CalWay_H_Circle_On"
                       : "LIB_CalWay_H_Curve_On";
}

ResultCode on(const HElement& e, double l, PlanePoint* p)
{
    return e.Type == 1   ? LIB_CalWay_H_Line_On(&e, l, p)
           : e.Type == 2 ? LIB_CalWay_H_Circle_On(&e, l, p)
                         : LIB_CalWay_H_Curve_On(&e, l, p);
}

} // namespace

TEST(ElementOn, ReferencePointRangeAndNeutralCodes)
{
    // l = 0 gives the reference point, an arc of unknown turn the origin.
    const struct {
        unsigned char type, turn;
        double start_x, l, radius;
        int status;
        double x;
    } cases[] = {{1, 0, 100, 10, 0, 0, 110},
                 {1, 0, LIMIT, 0, 0, 0, LIMIT},
                 {2, 1, 1234.5, 0, 250, 0, 1234.5},
                 {3, 1, 1234.5, 0, 250, 0, 1234.5},
                 {1, 0, LIMIT, 1, 0, 2, 0},
                 {1, 0, 0, NaN, 0, 2, 0},
                 {2, 1, 0, 10, 0, 2, 0},
                 {3, 1, 0, 10, 0, 2, 0}, // zero radius
                 {2, 2, 100, 30, 100, 0, 0}};
    for (const auto& [row, c] : rows(cases)) {
        const Call call = row.of(on_name(c.type));
        const HElement e = element(c.type, c.start_x, 0.0, 0.0, 50.0, c.radius, c.turn, 0);
        PlanePoint p = qtest::sentinel_filled<PlanePoint>();
        ASSERT_STATUS(call, on(e, c.l, &p), c.status);
        if (c.status != 0) {
            EXPECT_UNTOUCHED(call, p);
        } else {
            EXPECT_BITS(call, p, (PlanePoint{c.x, 0.0}));
        }
    }
    // A transition curve of unknown turn is set out straight along its
    // azimuth at the chord's length.
    const Call odd_call("LIB_CalWay_H_Curve_On", "unknown turn");
    const PlanePoint run = integrate([](double u) { return u * u / 20000.0; }, 100.0);
    const HElement odd = element(3, 10.0, 20.0, 0.0, 100.0, 100.0, 2, 0);
    PlanePoint p{};
    ASSERT_STATUS(odd_call, LIB_CalWay_H_Curve_On(&odd, 100.0, &p), 0);
    EXPECT_WITHIN(odd_call, p.X, 10.0 + std::hypot(run.X, run.Y), 2e-4);
    EXPECT_BITS(odd_call, p.Y, 20.0);
}

TEST(ElementAzimuth, FoldsAndTheTwoCircleLimit)
{
    // An exit curve's azimuth is turned forward; to the right a negative one
    // is folded up, to the left never. Unknown turn or spiral gives 0. Two
    // full circles (2592000" survives the trip through radians exactly) is
    // refused.
    const double g = RHO; // one radian
    const struct {
        unsigned char type;
        double azimuth, l, radius;
        unsigned char turn, spiral;
        int status;
        double azimuth_out;
    } cases[] = {
        {3, 456789, 0, 100, 0, 0, 0, 456789},
        {3, 456789, 0, 100, 0, 1, 0, 1104789},
        {2, 1295000, 100, 100, 1, 0, 0, g - 1000},
        {3, 1295000, 100, 100, 1, 0, 0, g - 1000},
        {2, 0, 1, 1000, 0, 0, 0, 1296000 - g / 1000},
        {2, 0, 20, 1, 1, 0, 2, 0},
        {2, 0, 10, 1, 0, 0, 2, 0},
        {2, 0, 10, 0, 1, 0, 2, 0},
        {3, -1000000, 0, 100, 1, 1, 0, 944000},
        {3, -1000000, 0, 100, 0, 1, 2, 0},
        {3, 1000000, 0, 100, 0, 1, 0, 352000},
        {2, 456789, 10, 100, 2, 0, 0, 0},
        {3, 456789, 10, 100, 1, 2, 0, 0},
        {2, 2592000, 0, 100, 0, 0, 2, 0},
    };
    for (const auto& [row, c] : rows(cases)) {
        const Call call = row.of(c.type == 2 ? "LIB_CalWay_H_Circle_AZ" : "LIB_CalWay_H_Curve_AZ");
        const HElement e = element(c.type, 0.0, 0.0, c.azimuth, 50.0, c.radius, c.turn, c.spiral);
        double az = qtest::sentinel_double();
        ASSERT_STATUS(call,
                      c.type == 2 ? LIB_CalWay_H_Circle_AZ(&e, c.l, &az)
                                  : LIB_CalWay_H_Curve_AZ(&e, c.l, &az),
                      c.status);
        if (c.status != 0) {
            EXPECT_UNTOUCHED(call, az);
        } else {
            EXPECT_WITHIN(call, az, c.azimuth_out, 1e-6);
        }
    }
}

// The series truncated after three terms against the clothoid integrated
// numerically: the error grows with the tangent's turn L / 2R. (Exit curves
// evaluated backward are checked along a whole alignment.)
TEST(Clothoid, SeriesAgainstIntegratedCurve)
{
    const struct {
        double length, radius, tolerance;
    } cases[] = {{60.0, 300.0, 1e-8}, {200.0, 100.0, 2.5e-2}};
    for (const auto& [row, c] : rows(cases)) {
        const double L = c.length, R = c.radius;
        const PlanePoint run = integrate([=](double u) { return u * u / (2 * R * L); }, L);
        const HElement entry = element(3, 0.0, 0.0, 0.0, L, R, 1, 0);
        PlanePoint p{};
        double az = 0.0;
        ASSERT_STATUS(row.of("LIB_CalWay_H_Curve_On"), LIB_CalWay_H_Curve_On(&entry, L, &p), 0);
        ASSERT_STATUS(row.of("LIB_CalWay_H_Curve_AZ"), LIB_CalWay_H_Curve_AZ(&entry, L, &az), 0);
        const double error = gap(p.X, p.Y, run.X, run.Y);
        std::printf("clothoid L %.0f R %.0f: series error %.3g m\n", L, R, error);
        EXPECT_BELOW(row.of("LIB_CalWay_H_Curve_On"), error, c.tolerance);
        // The tangent turns by L / 2R.
        EXPECT_WITHIN(row.of("LIB_CalWay_H_Curve_AZ"), az, L / (2 * R) * RHO, 1e-6);
    }
    // An 80 m exit curve leaving an R = 250 arc heading 300000" (Spiral unread).
    const double a0 = 300000.0 / RHO, R = 250.0, L = 80.0;
    for (unsigned char turn = 0; turn < 2; ++turn) {
        const Call call("LIB_CalWay_H_Curve_End",
                        turn == 1 ? "exit to the right" : "exit to the left");
        const double side = turn == 1 ? 1.0 : -1.0;
        const HElement exit = element(3, 1000.0, 2000.0, 300000.0, L, R, turn, 2);
        TangentPoint end{};
        ASSERT_STATUS(call, LIB_CalWay_H_Curve_End(&exit, &end), 0);
        const PlanePoint run =
            integrate([=](double u) { return a0 + side * (u / R - u * u / (2 * R * L)); }, L);
        EXPECT_BELOW(call, gap(end.X, end.Y, 1000.0 + run.X, 2000.0 + run.Y), 1e-5);
        EXPECT_WITHIN(call, end.Azimuth, 300000.0 + side * L / (2 * R) * RHO, 1e-7);
    }
    // Unknown turn: three zeros. Beyond the range: nothing written.
    const Call unknown("LIB_CalWay_H_Curve_End", "unknown turn");
    const Call far("LIB_CalWay_H_Curve_End", "end beyond the limit");
    const HElement odd = element(3, 5.0, 6.0, 0.0, 60.0, 200.0, 2, 1),
                   south = element(3, -LIMIT + 1.0, 0.0, 648000.0, 60.0, 200.0, 0, 1);
    TangentPoint t = qtest::sentinel_filled<TangentPoint>(), u = t;
    EXPECT_STATUS(unknown, LIB_CalWay_H_Curve_End(&odd, &t), 0);
    EXPECT_BITS(unknown, t, (TangentPoint{0.0, 0.0, 0.0}));
    EXPECT_STATUS(far, LIB_CalWay_H_Curve_End(&south, &u), 2);
    EXPECT_UNTOUCHED(far, u);
}
