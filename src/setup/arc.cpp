// A point on an arc by a sight without a distance: the circle from three
// points on it, or from a chord and a signed radius, then the first crossing
// of the line of sight with that circle in plan.
#include "sight.hpp"

using namespace quillon;

namespace {

struct Circle {
    double centre_x;
    double centre_y;
    double radius;
    bool clockwise; // sense of travel from P1: azimuths from the centre grow
};

// Circle through three points, its sense that of P1 -> P2 -> P3.
ResultCode circle_through(const SurveyPoint& P1, const SurveyPoint& P2, const SurveyPoint& P3,
                          Circle* circle)
{
    if (coincide_in_plan(P1, P2) || coincide_in_plan(P2, P3) || coincide_in_plan(P1, P3)) {
        return COINCIDENT;
    }
    const double bx = P2.X - P1.X;
    const double by = P2.Y - P1.Y;
    const double cx = P3.X - P1.X;
    const double cy = P3.Y - P1.Y;
    // With X north and Y east a positive cross product is a turn to the
    // right, clockwise seen from above.
    const double cross = bx * cy - by * cx;
    if (cross == 0.0) {
        return DOMAIN;
    }
    const double b2 = square(bx) + square(by);
    const double c2 = square(cx) + square(cy);
    const double d = 2.0 * cross;
    const double ux = (cy * b2 - by * c2) / d;
    const double uy = (bx * c2 - cx * b2) / d;
    const SurveyPoint centre = {P1.X + ux, P1.Y + uy, 0.0};
    circle->centre_x = centre.X;
    circle->centre_y = centre.Y;
    circle->radius = plan_distance(centre, P1);
    circle->clockwise = cross > 0.0;
    return OK;
}

// Circle through two points with a signed radius: the centre stands on the
// perpendicular bisector of the chord, right of P1 -> P2 for a positive
// radius (the arc turns clockwise), left for a negative one.
ResultCode circle_from_chord(const SurveyPoint& P1, const SurveyPoint& P2, double radius,
                             Circle* circle)
{
    if (coincide_in_plan(P1, P2)) {
        return COINCIDENT;
    }
    const double chord = plan_distance(P1, P2);
    if (chord == 0.0) {
        return COINCIDENT;
    }
    const double half_chord = chord / 2.0;
    // Also refuses a radius of 0 and a not-a-number.
    if (radius == 0.0 || !(std::fabs(radius) >= half_chord)) {
        return DOMAIN;
    }
    // The difference of the squares as a product: exact enough even when the
    // radius is a hair longer than half the chord and the centre sits a hair
    // off the chord's middle.
    const double rise =
        std::sqrt((std::fabs(radius) - half_chord) * (std::fabs(radius) + half_chord));
    // Unit vector of the chord; its right-hand normal is (-ey, ex).
    const double ex = (P2.X - P1.X) / chord;
    const double ey = (P2.Y - P1.Y) / chord;
    const double offset = radius > 0.0 ? rise : -rise;
    const double middle_x = (P1.X + P2.X) / 2.0;
    const double middle_y = (P1.Y + P2.Y) / 2.0;
    circle->centre_x = middle_x - offset * ey;
    circle->centre_y = middle_y + offset * ex;
    circle->radius = std::fabs(radius);
    circle->clockwise = radius > 0.0;
    return OK;
}

// The first crossing of the sight with the circle in plan, in front of the
// instrument: its distance t along the sight. BEHIND when the sight misses
// the circle or meets it only behind or at the instrument.
//
// |S + t s - C|^2 = R^2 in plan. The root of larger magnitude comes first
// without cancellation, the other from the product of the roots.
ResultCode first_crossing(const StationRecord& station, const SightVector& s, double plan_square,
                          const Circle& circle, double* t)
{
    const double fx = station.X - circle.centre_x;
    const double fy = station.Y - circle.centre_y;
    const double half_b = s.x * fx + s.y * fy;
    const double c = (square(fx) + square(fy)) - square(circle.radius);
    const double discriminant = square(half_b) - plan_square * c;
    if (!(discriminant >= 0.0)) {
        return BEHIND;
    }
    const double q = -(half_b + std::copysign(std::sqrt(discriminant), half_b));
    if (q == 0.0) {
        return BEHIND;
    }
    const double t1 = q / plan_square;
    const double t2 = c / q;
    const double near_t = std::fmin(t1, t2);
    const double far_t = std::fmax(t1, t2);
    if (near_t > 0.0) {
        *t = near_t;
    } else if (far_t > 0.0) {
        *t = far_t;
    } else {
        return BEHIND;
    }
    return OK;
}

// Length along the arc from P1 in its sense of travel to the point: the turn
// between the radii to P1 and to the point, in true radians from atan2, so
// that it runs on smoothly wherever the turn passes north of the centre.
double arc_length_to(const Circle& circle, const SurveyPoint& P1, const SurveyPoint& point)
{
    const double to_start_x = P1.X - circle.centre_x;
    const double to_start_y = P1.Y - circle.centre_y;
    const double to_point_x = point.X - circle.centre_x;
    const double to_point_y = point.Y - circle.centre_y;
    // Positive when the point lies clockwise of P1.
    const double turn = std::atan2(to_start_x * to_point_y - to_start_y * to_point_x,
                                   to_start_x * to_point_x + to_start_y * to_point_y);
    const double sweep = add_turn_if_negative<RadiansTruePi>(circle.clockwise ? turn : -turn);
    // Adding +0 leaves a turn of -0 as 0.
    return (sweep + 0.0) * circle.radius;
}

} // namespace

ResultCode LIB_ArcCalc(const StationRecord* station, const ArcDefinition* arc, ArcResult* out,
                       unsigned char mode)
{
    Circle circle = {0.0, 0.0, 0.0, true};
    ResultCode status = mode == 1 ? circle_from_chord(arc->P1, arc->P2, arc->Radius, &circle)
                                  : circle_through(arc->P1, arc->P2, arc->P3, &circle);
    if (status != OK) {
        return status;
    }
    const SightVector s = sight_vector(arc->Sight);
    // A plumb sight has no direction in plan.
    const double plan_square = square(s.x) + square(s.y);
    if (plan_square == 0.0) {
        return DOMAIN;
    }
    if (!in_range(circle.centre_x) || !in_range(circle.centre_y) || !in_range(circle.radius)) {
        return RANGE;
    }
    double t = 0.0;
    status = first_crossing(*station, s, plan_square, circle, &t);
    if (status != OK) {
        return status;
    }
    const SurveyPoint hit = point_along_sight(*station, s, t);
    if (!in_range(hit)) {
        return RANGE;
    }
    const SurveyPoint mark = {station->X, station->Y, station->H};
    out->CentreX = circle.centre_x;
    out->CentreY = circle.centre_y;
    out->Radius = circle.radius;
    out->X = hit.X;
    out->Y = hit.Y;
    out->H = hit.H;
    out->HorizontalDistance = plan_distance(mark, hit);
    out->SightDistance = sight_distance(*station, hit);
    out->ArcLength = arc_length_to(circle, arc->P1, hit);
    return OK;
}
