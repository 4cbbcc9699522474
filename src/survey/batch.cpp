// Polar points, joins and locate over arrays of points. Each batch checks
// every input first, so that a bad element leaves every output as it was,
// then computes element by element exactly as the single function does:
// element i is read whole before element i of an output is written, which
// lets an output share the array of an input.
#include "polar.hpp"
#include "road_geometry.hpp"

#include <limits>

using namespace quillon::survey;

namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

template <typename Test> bool all_of(const double* values, std::size_t count, Test test)
{
    for (std::size_t i = 0; i < count; ++i) {
        if (!test(values[i])) {
            return false;
        }
    }
    return true;
}

bool any_finite(double value) { return std::isfinite(value); }

} // namespace

extern "C" qs_status qs_polar_points(const SurveyPoint* from, const double* azimuths,
                                     const double* distances, std::size_t count, double* x,
                                     double* y)
{
    if (count > QS_MAX_BATCH || !polar_station(*from) || !all_of(azimuths, count, any_finite) ||
        !all_of(distances, count, polar_length)) {
        return QS_BAD_ARGUMENT;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const PlanPoint point = polar(*from, azimuths[i], distances[i]);
        x[i] = point.x;
        y[i] = point.y;
    }
    return QS_OK;
}

extern "C" qs_status qs_joins(const SurveyPoint* from, const double* x, const double* y,
                              std::size_t count, double* azimuths, double* distances)
{
    if (count > QS_MAX_BATCH || !polar_station(*from) || !all_of(x, count, polar_length) ||
        !all_of(y, count, polar_length)) {
        return QS_BAD_ARGUMENT;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const PlanJoin join = plan_join(*from, x[i], y[i]);
        azimuths[i] = join.azimuth;
        distances[i] = join.distance;
    }
    return QS_OK;
}

extern "C" qs_status qs_alignment_locate_many(const HElement* table, std::size_t record_count,
                                              const double* x, const double* y, std::size_t count,
                                              double* chainages, double* offsets)
{
    if (count > QS_MAX_BATCH || !alignment_valid(table, record_count) ||
        !all_of(x, count, within_range) || !all_of(y, count, within_range)) {
        return QS_BAD_ARGUMENT;
    }
    for (std::size_t i = 0; i < count; ++i) {
        qs_station_offset found;
        if (locate_on(table, record_count, x[i], y[i], found)) {
            chainages[i] = found.chainage;
            offsets[i] = found.offset;
        } else {
            chainages[i] = NOT_A_NUMBER;
            offsets[i] = NOT_A_NUMBER;
        }
    }
    return QS_OK;
}
