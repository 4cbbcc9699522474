#include "sighting.hpp"

#include "../core/core.hpp"

namespace quillon {

double turn_reading_half_circle(double reading)
{
    return take_turn_if_above<ArcSeconds>(reading + HALF_CIRCLE);
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
