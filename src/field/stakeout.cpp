// Stakeout: what the person at the prism is told to move, by design distance
// and angle, by design coordinates, by design height and by equal divisions
// of a line.
#include "../core/core.hpp"

using namespace quillon;

ResultCode LIB_SO_DistAngle(const StationRecord* station, const DistanceRecord* measured,
                            const double* measured_angle, double design_distance,
                            double design_angle, SODistAngleResult* out,
                            unsigned char distance_type)
{
    // A height difference may be zero or negative; a distance may not.
    if (distance_type != 3 && design_distance <= 0.0) {
        return DOMAIN;
    }
    // The stakeout program may call without an angle or without a distance;
    // only the result record is required.
    if (design_angle < 0.0 || out == nullptr) {
        return DOMAIN;
    }
    if (measured_angle != nullptr) {
        if (!faces_differ(*station)) {
            out->AngleDifference = *measured_angle - design_angle;
        } else {
            // Face II: the half circle is taken off here (stakeout by
            // coordinates adds it).
            out->AngleDifference = (*measured_angle - design_angle) - HALF_CIRCLE;
        }
    }
    // Without an angle the caller's own value is folded.
    out->AngleDifference = fold_half_circle(out->AngleDifference);
    if (measured == nullptr) {
        return OK;
    }
    if (distance_type == 1) {
        out->DistanceDifference = measured->SlopeDistance - design_distance;
    } else if (distance_type == 2) {
        out->DistanceDifference = measured->HorizontalDistance - design_distance;
    } else if (distance_type == 3) {
        out->DistanceDifference =
            ((measured->VerticalDifference - design_distance) + station->InstrumentHeight) -
            station->TargetHeight;
    }
    return OK;
}

ResultCode LIB_SO_Coor(const StationRecord* station, const DistanceRecord* measured,
                       const double* measured_angle, const SurveyPoint* design, SOCoorResult* out)
{
    if (station->X == design->X && station->Y == design->Y && station->H == design->H) {
        return DOMAIN;
    }
    const SurveyPoint station_point = {station->X, station->Y, station->H};
    const double design_distance = plan_distance(station_point, *design);
    // A design point plumb over the station has no azimuth; 0 is used.
    const double azimuth = azimuth_or(station_point, *design, 0.0);

    if (!faces_differ(*station)) {
        out->AngleDifference = *measured_angle - azimuth;
    } else {
        // Face II: the half circle is added here (stakeout by distance and
        // angle subtracts it).
        out->AngleDifference = (*measured_angle - azimuth) + HALF_CIRCLE;
    }
    out->AngleDifference = fold_half_circle(out->AngleDifference);

    // A measured point beyond the range limit has no coordinates: it is
    // reported at the origin.
    SurveyPoint point = measured_point(*station, *measured, *measured_angle);
    if (!in_range(point)) {
        point = {0.0, 0.0, 0.0};
    }
    out->X = point.X;
    out->Y = point.Y;
    out->H = point.H;

    const double measured_distance = measured->HorizontalDistance;
    out->HorizontalDistanceDifference = measured_distance - design_distance;
    const double t = sec_to_rad(out->AngleDifference);
    out->ForwardDifference = measured_distance - std::cos(t) * design_distance;
    out->LateralDifference = std::sin(t) * design_distance;
    out->HeightDifference = point.H - design->H;
    return OK;
}

ResultCode LIB_SO_Height(const StationRecord* station, const DistanceRecord* measured,
                         const double* angles, double design_height, double* out)
{
    const double zenith = angles[1];
    double elevation = 0.0;
    if (zenith <= HALF_CIRCLE) {
        elevation = QUARTER_CIRCLE - zenith;
    } else {
        elevation = zenith - THREE_QUARTER_CIRCLE;
    }
    const double rise = (measured->HorizontalDistance * std::tan(sec_to_rad(elevation))) -
                        measured->VerticalDifference;
    *out = design_height - (rise + station->TargetHeight);
    if (!in_range(*out)) {
        return RANGE;
    }
    return OK;
}

ResultCode LIB_SO_Divide(const double* lengths, const double* directions,
                         const unsigned char* counts, SODivideResult* out)
{
    const unsigned char divisions = counts[0];
    const unsigned char index = counts[1];
    if (divisions > 99 || divisions == 0) {
        return DOMAIN;
    }
    // Up to twice the line's length can be set out.
    if (index > 198 || index == 0) {
        return DOMAIN;
    }
    const double line_length = lengths[0];
    const double measured_distance = lengths[1];
    const double angle_difference = fold_half_circle(directions[1] - directions[0]);
    const double design_distance =
        (static_cast<double>(index) * line_length) / static_cast<double>(divisions);
    const double t = sec_to_rad(angle_difference);
    out->LateralDifference = std::sin(t) * design_distance;
    out->AngleDifference = angle_difference;
    out->ForwardDifference = measured_distance - std::cos(t) * design_distance;
    return OK;
}
