#include "projection.hpp"

#include "core.hpp"

namespace quillon {

ResultCode project_on_line(const SurveyPoint* pts, ProjectionRecord* out)
{
    const SurveyPoint& A = pts[0];
    const SurveyPoint& B = pts[1];
    const SurveyPoint& P = pts[2];
    double azAB = 0.0;
    double azAP = 0.0;
    double dAB = 0.0;
    double dAP = 0.0;
    if (LIB_CalAZ(&A, &B, &azAB) != OK) {
        return COINCIDENT;
    }
    // P on A has no direction: the angle stays 0 and the distance is 0.
    LIB_CalAZ(&A, &P, &azAP);
    // Only the sine and cosine of the angle are used, so it needs no fold.
    const double w = sec_to_rad(azAP - azAB);
    LIB_Cal2PointDist(&A, &B, &dAB, 0);
    LIB_Cal2PointDist(&A, &P, &dAP, 0);
    const double along = std::cos(w) * dAP;
    const double across = std::sin(w) * dAP;
    const double f = 1.0 / dAB;
    const double foot_x = ((B.X - A.X) * f) * along + A.X;
    const double foot_y = ((B.Y - A.Y) * f) * along + A.Y;
    const double foot_h = ((B.H - A.H) * f) * along + A.H;
    const double line_dh = P.H - foot_h;
    out->FootX = foot_x;
    out->FootY = foot_y;
    out->FootH = foot_h;
    out->Across = across;
    out->Along = along;
    out->LineDH = line_dh;
    return OK;
}

} // namespace quillon
