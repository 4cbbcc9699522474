// Reduction of slope measurements and the combined scale.
#include "core.hpp"

namespace quillon {

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

DistanceRecord reduced_distances(const StationRecord& station, double scale, double slope_distance,
                                 double zenith)
{
    const double z = sec_to_rad(zenith);
    const double v = std::cos(z) * slope_distance;
    // The sine is taken absolute: a face II zenith angle gives the same
    // positive horizontal distance as face I.
    const double h = std::fabs(std::sin(z)) * slope_distance;
    const RefractionCoefficients c = refraction_for(station.refractionMode);
    double horizontal_distance = h - (c.horizontal * h) * v;
    // Both bounds strict: 0.99 and 1.01 themselves leave the distance unscaled.
    if (SCALE_BAND_LOW < scale && scale < SCALE_BAND_HIGH) {
        horizontal_distance = horizontal_distance * scale;
    }
    const double vertical_difference = (c.vertical * h) * h + v;
    const double height_difference =
        (station.InstrumentHeight + vertical_difference) - station.TargetHeight;
    return {slope_distance, horizontal_distance, vertical_difference, height_difference};
}

} // namespace quillon

using namespace quillon;

ResultCode LIB_DistConvert(const StationRecord* station, double scale, double slope_distance,
                           double zenith, DistanceRecord* out)
{
    *out = reduced_distances(*station, scale, slope_distance, zenith);
    return OK;
}

ResultCode LIB_CalScale(double height, double grid_scale, double* combined)
{
    *combined = (EARTH_RADIUS / (height + EARTH_RADIUS)) * grid_scale;
    // Inclusive band, unlike the strict one of the distance reduction.
    if (*combined > SCALE_BAND_HIGH || *combined < SCALE_BAND_LOW) {
        return RANGE;
    }
    return OK;
}
