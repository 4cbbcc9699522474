// Alignments from the device's horizontal element tables: each element read
// from its own record, the point at a chainage and offset, the exact table
// built from the designer's elements, and the gaps at the joints.
#include "road_geometry.hpp"

using namespace quillon::survey;

namespace quillon {
namespace survey {

namespace {

// The bound of the turn over an element evaluated from its start to `span`,
// by which the quadrature cuts it into panels. Length / Radius bounds it
// only where the rate of change of curvature is representable and the span
// is the element's length: a transition curve far shorter than its radius
// (a rate beyond the largest double, an infinite bound) or evaluated well
// past its length (its curvature growing on) turns by far more.
double evaluated_turn(const HElement& record, double span)
{
    const Element element = element_from(record, span);
    return turn_bound(element.start.curvature, element.curvature_rate, span);
}

} // namespace

bool element_kind_valid(const HElement& record)
{
    if (record.Type != LINE && record.Type != ARC && record.Type != TRANSITION) {
        return false;
    }
    if (!within_range(record.Length) || !(record.Length > 0.0)) {
        return false;
    }
    if (record.Type == LINE) {
        return true;
    }
    if (!std::isfinite(record.Radius) || !(record.Radius > 0.0)) {
        return false;
    }
    if (record.Turn != TURN_LEFT && record.Turn != TURN_RIGHT) {
        return false;
    }
    if (record.Type == TRANSITION && record.Spiral != ENTRY && record.Spiral != EXIT) {
        return false;
    }
    return record.Length / record.Radius <= QS_MAX_TURN &&
           evaluated_turn(record, record.Length) <= QS_MAX_TURN;
}

namespace {

bool start_valid(const HElement& record)
{
    return within_range(record.X) && within_range(record.Y) && std::isfinite(record.Azimuth) &&
           within_range(record.Chainage);
}

} // namespace

bool alignment_valid(const HElement* table, std::size_t record_count)
{
    if (record_count < 2 || record_count > QS_MAX_ELEMENTS + 1) {
        return false;
    }
    for (std::size_t i = 0; i + 1 < record_count; ++i) {
        const HElement& record = table[i];
        if (!start_valid(record) || !element_kind_valid(record)) {
            return false;
        }
        const double span = table[i + 1].Chainage - record.Chainage;
        if (!(span > 0.0) || !(std::fabs(span - record.Length) <= QS_CHAINAGE_TOLERANCE)) {
            return false;
        }
        // The element is evaluated up to its chainage step, which may pass
        // its length by the tolerance.
        if (record.Type != LINE &&
            !(span / record.Radius <= QS_MAX_TURN && evaluated_turn(record, span) <= QS_MAX_TURN)) {
            return false;
        }
    }
    const HElement& end = table[record_count - 1];
    return start_valid(end) && end.Type == END_RECORD;
}

Element element_from(const HElement& record, double span)
{
    double end_curvature = 0.0;
    if (record.Type != LINE) {
        end_curvature = record.Turn == TURN_RIGHT ? 1.0 / record.Radius : -1.0 / record.Radius;
    }
    double start_curvature = end_curvature;
    if (record.Type == TRANSITION && record.Spiral == ENTRY) {
        start_curvature = 0.0;
    }
    if (record.Type == TRANSITION && record.Spiral == EXIT) {
        end_curvature = 0.0;
    }
    Element element;
    element.start = Frame{record.X, record.Y, fold_azimuth(record.Azimuth), start_curvature};
    element.curvature_rate = (end_curvature - start_curvature) / record.Length;
    element.chainage = record.Chainage;
    element.span = span;
    return element;
}

Element element_of(const HElement* table, std::size_t index)
{
    return element_from(table[index], table[index + 1].Chainage - table[index].Chainage);
}

} // namespace survey
} // namespace quillon

namespace {

bool build_input_valid(const HElement* elements, std::size_t record_count)
{
    if (record_count < 2 || record_count > QS_MAX_ELEMENTS + 1) {
        return false;
    }
    const HElement& first = elements[0];
    if (!start_valid(first)) {
        return false;
    }
    double total_length = 0.0;
    double chainage = first.Chainage;
    for (std::size_t i = 0; i + 1 < record_count; ++i) {
        if (!element_kind_valid(elements[i])) {
            return false;
        }
        // The chainage must grow, as the built table's will.
        const double next_chainage = chainage + elements[i].Length;
        if (!(next_chainage > chainage)) {
            return false;
        }
        chainage = next_chainage;
        total_length = total_length + elements[i].Length;
    }
    // No point of the built table can lie farther from the start than the
    // total length.
    const double farthest = std::fmax(std::fabs(first.X), std::fabs(first.Y));
    return within_range(farthest + total_length) &&
           within_range(std::fabs(first.Chainage) + total_length);
}

} // namespace

extern "C" qs_status qs_alignment_build(const HElement* elements, std::size_t record_count,
                                        HElement* table)
{
    if (!build_input_valid(elements, record_count)) {
        return QS_BAD_ARGUMENT;
    }
    table[0] = elements[0];
    for (std::size_t i = 0; i + 1 < record_count; ++i) {
        const HElement& record = table[i];
        const Element element = element_from(record, record.Length);
        const Frame end = advance(element.start, element.curvature_rate, record.Length);

        HElement next{};
        if (i + 2 < record_count) {
            next = elements[i + 1];
        }
        next.X = end.x;
        next.Y = end.y;
        next.Azimuth = fold_azimuth(end.azimuth);
        next.Chainage = record.Chainage + record.Length;
        table[i + 1] = next;
    }
    return QS_OK;
}

extern "C" qs_status qs_alignment_point(const HElement* table, std::size_t record_count,
                                        double chainage, double offset, qs_station_offset* out)
{
    if (!alignment_valid(table, record_count) || !within_range(chainage) || !within_range(offset)) {
        return QS_BAD_ARGUMENT;
    }
    if (chainage < table[0].Chainage || chainage > table[record_count - 1].Chainage) {
        return QS_OUTSIDE_ALIGNMENT;
    }
    const std::size_t index = element_holding(table, record_count, chainage);
    const Element element = element_of(table, index);
    const Frame centre =
        advance(element.start, element.curvature_rate, chainage - element.chainage);
    const Direction tangent = direction_of(centre);
    // The right-hand normal is the tangent turned a quarter circle clockwise.
    out->chainage = chainage;
    out->offset = offset;
    out->x = centre.x - offset * tangent.sin_azimuth;
    out->y = centre.y + offset * tangent.cos_azimuth;
    out->azimuth = fold_azimuth(centre.azimuth);
    out->centre_x = centre.x;
    out->centre_y = centre.y;
    out->element = index;
    return QS_OK;
}

extern "C" qs_status qs_alignment_joints(const HElement* table, std::size_t record_count,
                                         qs_joint* joints)
{
    if (!alignment_valid(table, record_count)) {
        return QS_BAD_ARGUMENT;
    }
    for (std::size_t i = 0; i + 1 < record_count; ++i) {
        const Element element = element_of(table, i);
        const Frame end = advance(element.start, element.curvature_rate, element.span);
        const HElement& next = table[i + 1];
        const double end_azimuth = fold_azimuth(end.azimuth);
        joints[i].x = end.x;
        joints[i].y = end.y;
        joints[i].azimuth = end_azimuth;
        joints[i].gap = std::hypot(next.X - end.x, next.Y - end.y);
        joints[i].azimuth_gap = fold_difference(next.Azimuth - end_azimuth);
    }
    return QS_OK;
}
