// The missing line between two points measured from one station: its
// distances, grade and azimuth.
#include "../core/core.hpp"

using namespace quillon;

ResultCode LIB_MissLine(const StationRecord* station, const DistanceRecord* measured,
                        const double* angles, double first_target_height,
                        double second_target_height, MissLineResult* out)
{
    const double HD1 = measured[0].HorizontalDistance;
    const double VD1 = measured[0].VerticalDifference;
    const double HD2 = measured[1].HorizontalDistance;
    const double VD2 = measured[1].VerticalDifference;
    const double HA1 = angles[0];
    const double HA2 = angles[3];

    const double angle_between = short_way_round(std::fabs(HA1 - HA2));
    // Law of cosines in the triangle station - first point - second point.
    const double D = std::sqrt((square(HD2) + square(HD1)) -
                               ((std::cos(sec_to_rad(angle_between)) * HD2) * HD1) * 2.0);
    if (D == 0.0) {
        return COINCIDENT;
    }
    const double dH = (VD2 - VD1) - (second_target_height - first_target_height);
    out->SlopeDistance = std::sqrt(square(dH) + square(D));
    out->HorizontalDistance = D;
    out->HeightDifference = dH;
    out->Grade = (dH / D) * 100.0;

    // The angle at the first point is cut to whole seconds, so the azimuth
    // carries only the fraction of the first horizontal angle.
    const double g = whole_seconds(
        rad_to_sec(std::acos(((square(HD1) + square(D)) - square(HD2)) / ((HD1 * D) * 2.0))));
    const double s = HA2 - HA1;
    if (0.0 < s && s <= HALF_CIRCLE) {
        out->Azimuth = (HA1 + HALF_CIRCLE) - g;
    } else if (s > HALF_CIRCLE || (-HALF_CIRCLE < s && s < 0.0)) {
        out->Azimuth = (HA1 + g) + HALF_CIRCLE;
    } else if (s <= -HALF_CIRCLE) {
        out->Azimuth = (HA1 - HALF_CIRCLE) - g;
    }
    // Both points in one direction: no azimuth is computed and the caller's
    // value goes through the folds below.
    out->Azimuth = take_turn_if_above<ArcSeconds>(out->Azimuth);
    out->Azimuth = face_i_reading(*station, out->Azimuth);
    return OK;
}
