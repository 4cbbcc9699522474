// Horizontal alignment given as a polygon of intersection points: the turn
// and the curve lengths at one point, and the element table of a whole
// polygon (straight, entry transition, arc, exit transition at every inner
// point).
#include "road_h.hpp"

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

unsigned char turn_of(double turn_angle)
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

// The table is full: the last element so far becomes the end mark.
ResultCode table_full(HElement* table, unsigned int k, uint32_t* record_count)
{
    *record_count = k;
    table[k - 1].Type = END_RECORD;
    return TABLE;
}

// Writes the start fields of a new element; the other fields of the record
// stay as the caller's buffer had them unless the element sets them.
HElement& emit(HElement* table, unsigned int k, unsigned char type, double X, double Y,
               double azimuth, double length, double chainage)
{
    HElement& element = table[k];
    element.Type = type;
    element.X = X;
    element.Y = Y;
    element.Azimuth = azimuth;
    element.Length = length;
    element.Chainage = chainage;
    return element;
}

// Walk of the polygon shared by both builders, once the polygon is valid.
ResultCode build_from_polygon(CrossPoint* polygon, unsigned int m, HElement* table,
                              uint32_t* record_count)
{
    double QX = polygon[0].X;
    double QY = polygon[0].Y;
    unsigned int k = 0;
    double chainage = 0.0;
    // The azimuth carried from one curve's end to the next straight.
    double exit_azimuth = 0.0;
    ResultCode status = OK;

    if (m < 3) {
        // A single straight: its direction is the join of the two points.
        const SurveyPoint first = plan_point(polygon[0]);
        const SurveyPoint last = plan_point(polygon[m - 1]);
        status = LIB_CalAZ(&first, &last, &exit_azimuth);
        if (status != OK) {
            return status;
        }
    }

    for (unsigned int i = 1; i + 1 < m; ++i) {
        CrossPoint& point = polygon[i];
        const SurveyPoint Q = plan_point(QX, QY);
        const SurveyPoint P = plan_point(point);

        double d = 0.0;
        status = LIB_Cal2PointDist(&Q, &P, &d, 0);
        if (status != OK) {
            return status;
        }

        double straight_azimuth = 0.0;
        if (i == 1) {
            // The start chainage is fixed by the first intersection point.
            chainage = point.Chainage - d;
            if (!in_range(chainage)) {
                return RANGE;
            }
            status = LIB_CalAZ(&Q, &P, &straight_azimuth);
            if (status != OK) {
                return status;
            }
        } else {
            straight_azimuth = exit_azimuth;
        }

        const SurveyPoint corner[3] = {Q, P, plan_point(polygon[i + 1])};
        status = LIB_CalWay_H_Cross_TurnAngle(corner, &point.TurnAngle);
        if (status != OK) {
            return status;
        }
        CrossLengths lengths;
        status = LIB_CalWay_H_Cross_Length(&point, &lengths);
        if (status != OK) {
            return status;
        }
        const unsigned char turn = turn_of(point.TurnAngle);

        // Straight up to the curve; one shorter than the tolerance is left out.
        const double s = d - lengths.EntryTangent;
        if (s >= CHAINAGE_TOLERANCE) {
            if (k > TABLE_RECORDS - 1) {
                return table_full(table, k, record_count);
            }
            emit(table, k, LINE, QX, QY, straight_azimuth, s, chainage);
            k = k + 1;
        }

        // Straight-to-curve point, set back from the intersection point.
        const double a_rad = sec_to_rad(straight_azimuth);
        const double ZX = point.X - lengths.EntryTangent * std::cos(a_rad);
        const double ZY = point.Y - lengths.EntryTangent * std::sin(a_rad);
        if (!in_range(ZX) || !in_range(ZY)) {
            return RANGE;
        }
        QX = ZX;
        QY = ZY;
        chainage = chainage + s;
        if (!in_range(chainage)) {
            return RANGE;
        }

        double a = straight_azimuth;
        if (point.EntryLength >= CHAINAGE_TOLERANCE) {
            if (k > TABLE_RECORDS - 1) {
                return table_full(table, k, record_count);
            }
            HElement& entry = emit(table, k, TRANSITION, QX, QY, a, point.EntryLength, chainage);
            entry.Radius = point.Radius;
            entry.Turn = turn;
            entry.Spiral = ENTRY;
            status = LIB_CalWay_H_Curve_AZ(&entry, entry.Length, &a);
            if (status != OK) {
                return status;
            }
            PlanePoint end;
            status = LIB_CalWay_H_Curve_On(&entry, entry.Length, &end);
            if (status != OK) {
                return status;
            }
            QX = end.X;
            QY = end.Y;
            chainage = chainage + point.EntryLength;
            if (!in_range(chainage)) {
                return RANGE;
            }
            k = k + 1;
        }

        if (k > TABLE_RECORDS - 1) {
            return table_full(table, k, record_count);
        }
        // The arc keeps whatever Spiral byte the buffer held.
        HElement& arc = emit(table, k, ARC, QX, QY, a, lengths.ArcLength, chainage);
        arc.Radius = point.Radius;
        arc.Turn = turn;
        status = LIB_CalWay_H_Circle_AZ(&arc, arc.Length, &a);
        if (status != OK) {
            return status;
        }
        PlanePoint arc_end;
        status = LIB_CalWay_H_Circle_On(&arc, arc.Length, &arc_end);
        if (status != OK) {
            return status;
        }
        QX = arc_end.X;
        QY = arc_end.Y;
        chainage = chainage + lengths.ArcLength;
        if (!in_range(chainage)) {
            return RANGE;
        }
        k = k + 1;

        if (point.ExitLength >= CHAINAGE_TOLERANCE) {
            if (k > TABLE_RECORDS - 1) {
                return table_full(table, k, record_count);
            }
            // Recorded by its start; it is not evaluated here.
            HElement& exit = emit(table, k, TRANSITION, QX, QY, a, point.ExitLength, chainage);
            exit.Radius = point.Radius;
            exit.Turn = turn;
            exit.Spiral = EXIT;
            k = k + 1;
            chainage = chainage + point.ExitLength;
            if (!in_range(chainage)) {
                return RANGE;
            }
        }

        // The curve's end is placed from the intersection point along the
        // outgoing straight, not by evaluating the exit curve.
        double b = straight_azimuth + point.TurnAngle;
        if (b > FULL_CIRCLE) {
            b = b - FULL_CIRCLE;
        }
        if (b < 0.0) {
            b = b + FULL_CIRCLE;
        }
        const double b_rad = sec_to_rad(b);
        const double HX = point.X + lengths.ExitTangent * std::cos(b_rad);
        const double HY = point.Y + lengths.ExitTangent * std::sin(b_rad);
        if (!in_range(HX) || !in_range(HY)) {
            return RANGE;
        }
        QX = HX;
        QY = HY;
        exit_azimuth = b;
    }

    // Final straight to the last point.
    const CrossPoint& E = polygon[m - 1];
    const SurveyPoint Q = plan_point(QX, QY);
    const SurveyPoint end_point = plan_point(E);
    double d = 0.0;
    status = LIB_Cal2PointDist(&Q, &end_point, &d, 0);
    if (status != OK) {
        return status;
    }
    if (d >= CHAINAGE_TOLERANCE) {
        if (k >= TABLE_RECORDS) {
            return table_full(table, k, record_count);
        }
        emit(table, k, LINE, QX, QY, exit_azimuth, d, chainage);
        k = k + 1;
        chainage = chainage + d;
        if (!in_range(chainage)) {
            return RANGE;
        }
    }

    if (k >= TABLE_RECORDS) {
        return table_full(table, k, record_count);
    }
    HElement& last = table[k];
    last.Type = END_RECORD;
    last.X = E.X;
    last.Y = E.Y;
    last.Azimuth = exit_azimuth;
    last.Chainage = chainage;
    *record_count = k + 1;
    return OK;
}

// Two straights P0 -> P1 -> P2 without a curve, for a first intersection
// point given without radius.
ResultCode build_two_straights(const CrossPoint* polygon, HElement* table, uint32_t* record_count)
{
    double chainage = polygon[0].Chainage;
    double azimuth = 0.0;
    for (unsigned int j = 0; j < 2; ++j) {
        const SurveyPoint from = plan_point(polygon[j]);
        const SurveyPoint to = plan_point(polygon[j + 1]);
        ResultCode status = LIB_CalAZ(&from, &to, &azimuth);
        if (status != OK) {
            return status;
        }
        double length = 0.0;
        status = LIB_Cal2PointDist(&from, &to, &length, 0);
        if (status != OK) {
            return status;
        }
        if (!in_range(chainage)) {
            return RANGE;
        }
        emit(table, j, LINE, from.X, from.Y, azimuth, length, chainage);
        chainage = chainage + length;
    }
    if (!in_range(chainage)) {
        return RANGE;
    }
    HElement& last = table[2];
    last.Type = END_RECORD;
    last.X = polygon[2].X;
    last.Y = polygon[2].Y;
    last.Azimuth = azimuth;
    last.Chainage = chainage;
    *record_count = 3;
    return OK;
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
    if (count > MAX_POLYGON_POINTS) {
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
    if (count > MAX_POLYGON_POINTS) {
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
