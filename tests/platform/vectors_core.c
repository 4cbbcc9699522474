/* Reference vectors of the core family: face, sums, distances, azimuths,
 * polar points, distance reduction, line components and scale. */
#include "qv.h"

#include <math.h>
#include <string.h>

static const unsigned char face_bytes[] = {0, 1, 2, 254, 255};
static const unsigned char distance_modes[] = {0, 1, 2, 255};

/* ---- LIB_GetFaceStatus ------------------------------------------------------ */

struct face_in {
    double zenith;
};
struct face_out {
    unsigned char face;
};

static void face_generate(qv_gen* g, void* in_)
{
    struct face_in* in = in_;
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

static int face_call(const void* in_, void* out_)
{
    const struct face_in* in = in_;
    struct face_out* out = out_;
    return QV_FN(LIB_GetFaceStatus)(in->zenith, &out->face);
}

/* ---- LIB_Sum ---------------------------------------------------------------- */

struct sum_in {
    double accumulator;
    double values[255];
    unsigned char count;
    unsigned char pad[7];
};
struct sum_out {
    double accumulator;
};

static void sum_generate(qv_gen* g, void* in_)
{
    struct sum_in* in = in_;
    unsigned i;
    in->count = (unsigned char)(qv_chance(g, 4) ? qv_below(g, 256) : qv_below(g, 12));
    in->accumulator = qv_chance(g, 3) ? 0.0 : qv_coordinate(g);
    for (i = 0; i < in->count; ++i) {
        in->values[i] = qv_chance(g, 2) ? qv_length(g) : qv_coordinate(g);
    }
}

static int sum_call(const void* in_, void* out_)
{
    const struct sum_in* in = in_;
    struct sum_out* out = out_;
    out->accumulator = in->accumulator; /* added onto, not cleared */
    return QV_FN(LIB_Sum)(in->values, in->count, &out->accumulator);
}

/* ---- LIB_Cal2PointDist ------------------------------------------------------ */

struct pointdist_in {
    SurveyPoint a;
    SurveyPoint b;
    double distance; /* what the output holds before the call */
    unsigned char mode;
    unsigned char pad[7];
};
struct pointdist_out {
    double distance;
};

static void pointdist_generate(qv_gen* g, void* in_)
{
    struct pointdist_in* in = in_;
    in->a = qv_point(g);
    in->b = qv_point_near(g, &in->a);
    in->distance = qv_chance(g, 2) ? qv_length(g) : qv_special(g);
    in->mode = qv_byte(g, distance_modes, 4);
}

static int pointdist_call(const void* in_, void* out_)
{
    const struct pointdist_in* in = in_;
    struct pointdist_out* out = out_;
    out->distance = in->distance;
    return QV_FN(LIB_Cal2PointDist)(&in->a, &in->b, &out->distance, in->mode);
}

/* ---- LIB_CalAZ -------------------------------------------------------------- */

struct azimuth_in {
    SurveyPoint from;
    SurveyPoint to;
};
struct azimuth_out {
    double azimuth;
};

static void azimuth_generate(qv_gen* g, void* in_)
{
    struct azimuth_in* in = in_;
    in->from = qv_point(g);
    in->to = qv_point_near(g, &in->from);
}

static int azimuth_call(const void* in_, void* out_)
{
    const struct azimuth_in* in = in_;
    struct azimuth_out* out = out_;
    return QV_FN(LIB_CalAZ)(&in->from, &in->to, &out->azimuth);
}

/* ---- LIB_CalDistAngle ------------------------------------------------------- */

struct distangle_in {
    SurveyPoint from;
    SurveyPoint to;
    unsigned char face;
    unsigned char pad[7];
};
struct distangle_out {
    DistAngleRecord record;
};

static void distangle_generate(qv_gen* g, void* in_)
{
    struct distangle_in* in = in_;
    in->from = qv_point(g);
    in->to = qv_point_near(g, &in->from);
    in->face = qv_byte(g, face_bytes, 5);
}

static int distangle_call(const void* in_, void* out_)
{
    const struct distangle_in* in = in_;
    struct distangle_out* out = out_;
    return QV_FN(LIB_CalDistAngle)(&in->from, &in->to, in->face, &out->record);
}

/* ---- LIB_MeasCoor ----------------------------------------------------------- */

struct meascoor_in {
    StationRecord station;
    DistanceRecord distances;
    double azimuth;
};
struct meascoor_out {
    SurveyPoint point;
};

static void meascoor_generate(qv_gen* g, void* in_)
{
    struct meascoor_in* in = in_;
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

static int meascoor_call(const void* in_, void* out_)
{
    const struct meascoor_in* in = in_;
    struct meascoor_out* out = out_;
    return QV_FN(LIB_MeasCoor)(&in->station, &in->distances, &in->azimuth, &out->point);
}

/* ---- LIB_CalCoor ------------------------------------------------------------ */

struct calcoor_in {
    SurveyPoint from;
    double azimuth;
    double distance;
    double height_difference;
};
struct calcoor_out {
    SurveyPoint point;
};

static void calcoor_generate(qv_gen* g, void* in_)
{
    struct calcoor_in* in = in_;
    in->from = qv_point(g);
    in->azimuth = qv_angle(g);
    in->distance = qv_length(g);
    in->height_difference = qv_chance(g, 10) ? qv_special(g) : qv_uniform(g, -100.0, 100.0);
}

static int calcoor_call(const void* in_, void* out_)
{
    const struct calcoor_in* in = in_;
    struct calcoor_out* out = out_;
    return QV_FN(LIB_CalCoor)(&in->from, in->azimuth, in->distance, in->height_difference,
                              &out->point);
}

/* ---- LIB_CalDist ------------------------------------------------------------ */

struct caldist_in {
    SurveyPoint pair[2];
};
struct caldist_out {
    BearingRecord record;
};

static void caldist_generate(qv_gen* g, void* in_)
{
    struct caldist_in* in = in_;
    in->pair[0] = qv_point(g);
    in->pair[1] = qv_point_near(g, &in->pair[0]);
}

static int caldist_call(const void* in_, void* out_)
{
    const struct caldist_in* in = in_;
    struct caldist_out* out = out_;
    return QV_FN(LIB_CalDist)(in->pair, &out->record);
}

/* ---- LIB_DistConvert -------------------------------------------------------- */

struct distconvert_in {
    StationRecord station;
    double scale;
    double slope_distance;
    double zenith;
};
struct distconvert_out {
    DistanceRecord record;
};

static void distconvert_generate(qv_gen* g, void* in_)
{
    struct distconvert_in* in = in_;
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

static int distconvert_call(const void* in_, void* out_)
{
    const struct distconvert_in* in = in_;
    struct distconvert_out* out = out_;
    return QV_FN(LIB_DistConvert)(&in->station, in->scale, in->slope_distance, in->zenith,
                                  &out->record);
}

/* ---- LIB_CalLB -------------------------------------------------------------- */

struct callb_in {
    SurveyPoint line[2];
    SurveyPoint p;
};
struct callb_out {
    double along;
    double across;
};

static void callb_generate(qv_gen* g, void* in_)
{
    struct callb_in* in = in_;
    in->line[0] = qv_point(g);
    in->line[1] = qv_point_near(g, &in->line[0]);
    in->p = qv_point_near(g, qv_chance(g, 2) ? &in->line[0] : &in->line[1]);
}

static int callb_call(const void* in_, void* out_)
{
    const struct callb_in* in = in_;
    struct callb_out* out = out_;
    return QV_FN(LIB_CalLB)(in->line, &in->p, &out->along, &out->across);
}

/* ---- LIB_CalScale ----------------------------------------------------------- */

struct calscale_in {
    double height;
    double grid_scale;
};
struct calscale_out {
    double combined;
};

static void calscale_generate(qv_gen* g, void* in_)
{
    struct calscale_in* in = in_;
    in->height = qv_chance(g, 8) ? qv_special(g) : qv_uniform(g, -500.0, 70000.0);
    in->grid_scale = qv_chance(g, 8) ? qv_special(g) : qv_uniform(g, 0.985, 1.015);
    if (qv_chance(g, 6)) {
        /* exactly on the band edges */
        in->height = 0.0;
        in->grid_scale = qv_chance(g, 2) ? 0.99 : 1.01;
    }
}

static int calscale_call(const void* in_, void* out_)
{
    const struct calscale_in* in = in_;
    struct calscale_out* out = out_;
    return QV_FN(LIB_CalScale)(in->height, in->grid_scale, &out->combined);
}

/* ---- the family ---------------------------------------------------------------- */

#define SURVEY_POINT "X:d Y:d H:d"

static const qv_function functions[] = {
    QV_FUNCTION(LIB_GetFaceStatus, face, "face:u", 0),
    QV_FUNCTION(LIB_Sum, sum, "accumulator:d", 128),
    QV_FUNCTION(LIB_Cal2PointDist, pointdist, "distance:d", 0),
    QV_FUNCTION(LIB_CalAZ, azimuth, "azimuth:d", 0),
    QV_FUNCTION(LIB_CalDistAngle, distangle,
                SURVEY_POINT " SlopeDistance:d HorizontalDistance:d HeightDifference:d Azimuth:d "
                             "ZenithAngle:d",
                0),
    QV_FUNCTION(LIB_MeasCoor, meascoor, SURVEY_POINT, 0),
    QV_FUNCTION(LIB_CalCoor, calcoor, SURVEY_POINT, 0),
    QV_FUNCTION(LIB_CalDist, caldist,
                "Spare1:d HorizontalDistance:d HeightDifference:d Spare4:d Azimuth:d", 0),
    QV_FUNCTION(LIB_DistConvert, distconvert,
                "SlopeDistance:d HorizontalDistance:d VerticalDifference:d HeightDifference:d", 0),
    QV_FUNCTION(LIB_CalLB, callb, "along:d across:d", 0),
    QV_FUNCTION(LIB_CalScale, calscale, "combined:d", 0),
};

const qv_family qv_family_core = {"core", functions, QV_COUNT(functions)};
