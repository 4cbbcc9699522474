/* The output blocks of packed.h: road tables column by column, and the
 * multi-round result record around its station pointer. */
#include "qv_table.h"

#include <string.h>

/* ---- tables, column by column --------------------------------------------- */

/* A field of a record: where it starts and how many bytes it has. */
typedef struct record_field {
    size_t at;
    size_t size;
} record_field;

#define FIELD(record, name)                                                                        \
    {                                                                                              \
        offsetof(record, name), sizeof(((record*)0)->name)                                         \
    }
#define COUNT(array) (sizeof(array) / sizeof(array[0]))
#define PLAN(record, records, listed_records, listed, hashed)                                      \
    {                                                                                              \
        sizeof(record), records, listed_records, listed, COUNT(listed), hashed, COUNT(hashed)      \
    }

/* How a table goes into an output block: its listed fields (doubles) column
 * by column, the other fields folded into a hash. */
typedef struct table_plan {
    size_t record_size;
    unsigned records;        /* records of the table */
    unsigned listed_records; /* records whose listed fields get columns; the
                                listed fields of the records after them are
                                hashed, before the hashed fields */
    const record_field* listed;
    unsigned listed_count;
    const record_field* hashed;
    unsigned hashed_count;
} table_plan;

#define HASH_START 2166136261u

/* The columns of a packed output block from its field `name` on. */
#define COLUMNS(out, name) ((unsigned char*)(out) + offsetof(__typeof__(*(out)), name))

/* FNV-1a over a byte range, continued from h. */
static uint32_t hash_bytes(const void* p, size_t n, uint32_t h)
{
    const unsigned char* b = p;
    size_t i;
    for (i = 0; i < n; ++i) {
        h ^= b[i];
        h *= 16777619u;
    }
    return h;
}

/* A record the function wrote into: a byte no longer holds the fill pattern
 * of the call. */
static int written(const unsigned char* record, size_t size)
{
    size_t i;
    for (i = 0; i < size; ++i) {
        if (record[i] != 0xA5) {
            return 1;
        }
    }
    return 0;
}

/* Writes column k of the listed fields to the doubles from `columns` on
 * (k * listed_records of them before it), the hash of the rest to *rest
 * and, when `touched` is given, the number of records written into. */
static void pack_table(const void* table, const table_plan* plan, unsigned char* columns,
                       int32_t* rest, int32_t* touched)
{
    const unsigned char* bytes = table;
    uint32_t h = HASH_START;
    int32_t records = 0;
    unsigned i;
    unsigned k;
    for (i = 0; i < plan->records; ++i) {
        const unsigned char* record = bytes + i * plan->record_size;
        for (k = 0; k < plan->listed_count; ++k) {
            if (i < plan->listed_records) {
                memcpy(columns + (k * plan->listed_records + i) * sizeof(double),
                       record + plan->listed[k].at, sizeof(double));
            } else {
                h = hash_bytes(record + plan->listed[k].at, plan->listed[k].size, h);
            }
        }
        for (k = 0; k < plan->hashed_count; ++k) {
            h = hash_bytes(record + plan->hashed[k].at, plan->hashed[k].size, h);
        }
        records += written(record, plan->record_size);
    }
    *rest = (int32_t)h;
    if (touched != NULL) {
        *touched = records;
    }
}

/* ---- the plan: element tables and intersection point polygons ------------ */

static const record_field element_listed[] = {FIELD(HElement, X), FIELD(HElement, Y),
                                              FIELD(HElement, Azimuth), FIELD(HElement, Chainage),
                                              FIELD(HElement, Length)};
static const record_field element_hashed[] = {FIELD(HElement, Type), FIELD(HElement, Turn),
                                              FIELD(HElement, Spiral), FIELD(HElement, Radius)};
static const table_plan element_table =
    PLAN(HElement, ROAD_TABLE_CAPACITY, ROAD_TABLE_CAPACITY, element_listed, element_hashed);

static void pack_htable(const HElement* table, struct htable* out)
{
    pack_table(table, &element_table, COLUMNS(out, X), &out->rest, &out->touched);
}

static const record_field polygon_listed[] = {FIELD(CrossPoint, TurnAngle)};
static const record_field polygon_hashed[] = {
    FIELD(CrossPoint, X),          FIELD(CrossPoint, Y),      FIELD(CrossPoint, EntryLength),
    FIELD(CrossPoint, ExitLength), FIELD(CrossPoint, Radius), FIELD(CrossPoint, Chainage)};
static const table_plan polygon =
    PLAN(CrossPoint, POLYGON_CAPACITY, POLYGON_CAPACITY, polygon_listed, polygon_hashed);

void cross_pack(const CrossPoint* points, const HElement* table, const uint32_t* record_count,
                struct cross_out* out)
{
    pack_table(points, &polygon, COLUMNS(out, TurnAngle), &out->polygon_rest, NULL);
    pack_htable(table, &out->table);
    out->record_count = (int32_t)*record_count;
}

/* The output's last slot holds a Type byte of the caller's choosing: a line
 * followed by a line reads it. */
void element_table_prepare(const LIB_CalWay_H_Ele_MainPoint_in* in, HElement* table)
{
    if (in->n >= 1 && in->n <= ROAD_TABLE_CAPACITY) {
        table[in->n - 1].Type = in->last_type;
    }
}

void element_table_pack(const HElement* table, struct element_table_out* out)
{
    pack_htable(table, &out->table);
}

/* ---- the profile ----------------------------------------------------------- */

/* The grades, Type and Given are copies or quotients of the input. */
static const record_field profile_listed[] = {
    FIELD(VElement, Chainage),        FIELD(VElement, Elevation), FIELD(VElement, VertexChainage),
    FIELD(VElement, VertexElevation), FIELD(VElement, Radius),    FIELD(VElement, Length)};
static const record_field profile_hashed[] = {FIELD(VElement, Type), FIELD(VElement, Given),
                                              FIELD(VElement, GradeIn), FIELD(VElement, GradeOut)};
static const table_plan profile_table =
    PLAN(VElement, ROAD_TABLE_CAPACITY, ROAD_TABLE_CAPACITY, profile_listed, profile_hashed);

void profile_table_pack(const VElement* table, struct profile_table_out* out)
{
    pack_table(table, &profile_table, COLUMNS(out, Chainage), &out->rest, &out->touched);
}

/* Built from intersection points, the table's vertices are copies of the
 * points: hashed with the rest. */
static const record_field section_listed[] = {FIELD(VElement, Chainage), FIELD(VElement, Elevation),
                                              FIELD(VElement, Radius), FIELD(VElement, Length)};
static const record_field section_hashed[] = {
    FIELD(VElement, VertexChainage), FIELD(VElement, VertexElevation), FIELD(VElement, Type),
    FIELD(VElement, Given),          FIELD(VElement, GradeIn),         FIELD(VElement, GradeOut)};
static const table_plan intersection_table =
    PLAN(VElement, ROAD_TABLE_CAPACITY, ROAD_TABLE_CAPACITY, section_listed, section_hashed);

/* The points: the curve fields written back are listed for the first
 * PROFILE_POINTS_LISTED points and hashed after them. */
static const record_field point_hashed[] = {
    FIELD(VElement, Type),           FIELD(VElement, Given),
    FIELD(VElement, VertexChainage), FIELD(VElement, VertexElevation),
    FIELD(VElement, GradeIn),        FIELD(VElement, GradeOut)};
static const table_plan intersection_points =
    PLAN(VElement, QV_ELEMENTS(LIB_CalWay_V_Cross_MainPoint_in, points), PROFILE_POINTS_LISTED,
         section_listed, point_hashed);

void intersection_profile_pack(const VElement* points, const VElement* table,
                               const unsigned char* table_count,
                               struct intersection_profile_out* out)
{
    pack_table(points, &intersection_points, COLUMNS(out, PointChainage), &out->points_rest, NULL);
    pack_table(table, &intersection_table, COLUMNS(out, table), &out->rest, &out->touched);
    out->table_count = *table_count;
}

/* ---- multi-round observation ----------------------------------------------- */

/* The record as the caller hands it over: the part before the station
 * pointer from the input block, then the pointer and the scale. */
void station_rounds_prepare(const LIB_STAMultCycleCal_in* in, StaMultiResult* result)
{
    memcpy(result, in->before, QV_PORTABLE_StaMultiResult);
    result->Station = &in->station;
    result->Scale = in->scale;
}

void station_rounds_pack(const StaMultiResult* result, struct station_rounds_out* out)
{
    memcpy(out->result, result, QV_PORTABLE_StaMultiResult);
    out->Scale = result->Scale;
}
