// Projection of a point on a line, shared by the reference-line functions and
// the line height of the field programs.
#ifndef QUILLON_CORE_PROJECTION_HPP
#define QUILLON_CORE_PROJECTION_HPP

#include "quillon.h"

namespace quillon {

// pts holds A, B, P. Writes the foot of the perpendicular from P on A-B, the
// across and along distances and P's height over the line. Returns 3 with out
// untouched when A and B coincide in plan; no range test.
ResultCode project_on_line(const SurveyPoint* pts, ProjectionRecord* out);

} // namespace quillon

#endif
