// Profiles from the device's vertical element tables, each element evaluated
// exactly from its own record, and the design check of a measured point.
#include "road_geometry.hpp"

using namespace quillon::survey;

namespace {

bool grade_valid(double grade) { return grade >= -1.0 && grade <= 1.0; }

bool vertical_element_valid(const VElement& record)
{
    if (record.Type != GRADE_LINE && record.Type != PARABOLA && record.Type != VERTICAL_CIRCLE) {
        return false;
    }
    if (!within_range(record.Chainage) || !within_range(record.Elevation)) {
        return false;
    }
    if (!within_range(record.Length) || !(record.Length > 0.0) || !grade_valid(record.GradeIn)) {
        return false;
    }
    if (record.Type != GRADE_LINE && !grade_valid(record.GradeOut)) {
        return false;
    }
    if (record.Type == VERTICAL_CIRCLE &&
        (!std::isfinite(record.Radius) || !(record.Radius > 0.0))) {
        return false;
    }
    return true;
}

// Height and grade a horizontal distance `run` after the start of a
// circular vertical curve. The tangent angle a there satisfies
// sin a = sin a1 + sense * run / R (sense +1 on a sag, -1 on a crest), and
// the chord from the start climbs at the mean angle (a1 + a) / 2, whose
// tangent is (sin a1 + sin a) / (cos a1 + cos a) - free of the cancellation
// of centre height minus root.
qs_profile_point circle_point(const VElement& record, double run)
{
    const double grade_in = record.GradeIn;
    const double grade_out = record.GradeOut;
    if (grade_in == grade_out) {
        return qs_profile_point{record.Elevation + grade_in * run, grade_in};
    }
    const double sense = grade_out > grade_in ? 1.0 : -1.0;
    const double radius = record.Radius;
    const double angle_in = std::atan(grade_in);
    const double angle_out = std::atan(grade_out);
    const double sin_in = std::sin(angle_in);
    const double cos_in = std::cos(angle_in);
    // Horizontal extent of the arc, from grade in to grade out.
    const double extent = sense * radius * (std::sin(angle_out) - sin_in);
    const double arc_run = std::fmin(run, extent);
    const double sin_at = sin_in + sense * arc_run / radius;
    const double cos_at = std::sqrt((1.0 - sin_at) * (1.0 + sin_at));
    const double arc_height = record.Elevation + arc_run * (sin_in + sin_at) / (cos_in + cos_at);
    if (run <= extent) {
        return qs_profile_point{arc_height, sin_at / cos_at};
    }
    // Past the arc the outgoing grade carries on.
    return qs_profile_point{arc_height + grade_out * (run - extent), grade_out};
}

qs_profile_point element_point(const VElement& record, double run)
{
    switch (record.Type) {
    case PARABOLA: {
        const double grade_change = (record.GradeOut - record.GradeIn) / record.Length;
        return qs_profile_point{record.Elevation +
                                    run * (record.GradeIn + 0.5 * grade_change * run),
                                record.GradeIn + grade_change * run};
    }
    case VERTICAL_CIRCLE: return circle_point(record, run);
    default: return qs_profile_point{record.Elevation + record.GradeIn * run, record.GradeIn};
    }
}

} // namespace

namespace quillon {
namespace survey {

bool profile_valid(const VElement* table, std::size_t record_count)
{
    if (record_count < 2 || record_count > QS_MAX_ELEMENTS + 1) {
        return false;
    }
    for (std::size_t i = 0; i + 1 < record_count; ++i) {
        const VElement& record = table[i];
        if (!vertical_element_valid(record)) {
            return false;
        }
        const double span = table[i + 1].Chainage - record.Chainage;
        if (!(span > 0.0) || !(std::fabs(span - record.Length) <= QS_CHAINAGE_TOLERANCE)) {
            return false;
        }
    }
    const VElement& end = table[record_count - 1];
    return end.Type == END_RECORD && within_range(end.Chainage) && within_range(end.Elevation);
}

} // namespace survey
} // namespace quillon

extern "C" qs_status qs_profile_height(const VElement* table, std::size_t record_count,
                                       double chainage, qs_profile_point* out)
{
    if (!profile_valid(table, record_count) || !within_range(chainage)) {
        return QS_BAD_ARGUMENT;
    }
    if (chainage < table[0].Chainage || chainage > table[record_count - 1].Chainage) {
        return QS_OUTSIDE_ALIGNMENT;
    }
    const std::size_t index = element_holding(table, record_count, chainage);
    const VElement& record = table[index];
    *out = element_point(record, chainage - record.Chainage);
    return QS_OK;
}

extern "C" qs_status qs_road_check(const HElement* table, std::size_t record_count,
                                   const VElement* profile, std::size_t profile_count,
                                   const SurveyPoint* measured, qs_design_check* out)
{
    if (!alignment_valid(table, record_count) || !profile_valid(profile, profile_count) ||
        !within_range(measured->X) || !within_range(measured->Y) || !within_range(measured->H)) {
        return QS_BAD_ARGUMENT;
    }
    qs_station_offset position;
    qs_status status =
        qs_alignment_locate(table, record_count, measured->X, measured->Y, &position);
    if (status != QS_OK) {
        return status;
    }
    qs_profile_point design;
    status = qs_profile_height(profile, profile_count, position.chainage, &design);
    if (status != QS_OK) {
        return status;
    }
    out->position = position;
    out->design_height = design.height;
    out->cut_fill = measured->H - design.height;
    return QS_OK;
}
