// The sample road that the fuzz seeds and the concurrency test build their
// alignments from: starting at X 5000, Y 3000, chainage 1000, heading
// 200000", a line of 150 m, an entry transition of 80 m, an arc of radius
// 400 m and 120 m, the exit transition and a line of 200 m; and its profile.
#ifndef QUILLON_TESTS_SAMPLE_ROAD_HPP
#define QUILLON_TESTS_SAMPLE_ROAD_HPP

#include <quillon.h>

#include <vector>

namespace qtest {

// The element list, without the end record that a table adds.
inline std::vector<HElement> sample_road_elements()
{
    HElement line = {};
    line.Type = 1;
    line.X = 5000.0;
    line.Y = 3000.0;
    line.Azimuth = 200000.0;
    line.Length = 150.0;
    line.Chainage = 1000.0;
    HElement entry = {};
    entry.Type = 3;
    entry.Length = 80.0;
    entry.Radius = 400.0;
    entry.Turn = 1;
    entry.Spiral = 0;
    HElement arc = entry;
    arc.Type = 2;
    arc.Length = 120.0;
    HElement exit = entry;
    exit.Spiral = 1;
    HElement last = line;
    last.X = last.Y = last.Azimuth = last.Chainage = 0.0;
    last.Length = 200.0;
    return {line, entry, arc, exit, last};
}

// The profile's element list with its end record, for the device's builder:
// from chainage 1000 at 120 m, a grade line, a parabolic curve, a grade
// line, a circular curve and a grade line; lines by their Length, curves by
// their Radius.
inline std::vector<VElement> sample_profile_elements()
{
    std::vector<VElement> table(6, VElement{});
    table[0].Type = 1;
    table[0].Chainage = 1000.0;
    table[0].Elevation = 120.0;
    table[0].Length = 100.0;
    table[0].GradeIn = 0.02;
    table[0].Given = 1;
    table[1].Type = 2;
    table[1].Radius = 5000.0;
    table[1].GradeIn = 0.02;
    table[1].GradeOut = -0.01;
    table[2].Type = 1;
    table[2].Length = 150.0;
    table[2].Given = 1;
    table[2].GradeIn = -0.01;
    table[3].Type = 3;
    table[3].Radius = 8000.0;
    table[3].GradeIn = -0.01;
    table[3].GradeOut = 0.015;
    table[4].Type = 1;
    table[4].Length = 200.0;
    table[4].Given = 1;
    table[4].GradeIn = 0.015;
    return table;
}

} // namespace qtest

#endif
