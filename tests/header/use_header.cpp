/* The interface header compiled by an older caller: this file builds only
 * when the header is valid C89/C99 (or C++98), layout checks included. */
#include "quillon.h"

int quillon_header_check(void)
{
    SurveyPoint pair[2] = {{0.0, 0.0, 0.0}, {3.0, 4.0, 0.0}};
    double distance = 0.0;
    return LIB_Cal2PointDist(&pair[0], &pair[1], &distance, 0);
}
