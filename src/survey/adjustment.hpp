// Helpers of the survey adjustments: normal equations of three unknowns built
// one observation at a time, and angles folded into a circle.
#ifndef QUILLON_SURVEY_ADJUSTMENT_HPP
#define QUILLON_SURVEY_ADJUSTMENT_HPP

#include "quillon/survey.h"

#include <cmath>

namespace quillon::survey {

constexpr double PI = 3.14159265358979323846;
constexpr double FULL_CIRCLE = 1296000.0; // arc-seconds
constexpr double HALF_CIRCLE = 648000.0;

// An angle in arc-seconds folded into [0, 1296000).
inline double folded_circle(double seconds)
{
    double folded = std::fmod(seconds, FULL_CIRCLE);
    if (folded < 0.0) {
        folded += FULL_CIRCLE;
    }
    // A tiny negative angle folds up to the full circle itself.
    if (folded >= FULL_CIRCLE) {
        folded = 0.0;
    }
    return folded;
}

// An angle in arc-seconds folded into [-648000, 648000); exact.
inline double folded_half(double seconds)
{
    const double folded = std::remainder(seconds, FULL_CIRCLE);
    return folded >= HALF_CIRCLE ? folded - FULL_CIRCLE : folded;
}

// An angle in radians folded into [-pi, pi]; exact.
inline double folded_radians(double radians) { return std::remainder(radians, 2.0 * PI); }

// Normal equations N x = b of three unknowns, N = A'PA and b = A'Pl, summed
// over the rows a of the design matrix with weight p and misclosure l.
struct NormalEquations {
    double n[3][3] = {};
    double b[3] = {};

    void add(const double a[3], double p, double l)
    {
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 3; ++j) {
                n[i][j] += a[i] * p * a[j];
            }
            b[i] += a[i] * p * l;
        }
    }
};

// The inverse of a symmetric positive definite 3x3 matrix by Cholesky
// factors. Returns false (q unchanged) when a pivot is not positive or falls
// below 1e-14 of its diagonal element: the matrix is singular to working
// precision.
inline bool inverted(const double n[3][3], double q[3][3])
{
    double l[3][3] = {};
    for (int j = 0; j < 3; ++j) {
        double pivot = n[j][j];
        for (int k = 0; k < j; ++k) {
            pivot -= l[j][k] * l[j][k];
        }
        if (!(pivot > 1e-14 * n[j][j])) {
            return false;
        }
        l[j][j] = std::sqrt(pivot);
        for (int i = j + 1; i < 3; ++i) {
            double sum = n[i][j];
            for (int k = 0; k < j; ++k) {
                sum -= l[i][k] * l[j][k];
            }
            l[i][j] = sum / l[j][j];
        }
    }
    // The inverse of the lower factor, column by column.
    double m[3][3] = {};
    for (int j = 0; j < 3; ++j) {
        m[j][j] = 1.0 / l[j][j];
        for (int i = j + 1; i < 3; ++i) {
            double sum = 0.0;
            for (int k = j; k < i; ++k) {
                sum -= l[i][k] * m[k][j];
            }
            m[i][j] = sum / l[i][i];
        }
    }
    // N^-1 = M' M with M = L^-1.
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            double sum = 0.0;
            for (int k = 0; k < 3; ++k) {
                sum += m[k][i] * m[k][j];
            }
            q[i][j] = sum;
        }
    }
    return true;
}

// a Q a' for a row a of the design matrix.
inline double quadratic_form(const double q[3][3], const double a[3])
{
    double sum = 0.0;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            sum += a[i] * q[i][j] * a[j];
        }
    }
    return sum;
}

} // namespace quillon::survey

#endif
