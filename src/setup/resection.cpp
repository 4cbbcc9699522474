// Free-station resection: distances to the known points from directions alone
// (three-point problem, triangle by triangle), the station by a least-squares
// similarity fit of distances and directions, and the orientation from one
// known sighting.
#include "../core/core.hpp"

using namespace quillon;

namespace quillon {

// The sum of the two unknown angles and their truncated difference of the
// last triangle pair solved. Written on every solution and never read: they
// make LIB_RESA2D the one function that must not run on two threads at once.
double resection_last_angle_sum = 0.0;
double resection_last_angle_difference = 0.0;

} // namespace quillon

namespace {

// Station height from one sighting and its weight: the closer and the more
// level the sight, the heavier.
double station_height_from(const DistanceRecord& dist, const SurveyPoint& known,
                           double target_height, double instrument_height)
{
    return ((target_height + known.H) - dist.VerticalDifference) - instrument_height;
}

double height_weight(const DistanceRecord& dist, const AngleObservation& obs)
{
    // The squared cosine of the zenith angle is added to the squared
    // distance, not multiplied.
    return 1.0 / (square(dist.HorizontalDistance) + square(std::cos(sec_to_rad(obs.Zenith))));
}

} // namespace

ResultCode LIB_RESA2D(const AngleObservation* obs, const SurveyPoint* known, unsigned char n,
                      double* distances)
{
    if (n < 3 || n > RESECTION_MAX_POINTS) {
        return DOMAIN;
    }

    SurveyPoint point[RESECTION_MAX_POINTS];
    double direction[RESECTION_MAX_POINTS];
    // Only the first five entries carry their own index; a sixth and later
    // point is tagged 0, which decides where its result is written back.
    unsigned char index[RESECTION_MAX_POINTS] = {0, 1, 2, 3, 4};
    for (int i = 0; i < n; ++i) {
        point[i] = known[i];
        direction[i] = obs[i].Horizontal;
    }

    // Exchange sort by direction; equal directions keep their order.
    for (int i = 0; i < n - 1; ++i) {
        for (int j = i + 1; j < n; ++j) {
            if (direction[i] > direction[j]) {
                const SurveyPoint p = point[i];
                point[i] = point[j];
                point[j] = p;
                const double d = direction[i];
                direction[i] = direction[j];
                direction[j] = d;
                const unsigned char k = index[i];
                index[i] = index[j];
                index[j] = k;
            }
        }
    }

    // A gap of more than a half circle between two neighbouring sightings:
    // the sequence is restarted just after it, from the caller's arrays.
    double angle[RESECTION_MAX_POINTS];
    unsigned char order[RESECTION_MAX_POINTS];
    int gap = -1;
    for (int i = 0; i < n - 1; ++i) {
        if (direction[i + 1] < direction[i]) {
            direction[i + 1] = direction[i + 1] + FULL_CIRCLE;
        }
        angle[i] = std::fabs(direction[i + 1] - direction[i]);
        if (angle[i] > HALF_CIRCLE) {
            gap = i;
            break;
        }
    }
    if (gap >= 0) {
        for (int k = 0; k < n; ++k) {
            order[k] = index[(gap + 1 + k) % n];
            point[k] = known[order[k]];
            direction[k] = obs[order[k]].Horizontal;
        }
    } else {
        for (int k = 0; k < n; ++k) {
            order[k] = index[k];
        }
    }

    // Angles at the station between neighbouring points, and the sides
    // joining those points.
    double side[RESECTION_MAX_POINTS];
    for (int i = 0; i < n - 1; ++i) {
        if (direction[i + 1] < direction[i]) {
            direction[i + 1] = direction[i + 1] + FULL_CIRCLE;
        }
        angle[i] = std::fabs(direction[i + 1] - direction[i]);
        side[i] =
            std::sqrt(square(point[i].X - point[i + 1].X) + square(point[i].Y - point[i + 1].Y));
    }

    // Angle at the middle point of each triangle pair.
    double middle_angle[RESECTION_MAX_POINTS];
    for (int i = 0; i < n - 2; ++i) {
        const double az_back = azimuth_or(point[i + 1], point[i], 0.0);
        const double az_ahead = azimuth_or(point[i + 1], point[i + 2], 0.0);
        middle_angle[i] = add_turn_if_negative<ArcSeconds>(az_back - az_ahead);
    }

    // Each pair of neighbouring triangles gives the distances to its outer
    // points; a later pair overwrites what an earlier one found.
    const double t45 = std::tan(EIGHTH_TURN_RAD_SHORT_PI);
    double dist[RESECTION_MAX_POINTS];
    for (int i = 0; i < n - 2; ++i) {
        const double alpha = angle[i];
        const double beta = angle[i + 1];
        const double a = side[i];
        const double b = side[i + 1];
        const double k = (a * std::sin(sec_to_rad(beta))) / (b * std::sin(sec_to_rad(alpha)));
        const double S = FULL_CIRCLE - ((middle_angle[i] + alpha) + beta);
        // The difference of the unknown angles is cut to whole seconds.
        const double D = whole_seconds(
            std::atan(((t45 - k) / (t45 * k + 1.0)) * std::tan(S * HALF_RAD_PER_SEC_SHORT_PI)) *
            TWICE_SEC_PER_RAD_SHORT_PI);
        const double phi = S / 2.0 + D / 2.0;
        const double psi = S / 2.0 - D / 2.0;
        dist[i] = std::sin(sec_to_rad(HALF_CIRCLE - phi - alpha)) / std::sin(sec_to_rad(alpha)) * a;
        dist[i + 2] =
            std::sin(sec_to_rad(HALF_CIRCLE - psi - beta)) / std::sin(sec_to_rad(beta)) * b;
        if (n == 3) {
            dist[1] = std::sin(sec_to_rad(phi)) / std::sin(sec_to_rad(angle[0])) * side[0];
        }
        resection_last_angle_sum = S;
        resection_last_angle_difference = D;
    }

    // Back into the caller's order, through the index tags.
    for (int j = 0; j < n; ++j) {
        for (int k = 0; k < n; ++k) {
            if (order[k] == j) {
                distances[j] = dist[k];
            }
        }
    }
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
    const double count = n;

    if (mode == 0) {
        // Measured positions in the instrument's own frame.
        double u[RESECTION_MAX_POINTS];
        double v[RESECTION_MAX_POINTS];
        double Su = 0.0;
        double Sv = 0.0;
        double SX = 0.0;
        double SY = 0.0;
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

        double SdX = 0.0;
        double SdY = 0.0;
        double Sux = 0.0;
        double Svx = 0.0;
        double Svy = 0.0;
        double Suy = 0.0;
        double Suu = 0.0;
        double Svv = 0.0;
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
        // a = scale * cos(rotation), b = scale * sin(rotation).
        const double a = (Svy + Sux - (SdY * Sv + SdX * Su) / count) / N;
        const double b = (Suy - Svx - (SdY * Su - SdX * Sv) / count) / N;
        // The one-argument arctangent: a rotation beyond a quarter circle
        // comes out turned by a half circle.
        const double orientation = whole_seconds(std::atan(b / a) * SEC_PER_RAD_SHORT_PI);
        const double X = SdX / count - a * Su / count + b * Sv / count + mX0;
        const double Y = SdY / count - a * Sv / count - b * Su / count + mY0;
        out->X = X;
        out->Y = Y;
        out->Orientation = orientation;

        if (2 * (n - 2) > 0) {
            double SrX = 0.0;
            double SrY = 0.0;
            for (int i = 0; i < n; ++i) {
                const double rX = a * u[i] + X - b * v[i] - known[i].X;
                const double rY = b * u[i] + a * v[i] + Y - known[i].Y;
                SrX = SrX + square(rX);
                SrY = SrY + square(rY);
            }
            // Divided by n - 1, not by the redundancy of the fit.
            out->mX = std::sqrt(SrX / (count - 1.0));
            out->mY = std::sqrt(SrY / (count - 1.0));
        } else {
            out->mX = 0.0;
            out->mY = 0.0;
        }
    }

    // The height, in every mode: weighted mean of the heights from each
    // sighting. A mode other than 0 and 1 is not checked and takes any count.
    double Swh = 0.0;
    double Sw = 0.0;
    for (int i = 0; i < n; ++i) {
        const double h =
            station_height_from(dists[i], known[i], targetHeights[i], instrumentHeight);
        const double w = height_weight(dists[i], obs[i]);
        Swh = Swh + w * h;
        Sw = Sw + w;
    }
    const double H = Swh / Sw;
    out->H = H;
    if (n < 2) {
        out->mH = 0.0;
        return OK;
    }
    double Swvv = 0.0;
    for (int i = 0; i < n; ++i) {
        const double h =
            station_height_from(dists[i], known[i], targetHeights[i], instrumentHeight);
        const double w = height_weight(dists[i], obs[i]);
        Swvv = Swvv + w * square(h - H);
    }
    const double s = std::sqrt(Swvv / (count - 1.0));
    if (s < 0.0001) {
        out->mH = 0.0;
    } else {
        // Delivered at single precision.
        out->mH = through_float(s);
    }
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
