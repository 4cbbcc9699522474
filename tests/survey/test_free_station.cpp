// Free station by least squares: a station observed exactly comes back, the
// residuals of a perturbed set satisfy the normal equations, a spoiled
// observation is the one named, weak geometry and bad input are refused and
// leave every output as it was.
#include "quillon/survey.h"

#include "bits.hpp"
#include "survey_road_support.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double INF = std::numeric_limits<double>::infinity();
const double PI = 3.14159265358979323846;

// The sighting of a known point from a known station, observed exactly under
// the library's model (orientation in arc-seconds).
qs_sighting observed(const SurveyPoint& station, double orientation, const SurveyPoint& point,
                     double target_height, bool distance, bool zenith,
                     const qs_free_station_options& o)
{
    const double dx = point.X - station.X, dy = point.Y - station.Y;
    const double horizontal = std::hypot(dx, dy);
    double rise = point.H + target_height - station.H - o.instrument_height;
    if (o.curvature == 1) {
        rise -= (1.0 - o.refraction) * horizontal * horizontal / (2.0 * o.earth_radius);
    }
    double direction = std::fmod(std::atan2(dy, dx) * QS_RHO_SEC - orientation, 1296000.0);
    if (direction < 0.0) {
        direction += 1296000.0;
    }
    return {point.X,
            point.Y,
            point.H,
            direction,
            zenith ? std::hypot(horizontal, rise) : horizontal,
            std::atan2(horizontal, rise) * QS_RHO_SEC,
            target_height,
            distance ? 1 : 0,
            zenith ? 1 : 0};
}

// Uniform numbers in [low, high) that are the same on every platform.
struct Uniform {
    std::mt19937_64 engine;
    explicit Uniform(std::uint64_t seed) : engine(seed) {}
    double operator()(double low = 0.0, double high = 1.0)
    {
        return low + (high - low) * (static_cast<double>(engine() >> 11) * 0x1.0p-53);
    }
};

// Which sightings carry a distance or a zenith angle.
enum Pattern { NONE, ALL, ODD };
bool carries(Pattern pattern, std::size_t i)
{
    return pattern == ALL || (pattern == ODD && i % 2 == 1);
}

struct Scene {
    SurveyPoint station;
    double orientation;
    qs_free_station_options options;
    std::vector<qs_sighting> sightings;
};

// Points around a station at distances near..far within a sector, observed
// exactly; offset (m) moves the station north (a tenth of it east).
struct Shape {
    std::size_t points;
    double near, far;
    double sector; // degrees
    Pattern distances, zeniths;
    int curvature;
    double offset;
};

Scene surround(std::uint64_t seed, const Shape& shape)
{
    Uniform u(seed);
    Scene scene;
    scene.station = {shape.offset + u(-500.0, 500.0), shape.offset / 10.0 + u(-500.0, 500.0),
                     u(100.0, 900.0)};
    scene.orientation = u(0.0, 1296000.0);
    scene.options = {
        1.55, 1.0, 1.5, 2.0, 2.0, 0.13, QS_EARTH_RADIUS, QS_BLUNDER_THRESHOLD, shape.curvature, 20};
    const double first = u(0.0, 2.0 * PI);
    const double n = static_cast<double>(shape.points);
    for (std::size_t i = 0; i < shape.points; ++i) {
        const double azimuth =
            first + shape.sector * PI / 180.0 * (static_cast<double>(i) + 0.5 * u()) / n;
        const double distance = u(shape.near, shape.far);
        const SurveyPoint point = {scene.station.X + distance * std::cos(azimuth),
                                   scene.station.Y + distance * std::sin(azimuth),
                                   scene.station.H + u(-30.0, 30.0)};
        scene.sightings.push_back(observed(scene.station, scene.orientation, point, u(0.0, 2.0),
                                           carries(shape.distances, i), carries(shape.zeniths, i),
                                           scene.options));
    }
    return scene;
}

// The fit of the first count sightings (all by default) into sentinel-filled
// outputs with a spare residual record: on QS_OK every field of the result
// and of the first count residuals is written, otherwise nothing is.
qs_status fit(const Scene& scene, qs_free_station_result& result,
              std::vector<qs_sighting_result>& residuals, std::size_t count = SIZE_MAX)
{
    count = count == SIZE_MAX ? scene.sightings.size() : count;
    qtest::fill_sentinel(result);
    residuals.resize(scene.sightings.size() + 1);
    for (qs_sighting_result& s : residuals) {
        qtest::fill_sentinel(s);
    }
    const qs_status status =
        qs_free_station(scene.sightings.data(), count, &scene.options, &result, residuals.data());
    const bool written = status == QS_OK;
    EXPECT_TRUE(written ? roadtest::written_whole(result) : qtest::untouched(result));
    for (std::size_t i = 0; i < residuals.size(); ++i) {
        EXPECT_TRUE(written && i < count ? roadtest::written_whole(residuals[i])
                                         : qtest::untouched(residuals[i]))
            << "residual record " << i;
    }
    residuals.resize(std::min(count, residuals.size()));
    return status;
}

double angle_difference(double a, double b) { return std::remainder(a - b, 1296000.0); }

const struct {
    const char* name;
    Shape shape;
} RECOVERY[] = {
    {"three directions", {3, 50.0, 300.0, 300.0, NONE, ALL, 0, 0.0}},
    {"three directions, no heights", {3, 50.0, 300.0, 300.0, NONE, NONE, 0, 0.0}},
    {"two distances", {2, 80.0, 150.0, 200.0, ALL, ALL, 1, 5.0e6}},
    {"two horizontal distances", {2, 80.0, 150.0, 200.0, ALL, NONE, 0, 0.0}},
    {"four, every other distance", {4, 20.0, 400.0, 360.0, ODD, ALL, 0, 2.0e5}},
    {"five, zenith angles without distances", {5, 30.0, 500.0, 360.0, NONE, ALL, 1, 0.0}},
    {"six long sights", {6, 1000.0, 3000.0, 360.0, ALL, ALL, 1, 5.2e6}},
    {"ten directions in a quarter circle", {10, 200.0, 800.0, 90.0, NONE, ALL, 0, 0.0}},
    {"twenty short sights", {20, 5.0, 40.0, 360.0, ALL, ODD, 0, 1.0e4}},
    {"hundred mixed", {100, 10.0, 2000.0, 360.0, ODD, ODD, 1, 6.0e5}},
    {"hundred directions", {100, 10.0, 2000.0, 360.0, NONE, ALL, 0, 0.0}},
    {"hundred distances, half circle", {100, 50.0, 900.0, 180.0, ALL, ALL, 1, 0.0}},
    {"the most sightings", {QS_MAX_SIGHTINGS, 30.0, 300.0, 360.0, ODD, ODD, 0, 0.0}},
};

TEST(FreeStation, ExactObservationsGiveTheStationBack)
{
    for (const auto& c : RECOVERY) {
        for (std::uint64_t seed = 1; seed <= 8; ++seed) {
            SCOPED_TRACE(testing::Message() << c.name << ", seed " << seed);
            const Scene scene = surround(seed, c.shape);
            qs_free_station_result r;
            std::vector<qs_sighting_result> v;
            ASSERT_EQ(fit(scene, r, v), QS_OK);
            EXPECT_LE(std::hypot(r.x - scene.station.X, r.y - scene.station.Y), 1e-9);
            EXPECT_LE(std::fabs(angle_difference(r.orientation, scene.orientation)), 1e-6);
            EXPECT_TRUE(r.orientation >= 0.0 && r.orientation < 1296000.0) << r.orientation;
            EXPECT_TRUE(r.iterations >= 1 && r.iterations <= 20) << r.iterations;
            if (c.shape.zeniths == NONE) {
                EXPECT_TRUE(std::isnan(r.h) && std::isnan(r.sigma_h));
                EXPECT_EQ(r.height_count, 0u);
            } else {
                EXPECT_LE(std::fabs(r.h - scene.station.H), 1e-9);
            }
            EXPECT_FALSE(r.blunder_flagged);
            // Without redundancy nothing is checked; the a priori sigmas stand.
            if (r.dof == 0 && r.height_count == 0) {
                EXPECT_EQ(qtest::bits_of(r.sigma0), qtest::bits_of(1.0));
                EXPECT_GT(r.sigma_x, 1e-4); // about a millimetre at these distances
                EXPECT_EQ(r.blunder_kind, QS_NO_OBSERVATION);
                EXPECT_EQ(qtest::bits_of(r.blunder_w), qtest::bits_of(0.0));
                EXPECT_EQ(r.blunder_index, 0u);
                for (const qs_sighting_result& s : v) {
                    EXPECT_EQ(qtest::bits_of(s.direction_w), qtest::bits_of(0.0));
                    EXPECT_LT(s.direction_redundancy, 1e-9);
                }
            }
        }
    }
}

// Deterministic errors of about the a priori size on every observation.
Scene perturbed(std::uint64_t seed, std::size_t count)
{
    Scene scene = surround(seed, {count, 40.0, 600.0, 360.0, ODD, ALL, 1, 0.0});
    Uniform u(seed + 1000);
    for (qs_sighting& s : scene.sightings) {
        s.direction += u(-2.0, 2.0);
        s.zenith += u(-3.0, 3.0);
        s.slope_distance += u(-0.004, 0.004);
    }
    return scene;
}

// The residuals agree with those recomputed here from the fitted station;
// a'Pv / sqrt(a'Pa) vanishes for every unknown, and the redundancy numbers
// sum to the degrees of freedom.
TEST(FreeStation, ResidualsSatisfyTheNormalEquations)
{
    for (std::uint64_t seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        const Scene scene = perturbed(seed, 3 + seed * 3);
        const qs_free_station_options& o = scene.options;
        qs_free_station_result r;
        std::vector<qs_sighting_result> out;
        ASSERT_EQ(fit(scene, r, out), QS_OK);
        double gradient[3] = {}, normal[3] = {}, vpv = 0.0, redundancy = 0.0;
        double height_redundancy = 0.0, height_balance = 0.0;
        std::size_t distances = 0;
        const auto add = [&](const double row[3], double p, double v) {
            for (int j = 0; j < 3; ++j) {
                gradient[j] += row[j] * p * v;
                normal[j] += row[j] * p * row[j];
            }
            vpv += p * v * v;
        };
        const double z_sigma = o.sigma_zenith / QS_RHO_SEC;
        for (std::size_t i = 0; i < scene.sightings.size(); ++i) {
            const qs_sighting& s = scene.sightings[i];
            const double dx = s.x - r.x, dy = s.y - r.y, d = std::hypot(dx, dy);
            EXPECT_NEAR(
                out[i].direction_residual,
                angle_difference(std::atan2(dy, dx) * QS_RHO_SEC - r.orientation, s.direction),
                1e-8);
            const double row[3] = {dy / (d * d), -dx / (d * d), -1.0};
            add(row, std::pow(QS_RHO_SEC / o.sigma_direction, 2),
                out[i].direction_residual / QS_RHO_SEC);
            redundancy += out[i].direction_redundancy;
            if (s.has_distance == 1) {
                const double z = s.zenith / QS_RHO_SEC;
                const double slope_sigma = 0.002 + 2e-6 * s.slope_distance;
                EXPECT_NEAR(out[i].distance_residual, d - s.slope_distance * std::sin(z), 1e-12);
                const double distance_row[3] = {-dx / d, -dy / d, 0.0};
                add(distance_row,
                    1.0 / (std::pow(std::sin(z) * slope_sigma, 2) +
                           std::pow(s.slope_distance * std::cos(z) * z_sigma, 2)),
                    out[i].distance_residual);
                redundancy += out[i].distance_redundancy;
                ++distances;
            }
            // A weighted mean leaves sum p v = 0, and p is (1 - r) times the sum of weights.
            height_redundancy += out[i].height_redundancy;
            height_balance += (1.0 - out[i].height_redundancy) * out[i].height_residual;
            EXPECT_NEAR(out[i].height_residual, r.h - out[i].height, 1e-12);
        }
        for (int j = 0; j < 3; ++j) {
            EXPECT_LE(std::fabs(gradient[j]) / std::sqrt(normal[j]), 1e-9) << "unknown " << j;
        }
        const std::size_t dof = scene.sightings.size() + distances - 3;
        EXPECT_EQ(r.dof, dof);
        EXPECT_NEAR(redundancy, static_cast<double>(dof), 1e-9);
        EXPECT_NEAR(height_redundancy, static_cast<double>(r.height_count - 1), 1e-9);
        EXPECT_NEAR(r.sigma0, std::sqrt(vpv / static_cast<double>(dof)), 1e-9 * r.sigma0);
        EXPECT_LE(std::fabs(height_balance), 1e-12);
    }
}

// Seven points with small errors; one observation spoiled is the one named.
struct BlunderCase {
    const char* name;
    std::size_t sighting;
    double direction; // arc-seconds added
    double distance;  // m added
    double zenith;    // arc-seconds added
    int kind;
};

const BlunderCase BLUNDERS[] = {
    {"direction 30\"", 3, 30.0, 0.0, 0.0, QS_DIRECTION},
    {"distance 5 cm", 5, 0.0, 0.05, 0.0, QS_DISTANCE},
    {"zenith 30\"", 1, 0.0, 0.0, 30.0, QS_HEIGHT},
};

TEST(FreeStation, SpoiledObservationIsNamed)
{
    for (const BlunderCase& c : BLUNDERS) {
        for (std::uint64_t seed = 1; seed <= 5; ++seed) {
            SCOPED_TRACE(testing::Message() << c.name << ", seed " << seed);
            Scene scene = surround(seed, {7, 60.0, 400.0, 360.0, ALL, ALL, 1, 0.0});
            Uniform u(seed + 77);
            for (qs_sighting& s : scene.sightings) {
                s.direction += u(-0.5, 0.5);
                s.slope_distance += u(-0.001, 0.001);
            }
            qs_free_station_result r;
            std::vector<qs_sighting_result> v;
            ASSERT_EQ(fit(scene, r, v), QS_OK);
            EXPECT_FALSE(r.blunder_flagged);
            EXPECT_LT(r.blunder_w, QS_BLUNDER_THRESHOLD);

            qs_sighting& spoiled = scene.sightings[c.sighting];
            spoiled.direction += c.direction;
            spoiled.slope_distance += c.distance;
            spoiled.zenith += c.zenith;
            ASSERT_EQ(fit(scene, r, v), QS_OK);
            EXPECT_TRUE(r.blunder_flagged);
            EXPECT_EQ(r.blunder_kind, c.kind);
            EXPECT_EQ(r.blunder_index, c.sighting);
            const double w[] = {0.0, v[c.sighting].direction_w, v[c.sighting].distance_w,
                                v[c.sighting].height_w};
            EXPECT_EQ(qtest::bits_of(std::fabs(w[c.kind])), qtest::bits_of(r.blunder_w));
            // The threshold is the caller's, and a w equal to it is not flagged.
            scene.options.blunder_threshold = r.blunder_w;
            ASSERT_EQ(fit(scene, r, v), QS_OK);
            EXPECT_FALSE(r.blunder_flagged);
        }
    }
}

// Three known points on a circle of 100 m radius around the origin; the
// station, at the given radius, sights them by directions alone.
Scene on_circle(double radius)
{
    Scene scene = surround(1, {0, 0.0, 0.0, 0.0, NONE, NONE, 0, 0.0});
    scene.station = {radius * std::cos(5.0), radius * std::sin(5.0), 50.0};
    scene.orientation = 123456.0;
    for (double a : {0.0, 1.7, 3.6}) {
        const SurveyPoint point = {100.0 * std::cos(a), 100.0 * std::sin(a), 52.0};
        scene.sightings.push_back(
            observed(scene.station, scene.orientation, point, 1.3, false, true, scene.options));
    }
    return scene;
}

TEST(FreeStation, WeakGeometryIsRefused)
{
    Scene in_line = on_circle(0.0);
    for (std::size_t i = 0; i < 3; ++i) {
        const double along = (i == 1 ? -1.0 : 1.0) * (40.0 + 70.0 * static_cast<double>(i));
        in_line.sightings[i] = observed(in_line.station, 0.0, {0.6 * along, 0.8 * along, 0.0}, 1.3,
                                        false, false, in_line.options);
    }
    Scene same_point = surround(4, {2, 100.0, 100.0, 0.0, ALL, ALL, 0, 0.0});
    same_point.sightings[1] = same_point.sightings[0];
    same_point.sightings[1].direction += 0.5;
    Scene on_a_point = surround(5, {5, 50.0, 300.0, 360.0, ALL, ALL, 0, 0.0});
    on_a_point.sightings[2] = observed(on_a_point.station, on_a_point.orientation,
                                       {on_a_point.station.X + 0.0008, on_a_point.station.Y, 0.0},
                                       0.0, true, false, on_a_point.options);
    const struct {
        const char* name;
        Scene scene;
        qs_status status;
    } cases[] = {
        {"on the circle through the three points", on_circle(100.0), QS_SINGULAR},
        {"10 cm inside that circle", on_circle(99.9), QS_SINGULAR},
        {"20 cm inside: answered, with a standard deviation of 0.7 m", on_circle(99.8), QS_OK},
        {"in one line with the points", in_line, QS_SINGULAR},
        {"two distances to one point", same_point, QS_SINGULAR},
        {"a known point 0.8 mm from the station", on_a_point, QS_SINGULAR},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        qs_free_station_result r;
        std::vector<qs_sighting_result> v;
        ASSERT_EQ(fit(c.scene, r, v), c.status);
        if (c.status == QS_OK) {
            EXPECT_NEAR(r.x, c.scene.station.X, 1e-9);
            EXPECT_GT(std::hypot(r.sigma_x, r.sigma_y), 0.5);
        }
    }
}

// One change that spoils an otherwise good call (six sightings, distances on
// every other one), and the status it gives.
using Sightings = std::vector<qs_sighting>;
#define SPOIL(body)                                                                                \
    [](Sightings& s, qs_free_station_options& o, std::size_t& n) {                                 \
        (void)s, (void)o, (void)n;                                                                 \
        body;                                                                                      \
    }

const struct {
    const char* name;
    void (*spoil)(Sightings& s, qs_free_station_options& o, std::size_t& n);
    qs_status status;
} INPUTS[] = {
    {"no sightings", SPOIL(n = 0), QS_BAD_ARGUMENT},
    {"one over the most", SPOIL(n = QS_MAX_SIGHTINGS + 1), QS_BAD_ARGUMENT},
    {"NaN northing", SPOIL(s[2].x = NaN), QS_BAD_ARGUMENT},
    {"infinite easting", SPOIL(s[0].y = INF), QS_BAD_ARGUMENT},
    {"NaN point height", SPOIL(s[1].h = NaN), QS_BAD_ARGUMENT},
    {"infinite direction", SPOIL(s[3].direction = -INF), QS_BAD_ARGUMENT},
    {"NaN unread distance", SPOIL(s[4].has_distance = 0; s[4].slope_distance = NaN),
     QS_BAD_ARGUMENT},
    {"NaN unread zenith", SPOIL(s[4].has_zenith = 0; s[4].zenith = NaN), QS_BAD_ARGUMENT},
    {"NaN target height", SPOIL(s[4].target_height = NaN), QS_BAD_ARGUMENT},
    {"distance flag 2", SPOIL(s[1].has_distance = 2), QS_BAD_ARGUMENT},
    {"zenith flag -1", SPOIL(s[1].has_zenith = -1), QS_BAD_ARGUMENT},
    {"zero distance", SPOIL(s[1].slope_distance = 0.0), QS_BAD_ARGUMENT},
    {"zenith 0", SPOIL(s[1].zenith = 0.0), QS_BAD_ARGUMENT},
    {"zenith a half circle", SPOIL(s[1].zenith = 648000.0), QS_BAD_ARGUMENT},
    {"zenith within 1\" of the zenith", SPOIL(s[1].zenith = 0.999), QS_BAD_ARGUMENT},
    {"zenith within 1\" of the nadir", SPOIL(s[1].zenith = 647999.001), QS_BAD_ARGUMENT},
    {"northing beyond the most", SPOIL(s[1].x = 1.000001e9), QS_BAD_ARGUMENT},
    {"slope distance beyond the most", SPOIL(s[1].slope_distance = 1.000001e9), QS_BAD_ARGUMENT},
    {"target height beyond the most", SPOIL(s[1].target_height = -1.000001e9), QS_BAD_ARGUMENT},
    {"instrument height beyond the most", SPOIL(o.instrument_height = 1.000001e9), QS_BAD_ARGUMENT},
    {"NaN instrument height", SPOIL(o.instrument_height = NaN), QS_BAD_ARGUMENT},
    {"direction sigma too small", SPOIL(o.sigma_direction = 0.0009), QS_BAD_ARGUMENT},
    {"negative zenith sigma", SPOIL(o.sigma_zenith = -1.0), QS_BAD_ARGUMENT},
    {"zenith sigma too large", SPOIL(o.sigma_zenith = 3600.001), QS_BAD_ARGUMENT},
    {"distance sigma too small", SPOIL(o.sigma_distance_mm = 0.0099), QS_BAD_ARGUMENT},
    {"negative ppm", SPOIL(o.sigma_distance_ppm = -0.1), QS_BAD_ARGUMENT},
    {"ppm too large", SPOIL(o.sigma_distance_ppm = 1000.001), QS_BAD_ARGUMENT},
    {"refraction above 1", SPOIL(o.refraction = 1.001), QS_BAD_ARGUMENT},
    {"infinite refraction", SPOIL(o.refraction = INF), QS_BAD_ARGUMENT},
    {"earth radius below 1 km", SPOIL(o.earth_radius = 999.0), QS_BAD_ARGUMENT},
    {"infinite threshold", SPOIL(o.blunder_threshold = INF), QS_BAD_ARGUMENT},
    {"zero threshold", SPOIL(o.blunder_threshold = 0.0), QS_BAD_ARGUMENT},
    {"curvature 2", SPOIL(o.curvature = 2), QS_BAD_ARGUMENT},
    {"no iterations", SPOIL(o.max_iterations = 0), QS_BAD_ARGUMENT},
    {"too many iterations", SPOIL(o.max_iterations = QS_MAX_ITERATIONS + 1), QS_BAD_ARGUMENT},
    {"one sighting", SPOIL(n = 1), QS_TOO_FEW},
    {"two sightings, one distance", SPOIL(n = 2; s[1].has_distance = 0), QS_TOO_FEW},
    {"one iteration", SPOIL(o.max_iterations = 1), QS_NO_CONVERGENCE},
    {"two sightings, two distances", SPOIL(n = 2; s[0].has_distance = 1), QS_OK},
    {"three sightings, no distance", SPOIL(n = 3; s[1].has_distance = 0), QS_OK},
    {"most iterations", SPOIL(o.max_iterations = QS_MAX_ITERATIONS), QS_OK},
    {"zenith 1\" from the zenith, no distance", SPOIL(s[1].zenith = 1.0; s[1].has_distance = 0),
     QS_OK},
    {"the smallest and largest sigmas",
     SPOIL(o.sigma_direction = 0.001; o.sigma_zenith = 3600.0; o.sigma_distance_mm = 0.01;
           o.sigma_distance_ppm = 1000.0),
     QS_OK},
    {"refraction -1, radius 1 km", SPOIL(o.refraction = -1.0; o.earth_radius = 1e3), QS_OK},
};

TEST(FreeStation, BadInputIsRefusedAndNothingWritten)
{
    for (const auto& c : INPUTS) {
        SCOPED_TRACE(c.name);
        Scene scene = perturbed(9, 6);
        std::size_t count = scene.sightings.size();
        c.spoil(scene.sightings, scene.options, count);
        qs_free_station_result r;
        std::vector<qs_sighting_result> v;
        EXPECT_EQ(fit(scene, r, v, count), c.status);
    }
}

} // namespace
