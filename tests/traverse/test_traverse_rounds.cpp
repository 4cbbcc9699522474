// Multi-round traverse: every path and type, angle and plan distribution, the work array.
#include "check.hpp"
#include "records.hpp"
#include "traverse/traverse.hpp"

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

using qtest::Call;
using qtest::rows;

namespace {

using Stations = std::vector<TraverseStation>;
// A station's angle and the leg leaving it.
struct Leg {
    double angle;  // forward minus backward direction, arc-seconds
    double length; // horizontal, m
    double height; // vertical difference to the next station, m
};
using Legs = std::vector<Leg>;

Stations stations(const Legs& legs, SurveyPoint start)
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

// A -> P1 due north 100 m, P1 -> E back south 50 m, both placed by the polar
// rule the traverse uses; B due south of A and G due north of E (azimuths 0).
// E's angle of minus a full turn gives -1296000, turned once to 0.
struct OutAndBack {
    SurveyPoint a = {0.0, 0.0, 100.0}, p1, e;
    Legs legs = {{648000.0, 100.0, 1.5}, {1296000.0, 50.0, -0.5}, {-1296000.0, 0, 0}};

    OutAndBack()
    {
        LIB_CalCoor(&a, 0.0, 100.0, 1.5, &p1);
        LIB_CalCoor(&p1, 648000.0, 50.0, -0.5, &e);
    }

    TraverseControl control_of(std::int32_t type, int plan = 0, int height = 0) const
    {
        return {plan, height, type, -7, a, {-100.0, 0.0, 0.0}, e, {e.X + 50.0, e.Y, e.H}};
    }
};

// The ten doubles of a traverse result, in the order of the bits of ValidMask.
const std::pair<const char*, double TraverseResult::*> RESULT_DOUBLES[] = {
    {"SumDist", &TraverseResult::SumDist},
    {"StationCount", &TraverseResult::StationCount},
    {"LinearMisclosure", &TraverseResult::LinearMisclosure},
    {"HeightMisclosure", &TraverseResult::HeightMisclosure},
    {"AngularMisclosure", &TraverseResult::AngularMisclosure},
    {"Fx", &TraverseResult::Fx},
    {"Fy", &TraverseResult::Fy},
    {"HeightMisclosure2", &TraverseResult::HeightMisclosure2},
    {"HeightRatio", &TraverseResult::HeightRatio},
    {"Relative", &TraverseResult::Relative}};

// Counts the entries the traverse asks for and the blocks it gives back; can refuse.
int taken = 0, released = 0;
bool refuse = false;

void* allocate(std::size_t count, std::size_t size)
{
    taken += count;
    return refuse ? nullptr : std::calloc(count, size);
}

void release(void* block)
{
    ++released;
    std::free(block);
}

} // namespace

TEST(TraverseRounds, EveryPathAndEveryTypeOnAnExactTraverse)
{
    const OutAndBack t;
    enum Written { NOTHING, INCREMENTS, ALL };
    const struct {
        std::uint32_t n;
        std::int32_t type;
        bool lengths, refuse;
        int status;
        Written written;
    } cases[] = {
        {1, 2, true, false, 1, NOTHING},     {3, 2, true, true, 1, NOTHING},
        {3, 5, true, false, 0, NOTHING},     {3, -1, true, false, 0, NOTHING},
        {3, 0, false, false, 1, INCREMENTS}, {3, 0, true, false, 0, ALL},
        {3, 1, true, false, 0, ALL},         {3, 2, true, false, 0, ALL},
        {3, 3, true, false, 0, ALL},         {3, 4, true, false, 0, ALL},
    };
    const double S = qtest::sentinel_double();
    const std::int32_t masks[] = {1023, 1023, 1023, 999, 3};
    // Type 0 closes on A, oriented A -> B; type 1 closes on B.
    const double angular[] = {-qtest::SOUTH, 0.0, 0.0, S, S};
    const double fx[] = {75.0, t.e.X + 100.0, 0.0, 0.0, S};
    for (const auto& [call, c] : rows("multi_round_traverse", cases)) {
        Stations s = stations(c.lengths ? t.legs : Legs(3, {0.0, 0.0, 0.0}), t.a);
        TraverseResult result = qtest::sentinel_filled<TraverseResult>();
        taken = released = 0;
        refuse = c.refuse;
        EXPECT_STATUS(call,
                      quillon::multi_round_traverse(s.data(), c.n, t.control_of(c.type), &result,
                                                    {allocate, release}),
                      c.status);
        EXPECT_BITS(call, taken, c.n > 1 ? c.n : 0); // one array of n entries
        EXPECT_BITS(call, released, refuse || c.n < 2 ? 0 : 1);
        EXPECT_WRITTEN_IF(call, s[2].Azimuth, c.written != NOTHING);
        EXPECT_WRITTEN_IF(call, s[1].DeltaH, c.written != NOTHING);
        EXPECT_WRITTEN_IF(call, s[1].LegEnd, c.written == ALL);
        if (c.written != ALL) {
            EXPECT_UNTOUCHED(call, result);
            continue;
        }
        ASSERT_BITS(call, result.ValidMask, masks[c.type]);
        for (int i = 0; i < 10; ++i) {
            const auto& [name, field] = RESULT_DOUBLES[i];
            EXPECT_WRITTEN_IF(call.at(name), result.*field, ((masks[c.type] >> i) & 1) != 0);
        }
        EXPECT_BITS(call, result.SumDist, 150.0);
        EXPECT_BITS(call, result.StationCount, 3.0);
        EXPECT_BITS(call, result.AngularMisclosure, angular[c.type]);
        if (c.type == 0) {
            // A third of the half circle turns each leg: 100 cos 60° + 50 cos 300° = 75,
            // less a few micrometres for pi taken as 3.1415926.
            EXPECT_WITHIN(call, result.Fx, 75.0, 1e-5);
        } else {
            EXPECT_BITS(call, result.Fx, fx[c.type]);
        }
        EXPECT_UNTOUCHED(call, s[2].DeltaX); // the last station has no leg
        if (c.type < 2) {
            continue; // the legs do not end on A or B
        }
        EXPECT_BITS(call, s[0].Azimuth, 0.0);
        EXPECT_BITS(call, s[1].Azimuth, 648000.0);
        EXPECT_BITS(call, s[2].Azimuth, 0.0);
        EXPECT_BITS(call, s[1].LegEnd, t.e);
        // The open traverse corrects nothing and adds the plain increments.
        EXPECT_WRITTEN_IF(call, s[0].CorrX, c.type != 4);
        EXPECT_BITS(call, s[1].AdjDeltaX, s[1].DeltaX);
    }
}

TEST(TraverseRounds, TriangleAngularMisclosureComesOffEveryAngle)
{
    // A -> P1 (east of A) -> B (north of A), closing on B. Each angle is 1" too
    // large and loses that second: the legs run on from B -> A as if exact.
    const SurveyPoint a = {1000.0, 1000.0, 10.0}, b = {1100.0, 1000.0, 10.0};
    Stations s = stations(
        {{324001.0, 100.0, 0.0}, {162001.0, std::sqrt(20000.0), 0.0}, {162001.0, 0.0, 0.0}}, a);
    const Call triangle("LIB_TRSMultCycleCal", "triangle closing on B");
    const TraverseControl c = {0, 0, 1, 0, a, b, {}, {}};
    TraverseResult result;
    ASSERT_STATUS(triangle, LIB_TRSMultCycleCal(s.data(), 3, &c, &result), 0);
    EXPECT_BITS(triangle, result.AngularMisclosure, 3.0);
    EXPECT_BITS(triangle, s[0].Azimuth, 324000.0110536885);
    EXPECT_BITS(triangle, s[1].Azimuth, 1134000.0110536884); // past a full circle, not turned
    EXPECT_BITS(triangle, s[2].Azimuth, 648000.0110536884);
    EXPECT_BELOW(triangle, std::hypot(s[1].LegEnd.X - b.X, s[1].LegEnd.Y - b.Y), 1e-9);
    // 6631 stations: 6629 half circles overflow 32 bits and leave 624704.
    const Call overflow("LIB_TRSMultCycleCal", "6631 stations");
    s = stations(Legs(6631, {0.0, 1.0, 0.0}), a);
    ASSERT_STATUS(overflow, LIB_TRSMultCycleCal(s.data(), 6631, &c, &result), 0);
    EXPECT_BITS(overflow, result.AngularMisclosure, -624704.0);
}

TEST(TraverseRounds, DistributionAndHeightRules)
{
    // E lies 0.03 m north of and 0.03 m above where the legs lead. Coordinates start
    // from the first station's record, 1000 m above A; unwritten increments are the caller's.
    OutAndBack t;
    t.e = {t.e.X + 0.03, t.e.Y, t.e.H + 0.03};
    const double e_x = t.e.X, e_h = t.e.H + 1000.0;
    const struct {
        std::int32_t plan_rule, height_rule;
        double x, h; // at E
    } cases[] = {
        {0, 0, e_x, e_h - 0.01}, // by length; heights a third each, one share stays
        {0, 1, e_x, 1100.0},     // adjusted heights become 0
        // By increment: the signed increment weighs, the absolute sum divides,
        // so the southward leg is corrected the wrong way; heights as held.
        {1, 2, e_x - 0.02, 1114.0},
        {2, 0, 2.5, 1114.0}, // no plan rule: nothing corrected
        {-1, 1, 2.5, 1114.0},
    };
    for (const auto& [call, c] : rows("LIB_TRSMultCycleCal", cases)) {
        Stations s = stations(t.legs, {t.a.X, t.a.Y, 1100.0});
        for (TraverseStation& station : s) {
            station.AdjDeltaX = 1.25, station.AdjDeltaY = 0.0, station.AdjDeltaH = 7.0;
        }
        const TraverseControl control = t.control_of(3, c.plan_rule, c.height_rule);
        TraverseResult result;
        ASSERT_STATUS(call, LIB_TRSMultCycleCal(s.data(), 3, &control, &result), 0);
        EXPECT_WITHIN(call, result.Relative, 0.0002, 1e-15);
        EXPECT_WITHIN(call, result.HeightRatio, -0.0002, 1e-15);
        EXPECT_WITHIN(call, s[1].LegEnd.X, c.x, 1e-12);
        EXPECT_WITHIN(call, s[1].LegEnd.H, c.h, 1e-12);
        const bool corrected = c.plan_rule == 0 || c.plan_rule == 1;
        EXPECT_WRITTEN_IF(call, s[0].CorrX, corrected);
        EXPECT_WRITTEN_IF(call, s[0].CorrH, corrected && c.height_rule != 2);
    }
}
