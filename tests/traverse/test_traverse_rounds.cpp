// Multi-round traverse: angular closure, azimuths, increments, closure on
// the known end, distribution of the misclosures and the station
// coordinates; and the work array released on every path.
#include "bits.hpp"
#include "records.hpp"
#include "traverse/traverse.hpp"

#include <cstdlib>
#include <vector>

namespace {

struct Leg {
    double angle;  // station angle, forward minus backward direction
    double length; // to the next station
    double height; // vertical difference to the next station
};

using Stations = std::vector<TraverseStation>;

Stations stations(const std::vector<Leg>& legs, SurveyPoint start)
{
    Stations s(legs.size(), qtest::sentinel_filled<TraverseStation>());
    for (std::size_t i = 0; i < legs.size(); ++i) {
        s[i].Angle12 = legs[i].angle;
        s[i].HorizDist1 = legs[i].length;
        s[i].VertDiff1 = legs[i].height;
    }
    s[0].StationPoint = start;
    return s;
}

SurveyPoint polar(SurveyPoint from, double azimuth, double distance, double height)
{
    SurveyPoint p;
    LIB_CalCoor(&from, azimuth, distance, height, &p);
    return p;
}

// A -> P1 due north 100 m, P1 -> E back south 50 m; B due south of A and G
// due north of E, so both known azimuths are 0. E is placed by the polar
// rule the traverse uses, so the traverse closes exactly. E's angle of
// minus a full turn brings its azimuth to -1296000, turned once to 0.
struct OutAndBack {
    SurveyPoint a = {0.0, 0.0, 100.0};
    SurveyPoint p1 = polar(a, 0.0, 100.0, 1.5);
    SurveyPoint e = polar(p1, 648000.0, 50.0, -0.5);
    std::vector<Leg> legs = {{648000.0, 100.0, 1.5}, {1296000.0, 50.0, -0.5}, {-1296000.0, 0, 0}};

    TraverseControl control_of(std::int32_t type) const
    {
        return {0, 0, type, -7, a, {-100.0, 0.0, 0.0}, e, {e.X + 50.0, e.Y, e.H}};
    }
};

// Counts what the traverse takes and gives back; can refuse to give.
struct Counter {
    int taken, released;
    std::size_t entries;
    bool refuse;
} counter;

void* allocate(std::size_t count, std::size_t size)
{
    counter.taken++;
    counter.entries = count;
    return counter.refuse ? nullptr : std::calloc(count, size);
}

void release(void* block)
{
    counter.released++;
    std::free(block);
}

} // namespace

TEST(TraverseRounds, WorkArrayIsReleasedOnEveryPath)
{
    const OutAndBack t;
    enum Written { NOTHING, INCREMENTS, ALL };
    struct Case {
        const char* name;
        std::uint32_t n;
        std::int32_t type;
        double length; // of every leg
        bool refuse;
        int status, taken;
        Written written;
    };
    const Case cases[] = {
        {"no station", 0, 2, 100.0, false, 1, 0, NOTHING},
        {"one station", 1, 2, 100.0, false, 1, 0, NOTHING},
        {"no memory", 3, 2, 100.0, true, 1, 1, NOTHING},
        {"type 5", 3, 5, 100.0, false, 0, 1, NOTHING},
        {"type -1", 3, -1, 100.0, false, 0, 1, NOTHING},
        {"no length", 3, 0, 0.0, false, 1, 1, INCREMENTS},
        {"closed", 3, 2, 100.0, false, 0, 1, ALL},
    };
    for (const Case& c : cases) {
        std::vector<Leg> legs = t.legs;
        for (Leg& l : legs) {
            l.length = c.length;
        }
        Stations s = stations(legs, t.a);
        TraverseResult result = qtest::sentinel_filled<TraverseResult>();
        counter = {0, 0, 0, c.refuse};
        EXPECT_EQ(quillon::multi_round_traverse(s.data(), c.n, t.control_of(c.type), &result,
                                                {allocate, release}),
                  c.status)
            << c.name;
        EXPECT_EQ(counter.taken, c.taken) << c.name;
        EXPECT_EQ(counter.released, c.refuse ? 0 : c.taken) << c.name;
        EXPECT_EQ(counter.entries, c.taken == 0 ? 0 : c.n) << c.name;
        EXPECT_EQ(qtest::untouched(s[2].Azimuth), c.written == NOTHING) << c.name;
        EXPECT_EQ(qtest::untouched(s[1].DeltaH), c.written == NOTHING) << c.name;
        EXPECT_EQ(qtest::untouched(s[0].CorrX), c.written != ALL) << c.name;
        EXPECT_EQ(qtest::untouched(s[1].LegEnd), c.written != ALL) << c.name;
        EXPECT_EQ(qtest::untouched(result), c.written != ALL) << c.name;
    }
    // The exported function takes the same paths.
    Stations s = stations(t.legs, t.a);
    TraverseControl c = t.control_of(9);
    TraverseResult result;
    EXPECT_EQ(LIB_TRSMultCycleCal(s.data(), 1, &c, &result), 1);
    EXPECT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &c, &result), 0);
    EXPECT_TRUE(qtest::untouched(s[0].Azimuth));
}

TEST(TraverseRounds, EveryTypeOnAnExactTraverse)
{
    const OutAndBack t;
    const std::int32_t masks[] = {1023, 1023, 1023, 999, 3};
    // Type 0 closes on A, oriented A -> B; type 1 closes on B.
    const double angular[] = {-qtest::SOUTH, 0.0, 0.0};
    const double fx[] = {0.0, t.e.X + 100.0, 0.0, 0.0};
    for (std::int32_t type = 0; type < 5; ++type) {
        Stations s = stations(t.legs, t.a);
        const TraverseControl control = t.control_of(type);
        TraverseResult result = qtest::sentinel_filled<TraverseResult>();
        ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &control, &result), 0);
        ASSERT_EQ(result.ValidMask, masks[type]);
        const double* doubles = &result.SumDist;
        for (int i = 0; i < 10; ++i) {
            EXPECT_EQ(qtest::untouched(doubles[i]), ((masks[type] >> i) & 1) == 0)
                << "type " << type << " double " << i + 1;
        }
        EXPECT_BITS(result.SumDist, 150.0);
        EXPECT_BITS(result.StationCount, 3.0);
        EXPECT_TRUE(qtest::untouched(s[2].DeltaX)); // the last station has no leg
        if (type < 3) {
            EXPECT_BITS(result.AngularMisclosure, angular[type]) << type;
        }
        if (type > 0 && type < 4) {
            EXPECT_BITS(result.Fx, fx[type]) << type;
        }
        if (type < 2) {
            continue; // the legs do not end on A or B
        }
        const double azimuths[] = {0.0, 648000.0, 0.0};
        for (int i = 0; i < 3; ++i) {
            EXPECT_BITS(s[i].Azimuth, azimuths[i]);
        }
        EXPECT_BITS(s[0].LegEnd.X, t.p1.X);
        EXPECT_BITS(s[0].LegEnd.H, t.p1.H);
        EXPECT_BITS(s[1].LegEnd.X, t.e.X);
        EXPECT_BITS(s[1].LegEnd.Y, t.e.Y);
        EXPECT_BITS(s[1].LegEnd.H, t.e.H);
        // The open traverse corrects nothing and adds the plain increments.
        EXPECT_EQ(qtest::untouched(s[0].CorrX), type == 4);
        EXPECT_BITS(s[1].AdjDeltaX, s[1].DeltaX);
    }
}

TEST(TraverseRounds, TriangleAngularMisclosureComesOffEveryAngle)
{
    // A -> P1 (east of A) -> B (north of A); the polygon closes on B. Each
    // observed angle is 1" too large, 648003 in all, and loses that second:
    // the legs run on from the azimuth B -> A as if observed exactly.
    const SurveyPoint a = {1000.0, 1000.0, 10.0};
    const SurveyPoint b = {1100.0, 1000.0, 10.0};
    Stations s = stations(
        {{324001.0, 100.0, 0.0}, {162001.0, std::sqrt(20000.0), 0.0}, {162001.0, 0.0, 0.0}}, a);
    const TraverseControl c = {0, 0, 1, 0, a, b, {}, {}};
    TraverseResult result;
    ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &c, &result), 0);
    EXPECT_BITS(result.AngularMisclosure, 3.0);
    const double azimuths[] = {324000.0110536885, 1134000.0110536884, 648000.0110536884};
    for (int i = 0; i < 3; ++i) {
        EXPECT_BITS(s[i].Azimuth, azimuths[i]);
    }
    EXPECT_NEAR(s[1].LegEnd.X, b.X, 1e-9);
    EXPECT_NEAR(s[1].LegEnd.Y, b.Y, 1e-9);
}

TEST(TraverseRounds, PolygonHalfCirclesCountedIn32Bits)
{
    // 6631 stations: 6629 half circles overflow 32 bits and leave 624704.
    const std::uint32_t n = 6631;
    Stations s = stations(std::vector<Leg>(n, Leg{0.0, 1.0, 0.0}), {0.0, 0.0, 0.0});
    const TraverseControl c = {0, 0, 1, 0, {0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {}, {}};
    TraverseResult result;
    ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), n, &c, &result), 0);
    EXPECT_BITS(result.AngularMisclosure, -624704.0);
}

TEST(TraverseRounds, DistributionAndHeightRules)
{
    // E is found 0.03 m further north and 0.03 m higher than the legs lead.
    // Coordinates start from the first station's record, 1000 m above A;
    // where no rule writes them, the adjusted increments are the caller's.
    OutAndBack t;
    t.e = {t.e.X + 0.03, t.e.Y, t.e.H + 0.03};
    const double e_x = t.e.X, e_h = t.e.H + 1000.0;
    const double cases[][4] = {
        // plan rule, height rule, X and H at E
        {0, 0, e_x, e_h - 0.01}, // by length; heights a third each, one share stays
        // By increment: the signed increment weighs, the absolute sum divides,
        // so the southward leg is corrected the wrong way.
        {1, 0, e_x - 0.02, e_h - 0.01},
        {0, 1, e_x, 1100.0},        // adjusted heights become 0
        {1, 2, e_x - 0.02, 1114.0}, // heights as held, 7 m a leg
        {2, 0, 2.5, 1114.0},        // no plan rule: nothing corrected
        {-1, 1, 2.5, 1114.0},
    };
    for (const auto& c : cases) {
        Stations s = stations(t.legs, {t.a.X, t.a.Y, 1100.0});
        for (TraverseStation& station : s) {
            station.AdjDeltaX = 1.25;
            station.AdjDeltaY = 0.0;
            station.AdjDeltaH = 7.0;
        }
        TraverseControl control = t.control_of(3);
        control.DistributionRule = static_cast<std::int32_t>(c[0]);
        control.HeightRule = static_cast<std::int32_t>(c[1]);
        TraverseResult result;
        ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &control, &result), 0);
        EXPECT_NEAR(result.Fx, -0.03, 1e-12);
        EXPECT_NEAR(result.LinearMisclosure, 0.03, 1e-12);
        EXPECT_NEAR(result.Relative, 0.0002, 1e-15);
        EXPECT_NEAR(result.HeightRatio, -0.0002, 1e-15);
        EXPECT_NEAR(s[1].LegEnd.X, c[2], 1e-12) << c[0] << c[1];
        EXPECT_NEAR(s[1].LegEnd.H, c[3], 1e-12) << c[0] << c[1];
        const bool plan = c[0] == 0 || c[0] == 1;
        EXPECT_EQ(qtest::untouched(s[0].CorrX), !plan);
        EXPECT_EQ(qtest::untouched(s[0].CorrH), !plan || c[1] == 2);
    }
}
