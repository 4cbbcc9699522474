// Reduction of slope measurements, line components and the combined scale.
#include "core.hpp"

using namespace quillon;

namespace {

// Curvature and refraction: (2 - k) / (2 R) for the horizontal distance and
// (1 - k) / (2 R) for the vertical difference.
struct RefractionCoefficients {
    double horizontal;
    double vertical;
};

constexpr RefractionCoefficients K014 = {1.4599686028257456e-07, 6.75039246467818e-08};
constexpr RefractionCoefficients K020 = {1.4128728414442702e-07, 6.279434850863422e-08};
constexpr RefractionCoefficients NO_CORRECTION = {0.0, 0.0};
static_assert(K014.horizontal == (2.0 - 0.14) / (2.0 * EARTH_RADIUS), "k = 0.14");
static_assert(K014.vertical == (1.0 - 0.14) / (2.0 * EARTH_RADIUS), "k = 0.14");
static_assert(K020.horizontal == (2.0 - 0.20) / (2.0 * EARTH_RADIUS), "k = 0.20");
static_assert(K020.vertical == (1.0 - 0.20) / (2.0 * EARTH_RADIUS), "k = 0.20");

RefractionCoefficients refraction_for(unsigned char mode)
{
    if (mode == 1) {
        return K014;
    }
    if (mode == 2) {
        return K020;
    }
    return NO_CORRECTION;
}

} // namespace

ResultCode LIB_DistConvert(const StationRecord* station, double scale, double slope_distance,
                           double zenith, DistanceRecord* out)
{
    const double z = sec_to_rad(zenith);
    const double v = std::cos(z) * slope_distance;
    // The sine is taken absolute: a face II zenith angle gives the same
    // positive horizontal distance as face I.
    const double h = std::fabs(std::sin(z)) * slope_distance;
    const RefractionCoefficients c = refraction_for(station->refractionMode);
    out->HorizontalDistance = h - (c.horizontal * h) * v;
    // Both bounds strict: 0.99 and 1.01 themselves leave the distance unscaled.
    if (0.99 < scale && scale < 1.01) {
        out->HorizontalDistance = out->HorizontalDistance * scale;
    }
    out->VerticalDifference = (c.vertical * h) * h + v;
    out->HeightDifference =
        (station->InstrumentHeight + out->VerticalDifference) - station->TargetHeight;
    out->SlopeDistance = slope_distance;
    return OK;
}

ResultCode LIB_CalLB(const SurveyPoint* line, const SurveyPoint* p, double* along, double* across)
{
    double azAB = 0.0;
    if (LIB_CalAZ(&line[0], &line[1], &azAB) != OK) {
        return COINCIDENT;
    }
    // A point on A has no direction; its distance of 0 makes both
    // components 0 whatever angle is used, and the angle stays 0.
    double azAP = 0.0;
    LIB_CalAZ(&line[0], p, &azAP);
    double D = 0.0;
    LIB_Cal2PointDist(&line[0], p, &D, 0);
    const double t = sec_to_rad(azAP - azAB);
    *along = std::cos(t) * D;
    *across = std::sin(t) * D;
    if (!in_range(*along) || !in_range(*across)) {
        return RANGE;
    }
    return OK;
}

ResultCode LIB_CalScale(double height, double grid_scale, double* combined)
{
    *combined = (EARTH_RADIUS / (height + EARTH_RADIUS)) * grid_scale;
    // Inclusive band, unlike the strict one of the distance reduction.
    if (*combined > 1.01 || *combined < 0.99) {
        return RANGE;
    }
    return OK;
}
