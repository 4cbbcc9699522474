// Work in the frame of a line through two known points A and B: the line's own
// measures, the projection of a point on it, a point set out from line
// coordinates, and a measured point's position against the line.
#include "../core/core.hpp"

using namespace quillon;

ResultCode LIB_BaseLine(const SurveyPoint* pts, BaselineRecord* out)
{
    const SurveyPoint& A = pts[0];
    const SurveyPoint& B = pts[1];
    if (coincide_in_plan(A, B)) {
        return COINCIDENT;
    }
    const double azimuth = azimuth_between(A, B);
    const double distance = plan_distance(A, B);
    // Points apart by less than the square root of the smallest double give
    // a direction but no distance.
    if (distance == 0.0) {
        return COINCIDENT;
    }
    const double grade = (B.H - A.H) / distance;
    if (distance > RANGE_LIMIT) {
        return RANGE;
    }
    out->HorizontalDistance = distance;
    out->Grade = grade;
    out->Azimuth = azimuth;
    return OK;
}

ResultCode LIB_Project(const SurveyPoint* pts, ProjectionRecord* out)
{
    if (coincide_in_plan(pts[0], pts[1])) {
        return COINCIDENT;
    }
    *out = projection_on_line(pts[0], pts[1], pts[2]);
    return OK;
}

ResultCode LIB_LSO_Point(const SurveyPoint* pts, const LinePosition* pos, SurveyPoint* out)
{
    const SurveyPoint& A = pts[0];
    const SurveyPoint& B = pts[1];
    if (coincide_in_plan(A, B)) {
        return COINCIDENT;
    }
    const double azimuth = azimuth_between(A, B);
    // The direction of the point from A is cut to whole seconds before the
    // line's azimuth is added.
    const double theta = fold_once_into_closed_turn<ArcSeconds>(
        whole_seconds(rad_to_sec(std::atan2(pos->Across, pos->Along))) + azimuth);
    const double dAB = plan_distance(A, B);
    const double r = std::sqrt(square(pos->Across) + square(pos->Along));
    const double X = std::cos(sec_to_rad(theta)) * r + A.X;
    const double Y = std::sin(sec_to_rad(theta)) * r + A.Y;
    // The height follows the line's grade at the along value only.
    const double H = ((B.H - A.H) / dAB) * pos->Along + A.H;
    out->X = X;
    out->Y = Y;
    out->H = H;
    return OK;
}

ResultCode LIB_LSO_Line(const SurveyPoint* pts, double designOffset, ProjectionRecord* out)
{
    const SurveyPoint& A = pts[0];
    const SurveyPoint& B = pts[1];
    const SurveyPoint& P = pts[2];
    if (coincide_in_plan(A, B)) {
        return COINCIDENT;
    }
    const LineComponents components = line_components(A, B, P);
    const double along = components.along;
    const double line_h = ((B.H - A.H) / plan_distance(A, B)) * along + A.H;
    const double line_dh = P.H - line_h;
    const double across = components.across - designOffset;
    out->Across = across;
    out->Along = along;
    out->LineDH = line_dh;
    return OK;
}
