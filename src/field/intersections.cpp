// Intersections in plan: a new point from two known points by the directions
// or the distances observed there, and the crossing of two lines.
#include "../core/core.hpp"

using namespace quillon;

ResultCode LIB_CalFrontMeet(const FrontMeetInput* input, SurveyPoint* out, unsigned char mode)
{
    const SurveyPoint& A = input->A.Point;
    const SurveyPoint& B = input->B.Point;
    if (coincide_in_plan(A, B)) {
        return DOMAIN;
    }
    const double azAB = azimuth_between(A, B);

    if (mode == 0) {
        // The angles of the triangle at A and at B, unfolded.
        const double a1 = azAB - input->A.Direction;
        const double a2 = (input->B.Direction + HALF_CIRCLE) - azAB;
        // Exact comparisons only: a right angle a hair off is computed.
        if (std::fabs(a1) == QUARTER_CIRCLE || std::fabs(a2) == QUARTER_CIRCLE ||
            std::fabs(a1) == THREE_QUARTER_CIRCLE || std::fabs(a2) == THREE_QUARTER_CIRCLE) {
            return DOMAIN;
        }
        const double tA = std::tan(sec_to_rad(a1));
        if (tA == 0.0) {
            return DOMAIN;
        }
        const double tB = std::tan(sec_to_rad(a2));
        if (tB == 0.0) {
            return DOMAIN;
        }
        const double cotangent_sum = 1.0 / tB + 1.0 / tA;
        if (cotangent_sum == 0.0) {
            return DOMAIN;
        }
        const double w = 1.0 / cotangent_sum;
        const double X = (((1.0 / tA) * B.X + (1.0 / tB) * A.X) - A.Y + B.Y) * w;
        const double Y = (((1.0 / tA) * B.Y + (1.0 / tB) * A.Y) + A.X - B.X) * w;
        out->X = X;
        out->Y = Y;
        out->H = 0.0;
    } else if (mode == 1) {
        const double D = plan_distance(A, B);
        if (D == 0.0) {
            return DOMAIN;
        }
        const double dA = input->A.Distance;
        const double dB = input->B.Distance;
        // p along A->B to the chord of the two circles, h across it.
        const double p = ((square(D) + square(dA)) - square(dB)) / (D * 2.0);
        const double q = square(dA) - square(p);
        if (q < 0.0) {
            return DOMAIN;
        }
        const double h = std::sqrt(q);
        const double c = std::cos(sec_to_rad(azAB));
        const double s = std::sin(sec_to_rad(azAB));
        // Always the point to the left of A->B; the mirror image is never given.
        const double X = (s * h + c * p) + A.X;
        const double Y = (s * p + A.Y) - c * h;
        out->X = X;
        out->Y = Y;
        out->H = 0.0;
    }

    // For any other mode the caller's own values are tested.
    if (in_range(out->X) && in_range(out->Y)) {
        return OK;
    }
    return RANGE;
}

ResultCode LIB_CalLineCrossPT(const LineCrossInput* input, SurveyPoint* out)
{
    const SurveyPoint& P1 = input->P1;
    const SurveyPoint& P2 = input->P2;
    const SurveyPoint& P3 = input->P3;
    const SurveyPoint& P4 = input->P4;
    const double d = (P1.Y - P2.Y) * (P3.X - P4.X) - (P1.X - P2.X) * (P3.Y - P4.Y);
    if (d == 0.0) {
        return PARALLEL;
    }
    // t runs along the first line from P1, in units of P1 - P2.
    const double t = ((P1.X - P3.X) * (P3.Y - P4.Y) - (P1.Y - P3.Y) * (P3.X - P4.X)) / d;
    const double X = t * (P1.X - P2.X) + P1.X;
    const double Y = t * (P1.Y - P2.Y) + P1.Y;
    const double H = t * (P1.H - P2.H) + P1.H;
    out->X = X;
    out->Y = Y;
    out->H = H;
    return OK;
}
