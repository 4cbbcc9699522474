// Offsets along the line of sight (a point in front of or behind the prism)
// and by horizontal angle (where a sight meets a wall or kerb line).
#include "../core/core.hpp"
#include "sighting.hpp"

using namespace quillon;

ResultCode LIB_OS_SDist(const StationRecord* station, const DistanceRecord* measured,
                        const double* angles, SurveyPoint* known, double offset, double* out,
                        unsigned char mode)
{
    double slope_distance = 0.0;
    double horizontal_distance = 0.0;
    double vertical_difference = 0.0;
    double horizontal_angle = 0.0;
    double zenith = 0.0;
    if (mode == 1) {
        const SurveyPoint instrument = {station->X, station->Y,
                                        station->H + station->InstrumentHeight};
        // The caller's known point is raised by the target height, on every call.
        known->H = known->H + station->TargetHeight;
        const DistAngleRecord sight =
            sight_between(instrument, *known, static_cast<unsigned char>(station->signB));
        slope_distance = sight.SlopeDistance;
        horizontal_distance = sight.HorizontalDistance;
        vertical_difference = sight.HeightDifference;
        horizontal_angle = sight.Azimuth;
        zenith = sight.ZenithAngle;
        if (faces_differ(*station)) {
            horizontal_angle = turn_reading_half_circle(horizontal_angle);
        }
    } else {
        slope_distance = measured->SlopeDistance;
        horizontal_distance = measured->HorizontalDistance;
        vertical_difference = measured->VerticalDifference;
        horizontal_angle = angles[0];
        zenith = angles[1];
    }

    // The side is decided by the measured slope distance, even when the
    // working distances come from the known point.
    if (measured->SlopeDistance < -offset) {
        // Beyond the instrument: the sight is turned round and tipped over.
        horizontal_angle = turn_reading_half_circle(horizontal_angle);
        if (station->signB == 1) {
            zenith = HALF_CIRCLE - zenith;
        } else {
            zenith = FULL_CIRCLE - (zenith - HALF_CIRCLE);
        }
        slope_distance = std::fabs(slope_distance + offset);
        horizontal_distance = std::fabs(std::sin(sec_to_rad(zenith)) * slope_distance);
        vertical_difference = std::cos(sec_to_rad(zenith)) * slope_distance;
    } else {
        const double z = sec_to_rad(zenith);
        slope_distance = slope_distance + offset;
        horizontal_distance = std::fabs(std::sin(z)) * offset + horizontal_distance;
        vertical_difference = std::cos(z) * offset + vertical_difference;
    }

    const DistanceRecord reduced = {slope_distance, horizontal_distance, vertical_difference, 0.0};
    // An X, Y or H out of range (an infinite slope distance among them): the
    // point is undefined and nothing is written.
    const SurveyPoint point = measured_point(*station, reduced, horizontal_angle);
    if (!in_range(point)) {
        return RANGE;
    }
    out[0] = point.X;
    out[1] = point.Y;
    out[2] = point.H;
    out[3] = slope_distance;
    out[4] = horizontal_distance;
    out[5] = vertical_difference;
    out[6] = horizontal_angle;
    out[7] = zenith;
    return OK;
}

ResultCode LIB_OS_Ha(const StationRecord* station, const SurveyPoint* line, double horizontal_angle,
                     DistAngleRecord* out)
{
    const SurveyPoint S = {station->X, station->Y, station->H};
    const SurveyPoint& P1 = line[0];
    const SurveyPoint& P2 = line[1];
    // A line point on the station puts the line through the station.
    if (coincide_in_plan(S, P1) || coincide_in_plan(S, P2)) {
        return COINCIDENT;
    }
    const double az1 = azimuth_between(S, P1);
    const double az2 = azimuth_between(S, P2);
    if (az1 == az2 || std::fabs(az1 - az2) == HALF_CIRCLE) {
        return COINCIDENT;
    }

    const double dX = P2.X - P1.X;
    const double m = (P2.Y - P1.Y) / dX;
    const double t = std::tan(sec_to_rad(horizontal_angle));
    // A line of constant northing has no finite slope, and a sight parallel
    // to the line never meets it: neither has a crossing to report.
    if (dX == 0.0 || t == m) {
        return RANGE;
    }

    const double X = (((t * S.X) + P1.Y) - S.Y - P1.X * m) / (t - m);
    const double Y = (X - P1.X) * m + P1.Y;
    const double H = ((X - P2.X) * (P2.H - P1.H)) / dX + P2.H;
    const SurveyPoint point = {X, Y, H};

    if (coincide_in_plan(S, point)) {
        return COINCIDENT;
    }
    const double azP = azimuth_between(S, point);
    const double reading = face_i_reading(*station, horizontal_angle);
    // The tangent is the same both ways along the sight; only the azimuth
    // tells the crossing ahead from the one behind.
    if (std::fabs(azP - reading) > SIGHT_DIRECTION_TOLERANCE) {
        return BEHIND;
    }
    if (!in_range(point)) {
        return RANGE;
    }

    out->X = X;
    out->Y = Y;
    out->H = H;
    return sight_offset_point(*station, point, out);
}
