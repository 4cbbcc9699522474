/* Inputs of the reference vectors, core family: face, sums, distances, azimuths,
 * polar points, distance reduction, line components and scale. */
#include "qv_table.h"

#include <math.h>
#include <string.h>

static const unsigned char face_bytes[] = {0, 1, 2, 254, 255};
static const unsigned char distance_modes[] = {0, 1, 2, 255};

/* ---- LIB_GetFaceStatus ------------------------------------------------------ */

void LIB_GetFaceStatus_generate(qv_gen* g, LIB_GetFaceStatus_in* in)
{
    in->zenith = qv_angle(g);
    if (qv_chance(g, 6)) {
        /* the face boundary and its neighbours */
        static const double edges[] = {648000.0, 0.0, -0.0, 1296000.0};
        in->zenith = edges[qv_below(g, 4)];
        if (qv_chance(g, 2)) {
            in->zenith = nextafter(in->zenith, qv_chance(g, 2) ? INFINITY : -INFINITY);
        }
    }
}

/* ---- LIB_Sum ---------------------------------------------------------------- */

void LIB_Sum_generate(qv_gen* g, LIB_Sum_in* in)
{
    unsigned i;
    in->count = (unsigned char)(qv_chance(g, 4) ? qv_below(g, 256) : qv_below(g, 12));
    in->accumulator = qv_chance(g, 3) ? 0.0 : qv_coordinate(g);
    for (i = 0; i < in->count; ++i) {
        in->values[i] = qv_chance(g, 2) ? qv_length(g) : qv_coordinate(g);
    }
}

/* ---- LIB_Cal2PointDist ------------------------------------------------------ */

void LIB_Cal2PointDist_generate(qv_gen* g, LIB_Cal2PointDist_in* in)
{
    in->a = qv_point(g);
    in->b = qv_point_near(g, &in->a);
    in->distance = qv_chance(g, 2) ? qv_length(g) : qv_special(g);
    in->mode = qv_byte(g, distance_modes, 4);
}

/* ---- LIB_CalAZ -------------------------------------------------------------- */

void LIB_CalAZ_generate(qv_gen* g, LIB_CalAZ_in* in)
{
    in->from = qv_point(g);
    in->to = qv_point_near(g, &in->from);
}

/* ---- LIB_CalDistAngle ------------------------------------------------------- */

void LIB_CalDistAngle_generate(qv_gen* g, LIB_CalDistAngle_in* in)
{
    in->from = qv_point(g);
    in->to = qv_point_near(g, &in->from);
    in->face = qv_byte(g, face_bytes, 5);
}

/* ---- LIB_MeasCoor ----------------------------------------------------------- */

void LIB_MeasCoor_generate(qv_gen* g, LIB_MeasCoor_in* in)
{
    in->station = qv_station(g);
    in->distances.SlopeDistance = qv_length(g);
    in->distances.HorizontalDistance = qv_length(g);
    in->distances.VerticalDifference = qv_uniform(g, -100.0, 100.0);
    in->distances.HeightDifference = qv_uniform(g, -100.0, 100.0);
    if (qv_chance(g, 10)) {
        in->distances.VerticalDifference = qv_special(g);
    }
    in->azimuth = qv_angle(g);
}

/* ---- LIB_CalCoor ------------------------------------------------------------ */

void LIB_CalCoor_generate(qv_gen* g, LIB_CalCoor_in* in)
{
    in->from = qv_point(g);
    in->azimuth = qv_angle(g);
    in->distance = qv_length(g);
    in->height_difference = qv_chance(g, 10) ? qv_special(g) : qv_uniform(g, -100.0, 100.0);
}

/* ---- LIB_CalDist ------------------------------------------------------------ */

void LIB_CalDist_generate(qv_gen* g, LIB_CalDist_in* in)
{
    in->pair[0] = qv_point(g);
    in->pair[1] = qv_point_near(g, &in->pair[0]);
}

/* ---- LIB_DistConvert -------------------------------------------------------- */

void LIB_DistConvert_generate(qv_gen* g, LIB_DistConvert_in* in)
{
    static const double band_edges[] = {0.99, 1.01, 1.0, 0.0};
    in->station = qv_station(g);
    in->scale = qv_uniform(g, 0.985, 1.015);
    if (qv_chance(g, 4)) {
        in->scale = band_edges[qv_below(g, 4)];
        if (qv_chance(g, 2)) {
            in->scale = nextafter(in->scale, qv_chance(g, 2) ? INFINITY : -INFINITY);
        }
    } else if (qv_chance(g, 16)) {
        in->scale = qv_special(g);
    }
    in->slope_distance = qv_length(g);
    in->zenith = qv_angle(g);
}

/* ---- LIB_CalLB -------------------------------------------------------------- */

void LIB_CalLB_generate(qv_gen* g, LIB_CalLB_in* in)
{
    in->line[0] = qv_point(g);
    in->line[1] = qv_point_near(g, &in->line[0]);
    in->p = qv_point_near(g, qv_chance(g, 2) ? &in->line[0] : &in->line[1]);
}

/* ---- LIB_CalScale ----------------------------------------------------------- */

void LIB_CalScale_generate(qv_gen* g, LIB_CalScale_in* in)
{
    in->height = qv_chance(g, 8) ? qv_special(g) : qv_uniform(g, -500.0, 70000.0);
    in->grid_scale = qv_chance(g, 8) ? qv_special(g) : qv_uniform(g, 0.985, 1.015);
    if (qv_chance(g, 6)) {
        /* exactly on the band edges */
        in->height = 0.0;
        in->grid_scale = qv_chance(g, 2) ? 0.99 : 1.01;
    }
}
