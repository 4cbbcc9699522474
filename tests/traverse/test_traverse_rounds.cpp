// Multi-round traverse: every path and type, angle and plan distribution, the work array.
#include "bits.hpp"
#include "records.hpp"
#include "traverse/traverse.hpp"

#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

using Stations = std::vector<TraverseStation>;
using Legs = std::vector<std::array<double, 3>>;

// Stations from rows of angle (forward minus backward), length and height to the next.
Stations stations(const Legs& legs, SurveyPoint start)
{
    Stations s(legs.size(), qtest::sentinel_filled<TraverseStation>());
    for (std::size_t i = 0; i < legs.size(); ++i) {
        s[i].Angle12 = legs[i][0];
        s[i].HorizDist1 = legs[i][1];
        s[i].VertDiff1 = legs[i][2];
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
    const int NOTHING = 0, INCREMENTS = 1, ALL = 2;
    const int cases[][6] = {
        // n, type, lengths or none, refuse, status, written
        {1, 2, 1, 0, 1, NOTHING},  {3, 2, 1, 1, 1, NOTHING},    {3, 5, 1, 0, 0, NOTHING},
        {3, -1, 1, 0, 0, NOTHING}, {3, 0, 0, 0, 1, INCREMENTS}, {3, 0, 1, 0, 0, ALL},
        {3, 1, 1, 0, 0, ALL},      {3, 2, 1, 0, 0, ALL},        {3, 3, 1, 0, 0, ALL},
        {3, 4, 1, 0, 0, ALL},
    };
    const double S = qtest::sentinel_double();
    const std::int32_t masks[] = {1023, 1023, 1023, 999, 3};
    // Type 0 closes on A, oriented A -> B; type 1 closes on B.
    const double angular[] = {-qtest::SOUTH, 0.0, 0.0, S, S};
    const double fx[] = {0.0, t.e.X + 100.0, 0.0, 0.0, S};
    for (const auto& c : cases) {
        Stations s = stations(c[2] != 0 ? t.legs : Legs(3, {0.0, 0.0, 0.0}), t.a);
        TraverseResult result = qtest::sentinel_filled<TraverseResult>();
        taken = released = 0;
        refuse = c[3] != 0;
        const auto n = static_cast<std::uint32_t>(c[0]);
        const int type = c[1];
        EXPECT_EQ(quillon::multi_round_traverse(s.data(), n, t.control_of(type), &result,
                                                {allocate, release}),
                  c[4]);
        EXPECT_EQ(taken, n > 1 ? c[0] : 0) << n << " " << type; // one array of n entries
        EXPECT_EQ(released, refuse || n < 2 ? 0 : 1);
        EXPECT_EQ(qtest::untouched(s[2].Azimuth) && qtest::untouched(s[1].DeltaH), c[5] == NOTHING);
        EXPECT_EQ(qtest::untouched(s[1].LegEnd), c[5] != ALL);
        EXPECT_EQ(qtest::untouched(result), c[5] != ALL);
        if (c[5] != ALL) {
            continue;
        }
        ASSERT_EQ(result.ValidMask, masks[type]);
        const double* doubles = &result.SumDist;
        for (int i = 0; i < 10; ++i) {
            EXPECT_EQ(qtest::untouched(doubles[i]), ((masks[type] >> i) & 1) == 0) << type << i;
        }
        EXPECT_TRUE(result.SumDist == 150.0 && result.StationCount == 3.0);
        EXPECT_BITS(result.AngularMisclosure, angular[type]);
        EXPECT_BITS(result.Fx, type == 0 ? result.Fx : fx[type]);
        EXPECT_TRUE(qtest::untouched(s[2].DeltaX)); // the last station has no leg
        if (type < 2) {
            continue; // the legs do not end on A or B
        }
        EXPECT_TRUE(s[0].Azimuth == 0.0 && s[1].Azimuth == 648000.0 && s[2].Azimuth == 0.0);
        EXPECT_EQ(std::memcmp(&s[1].LegEnd, &t.e, sizeof t.e), 0);
        // The open traverse corrects nothing and adds the plain increments.
        EXPECT_EQ(qtest::untouched(s[0].CorrX), type == 4);
        EXPECT_BITS(s[1].AdjDeltaX, s[1].DeltaX);
    }
}

TEST(TraverseRounds, TriangleAngularMisclosureComesOffEveryAngle)
{
    // A -> P1 (east of A) -> B (north of A), closing on B. Each angle is 1" too
    // large and loses that second: the legs run on from B -> A as if exact.
    const SurveyPoint a = {1000.0, 1000.0, 10.0}, b = {1100.0, 1000.0, 10.0};
    Stations s = stations(
        {{324001.0, 100.0, 0.0}, {162001.0, std::sqrt(20000.0), 0.0}, {162001.0, 0.0, 0.0}}, a);
    const TraverseControl c = {0, 0, 1, 0, a, b, {}, {}};
    TraverseResult result;
    ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &c, &result), 0);
    EXPECT_BITS(result.AngularMisclosure, 3.0);
    EXPECT_BITS(s[0].Azimuth, 324000.0110536885);
    EXPECT_BITS(s[1].Azimuth, 1134000.0110536884); // past a full circle, not turned
    EXPECT_BITS(s[2].Azimuth, 648000.0110536884);
    EXPECT_NEAR(std::hypot(s[1].LegEnd.X - b.X, s[1].LegEnd.Y - b.Y), 0.0, 1e-9);
    // 6631 stations: 6629 half circles overflow 32 bits and leave 624704.
    s = stations(Legs(6631, {0.0, 1.0, 0.0}), a);
    ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 6631, &c, &result), 0);
    EXPECT_BITS(result.AngularMisclosure, -624704.0);
}

TEST(TraverseRounds, DistributionAndHeightRules)
{
    // E lies 0.03 m north of and 0.03 m above where the legs lead. Coordinates start
    // from the first station's record, 1000 m above A; unwritten increments are the caller's.
    OutAndBack t;
    t.e = {t.e.X + 0.03, t.e.Y, t.e.H + 0.03};
    const double e_x = t.e.X, e_h = t.e.H + 1000.0;
    const double cases[][4] = {
        // plan rule, height rule, X and H at E
        {0, 0, e_x, e_h - 0.01}, // by length; heights a third each, one share stays
        {0, 1, e_x, 1100.0},     // adjusted heights become 0
        // By increment: the signed increment weighs, the absolute sum divides,
        // so the southward leg is corrected the wrong way; heights as held.
        {1, 2, e_x - 0.02, 1114.0},
        {2, 0, 2.5, 1114.0}, // no plan rule: nothing corrected
        {-1, 1, 2.5, 1114.0},
    };
    for (const auto& c : cases) {
        Stations s = stations(t.legs, {t.a.X, t.a.Y, 1100.0});
        for (TraverseStation& station : s) {
            station.AdjDeltaX = 1.25, station.AdjDeltaY = 0.0, station.AdjDeltaH = 7.0;
        }
        const TraverseControl control = t.control_of(3, c[0], c[1]);
        TraverseResult result;
        ASSERT_EQ(LIB_TRSMultCycleCal(s.data(), 3, &control, &result), 0);
        EXPECT_NEAR(result.Relative, 0.0002, 1e-15);
        EXPECT_NEAR(result.HeightRatio, -0.0002, 1e-15);
        EXPECT_NEAR(s[1].LegEnd.X, c[2], 1e-12) << c[0] << c[1];
        EXPECT_NEAR(s[1].LegEnd.H, c[3], 1e-12) << c[0] << c[1];
        EXPECT_EQ(qtest::untouched(s[0].CorrX), c[0] != 0 && c[0] != 1);
        EXPECT_EQ(qtest::untouched(s[0].CorrH), qtest::untouched(s[0].CorrX) || c[1] == 2);
    }
}
