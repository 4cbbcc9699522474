// The floors, one per exported function, in the order of the header. Each
// says in its calls text which calls it makes per call of the function.
#include "floors.hpp"

#include "quillon.h"

#include <cmath>
#include <cstring>

namespace bench {

namespace {

using Args = void* const*;

template <class T> const T& arg(Args a, int i) { return *static_cast<const T*>(a[i]); }
template <class T> const T* array(Args a, int i) { return static_cast<const T*>(a[i]); }

constexpr double RHO = QUILLON_RHO_SEC;
constexpr double HALF_CIRCLE = 648000.0;

double rad(double seconds) { return seconds * QUILLON_RAD_PER_SEC; }
double sq(double x) { return x * x; }

SurveyPoint point_of(double X, double Y, double H) { return {X, Y, H}; }
SurveyPoint station_point(const StationRecord& s) { return {s.X, s.Y, s.H}; }
SurveyPoint instrument_point(const StationRecord& s)
{
    return {s.X, s.Y, s.H + s.InstrumentHeight};
}

// One atan2: the azimuth in radians.
double azimuth(const SurveyPoint& from, const SurveyPoint& to)
{
    return std::atan2(to.Y - from.Y, to.X - from.X);
}

// One atan2, the azimuth in arc-seconds.
double azimuth_sec(const SurveyPoint& from, const SurveyPoint& to)
{
    return azimuth(from, to) * RHO;
}

// One sqrt each.
double plan(const SurveyPoint& a, const SurveyPoint& b)
{
    return std::sqrt(sq(a.Y - b.Y) + sq(a.X - b.X));
}
double spatial(const SurveyPoint& a, const SurveyPoint& b)
{
    return std::sqrt(sq(a.H - b.H) + sq(a.Y - b.Y) + sq(a.X - b.X));
}

// A full sight between two points: both distances (2 sqrt), the azimuth and
// the zenith angle (2 atan2).
double sight(const SurveyPoint& from, const SurveyPoint& to)
{
    const double h = plan(from, to);
    return spatial(from, to) + h + azimuth(from, to) + std::atan2(h, to.H - from.H);
}

// A point at an azimuth (arc-seconds) and distance: cos and sin of one angle.
double polar(double azimuth_seconds, double distance)
{
    const double a = rad(azimuth_seconds);
    return std::cos(a) * distance + std::sin(a) * distance;
}

// ---- core -------------------------------------------------------------------

double f_GetFaceStatus(Args a, const Hint&) { return arg<double>(a, 0); }

double f_Sum(Args a, const Hint&) { return arg<unsigned char>(a, 1); }

double f_Cal2PointDist(Args a, const Hint&)
{
    const auto& p = arg<SurveyPoint>(a, 0);
    const auto& q = arg<SurveyPoint>(a, 1);
    switch (arg<unsigned char>(a, 3)) {
    case 0: return plan(p, q);
    case 1: return spatial(p, q);
    default: return 0.0;
    }
}

double f_CalAZ(Args a, const Hint&)
{
    return azimuth(arg<SurveyPoint>(a, 0), arg<SurveyPoint>(a, 1));
}

double f_CalDistAngle(Args a, const Hint&)
{
    return sight(arg<SurveyPoint>(a, 0), arg<SurveyPoint>(a, 1));
}

double f_MeasCoor(Args a, const Hint&)
{
    return polar(arg<double>(a, 2), arg<DistanceRecord>(a, 1).HorizontalDistance);
}

double f_CalCoor(Args a, const Hint&) { return polar(arg<double>(a, 1), arg<double>(a, 2)); }

double f_CalDist(Args a, const Hint&)
{
    const SurveyPoint* pair = array<SurveyPoint>(a, 0);
    return azimuth(pair[0], pair[1]) + plan(pair[0], pair[1]);
}

double f_DistConvert(Args a, const Hint&)
{
    const double z = rad(arg<double>(a, 3));
    return std::cos(z) + std::sin(z);
}

// Along and across a line: both azimuths, the distance, cos and sin of the
// angle between.
double line_components(const SurveyPoint& A, const SurveyPoint& B, const SurveyPoint& P)
{
    const double t = azimuth(A, P) - azimuth(A, B);
    const double D = plan(A, P);
    return std::cos(t) * D + std::sin(t) * D;
}

double f_CalLB(Args a, const Hint&)
{
    const SurveyPoint* line = array<SurveyPoint>(a, 0);
    return line_components(line[0], line[1], arg<SurveyPoint>(a, 1));
}

double f_CalScale(Args a, const Hint&) { return arg<double>(a, 0); }

// ---- stakeout, remote height ------------------------------------------------

double f_SO_DistAngle(Args a, const Hint&) { return arg<double>(a, 3); }

double f_SO_Coor(Args a, const Hint&)
{
    const auto& station = arg<StationRecord>(a, 0);
    const auto& measured = arg<DistanceRecord>(a, 1);
    const double angle = arg<double>(a, 2);
    const SurveyPoint S = station_point(station);
    const auto& design = arg<SurveyPoint>(a, 3);
    const double D = plan(S, design);
    const double t = rad(angle - azimuth_sec(S, design));
    return D + polar(angle, measured.HorizontalDistance) + std::cos(t) * D + std::sin(t) * D;
}

double f_SO_Height(Args a, const Hint&)
{
    const double V = array<double>(a, 2)[1];
    const double e = V <= HALF_CIRCLE ? 324000.0 - V : V - 972000.0;
    return std::tan(rad(e));
}

double f_SO_Divide(Args a, const Hint&)
{
    const double* directions = array<double>(a, 1);
    const double t = rad(directions[1] - directions[0]);
    return std::sin(t) + std::cos(t);
}

double f_Hight(Args a, const Hint&)
{
    switch (arg<unsigned char>(a, 5)) {
    case 0: return std::tan(rad(arg<double>(a, 3)));
    case 1: return std::tan(rad(arg<double>(a, 2))) + std::tan(rad(arg<double>(a, 3)));
    default: return 0.0;
    }
}

// ---- offsets ------------------------------------------------------------------

double f_OS_Angle(Args a, const Hint&)
{
    const auto& station = arg<StationRecord>(a, 0);
    const double* angles = array<double>(a, 2);
    double horizontal = arg<DistanceRecord>(a, 1).HorizontalDistance;
    if (arg<unsigned char>(a, 5) == 1) {
        horizontal = plan(station_point(station), arg<SurveyPoint>(a, 3));
    }
    const double z = rad(angles[1]);
    const double slope = horizontal / std::sin(z);
    return polar(angles[0], horizontal) + std::cos(z) * slope;
}

double f_OS_Dist1(Args a, const Hint&)
{
    const auto& station = arg<StationRecord>(a, 0);
    const double angle = arg<double>(a, 2);
    const auto& known = arg<SurveyPoint>(a, 3);
    const double* offsets = array<double>(a, 4);
    double sum = 0.0;
    SurveyPoint reference = known;
    double az = angle;
    if (arg<unsigned char>(a, 6) == 0) {
        const double d = arg<DistanceRecord>(a, 1).HorizontalDistance;
        const double r = rad(angle);
        const double c = std::cos(r);
        const double s = std::sin(r);
        reference = point_of(station.X + d * c, station.Y + d * s, station.H);
        sum = c + s;
        // Turned through the faces the azimuth is another angle.
        if (station.signA != station.signB) {
            az = angle + HALF_CIRCLE;
            sum = sum + polar(az, 1.0);
        }
    } else {
        az = azimuth_sec(station_point(station), known);
        sum = polar(az, 1.0);
    }
    const SurveyPoint target =
        point_of(reference.X + offsets[1], reference.Y + offsets[0], reference.H + offsets[2]);
    return sum + sight(instrument_point(station), target);
}

double f_OS_Dist2(Args a, const Hint&)
{
    const SurveyPoint* line = array<SurveyPoint>(a, 1);
    const double L = spatial(line[0], line[1]);
    const double e = arg<double>(a, 2) / L;
    const SurveyPoint P =
        point_of(line[1].X + (line[1].X - line[0].X) * e, line[1].Y + (line[1].Y - line[0].Y) * e,
                 line[1].H + (line[1].H - line[0].H) * e);
    return L + sight(instrument_point(arg<StationRecord>(a, 0)), P);
}

double f_OS_SDist(Args a, const Hint&)
{
    const auto& station = arg<StationRecord>(a, 0);
    const auto& measured = arg<DistanceRecord>(a, 1);
    const double* angles = array<double>(a, 2);
    double sum = 0.0;
    double horizontal_angle = angles[0];
    double zenith = angles[1];
    if (arg<unsigned char>(a, 6) == 1) {
        const SurveyPoint I = instrument_point(station);
        const auto& known = arg<SurveyPoint>(a, 3);
        sum = sight(I, known);
        horizontal_angle = azimuth_sec(I, known);
        zenith = std::atan2(1.0, known.H - I.H) * RHO;
    }
    const double z = rad(zenith);
    return sum + std::sin(z) + std::cos(z) + polar(horizontal_angle, measured.HorizontalDistance);
}

double f_OS_Ha(Args a, const Hint&)
{
    const auto& station = arg<StationRecord>(a, 0);
    const SurveyPoint* line = array<SurveyPoint>(a, 1);
    const SurveyPoint S = station_point(station);
    const double t = std::tan(rad(arg<double>(a, 2)));
    // The point on the line: its azimuth from the station serves the
    // direction test and the sight alike.
    const SurveyPoint P = point_of(0.5 * (line[0].X + line[1].X), 0.5 * (line[0].Y + line[1].Y),
                                   0.5 * (line[0].H + line[1].H));
    const SurveyPoint I = instrument_point(station);
    const double h = plan(I, P);
    return azimuth(S, line[0]) + azimuth(S, line[1]) + t + azimuth(S, P) + h + spatial(I, P) +
           std::atan2(h, P.H - I.H);
}

double f_OS_Round(Args a, const Hint&)
{
    const auto& station = arg<StationRecord>(a, 0);
    const auto& measured = arg<DistanceRecord>(a, 1);
    const AngleObservation* obs = array<AngleObservation>(a, 2);
    const double radius = arg<double>(a, 3);
    const double right = obs[1].Horizontal;
    const double left = obs[0].Horizontal;
    double spread = std::fabs(right - left);
    spread = spread > HALF_CIRCLE ? 1296000.0 - spread : spread;
    const double half = spread * 0.5;
    double e = std::fabs(right - obs[2].Horizontal);
    e = e > HALF_CIRCLE ? 1296000.0 - e : e;
    const double g = e > half ? e - half : half - e;
    const double beta = HALF_CIRCLE - std::asin(std::sin(rad(g)) / std::sin(rad(half))) * RHO;
    const double D =
        ((measured.HorizontalDistance + radius) / std::sin(rad(HALF_CIRCLE - g - beta))) *
        std::sin(rad(beta));
    const double az = rad(right - half);
    const SurveyPoint I = instrument_point(station);
    const SurveyPoint centre =
        point_of(station.X + std::cos(az) * D, station.Y + std::sin(az) * D, I.H);
    // Turned through the faces the azimuth is the bisector's, not computed.
    const double h = plan(I, centre);
    double sum = h + spatial(I, centre) + std::atan2(h, centre.H - I.H);
    if (station.signA == station.signB) {
        sum = sum + azimuth(I, centre);
    }
    return sum;
}

double f_Area(Args a, const Hint&)
{
    const unsigned count = arg<unsigned char>(a, 0);
    const SurveyPoint* P = array<SurveyPoint>(a, 1);
    double perimeter = 0.0;
    for (unsigned i = 0; i < count; ++i) {
        const unsigned j = i + 1 == count ? 0 : i + 1;
        perimeter = perimeter + plan(P[i], P[j]);
    }
    return perimeter;
}

double f_MissLine(Args a, const Hint&)
{
    const DistanceRecord* measured = array<DistanceRecord>(a, 1);
    const double* angles = array<double>(a, 2);
    const double HD1 = measured[0].HorizontalDistance;
    const double HD2 = measured[1].HorizontalDistance;
    const double dA = std::fabs(angles[0] - angles[3]);
    const double D = std::sqrt(sq(HD2) + sq(HD1) - 2.0 * std::cos(rad(dA)) * HD2 * HD1);
    const double dH = measured[1].VerticalDifference - measured[0].VerticalDifference;
    const double slope = std::sqrt(sq(dH) + sq(D));
    return slope + std::acos((sq(HD1) + sq(D) - sq(HD2)) / (2.0 * HD1 * D));
}

double f_CalFrontMeet(Args a, const Hint&)
{
    const auto& input = arg<FrontMeetInput>(a, 0);
    const SurveyPoint& A = input.A.Point;
    const SurveyPoint& B = input.B.Point;
    const double azAB = azimuth_sec(A, B);
    switch (arg<unsigned char>(a, 2)) {
    case 0:
        return std::tan(rad(azAB - input.A.Direction)) +
               std::tan(rad(input.B.Direction + HALF_CIRCLE - azAB));
    case 1: {
        const double D = plan(A, B);
        const double p = (sq(D) + sq(input.A.Distance) - sq(input.B.Distance)) / (2.0 * D);
        return std::sqrt(sq(input.A.Distance) - sq(p)) + polar(azAB, 1.0);
    }
    default: return azAB;
    }
}

double f_CalLineCrossPT(Args a, const Hint&) { return arg<LineCrossInput>(a, 0).P1.X; }

double f_CalLineHeight(Args a, const Hint&)
{
    const SurveyPoint* pts = array<SurveyPoint>(a, 0);
    const AngleObservation* obs = array<AngleObservation>(a, 1);
    // The projection's along and across, from the two azimuths at A.
    const double azAB = azimuth_sec(pts[0], pts[1]);
    const double azAS = azimuth_sec(pts[0], pts[2]);
    const double w = rad(azAS - azAB);
    const double d = plan(pts[0], pts[2]);
    const double x = rad((obs[2].Horizontal - obs[0].Horizontal) - (324000.0 - (azAS - azAB)));
    double sum = std::cos(w) * d + std::sin(w) * d + std::tan(x) + std::sin(x) +
                 std::tan(rad(324000.0 - obs[2].Zenith));
    if (arg<unsigned char>(a, 3) == 1) {
        sum = sum + std::tan(rad(324000.0 - obs[3].Zenith));
    }
    return sum;
}

double f_CalCircle(Args a, const Hint&)
{
    const SurveyPoint* p = array<SurveyPoint>(a, 0);
    // The centre by the determinant formula: no call; the radius: one sqrt.
    const double ax = p[1].X - p[0].X, ay = p[1].Y - p[0].Y;
    const double bx = p[2].X - p[0].X, by = p[2].Y - p[0].Y;
    const double d = 2.0 * (ax * by - ay * bx);
    const double ux = (by * (sq(ax) + sq(ay)) - ay * (sq(bx) + sq(by))) / d;
    const double uy = (ax * (sq(bx) + sq(by)) - bx * (sq(ax) + sq(ay))) / d;
    const double R = std::sqrt(sq(ux) + sq(uy));
    double sum = R;
    if (arg<unsigned char>(a, 5) == 1) {
        // One square root per listed pair, across the fixed band.
        const double Yc = p[0].Y + uy;
        const double start = Yc - 6370000.0;
        const double end = Yc + 6370000.0;
        const double step = (end - start) / arg<int32_t>(a, 4);
        for (double y = start; y < end; y = y + step) {
            sum = sum + std::sqrt(sq(R) - sq(y - Yc));
        }
    }
    return sum;
}

// ---- resection, reference lines, planes, arc ----------------------------------

double f_RESA2D(Args a, const Hint&)
{
    const AngleObservation* obs = array<AngleObservation>(a, 0);
    const SurveyPoint* known = array<SurveyPoint>(a, 1);
    const int n = arg<unsigned char>(a, 2);
    double angle[20];
    double sine[20];
    double side[20];
    const double t45 = std::tan(0.78539815);
    // Each side and the sine of each angle at the station once.
    for (int i = 0; i + 1 < n; ++i) {
        side[i] = plan(known[i], known[i + 1]);
        angle[i] = std::fabs(obs[i + 1].Horizontal - obs[i].Horizontal);
        sine[i] = std::sin(rad(angle[i]));
    }
    // Per pair of triangles: the angle at the middle point (two azimuths),
    // the half-angle tangent and its arctangent, whole seconds.
    double sum = 0.0;
    double phi[20];
    for (int i = 0; i + 2 < n; ++i) {
        const double middle =
            azimuth_sec(known[i + 1], known[i]) - azimuth_sec(known[i + 1], known[i + 2]);
        const double k = (side[i] * sine[i + 1]) / (side[i + 1] * sine[i]);
        const double S = 1296000.0 - ((middle + angle[i]) + angle[i + 1]);
        const double D = std::trunc(
            std::atan(((t45 - k) / (t45 * k + 1.0)) * std::tan(S * 2.424068364197531e-6)) *
            412529.6195311894);
        phi[i] = S / 2.0 + D / 2.0;
    }
    // One sine per distance delivered.
    for (int i = 0; i < n; ++i) {
        const int pair = i < n - 2 ? i : n - 3;
        sum = sum + std::sin(rad(HALF_CIRCLE - phi[pair] - angle[pair])) / sine[pair] * side[pair];
    }
    return sum;
}

double f_RESDist(Args a, const Hint&)
{
    const DistanceRecord* dists = array<DistanceRecord>(a, 1);
    const AngleObservation* obs = array<AngleObservation>(a, 2);
    const int n = arg<unsigned char>(a, 5);
    const unsigned char mode = arg<unsigned char>(a, 7);
    double sum = 0.0;
    if (mode == 0) {
        double Su = 0.0;
        double Sv = 0.0;
        for (int i = 0; i < n; ++i) {
            const double hz = rad(obs[i].Horizontal);
            Su = Su + dists[i].HorizontalDistance * std::cos(hz);
            Sv = Sv + dists[i].HorizontalDistance * std::sin(hz);
        }
        sum = std::atan(Sv / Su);
        if (n >= 3) {
            sum = sum + std::sqrt(Su * Su) + std::sqrt(Sv * Sv);
        }
    }
    // The weight of every height once, and the error of the mean.
    for (int i = 0; i < n; ++i) {
        sum = sum + std::cos(rad(obs[i].Zenith));
    }
    if (n >= 2) {
        sum = sum + std::sqrt(sum * sum);
    }
    return sum;
}

double f_RESSetAngle(Args a, const Hint&)
{
    return azimuth(arg<SurveyPoint>(a, 0), arg<SurveyPoint>(a, 1));
}

double f_BaseLine(Args a, const Hint&)
{
    const SurveyPoint* p = array<SurveyPoint>(a, 0);
    return azimuth(p[0], p[1]) + plan(p[0], p[1]);
}

double f_Project(Args a, const Hint&)
{
    const SurveyPoint* p = array<SurveyPoint>(a, 0);
    return line_components(p[0], p[1], p[2]) + plan(p[0], p[1]);
}

double f_LSO_Point(Args a, const Hint&)
{
    const SurveyPoint* p = array<SurveyPoint>(a, 0);
    const auto& pos = arg<LinePosition>(a, 1);
    const double theta = std::atan2(pos.Across, pos.Along) + azimuth(p[0], p[1]);
    const double r = std::sqrt(sq(pos.Across) + sq(pos.Along));
    return plan(p[0], p[1]) + std::cos(theta) * r + std::sin(theta) * r;
}

double f_LSO_Line(Args a, const Hint&)
{
    const SurveyPoint* p = array<SurveyPoint>(a, 0);
    return line_components(p[0], p[1], p[2]) + plan(p[0], p[1]);
}

// The unit vector of a sight: sine and cosine of both angles.
struct Unit {
    double x, y, z;
};
Unit sight_unit(const AngleObservation& sight)
{
    const double hz = rad(sight.Horizontal);
    const double v = rad(sight.Zenith);
    const double s = std::sin(v);
    return {s * std::cos(hz), s * std::sin(hz), std::cos(v)};
}

double f_VPlane(Args a, const Hint&)
{
    const auto& station = arg<StationRecord>(a, 0);
    const SurveyPoint* P = array<SurveyPoint>(a, 2);
    const SurveyPoint S = station_point(station);
    const Unit u = sight_unit(arg<AngleObservation>(a, 1));
    // The hit on the plane's line, and what is measured to it.
    const SurveyPoint hit =
        point_of(0.5 * (P[0].X + P[1].X) + u.x, 0.5 * (P[0].Y + P[1].Y) + u.y, P[0].H + u.z);
    const double along = std::cos(azimuth(P[0], hit) - azimuth(P[0], P[1])) * plan(P[0], hit);
    return azimuth(S, P[0]) + azimuth(S, P[1]) + azimuth(S, hit) + along +
           spatial(instrument_point(station), hit);
}

double f_SPlane(Args a, const Hint&)
{
    const auto& station = arg<StationRecord>(a, 0);
    const SurveyPoint* P = array<SurveyPoint>(a, 2);
    const Unit u = sight_unit(arg<AngleObservation>(a, 1));
    const SurveyPoint hit =
        point_of((P[0].X + P[1].X + P[2].X) / 3.0 + u.x, (P[0].Y + P[1].Y + P[2].Y) / 3.0 + u.y,
                 (P[0].H + P[1].H + P[2].H) / 3.0 + u.z);
    const double A = spatial(P[0], hit);
    const double C = spatial(P[0], P[1]);
    const double B = spatial(P[1], hit);
    const double along = (0.5 * (C / A + A / C) - 0.5 * (B * B) / (A * C)) * A;
    return azimuth_sec(station_point(station), hit) + std::sqrt(sq(A) - sq(along)) +
           azimuth(P[0], hit) - azimuth(P[0], P[1]) + spatial(instrument_point(station), hit);
}

double f_ArcCalc(Args a, const Hint&)
{
    const auto& station = arg<StationRecord>(a, 0);
    const auto& arc = arg<ArcDefinition>(a, 1);
    double radius = 0.0;
    double sum = 0.0;
    if (arg<unsigned char>(a, 3) == 1) {
        const double half_chord = 0.5 * plan(arc.P1, arc.P2);
        radius = std::fabs(arc.Radius);
        sum = std::sqrt((radius - half_chord) * (radius + half_chord));
    } else {
        // The centre by the determinant formula, the radius by one sqrt.
        const double bx = arc.P2.X - arc.P1.X, by = arc.P2.Y - arc.P1.Y;
        const double cx = arc.P3.X - arc.P1.X, cy = arc.P3.Y - arc.P1.Y;
        const double d = 2.0 * (bx * cy - by * cx);
        const double ux = (cy * (sq(bx) + sq(by)) - by * (sq(cx) + sq(cy))) / d;
        const double uy = (bx * (sq(cx) + sq(cy)) - cx * (sq(bx) + sq(by))) / d;
        radius = std::sqrt(sq(ux) + sq(uy));
    }
    const Unit u = sight_unit(arc.Sight);
    // The crossing: one sqrt of the discriminant; then the horizontal and
    // the sight distance, and the turn along the arc.
    const double fx = station.X - arc.P1.X;
    const double fy = station.Y - arc.P1.Y;
    const double half_b = u.x * fx + u.y * fy;
    const double t = std::sqrt(std::fabs(sq(half_b) - (sq(fx) + sq(fy) - sq(radius))));
    const SurveyPoint hit = point_of(station.X + t * u.x, station.Y + t * u.y, station.H + t * u.z);
    return sum + plan(station_point(station), hit) + spatial(instrument_point(station), hit) +
           std::atan2(fx * hit.Y - fy * hit.X, fx * hit.X + fy * hit.Y);
}

// ---- horizontal elements ---------------------------------------------------------

double line_on(const HElement& e, double l)
{
    const double a0 = rad(e.Azimuth);
    return e.X + l * std::cos(a0) + e.Y + l * std::sin(a0);
}

double circle_on(const HElement& e, double l)
{
    const double f = (l / e.Radius) * 0.5;
    const double t = rad(e.Azimuth) + f;
    const double c = 2.0 * e.Radius * std::sin(f);
    return c * std::cos(t) + c * std::sin(t);
}

// The clothoid's chord at l: its deflection (atan2) and length (sqrt); then
// cos and sin of the chord's direction. The series needs no call.
double curve_on(const HElement& e, double l)
{
    const double x = l - l * l * l * l * l / (40.0 * sq(e.Radius) * sq(e.Length));
    const double y = l * l * l / (6.0 * e.Radius * e.Length);
    const double c = std::sqrt(sq(x) + sq(y));
    const double t = rad(e.Azimuth) + std::atan2(y, x);
    return c * std::cos(t) + c * std::sin(t);
}

double f_H_Circle_AZ(Args a, const Hint&) { return arg<double>(a, 1); }

double f_H_Curve_AZ(Args a, const Hint&) { return arg<double>(a, 1); }

double f_H_Line_On(Args a, const Hint&) { return line_on(arg<HElement>(a, 0), arg<double>(a, 1)); }

double f_H_Circle_On(Args a, const Hint&)
{
    return circle_on(arg<HElement>(a, 0), arg<double>(a, 1));
}

double f_H_Curve_On(Args a, const Hint&)
{
    return curve_on(arg<HElement>(a, 0), arg<double>(a, 1));
}

double f_H_Curve_End(Args a, const Hint&)
{
    const HElement& e = arg<HElement>(a, 0);
    return curve_on(e, e.Length);
}

double f_H_Cross_TurnAngle(Args a, const Hint&)
{
    const SurveyPoint* p = array<SurveyPoint>(a, 0);
    return azimuth(p[1], p[2]) - azimuth(p[0], p[1]);
}

// Tangent lengths of a turn: its sine and tangent.
double turn_lengths(double turn_angle)
{
    const double t = std::fabs(rad(turn_angle));
    return 1.0 / std::sin(t) - 1.0 / std::tan(t);
}

double f_H_Cross_Length(Args a, const Hint&)
{
    return turn_lengths(arg<CrossPoint>(a, 0).TurnAngle);
}

// The polygon builder: per inner point the distance to it, the azimuths of
// the legs either side, the tangent lengths, the start of the curve, the
// entry curve's end (when there is one), the arc's end and the curve's end
// on the outgoing leg; then the last straight. The first leg's azimuth is
// also the start direction.
double cross_polygon(const CrossPoint* polygon, unsigned m)
{
    if (m < 3) {
        const SurveyPoint P0 = point_of(polygon[0].X, polygon[0].Y, 0.0);
        const SurveyPoint P1 = point_of(polygon[m - 1].X, polygon[m - 1].Y, 0.0);
        return azimuth(P0, P1) + plan(P0, P1);
    }
    SurveyPoint Q = point_of(polygon[0].X, polygon[0].Y, 0.0);
    double sum = 0.0;
    for (unsigned i = 1; i + 1 < m; ++i) {
        const CrossPoint& p = polygon[i];
        const SurveyPoint P = point_of(p.X, p.Y, 0.0);
        const SurveyPoint N = point_of(polygon[i + 1].X, polygon[i + 1].Y, 0.0);
        const double d = plan(Q, P);
        const double a_in = azimuth(Q, P);
        const double a_out = azimuth(P, N);
        const double tangent = turn_lengths((a_out - a_in) * QUILLON_RHO_SEC) * p.Radius;
        sum = sum + d + polar(a_in * QUILLON_RHO_SEC, tangent);
        HElement curve = {};
        curve.Azimuth = a_in * QUILLON_RHO_SEC;
        curve.Radius = p.Radius;
        if (p.EntryLength >= 0.001) {
            curve.Length = p.EntryLength;
            sum = sum + curve_on(curve, curve.Length);
        }
        sum = sum + circle_on(curve, p.Radius * 0.3);
        const double ex = std::cos(a_out) * tangent;
        const double ey = std::sin(a_out) * tangent;
        Q = point_of(p.X + ex, p.Y + ey, 0.0);
    }
    const SurveyPoint E = point_of(polygon[m - 1].X, polygon[m - 1].Y, 0.0);
    return sum + plan(Q, E);
}

double f_H_Cross_MainPoint(Args a, const Hint&)
{
    return cross_polygon(array<CrossPoint>(a, 0), arg<unsigned char>(a, 1));
}

double f_H_Cross_MainPoint_Full(Args a, const Hint&)
{
    const CrossPoint* polygon = array<CrossPoint>(a, 0);
    const unsigned m = arg<unsigned char>(a, 1);
    if (m >= 3 && polygon[1].Radius == 0.0) {
        // Two straights: their azimuths and lengths.
        double sum = 0.0;
        for (unsigned j = 0; j < 2; ++j) {
            const SurveyPoint from = point_of(polygon[j].X, polygon[j].Y, 0.0);
            const SurveyPoint to = point_of(polygon[j + 1].X, polygon[j + 1].Y, 0.0);
            sum = sum + azimuth(from, to) + plan(from, to);
        }
        return sum;
    }
    return cross_polygon(polygon, m);
}

// The end of every element of a designer's list.
double f_H_Ele_MainPoint(Args a, const Hint&)
{
    const HElement* elements = array<HElement>(a, 0);
    const unsigned n = arg<unsigned char>(a, 1);
    double sum = 0.0;
    for (unsigned i = 0; i + 1 < n; ++i) {
        const HElement& e = elements[i];
        switch (e.Type) {
        case 1: sum = sum + line_on(e, e.Length); break;
        case 2: sum = sum + circle_on(e, e.Length); break;
        default: sum = sum + curve_on(e, e.Length); break;
        }
    }
    return sum;
}

double f_Pile(Args a, const Hint&)
{
    const double interval = arg<double>(a, 2);
    if (arg<unsigned char>(a, 5) == 0 && interval != 0.0) {
        return std::ceil(array<double>(a, 0)[0] / interval);
    }
    return interval;
}

// The element of a horizontal table holding the chainage, as the lookup
// finds it: -1 where a stored record is delivered.
Hint hint_H_On(Args a)
{
    const HElement* table = array<HElement>(a, 0);
    const unsigned n = arg<unsigned char>(a, 1);
    const double K = arg<double>(a, 2);
    Hint hint;
    for (unsigned i = 0; i + 1 < n; ++i) {
        if (std::fabs(K - table[i].Chainage) < 0.001) {
            break;
        }
        if (K > table[i].Chainage && K < table[i + 1].Chainage) {
            hint.element = static_cast<int>(i);
            break;
        }
    }
    if (n > 0 && table[n - 1].Chainage - K < 0.001) {
        hint.element = -1;
    }
    return hint;
}

double f_H_On(Args a, const Hint& hint)
{
    if (hint.element < 0) {
        return 0.0;
    }
    const HElement& e = array<HElement>(a, 0)[hint.element];
    const double l = arg<double>(a, 2) - e.Chainage;
    switch (e.Type) {
    case 1: return line_on(e, l);
    case 2: return circle_on(e, l);
    default: return curve_on(e, l);
    }
}

// ---- profile and cross-section -----------------------------------------------------

double f_V_Line_On(Args a, const Hint&) { return arg<double>(a, 1); }

double f_V_Curve_On(Args a, const Hint&) { return arg<double>(a, 1); }

// A circular vertical curve at K: the grade angles, the split chainage
// (cosine of the half turn, tangent of the mean angle), then on the near
// half two sines, on the far half also the end elevation (a tangent and a
// sine).
double circle_elevation(const VElement& e, double K)
{
    const double a1 = std::atan(e.GradeIn);
    const double a2 = std::atan(e.GradeOut);
    const double h = std::fabs(a1 - a2) * 0.5;
    const double R = e.Radius;
    const double end = e.Chainage + e.Length;
    const double m =
        e.Chainage + e.Length * 0.5 + (1.0 / std::cos(h) - 1.0) * R * std::tan((a1 + a2) * 0.5);
    if (e.Chainage < K && K <= m) {
        const double f = (K - e.Chainage) / (2.0 * R);
        return std::sin(f) * std::sin(f + a1);
    }
    if (m < K && K <= end) {
        const double f = (end - K) / (2.0 * R);
        return R * std::tan(h) * std::sin(a2) + std::sin(f) * std::sin(f - a2);
    }
    return m;
}

double f_V_Circle_On(Args a, const Hint&)
{
    return circle_elevation(arg<VElement>(a, 0), arg<double>(a, 1));
}

double f_V_Ele_MainPoint(Args a, const Hint&)
{
    const VElement* elements = array<VElement>(a, 0);
    const unsigned n = arg<unsigned char>(a, 1);
    double sum = 0.0;
    for (unsigned i = 0; i + 1 < n; ++i) {
        if (elements[i].Type == 3) {
            // The grade angles, the tangent length, the rises to the vertex
            // and to the end.
            const double a1 = std::atan(i == 0 ? elements[0].GradeIn : elements[i - 1].GradeOut);
            const double a2 = std::atan(elements[i].GradeOut);
            sum = sum + std::tan(std::fabs(a1 - a2) * 0.5) + std::sin(a1) + std::sin(a2);
        }
    }
    return sum;
}

double f_V_Cross_MainPoint(Args a, const Hint&)
{
    const VElement* points = array<VElement>(a, 0);
    const unsigned n = arg<unsigned char>(a, 1);
    double sum = 0.0;
    for (unsigned i = 1; i + 1 < n; ++i) {
        if (points[i].Type == 3) {
            const double g_in = (points[i].VertexElevation - points[i - 1].VertexElevation) /
                                (points[i].VertexChainage - points[i - 1].VertexChainage);
            const double g_out = (points[i + 1].VertexElevation - points[i].VertexElevation) /
                                 (points[i + 1].VertexChainage - points[i].VertexChainage);
            const double a1 = std::atan(g_in);
            const double a2 = std::atan(g_out);
            sum = sum + std::tan(std::fabs(a1 - a2) * 0.5) + std::sin(a1) + std::sin(g_out);
        }
    }
    return sum;
}

// The element of a profile holding the chainage, as the lookup finds it: -1
// before, beyond, or on a stored record.
Hint hint_V_On(Args a)
{
    const VElement* table = array<VElement>(a, 0);
    const unsigned n = arg<unsigned char>(a, 1);
    const double K = arg<double>(a, 2);
    Hint hint;
    if (n == 0 || K - table[0].Chainage < -0.001 || K - table[n - 1].Chainage > 0.001) {
        return hint;
    }
    for (unsigned i = 0; i + 1 < n; ++i) {
        if (std::fabs(K - table[i].Chainage) < 0.001 ||
            std::fabs(K - table[i + 1].Chainage) < 0.001) {
            return hint;
        }
        if (K - table[i].Chainage > 0.001 && K - table[i + 1].Chainage < -0.001) {
            hint.element = static_cast<int>(i);
            return hint;
        }
    }
    return hint;
}

double f_V_On(Args a, const Hint& hint)
{
    if (hint.element < 0) {
        return 0.0;
    }
    const VElement& e = array<VElement>(a, 0)[hint.element];
    return e.Type == 3 ? circle_elevation(e, arg<double>(a, 2)) : e.Elevation;
}

double f_Width(Args a, const Hint&) { return arg<double>(a, 2); }

double f_SideSlope(Args a, const Hint&) { return arg<double>(a, 2); }

double f_H_Side(Args a, const Hint&)
{
    const unsigned char side = arg<unsigned char>(a, 3);
    if (side > 1) {
        return 0.0;
    }
    const auto& widths = arg<SectionRecord>(a, 1);
    return polar(arg<TangentPoint>(a, 0).Azimuth + 324000.0,
                 side == 0 ? widths.Left : widths.Right);
}

double f_V_Side(Args a, const Hint&) { return arg<double>(a, 2); }

// ---- traverse --------------------------------------------------------------------------

double f_TRSAdjust(Args a, const Hint&)
{
    const SurveyPoint* pts = array<SurveyPoint>(a, 2);
    const unsigned n = arg<unsigned char>(a, 3);
    return std::sqrt(sq(pts[n - 1].X) + sq(pts[n - 1].Y));
}

double f_TRSCalCoorErr(Args a, const Hint&)
{
    const TraverseLeg* legs = array<TraverseLeg>(a, 0);
    const unsigned n = arg<unsigned char>(a, 1);
    const unsigned char step = arg<unsigned char>(a, 3);
    const unsigned char mode = arg<unsigned char>(a, 4);
    double sum = 0.0;
    if (step == 0) {
        // The increments of every leg and the misclosure.
        for (unsigned i = 0; i < n; ++i) {
            sum = sum + polar(legs[i].ForeDirection, legs[i].HorizDist);
        }
        return std::sqrt(sq(sum));
    }
    if (step == 1 && mode == 0) {
        // The closing azimuth; every angle and the carried azimuth in whole
        // seconds, reduced by a full circle.
        const auto& known = arg<TraverseKnownPoints>(a, 2);
        sum = azimuth(known.ClosingRef, known.End);
        for (unsigned i = 1; i < n; ++i) {
            sum = sum +
                  std::fmod(std::trunc(legs[i].BackDirection - legs[i].ForeDirection + 1296000.0),
                            1296000.0);
        }
        return std::fmod(std::trunc(sum + legs[0].ForeDirection), 1296000.0);
    }
    return sum;
}

double f_STAMultCycleCal(Args a, const Hint&)
{
    const RoundObservation* rounds = array<RoundObservation>(a, 0);
    const auto& result = arg<StaMultiResult>(a, 2);
    // Per target: the reduction of the mean slope distance and the polar
    // point along the mean direction.
    const int targets = result.ObsMode == 0 ? 1 : 2;
    double sum = 0.0;
    for (int t = 0; t < targets; ++t) {
        const TargetReading& r = t == 0 ? rounds[0].Face1Target1 : rounds[0].Face1Target2;
        const double z = rad(r.V);
        sum = sum + std::cos(z) * r.SlopeDist + std::sin(z) * r.SlopeDist + polar(r.Hz, sum);
    }
    return sum;
}

double f_TRSMultCycleCal(Args a, const Hint&)
{
    const TraverseStation* stations = array<TraverseStation>(a, 0);
    const uint32_t n = arg<uint32_t>(a, 1);
    const auto& control = arg<TraverseControl>(a, 2);
    const int type = control.TraverseType;
    const double start = azimuth_sec(control.B, control.A);
    double sum = 0.0;
    if (type == 0 || type == 2) {
        // The closing azimuth and the carried one in whole seconds.
        const SurveyPoint& E = type == 0 ? control.A : control.E;
        const SurveyPoint& G = type == 0 ? control.B : control.G;
        sum = azimuth(E, G) + std::fmod(std::trunc(start + 1296000.0), 1296000.0);
    }
    // The increments of every leg along the carried azimuth, the linear
    // misclosure and the rest of the angular one.
    double az = start;
    double dx = 0.0;
    double length = 0.0;
    for (uint32_t i = 0; i + 1 < n; ++i) {
        az = az - HALF_CIRCLE + stations[i].Angle12;
        dx = dx + polar(az, stations[i].HorizDist1);
        length = length + stations[i].HorizDist1;
    }
    if (length != 0.0) {
        sum = sum + std::sqrt(sq(dx));
    }
    if (type <= 2) {
        sum = sum + std::trunc(sum);
    }
    return sum + dx;
}

const Floor floors[] = {
    {"LIB_GetFaceStatus", f_GetFaceStatus, nullptr, "-"},
    {"LIB_Sum", f_Sum, nullptr, "-"},
    {"LIB_Cal2PointDist", f_Cal2PointDist, nullptr, "sqrt"},
    {"LIB_CalAZ", f_CalAZ, nullptr, "atan2"},
    {"LIB_CalDistAngle", f_CalDistAngle, nullptr, "2 sqrt, 2 atan2"},
    {"LIB_MeasCoor", f_MeasCoor, nullptr, "cos, sin"},
    {"LIB_CalCoor", f_CalCoor, nullptr, "cos, sin"},
    {"LIB_CalDist", f_CalDist, nullptr, "atan2, sqrt"},
    {"LIB_DistConvert", f_DistConvert, nullptr, "cos, sin"},
    {"LIB_CalLB", f_CalLB, nullptr, "2 atan2, sqrt, cos, sin"},
    {"LIB_CalScale", f_CalScale, nullptr, "-"},
    {"LIB_SO_DistAngle", f_SO_DistAngle, nullptr, "-"},
    {"LIB_SO_Coor", f_SO_Coor, nullptr, "sqrt, atan2, 2 cos, 2 sin"},
    {"LIB_SO_Height", f_SO_Height, nullptr, "tan"},
    {"LIB_SO_Divide", f_SO_Divide, nullptr, "sin, cos"},
    {"LIB_Hight", f_Hight, nullptr, "tan (2 in mode 1)"},
    {"LIB_OS_Angle", f_OS_Angle, nullptr, "2 sin, 2 cos (+sqrt in mode 1)"},
    {"LIB_OS_Dist1", f_OS_Dist1, nullptr, "cos, sin (2 each turned), 2 sqrt, 2 atan2 (+atan2)"},
    {"LIB_OS_Dist2", f_OS_Dist2, nullptr, "3 sqrt, 2 atan2"},
    {"LIB_OS_SDist", f_OS_SDist, nullptr, "2 sin, 2 cos (+2 sqrt, 2 atan2 in mode 1)"},
    {"LIB_OS_Ha", f_OS_Ha, nullptr, "tan, 4 atan2, 2 sqrt"},
    {"LIB_OS_Round", f_OS_Round, nullptr, "asin, 5 sin, cos, 2 sqrt, 1-2 atan2"},
    {"LIB_Area", f_Area, nullptr, "sqrt per side"},
    {"LIB_MissLine", f_MissLine, nullptr, "cos, 2 sqrt, acos"},
    {"LIB_CalFrontMeet", f_CalFrontMeet, nullptr, "atan2, 2 tan | 2 sqrt, cos, sin"},
    {"LIB_CalLineCrossPT", f_CalLineCrossPT, nullptr, "-"},
    {"LIB_CalLineHeight", f_CalLineHeight, nullptr, "2 atan2, sqrt, cos, 2 sin, 2-3 tan"},
    {"LIB_CalCircle", f_CalCircle, nullptr, "sqrt (+sqrt per pair)"},
    {"LIB_RESA2D", f_RESA2D, nullptr, "per point sqrt, 2 sin, 2 atan2, tan, atan"},
    {"LIB_RESDist", f_RESDist, nullptr, "per point cos, sin, cos; atan, 3 sqrt"},
    {"LIB_RESSetAngle", f_RESSetAngle, nullptr, "atan2"},
    {"LIB_BaseLine", f_BaseLine, nullptr, "atan2, sqrt"},
    {"LIB_Project", f_Project, nullptr, "2 atan2, 2 sqrt, cos, sin"},
    {"LIB_LSO_Point", f_LSO_Point, nullptr, "2 atan2, 2 sqrt, cos, sin"},
    {"LIB_LSO_Line", f_LSO_Line, nullptr, "2 atan2, 2 sqrt, cos, sin"},
    {"LIB_VPlane", f_VPlane, nullptr, "2 sin, 3 cos, 5 atan2, 2 sqrt"},
    {"LIB_SPlane", f_SPlane, nullptr, "2 sin, 2 cos, 3 atan2, 5 sqrt"},
    {"LIB_ArcCalc", f_ArcCalc, nullptr, "2 sin, 2 cos, atan2, 4-5 sqrt"},
    {"LIB_CalWay_H_Circle_AZ", f_H_Circle_AZ, nullptr, "-"},
    {"LIB_CalWay_H_Curve_AZ", f_H_Curve_AZ, nullptr, "-"},
    {"LIB_CalWay_H_Line_On", f_H_Line_On, nullptr, "cos, sin"},
    {"LIB_CalWay_H_Circle_On", f_H_Circle_On, nullptr, "2 sin, cos"},
    {"LIB_CalWay_H_Curve_On", f_H_Curve_On, nullptr, "atan2, sqrt, cos, sin"},
    {"LIB_CalWay_H_Curve_End", f_H_Curve_End, nullptr, "atan2, sqrt, cos, sin"},
    {"LIB_CalWay_H_Cross_TurnAngle", f_H_Cross_TurnAngle, nullptr, "2 atan2"},
    {"LIB_CalWay_H_Cross_Length", f_H_Cross_Length, nullptr, "sin, tan"},
    {"LIB_CalWay_H_Cross_MainPoint", f_H_Cross_MainPoint, nullptr,
     "per point 2 atan2, 2 sqrt, ..."},
    {"LIB_CalWay_H_Cross_MainPoint_Full", f_H_Cross_MainPoint_Full, nullptr,
     "per point 2 atan2, 2 sqrt, ..."},
    {"LIB_CalWay_H_Ele_MainPoint", f_H_Ele_MainPoint, nullptr, "per element its end point"},
    {"LIB_CalWay_Pile", f_Pile, nullptr, "ceil (mode 0)"},
    {"LIB_CalWay_H_On", f_H_On, hint_H_On, "its element's point"},
    {"LIB_CalWay_V_Line_On", f_V_Line_On, nullptr, "-"},
    {"LIB_CalWay_V_Curve_On", f_V_Curve_On, nullptr, "-"},
    {"LIB_CalWay_V_Circle_On", f_V_Circle_On, nullptr, "2 atan, cos, 1-2 tan, 0-3 sin"},
    {"LIB_CalWay_V_Ele_MainPoint", f_V_Ele_MainPoint, nullptr, "per circle 2 atan, tan, 2 sin"},
    {"LIB_CalWay_V_Cross_MainPoint", f_V_Cross_MainPoint, nullptr, "per circle 2 atan, tan, 2 sin"},
    {"LIB_CalWay_V_On", f_V_On, hint_V_On, "its element's elevation"},
    {"LIB_CalWay_Width", f_Width, nullptr, "-"},
    {"LIB_CalWay_SideSlope", f_SideSlope, nullptr, "-"},
    {"LIB_CalWay_H_Side", f_H_Side, nullptr, "cos, sin"},
    {"LIB_CalWay_V_Side", f_V_Side, nullptr, "-"},
    {"LIB_TRSAdjust", f_TRSAdjust, nullptr, "sqrt"},
    {"LIB_TRSCalCoorErr", f_TRSCalCoorErr, nullptr, "step 0 per leg cos, sin; step 1 trunc, fmod"},
    {"LIB_STAMultCycleCal", f_STAMultCycleCal, nullptr, "per target 2 cos, 2 sin"},
    {"LIB_TRSMultCycleCal", f_TRSMultCycleCal, nullptr, "per leg cos, sin; atan2, sqrt"},
};

} // namespace

const Floor* find_floor(const char* name)
{
    for (const Floor& f : floors) {
        if (std::strcmp(f.name, name) == 0) {
            return &f;
        }
    }
    return nullptr;
}

} // namespace bench
