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

struct Gap {
    double position; // m
    double azimuth;  // arc-seconds
};

// Largest gap between each element's end, evaluated by the element
// functions, and the start stored in the next record.
inline Gap continuity(const HElement* table, unsigned int records)
{
    Gap worst{0.0, 0.0};
    for (unsigned int i = 0; i + 1 < records; ++i) {
        const HElement& e = table[i];
        double x = 0.0, y = 0.0, az = 0.0;
        PlanePoint p{};
        int status = 0;
        if (e.Type == 1) {
            status = LIB_CalWay_H_Line_On(&e, e.Length, &p);
            az = e.Azimuth;
        } else if (e.Type == 2) {
            status = LIB_CalWay_H_Circle_On(&e, e.Length, &p) +
                     LIB_CalWay_H_Circle_AZ(&e, e.Length, &az);
        } else if (e.Spiral == 0) {
            status =
                LIB_CalWay_H_Curve_On(&e, e.Length, &p) + LIB_CalWay_H_Curve_AZ(&e, e.Length, &az);
        } else {
            TangentPoint t{};
            status = LIB_CalWay_H_Curve_End(&e, &t);
            p.X = t.X;
            p.Y = t.Y;
            az = t.Azimuth;
        }
        EXPECT_EQ(status, 0) << "element " << i;
        x = p.X;
        y = p.Y;
        worst.position = std::fmax(worst.position, distance(x, y, table[i + 1].X, table[i + 1].Y));
        worst.azimuth = std::fmax(worst.azimuth, azimuth_gap(az, table[i + 1].Azimuth));
    }
    return worst;
}

} // namespace roadtest

#endif
