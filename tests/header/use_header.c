/* The public headers compiled together by an older caller: this file builds
 * only when they are valid C89/C99 (or C++98), layout checks included. */
#include "quillon.h"
#include "quillon/io.h"
#include "quillon/survey.h"

int quillon_header_check(void)
{
    SurveyPoint pair[2] = {{0.0, 0.0, 0.0}, {3.0, 4.0, 0.0}};
    double distance = 0.0;
    return LIB_Cal2PointDist(&pair[0], &pair[1], &distance, 0);
}
