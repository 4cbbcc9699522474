// Sighting an offset point from the instrument: shared by the offset
// programs (by distance, by slope distance, by horizontal angle).
#ifndef QUILLON_FIELD_SIGHTING_HPP
#define QUILLON_FIELD_SIGHTING_HPP

#include "quillon.h"

namespace quillon {

// A horizontal reading turned through the faces: a half circle is added and a
// full circle taken off only when the sum is strictly above 1296000, so a
// reading of exactly 648000 comes out as 1296000.
double turn_reading_half_circle(double reading);

// Slope and horizontal distance, height difference, azimuth and zenith angle
// from the instrument (station X, Y, instrument height + station H) to the
// point as sighted (target height + point H), with the station's signB as the
// face byte; the azimuth is turned when the faces differ. The point's X, Y, H
// fields of out are not touched. Returns 3 when the point lies plumb over or
// under the instrument, or when a distance or the height difference of the
// sight is beyond the range limit (the distances and height difference stay
// written in both cases).
ResultCode sight_offset_point(const StationRecord& station, const SurveyPoint& point,
                              DistAngleRecord* out);

} // namespace quillon

#endif
