// Helpers of the road tests: element records and a clothoid integrated
// numerically, independent of the series the library uses.
#ifndef QUILLON_TESTS_ROAD_SUPPORT_HPP
#define QUILLON_TESTS_ROAD_SUPPORT_HPP

#include "bits.hpp"
#include "quillon.h"

#include <cmath>
#include <functional>

namespace roadtest {

const double PI = 3.14159265358979323846;
// Arc-seconds per radian on the library's pi (3.1415926).
const double RHO = 648000.0 / 3.1415926;

inline HElement element(unsigned char type, double x, double y, double azimuth, double length,
                        double radius, unsigned char turn, unsigned char spiral,
                        double chainage = 0.0)
{
    HElement e = qtest::sentinel_filled<HElement>();
    e.Type = type;
    e.X = x;
    e.Y = y;
    e.Azimuth = azimuth;
    e.Length = length;
    e.Radius = radius;
    e.Turn = turn;
    e.Spiral = spiral;
    e.Chainage = chainage;
    return e;
}

struct Plane {
    double x;
    double y;
};

// Integrates (cos, sin) of the direction heading(u) from 0 to length by
// Simpson's rule with n (even) steps.
inline Plane integrate(const std::function<double(double)>& heading, double length, int n = 20000)
{
    const double h = length / n;
    double sx = 0.0;
    double sy = 0.0;
    for (int i = 0; i <= n; ++i) {
        const double w = (i == 0 || i == n) ? 1.0 : (i % 2 == 1 ? 4.0 : 2.0);
        const double t = heading(i * h);
        sx += w * std::cos(t);
        sy += w * std::sin(t);
    }
    return Plane{sx * h / 3.0, sy * h / 3.0};
}

inline double distance(double x1, double y1, double x2, double y2)
{
    return std::hypot(x1 - x2, y1 - y2);
}

// Difference of two azimuths in arc-seconds, folded into +/- a half circle.
inline double azimuth_gap(double a, double b)
{
    double d = std::fmod(a - b, 1296000.0);
    if (d > 648000.0) {
        d -= 1296000.0;
    }
    if (d < -648000.0) {
        d += 1296000.0;
    }
    return std::fabs(d);
}

} // namespace roadtest

#endif
