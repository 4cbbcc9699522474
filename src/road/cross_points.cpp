// Horizontal alignment given as a polygon of intersection points: the turn
// and the curve lengths at one point, and the element table of a whole
// polygon (straight, entry transition, arc, exit transition at every inner
// point).
#include "horizontal.hpp"

using namespace quillon;
using namespace quillon::road;

namespace {

SurveyPoint plan_point(double X, double Y)
{
    SurveyPoint point;
    point.X = X;
    point.Y = Y;
    point.H = 0.0;
    return point;
}

SurveyPoint plan_point(const CrossPoint& point) { return plan_point(point.X, point.Y); }

bool in_length_range(double length) { return 0.0 <= length && length <= RANGE_LIMIT; }

bool in_positive_range(double length) { return length > 0.0 && length <= RANGE_LIMIT; }

TurnDirection turn_of(double turn_angle)
{
    // A zero turn never gets here: its lengths divide by zero and fail.
    return turn_angle > 0.0 ? TURN_RIGHT : TURN_LEFT;
}

// Validation of the polygon; the radius of inner points is optional so that
// the full builder can pass a zero radius through.
bool polygon_valid(const CrossPoint* polygon, unsigned int m, bool check_radius)
{
    for (unsigned int j = 0; j < m; ++j) {
        const CrossPoint& point = polygon[j];
        if (!in_range(point.X) || !in_range(point.Y)) {
            return false;
        }
        const bool inner = j != 0 && j != m - 1;
        if (inner) {
            if (!in_length_range(point.EntryLength) || !in_length_range(point.ExitLength)) {
                return false;
            }
            if (check_radius && !in_positive_range(point.Radius)) {
                return false;
            }
        }
        if (j == 1 && !in_range(point.Chainage)) {
            return false;
        }
    }
    return true;
}

// Where the walk along the polygon stands: the running point Q, the azimuth
// there, its chainage and the number of records emitted so far into the
// caller's table.
struct Walk {
    HElement* table;
    uint32_t* record_count;
    PlanePoint position;
    double azimuth;
    double chainage;
    unsigned int k;
};

// The table is full: the last element so far becomes the end mark.
ResultCode stop_full(Walk& walk)
{
    *walk.record_count = walk.k;
    walk.table[walk.k - 1].Type = END_RECORD;
    return TABLE;
}

// Writes the start fields of a new element at the walk's position; the other
// fields of the record stay as the caller's buffer had them unless the
// element sets them. No element when the table is full (see stop_full).
HElement* emit(Walk& walk, ElementType type, double length)
{
    if (walk.k >= ROAD_TABLE_CAPACITY) {
        stop_full(walk);
        return nullptr;
    }
    HElement& element = walk.table[walk.k];
    element.Type = type;
    element.X = walk.position.X;
    element.Y = walk.position.Y;
    element.Azimuth = walk.azimuth;
    element.Length = length;
    element.Chainage = walk.chainage;
    walk.k = walk.k + 1;
    return &element;
}

HElement* emit_curve(Walk& walk, ElementType type, double length, double radius, TurnDirection turn)
{
    HElement* element = emit(walk, type, length);
    if (element != nullptr) {
        element->Radius = radius;
        element->Turn = turn;
    }
    return element;
}

ResultCode advance(Walk& walk, double length)
{
    walk.chainage = walk.chainage + length;
    return in_range(walk.chainage) ? OK : RANGE;
}

// An element just emitted is followed to its end: the forward azimuth there
// first, then the end point, both carried on by the walk.
ResultCode follow(const HElement& element, AzimuthAt azimuth_at, PointAt point_at, Walk& walk)
{
    const ResultCode status = azimuth_then_point(element, element.Length, azimuth_at, point_at,
                                                 &walk.azimuth, &walk.position);
    if (status != OK) {
        return status;
    }
    return advance(walk, element.Length);
}

// The plan distance from the walk's position to an intersection point, with
// the status of LIB_Cal2PointDist passed on.
ResultCode distance_to(const Walk& walk, const CrossPoint& point, double* d)
{
    const SurveyPoint Q = plan_point(walk.position.X, walk.position.Y);
    const SurveyPoint P = plan_point(point);
    return LIB_Cal2PointDist(&Q, &P, d, PLAN_DISTANCE);
}

// The end record at the last point, with the azimuth and chainage the walk
// arrived with.
ResultCode close_table(Walk& walk, const CrossPoint& end)
{
    if (walk.k >= ROAD_TABLE_CAPACITY) {
        return stop_full(walk);
    }
    HElement& last = walk.table[walk.k];
    last.Type = END_RECORD;
    last.X = end.X;
    last.Y = end.Y;
    last.Azimuth = walk.azimuth;
    last.Chainage = walk.chainage;
    *walk.record_count = walk.k + 1;
    return OK;
}

// The straight from the walk's position up to the curve at an intersection
// point d away (one shorter than the tolerance is left out), and the walk
// moved to the straight-to-curve point, set back from the intersection
// point along the incoming straight.
ResultCode straight_to_curve(const CrossPoint& point, double d, const CrossLengths& lengths,
                             Walk& walk)
{
    const double s = d - lengths.EntryTangent;
    if (s >= CHAINAGE_TOLERANCE && emit(walk, LINE, s) == nullptr) {
        return TABLE;
    }
    const double a_rad = sec_to_rad(walk.azimuth);
    const double ZX = point.X - lengths.EntryTangent * std::cos(a_rad);
    const double ZY = point.Y - lengths.EntryTangent * std::sin(a_rad);
    if (!in_range(ZX) || !in_range(ZY)) {
        return RANGE;
    }
    walk.position.X = ZX;
    walk.position.Y = ZY;
    return advance(walk, s);
}

// The curve itself: entry transition (when not shorter than the tolerance),
// arc and exit transition (likewise), each followed to its end except the
// exit transition, which is recorded by its start only.
ResultCode run_curve(const CrossPoint& point, const CrossLengths& lengths, Walk& walk)
{
    const TurnDirection turn = turn_of(point.TurnAngle);
    ResultCode status = OK;
    if (point.EntryLength >= CHAINAGE_TOLERANCE) {
        HElement* entry = emit_curve(walk, TRANSITION, point.EntryLength, point.Radius, turn);
        if (entry == nullptr) {
            return TABLE;
        }
        entry->Spiral = ENTRY;
        status = follow(*entry, LIB_CalWay_H_Curve_AZ, LIB_CalWay_H_Curve_On, walk);
        if (status != OK) {
            return status;
        }
    }
    // The arc keeps whatever Spiral byte the buffer held.
    const HElement* arc = emit_curve(walk, ARC, lengths.ArcLength, point.Radius, turn);
    if (arc == nullptr) {
        return TABLE;
    }
    status = follow(*arc, LIB_CalWay_H_Circle_AZ, LIB_CalWay_H_Circle_On, walk);
    if (status != OK) {
        return status;
    }
    if (point.ExitLength >= CHAINAGE_TOLERANCE) {
        HElement* exit = emit_curve(walk, TRANSITION, point.ExitLength, point.Radius, turn);
        if (exit == nullptr) {
            return TABLE;
        }
        exit->Spiral = EXIT;
        return advance(walk, point.ExitLength);
    }
    return OK;
}

// The curve's end is placed from the intersection point along the outgoing
// straight, not by evaluating the exit curve; the walk goes on from there in
// the outgoing azimuth.
ResultCode curve_end(const CrossPoint& point, const CrossLengths& lengths, double straight_azimuth,
                     Walk& walk)
{
    const double b = fold_once_into_closed_turn<ArcSeconds>(straight_azimuth + point.TurnAngle);
    const double b_rad = sec_to_rad(b);
    const double HX = point.X + lengths.ExitTangent * std::cos(b_rad);
    const double HY = point.Y + lengths.ExitTangent * std::sin(b_rad);
    if (!in_range(HX) || !in_range(HY)) {
        return RANGE;
    }
    walk.position.X = HX;
    walk.position.Y = HY;
    walk.azimuth = b;
    return OK;
}

// One inner intersection point: its turn angle and curve lengths, the
// straight up to it, the curve and the walk carried to the curve's end. The
// first one also fixes the start chainage and the first azimuth.
ResultCode round_corner(CrossPoint& point, const CrossPoint& next, bool first, Walk& walk)
{
    double d = 0.0;
    ResultCode status = distance_to(walk, point, &d);
    if (status != OK) {
        return status;
    }
    const SurveyPoint Q = plan_point(walk.position.X, walk.position.Y);
    const SurveyPoint P = plan_point(point);
    if (first) {
        walk.chainage = point.Chainage - d;
        if (!in_range(walk.chainage)) {
            return RANGE;
        }
        status = LIB_CalAZ(&Q, &P, &walk.azimuth);
        if (status != OK) {
            return status;
        }
    }
    // Later straights leave in the exit azimuth of the curve before.
    const double straight_azimuth = walk.azimuth;

    const SurveyPoint corner[3] = {Q, P, plan_point(next)};
    status = LIB_CalWay_H_Cross_TurnAngle(corner, &point.TurnAngle);
    if (status != OK) {
        return status;
    }
    CrossLengths lengths;
    status = LIB_CalWay_H_Cross_Length(&point, &lengths);
    if (status != OK) {
        return status;
    }
    status = straight_to_curve(point, d, lengths, walk);
    if (status != OK) {
        return status;
    }
    status = run_curve(point, lengths, walk);
    if (status != OK) {
        return status;
    }
    return curve_end(point, lengths, straight_azimuth, walk);
}

// The last straight, in the azimuth carried from the last curve, and the end
// record at the last point.
ResultCode finish_at(const CrossPoint& end, Walk& walk)
{
    double d = 0.0;
    ResultCode status = distance_to(walk, end, &d);
    if (status != OK) {
        return status;
    }
    if (d >= CHAINAGE_TOLERANCE) {
        if (emit(walk, LINE, d) == nullptr) {
            return TABLE;
        }
        status = advance(walk, d);
        if (status != OK) {
            return status;
        }
    }
    return close_table(walk, end);
}

// Walk of the polygon shared by both builders, once the polygon is valid.
ResultCode build_from_polygon(CrossPoint* polygon, unsigned int m, HElement* table,
                              uint32_t* record_count)
{
    Walk walk{table, record_count, {polygon[0].X, polygon[0].Y}, 0.0, 0.0, 0};
    if (m < 3) {
        // A single straight: its direction is the join of the two points.
        const SurveyPoint first = plan_point(polygon[0]);
        const SurveyPoint last = plan_point(polygon[m - 1]);
        const ResultCode status = LIB_CalAZ(&first, &last, &walk.azimuth);
        if (status != OK) {
            return status;
        }
    }
    for (unsigned int i = 1; i + 1 < m; ++i) {
        const ResultCode status = round_corner(polygon[i], polygon[i + 1], i == 1, walk);
        if (status != OK) {
            return status;
        }
    }
    return finish_at(polygon[m - 1], walk);
}

// Two straights P0 -> P1 -> P2 without a curve, for a first intersection
// point given without radius: three records, never a full table.
ResultCode build_two_straights(const CrossPoint* polygon, HElement* table, uint32_t* record_count)
{
    Walk walk{table, record_count, {0.0, 0.0}, 0.0, polygon[0].Chainage, 0};
    for (unsigned int j = 0; j < 2; ++j) {
        const SurveyPoint from = plan_point(polygon[j]);
        const SurveyPoint to = plan_point(polygon[j + 1]);
        ResultCode status = LIB_CalAZ(&from, &to, &walk.azimuth);
        if (status != OK) {
            return status;
        }
        double length = 0.0;
        status = LIB_Cal2PointDist(&from, &to, &length, PLAN_DISTANCE);
        if (status != OK) {
            return status;
        }
        if (!in_range(walk.chainage)) {
            return RANGE;
        }
        walk.position.X = from.X;
        walk.position.Y = from.Y;
        emit(walk, LINE, length);
        walk.chainage = walk.chainage + length;
    }
    if (!in_range(walk.chainage)) {
        return RANGE;
    }
    return close_table(walk, polygon[2]);
}

} // namespace

ResultCode LIB_CalWay_H_Cross_TurnAngle(const SurveyPoint* points, double* turn_angle)
{
    double a1 = 0.0;
    ResultCode status = LIB_CalAZ(&points[0], &points[1], &a1);
    if (status != OK) {
        return status;
    }
    double a2 = 0.0;
    status = LIB_CalAZ(&points[1], &points[2], &a2);
    if (status != OK) {
        return status;
    }
    const double d = fold_half_circle(a2 - a1);
    // A turn of a half circle (the road doubling back) has no curve.
    if (!(d > -HALF_CIRCLE && d < HALF_CIRCLE)) {
        return RANGE;
    }
    *turn_angle = d;
    return OK;
}

ResultCode LIB_CalWay_H_Cross_Length(const CrossPoint* point, CrossLengths* out)
{
    const double a = std::fabs(sec_to_rad(point->TurnAngle));
    const double R = point->Radius;
    const double L1 = point->EntryLength;
    const double L2 = point->ExitLength;
    // Shift of the arc by each transition curve, one term.
    const double p1 = 0.041666666666666664 * square(L1) / R;
    const double p2 = 0.041666666666666664 * square(L2) / R;
    // Offset of each tangent point along its straight, two terms.
    const double q1 = L1 / 2 - std::pow(L1, 3) / (240 * square(R));
    const double q2 = L2 / 2 - std::pow(L2, 3) / (240 * square(R));
    out->EntryTangent = q1 + (R + p2) / std::sin(a) - (R + p1) / std::tan(a);
    out->ExitTangent = (R + p1) / std::sin(a) - (R + p2) / std::tan(a) + q2;
    out->ArcLength = (a - L1 / (2 * R) - L2 / (2 * R)) * R;
    out->CurveLength = out->ArcLength + L2 + L1;
    if (!in_length_range(out->EntryTangent) || !in_length_range(out->ExitTangent)) {
        return RANGE;
    }
    // The transition curves together may not use up the whole turn.
    if (!in_positive_range(out->ArcLength) || !in_positive_range(out->CurveLength)) {
        return RANGE;
    }
    return OK;
}

ResultCode LIB_CalWay_H_Cross_MainPoint(CrossPoint* polygon, unsigned char m, HElement* table,
                                        uint32_t* record_count)
{
    const unsigned int count = m;
    if (count > ROAD_LIST_CAPACITY) {
        return TABLE;
    }
    // Without a single point there is no alignment to build.
    if (count == 0) {
        return DOMAIN;
    }
    if (!polygon_valid(polygon, count, true)) {
        return DOMAIN;
    }
    return build_from_polygon(polygon, count, table, record_count);
}

ResultCode LIB_CalWay_H_Cross_MainPoint_Full(CrossPoint* polygon, unsigned char m, HElement* table,
                                             uint32_t* record_count)
{
    const unsigned int count = m;
    if (count > ROAD_LIST_CAPACITY) {
        return TABLE;
    }
    if (count < 2) {
        return DOMAIN;
    }
    if (!polygon_valid(polygon, count, false)) {
        return DOMAIN;
    }
    if (count >= 3 && polygon[1].Radius == 0.0) {
        return build_two_straights(polygon, table, record_count);
    }
    return build_from_polygon(polygon, count, table, record_count);
}
