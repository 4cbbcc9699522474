// Remote height: the height of a point that carries no prism, sighted above
// or beside a measured prism.
#include "../core/core.hpp"

using namespace quillon;

ResultCode LIB_Hight(const StationRecord* station, const DistanceRecord* measured,
                     double first_zenith, double second_zenith, double* out, unsigned char mode)
{
    if (mode == 0) {
        // signB turns the face II cotangent; a level sight gives a tiny but
        // non-zero first term since pi is taken as 3.1415926.
        const double t = std::tan(sec_to_rad(second_zenith));
        const double sign = static_cast<double>(station->signB);
        *out = ((sign / t) * measured->HorizontalDistance - measured->VerticalDifference) +
               station->TargetHeight;
        return OK;
    }
    if (mode == 1) {
        double first = first_zenith;
        double second = second_zenith;
        if (station->signB == -1) {
            first = FULL_CIRCLE - first_zenith;
            second = FULL_CIRCLE - second_zenith;
        }
        const double t1 = std::tan(sec_to_rad(first));
        const double t2 = std::tan(sec_to_rad(second));
        *out = (measured->HorizontalDistance / t2) - (measured->HorizontalDistance / t1);
        // Two plain comparisons: a not-a-number passes them.
        if (*out > RANGE_LIMIT || *out < -RANGE_LIMIT) {
            return RANGE;
        }
        return OK;
    }
    return OK;
}
