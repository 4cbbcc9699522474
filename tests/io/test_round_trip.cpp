// The tables the reader makes, evaluated by the survey layer: every metre of
// every design set out at three offsets and located again gives back its
// chainage and offset; the alignment is continuous at every joint; the
// design heights agree with the profile integrated independently (mpmath).
#include "io_support.hpp"
#include "quillon/survey.h"

#include <cmath>
#include <string>
#include <vector>

namespace {

// Chainage and offset come back to a micrometre.
const double ROUND_TRIP = 1e-6;

class RoundTrip : public ::testing::TestWithParam<const char*> {};

TEST_P(RoundTrip, EveryMetreAndOffsetLocatedAgain)
{
    const std::string file = GetParam();
    const qtest::Design design =
        qtest::load_file(file == "road.xml" ? qtest::example_path(file) : qtest::data_path(file));
    ASSERT_TRUE(design);
    const qio_alignment a = qtest::only_alignment(design);
    double worst_chainage = 0.0;
    double worst_offset = 0.0;
    std::size_t points = 0;
    for (double chainage = std::ceil(a.station_start); chainage <= a.chainage_end;
         chainage += 1.0) {
        for (double offset : {-7.5, 0.0, 3.25}) {
            qs_station_offset placed{};
            ASSERT_EQ(
                qs_alignment_point(a.horizontal, a.horizontal_count, chainage, offset, &placed),
                QS_OK)
                << chainage;
            qs_station_offset found{};
            ASSERT_EQ(
                qs_alignment_locate(a.horizontal, a.horizontal_count, placed.x, placed.y, &found),
                QS_OK)
                << chainage << " " << offset;
            worst_chainage = std::fmax(worst_chainage, std::fabs(found.chainage - chainage));
            worst_offset = std::fmax(worst_offset, std::fabs(found.offset - offset));
            ++points;
        }
    }
    EXPECT_LE(worst_chainage, ROUND_TRIP) << points << " points";
    EXPECT_LE(worst_offset, ROUND_TRIP) << points << " points";
}

// Either side of every joint the centre line is within the file's rounding
// (coordinates to 0.1 mm); the end record is where the last element ends.
TEST_P(RoundTrip, ContinuousAtEveryJoint)
{
    const std::string file = GetParam();
    const qtest::Design design =
        qtest::load_file(file == "road.xml" ? qtest::example_path(file) : qtest::data_path(file));
    ASSERT_TRUE(design);
    const qio_alignment a = qtest::only_alignment(design);
    for (std::size_t i = 1; i + 1 < a.horizontal_count; ++i) {
        const double joint = a.horizontal[i].Chainage;
        qs_station_offset before{};
        qs_station_offset after{};
        ASSERT_EQ(qs_alignment_point(a.horizontal, a.horizontal_count, joint - 1e-7, 0.0, &before),
                  QS_OK);
        ASSERT_EQ(qs_alignment_point(a.horizontal, a.horizontal_count, joint + 1e-7, 0.0, &after),
                  QS_OK);
        EXPECT_LE(std::hypot(after.x - before.x, after.y - before.y), 2e-4) << file << " " << i;
    }
    qs_station_offset end{};
    ASSERT_EQ(qs_alignment_point(a.horizontal, a.horizontal_count, a.chainage_end, 0.0, &end),
              QS_OK);
    const HElement& last = a.horizontal[a.horizontal_count - 1];
    EXPECT_NEAR(end.x, last.X, 1e-8);
    EXPECT_NEAR(end.y, last.Y, 1e-8);
}

INSTANTIATE_TEST_SUITE_P(Designs, RoundTrip,
                         ::testing::Values("right_turn.xml", "left_turn.xml", "feet.xml",
                                           "inframodel_latin1.xml", "s_curve.xml", "road.xml"),
                         [](const ::testing::TestParamInfo<const char*>& info) {
                             std::string name = info.param;
                             return name.substr(0, name.find('.'));
                         });

// Heights of the S-curve's profile from its table, against the profile
// integrated at 40 digits; no height before it starts or after it ends.
TEST(Profile, HeightsAsDesigned)
{
    const qtest::Design design = qtest::load_file(qtest::data_path("s_curve.xml"));
    ASSERT_TRUE(design);
    const qio_alignment a = qtest::only_alignment(design);
    struct Height {
        double chainage, height;
    };
    const Height heights[] = {{120.0, 20.0},
                              {140.0, 20.6},
                              {160.0, 20.930060722678},
                              {175.0, 20.742531416644},
                              {200.0, 20.0},
                              {230.0, 19.35},
                              {250.0, 19.5},
                              {290.0, 20.3}};
    for (const Height& h : heights) {
        qs_profile_point p{};
        ASSERT_EQ(qs_profile_height(a.vertical, a.vertical_count, h.chainage, &p), QS_OK);
        EXPECT_NEAR(p.height, h.height, 1e-9) << h.chainage;
    }
    qs_profile_point p{};
    EXPECT_EQ(qs_profile_height(a.vertical, a.vertical_count, 110.0, &p), QS_OUTSIDE_ALIGNMENT);
    EXPECT_EQ(qs_profile_height(a.vertical, a.vertical_count, 300.0, &p), QS_OUTSIDE_ALIGNMENT);
}

} // namespace
