// Face status, sums, distances, azimuths, polar points and the components of
// a point against a line: the primitives that every other family calls.
#include "core.hpp"

namespace quillon {

LineComponents line_components(const SurveyPoint& A, const SurveyPoint& B, const SurveyPoint& P)
{
    const double azAB = azimuth_between(A, B);
    const double azAP = azimuth_or(A, P, 0.0);
    const double D = plan_distance(A, P);
    // Only the sine and cosine of the angle are used, so it needs no fold.
    const double t = sec_to_rad(azAP - azAB);
    return {std::cos(t) * D, std::sin(t) * D};
}

ProjectionRecord projection_on_line(const SurveyPoint& A, const SurveyPoint& B,
                                    const SurveyPoint& P)
{
    const LineComponents components = line_components(A, B, P);
    const double along = components.along;
    const double f = 1.0 / plan_distance(A, B);
    const double foot_x = ((B.X - A.X) * f) * along + A.X;
    const double foot_y = ((B.Y - A.Y) * f) * along + A.Y;
    const double foot_h = ((B.H - A.H) * f) * along + A.H;
    return {foot_x, foot_y, foot_h, components.across, along, P.H - foot_h};
}

SurveyPoint measured_point(const StationRecord& station, const DistanceRecord& distances,
                           double azimuth)
{
    const double a = sec_to_rad(azimuth);
    const int f = face_factor(station);
    const double d = f * distances.HorizontalDistance;
    const double X = d * std::cos(a) + station.X;
    const double Y = d * std::sin(a) + station.Y;
    const double H = ((station.InstrumentHeight + distances.VerticalDifference) + station.H) -
                     station.TargetHeight;
    return {X, Y, H};
}

SurveyPoint polar_point(const SurveyPoint& from, double azimuth, double distance,
                        double height_difference)
{
    const double a = sec_to_rad(azimuth);
    const double X = std::cos(a) * distance + from.X;
    const double Y = std::sin(a) * distance + from.Y;
    const double H = from.H + height_difference;
    return {X, Y, H};
}

DistAngleRecord sight_between(const SurveyPoint& from, const SurveyPoint& to, unsigned char face)
{
    DistAngleRecord sight = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    if (LIB_CalDistAngle(&from, &to, face, &sight) != OK) {
        sight.Azimuth = 0.0;
        sight.ZenithAngle = 0.0;
    }
    return sight;
}

} // namespace quillon

using namespace quillon;

ResultCode LIB_GetFaceStatus(double zenith, unsigned char* face)
{
    if (0.0 <= zenith && zenith <= HALF_CIRCLE) {
        *face = FACE_I;
        return OK;
    }
    // No upper bound: a full circle or more still reads as face II.
    if (zenith > HALF_CIRCLE) {
        *face = FACE_II;
        return OK;
    }
    return DOMAIN;
}

ResultCode LIB_Sum(const double* values, unsigned char count, double* accumulator)
{
    // An 8-bit count never exceeds the limit; the test stands as the guard of
    // the interface.
    const unsigned int limit = 10000;
    const unsigned int n = count;
    if (n > limit) {
        return DOMAIN;
    }
    for (unsigned int i = 0; i < n; ++i) {
        *accumulator = *accumulator + values[i];
    }
    if (in_range(*accumulator)) {
        return OK;
    }
    return RANGE;
}

ResultCode LIB_Cal2PointDist(const SurveyPoint* a, const SurveyPoint* b, double* distance,
                             unsigned char mode)
{
    if (mode == PLAN_DISTANCE) {
        *distance = plan_distance(*a, *b);
    } else if (mode == SPATIAL_DISTANCE) {
        *distance = spatial_distance(*a, *b);
    }
    // Whatever is in the output now is tested, written or not; only the
    // upper bound counts.
    if (*distance > RANGE_LIMIT) {
        return RANGE;
    }
    return OK;
}

ResultCode LIB_CalAZ(const SurveyPoint* from, const SurveyPoint* to, double* azimuth)
{
    if (coincide_in_plan(*from, *to)) {
        return COINCIDENT;
    }
    *azimuth = azimuth_between(*from, *to);
    return OK;
}

ResultCode LIB_CalDistAngle(const SurveyPoint* from, const SurveyPoint* to, unsigned char face,
                            DistAngleRecord* out)
{
    out->SlopeDistance = spatial_distance(*from, *to);
    out->HorizontalDistance = plan_distance(*from, *to);
    out->HeightDifference = to->H - from->H;
    if (out->HorizontalDistance == 0.0) {
        return COINCIDENT;
    }
    if (out->SlopeDistance > RANGE_LIMIT || out->HorizontalDistance > RANGE_LIMIT ||
        !in_range(out->HeightDifference)) {
        return RANGE;
    }
    // Two points at the same infinite northing and easting pass the tests
    // above (their distance is not a number) and still have no azimuth: it
    // stays as it was.
    if (!coincide_in_plan(*from, *to)) {
        out->Azimuth = azimuth_between(*from, *to);
    }
    double zenith = rad_to_sec(std::atan2(out->HorizontalDistance, out->HeightDifference));
    if (face >= FACE_II) {
        zenith = FULL_CIRCLE - zenith;
    }
    out->ZenithAngle = zenith;
    return OK;
}

ResultCode LIB_MeasCoor(const StationRecord* station, const DistanceRecord* distances,
                        const double* azimuth, SurveyPoint* out)
{
    const SurveyPoint point = measured_point(*station, *distances, *azimuth);
    if (!in_range(point)) {
        return RANGE;
    }
    *out = point;
    return OK;
}

ResultCode LIB_CalCoor(const SurveyPoint* from, double azimuth, double distance,
                       double height_difference, SurveyPoint* out)
{
    const SurveyPoint point = polar_point(*from, azimuth, distance, height_difference);
    // The height is carried along untested.
    if (!in_range_in_plan(point)) {
        return RANGE;
    }
    *out = point;
    return OK;
}

ResultCode LIB_CalDist(const SurveyPoint* pair, BearingRecord* out)
{
    if (coincide_in_plan(pair[0], pair[1])) {
        return COINCIDENT;
    }
    const double azimuth = azimuth_between(pair[0], pair[1]);
    // A distance beyond the range limit is delivered without complaint here.
    const double horizontal_distance = plan_distance(pair[0], pair[1]);
    const double height_difference = pair[1].H - pair[0].H;
    out->HorizontalDistance = horizontal_distance;
    out->HeightDifference = height_difference;
    out->Azimuth = azimuth;
    return OK;
}

ResultCode LIB_CalLB(const SurveyPoint* line, const SurveyPoint* p, double* along, double* across)
{
    if (coincide_in_plan(line[0], line[1])) {
        return COINCIDENT;
    }
    const LineComponents components = line_components(line[0], line[1], *p);
    *along = components.along;
    *across = components.across;
    if (!in_range(*along) || !in_range(*across)) {
        return RANGE;
    }
    return OK;
}
