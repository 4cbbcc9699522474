// Plane geometry of the reader.
#include "plane.hpp"

#include <cmath>

namespace quillon::io {

double distance(Point a, Point b) { return std::hypot(b.x - a.x, b.y - a.y); }

double azimuth(Point from, Point to)
{
    return wrap_two_pi(std::atan2(to.y - from.y, to.x - from.x));
}

Point along(Point p, double azimuth, double d)
{
    return Point{p.x + d * std::cos(azimuth), p.y + d * std::sin(azimuth)};
}

double wrap_pi(double angle)
{
    double wrapped = std::remainder(angle, TWO_PI);
    if (wrapped <= -PI) {
        wrapped += TWO_PI;
    }
    return wrapped;
}

double wrap_two_pi(double angle)
{
    double wrapped = std::fmod(angle, TWO_PI);
    if (wrapped < 0.0) {
        wrapped += TWO_PI;
    }
    return wrapped;
}

Pose arc_end(Pose start, double r, double l, int turn)
{
    const double half_angle = l / (2.0 * r);
    const double chord = 2.0 * r * std::sin(half_angle);
    const double chord_azimuth = start.azimuth + turn * half_angle;
    return Pose{along(start.point, chord_azimuth, chord),
                wrap_two_pi(start.azimuth + turn * (l / r))};
}

void clothoid_local(double l, double r, double& u, double& v)
{
    // theta = l / (2 r) is the tangent's total turn:
    //   u = l * sum (-1)^n theta^(2n)   / ((4n + 1) (2n)!)
    //   v = l * sum (-1)^n theta^(2n+1) / ((4n + 3) (2n + 1)!)
    const double theta = l / (2.0 * r);
    double power = 1.0; // (-1)^k theta^k / k!, k = 2n for u, 2n + 1 for v
    double sum_u = 0.0;
    double sum_v = 0.0;
    for (int k = 0; k < 60; ++k) {
        const double term = power / (2.0 * k + 1.0);
        if (k % 2 == 0) {
            sum_u += term;
        } else {
            sum_v += term;
        }
        const double next = (k % 2 == 0 ? 1.0 : -1.0) * power * theta / (k + 1.0);
        if (std::fabs(next) < 1e-18 && k > 2) {
            break;
        }
        power = next;
    }
    u = l * sum_u;
    v = l * sum_v;
}

Pose clothoid_entry_end(Pose start, double r, double l, int turn)
{
    double u = 0.0;
    double v = 0.0;
    clothoid_local(l, r, u, v);
    const Point ahead = along(start.point, start.azimuth, u);
    return Pose{along(ahead, start.azimuth + turn * (PI / 2.0), v),
                wrap_two_pi(start.azimuth + turn * (l / (2.0 * r)))};
}

Pose clothoid_exit_end(Pose start, double r, double l, int turn)
{
    // Seen from its far end, an exit transition is an entry transition run
    // backward: the far end lies u along the end tangent from the start and
    // v to the outside of the curve.
    double u = 0.0;
    double v = 0.0;
    clothoid_local(l, r, u, v);
    const double end_azimuth = wrap_two_pi(start.azimuth + turn * (l / (2.0 * r)));
    const Point ahead = along(start.point, end_azimuth, u);
    return Pose{along(ahead, end_azimuth - turn * (PI / 2.0), v), end_azimuth};
}

} // namespace quillon::io
