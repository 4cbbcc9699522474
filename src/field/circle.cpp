// The circle through three points in plan, and a list of its points across
// a band of eastings.
#include "../core/core.hpp"

#include <cstdint>

using namespace quillon;

namespace {

struct PlanCircle {
    double Xc;
    double Yc;
    double R;
};

// The centre from the perpendicular bisectors, by one of two formulas for
// its easting. DOMAIN for three points on one line (their slopes from P1
// compared exactly), all on one northing or one easting, or where neither
// formula applies.
ResultCode circle_through(const SurveyPoint* pts, PlanCircle* circle)
{
    const double X1 = pts[0].X;
    const double Y1 = pts[0].Y;
    const double X2 = pts[1].X;
    const double Y2 = pts[1].Y;
    const double X3 = pts[2].X;
    const double Y3 = pts[2].Y;
    if (X1 != X2 && X1 != X3) {
        if ((Y1 - Y2) / (X1 - X2) == (Y1 - Y3) / (X1 - X3)) {
            return DOMAIN;
        }
    }
    if (X1 == X2 && X1 == X3) {
        return DOMAIN;
    }
    if (Y1 == Y2 && Y1 == Y3) {
        return DOMAIN;
    }

    const double numerator =
        (square(X2) - square(X3)) * (Y2 - Y1) - (Y3 - Y2) * (square(X1) - square(X2)) -
        (Y3 - Y2) * (square(Y1) - square(Y2)) + (square(Y2) - square(Y3)) * (Y2 - Y1);
    const double denominator = 2.0 * ((Y3 - Y2) * (X2 - X1) - (X3 - X2) * (Y2 - Y1));
    const double Xc = numerator / denominator;
    double Yc = 0.0;
    if (Y2 - Y1 != 0.0) {
        Yc = (-(square(X1) - square(X2)) - 2.0 * Xc * (X2 - X1) - (square(Y1) - square(Y2))) /
             (2.0 * (Y2 - Y1));
    } else {
        if (Y3 - Y2 == 0.0) {
            return DOMAIN;
        }
        Yc = (-(square(X2) - square(X3)) - (square(Y2) - square(Y3)) - 2.0 * Xc * (X3 - X2)) /
             (2.0 * (Y3 - Y2));
    }
    circle->Xc = Xc;
    circle->Yc = Yc;
    circle->R = std::sqrt(square(Xc - X1) + square(Yc - Y1));
    return OK;
}

// True when stepping from start by step reaches end within room pairs. Far
// from the origin a step smaller than the spacing of doubles is lost in the
// addition and the walk stands still, or is rounded short and takes more
// steps than the caller made room for; a negative step walks away from the
// end.
bool list_fits(double start, double end, double step, std::int64_t room)
{
    double y = start;
    for (std::int64_t listed = 1; listed <= room; ++listed) {
        const double next = y + step;
        if (next >= end) {
            return true;
        }
        if (next == y) {
            return false;
        }
        y = next;
    }
    return false;
}

// The pairs of points of the circle at eastings from start by step up to
// end. Beyond the radius the square root is not a number; such pairs are
// listed as they come.
void list_points(const PlanCircle& circle, double start, double end, double step,
                 CirclePointPair* list)
{
    CirclePointPair* pair = list;
    double y = start;
    do {
        const double dy = y - circle.Yc;
        const double w = std::sqrt(square(circle.R) - square(dy));
        pair->FirstX = circle.Xc + w;
        pair->FirstY = y;
        pair->SecondX = circle.Xc - w;
        pair->SecondY = y;
        ++pair;
        y = y + step;
    } while (!(y >= end));
}

} // namespace

ResultCode LIB_CalCircle(const SurveyPoint* pts, double* radius, double* centre,
                         CirclePointPair* list, std::int32_t count, unsigned char mode)
{
    PlanCircle circle = {0.0, 0.0, 0.0};
    if (circle_through(pts, &circle) != OK) {
        return DOMAIN;
    }
    *radius = circle.R;
    centre[0] = circle.Xc;
    centre[1] = circle.Yc;
    if (mode != 1) {
        return OK;
    }
    // The listed band is +/- the earth radius about the centre's easting,
    // whatever the circle's radius.
    const double start = circle.Yc - EARTH_RADIUS;
    const double end = circle.Yc + EARTH_RADIUS;
    const double step = (end - start) / static_cast<double>(count);
    if (!(start < end)) {
        return OK;
    }
    // A list that would never end (a negative count, or a step lost in
    // rounding far from the origin) or would overrun the caller's count + 1
    // pairs is refused before any pair is written; the radius and centre stand.
    const std::int64_t room = static_cast<std::int64_t>(count) + 1;
    if (!list_fits(start, end, step, room)) {
        return DOMAIN;
    }
    list_points(circle, start, end, step, list);
    return OK;
}
