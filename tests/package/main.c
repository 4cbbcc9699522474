/* Joins two points through the installed library; exits 0 when the azimuth
 * and distance come back as expected. */
#include <quillon.h>

#include <stdio.h>

int main(void)
{
    SurveyPoint pair[2] = {{0.0, 0.0, 0.0}, {30.0, 40.0, 5.0}};
    BearingRecord join;
    if (LIB_CalDist(pair, &join) != 0) {
        return 1;
    }
    printf("distance %.3f azimuth %.4f\n", join.HorizontalDistance, join.Azimuth);
    return join.HorizontalDistance == 50.0 && join.Azimuth > 191268.0 && join.Azimuth < 191269.0
               ? 0
               : 1;
}
