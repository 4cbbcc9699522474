// Helpers of the horizontal alignment tests: element records and the
// alignment integrated numerically, independent of the library's series.
#ifndef QUILLON_TESTS_ROAD_SUPPORT_HPP
#define QUILLON_TESTS_ROAD_SUPPORT_HPP

#include "bits.hpp"
#include "records.hpp"

#include <cmath>
#include <functional>

namespace roadtest {

// Arc-seconds per radian on the library's pi (3.1415926).
const double RHO = 648000.0 / 3.1415926;

inline HElement element(unsigned char type, double x, double y, double azimuth, double length,
                        double radius, unsigned char turn, unsigned char spiral,
                        double chainage = 0.0)
{
    return HElement{type, x, y, azimuth, length, radius, turn, spiral, chainage};
}

// The plan offset reached after `length` along a path whose heading
// (radians) is heading(u), by Simpson's rule.
inline PlanePoint integrate(const std::function<double(double)>& heading, double length,
                            int n = 4000)
{
    const double h = length / n;
    double sx = 0.0;
    double sy = 0.0;
    for (int i = 0; i <= n; ++i) {
        const double w = (i == 0 || i == n) ? 1.0 : (i % 2 == 1 ? 4.0 : 2.0);
        sx += w * std::cos(heading(i * h));
        sy += w * std::sin(heading(i * h));
    }
    return PlanePoint{sx * h / 3.0, sy * h / 3.0};
}

inline double gap(double x1, double y1, double x2, double y2)
{
    return std::hypot(x1 - x2, y1 - y2);
}

// Difference of two azimuths in arc-seconds, whole circles taken off.
inline double azimuth_gap(double a, double b)
{
    const double d = std::fabs(std::fmod(a - b, 1296000.0));
    return std::fmin(d, 1296000.0 - d);
}

// Largest distance between each element's end, evaluated by the element
// functions, and the start stored in the next record.
inline double continuity(const HElement* table, unsigned int records)
{
    double worst = 0.0;
    for (unsigned int i = 0; i + 1 < records; ++i) {
        const HElement& e = table[i];
        PlanePoint p{};
        TangentPoint t{};
        int status = 0;
        if (e.Type == 2) {
            status = LIB_CalWay_H_Circle_On(&e, e.Length, &p);
        } else if (e.Type == 3 && e.Spiral == 0) {
            status = LIB_CalWay_H_Curve_On(&e, e.Length, &p);
        } else if (e.Type == 3) {
            status = LIB_CalWay_H_Curve_End(&e, &t);
            p = PlanePoint{t.X, t.Y};
        } else {
            status = LIB_CalWay_H_Line_On(&e, e.Length, &p);
        }
        EXPECT_EQ(status, 0) << "element " << i;
        worst = std::fmax(worst, gap(p.X, p.Y, table[i + 1].X, table[i + 1].Y));
    }
    return worst;
}

} // namespace roadtest

#endif
