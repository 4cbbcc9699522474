// Alignments and profiles shared by the road tests of the survey layer, and
// the check that a result record was written whole.
#ifndef QUILLON_TESTS_SURVEY_ROAD_SUPPORT_HPP
#define QUILLON_TESTS_SURVEY_ROAD_SUPPORT_HPP

#include "quillon/survey.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace roadtest {

// True when no 4-byte word of a record without padding still holds the
// sentinel pattern (0xa5 in every byte): every field was written.
template <typename T> bool written_whole(const T& record)
{
    static_assert(sizeof(T) % 4 == 0, "a record of 4-byte words");
    for (std::size_t at = 0; at < sizeof(T); at += 4) {
        std::uint32_t word = 0;
        std::memcpy(&word, reinterpret_cast<const unsigned char*>(&record) + at, 4);
        if (word == 0xa5a5a5a5u) {
            return false;
        }
    }
    return true;
}

// Designer's elements: kind, length, radius, turn (1 right), spiral (1 exit).
struct Design {
    unsigned char type;
    double length;
    double radius;
    unsigned char turn;
    unsigned char spiral;
};

inline HElement design_record(const Design& d)
{
    HElement e{};
    e.Type = d.type;
    e.Length = d.length;
    e.Radius = d.radius;
    e.Turn = d.turn;
    e.Spiral = d.spiral;
    return e;
}

// The element list of a design from a start point, azimuth (arc-seconds)
// and chainage, with room for the end record.
inline std::vector<HElement> element_list(const std::vector<Design>& design, double x, double y,
                                          double azimuth, double chainage)
{
    std::vector<HElement> list;
    for (const Design& d : design) {
        list.push_back(design_record(d));
    }
    list.push_back(HElement{});
    list[0].X = x;
    list[0].Y = y;
    list[0].Azimuth = azimuth;
    list[0].Chainage = chainage;
    return list;
}

inline std::vector<HElement> exact_table(const std::vector<Design>& design, double x, double y,
                                         double azimuth, double chainage)
{
    std::vector<HElement> table = element_list(design, x, y, azimuth, chainage);
    EXPECT_EQ(qs_alignment_build(table.data(), table.size(), table.data()), QS_OK);
    return table;
}

// A road of both turning senses: straight, right curve with spirals,
// straight, left curve with spirals, two straights.
inline const std::vector<Design>& sample_road()
{
    static const std::vector<Design> road = {
        {1, 120.0, 0.0, 0, 0},  {3, 80.0, 250.0, 1, 0}, {2, 150.0, 250.0, 1, 0},
        {3, 80.0, 250.0, 1, 1}, {1, 100.0, 0.0, 0, 0},  {3, 60.0, 180.0, 0, 0},
        {2, 90.0, 180.0, 0, 0}, {3, 60.0, 180.0, 0, 1}, {1, 50.0, 0.0, 0, 0},
        {1, 40.0, 0.0, 0, 0},
    };
    return road;
}

constexpr double ROAD_X = 5000.0;
constexpr double ROAD_Y = 2000.0;
constexpr double ROAD_AZIMUTH = 108000.0; // 30 degrees
constexpr double ROAD_CHAINAGE = 1000.0;

// The sample road built exactly from (ROAD_X, ROAD_Y), heading ROAD_AZIMUTH
// at ROAD_CHAINAGE.
inline const std::vector<HElement>& sample_table()
{
    static const std::vector<HElement> table =
        exact_table(sample_road(), ROAD_X, ROAD_Y, ROAD_AZIMUTH, ROAD_CHAINAGE);
    return table;
}

// a - b in arc-seconds, folded into [-648000, 648000].
inline double azimuth_difference(double a, double b) { return std::remainder(a - b, 1296000.0); }

} // namespace roadtest

#endif
