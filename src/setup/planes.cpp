// A sighting without a distance met by a known plane: a vertical plane through
// two points, or a slope plane through three.
#include "sight.hpp"

using namespace quillon;

namespace {

// The intersection must lie in the direction of the reading, reduced to face
// I, within one second. The difference is not folded at the end of the
// circle, so an azimuth just past 0 against a reading just short of a full
// circle fails.
bool lies_along_sight(const StationRecord& station, const AngleObservation& sight,
                      const SurveyPoint& point)
{
    const double reduced = face_i_reading(station, sight.Horizontal);
    const SurveyPoint mark = {station.X, station.Y, station.H};
    const double azimuth = azimuth_or(mark, point, 0.0);
    return std::fabs(azimuth - reduced) <= SIGHT_DIRECTION_TOLERANCE;
}

} // namespace

ResultCode LIB_VPlane(const StationRecord* station, const AngleObservation* sight,
                      const SurveyPoint* planePts, PlaneHitRecord* out)
{
    const SurveyPoint& P1 = planePts[0];
    const SurveyPoint& P2 = planePts[1];
    const SurveyPoint mark = {station->X, station->Y, station->H};
    // A plane point plumb over the station has no direction; its azimuth
    // stays 0.
    const double az1 = azimuth_or(mark, P1, 0.0);
    const double az2 = azimuth_or(mark, P2, 0.0);
    // The plane contains the line of sight through the station.
    if (az1 == az2) {
        return COINCIDENT;
    }
    if (std::fabs(az1 - az2) == HALF_CIRCLE) {
        return COINCIDENT;
    }
    if (P1.X == P2.X && P1.Y == P2.Y) {
        return DOMAIN;
    }

    const SightVector s = sight_vector(*sight);
    double t = 0.0;
    double X = 0.0;
    double Y = 0.0;
    if (P1.X == P2.X) {
        // Plane running east-west.
        t = (P1.X - station->X) / s.x;
        X = P1.X;
        Y = t * s.y + station->Y;
    } else if (P1.Y == P2.Y) {
        // Plane running north-south.
        t = (P1.Y - station->Y) / s.y;
        X = t * s.x + station->X;
        Y = P1.Y;
    } else {
        // The plane's trace as k X + c Y = k c, with c its X where Y is 0. A
        // trace through the origin makes both 0; that is not guarded.
        const double c = P1.X - ((P1.X - P2.X) * P1.Y) / (P1.Y - P2.Y);
        const double k = -((P1.Y - P2.Y) / (P1.X - P2.X)) * c;
        t = ((k * c - k * station->X) - c * station->Y) / (c * s.y + k * s.x);
        X = t * s.x + station->X;
        Y = t * s.y + station->Y;
    }
    if (!lies_along_sight(*station, *sight, SurveyPoint{X, Y, 0.0})) {
        return BEHIND;
    }
    const double H = t * s.z + station->InstrumentHeight + station->H;
    const SurveyPoint hit = {X, Y, H};
    if (!in_range(hit)) {
        return RANGE;
    }
    out->X = X;
    out->Y = Y;
    out->H = H;
    out->SightDistance = sight_distance(*station, hit);
    out->PlaneAlong = line_components(P1, P2, hit).along;
    out->PlaneOffset = H - P1.H;
    return OK;
}

ResultCode LIB_SPlane(const StationRecord* station, const AngleObservation* sight,
                      const SurveyPoint* planePts, PlaneHitRecord* out)
{
    const SurveyPoint& P1 = planePts[0];
    const SurveyPoint& P2 = planePts[1];
    const SurveyPoint& P3 = planePts[2];
    const double dX2 = P2.X - P1.X;
    const double dY2 = P2.Y - P1.Y;
    const double dH2 = P2.H - P1.H;
    const double dX3 = P3.X - P1.X;
    const double dY3 = P3.Y - P1.Y;
    const double dH3 = P3.H - P1.H;
    const double nX = dY2 * dH3 - dH2 * dY3;
    const double nY = dX3 * dH2 - dX2 * dH3;
    const double nH = dX2 * dY3 - dX3 * dY2;

    const SightVector s = sight_vector(*sight);
    // Zero for a sight parallel to the plane and for collinear plane points.
    const double denom = nH * s.z + nY * s.y + nX * s.x;
    if (denom == 0.0) {
        return COINCIDENT;
    }
    const double t =
        -((-(P1.X * nX + P1.Y * nY + P1.H * nH)) + (station->InstrumentHeight + station->H) * nH +
          nY * station->Y + nX * station->X) /
        denom;
    const SurveyPoint hit = point_along_sight(*station, s, t);
    if (!lies_along_sight(*station, *sight, hit)) {
        return BEHIND;
    }
    // Only the northing is tested here.
    if (!in_range(hit.X)) {
        return RANGE;
    }

    // Position within the plane: the cosine rule in the triangle P1, P2,
    // point gives the foot on P1-P2 and the distance from that line.
    const double a = spatial_distance(P1, hit);
    const double c = spatial_distance(P1, P2);
    const double b = spatial_distance(P2, hit);
    const double cosA = 0.5 * (c / a + a / c) - 0.5 * (b * b) / (a * c);
    const double along = cosA * a;
    double offset = std::sqrt(square(a) - square(along));
    const double w = azimuth_or(P1, hit, 0.0) - azimuth_or(P1, P2, 0.0);
    // Left of P1 -> P2 is negative; w at exactly 0 or -648000 counts as right.
    if ((-HALF_CIRCLE < w && w < 0.0) || w > HALF_CIRCLE) {
        offset = -offset;
    }
    out->X = hit.X;
    out->Y = hit.Y;
    out->H = hit.H;
    out->SightDistance = sight_distance(*station, hit);
    out->PlaneAlong = along;
    out->PlaneOffset = offset;
    return OK;
}
