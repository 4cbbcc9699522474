// Work in the frame of a line through two known points A and B: the line's own
// measures, the projection of a point on it, a point set out from line
// coordinates, and a measured point's position against the line.
#include "../core/core.hpp"
#include "../core/projection.hpp"

using namespace quillon;

ResultCode LIB_BaseLine(const SurveyPoint* pts, BaselineRecord* out)
{
    const SurveyPoint& A = pts[0];
    const SurveyPoint& B = pts[1];
    double azimuth = 0.0;
    if (LIB_CalAZ(&A, &B, &azimuth) != OK) {
        return COINCIDENT;
    }
    double distance = 0.0;
    LIB_Cal2PointDist(&A, &B, &distance, 0);
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
    return project_on_line(pts, out);
}

ResultCode LIB_LSO_Point(const SurveyPoint* pts, const LinePosition* pos, SurveyPoint* out)
{
    const SurveyPoint& A = pts[0];
    const SurveyPoint& B = pts[1];
    double azimuth = 0.0;
    if (LIB_CalAZ(&A, &B, &azimuth) != OK) {
        return COINCIDENT;
    }
    // The direction of the point from A is cut to whole seconds before the
    // line's azimuth is added.
    double theta = whole_seconds(rad_to_sec(std::atan2(pos->Across, pos->Along))) + azimuth;
    // Strictly greater: a full circle itself stays.
    if (theta > FULL_CIRCLE) {
        theta = theta - FULL_CIRCLE;
    }
    if (theta < 0.0) {
        theta = theta + FULL_CIRCLE;
    }
    double dAB = 0.0;
    LIB_Cal2PointDist(&A, &B, &dAB, 0);
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
    double azAB = 0.0;
    double azAP = 0.0;
    if (LIB_CalAZ(&A, &B, &azAB) != OK) {
        return COINCIDENT;
    }
    // P on A has no direction: the angle stays 0 and the distance is 0.
    LIB_CalAZ(&A, &P, &azAP);
    const double w = sec_to_rad(azAP - azAB);
    double dAB = 0.0;
    double dAP = 0.0;
    LIB_Cal2PointDist(&A, &B, &dAB, 0);
    LIB_Cal2PointDist(&A, &P, &dAP, 0);
    const double along = std::cos(w) * dAP;
    const double line_h = ((B.H - A.H) / dAB) * along + A.H;
    const double line_dh = P.H - line_h;
    const double across = std::sin(w) * dAP - designOffset;
    out->Across = across;
    out->Along = along;
    out->LineDH = line_dh;
    return OK;
}
