// Records and special values that the tests of every family build on.
#ifndef QUILLON_TESTS_RECORDS_HPP
#define QUILLON_TESTS_RECORDS_HPP

#include "quillon.h"

#include <cmath>
#include <limits>

namespace qtest {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double INF = std::numeric_limits<double>::infinity();
// The range limit and the first doubles on either side of it.
const double LIMIT = 99999999.9999;
const double ABOVE_LIMIT = std::nextafter(LIMIT, INF);
const double BELOW_LIMIT = std::nextafter(LIMIT, 0.0);

// Directions from atan2 (true pi) converted with pi taken as 3.1415926.
const double EAST = 324000.00552684424;
const double SOUTH = 648000.0110536885;
const double WEST = 971999.9944731558;

// A station with instrument height 1.5 m and target height 1.2 m unless
// told otherwise; no refraction correction.
inline StationRecord station(double x, double y, double h, signed char sign_a = 1,
                             signed char sign_b = 1, double instrument_height = 1.5,
                             double target_height = 1.2, unsigned char refraction_mode = 0)
{
    StationRecord s{};
    s.X = x;
    s.Y = y;
    s.H = h;
    s.InstrumentHeight = instrument_height;
    s.TargetHeight = target_height;
    s.signA = sign_a;
    s.signB = sign_b;
    s.refractionMode = refraction_mode;
    return s;
}

inline DistanceRecord shot(double slope, double horizontal, double vertical,
                           double height_difference = 0.0)
{
    return DistanceRecord{slope, horizontal, vertical, height_difference};
}

} // namespace qtest

#endif
