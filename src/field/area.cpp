// Area and perimeter of a polygon.
#include "../core/core.hpp"

using namespace quillon;

ResultCode LIB_Area(unsigned char count, const SurveyPoint* points, AreaResult* out)
{
    if (count < 3) {
        return DOMAIN;
    }
    double sum = 0.0;
    double perimeter = 0.0;
    for (unsigned int i = 0; i < count; ++i) {
        const unsigned int j = (i + 1 == count) ? 0 : i + 1;
        sum = ((points[j].Y * points[i].X) - (points[j].X * points[i].Y)) + sum;
        perimeter = plan_distance(points[j], points[i]) + perimeter;
    }
    // Either orientation gives the same area.
    const double area = std::fabs(sum) * 0.5;
    if (area > RANGE_LIMIT) {
        return RANGE;
    }
    out->Area = area;
    out->Hectares = area * 0.0001;
    out->Perimeter = perimeter;
    return OK;
}
