// Free station by least squares: X, Y and the orientation of the circle from
// directions and horizontal distances to known points, the height from the
// trigonometric heights, and the blunder search over all of them.
//
// Everything in plan is computed in a local frame with its origin on the
// first known point, so that coordinates of millions of metres do not cost
// digits in the iterations.
#include "adjustment.hpp"
#include "quillon/survey.h"

#include <cmath>
#include <cstddef>
#include <limits>

namespace {

using namespace quillon::survey;

constexpr double CONVERGED = 1e-6;   // largest correction, in a priori standard deviations
constexpr double CLOSEST = 1e-3;     // m: a known point nearer than this to the station
constexpr double UNCHECKED = 1e-6;   // redundancy number below which w is not formed
constexpr double SLANT_FLAT = 1e-12; // relative spread of a degenerate similarity fit

bool is_flag(int value) { return value == 0 || value == 1; }

// True for a finite value in [low, high].
bool within(double value, double low, double high) { return value >= low && value <= high; }

bool length(double value) { return within(value, -QS_MAX_LENGTH, QS_MAX_LENGTH); }

bool valid_options(const qs_free_station_options& o)
{
    return length(o.instrument_height) && within(o.sigma_direction, 0.001, 3600.0) &&
           within(o.sigma_zenith, 0.001, 3600.0) && within(o.sigma_distance_mm, 0.01, 1000.0) &&
           within(o.sigma_distance_ppm, 0.0, 1000.0) && within(o.refraction, -1.0, 1.0) &&
           within(o.earth_radius, 1e3, QS_MAX_LENGTH) && std::isfinite(o.blunder_threshold) &&
           o.blunder_threshold > 0.0 && is_flag(o.curvature) && o.max_iterations >= 1 &&
           o.max_iterations <= QS_MAX_ITERATIONS;
}

bool valid_sighting(const qs_sighting& s)
{
    if (!length(s.x) || !length(s.y) || !length(s.h) || !length(s.target_height) ||
        !length(s.slope_distance) || !std::isfinite(s.direction) || !std::isfinite(s.zenith)) {
        return false;
    }
    if (!is_flag(s.has_distance) || !is_flag(s.has_zenith)) {
        return false;
    }
    if (s.has_distance == 1 && !(s.slope_distance > 0.0)) {
        return false;
    }
    return s.has_zenith == 0 || within(s.zenith, 1.0, HALF_CIRCLE - 1.0);
}

// A slope distance reduced to the horizontal, with its a priori standard
// deviation (m).
struct Distance {
    double horizontal;
    double sigma;
};

// A priori standard deviation of a slope distance, m.
double slope_sigma(const qs_sighting& s, const qs_free_station_options& o)
{
    return o.sigma_distance_mm / 1000.0 + o.sigma_distance_ppm * 1e-6 * s.slope_distance;
}

Distance reduced(const qs_sighting& s, const qs_free_station_options& o)
{
    const double sigma_slope = slope_sigma(s, o);
    if (s.has_zenith == 0) {
        return {s.slope_distance, sigma_slope};
    }
    const double zenith = s.zenith * QS_RAD_PER_SEC;
    const double sigma_zenith = o.sigma_zenith * QS_RAD_PER_SEC;
    const double along = std::sin(zenith) * sigma_slope;
    const double across = s.slope_distance * std::cos(zenith) * sigma_zenith;
    return {s.slope_distance * std::sin(zenith), std::hypot(along, across)};
}

// The unknowns: station in the local frame (m) and orientation (rad).
struct Station {
    double x;
    double y;
    double orientation;
};

// One sighting seen from a station: the point in the local frame relative to
// the station, its distance and azimuth, and the rows of the design matrix
// of its direction and its distance.
struct Sight {
    double dx;
    double dy;
    double distance;
    double azimuth;
    double direction_row[3];
    double distance_row[3];
};

Sight sight(const qs_sighting& s, const qs_sighting& origin, const Station& station)
{
    Sight out{};
    out.dx = (s.x - origin.x) - station.x;
    out.dy = (s.y - origin.y) - station.y;
    out.distance = std::hypot(out.dx, out.dy);
    out.azimuth = std::atan2(out.dy, out.dx);
    const double squared = out.distance * out.distance;
    out.direction_row[0] = out.dy / squared;
    out.direction_row[1] = -out.dx / squared;
    out.direction_row[2] = -1.0;
    out.distance_row[0] = -out.dx / out.distance;
    out.distance_row[1] = -out.dy / out.distance;
    out.distance_row[2] = 0.0;
    return out;
}

// Misclosure of a direction, observed minus computed, in radians.
double direction_misclosure(const qs_sighting& s, const Sight& at, const Station& station)
{
    return folded_radians(s.direction * QS_RAD_PER_SEC - (at.azimuth - station.orientation));
}

// Position of a sighted point in the instrument's own frame: polar from the
// circle reading and the horizontal distance (m).
struct Polar {
    double u;
    double v;
};

Polar polar(const qs_sighting& s, const qs_free_station_options& o)
{
    const double distance = reduced(s, o).horizontal;
    const double reading = s.direction * QS_RAD_PER_SEC;
    return {distance * std::cos(reading), distance * std::sin(reading)};
}

// Start from the sightings with distances: the similarity transformation
// (shift, rotation, scale) that carries their polar positions onto the known
// points. False when they do not spread.
bool similarity_start(const qs_sighting* sightings, std::size_t count,
                      const qs_free_station_options& o, Station& start)
{
    const qs_sighting& origin = sightings[0];
    double n = 0.0, su = 0.0, sv = 0.0, sx = 0.0, sy = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        if (sightings[i].has_distance == 1) {
            const Polar p = polar(sightings[i], o);
            n += 1.0;
            su += p.u;
            sv += p.v;
            sx += sightings[i].x - origin.x;
            sy += sightings[i].y - origin.y;
        }
    }
    const double mu = su / n, mv = sv / n, mx = sx / n, my = sy / n;
    double spread = 0.0, size = 0.0, cos_part = 0.0, sin_part = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        if (sightings[i].has_distance == 1) {
            const Polar p = polar(sightings[i], o);
            const double du = p.u - mu, dv = p.v - mv;
            const double dx = (sightings[i].x - origin.x) - mx;
            const double dy = (sightings[i].y - origin.y) - my;
            spread += du * du + dv * dv;
            size += p.u * p.u + p.v * p.v;
            cos_part += du * dx + dv * dy;
            sin_part += du * dy - dv * dx;
        }
    }
    if (!(spread > SLANT_FLAT * size)) {
        return false;
    }
    const double a = cos_part / spread;
    const double b = sin_part / spread;
    start.x = mx - a * mu + b * mv;
    start.y = my - b * mu - a * mv;
    start.orientation = std::atan2(b, a);
    return true;
}

// Start from the directions alone. Point i lies on the ray of azimuth
// reading + orientation from the station, which is linear in c = cos o,
// s = sin o, P = x c + y s and Q = x s - y c:
//   c (x_i sin r - y_i cos r) + s (x_i cos r + y_i sin r) - P sin r - Q cos r = 0.
// P and Q are eliminated by least squares and (c, s) is the unit vector that
// leaves the least sum of squares. False when all directions are parallel.
bool resection_start(const qs_sighting* sightings, std::size_t count, Station& start)
{
    double m[4][4] = {};
    for (std::size_t i = 0; i < count; ++i) {
        const qs_sighting& s = sightings[i];
        const double px = s.x - sightings[0].x;
        const double py = s.y - sightings[0].y;
        const double sin_r = std::sin(s.direction * QS_RAD_PER_SEC);
        const double cos_r = std::cos(s.direction * QS_RAD_PER_SEC);
        const double row[4] = {px * sin_r - py * cos_r, px * cos_r + py * sin_r, -sin_r, -cos_r};
        for (int j = 0; j < 4; ++j) {
            for (int k = 0; k < 4; ++k) {
                m[j][k] += row[j] * row[k];
            }
        }
    }
    const double det = m[2][2] * m[3][3] - m[2][3] * m[3][2];
    if (!(det > 1e-12 * (m[2][2] + m[3][3]) * (m[2][2] + m[3][3]))) {
        return false;
    }
    // E = M22^-1 M21: (P, Q) = -E (c, s).
    double e[2][2];
    for (int k = 0; k < 2; ++k) {
        e[0][k] = (m[3][3] * m[2][k] - m[2][3] * m[3][k]) / det;
        e[1][k] = (m[2][2] * m[3][k] - m[3][2] * m[2][k]) / det;
    }
    // Reduced 2x2 matrix S = M11 - M12 E; its least eigenvector is (c, s).
    const double s00 = m[0][0] - (m[0][2] * e[0][0] + m[0][3] * e[1][0]);
    const double s01 = m[0][1] - (m[0][2] * e[0][1] + m[0][3] * e[1][1]);
    const double s11 = m[1][1] - (m[1][2] * e[0][1] + m[1][3] * e[1][1]);
    const double least = 0.5 * std::atan2(2.0 * s01, s00 - s11) + 0.5 * PI;
    double c = std::cos(least);
    double s = std::sin(least);
    const double p = -(e[0][0] * c + e[0][1] * s);
    const double q = -(e[1][0] * c + e[1][1] * s);
    start.x = p * c + q * s;
    start.y = p * s - q * c;
    // The rays fix the orientation only up to a half circle: take the one
    // that points the readings toward the points rather than away.
    double agreement = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        const Sight at = sight(sightings[i], sightings[0], {start.x, start.y, least});
        agreement += std::cos(direction_misclosure(sightings[i], at, {start.x, start.y, least}));
    }
    start.orientation = agreement < 0.0 ? least + PI : least;
    return true;
}

// Weight of a direction, 1/rad^2.
double direction_weight(const qs_free_station_options& o)
{
    const double sigma = o.sigma_direction * QS_RAD_PER_SEC;
    return 1.0 / (sigma * sigma);
}

// Normal equations of the plan at a station. False when a known point lies
// within CLOSEST of it.
bool plan_normals(const qs_sighting* sightings, std::size_t count, const qs_free_station_options& o,
                  const Station& station, NormalEquations& ne)
{
    const double p_direction = direction_weight(o);
    for (std::size_t i = 0; i < count; ++i) {
        const qs_sighting& s = sightings[i];
        const Sight at = sight(s, sightings[0], station);
        if (!(at.distance >= CLOSEST)) {
            return false;
        }
        ne.add(at.direction_row, p_direction, direction_misclosure(s, at, station));
        if (s.has_distance == 1) {
            const Distance d = reduced(s, o);
            ne.add(at.distance_row, 1.0 / (d.sigma * d.sigma), d.horizontal - at.distance);
        }
    }
    return true;
}

// The normal equations at a station solved and judged: q their inverse.
// False when the geometry is refused.
bool solved(const qs_sighting* sightings, std::size_t count, const qs_free_station_options& o,
            const Station& station, NormalEquations& ne, double q[3][3])
{
    if (!plan_normals(sightings, count, o, station, ne) || !inverted(ne.n, q)) {
        return false;
    }
    const double inflation = (q[0][0] + q[1][1]) * (ne.n[0][0] + ne.n[1][1]) / 4.0;
    return inflation <= QS_MAX_INFLATION;
}

// Tracks the observation with the largest |w|.
struct BlunderSearch {
    double w = 0.0;
    int kind = QS_NO_OBSERVATION;
    std::size_t index = 0;

    // Redundancy number clipped to [0, 1] and w of one observation; w is 0
    // for an observation the others do not check.
    void check(double residual, double sigma, double redundancy, int observation_kind,
               std::size_t sighting, double& r_out, double& w_out)
    {
        r_out = std::fmin(1.0, std::fmax(0.0, redundancy));
        w_out = 0.0;
        if (r_out < UNCHECKED) {
            return;
        }
        w_out = residual / (sigma * std::sqrt(r_out));
        if (std::fabs(w_out) > w) {
            w = std::fabs(w_out);
            kind = observation_kind;
            index = sighting;
        }
    }
};

// The trigonometric height of the station mark from one sighting, with its
// a priori standard deviation. The horizontal distance is the measured one
// reduced, or without a measured distance the one to the fitted station.
struct Height {
    double value;
    double sigma;
};

Height trigonometric_height(const qs_sighting& s, const qs_free_station_options& o,
                            double fitted_distance)
{
    const double zenith = s.zenith * QS_RAD_PER_SEC;
    const double sigma_zenith = o.sigma_zenith * QS_RAD_PER_SEC;
    double distance = fitted_distance;
    double rise = 0.0;
    double sigma = 0.0;
    if (s.has_distance == 1) {
        distance = s.slope_distance * std::sin(zenith);
        rise = s.slope_distance * std::cos(zenith);
        sigma = std::hypot(std::cos(zenith) * slope_sigma(s, o), distance * sigma_zenith);
    } else {
        const double sine = std::sin(zenith);
        rise = distance * std::cos(zenith) / sine;
        sigma = distance * sigma_zenith / (sine * sine);
    }
    if (o.curvature == 1) {
        rise += (1.0 - o.refraction) * distance * distance / (2.0 * o.earth_radius);
    }
    return {s.h + s.target_height - rise - o.instrument_height, sigma};
}

} // namespace

extern "C" qs_status qs_free_station(const qs_sighting* sightings, std::size_t count,
                                     const qs_free_station_options* options,
                                     qs_free_station_result* result, qs_sighting_result* residuals)
{
    if (count == 0 || count > QS_MAX_SIGHTINGS || !valid_options(*options)) {
        return QS_BAD_ARGUMENT;
    }
    std::size_t distances = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (!valid_sighting(sightings[i])) {
            return QS_BAD_ARGUMENT;
        }
        distances += static_cast<std::size_t>(sightings[i].has_distance);
    }
    if (distances < 2 && count < 3) {
        return QS_TOO_FEW;
    }
    const qs_free_station_options& o = *options;
    const qs_sighting& origin = sightings[0];

    // 1. Approximate station.
    Station station{};
    if (!(distances >= 2 && similarity_start(sightings, count, o, station)) &&
        !(count >= 3 && resection_start(sightings, count, station))) {
        return QS_SINGULAR;
    }

    // 2. Gauss-Newton iterations.
    std::size_t iterations = 0;
    for (;;) {
        NormalEquations ne;
        double q[3][3];
        if (!solved(sightings, count, o, station, ne, q)) {
            return QS_SINGULAR;
        }
        bool converged = true;
        double correction[3];
        for (int j = 0; j < 3; ++j) {
            correction[j] = q[j][0] * ne.b[0] + q[j][1] * ne.b[1] + q[j][2] * ne.b[2];
            converged = converged && std::fabs(correction[j]) <= CONVERGED * std::sqrt(q[j][j]);
        }
        station.x += correction[0];
        station.y += correction[1];
        station.orientation += correction[2];
        ++iterations;
        if (converged) {
            break;
        }
        if (iterations == static_cast<std::size_t>(o.max_iterations)) {
            return QS_NO_CONVERGENCE;
        }
    }

    // 3. Cofactors at the fitted station. From here on nothing can fail.
    NormalEquations ne;
    double q[3][3];
    if (!solved(sightings, count, o, station, ne, q)) {
        return QS_SINGULAR;
    }
    const std::size_t observations = count + distances;
    const std::size_t dof = observations - 3;

    // 4. Residuals, redundancy numbers and w of the plan observations.
    BlunderSearch search;
    const double p_direction = direction_weight(o);
    const double sigma_direction = o.sigma_direction * QS_RAD_PER_SEC;
    double weighted_squares = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        const qs_sighting& s = sightings[i];
        qs_sighting_result& out = residuals[i];
        const Sight at = sight(s, origin, station);
        const double v_direction = -direction_misclosure(s, at, station);
        weighted_squares += p_direction * v_direction * v_direction;
        out.azimuth = folded_circle(at.azimuth * QS_RHO_SEC);
        out.horizontal_distance = at.distance;
        out.direction_residual = v_direction * QS_RHO_SEC;
        search.check(v_direction, sigma_direction,
                     1.0 - p_direction * quadratic_form(q, at.direction_row), QS_DIRECTION, i,
                     out.direction_redundancy, out.direction_w);
        out.distance_residual = 0.0;
        out.distance_redundancy = 0.0;
        out.distance_w = 0.0;
        if (s.has_distance == 1) {
            const Distance d = reduced(s, o);
            const double p = 1.0 / (d.sigma * d.sigma);
            const double v_distance = at.distance - d.horizontal;
            weighted_squares += p * v_distance * v_distance;
            out.distance_residual = v_distance;
            search.check(v_distance, d.sigma, 1.0 - p * quadratic_form(q, at.distance_row),
                         QS_DISTANCE, i, out.distance_redundancy, out.distance_w);
        }
    }
    const double sigma0 = dof > 0 ? std::sqrt(weighted_squares / static_cast<double>(dof)) : 1.0;

    // 5. Height: weighted mean of the trigonometric heights.
    std::size_t heights = 0;
    double weight_sum = 0.0;
    double weighted_offsets = 0.0;
    double reference = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        if (sightings[i].has_zenith == 0) {
            continue;
        }
        const Height h = trigonometric_height(sightings[i], o, residuals[i].horizontal_distance);
        if (heights == 0) {
            reference = h.value;
        }
        const double p = 1.0 / (h.sigma * h.sigma);
        weight_sum += p;
        weighted_offsets += p * (h.value - reference);
        ++heights;
    }
    const double height = heights > 0 ? reference + weighted_offsets / weight_sum
                                      : std::numeric_limits<double>::quiet_NaN();
    double height_squares = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        qs_sighting_result& out = residuals[i];
        out.height = 0.0;
        out.height_residual = 0.0;
        out.height_redundancy = 0.0;
        out.height_w = 0.0;
        if (sightings[i].has_zenith == 0) {
            continue;
        }
        const Height h = trigonometric_height(sightings[i], o, out.horizontal_distance);
        const double p = 1.0 / (h.sigma * h.sigma);
        const double v = height - h.value;
        height_squares += p * v * v;
        out.height = h.value;
        out.height_residual = v;
        search.check(v, h.sigma, 1.0 - p / weight_sum, QS_HEIGHT, i, out.height_redundancy,
                     out.height_w);
    }
    const double sigma0_height =
        heights > 1 ? std::sqrt(height_squares / static_cast<double>(heights - 1)) : 1.0;

    // 6. The station.
    result->x = origin.x + station.x;
    result->y = origin.y + station.y;
    result->h = height;
    result->orientation = folded_circle(station.orientation * QS_RHO_SEC);
    result->sigma_x = sigma0 * std::sqrt(q[0][0]);
    result->sigma_y = sigma0 * std::sqrt(q[1][1]);
    result->sigma_h = heights > 0 ? sigma0_height / std::sqrt(weight_sum) : height;
    result->sigma_orientation = sigma0 * std::sqrt(q[2][2]) * QS_RHO_SEC;
    result->sigma0 = sigma0;
    result->sigma0_height = sigma0_height;
    result->blunder_w = search.w;
    result->blunder_kind = search.kind;
    result->blunder_flagged = search.w > o.blunder_threshold ? 1 : 0;
    result->dof = dof;
    result->height_count = heights;
    result->blunder_index = search.index;
    result->iterations = iterations;
    return QS_OK;
}
