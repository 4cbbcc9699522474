// Helpers of the road tests: element records and numerical checks.
#ifndef QUILLON_TESTS_ROAD_SUPPORT_HPP
#define QUILLON_TESTS_ROAD_SUPPORT_HPP

#include "check.hpp"
#include "records.hpp"

#include <cmath>
#include <functional>
#include <string>

namespace roadtest {

using qtest::LIMIT;
using qtest::NaN;

// Arc-seconds per radian on the library's pi (3.1415926).
const double RHO = 648000.0 / 3.1415926;

inline HElement element(unsigned char type, double x, double y, double azimuth, double length,
                        double radius, unsigned char turn, unsigned char spiral,
                        double chainage = 0.0)
{
    return HElement{type, x, y, azimuth, length, radius, turn, spiral, chainage};
}

// The plan offset after `length` along a path of heading(u) radians, by
// Simpson's rule: independent of the library's series.
inline PlanePoint integrate(const std::function<double(double)>& heading, double length,
                            int n = 4000)
{
    const double h = length / n;
    double sx = 0.0, sy = 0.0;
    for (int i = 0; i <= n; ++i) {
        const double w = (i == 0 || i == n) ? 1.0 : (i % 2 == 1 ? 4.0 : 2.0);
        sx += w * std::cos(heading(i * h));
        sy += w * std::sin(heading(i * h));
    }
    return PlanePoint{sx * h / 3.0, sy * h / 3.0};
}

inline double gap(double x, double y, double u, double v) { return std::hypot(x - u, y - v); }

// Largest distance between each element's evaluated end and the start
// stored in the next record; `call` names the table's builder.
inline double continuity(const qtest::Call& call, const HElement* table, unsigned int records)
{
    double worst = 0.0;
    for (unsigned int i = 0; i + 1 < records; ++i) {
        const HElement& e = table[i];
        PlanePoint p{};
        TangentPoint t{};
        const bool exit = e.Type == 3 && e.Spiral != 0;
        const char* evaluator = e.Type == 2   ? "LIB_CalWay_H_Circle_On"
                                : exit        ? "LIB_CalWay_H_Curve_End"
                                : e.Type == 3 ? "LIB_CalWay_H_Curve_On"
                                              : "LIB_CalWay_H_Line_On";
        EXPECT_STATUS(call.at(std::string(evaluator) + " of record " + std::to_string(i)),
                      e.Type == 2   ? LIB_CalWay_H_Circle_On(&e, e.Length, &p)
                      : exit        ? LIB_CalWay_H_Curve_End(&e, &t)
                      : e.Type == 3 ? LIB_CalWay_H_Curve_On(&e, e.Length, &p)
                                    : LIB_CalWay_H_Line_On(&e, e.Length, &p),
                      0);
        p = exit ? PlanePoint{t.X, t.Y} : p;
        worst = std::fmax(worst, gap(p.X, p.Y, table[i + 1].X, table[i + 1].Y));
    }
    return worst;
}

} // namespace roadtest

#endif
