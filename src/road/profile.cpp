// The road's profile: vertical tables built from elements or from grade
// intersections, one element evaluated at a chainage, and the design
// elevation at any chainage of a table.
#include "../core/core.hpp"

#include <cstring>

using namespace quillon;

namespace {

// Codes of the vertical element records: kinds (VElement::Type; at an inner
// grade intersection Type 0 is a plain change of grade) and which of Radius
// and Length the designer gave (VElement::Given).
enum VerticalType : unsigned char { V_END = 0, V_LINE = 1, V_PARABOLA = 2, V_CIRCLE = 3 };
constexpr VerticalType V_GRADE_CHANGE = V_END;
enum GivenMeasure : unsigned char { GIVEN_RADIUS = 0, GIVEN_LENGTH = 1 };

// A grade (or a cross slope) lies from -1 to 1 inclusive.
bool grade_ok(double grade) { return within(grade, -1.0, 1.0); }

// A computed radius or length lies from 0 to the range limit inclusive.
bool length_ok(double length) { return within(length, 0.0, RANGE_LIMIT); }

// A given radius or length must be strictly positive and at most the limit.
bool given_ok(double value) { return value > 0.0 && value <= RANGE_LIMIT; }

// Radius from a given length or length from a given radius, for a change of
// grade (or of grade angle) w; written into the record before it is tested.
ResultCode complete_curve(VElement& point, double w)
{
    if (point.Given == GIVEN_LENGTH) {
        point.Radius = point.Length / w;
        if (!length_ok(point.Radius)) {
            return RANGE;
        }
    } else {
        point.Length = w * point.Radius;
        if (!length_ok(point.Length)) {
            return RANGE;
        }
    }
    return OK;
}

// Fills in one element's end in the next record, and a curve's computed
// Radius or Length and its vertex; returns 0 or 2. The records written before
// a failing test stay written.
ResultCode chain_element(VElement& r, VElement& q)
{
    if (r.Type == V_LINE) {
        q.Chainage = r.Chainage + r.Length;
        q.Elevation = r.Elevation + r.Length * r.GradeIn;
        q.GradeIn = r.GradeIn;
    } else if (r.Type == V_PARABOLA) {
        // Equal grades with a given length divide by zero and fail here.
        const double D = std::fabs(r.GradeIn - r.GradeOut);
        const ResultCode status = complete_curve(r, D);
        if (status != OK) {
            return status;
        }
        const double h = r.Length * 0.5;
        r.VertexChainage = r.Chainage + h;
        r.VertexElevation = r.Elevation + h * r.GradeIn;
        q.Chainage = r.Chainage + r.Length;
        q.Elevation = r.VertexElevation + h * r.GradeOut;
        q.GradeIn = r.GradeOut;
        if (!in_range(r.VertexChainage) || !in_range(r.VertexElevation)) {
            return RANGE;
        }
    } else {
        const double a1 = std::atan(r.GradeIn);
        const double a2 = std::atan(r.GradeOut);
        const double D = std::fabs(a1 - a2);
        const ResultCode status = complete_curve(r, D);
        if (status != OK) {
            return status;
        }
        // The vertex lies a tangent length after the start in chainage, the
        // end a whole curve length after it.
        const double T = std::tan(D * 0.5) * r.Radius;
        r.VertexChainage = r.Chainage + T;
        r.VertexElevation = r.Elevation + std::sin(a1) * T;
        q.Chainage = r.Chainage + r.Length;
        q.Elevation = r.VertexElevation + std::sin(a2) * T;
        q.GradeIn = r.GradeOut;
        if (!in_range(r.VertexChainage) || !in_range(r.VertexElevation)) {
            return RANGE;
        }
    }
    if (!in_range(q.Elevation) || !in_range(q.Chainage) || !grade_ok(q.GradeIn)) {
        return RANGE;
    }
    return OK;
}

// A design elevation must be from 0 to the range limit.
ResultCode check_design_elevation(double elevation)
{
    if (!within(elevation, 0.0, RANGE_LIMIT)) {
        return RANGE;
    }
    return OK;
}

// The walk of the intersection-point builder: the table, the number of
// records emitted so far and the current point on the profile.
struct ProfileWalk {
    VElement* table;
    unsigned int k;
    double chainage;
    double elevation;
    double grade;
};

// True when the next record would not fit: the walk stops with the records
// emitted so far, the last of them turned into the end record.
bool table_full(ProfileWalk& walk, unsigned char* table_count)
{
    if (walk.k >= ROAD_TABLE_CAPACITY) {
        *table_count = static_cast<unsigned char>(walk.k);
        walk.table[walk.k - 1].Type = V_END;
        return true;
    }
    return false;
}

// The next record of the table with its type, chainage and elevation
// written; none when the table is full (see table_full).
VElement* begin_record(ProfileWalk& walk, VerticalType type, double chainage, double elevation,
                       unsigned char* table_count)
{
    if (table_full(walk, table_count)) {
        return nullptr;
    }
    VElement& record = walk.table[walk.k];
    record.Type = type;
    record.Chainage = chainage;
    record.Elevation = elevation;
    return &record;
}

// Emits a grade line from the current point to the given end chainage.
ResultCode emit_line(ProfileWalk& walk, double end_chainage, unsigned char* table_count)
{
    VElement* line = begin_record(walk, V_LINE, walk.chainage, walk.elevation, table_count);
    if (line == nullptr) {
        return TABLE;
    }
    line->Length = end_chainage - walk.chainage;
    if (!length_ok(line->Length)) {
        return RANGE;
    }
    line->GradeIn = walk.grade;
    walk.k = walk.k + 1;
    return OK;
}

// Emits a grade line to the start of the next element when that lies more
// than the tolerance beyond the current point.
ResultCode emit_line_if_needed(ProfileWalk& walk, double end_chainage, unsigned char* table_count)
{
    if (end_chainage - walk.chainage > CHAINAGE_TOLERANCE) {
        return emit_line(walk, end_chainage, table_count);
    }
    return OK;
}

// Emits a curve: the whole intersection-point record with its two grades.
ResultCode emit_curve(ProfileWalk& walk, const VElement& point, double grade_out,
                      unsigned char* table_count)
{
    if (table_full(walk, table_count)) {
        return TABLE;
    }
    VElement& curve = walk.table[walk.k];
    std::memcpy(&curve, &point, sizeof(VElement));
    curve.GradeIn = walk.grade;
    curve.GradeOut = grade_out;
    walk.k = walk.k + 1;
    return OK;
}

// Emits a curve whose start has just been placed: its start range-tested
// (the point's Chainage and Elevation already written back), then the grade
// line leading to it, if any, then the curve.
ResultCode emit_curve_from_start(ProfileWalk& walk, const VElement& point, double grade_out,
                                 unsigned char* table_count)
{
    if (!in_range(point.Chainage) || !in_range(point.Elevation)) {
        return RANGE;
    }
    const ResultCode status = emit_line_if_needed(walk, point.Chainage, table_count);
    if (status != OK) {
        return status;
    }
    return emit_curve(walk, point, grade_out, table_count);
}

// Grade from one intersection point to the next, over the plan distance.
double grade_between(const VElement& from, const VElement& to)
{
    return (to.VertexElevation - from.VertexElevation) /
           std::fabs(to.VertexChainage - from.VertexChainage);
}

// A grade intersection lies in range and says what lies there; an inner one
// carrying a curve gives a usable radius or length.
bool point_ok(const VElement& point, bool inner)
{
    if (!in_range(point.VertexChainage) || !in_range(point.VertexElevation)) {
        return false;
    }
    if (point.Type == V_LINE || point.Type > V_CIRCLE) {
        return false;
    }
    if (inner && point.Type != V_GRADE_CHANGE) {
        if (point.Given > GIVEN_LENGTH) {
            return false;
        }
        const double given = point.Given == GIVEN_LENGTH ? point.Length : point.Radius;
        if (!given_ok(given)) {
            return false;
        }
    }
    return true;
}

// A plain change of grade: the line ends at the point's Chainage field,
// while the walk goes on from its vertex.
ResultCode pass_grade_change(ProfileWalk& walk, const VElement& p, unsigned char* table_count)
{
    const ResultCode status = emit_line_if_needed(walk, p.Chainage, table_count);
    if (status != OK) {
        return status;
    }
    walk.chainage = p.VertexChainage;
    walk.elevation = p.VertexElevation;
    return OK;
}

// A circular curve: its start a tangent length before the vertex along the
// incoming grade angle, its end a whole curve length after the start.
ResultCode pass_circle(ProfileWalk& walk, VElement& p, double grade_out, unsigned char* table_count)
{
    const double w = std::fabs(std::atan(walk.grade) - std::atan(grade_out));
    ResultCode status = complete_curve(p, w);
    if (status != OK) {
        return status;
    }
    const double T = std::tan(w * 0.5) * p.Radius;
    p.Chainage = p.VertexChainage - T;
    p.Elevation = p.VertexElevation - std::sin(std::atan(walk.grade)) * T;
    status = emit_curve_from_start(walk, p, grade_out, table_count);
    if (status != OK) {
        return status;
    }
    // The end takes the sine of the grade itself, not of its angle as the
    // start does.
    walk.chainage = p.Chainage + p.Length;
    walk.elevation = p.VertexElevation + std::sin(grade_out) * T;
    return in_range(walk.chainage) && in_range(walk.elevation) ? OK : RANGE;
}

// A parabola: start and end half its length before and after the vertex.
ResultCode pass_parabola(ProfileWalk& walk, VElement& p, double grade_out,
                         unsigned char* table_count)
{
    const double d = std::fabs(walk.grade - grade_out);
    ResultCode status = complete_curve(p, d);
    if (status != OK) {
        return status;
    }
    p.Chainage = p.VertexChainage - p.Length * 0.5;
    p.Elevation = p.VertexElevation - p.Length * walk.grade * 0.5;
    status = emit_curve_from_start(walk, p, grade_out, table_count);
    if (status != OK) {
        return status;
    }
    walk.chainage = p.VertexChainage + p.Length * 0.5;
    walk.elevation = p.VertexElevation + p.Length * grade_out * 0.5;
    return in_range(walk.chainage) && in_range(walk.elevation) ? OK : RANGE;
}

// An inner grade intersection passed: the outgoing grade, the line up to
// what lies at the point and the walk carried beyond it.
ResultCode pass_point(ProfileWalk& walk, VElement& p, const VElement& next,
                      unsigned char* table_count)
{
    const double grade_out = grade_between(p, next);
    if (!grade_ok(grade_out)) {
        return RANGE;
    }
    ResultCode status = OK;
    if (p.Type == V_GRADE_CHANGE) {
        status = pass_grade_change(walk, p, table_count);
    } else if (p.Type == V_CIRCLE) {
        status = pass_circle(walk, p, grade_out, table_count);
    } else {
        status = pass_parabola(walk, p, grade_out, table_count);
    }
    if (status != OK) {
        return status;
    }
    walk.grade = grade_out;
    return OK;
}

// The last line up to the last point and the end record there.
ResultCode end_profile(ProfileWalk& walk, const VElement& last, unsigned char* table_count)
{
    const ResultCode status = emit_line_if_needed(walk, last.VertexChainage, table_count);
    if (status != OK) {
        return status;
    }
    VElement* end =
        begin_record(walk, V_END, last.VertexChainage, last.VertexElevation, table_count);
    if (end == nullptr) {
        return TABLE;
    }
    end->GradeIn = walk.grade;
    *table_count = static_cast<unsigned char>(walk.k + 1);
    return OK;
}

// ---- one element at a chainage -------------------------------------------------

// The elevation at chainage K on a grade line, a parabola and a circular
// curve of a complete table, each written and tested as the exported
// functions deliver it; the lookup calls them directly.
ResultCode line_elevation(const VElement& element, double chainage, double* elevation)
{
    const double H = (chainage - element.Chainage) * element.GradeIn + element.Elevation;
    *elevation = H;
    // Negative design elevations are refused here although the table builders
    // accept them.
    if (H > RANGE_LIMIT || H < 0.0) {
        return RANGE;
    }
    return OK;
}

ResultCode parabola_elevation(const VElement& element, double chainage, double* elevation)
{
    const double c0 = element.Chainage;
    const double V = element.VertexChainage;
    const double R = element.Radius;
    const double L = element.Length;
    const double K = chainage;
    double y = 0.0;
    double b = 0.0;
    if (K < V) {
        y = square(K - c0) / (2.0 * R);
        b = element.VertexElevation - (V - K) * element.GradeIn;
    } else {
        y = square(L - (K - c0)) / (2.0 * R);
        b = (K - V) * element.GradeOut + element.VertexElevation;
    }
    if (element.GradeIn > element.GradeOut) {
        *elevation = b - y;
    } else if (element.GradeIn < element.GradeOut) {
        *elevation = b + y;
    }
    // With equal grades nothing is written and the caller's value is tested.
    return check_design_elevation(*elevation);
}

ResultCode circle_elevation(const VElement& element, double chainage, double* elevation)
{
    const double c0 = element.Chainage;
    const double R = element.Radius;
    const double L = element.Length;
    const double K = chainage;
    double s = 0.0;
    if (element.GradeIn > element.GradeOut) {
        s = -1.0;
    } else if (element.GradeIn < element.GradeOut) {
        s = 1.0;
    }
    const double a1 = std::atan(element.GradeIn);
    const double a2 = std::atan(element.GradeOut);
    const double h = std::fabs(a1 - a2) * 0.5;
    const double e = c0 + L;
    const double end_elevation = element.VertexElevation + R * std::tan(h) * std::sin(a2);
    // The curve is evaluated from its start up to the split chainage and from
    // its end back beyond it.
    const double m = c0 + L * 0.5 + (1.0 / std::cos(h) - 1.0) * R * s * std::tan((a1 + a2) * 0.5);
    if (c0 < K && K <= m) {
        const double f = (K - c0) / (2.0 * R);
        *elevation = 2.0 * R * std::sin(f) * std::sin(s * f + a1) + element.Elevation;
    } else if (m < K && K <= e) {
        const double f = (e - K) / (2.0 * R);
        *elevation = 2.0 * R * std::sin(f) * std::sin(s * f - a2) + end_elevation;
    }
    return check_design_elevation(*elevation);
}

} // namespace

ResultCode LIB_CalWay_V_Ele_MainPoint(const VElement* elements, unsigned char count,
                                      VElement* table)
{
    const unsigned int n = count;
    if (n > ROAD_TABLE_CAPACITY || n < 2) {
        return TABLE;
    }
    const VElement& first = elements[0];
    if (!in_range(first.Elevation) || !in_range(first.Chainage) || !grade_ok(first.GradeIn)) {
        return DOMAIN;
    }
    // Only the first element's start is read; every later start is computed.
    for (unsigned int i = 0; i + 1 < n; ++i) {
        const VElement& e = elements[i];
        if (e.Type != V_LINE && e.Type != V_PARABOLA && e.Type != V_CIRCLE) {
            return DOMAIN;
        }
        if (!grade_ok(e.GradeOut)) {
            return DOMAIN;
        }
        if (e.Given != GIVEN_RADIUS && e.Given != GIVEN_LENGTH) {
            return DOMAIN;
        }
        // Grade lines are held to the same test: a valid Length with Given 1,
        // or a valid (unused) Radius with Given 0.
        if (e.Given == GIVEN_LENGTH && !given_ok(e.Length)) {
            return DOMAIN;
        }
        if (e.Given == GIVEN_RADIUS && !given_ok(e.Radius)) {
            return DOMAIN;
        }
    }
    for (unsigned int i = 0; i + 1 < n; ++i) {
        // Byte for byte, padding included; the caller may build in place.
        std::memmove(&table[i], &elements[i], sizeof(VElement));
    }
    for (unsigned int i = 0; i + 1 < n; ++i) {
        const ResultCode status = chain_element(table[i], table[i + 1]);
        if (status != OK) {
            return status;
        }
    }
    table[n - 1].Type = V_END;
    return OK;
}

ResultCode LIB_CalWay_V_Line_On(const VElement* element, double chainage, double* elevation,
                                unsigned char skip)
{
    if (skip != 0) {
        return OK;
    }
    return line_elevation(*element, chainage, elevation);
}

ResultCode LIB_CalWay_V_Curve_On(const VElement* element, double chainage, double* elevation)
{
    return parabola_elevation(*element, chainage, elevation);
}

ResultCode LIB_CalWay_V_Circle_On(const VElement* element, double chainage, double* elevation)
{
    return circle_elevation(*element, chainage, elevation);
}

ResultCode LIB_CalWay_V_On(const VElement* table, unsigned char count, double chainage,
                           double* elevation)
{
    const unsigned int n = count;
    // An empty table has neither a start nor an end to read: a table count
    // out of its limits, refused as the plan lookup refuses it.
    if (n == 0) {
        return TABLE;
    }
    const double K = chainage;
    double to_start = K - table[0].Chainage;
    if (to_start < -CHAINAGE_TOLERANCE) {
        *elevation = 0.0;
        return OK;
    }
    if (K - table[n - 1].Chainage > CHAINAGE_TOLERANCE) {
        *elevation = table[n - 1].Elevation;
        return OK;
    }
    // Between the records; a single record has nothing between. Record by
    // record: on its chainage (within the tolerance), or inside the element
    // that starts there. Each record's distance is taken once and carried to
    // the next element, whose start it is; its test as a start would only
    // repeat the one it failed as an end.
    if (n > 1 && std::fabs(to_start) < CHAINAGE_TOLERANCE) {
        *elevation = table[0].Elevation;
        return OK;
    }
    for (unsigned int i = 0; i + 1 < n; ++i) {
        const double to_end = K - table[i + 1].Chainage;
        // Well beyond this element's end: neither test below can hold.
        if (to_end >= CHAINAGE_TOLERANCE) {
            to_start = to_end;
            continue;
        }
        if (std::fabs(to_end) < CHAINAGE_TOLERANCE) {
            *elevation = table[i + 1].Elevation;
            return OK;
        }
        if (to_start > CHAINAGE_TOLERANCE && to_end < -CHAINAGE_TOLERANCE) {
            const VElement& element = table[i];
            switch (element.Type) {
            case V_LINE: return line_elevation(element, K, elevation);
            case V_PARABOLA: return parabola_elevation(element, K, elevation);
            case V_CIRCLE: return circle_elevation(element, K, elevation);
            default: return OK;
            }
        }
        to_start = to_end;
    }
    return OK;
}

ResultCode LIB_CalWay_V_Cross_MainPoint(VElement* points, unsigned char count, VElement* table,
                                        unsigned char* table_count)
{
    const unsigned int n = count;
    // Fewer than two points give no grade at all.
    if (n > ROAD_LIST_CAPACITY || n < 2) {
        return TABLE;
    }
    for (unsigned int i = 0; i < n; ++i) {
        const bool inner = i > 0 && i + 1 < n;
        if (!point_ok(points[i], inner)) {
            return DOMAIN;
        }
    }

    ProfileWalk walk{table, 0, points[0].VertexChainage, points[0].VertexElevation, 0.0};
    walk.grade = grade_between(points[0], points[1]);
    if (!grade_ok(walk.grade)) {
        return RANGE;
    }
    for (unsigned int i = 1; i + 1 < n; ++i) {
        const ResultCode status = pass_point(walk, points[i], points[i + 1], table_count);
        if (status != OK) {
            return status;
        }
    }
    return end_profile(walk, points[n - 1], table_count);
}
