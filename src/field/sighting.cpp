#include "sighting.hpp"

#include "../core/core.hpp"

namespace quillon {

double turn_reading_half_circle(double reading)
{
    double turned = reading + HALF_CIRCLE;
    // Strictly greater: a full circle itself is kept as it is.
    if (turned > FULL_CIRCLE) {
        turned = turned - FULL_CIRCLE;
    }
    return turned;
}

ResultCode sight_offset_point(const StationRecord& station, const SurveyPoint& point,
                              DistAngleRecord* out)
{
    const SurveyPoint instrument = {station.X, station.Y, station.InstrumentHeight + station.H};
    const SurveyPoint target = {point.X, point.Y, station.TargetHeight + point.H};
    const unsigned char face = static_cast<unsigned char>(station.signB);
    if (LIB_CalDistAngle(&instrument, &target, face, out) != OK) {
        return COINCIDENT;
    }
    if (faces_differ(station)) {
        out->Azimuth = turn_reading_half_circle(out->Azimuth);
    }
    return OK;
}

} // namespace quillon
