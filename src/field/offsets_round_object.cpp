// Offset to a round object that cannot be occupied: its centre from the two
// edge sightings and a distance measured on its face.
#include "../core/core.hpp"
#include "sighting.hpp"

using namespace quillon;

ResultCode LIB_OS_Round(const StationRecord* station, const DistanceRecord* measured,
                        const AngleObservation* obs, double radius, DistAngleRecord* out,
                        double* computed_radius)
{
    // The right-hand edge is the one reached turning clockwise by less than a
    // half circle from the other.
    const double a = obs[1].Horizontal;
    const double b = obs[0].Horizontal;
    double right_edge = b;
    double left_edge = a;
    if ((a > b && a - b < HALF_CIRCLE) || (a <= b && b - a >= HALF_CIRCLE)) {
        right_edge = a;
        left_edge = b;
    }
    const double half = short_way_round(std::fabs(right_edge - left_edge)) * 0.5;

    // g: the measured sighting off the bisector of the edges.
    const double e = short_way_round(std::fabs(right_edge - obs[2].Horizontal));
    double g = half - e;
    if (e > half) {
        g = e - half;
    }
    // beta: the angle at the face point between the station and the centre,
    // the obtuse solution of the sine rule.
    const double beta =
        HALF_CIRCLE - rad_to_sec(std::asin(std::sin(sec_to_rad(g)) / std::sin(sec_to_rad(half))));
    const double D =
        ((measured->HorizontalDistance + radius) / std::sin(sec_to_rad(HALF_CIRCLE - g - beta))) *
        std::sin(sec_to_rad(beta));

    const double azimuth = add_turn_if_negative<ArcSeconds>(right_edge - half);
    const double X = station->X + std::cos(sec_to_rad(azimuth)) * D;
    const double Y = station->Y + std::sin(sec_to_rad(azimuth)) * D;
    const double H = measured->VerticalDifference + station->InstrumentHeight + station->H -
                     station->TargetHeight;
    // A sighting on the bisector or coincident edges leave D not finite; the
    // range test refuses it like any other stray value.
    const SurveyPoint centre = {X, Y, H};
    if (!in_range(centre)) {
        return RANGE;
    }

    const SurveyPoint instrument = {station->X, station->Y, station->H + station->InstrumentHeight};
    const SurveyPoint target = {X, Y, H + station->TargetHeight};
    if (LIB_CalDistAngle(&instrument, &target, static_cast<unsigned char>(station->signB), out) !=
        OK) {
        return COINCIDENT;
    }
    out->X = X;
    out->Y = Y;
    out->H = target.H - station->TargetHeight;
    // Turned through the faces, the azimuth is the bisector's reading, not the
    // azimuth computed from the coordinates.
    if (faces_differ(*station)) {
        out->Azimuth = turn_reading_half_circle(azimuth);
    }
    *computed_radius = std::sin(sec_to_rad(half)) * D;
    return OK;
}
