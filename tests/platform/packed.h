/*
 * packed.h - output blocks of the functions whose outputs do not fit a
 * plain block (functions.txt: packed=P). Each is struct P_out, laid out by
 * P_LAYOUT and written by P_pack (qv_table.h declares the hooks).
 *
 * Road tables have room for 81 records of 64 or 80 bytes. They go into the
 * output block column by column without their padding bytes (which carry no
 * data): every column a function computes is listed field by field, since a
 * platform's mathematical library may round it differently in the last
 * place; the columns that are copies of the input or exact byte values are
 * folded into one hash per table (compared exactly), with the number of
 * records the function wrote.
 *
 * Included by qv_table.h, after the QV_PORTABLE_ macros.
 */
#ifndef QUILLON_PACKED_H
#define QUILLON_PACKED_H

#include "quillon.h"

#define ROAD_TABLE_CAPACITY 81
#define POLYGON_CAPACITY 80
/* Intersection points of a profile whose written-back fields are listed;
 * the generator puts plain changes of grade, which write nothing back,
 * after them. */
#define PROFILE_POINTS_LISTED 44

/* An element table of the plan. */
struct htable {
    double X[ROAD_TABLE_CAPACITY];
    double Y[ROAD_TABLE_CAPACITY];
    double Azimuth[ROAD_TABLE_CAPACITY];
    double Chainage[ROAD_TABLE_CAPACITY];
    double Length[ROAD_TABLE_CAPACITY];
    int32_t rest;    /* hash of Type, Turn, Spiral and Radius (copies of the input) */
    int32_t touched; /* records with a field written */
};
#define HTABLE_LAYOUT "X:d81 Y:d81 Azimuth:d81 Chainage:d81 Length:d81 rest:i touched:i"

/* LIB_CalWay_H_Cross_MainPoint(_Full): the turn angles written back into
 * the polygon, the table, the record count, the polygon's other fields. */
struct cross_out {
    double TurnAngle[POLYGON_CAPACITY];
    struct htable table;
    int32_t record_count;
    int32_t polygon_rest; /* hash of the other polygon fields (never written) */
};
#define CROSS_LAYOUT "polygon.TurnAngle:d80 table:(" HTABLE_LAYOUT ") record_count:i polygon.rest:i"

/* LIB_CalWay_H_Ele_MainPoint */
struct element_table_out {
    struct htable table;
};
#define ELEMENT_TABLE_LAYOUT "table:(" HTABLE_LAYOUT ")"

/* A profile table: the columns a function computes, and a hash of the rest
 * (Type, Given and the grades, which are copies or quotients of the input). */
struct vtable {
    double Chainage[ROAD_TABLE_CAPACITY];
    double Elevation[ROAD_TABLE_CAPACITY];
    double Radius[ROAD_TABLE_CAPACITY];
    double Length[ROAD_TABLE_CAPACITY];
};

/* LIB_CalWay_V_Ele_MainPoint: the vertex columns are computed too. */
struct profile_table_out {
    double Chainage[ROAD_TABLE_CAPACITY];
    double Elevation[ROAD_TABLE_CAPACITY];
    double VertexChainage[ROAD_TABLE_CAPACITY];
    double VertexElevation[ROAD_TABLE_CAPACITY];
    double Radius[ROAD_TABLE_CAPACITY];
    double Length[ROAD_TABLE_CAPACITY];
    int32_t rest; /* hash of Type, Given, GradeIn and GradeOut */
    int32_t touched;
};
#define PROFILE_TABLE_LAYOUT                                                                       \
    "table:(Chainage:d81 Elevation:d81 VertexChainage:d81 VertexElevation:d81 Radius:d81 "         \
    "Length:d81 rest:i touched:i)"

/* LIB_CalWay_V_Cross_MainPoint: the curve fields written back into the
 * points, the table (its vertices are copies of the points: hashed), the
 * points' other fields and the record count. */
struct intersection_profile_out {
    double PointChainage[PROFILE_POINTS_LISTED];
    double PointElevation[PROFILE_POINTS_LISTED];
    double PointRadius[PROFILE_POINTS_LISTED];
    double PointLength[PROFILE_POINTS_LISTED];
    struct vtable table;
    int32_t rest; /* hash of Type, Given, grades and vertices (copies and quotients) */
    int32_t touched;
    int32_t points_rest; /* hash of the point fields not listed */
    int32_t table_count;
};
#define INTERSECTION_PROFILE_LAYOUT                                                                \
    "points.Chainage:d44 points.Elevation:d44 points.Radius:d44 points.Length:d44 "                \
    "table:(Chainage:d81 Elevation:d81 Radius:d81 Length:d81) table.rest:i table.touched:i "       \
    "points.rest:i table_count:i"

/* LIB_STAMultCycleCal: the result record up to its station pointer (the
 * same on every platform; 0xA5 beyond ObsMode) and the scale after it. */
struct station_rounds_out {
    unsigned char result[QV_PORTABLE_StaMultiResult];
    unsigned char pad[(8 - QV_PORTABLE_StaMultiResult % 8) % 8];
    double Scale;
};
#define STATION_ROUNDS_LAYOUT "result:(" QV_PORTABLE_LAYOUT_StaMultiResult ") pad:x4 result.Scale:d"

#endif /* QUILLON_PACKED_H */
