// Multi-round traverse: angular closure, azimuths, increments, closure on
// the known end, distribution of the misclosures and the station
// coordinates; and the work array released on every path.
#include "bits.hpp"
#include "quillon.h"
#include "traverse/traverse.hpp"

#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

const double SOUTH = 648000.0110536885; // azimuth due south: atan2 against 3.1415926

struct Leg {
    double angle;  // station angle, forward minus backward direction
    double length; // to the next station
    double height; // vertical difference to the next station
};

std::vector<TraverseStation> stations(const std::vector<Leg>& legs, SurveyPoint start)
{
    std::vector<TraverseStation> s(legs.size(), qtest::sentinel_filled<TraverseStation>());
    for (std::size_t i = 0; i < legs.size(); ++i) {
        s[i].Angle12 = legs[i].angle;
        s[i].HorizDist1 = legs[i].length;
        s[i].VertDiff1 = legs[i].height;
    }
    s[0].StationPoint = start;
    return s;
}

TraverseControl control(std::int32_t type, SurveyPoint a, SurveyPoint b, SurveyPoint e,
                        SurveyPoint g)
{
    TraverseControl c;
    c.DistributionRule = 0;
    c.HeightRule = 0;
    c.TraverseType = type;
    c.Reserved = -7;
    c.A = a;
    c.B = b;
    c.E = e;
    c.G = g;
    return c;
}

SurveyPoint polar(SurveyPoint from, double azimuth, double distance, double height)
{
    SurveyPoint p;
    LIB_CalCoor(&from, azimuth, distance, height, &p);
    return p;
}

// A connecting traverse A -> P1 -> E: north 100 m, then east 100 m, with B
// due south of A and G due north of E, both azimuths 0. E is placed by the
// polar convention the traverse uses, so the traverse closes exactly.
struct Connecting {
    SurveyPoint a = {0.0, 0.0, 100.0};
    SurveyPoint b = {-100.0, 0.0, 0.0};
    SurveyPoint p1 = polar(a, 0.0, 100.0, 1.5);
    SurveyPoint e = polar(p1, 324000.0, 100.0, -0.5);
    SurveyPoint g = {e.X + 50.0, e.Y, e.H};
    std::vector<Leg> legs = {{648000.0, 100.0, 1.5}, {972000.0, 100.0, -0.5}, {324000.0, 0.0, 0.0}};

    TraverseControl control_of(std::int32_t type) const { return control(type, a, b, e, g); }
};

int taken = 0;
int released = 0;
std::size_t entries = 0;

void* counting_allocate(std::size_t count, std::size_t size)
{
    ++taken;
    entries = count;
    return std::calloc(count, size);
}

void* failing_allocate(std::size_t, std::size_t)
{
    ++taken;
    return nullptr;
}

void counting_release(void* block)
{
    ++released;
    std::free(block);
}

const quillon::WorkAllocator COUNTING = {counting_allocate, counting_release};
const quillon::WorkAllocator FAILING = {failing_allocate, counting_release};

bool all_untouched(const std::vector<TraverseStation>& s)
{
    for (const TraverseStation& station : s) {
        const TraverseStation blank = qtest::sentinel_filled<TraverseStation>();
        // Everything the traverse writes: field 21 up to the starting point.
        const std::size_t written =
            offsetof(TraverseStation, StationPoint) - offsetof(TraverseStation, Azimuth);
        if (std::memcmp(&station.Azimuth, &blank.Azimuth, written) != 0) {
            return false;
        }
    }
    return true;
}

} // namespace

TEST(TraverseRounds, WorkArrayIsReleasedOnEveryPath)
{
    const Connecting t;
    struct Case {
        const char* name;
        std::uint32_t n;
        std::int32_t type;
        double length; // of every leg
        const quillon::WorkAllocator* allocator;
        int status;
        int taken;
        bool written;
    };
    const Case cases[] = {
        {"no station", 0, 2, 100.0, &COUNTING, 1, 0, false},
        {"one station", 1, 2, 100.0, &COUNTING, 1, 0, false},
        {"no memory", 3, 2, 100.0, &FAILING, 1, 1, false},
        {"type 5", 3, 5, 100.0, &COUNTING, 0, 1, false},
        {"type -1", 3, -1, 100.0, &COUNTING, 0, 1, false},
        {"no length", 3, 0, 0.0, &COUNTING, 1, 1, true},
        {"closed", 3, 2, 100.0, &COUNTING, 0, 1, true},
        {"open", 3, 4, 100.0, &COUNTING, 0, 1, true},
    };
    for (const Case& c : cases) {
        std::vector<Leg> legs = t.legs;
        for (Leg& l : legs) {
            l.length = c.length;
        }
        std::vector<TraverseStation> s = stations(legs, t.a);
        TraverseResult result = qtest::sentinel_filled<TraverseResult>();
        taken = 0;
        released = 0;
        entries = 0;
        EXPECT_EQ(quillon::multi_round_traverse(s.data(), c.n, t.control_of(c.type), &result,
                                                *c.allocator),
                  c.status)
            << c.name;
        EXPECT_EQ(taken, c.taken) << c.name;
        EXPECT_EQ(released, c.allocator == &FAILING ? 0 : c.taken) << c.name;
        if (c.taken > 0 && c.allocator == &COUNTING) {
            EXPECT_EQ(entries, c.n) << c.name;
        }
        EXPECT_EQ(all_untouched(s), !c.written) << c.name;
    }
}

TEST(TraverseRounds, RefusalsThroughTheExportedFunction)
{
    const Connecting t;
    std::vector<TraverseStation> s = stations(t.legs, t.a);
    TraverseControl c = t.control_of(2);
    TraverseResult result = qtest::sentinel_filled<TraverseResult>();
    EXPECT_EQ(LIB_TRSMultCycleCal(s.data(), 1, &c, &result), 1);
    c.TraverseType = 9;
    EXPECT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &c, &result), 0);
    EXPECT_TRUE(qtest::untouched(result));
    EXPECT_TRUE(all_untouched(s));
}

TEST(TraverseRounds, NoLengthWritesAzimuthsAndIncrementsOnly)
{
    const Connecting t;
    std::vector<Leg> legs = t.legs;
    legs[0].length = 0.0;
    legs[1].length = 0.0;
    std::vector<TraverseStation> s = stations(legs, t.a);
    const TraverseControl c = t.control_of(2);
    TraverseResult result = qtest::sentinel_filled<TraverseResult>();
    EXPECT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &c, &result), 1);
    EXPECT_TRUE(qtest::untouched(result));
    EXPECT_BITS(s[1].Azimuth, 324000.0);
    EXPECT_BITS(s[2].Azimuth, 0.0);
    EXPECT_BITS(s[0].DeltaX, 0.0);
    EXPECT_BITS(s[1].DeltaH, -0.5);
    EXPECT_TRUE(qtest::untouched(s[0].CorrX));
    EXPECT_TRUE(qtest::untouched(s[0].AdjDeltaX));
    EXPECT_TRUE(qtest::untouched(s[1].LegEnd));
}

TEST(TraverseRounds, ConnectingTraverseClosesExactly)
{
    const Connecting t;
    const std::int32_t types[] = {2, 3};
    for (std::int32_t type : types) {
        std::vector<TraverseStation> s = stations(t.legs, t.a);
        const TraverseControl c = t.control_of(type);
        TraverseResult result = qtest::sentinel_filled<TraverseResult>();
        ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &c, &result), 0);
        EXPECT_BITS(s[0].Azimuth, 0.0);
        EXPECT_BITS(s[1].Azimuth, 324000.0);
        EXPECT_BITS(s[2].Azimuth, 0.0);
        EXPECT_BITS(s[0].DeltaX, 100.0);
        EXPECT_BITS(s[0].DeltaY, 0.0);
        EXPECT_BITS(result.Fx, 0.0);
        EXPECT_BITS(result.Fy, 0.0);
        EXPECT_BITS(result.HeightMisclosure2, 0.0);
        EXPECT_BITS(result.LinearMisclosure, 0.0);
        EXPECT_BITS(result.Relative, 0.0);
        EXPECT_BITS(result.SumDist, 200.0);
        EXPECT_BITS(result.StationCount, 3.0);
        EXPECT_BITS(s[0].LegEnd.X, t.p1.X);
        EXPECT_BITS(s[0].LegEnd.H, t.p1.H);
        EXPECT_BITS(s[1].LegEnd.X, t.e.X);
        EXPECT_BITS(s[1].LegEnd.Y, t.e.Y);
        EXPECT_BITS(s[1].LegEnd.H, t.e.H);
        EXPECT_TRUE(qtest::untouched(s[2].DeltaX)); // the last station has no leg
        EXPECT_TRUE(qtest::untouched(s[2].LegEnd));
        if (type == 2) {
            EXPECT_BITS(result.AngularMisclosure, 0.0);
            EXPECT_EQ(result.ValidMask, 1023);
        } else {
            EXPECT_EQ(result.ValidMask, 999);
        }
    }
}

TEST(TraverseRounds, ResultFieldsFollowTheMask)
{
    const Connecting t;
    const std::int32_t masks[] = {1023, 1023, 1023, 999, 3};
    for (std::int32_t type = 0; type < 5; ++type) {
        std::vector<TraverseStation> s = stations(t.legs, t.a);
        const TraverseControl c = t.control_of(type);
        TraverseResult result = qtest::sentinel_filled<TraverseResult>();
        ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &c, &result), 0);
        ASSERT_EQ(result.ValidMask, masks[type]);
        const double* doubles = &result.SumDist;
        for (int i = 0; i < 10; ++i) {
            EXPECT_EQ(qtest::untouched(doubles[i]), ((masks[type] >> i) & 1) == 0)
                << "type " << type << " double " << i + 1;
        }
    }
}

TEST(TraverseRounds, LoopReturnsToItsStart)
{
    // A 100 m square south and east of A, with B due north of A.
    const SurveyPoint a = {500.0, 500.0, 20.0};
    const SurveyPoint b = {600.0, 500.0, 20.0};
    const std::vector<Leg> legs = {{648000.0, 100.0, 1.0},
                                   {324000.0, 100.0, -2.0},
                                   {324000.0, 100.0, 0.5},
                                   {324000.0, 100.0, 0.5},
                                   {972000.0, 0.0, 0.0}};
    std::vector<TraverseStation> s = stations(legs, a);
    const TraverseControl c = control(0, a, b, {9.0, 9.0, 9.0}, {1.0, 1.0, 1.0});
    TraverseResult result = qtest::sentinel_filled<TraverseResult>();
    ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 5, &c, &result), 0);
    EXPECT_BITS(result.AngularMisclosure, 0.0);
    EXPECT_BITS(result.HeightMisclosure, 0.0);
    EXPECT_BITS(s[0].Azimuth, SOUTH); // from B -> A, carried on
    EXPECT_NEAR(result.Fx, 0.0, 1e-4);
    EXPECT_NEAR(result.Fy, 0.0, 1e-4);
    EXPECT_NEAR(s[0].LegEnd.X, 400.0, 1e-4);
    EXPECT_NEAR(s[1].LegEnd.Y, 600.0, 1e-4);
    // The distributed misclosure brings the last leg back onto A.
    EXPECT_NEAR(s[3].LegEnd.X, a.X, 1e-9);
    EXPECT_NEAR(s[3].LegEnd.Y, a.Y, 1e-9);
    EXPECT_BITS(s[3].LegEnd.H, a.H);
    EXPECT_EQ(result.ValidMask, 1023);
}

TEST(TraverseRounds, TriangleAngularMisclosureComesOffEveryAngle)
{
    // Triangle A -> P1 (east of A) -> B (north of A); the polygon closes on B.
    const SurveyPoint a = {1000.0, 1000.0, 10.0};
    const SurveyPoint b = {1100.0, 1000.0, 10.0};
    const double hypotenuse = std::sqrt(20000.0);
    const std::vector<Leg> exact = {
        {324000.0, 100.0, 0.0}, {162000.0, hypotenuse, 0.0}, {162000.0, 0.0, 0.0}};
    std::vector<Leg> observed = exact;
    for (Leg& l : observed) {
        l.angle += 1.0; // 648003 in all
    }
    const TraverseControl c = control(1, a, b, {0.0, 0.0, 0.0}, {0.0, 0.0, 0.0});
    std::vector<TraverseStation> s_exact = stations(exact, a);
    std::vector<TraverseStation> s = stations(observed, a);
    TraverseResult r_exact = qtest::sentinel_filled<TraverseResult>();
    TraverseResult result = qtest::sentinel_filled<TraverseResult>();
    ASSERT_EQ(LIB_TRSMultCycleCal(s_exact.data(), 3, &c, &r_exact), 0);
    ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &c, &result), 0);
    EXPECT_BITS(r_exact.AngularMisclosure, 0.0);
    EXPECT_BITS(result.AngularMisclosure, 3.0);
    for (int i = 0; i < 3; ++i) {
        EXPECT_BITS(s[i].Azimuth, s_exact[i].Azimuth);
    }
    EXPECT_NEAR(s[0].Azimuth, 324000.011, 1e-4); // east, turned from B -> A
    EXPECT_NEAR(result.Fx, 0.0, 1e-4);
    EXPECT_NEAR(s[1].LegEnd.X, b.X, 1e-9);
    EXPECT_NEAR(s[1].LegEnd.Y, b.Y, 1e-9);
}

TEST(TraverseRounds, PolygonHalfCirclesCountedIn32Bits)
{
    // 6631 stations: 6629 half circles overflow 32 bits and leave 624704.
    const std::uint32_t n = 6631;
    std::vector<Leg> legs(n, Leg{0.0, 1.0, 0.0});
    std::vector<TraverseStation> s = stations(legs, {0.0, 0.0, 0.0});
    const TraverseControl c = control(1, {0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {}, {});
    TraverseResult result = qtest::sentinel_filled<TraverseResult>();
    ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), n, &c, &result), 0);
    EXPECT_BITS(result.AngularMisclosure, -624704.0);
}

TEST(TraverseRounds, DistributionRules)
{
    // The end is found 0.03 m south, 0.04 m east and 0.03 m low of where the
    // legs lead.
    Connecting t;
    t.e = {t.e.X + 0.03, t.e.Y - 0.04, t.e.H + 0.03};
    t.g = {t.e.X + 50.0, t.e.Y, t.e.H};
    struct Case {
        std::int32_t rule;
        double corr_x0; // correction of the first leg
        double corr_y0;
    };
    const Case cases[] = {{0, 0.015, -0.02}, {1, 0.03, -0.0}};
    for (const Case& rule : cases) {
        std::vector<TraverseStation> s = stations(t.legs, t.a);
        TraverseControl c = t.control_of(2);
        c.DistributionRule = rule.rule;
        TraverseResult result = qtest::sentinel_filled<TraverseResult>();
        ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &c, &result), 0);
        EXPECT_NEAR(result.Fx, -0.03, 1e-12);
        EXPECT_NEAR(result.Fy, 0.04, 1e-12);
        EXPECT_NEAR(result.LinearMisclosure, 0.05, 1e-12);
        EXPECT_NEAR(result.Relative, 0.05 / 200.0, 1e-15);
        EXPECT_NEAR(result.HeightRatio, -0.03 / 200.0, 1e-15);
        EXPECT_NEAR(s[0].CorrX, rule.corr_x0, 1e-9);
        if (rule.rule == 1) {
            EXPECT_BITS(s[0].CorrY, -0.0); // no increment in Y, no share
        } else {
            EXPECT_NEAR(s[0].CorrY, rule.corr_y0, 1e-12);
        }
        // Plan misclosure fully distributed; the height falls a share short.
        EXPECT_NEAR(s[1].LegEnd.X, t.e.X, 1e-12);
        EXPECT_NEAR(s[1].LegEnd.Y, t.e.Y, 1e-12);
        EXPECT_NEAR(s[0].CorrH, 0.01, 1e-15);
        EXPECT_NEAR(s[1].LegEnd.H, t.e.H - 0.01, 1e-12);
        EXPECT_BITS(s[0].AdjDeltaH, s[0].DeltaH + s[0].CorrH);
    }
}

TEST(TraverseRounds, IncrementRuleWeighsSignedIncrements)
{
    // North 100 m, then back south 50 m; the end is found 0.03 m further
    // north. Corrections +0.02 and -0.01 leave 0.02 m of the misclosure.
    const SurveyPoint a = {0.0, 0.0, 0.0};
    const SurveyPoint b = {-100.0, 0.0, 0.0};
    const std::vector<Leg> legs = {{648000.0, 100.0, 0.0}, {1296000.0, 50.0, 0.0}, {0.0, 0.0, 0.0}};
    const SurveyPoint p1 = polar(a, 0.0, 100.0, 0.0);
    SurveyPoint e = polar(p1, 648000.0, 50.0, 0.0);
    e.X = e.X + 0.03;
    TraverseControl c = control(3, a, b, e, {});
    c.DistributionRule = 1;
    std::vector<TraverseStation> s = stations(legs, a);
    TraverseResult result = qtest::sentinel_filled<TraverseResult>();
    ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &c, &result), 0);
    EXPECT_NEAR(result.Fx, -0.03, 1e-12);
    EXPECT_NEAR(s[0].CorrX, 0.02, 1e-12);
    EXPECT_NEAR(s[1].CorrX, -0.01, 1e-12);
    EXPECT_NEAR(s[1].LegEnd.X, e.X - 0.02, 1e-12);
}

TEST(TraverseRounds, RulesThatWriteNothing)
{
    Connecting t;
    t.e.H = t.e.H + 0.03;
    struct Case {
        std::int32_t plan_rule;
        std::int32_t height_rule;
        double held_dx; // what the caller left in the adjusted increments
        double end_x;   // of the second leg
        double end_h;
    };
    const Case cases[] = {
        {0, 1, 0.0, t.e.X, t.a.H},                // heights zeroed
        {0, 2, 0.0, t.e.X, t.a.H + 14.0},         // heights left as held (7.0 per leg)
        {2, 0, 1.25, t.a.X + 2.5, t.a.H + 14.0},  // no correction at all
        {-1, 1, 1.25, t.a.X + 2.5, t.a.H + 14.0}, // no height correction either
    };
    for (const Case& c : cases) {
        std::vector<TraverseStation> s = stations(t.legs, t.a);
        for (TraverseStation& station : s) {
            station.AdjDeltaX = c.held_dx;
            station.AdjDeltaY = 0.0;
            station.AdjDeltaH = 7.0;
        }
        TraverseControl control = t.control_of(2);
        control.DistributionRule = c.plan_rule;
        control.HeightRule = c.height_rule;
        TraverseResult result;
        ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &control, &result), 0);
        EXPECT_NEAR(s[1].LegEnd.X, c.end_x, 1e-12) << c.plan_rule << c.height_rule;
        EXPECT_BITS(s[1].LegEnd.H, c.end_h) << c.plan_rule << c.height_rule;
        const bool plan = c.plan_rule == 0 || c.plan_rule == 1;
        EXPECT_EQ(qtest::untouched(s[0].CorrX), !plan);
        EXPECT_EQ(qtest::untouched(s[0].CorrH), !plan || c.height_rule == 2);
        if (plan && c.height_rule == 1) {
            EXPECT_BITS(s[0].CorrH, 0.0);
            EXPECT_BITS(s[0].AdjDeltaH, 0.0);
        }
    }
}

TEST(TraverseRounds, OpenTraverseAccumulatesTheIncrements)
{
    const Connecting t;
    std::vector<TraverseStation> s = stations(t.legs, t.a);
    // Coordinates start from the first station's record, not from A.
    s[0].StationPoint = {t.a.X + 1000.0, t.a.Y, t.a.H};
    const TraverseControl c = t.control_of(4);
    TraverseResult result = qtest::sentinel_filled<TraverseResult>();
    ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &c, &result), 0);
    EXPECT_EQ(result.ValidMask, 3);
    EXPECT_BITS(result.SumDist, 200.0);
    EXPECT_BITS(result.StationCount, 3.0);
    EXPECT_TRUE(qtest::untouched(s[0].CorrX));
    EXPECT_TRUE(qtest::untouched(s[1].CorrH));
    EXPECT_BITS(s[1].AdjDeltaX, s[1].DeltaX);
    EXPECT_BITS(s[1].AdjDeltaH, -0.5);
    EXPECT_BITS(s[0].LegEnd.X, 1100.0);
    EXPECT_NEAR(s[1].LegEnd.X, t.e.X + 1000.0, 1e-9);
    EXPECT_BITS(s[1].LegEnd.H, t.e.H);
}
