// Offset measurements by angle and by distance: points that cannot be
// sighted directly, found from a measured or known reference point.
#include "../core/core.hpp"
#include "sighting.hpp"

using namespace quillon;

ResultCode LIB_OS_Angle(const StationRecord* station, const DistanceRecord* measured,
                        const double* angles, SurveyPoint* known, DistAngleRecord* out,
                        unsigned char mode)
{
    double horizontal_distance = 0.0;
    if (mode == 1) {
        // The caller's known point is raised in place, on every call.
        known->H = known->H + station->TargetHeight;
        const SurveyPoint instrument = {station->X, station->Y, station->H};
        horizontal_distance = plan_distance(instrument, *known);
    } else {
        horizontal_distance = measured->HorizontalDistance;
    }

    const double horizontal_angle = angles[0];
    const double zenith_angle = angles[1];
    const double z = sec_to_rad(zenith_angle);
    const double slope_distance = std::fabs(horizontal_distance / std::sin(z));
    const double vertical_difference = std::cos(z) * slope_distance;

    const DistanceRecord centre = {slope_distance, horizontal_distance, vertical_difference, 0.0};
    // X, Y or H beyond the range limit (a zenith angle of 0 makes the slope
    // distance infinite): the point has no coordinates.
    const SurveyPoint point = measured_point(*station, centre, horizontal_angle);
    if (!in_range(point)) {
        return RANGE;
    }
    out->X = point.X;
    out->Y = point.Y;
    out->H = point.H;
    out->SlopeDistance = slope_distance;
    out->HorizontalDistance = horizontal_distance;
    out->HeightDifference = vertical_difference;
    out->Azimuth = horizontal_angle;
    out->ZenithAngle = zenith_angle;
    return OK;
}

ResultCode LIB_OS_Dist1(const StationRecord* station, const DistanceRecord* measured,
                        const double* measured_angle, const SurveyPoint* known,
                        const double* offsets, DistAngleRecord* out, unsigned char mode)
{
    SurveyPoint reference = {0.0, 0.0, 0.0};
    double azimuth = 0.0;
    if (mode == 0) {
        reference = measured_point(*station, *measured, *measured_angle);
        // A measured point beyond the range limit has no coordinates.
        if (!in_range(reference)) {
            return RANGE;
        }
        azimuth = *measured_angle;
        if (faces_differ(*station)) {
            azimuth = turn_reading_half_circle(azimuth);
        }
    } else if (mode == 1) {
        const SurveyPoint station_point = {station->X, station->Y, station->H};
        reference = *known;
        if (coincide_in_plan(station_point, *known)) {
            return DOMAIN;
        }
        azimuth = azimuth_between(station_point, *known);
    } else {
        // No reference point is defined for any other mode.
        return DOMAIN;
    }

    const double right = offsets[0];
    const double forward = offsets[1];
    const double height = offsets[2];
    const double a = sec_to_rad(azimuth);
    out->X = (forward * std::cos(a) + reference.X) - right * std::sin(a);
    out->Y = (right * std::cos(a) + forward * std::sin(a)) + reference.Y;
    out->H = height + reference.H;
    // The point stays written when it is out of range.
    const SurveyPoint point = {out->X, out->Y, out->H};
    if (!in_range(point)) {
        return RANGE;
    }
    return sight_offset_point(*station, point, out);
}

ResultCode LIB_OS_Dist2(const StationRecord* station, const SurveyPoint* line, double extension,
                        DistAngleRecord* out)
{
    const SurveyPoint& a = line[0];
    const SurveyPoint& b = line[1];
    if (b.X == a.X && b.Y == a.Y && b.H == a.H) {
        return DOMAIN;
    }
    const double f = 1.0 / spatial_distance(a, b);
    const SurveyPoint point = {((b.X - a.X) * f) * extension + b.X,
                               ((b.Y - a.Y) * f) * extension + b.Y,
                               ((b.H - a.H) * f) * extension + b.H};
    if (!in_range(point)) {
        return RANGE;
    }
    out->X = point.X;
    out->Y = point.Y;
    out->H = point.H;
    return sight_offset_point(*station, point, out);
}
