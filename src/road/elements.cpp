// The horizontal elements one at a time: straights, circular arcs and
// clothoid transition curves evaluated at a distance along them.
#include "horizontal.hpp"

using namespace quillon;
using namespace quillon::road;

namespace {

// A computed plan point is delivered only when both coordinates are in range.
ResultCode deliver(double X, double Y, PlanePoint* out)
{
    if (!in_range(X) || !in_range(Y)) {
        return RANGE;
    }
    out->X = X;
    out->Y = Y;
    return OK;
}

ResultCode deliver_azimuth(double radians, double* azimuth)
{
    const double seconds = rad_to_sec(radians);
    if (!azimuth_accepted(seconds)) {
        return RANGE;
    }
    *azimuth = seconds;
    return OK;
}

// The clothoid at curve length l from its curvature-zero end, by the series
// truncated after three terms; L is the parameter length after which the
// radius is R.
ClothoidChord clothoid_at(double l, double R, double L)
{
    const double x = l - std::pow(l, 5) / (40 * square(R) * square(L)) +
                     std::pow(l, 9) / (3456 * std::pow(R, 4) * std::pow(L, 4));
    const double y = std::pow(l, 3) / (6 * R * L) -
                     std::pow(l, 7) / (336 * std::pow(R, 3) * std::pow(L, 3)) +
                     std::pow(l, 11) / (42240 * std::pow(R, 5) * std::pow(L, 5));
    return chord_of(x, y);
}

} // namespace

ResultCode LIB_CalWay_H_Line_On(const HElement* element, double l, PlanePoint* out)
{
    const double a0 = sec_to_rad(element->Azimuth);
    const double X = element->X + l * std::cos(a0);
    const double Y = element->Y + l * std::sin(a0);
    return deliver(X, Y, out);
}

ResultCode LIB_CalWay_H_Circle_On(const HElement* element, double l, PlanePoint* out)
{
    const double a0 = sec_to_rad(element->Azimuth);
    const double R = element->Radius;
    // The chord leaves the tangent by half the central angle.
    const double f = (l / R) * 0.5;
    double t = 0.0;
    if (element->Turn == TURN_RIGHT) {
        t = a0 + f;
    } else if (element->Turn == TURN_LEFT) {
        t = a0 - f;
    } else {
        // An unknown direction is no error: the origin is delivered.
        out->X = 0.0;
        out->Y = 0.0;
        return OK;
    }
    const double c = 2 * R * std::sin(f);
    const double X = element->X + c * std::cos(t);
    const double Y = element->Y + c * std::sin(t);
    return deliver(X, Y, out);
}

ResultCode LIB_CalWay_H_Curve_On(const HElement* element, double l, PlanePoint* out)
{
    const double a0 = sec_to_rad(element->Azimuth);
    const ClothoidChord chord = clothoid_at(l, element->Radius, element->Length);
    const double c = chord.chord;
    const double d = chord.deflection;
    // An exit curve is set out backward from its far end, so it deflects to
    // the other side of the backward azimuth.
    double t = a0;
    if (element->Spiral == ENTRY) {
        if (element->Turn == TURN_LEFT) {
            t = a0 - d;
        } else if (element->Turn == TURN_RIGHT) {
            t = a0 + d;
        }
    } else if (element->Spiral == EXIT) {
        if (element->Turn == TURN_LEFT) {
            t = a0 + d;
        } else if (element->Turn == TURN_RIGHT) {
            t = a0 - d;
        }
    }
    const double X = element->X + c * std::cos(t);
    const double Y = element->Y + c * std::sin(t);
    return deliver(X, Y, out);
}

ResultCode LIB_CalWay_H_Circle_AZ(const HElement* element, double l, double* azimuth)
{
    const double a0 = sec_to_rad(element->Azimuth);
    const double g = l / element->Radius;
    double a = 0.0;
    if (element->Turn == TURN_RIGHT) {
        a = take_turn_if_above<RadiansShortPi>(a0 + g);
    } else if (element->Turn == TURN_LEFT) {
        a = add_turn_if_negative<RadiansShortPi>(a0 - g);
    }
    return deliver_azimuth(a, azimuth);
}

ResultCode LIB_CalWay_H_Curve_AZ(const HElement* element, double l, double* azimuth)
{
    const double a0 = sec_to_rad(element->Azimuth);
    // The tangent's turn is exact, not a series.
    const double g = square(l) / (2 * element->Radius * element->Length);
    double a = 0.0;
    if (element->Spiral == ENTRY) {
        if (element->Turn == TURN_RIGHT) {
            a = take_turn_if_above<RadiansShortPi>(a0 + g);
        } else if (element->Turn == TURN_LEFT) {
            a = add_turn_if_negative<RadiansShortPi>(a0 - g);
        }
    } else if (element->Spiral == EXIT) {
        // a0 is the backward azimuth at the far end; the half turn makes the
        // result the forward azimuth.
        if (element->Turn == TURN_RIGHT) {
            a = fold_once_into_closed_turn<RadiansShortPi>(a0 - g + HALF_TURN_RAD_SHORT_PI);
        } else if (element->Turn == TURN_LEFT) {
            // Only the fold from above: a negative sum stays negative and is
            // refused below.
            a = take_turn_if_above<RadiansShortPi>(a0 + g + HALF_TURN_RAD_SHORT_PI);
        }
    }
    return deliver_azimuth(a, azimuth);
}

ResultCode LIB_CalWay_H_Curve_End(const HElement* element, TangentPoint* out)
{
    const double a0 = sec_to_rad(element->Azimuth);
    const double R = element->Radius;
    const double L = element->Length;
    // The series at l = L, reduced by hand.
    const double x =
        L - std::pow(L, 3) / (40 * square(R)) + std::pow(L, 5) / (3456 * std::pow(R, 4));
    const double y = square(L) / (6 * R) - std::pow(L, 4) / (336 * std::pow(R, 3)) +
                     std::pow(L, 6) / (42240 * std::pow(R, 5));
    const ClothoidChord chord = chord_of(x, y);
    const double c = chord.chord;
    const double d = chord.deflection;
    const double g = L / (2 * R);
    if (element->Turn != TURN_RIGHT && element->Turn != TURN_LEFT) {
        out->X = 0.0;
        out->Y = 0.0;
        out->Azimuth = 0.0;
        return OK;
    }
    double e = 0.0;
    if (element->Turn == TURN_RIGHT) {
        e = take_turn_if_above<RadiansShortPi>(a0 + g);
    } else {
        e = add_turn_if_negative<RadiansShortPi>(a0 - g);
    }
    const double b = take_turn_if_above<RadiansShortPi>(e + HALF_TURN_RAD_SHORT_PI);
    double t = 0.0;
    if (element->Turn == TURN_RIGHT) {
        t = b - d;
    } else {
        t = b + d;
    }
    // Seen from the far end the start lies at chord c in direction t.
    const double X = element->X - c * std::cos(t);
    const double Y = element->Y - c * std::sin(t);
    if (!in_range(X) || !in_range(Y)) {
        return RANGE;
    }
    out->X = X;
    out->Y = Y;
    // The end azimuth is delivered as it falls, untested.
    out->Azimuth = rad_to_sec(e);
    return OK;
}
