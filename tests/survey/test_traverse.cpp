// Traverse adjustment: a traverse observed exactly closes, a known
// misclosure is spread as each rule says (numbers worked by hand), the
// angular correction closes the angles, and bad input writes nothing.
#include "quillon/survey.h"

#include "bits.hpp"
#include "survey_road_support.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double INF = std::numeric_limits<double>::infinity();
const double PI = 3.14159265358979323846;

double azimuth(const SurveyPoint& from, const SurveyPoint& to)
{
    return std::atan2(to.Y - from.Y, to.X - from.X) * QS_RHO_SEC;
}

// Clockwise angle at a station from the back point to the forward point.
double angle(const SurveyPoint& back, const SurveyPoint& at, const SurveyPoint& forward)
{
    const double a = std::fmod(azimuth(at, forward) - azimuth(at, back), 1296000.0);
    return a < 0.0 ? a + 1296000.0 : a;
}

struct Traverse {
    int kind;
    qs_traverse_ends ends;
    std::vector<qs_traverse_station> stations;
};

// A traverse observed exactly along the given stations (for a loop the last
// is the first again).
Traverse observe(int kind, const std::vector<SurveyPoint>& points, const SurveyPoint& backsight,
                 const SurveyPoint& foresight)
{
    Traverse t;
    t.kind = kind;
    const std::size_t n = points.size() - 1;
    t.ends = {points[0], backsight, points[n], foresight};
    for (std::size_t i = 0; i <= n; ++i) {
        const SurveyPoint& back = i == 0 ? backsight : points[i - 1];
        const SurveyPoint& forward =
            i < n ? points[i + 1] : (kind == QS_TRAVERSE_LOOP ? points[1] : foresight);
        qs_traverse_station s = {angle(back, points[i], forward), 0.0, 0.0};
        if (i < n) {
            s.distance = std::hypot(points[i + 1].X - points[i].X, points[i + 1].Y - points[i].Y);
            s.height_difference = points[i + 1].H - points[i].H;
        }
        t.stations.push_back(s);
    }
    return t;
}

qs_status adjust(const Traverse& t, int rule, int height_rule, qs_traverse_result& r,
                 std::vector<SurveyPoint>& adjusted)
{
    adjusted.resize(t.stations.size());
    return qs_traverse_adjust(t.kind, &t.ends, t.stations.data(), t.stations.size() - 1, rule,
                              height_rule, &r, adjusted.data());
}

// A winding traverse of n legs of 30 to 400 m, near (2e5, 6e5).
std::vector<SurveyPoint> winding(std::uint64_t seed, std::size_t n, bool loop)
{
    std::mt19937_64 engine(seed);
    auto uniform = [&engine](double low, double high) {
        return low + (high - low) * static_cast<double>(engine() >> 11) * 0x1.0p-53;
    };
    std::vector<SurveyPoint> points = {{2.0e5, 6.0e5, 300.0}};
    const double step = 2.0 * PI / static_cast<double>(n);
    for (std::size_t i = 1; i <= n; ++i) {
        const double heading = loop ? step * (static_cast<double>(i) - 0.5) : uniform(-1.0, 1.0);
        const double length = loop ? 150.0 : uniform(30.0, 400.0);
        const SurveyPoint& last = points.back();
        points.push_back({last.X + length * std::cos(heading), last.Y + length * std::sin(heading),
                          last.H + uniform(-5.0, 5.0)});
    }
    if (loop) {
        points.back() = points.front();
    }
    return points;
}

TEST(Traverse, ExactObservationsClose)
{
    const SurveyPoint backsight = {2.0e5 - 300.0, 6.0e5 - 200.0, 0.0};
    for (int kind : {QS_TRAVERSE_LINK, QS_TRAVERSE_LOOP, QS_TRAVERSE_KNOWN_ENDS}) {
        for (std::size_t n : {3u, 7u, 40u}) {
            const bool loop = kind == QS_TRAVERSE_LOOP;
            const std::vector<SurveyPoint> points = winding(n, n, loop);
            const SurveyPoint foresight = {points.back().X + 500.0, points.back().Y - 80.0, 0.0};
            const Traverse t = observe(kind, points, backsight, foresight);
            for (int rule : {QS_COMPASS_RULE, QS_TRANSIT_RULE}) {
                for (int heights : {QS_HEIGHTS_BY_LENGTH, QS_HEIGHTS_BY_LENGTH_SQUARED}) {
                    SCOPED_TRACE(testing::Message()
                                 << "kind " << kind << ", " << n << " legs, rule " << rule
                                 << ", heights " << heights);
                    qs_traverse_result r;
                    std::vector<SurveyPoint> adjusted;
                    ASSERT_EQ(adjust(t, rule, heights, r, adjusted), QS_OK);
                    EXPECT_LE(std::fabs(r.angular_misclosure), 1e-6);
                    EXPECT_LE(r.misclosure, 1e-9);
                    EXPECT_LE(std::fabs(r.height_misclosure), 1e-9);
                    EXPECT_GT(r.precision_ratio, 1e9);
                    for (std::size_t i = 0; i <= n; ++i) {
                        EXPECT_LE(
                            std::hypot(adjusted[i].X - points[i].X, adjusted[i].Y - points[i].Y),
                            1e-9)
                            << "station " << i;
                        EXPECT_NEAR(adjusted[i].H, points[i].H, 1e-9) << "station " << i;
                    }
                }
            }
        }
    }
}

// A traverse worked by hand. A = (1000, 1000), backsight due south, then
// 100 m north, 200 m east, 100 m north: it ends at (1200, 1200, 52.5)
// against the known (1200.03, 1199.96, 52.56), so fx = -0.03, fy = +0.04,
// fh = -0.06 over 400 m: 0.05 m, 1 : 8000.
Traverse by_hand(int kind)
{
    Traverse t;
    t.kind = kind;
    t.ends = {{1000.0, 1000.0, 50.0},
              {900.0, 1000.0, 0.0},
              {1200.03, 1199.96, 52.56},
              {1300.03, 1199.96, 0.0}};
    t.stations = {{648000.0, 100.0, 1.0},
                  {972000.0, 200.0, 2.0},
                  {324000.0, 100.0, -0.5},
                  {648000.0, 0.0, 0.0}};
    return t;
}

// Without height differences the heights between the ends are not a
// number. A traverse due north has no Y increments: the transit rule spreads
// fy by length instead.
Traverse due_north()
{
    Traverse t = by_hand(QS_TRAVERSE_KNOWN_ENDS);
    t.stations = {{648000.0, 100.0, 0.0}, {648000.0, 300.0, 0.0}, {0.0, 0.0, 0.0}};
    t.ends.end = {1400.0, 1000.02, 50.0};
    return t;
}

// Misclosures fx, fy and fh over the 400 m, and the adjusted stations 1 to n - 1.
const struct {
    const char* name;
    Traverse traverse;
    int rule, heights;
    SurveyPoint misclosure;
    std::vector<SurveyPoint> adjusted;
} RULES[] = {
    // Compass: corrections 1/4, 1/2, 1/4 of (+0.03, -0.04); heights +0.06 x the same.
    {"compass, by length",
     by_hand(QS_TRAVERSE_KNOWN_ENDS),
     QS_COMPASS_RULE,
     QS_HEIGHTS_BY_LENGTH,
     {-0.03, 0.04, -0.06},
     {{1100.0075, 999.99, 51.015}, {1100.0225, 1199.97, 53.045}}},
    // Transit: X only where the legs run north (1/2, 0, 1/2), Y only on the
    // east leg; heights by 100^2, 200^2, 100^2 of 60000.
    {"transit, by length squared",
     by_hand(QS_TRAVERSE_KNOWN_ENDS),
     QS_TRANSIT_RULE,
     QS_HEIGHTS_BY_LENGTH_SQUARED,
     {-0.03, 0.04, -0.06},
     {{1100.015, 1000.0, 51.01}, {1100.015, 1199.96, 53.05}}},
    {"compass, no heights",
     by_hand(QS_TRAVERSE_KNOWN_ENDS),
     QS_COMPASS_RULE,
     QS_HEIGHTS_NONE,
     {-0.03, 0.04, 0.0},
     {{1100.0075, 999.99, NaN}, {1100.0225, 1199.97, NaN}}},
    {"transit, no Y increments",
     due_north(),
     QS_TRANSIT_RULE,
     QS_HEIGHTS_NONE,
     {0.0, -0.02, 0.0},
     {{1100.0, 1000.005, NaN}}},
};

TEST(Traverse, KnownMisclosureIsSpreadByTheRule)
{
    for (const auto& c : RULES) {
        SCOPED_TRACE(c.name);
        qs_traverse_result r;
        std::vector<SurveyPoint> adjusted;
        ASSERT_EQ(adjust(c.traverse, c.rule, c.heights, r, adjusted), QS_OK);
        const double misclosure = std::hypot(c.misclosure.X, c.misclosure.Y);
        EXPECT_NEAR(r.misclosure_x, c.misclosure.X, 1e-12);
        EXPECT_NEAR(r.misclosure_y, c.misclosure.Y, 1e-12);
        EXPECT_NEAR(r.misclosure, misclosure, 1e-12);
        EXPECT_NEAR(r.relative_misclosure, misclosure / 400.0, 1e-15);
        EXPECT_NEAR(r.precision_ratio, 400.0 / misclosure, 1e-6);
        EXPECT_NEAR(r.height_misclosure, c.misclosure.H, 1e-12);
        EXPECT_EQ(qtest::bits_of(r.total_length), qtest::bits_of(400.0));
        EXPECT_EQ(qtest::bits_of(r.angular_misclosure), 0u);
        EXPECT_EQ(qtest::bits_of(r.angle_correction), 0u);
        std::vector<SurveyPoint> expected = {c.traverse.ends.start};
        expected.insert(expected.end(), c.adjusted.begin(), c.adjusted.end());
        expected.push_back(c.traverse.ends.end); // the known end, H copied without heights
        ASSERT_EQ(adjusted.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            SCOPED_TRACE(testing::Message() << "station " << i);
            EXPECT_NEAR(adjusted[i].X, expected[i].X, 1e-9);
            EXPECT_NEAR(adjusted[i].Y, expected[i].Y, 1e-9);
            if (std::isnan(expected[i].H)) {
                EXPECT_TRUE(std::isnan(adjusted[i].H));
            } else {
                EXPECT_NEAR(adjusted[i].H, expected[i].H, 1e-9);
            }
        }
    }
}

// Angles that are too large by a known amount: the misclosure is reported
// as observed minus expected and the correction takes it away.
struct AngleCase {
    const char* name;
    Traverse traverse;
    double excess;       // arc-seconds added to every closing angle
    std::size_t first;   // first station whose angle closes
    double expected_sum; // expected_closing, arc-seconds
};

TEST(Traverse, AngularCorrectionClosesTheAngles)
{
    Traverse link = by_hand(QS_TRAVERSE_LINK);
    link.ends.end = {1200.0, 1200.0, 52.5};
    link.ends.end_foresight = {1300.0, 1200.0, 0.0};
    // A square run clockwise (north, east, south, west): exterior angles of 270 degrees.
    const std::vector<SurveyPoint> square = {{0.0, 0.0, 0.0},
                                             {100.0, 0.0, 0.0},
                                             {100.0, 100.0, 0.0},
                                             {0.0, 100.0, 0.0},
                                             {0.0, 0.0, 0.0}};
    const Traverse loop = observe(QS_TRAVERSE_LOOP, square, {0.0, -50.0, 0.0}, {});
    const AngleCase cases[] = {
        {"link, 4 angles 2.5\" too large", link, 2.5, 0, 0.0},
        {"link, 4 angles 1.25\" too small", link, -1.25, 0, 0.0},
        {"loop, 4 angles 4\" too large", loop, 4.0, 1, 6.0 * 648000.0},
    };
    for (const AngleCase& c : cases) {
        SCOPED_TRACE(c.name);
        Traverse t = c.traverse;
        for (std::size_t i = c.first; i < t.stations.size(); ++i) {
            t.stations[i].angle += c.excess;
        }
        qs_traverse_result r;
        std::vector<SurveyPoint> adjusted;
        ASSERT_EQ(adjust(t, QS_COMPASS_RULE, QS_HEIGHTS_NONE, r, adjusted), QS_OK);
        EXPECT_NEAR(r.angular_misclosure, 4.0 * c.excess, 1e-8);
        EXPECT_NEAR(r.angle_correction, -c.excess, 1e-8);
        EXPECT_NEAR(r.expected_closing, c.expected_sum, 1e-8);
        EXPECT_NEAR(std::remainder(r.computed_closing - r.expected_closing, 1296000.0),
                    r.angular_misclosure, 1e-8);
        // With the correction applied the angles close and the coordinates
        // come out as for the exact traverse.
        for (std::size_t i = c.first; i < t.stations.size(); ++i) {
            t.stations[i].angle += r.angle_correction;
        }
        std::vector<SurveyPoint> again;
        ASSERT_EQ(adjust(t, QS_COMPASS_RULE, QS_HEIGHTS_NONE, r, again), QS_OK);
        EXPECT_NEAR(r.angular_misclosure, 0.0, 1e-8);
        for (std::size_t i = 0; i < again.size(); ++i) {
            EXPECT_NEAR(again[i].X, adjusted[i].X, 1e-9);
            EXPECT_NEAR(again[i].Y, adjusted[i].Y, 1e-9);
        }
        EXPECT_NEAR(adjusted.back().X, t.kind == QS_TRAVERSE_LOOP ? 0.0 : 1200.0, 1e-9);
    }
}

#define SPOIL(body)                                                                                \
    [](Traverse& t, std::size_t& legs, int& rule, int& heights) {                                  \
        (void)t, (void)legs, (void)rule, (void)heights;                                            \
        body;                                                                                      \
    }

const struct {
    const char* name;
    void (*spoil)(Traverse& t, std::size_t& legs, int& rule, int& heights);
    qs_status status;
} BAD[] = {
    {"kind 3", SPOIL(t.kind = 3), QS_BAD_ARGUMENT},
    {"rule 2", SPOIL(rule = 2), QS_BAD_ARGUMENT},
    {"height rule 3", SPOIL(heights = 3), QS_BAD_ARGUMENT},
    {"no legs", SPOIL(legs = 0), QS_BAD_ARGUMENT},
    {"one over the most legs", SPOIL(legs = QS_MAX_TRAVERSE_LEGS + 1), QS_BAD_ARGUMENT},
    {"NaN start", SPOIL(t.ends.start.X = NaN), QS_BAD_ARGUMENT},
    {"infinite backsight height", SPOIL(t.ends.start_backsight.H = INF), QS_BAD_ARGUMENT},
    {"NaN end", SPOIL(t.ends.end.Y = NaN), QS_BAD_ARGUMENT},
    {"NaN unread foresight", SPOIL(t.kind = QS_TRAVERSE_KNOWN_ENDS; t.ends.end_foresight.X = NaN),
     QS_BAD_ARGUMENT},
    {"NaN angle", SPOIL(t.stations[1].angle = NaN), QS_BAD_ARGUMENT},
    {"infinite distance", SPOIL(t.stations[2].distance = INF), QS_BAD_ARGUMENT},
    {"NaN unread last distance", SPOIL(t.stations[3].distance = NaN), QS_BAD_ARGUMENT},
    {"NaN height difference", SPOIL(t.stations[0].height_difference = NaN), QS_BAD_ARGUMENT},
    {"zero distance", SPOIL(t.stations[1].distance = 0.0), QS_BAD_ARGUMENT},
    {"distance beyond the most", SPOIL(t.stations[0].distance = 1.000001e9), QS_BAD_ARGUMENT},
    {"height difference beyond the most", SPOIL(t.stations[1].height_difference = -1.000001e9),
     QS_BAD_ARGUMENT},
    {"start beyond the most", SPOIL(t.ends.start.Y = 1.000001e9), QS_BAD_ARGUMENT},
    {"loop of 2 legs", SPOIL(t.kind = QS_TRAVERSE_LOOP; legs = 2), QS_TOO_FEW},
    {"backsight on the start", SPOIL(t.ends.start_backsight = t.ends.start), QS_SINGULAR},
    {"foresight on the end", SPOIL(t.ends.end_foresight = t.ends.end), QS_SINGULAR},
    {"foresight on the end, known ends",
     SPOIL(t.kind = QS_TRAVERSE_KNOWN_ENDS; t.ends.end_foresight = t.ends.end), QS_OK},
    {"loop of 3 legs", SPOIL(t.kind = QS_TRAVERSE_LOOP), QS_OK},
    {"one leg", SPOIL(legs = 1), QS_OK},
    {"the most legs",
     SPOIL(legs = QS_MAX_TRAVERSE_LEGS; t.kind = QS_TRAVERSE_KNOWN_ENDS;
           t.stations.assign(legs + 1, {648000.0, 1.0, 0.0})),
     QS_OK},
};

TEST(Traverse, BadInputIsRefusedAndNothingWritten)
{
    for (const auto& c : BAD) {
        SCOPED_TRACE(c.name);
        Traverse t = by_hand(QS_TRAVERSE_LINK);
        std::size_t legs = 3;
        int rule = QS_COMPASS_RULE;
        int heights = QS_HEIGHTS_BY_LENGTH;
        c.spoil(t, legs, rule, heights);
        qs_traverse_result r;
        qtest::fill_sentinel(r);
        std::vector<SurveyPoint> adjusted(t.stations.size());
        for (SurveyPoint& p : adjusted) {
            qtest::fill_sentinel(p);
        }
        EXPECT_EQ(qs_traverse_adjust(t.kind, &t.ends, t.stations.data(), legs, rule, heights, &r,
                                     adjusted.data()),
                  c.status);
        const bool written = c.status == QS_OK;
        EXPECT_TRUE(written ? roadtest::written_whole(r) : qtest::untouched(r));
        for (std::size_t i = 0; i < adjusted.size(); ++i) {
            EXPECT_EQ(qtest::untouched(adjusted[i]), !written || i > legs) << "station " << i;
        }
    }
}

} // namespace
