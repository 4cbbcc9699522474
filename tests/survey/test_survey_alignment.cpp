// Alignments: the exact builder is continuous at every joint, points placed
// at a chainage and offset are found again by locate on every element kind,
// at the joints and at the ends, the special places of locate, long tables,
// tables built by the device, and bad input.
#include "check.hpp"
#include "records.hpp"
#include "survey_road_support.hpp"

namespace {

using namespace roadtest;
using qtest::INF;
using qtest::NaN;

constexpr double TOLERANCE = 1e-9; // m, chainage and offset round trips

qs_station_offset place(const std::vector<HElement>& table, double chainage, double offset)
{
    qs_station_offset at{};
    EXPECT_EQ(qs_alignment_point(table.data(), table.size(), chainage, offset, &at), QS_OK);
    return at;
}

qs_station_offset locate(const std::vector<HElement>& table, double x, double y)
{
    qs_station_offset found{};
    EXPECT_EQ(qs_alignment_locate(table.data(), table.size(), x, y, &found), QS_OK);
    return found;
}

TEST(SurveyAlignment, BuiltTableIsContinuousAtEveryJoint)
{
    const std::vector<HElement>& table = sample_table();
    std::vector<qs_joint> joints(table.size() - 1);
    ASSERT_EQ(qs_alignment_joints(table.data(), table.size(), joints.data()), QS_OK);
    for (std::size_t i = 0; i < joints.size(); ++i) {
        EXPECT_LE(joints[i].gap, 1e-10) << "joint " << i;
        EXPECT_LE(std::fabs(joints[i].azimuth_gap), 1e-7) << "joint " << i;
        EXPECT_BITS(qtest::Call("qs_alignment_build", static_cast<std::ptrdiff_t>(i)),
                    table[i + 1].Chainage, table[i].Chainage + table[i].Length);
    }
    EXPECT_EQ(table.back().Type, 0);
    // Approaching every joint from the element before ends at the record.
    for (std::size_t i = 1; i < table.size(); ++i) {
        const qs_station_offset before = place(table, table[i].Chainage - 1e-7, 0.0);
        EXPECT_NEAR(before.centre_x, table[i].X, 2e-7);
        EXPECT_NEAR(before.centre_y, table[i].Y, 2e-7);
    }
    // The curve turns right by 2 * 40/250 + 150/250 and back left: the end
    // azimuth follows from the lengths and radii alone.
    const double turn = (80.0 / 250.0 + 150.0 / 250.0) - (60.0 / 180.0 + 90.0 / 180.0);
    EXPECT_NEAR(azimuth_difference(table.back().Azimuth, ROAD_AZIMUTH + turn * QS_RHO_SEC), 0.0,
                1e-7);
}

// Every element kind, both senses, entry and exit spirals, the joints (share
// 0) and both ends of the table, offsets on both sides and on the line.
TEST(SurveyAlignment, PlacedPointsAreLocatedAgain)
{
    const std::vector<HElement>& table = sample_table();
    std::vector<double> chainages;
    for (std::size_t i = 0; i + 1 < table.size(); ++i) {
        for (double share : {0.0, 1e-9, 0.13, 0.5, 0.87, 1.0 - 1e-12}) {
            chainages.push_back(table[i].Chainage + share * table[i].Length);
        }
    }
    chainages.push_back(table.back().Chainage);
    for (double chainage : chainages) {
        for (double offset : {-15.0, -2.5, -1e-6, 0.0, 0.001, 7.5, 15.0}) {
            const qs_station_offset at = place(table, chainage, offset);
            const qs_station_offset found = locate(table, at.x, at.y);
            EXPECT_NEAR(found.chainage, chainage, TOLERANCE) << chainage << " " << offset;
            EXPECT_NEAR(found.offset, offset, TOLERANCE) << chainage << " " << offset;
            EXPECT_NEAR(azimuth_difference(found.azimuth, at.azimuth), 0.0, 1e-6);
        }
    }
}

// The nearest point of the centre line to (x, y) by a dense search: the
// nearest of the samples (every 0.25 m), then golden section around it.
struct Nearest {
    double chainage;
    double distance;
};

Nearest nearest_by_search(const std::vector<HElement>& table,
                          const std::vector<qs_station_offset>& samples, double x, double y)
{
    auto distance = [&](double k) {
        const qs_station_offset c = place(table, k, 0.0);
        return std::hypot(x - c.x, y - c.y);
    };
    std::size_t best = 0;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        if (std::hypot(x - samples[i].x, y - samples[i].y) <
            std::hypot(x - samples[best].x, y - samples[best].y)) {
            best = i;
        }
    }
    double low = samples[best].chainage - 0.25, high = samples[best].chainage + 0.25;
    for (int i = 0; i < 80; ++i) {
        const double a = high - 0.618033988749895 * (high - low);
        const double b = low + 0.618033988749895 * (high - low);
        if (distance(a) < distance(b)) {
            high = b;
        } else {
            low = a;
        }
    }
    const double chainage = 0.5 * (low + high);
    return Nearest{chainage, distance(chainage)};
}

// Points scattered about a road are given the nearest point of its centre
// line: the foot is the nearest, not merely a foot. On the sample road the
// points lie within 25 m; on a tight curve (radii 50 m) up to 4/5 of the
// radius inside it, where every foot is still found.
TEST(SurveyAlignment, LocateFindsTheNearestPointOfTheCentreLine)
{
    const std::vector<Design> tight = {{1, 100.0, 0.0, 0, 0},
                                       {3, 40.0, 50.0, 1, 0},
                                       {2, 40.0, 50.0, 1, 0},
                                       {3, 40.0, 50.0, 1, 1},
                                       {1, 100.0, 0.0, 0, 0}};
    struct Road {
        std::vector<HElement> table;
        double margin, half_width, jitter;
    };
    const Road roads[] = {
        {sample_table(), 30.0, 20.0, 5.0},
        {exact_table(tight, 0.0, 0.0, 0.0, 0.0), 90.0, 40.0, 0.0},
    };
    unsigned long state = 2024;
    auto uniform = [&state]() {
        state = (state * 6364136223846793005ul + 1442695040888963407ul) & 0xfffffffffffful;
        return static_cast<double>(state >> 16) / 4294967296.0;
    };
    for (const Road& road : roads) {
        const std::vector<HElement>& table = road.table;
        std::vector<qs_station_offset> samples;
        for (double k = table.front().Chainage; k <= table.back().Chainage; k += 0.25) {
            samples.push_back(place(table, k, 0.0));
        }
        const double first = table.front().Chainage + road.margin;
        const double last = table.back().Chainage - road.margin;
        for (int n = 0; n < 100; ++n) {
            const qs_station_offset near = place(table, first + uniform() * (last - first),
                                                 road.half_width * (2.0 * uniform() - 1.0));
            const double x = near.x + road.jitter * (2.0 * uniform() - 1.0);
            const double y = near.y + road.jitter * (2.0 * uniform() - 1.0);
            const Nearest expected = nearest_by_search(table, samples, x, y);
            const qs_station_offset found = locate(table, x, y);
            EXPECT_NEAR(std::fabs(found.offset), expected.distance, 1e-9) << x << " " << y;
            // The distance is flat at its minimum: a search on it fixes the
            // chainage to some micrometres only.
            EXPECT_NEAR(found.chainage, expected.chainage, 2e-5) << x << " " << y;
        }
    }
}

// An angle point (two straights at 90 degrees, as the device keeps them): a
// point outside the corner has no perpendicular foot and takes the corner;
// one inside has feet on both and takes the nearer.
TEST(SurveyAlignment, AnglePointsArcCentresAndEnds)
{
    std::vector<HElement> corner(3);
    corner[0] = HElement{1, 0.0, 0.0, 0.0, 100.0, 0.0, 0, 0, 0.0};
    corner[1] = HElement{1, 100.0, 0.0, 324000.0, 50.0, 0.0, 0, 0, 100.0};
    corner[2] = HElement{0, 100.0, 50.0, 324000.0, 0.0, 0.0, 0, 0, 150.0};
    const qtest::Call call("qs_alignment_locate");
    qs_station_offset found = locate(corner, 103.0, -4.0);
    EXPECT_EQ(found.element, 1u);
    EXPECT_BITS(call.at("angle point"), found.chainage, 100.0);
    EXPECT_BITS(call.at("angle point"), found.offset, -5.0); // left of a right-hand bend
    EXPECT_BITS(call.at("angle point"), found.azimuth, 324000.0);
    found = locate(corner, 98.0, 3.0); // inside: 3 m from the first, 2 m from the second
    EXPECT_EQ(found.element, 1u);
    EXPECT_NEAR(found.chainage, 103.0, 1e-12);
    EXPECT_NEAR(found.offset, 2.0, 1e-12);

    // The centre of an arc is as far from all of it: a foot on the arc.
    std::vector<HElement> arc(2);
    arc[0] = HElement{2, 0.0, 0.0, 0.0, 200.0, 100.0, 1, 0, 0.0};
    arc[1] = HElement{0, 0.0, 0.0, 0.0, 0.0, 0.0, 0, 0, 200.0};
    found = locate(arc, 0.0, 100.0);
    EXPECT_TRUE(found.chainage == 0.0 || found.chainage == 200.0) << found.chainage;
    EXPECT_NEAR(found.offset, 100.0, 1e-12);

    // Before the start and beyond the end: a micrometre is tolerated.
    qs_station_offset out = qtest::sentinel_filled<qs_station_offset>();
    EXPECT_EQ(qs_alignment_locate(corner.data(), 3, -1e-3, -1.0, &out), QS_OUTSIDE_ALIGNMENT);
    EXPECT_EQ(qs_alignment_locate(corner.data(), 3, 110.0, 50.001, &out), QS_OUTSIDE_ALIGNMENT);
    EXPECT_TRUE(qtest::untouched(out));
    found = locate(corner, -0.9e-6, 1.0);
    EXPECT_BITS(call.at("start"), found.chainage, 0.0);
    found = locate(corner, 110.0, 50.0 + 0.9e-6);
    EXPECT_BITS(call.at("end"), found.chainage, 150.0);
    EXPECT_EQ(qs_alignment_point(corner.data(), 3, -1e-9, 0.0, &out), QS_OUTSIDE_ALIGNMENT);
    EXPECT_EQ(qs_alignment_point(corner.data(), 3, 150.0 + 1e-9, 0.0, &out), QS_OUTSIDE_ALIGNMENT);
    EXPECT_TRUE(qtest::untouched(out));
}

// A table built by the device carries its series error at the joints: each
// element is still evaluated from its own record, so points placed inside
// elements come back, and the gaps are measured.
TEST(SurveyAlignment, DeviceTablesAreEvaluatedElementByElement)
{
    const std::vector<HElement> list =
        element_list(sample_road(), ROAD_X, ROAD_Y, ROAD_AZIMUTH, ROAD_CHAINAGE);
    std::vector<HElement> table(list.size());
    ASSERT_EQ(LIB_CalWay_H_Ele_MainPoint(list.data(), static_cast<unsigned char>(list.size()),
                                         table.data()),
              0);
    std::vector<qs_joint> joints(table.size() - 1);
    ASSERT_EQ(qs_alignment_joints(table.data(), table.size(), joints.data()), QS_OK);
    // Micrometres from the device's pi and series on these short spirals;
    // the device keeps the last straight's own azimuth (0 here): an angle
    // point.
    for (std::size_t i = 0; i < joints.size(); ++i) {
        EXPECT_LT(joints[i].gap, 1e-5) << "joint " << i;
        EXPECT_LT(std::fabs(joints[i].azimuth_gap), i == 8 ? 648000.0 : 0.01) << "joint " << i;
    }
    EXPECT_NEAR(joints[8].azimuth_gap, -joints[8].azimuth, 1e-9);
    for (std::size_t i = 0; i + 1 < table.size(); ++i) {
        for (double share : {0.25, 0.75}) {
            const double chainage = table[i].Chainage + share * table[i].Length;
            const qs_station_offset at = place(table, chainage, -4.0);
            const qs_station_offset found = locate(table, at.x, at.y);
            EXPECT_NEAR(found.chainage, chainage, TOLERANCE);
            EXPECT_NEAR(found.offset, -4.0, TOLERANCE);
            EXPECT_EQ(found.element, i);
        }
    }
}

// A hundred thousand elements (a winding road some 3000 km long): points
// are found again.
TEST(SurveyAlignment, LongTablesAreSearchedQuickly)
{
    std::vector<Design> design;
    for (int i = 0; i < 25000; ++i) {
        const unsigned char turn = static_cast<unsigned char>(i % 2);
        design.push_back({1, 40.0, 0.0, 0, 0});
        design.push_back({3, 30.0, 300.0, turn, 0});
        design.push_back({2, 20.0, 300.0, turn, 0});
        design.push_back({3, 30.0, 300.0, turn, 1});
    }
    const std::vector<HElement> table = exact_table(design, 0.0, 0.0, 0.0, 0.0);
    ASSERT_EQ(table.size(), 100001u);
    for (double chainage = 17.0; chainage < 3.0e6; chainage += 299999.0) {
        const qs_station_offset at = place(table, chainage, 6.0);
        const qs_station_offset found = locate(table, at.x, at.y);
        EXPECT_NEAR(found.chainage, chainage, TOLERANCE);
        EXPECT_NEAR(found.offset, 6.0, TOLERANCE);
    }
}

struct BadTable {
    const char* what;
    std::size_t record; // the record spoiled
    void (*spoil)(HElement&);
};

TEST(SurveyAlignment, RefusesBadTablesAndArguments)
{
    const std::vector<HElement>& good = sample_table();
    const std::size_t n = good.size();
    const BadTable cases[] = {
        {"unknown kind", 3, [](HElement& e) { e.Type = 4; }},
        {"end record inside", 3, [](HElement& e) { e.Type = 0; }},
        {"no end record", 10, [](HElement& e) { e.Type = 1; }},
        {"x NaN", 2, [](HElement& e) { e.X = NaN; }},
        {"y infinite", 0, [](HElement& e) { e.Y = INF; }},
        {"end x beyond the range", 10, [](HElement& e) { e.X = 1.5e9; }},
        {"azimuth NaN", 4, [](HElement& e) { e.Azimuth = NaN; }},
        {"chainage NaN", 5, [](HElement& e) { e.Chainage = NaN; }},
        {"length 0", 4, [](HElement& e) { e.Length = 0.0; }},
        {"length NaN", 4, [](HElement& e) { e.Length = NaN; }},
        {"radius 0", 2, [](HElement& e) { e.Radius = 0.0; }},
        {"radius infinite", 1, [](HElement& e) { e.Radius = INF; }},
        {"turn 2", 2, [](HElement& e) { e.Turn = 2; }},
        {"spiral 2", 3, [](HElement& e) { e.Spiral = 2; }},
        {"turn beyond the bound", 2, [](HElement& e) { e.Radius = 150.0 / 10001.0; }},
        {"chainage step 2 mm short", 5, [](HElement& e) { e.Chainage += 0.002; }},
        {"chainage going back", 5, [](HElement& e) { e.Chainage -= 200.0; }},
    };
    for (const BadTable& c : cases) {
        std::vector<HElement> table = good;
        c.spoil(table[c.record]);
        qs_station_offset out = qtest::sentinel_filled<qs_station_offset>();
        EXPECT_EQ(qs_alignment_point(table.data(), n, 1100.0, 0.0, &out), QS_BAD_ARGUMENT)
            << c.what;
        EXPECT_EQ(qs_alignment_locate(table.data(), n, ROAD_X, ROAD_Y, &out), QS_BAD_ARGUMENT)
            << c.what;
        EXPECT_TRUE(qtest::untouched(out)) << c.what;
        qs_joint joint = qtest::sentinel_filled<qs_joint>();
        EXPECT_EQ(qs_alignment_joints(table.data(), n, &joint), QS_BAD_ARGUMENT) << c.what;
        EXPECT_TRUE(qtest::untouched(joint)) << c.what;
    }
    // A radius on a line is not read; a chainage step within 1 mm is taken.
    std::vector<HElement> table = good;
    table[0].Radius = NaN;
    table[5].Chainage += 0.0009;
    qs_station_offset taken{};
    EXPECT_EQ(qs_alignment_point(table.data(), n, 1100.0, 0.0, &taken), QS_OK);
    qs_station_offset out = qtest::sentinel_filled<qs_station_offset>();

    for (std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{QS_MAX_ELEMENTS + 2}}) {
        EXPECT_EQ(qs_alignment_point(good.data(), count, 1100.0, 0.0, &out), QS_BAD_ARGUMENT);
        EXPECT_EQ(qs_alignment_locate(good.data(), count, ROAD_X, ROAD_Y, &out), QS_BAD_ARGUMENT);
    }
    for (double bad : {NaN, INF, -INF, 1.5e9}) {
        EXPECT_EQ(qs_alignment_point(good.data(), n, bad, 0.0, &out), QS_BAD_ARGUMENT);
        EXPECT_EQ(qs_alignment_point(good.data(), n, 1100.0, bad, &out), QS_BAD_ARGUMENT);
        EXPECT_EQ(qs_alignment_locate(good.data(), n, bad, ROAD_Y, &out), QS_BAD_ARGUMENT);
        EXPECT_EQ(qs_alignment_locate(good.data(), n, ROAD_X, bad, &out), QS_BAD_ARGUMENT);
    }
    EXPECT_TRUE(qtest::untouched(out));
}

TEST(SurveyAlignment, RefusesTransitionsThatTurnFarMoreAsEvaluated)
{
    // Found by fuzzing: an entry transition of 1e-15 m evaluated to its
    // chainage step of 2^-10 m (within the tolerance) turns by
    // step^2 / (2 Radius Length), some 5e11 rad, although Length / Radius is
    // 1e-12: the quadrature's panels never ended. Its table is refused at once.
    const double step = 0.0009765625;
    std::vector<HElement> table(3);
    table[0] = {1, 100.0, 200.0, 0.0, 64.0, 0.0, 0, 0, 0.0};
    table[1] = {3, 164.0, 200.0, 0.0, 1e-15, 1e-3, 1, 0, 64.0};
    table[2] = {0, 164.0 + step, 200.0, 0.0, 0.0, 0.0, 0, 0, 64.0 + step};
    qs_station_offset out = qtest::sentinel_filled<qs_station_offset>();
    EXPECT_EQ(qs_alignment_point(table.data(), 3, 64.0005, 0.0, &out), QS_BAD_ARGUMENT);
    EXPECT_EQ(qs_alignment_locate(table.data(), 3, 164.0, 200.0, &out), QS_BAD_ARGUMENT);
    EXPECT_TRUE(qtest::untouched(out));
    // The same transition as long as its step is an ordinary element.
    table[1].Length = step;
    EXPECT_EQ(qs_alignment_point(table.data(), 3, 64.0005, 0.0, &out), QS_OK);

    // A transition 1e-160 m long to a radius of 1e-160 m turns by 1 rad, but
    // its curvature grows at 1e320 per square metre, no double: the builder
    // refuses it rather than evaluate it with an infinite rate.
    const std::vector<HElement> list = {{3, 0.0, 0.0, 0.0, 1e-160, 1e-160, 1, 0, 0.0}};
    std::vector<HElement> built(2, qtest::sentinel_filled<HElement>());
    EXPECT_EQ(qs_alignment_build(list.data(), 2, built.data()), QS_BAD_ARGUMENT);
    EXPECT_TRUE(qtest::untouched(built[0]) && qtest::untouched(built[1]));
}

TEST(SurveyAlignment, BuilderRefusesBadElementsAndLeavesTheTableAlone)
{
    const std::vector<HElement> good =
        element_list(sample_road(), ROAD_X, ROAD_Y, ROAD_AZIMUTH, ROAD_CHAINAGE);
    const struct {
        const char* what;
        std::size_t count;
        void (*spoil)(std::vector<HElement>&);
        qs_status status;
    } cases[] = {
        {"spiral 7", good.size(), [](std::vector<HElement>& e) { e[3].Spiral = 7; },
         QS_BAD_ARGUMENT},
        {"start azimuth NaN", good.size(), [](std::vector<HElement>& e) { e[0].Azimuth = NaN; },
         QS_BAD_ARGUMENT},
        // the road would run out of range
        {"start near the bound", good.size(),
         [](std::vector<HElement>& e) { e[0].X = QS_MAX_COORDINATE - 500.0; }, QS_BAD_ARGUMENT},
        {"one record", 1, [](std::vector<HElement>&) {}, QS_BAD_ARGUMENT},
        {"one over the most", QS_MAX_ELEMENTS + 2, [](std::vector<HElement>&) {}, QS_BAD_ARGUMENT},
        {"start fields of later elements not read", good.size(),
         [](std::vector<HElement>& e) { e[4].X = e[4].Chainage = NaN; }, QS_OK},
    };
    for (const auto& c : cases) {
        std::vector<HElement> list = good;
        c.spoil(list);
        std::vector<HElement> table(good.size());
        for (HElement& e : table) {
            qtest::fill_sentinel(e);
        }
        EXPECT_EQ(qs_alignment_build(list.data(), c.count, table.data()), c.status) << c.what;
        for (const HElement& e : table) {
            EXPECT_NE(qtest::untouched(e), c.status == QS_OK) << c.what;
        }
    }
}

} // namespace
