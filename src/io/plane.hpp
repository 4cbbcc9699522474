// Plane geometry of the reader: azimuths clockwise from north (X) toward
// east (Y) in radians, and the far ends of lines, arcs and clothoids, used
// to check that a file's elements meet and agree with their own points.
#ifndef QUILLON_IO_PLANE_HPP
#define QUILLON_IO_PLANE_HPP

namespace quillon::io {

constexpr double PI = 3.14159265358979323846;
constexpr double TWO_PI = 2.0 * PI;
// Arc-seconds per radian with the true pi, as the survey layer converts.
constexpr double SECONDS_PER_RADIAN = 648000.0 / PI;

struct Point {
    double x; // northing, m
    double y; // easting, m
};

// A point with the forward azimuth (radians) of the alignment there.
struct Pose {
    Point point;
    double azimuth;
};

double distance(Point a, Point b);

// Azimuth from a to b in [0, 2 pi).
double azimuth(Point from, Point to);

// The point at distance d from p in direction azimuth.
Point along(Point p, double azimuth, double d);

// An angle brought into (-pi, pi].
double wrap_pi(double angle);

// An angle brought into [0, 2 pi).
double wrap_two_pi(double angle);

// Far end of a circular arc of radius r and length l from start; turn is
// +1 to the right, -1 to the left.
Pose arc_end(Pose start, double r, double l, int turn);

// Local coordinates of a clothoid of length l that reaches radius r at its
// end, measured from its straight end (curvature 0): u along the tangent
// there, v toward the inside of the curve. Power series of the Fresnel
// integrals, exact to rounding for turns up to pi.
void clothoid_local(double l, double r, double& u, double& v);

// Far end of a clothoid from its straight end: curvature grows from 0 to
// 1 / r over length l (an entry transition).
Pose clothoid_entry_end(Pose start, double r, double l, int turn);

// Far end of a clothoid given at its curved end (radius r there): curvature
// falls to 0 over length l (an exit transition).
Pose clothoid_exit_end(Pose start, double r, double l, int turn);

} // namespace quillon::io

#endif
