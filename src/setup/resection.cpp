// Free-station resection: distances to the known points from directions alone
// (three-point problem, triangle by triangle), the station by a least-squares
// similarity fit of distances and directions, and the orientation from one
// known sighting.
#include "../core/core.hpp"

namespace quillon {

// The sum of the two unknown angles and their truncated difference of the
// last triangle pair solved: written on every solution, never read, part of
// no result. They are part of the library's contract all the same: callers
// are told that the library keeps no state but these two values, and that
// LIB_RESA2D, which writes them, is therefore the one function not to run on
// two threads at once. Turning them into locals would change that contract,
// not tidy the code; they stay until the contract itself changes.
double resection_last_angle_sum = 0.0;
double resection_last_angle_difference = 0.0;

} // namespace quillon

using namespace quillon;

namespace {

// ---- distances from directions alone ----------------------------------------

// The known points as the station sees them, in the order their directions
// are used, with the angles and sides of the triangles between neighbours.
// The points stay in the caller's array; an entry holds where its point is.
// Kept small: the function runs on the instrument's own threads. The
// triangles are measured into their arrays before any is solved: measured
// as the solution reaches them they give the same numbers, but where a
// not-a-number from the input meets one from a degenerate triangle, the
// other one is then carried on, and the sign bit delivered changes.
struct Fan {
    int n;
    const SurveyPoint* known;
    unsigned char point[RESECTION_MAX_POINTS];
    // One array for three things in turn, named by each step that uses it:
    // the directions while the angles at the station are measured; then the
    // angle at the middle point of each pair of triangles i, i + 1, kept two
    // places on (middle[i + 2]); then the distances found. Pair i reads its
    // middle angle before it writes distances i and i + 2, and no later pair
    // reads a place below i + 3: nothing is overwritten before it is read.
    double shared[RESECTION_MAX_POINTS];
    // Where each entry's result goes back in the caller's order (see
    // sort_by_direction).
    unsigned char order[RESECTION_MAX_POINTS];
    // Angle at the station between neighbours, and the side joining them.
    double angle[RESECTION_MAX_POINTS];
    double side[RESECTION_MAX_POINTS];
};

// The points with their directions put in order of direction by an
// exchange sort (equal directions keep their order). Only the first five
// entries carry their own index as their tag; a sixth and later point is
// tagged 0, which decides where its result is written back.
void sort_by_direction(const AngleObservation* obs, Fan& fan)
{
    const int n = fan.n;
    double* const direction = fan.shared;
    for (int i = 0; i < n; ++i) {
        fan.point[i] = static_cast<unsigned char>(i);
        direction[i] = obs[i].Horizontal;
        fan.order[i] = static_cast<unsigned char>(i < 5 ? i : 0);
    }
    for (int i = 0; i < n - 1; ++i) {
        for (int j = i + 1; j < n; ++j) {
            if (direction[i] > direction[j]) {
                const unsigned char p = fan.point[i];
                fan.point[i] = fan.point[j];
                fan.point[j] = p;
                const double d = direction[i];
                direction[i] = direction[j];
                direction[j] = d;
                const unsigned char k = fan.order[i];
                fan.order[i] = fan.order[j];
                fan.order[j] = k;
            }
        }
    }
}

// The angle from sighting i to sighting i + 1; a direction behind the one
// before it is first carried on by a full circle.
double angle_to_next(double* direction, int i)
{
    if (direction[i + 1] < direction[i]) {
        direction[i + 1] = direction[i + 1] + FULL_CIRCLE;
    }
    return std::fabs(direction[i + 1] - direction[i]);
}

// A gap of more than a half circle between two neighbouring sightings: the
// sequence is restarted just after it, from the caller's arrays, each point
// the one its tag names.
void restart_after_gap(const AngleObservation* obs, Fan& fan)
{
    const int n = fan.n;
    double* const direction = fan.shared;
    int gap = -1;
    for (int i = 0; i < n - 1; ++i) {
        if (angle_to_next(direction, i) > HALF_CIRCLE) {
            gap = i;
            break;
        }
    }
    if (gap < 0) {
        return;
    }
    unsigned char sorted[RESECTION_MAX_POINTS];
    for (int k = 0; k < n; ++k) {
        sorted[k] = fan.order[k];
    }
    for (int k = 0; k < n; ++k) {
        fan.order[k] = sorted[(gap + 1 + k) % n];
        fan.point[k] = fan.order[k];
        direction[k] = obs[fan.order[k]].Horizontal;
    }
}

void measure_triangles(Fan& fan)
{
    const int n = fan.n;
    double* const direction = fan.shared;
    double* const middle = fan.shared;
    for (int i = 0; i < n - 1; ++i) {
        fan.angle[i] = angle_to_next(direction, i);
        const SurveyPoint& a = fan.known[fan.point[i]];
        const SurveyPoint& b = fan.known[fan.point[i + 1]];
        fan.side[i] = std::sqrt(square(a.X - b.X) + square(a.Y - b.Y));
    }
    for (int i = 0; i < n - 2; ++i) {
        const SurveyPoint& apex = fan.known[fan.point[i + 1]];
        const double az_back = azimuth_or(apex, fan.known[fan.point[i]], 0.0);
        const double az_ahead = azimuth_or(apex, fan.known[fan.point[i + 2]], 0.0);
        middle[i + 2] = add_turn_if_negative<ArcSeconds>(az_back - az_ahead);
    }
}

// Each pair of neighbouring triangles gives the distances to its outer
// points; a later pair overwrites what an earlier one found.
void solve_triangle_pairs(Fan& fan)
{
    const int n = fan.n;
    const double* const middle = fan.shared;
    double* const distance = fan.shared;
    const double t45 = std::tan(EIGHTH_TURN_RAD_SHORT_PI);
    for (int i = 0; i < n - 2; ++i) {
        const double alpha = fan.angle[i];
        const double beta = fan.angle[i + 1];
        const double a = fan.side[i];
        const double b = fan.side[i + 1];
        const double k = (a * std::sin(sec_to_rad(beta))) / (b * std::sin(sec_to_rad(alpha)));
        const double S = FULL_CIRCLE - ((middle[i + 2] + alpha) + beta);
        // The difference of the unknown angles is cut to whole seconds.
        const double D = whole_seconds(
            std::atan(((t45 - k) / (t45 * k + 1.0)) * std::tan(S * HALF_RAD_PER_SEC_SHORT_PI)) *
            TWICE_SEC_PER_RAD_SHORT_PI);
        const double phi = S / 2.0 + D / 2.0;
        const double psi = S / 2.0 - D / 2.0;
        distance[i] =
            std::sin(sec_to_rad(HALF_CIRCLE - phi - alpha)) / std::sin(sec_to_rad(alpha)) * a;
        distance[i + 2] =
            std::sin(sec_to_rad(HALF_CIRCLE - psi - beta)) / std::sin(sec_to_rad(beta)) * b;
        if (n == 3) {
            distance[1] =
                std::sin(sec_to_rad(phi)) / std::sin(sec_to_rad(fan.angle[0])) * fan.side[0];
        }
        resection_last_angle_sum = S;
        resection_last_angle_difference = D;
    }
}

// Back into the caller's order, through the index tags.
void write_back(const Fan& fan, double* distances)
{
    const double* const distance = fan.shared;
    for (int j = 0; j < fan.n; ++j) {
        for (int k = 0; k < fan.n; ++k) {
            if (fan.order[k] == j) {
                distances[j] = distance[k];
            }
        }
    }
}

// ---- station from distances and directions ------------------------------------

// A similarity transformation from the instrument's own frame (u, v: the
// measured positions) to the known points: a = scale * cos(rotation),
// b = scale * sin(rotation), and the station X, Y.
struct Similarity {
    double a;
    double b;
    double X;
    double Y;
};

Similarity fit_similarity(const DistanceRecord* dists, const AngleObservation* obs,
                          const SurveyPoint* known, int n, double* u, double* v)
{
    const double count = n;
    double Su = 0.0, Sv = 0.0;
    double SX = 0.0, SY = 0.0;
    for (int i = 0; i < n; ++i) {
        u[i] = dists[i].HorizontalDistance * std::cos(sec_to_rad(obs[i].Horizontal));
        v[i] = dists[i].HorizontalDistance * std::sin(sec_to_rad(obs[i].Horizontal));
        Su = Su + u[i];
        Sv = Sv + v[i];
        SX = SX + known[i].X;
        SY = SY + known[i].Y;
    }
    const double inverse_count = 1.0 / count;
    const double mX0 = SX * inverse_count;
    const double mY0 = SY * inverse_count;

    double SdX = 0.0, SdY = 0.0;
    double Sux = 0.0, Svx = 0.0, Svy = 0.0, Suy = 0.0;
    double Suu = 0.0, Svv = 0.0;
    for (int i = 0; i < n; ++i) {
        const double dX = known[i].X - mX0;
        const double dY = known[i].Y - mY0;
        SdX = SdX + dX;
        SdY = SdY + dY;
        Sux = Sux + u[i] * dX;
        Svx = Svx + v[i] * dX;
        Svy = Svy + v[i] * dY;
        Suy = Suy + u[i] * dY;
        Suu = Suu + u[i] * u[i];
        Svv = Svv + v[i] * v[i];
    }

    const double N = (Svv + Suu) - (Sv * Sv + Su * Su) / count;
    const double a = (Svy + Sux - (SdY * Sv + SdX * Su) / count) / N;
    const double b = (Suy - Svx - (SdY * Su - SdX * Sv) / count) / N;
    const double X = SdX / count - a * Su / count + b * Sv / count + mX0;
    const double Y = SdY / count - a * Sv / count - b * Su / count + mY0;
    return {a, b, X, Y};
}

// Mean errors of the fitted station in X and Y, divided by n - 1, not by the
// redundancy of the fit; 0 for two points.
void plan_errors(const Similarity& fit, const SurveyPoint* known, int n, const double* u,
                 const double* v, ResectionResult* out)
{
    if (2 * (n - 2) <= 0) {
        out->mX = 0.0;
        out->mY = 0.0;
        return;
    }
    const double count = n;
    double SrX = 0.0;
    double SrY = 0.0;
    for (int i = 0; i < n; ++i) {
        const double rX = fit.a * u[i] + fit.X - fit.b * v[i] - known[i].X;
        const double rY = fit.b * u[i] + fit.a * v[i] + fit.Y - known[i].Y;
        SrX = SrX + square(rX);
        SrY = SrY + square(rY);
    }
    out->mX = std::sqrt(SrX / (count - 1.0));
    out->mY = std::sqrt(SrY / (count - 1.0));
}

// The station height from one sighting and its weight: the closer and the
// more level the sight, the heavier. The squared cosine of the zenith angle
// is added to the squared distance, not multiplied.
struct HeightSighting {
    double height;
    double weight;
};

HeightSighting height_sighting(double instrument_height, const DistanceRecord& dist,
                               const AngleObservation& obs, const SurveyPoint& known,
                               double target_height)
{
    const double height = ((target_height + known.H) - dist.VerticalDifference) - instrument_height;
    const double weight =
        1.0 / (square(dist.HorizontalDistance) + square(std::cos(sec_to_rad(obs.Zenith))));
    return {height, weight};
}

// The height: weighted mean of the heights from each sighting, and its mean
// error delivered at single precision (0 below a tenth of a millimetre).
// Each sighting is weighed once and kept in heights and weights (room for
// RESECTION_MAX_POINTS each) for the error; the count is not bounded here,
// and the sightings beyond that room, which only an unchecked mode lets
// through, are weighed again.
void fit_height(double instrument_height, const DistanceRecord* dists, const AngleObservation* obs,
                const SurveyPoint* known, const double* target_heights, int n, double* heights,
                double* weights, ResectionResult* out)
{
    const bool kept = n <= static_cast<int>(RESECTION_MAX_POINTS);
    double Swh = 0.0;
    double Sw = 0.0;
    for (int i = 0; i < n; ++i) {
        const HeightSighting s =
            height_sighting(instrument_height, dists[i], obs[i], known[i], target_heights[i]);
        if (kept) {
            heights[i] = s.height;
            weights[i] = s.weight;
        }
        Swh = Swh + s.weight * s.height;
        Sw = Sw + s.weight;
    }
    const double H = Swh / Sw;
    out->H = H;
    if (n < 2) {
        out->mH = 0.0;
        return;
    }
    double Swvv = 0.0;
    for (int i = 0; i < n; ++i) {
        const HeightSighting s = kept ? HeightSighting{heights[i], weights[i]}
                                      : height_sighting(instrument_height, dists[i], obs[i],
                                                        known[i], target_heights[i]);
        Swvv = Swvv + s.weight * square(s.height - H);
    }
    const double error = std::sqrt(Swvv / (static_cast<double>(n) - 1.0));
    out->mH = error < 0.0001 ? 0.0 : through_float(error);
}

} // namespace

ResultCode LIB_RESA2D(const AngleObservation* obs, const SurveyPoint* known, unsigned char n,
                      double* distances)
{
    if (n < 3 || n > RESECTION_MAX_POINTS) {
        return DOMAIN;
    }
    Fan fan;
    fan.n = n;
    fan.known = known;
    sort_by_direction(obs, fan);
    restart_after_gap(obs, fan);
    measure_triangles(fan);
    solve_triangle_pairs(fan);
    write_back(fan, distances);
    return OK;
}

ResultCode LIB_RESDist(double instrumentHeight, const DistanceRecord* dists,
                       const AngleObservation* obs, const SurveyPoint* known,
                       const double* targetHeights, unsigned char n, ResectionResult* out,
                       unsigned char mode)
{
    if (mode == 0 && (n < 2 || n > RESECTION_MAX_POINTS)) {
        return DOMAIN;
    }
    if (mode == 1 && (n < 1 || n > RESECTION_MAX_POINTS)) {
        return DOMAIN;
    }
    // Two work arrays, used twice: the plan fit's measured positions (u, v),
    // then each sighting's height and weight.
    double first[RESECTION_MAX_POINTS];
    double second[RESECTION_MAX_POINTS];
    if (mode == 0) {
        double* u = first;
        double* v = second;
        const Similarity fit = fit_similarity(dists, obs, known, n, u, v);
        out->X = fit.X;
        out->Y = fit.Y;
        // The one-argument arctangent: a rotation beyond a quarter circle
        // comes out turned by a half circle.
        out->Orientation = whole_seconds(std::atan(fit.b / fit.a) * SEC_PER_RAD_SHORT_PI);
        plan_errors(fit, known, n, u, v, out);
    }
    // The height, in every mode. A mode other than 0 and 1 is not checked and
    // takes any count.
    fit_height(instrumentHeight, dists, obs, known, targetHeights, n, first, second, out);
    return OK;
}

ResultCode LIB_RESSetAngle(const SurveyPoint* station, const SurveyPoint* target, double reading,
                           double* orientation, double* azimuth)
{
    // With coincident points the azimuth keeps the caller's value, and that
    // value is used.
    *azimuth = azimuth_or(*station, *target, *azimuth);
    *orientation = (*orientation + reading) - *azimuth;
    return OK;
}
