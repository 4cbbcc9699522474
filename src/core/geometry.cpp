// Face status, sums, distances, azimuths and polar points: the primitives that
// every other family calls.
#include "core.hpp"

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
    if (mode == 0) {
        *distance = std::sqrt(square(a->Y - b->Y) + square(a->X - b->X));
    } else if (mode == 1) {
        *distance = std::sqrt((square(a->H - b->H) + square(a->Y - b->Y)) + square(a->X - b->X));
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
    if (from->X == to->X && from->Y == to->Y) {
        return COINCIDENT;
    }
    const double dX = to->X - from->X;
    const double dY = to->Y - from->Y;
    *azimuth = rad_to_sec(std::atan2(dY, dX));
    if (*azimuth < 0.0) {
        *azimuth = *azimuth + FULL_CIRCLE;
    }
    return OK;
}

ResultCode LIB_CalDistAngle(const SurveyPoint* from, const SurveyPoint* to, unsigned char face,
                            DistAngleRecord* out)
{
    const ResultCode slope_status = LIB_Cal2PointDist(from, to, &out->SlopeDistance, 1);
    const ResultCode plan_status = LIB_Cal2PointDist(from, to, &out->HorizontalDistance, 0);
    out->HeightDifference = to->H - from->H;
    if (out->HorizontalDistance == 0.0) {
        return COINCIDENT;
    }
    if (slope_status != OK || plan_status != OK || !in_range(out->HeightDifference)) {
        return RANGE;
    }
    LIB_CalAZ(from, to, &out->Azimuth);
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
    const double a = sec_to_rad(*azimuth);
    const int f = face_factor(*station);
    const double d = f * distances->HorizontalDistance;
    const double X = d * std::cos(a) + station->X;
    const double Y = d * std::sin(a) + station->Y;
    const double H = ((station->InstrumentHeight + distances->VerticalDifference) + station->H) -
                     station->TargetHeight;
    if (!in_range(X) || !in_range(Y) || !in_range(H)) {
        return RANGE;
    }
    out->X = X;
    out->Y = Y;
    out->H = H;
    return OK;
}

ResultCode LIB_CalCoor(const SurveyPoint* from, double azimuth, double distance,
                       double height_difference, SurveyPoint* out)
{
    const double a = sec_to_rad(azimuth);
    const double X = std::cos(a) * distance + from->X;
    const double Y = std::sin(a) * distance + from->Y;
    const double H = from->H + height_difference;
    // The height is carried along untested.
    if (!in_range(X) || !in_range(Y)) {
        return RANGE;
    }
    out->X = X;
    out->Y = Y;
    out->H = H;
    return OK;
}

ResultCode LIB_CalDist(const SurveyPoint* pair, BearingRecord* out)
{
    double azimuth = 0.0;
    if (LIB_CalAZ(&pair[0], &pair[1], &azimuth) != OK) {
        return COINCIDENT;
    }
    // A distance beyond the range limit is delivered without complaint here.
    double horizontal_distance = 0.0;
    LIB_Cal2PointDist(&pair[0], &pair[1], &horizontal_distance, 0);
    const double height_difference = pair[1].H - pair[0].H;
    out->HorizontalDistance = horizontal_distance;
    out->HeightDifference = height_difference;
    out->Azimuth = azimuth;
    return OK;
}
