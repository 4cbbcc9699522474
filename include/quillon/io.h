/**
 * @file quillon/io.h
 * @brief Road designs and point files in, for the office tool: LandXML 1.2
 *        alignments and profiles as the device's element tables, and CSV
 *        point and observation files.
 *
 * Reads LandXML 1.2 road designs (and Inframodel, the national profile of
 * it) into the device's own element tables - HElement for the plan,
 * VElement for the profile - so that the same design drives the instrument
 * and the survey layer; reads point files and other delimited tables.
 *
 * Units and conventions
 *   - Lengths in metres: a file in US survey feet (1200/3937 m) or in feet,
 *     millimetres and the like is converted on reading.
 *   - Coordinates X northing, Y easting, H elevation, as in quillon.h.
 *   - Azimuths in arc-seconds clockwise from north (X toward Y), converted
 *     from radians with the true pi (648000 / pi arc-seconds per radian), as
 *     the survey layer reads them.
 *   - Chainage: the continuous distance along the alignment plus its start
 *     station (LandXML's "internal station"); HElement.Chainage and
 *     VElement.Chainage hold it, and so do the stations of a profile. Where
 *     a station equation applies, the station a design drawing prints
 *     differs from the chainage: qio_alignment_station converts.
 *
 * Geometry: every element is taken from its own points (start, end, centre,
 * PI) with the length and radius the file gives; dir values only check it.
 * The elements are then joined end to end into one line fitted to all the
 * file's points (continuous in position and direction but at the file's
 * angle points); where that line would pass more than QIO_TOLERANCE from a
 * point of the file, each element keeps the start the file gives it.
 *
 * Memory: a loaded file is an opaque handle that owns every table, string
 * and row it hands out; they stay valid until the handle is freed and are
 * never to be freed by the caller. A handle may be read from several
 * threads at once; nothing in the library is global.
 *
 * Errors: every reading function returns a qio_status and, when the caller
 * passes a qio_error, a message that names the file and the line
 * ("road.xml:42: ..."). No function writes its output handle unless it
 * returns QIO_OK. No function throws or aborts on any input.
 */
#ifndef QUILLON_IO_H
#define QUILLON_IO_H

#include <stddef.h>

#include <quillon.h>

/* ---- export macro ------------------------------------------------------ */
/** @def QIO_API
 *  Marks the functions of this header for export from the shared library
 *  and import into its callers; empty for the static library, which
 *  callers select by defining QUILLON_IO_STATIC (CMake's Quillon::io_static
 *  does). QUILLON_IO_BUILDING is defined only while the library itself is
 *  built. */
#if defined(QUILLON_IO_STATIC)
#define QIO_API
#elif defined(_WIN32) || defined(__CYGWIN__)
#if defined(QUILLON_IO_BUILDING)
#define QIO_API __declspec(dllexport)
#else
#define QIO_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define QIO_API __attribute__((visibility("default")))
#else
#define QIO_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- status, errors, tolerances ---------------------------------------- */

/** Status returned by the reading functions. */
typedef enum qio_status {
    QIO_OK = 0,           /**< success: the output written */
    QIO_CANNOT_READ = 1,  /**< the file cannot be opened or read */
    QIO_MALFORMED = 2,    /**< not well-formed XML, not a LandXML file, a required value
                               missing or not a number, a bad row in a point file */
    QIO_UNSUPPORTED = 3,  /**< a valid construct this reader does not take: an element (say
                               IrregularLine), a spiral that is not a clothoid or runs between
                               two finite radii, a unit, an encoding */
    QIO_INCONSISTENT = 4, /**< the file contradicts itself beyond QIO_TOLERANCE: a gap between
                               elements, a length, centre, PI or dir that does not fit */
    QIO_NOT_FOUND = 5,    /**< no alignment of that name, or an index out of range */
    QIO_BAD_ARGUMENT = 6, /**< a required pointer is null */
    QIO_NO_MEMORY = 7     /**< memory ran out */
} qio_status;

/** Positions that should coincide may differ by this much, m: the end of an
 *  element and the start of the next, a point given in the file and the
 *  same point computed from the element's length and radius. A gap up to
 *  it is bridged and reported in a note; a larger one is refused
 *  (QIO_INCONSISTENT). */
#define QIO_TOLERANCE 0.001
/** A line shorter than this, m, has no direction of its own: it is kept in
 *  the direction of the tangent it lies on. */
#define QIO_SHORT_LINE 0.001
/** A dir attribute agrees with the geometry when it differs by at most this
 *  many arc-seconds, or moves the element's far end by at most
 *  QIO_TOLERANCE. */
#define QIO_DIRECTION_TOLERANCE 20.0

/** Size of the message buffer in qio_error, bytes. */
#define QIO_MESSAGE_SIZE 512

/** Why a reading function failed. */
typedef struct qio_error {
    size_t line;                    /**< line in the file, from 1; 0 when no line applies */
    char message[QIO_MESSAGE_SIZE]; /**< "FILE:LINE: what is wrong", UTF-8, NUL-terminated,
                                         cut at a character boundary when too long */
} qio_error;

/** A short English text for a status.
 *  @param status any value
 *  @return "success", "cannot read the file", ...; "unknown status" for a
 *          value outside the enumeration. Static, never freed. */
QIO_API const char* qio_status_message(qio_status status);

/* ==== road designs (LandXML) ============================================== */

/** A loaded LandXML file. */
typedef struct qio_design qio_design;

/** A station equation: from this chainage on, stations run on from
 *  station_ahead. */
typedef struct qio_station_equation {
    double chainage;      /**< chainage where the equation applies (LandXML staInternal), m */
    double station_back;  /**< station just before it, m */
    double station_ahead; /**< station from it on, m */
    size_t line;          /**< line of the StaEquation element in the file */
} qio_station_equation;

/** One alignment of a design, as the device's tables. */
typedef struct qio_alignment {
    double station_start;       /**< chainage at the start (LandXML staStart), m; may be
                                     negative */
    double chainage_end;        /**< chainage at the end, m */
    const char* name;           /**< the alignment's name, UTF-8 ("" when the file gives none) */
    const char* description;    /**< its desc attribute, UTF-8, "" when absent */
    const HElement* horizontal; /**< complete horizontal table: the elements, then the end
                                     record (Type 0); exit transitions in the start
                                     convention (X, Y where the curve leaves the arc) */
    const VElement* vertical;   /**< complete vertical table (elements, then the end record
                                     of Type 0); NULL when the alignment has no profile */
    const qio_station_equation* equations; /**< station equations in chainage order, NULL when
                                                there are none */
    size_t line;                           /**< line of the Alignment element in the file */
    size_t horizontal_count; /**< records in the horizontal table, end record included, >= 2 */
    size_t vertical_count;   /**< records in the vertical table, end record included; 0
                                  without profile */
    size_t equation_count;   /**< number of station equations */
} qio_alignment;

/** Reads a LandXML file. An alignment the reader refuses does not fail the
 *  file: its status comes with qio_design_alignment.
 *  @param path   the file, in the system's encoding
 *  @param design receives the loaded design; free it with qio_design_free
 *  @param error  receives the message and line on failure; may be null
 *  @retval QIO_OK           *design written
 *  @retval QIO_CANNOT_READ  the file cannot be opened or read
 *  @retval QIO_MALFORMED    XML that is not well formed, a root element
 *          other than LandXML, a foreign namespace, no alignment
 *  @retval QIO_UNSUPPORTED  an encoding other than UTF-8, ISO-8859-1 and
 *          windows-1252, or a unit the reader does not know
 *  @retval QIO_BAD_ARGUMENT path or design null
 *  @retval QIO_NO_MEMORY    memory ran out
 *  On failure *design is unchanged. */
QIO_API qio_status qio_landxml_read_file(const char* path, qio_design** design, qio_error* error);

/** As qio_landxml_read_file, from bytes in memory.
 *  @param data   the file's bytes (copied: they may be freed afterwards);
 *                may be null when size is 0
 *  @param size   number of bytes
 *  @param name   stands for the file in messages; null gives "<memory>"
 *  @param design receives the loaded design; free it with qio_design_free
 *  @param error  receives the message and line on failure; may be null
 *  @return the statuses of qio_landxml_read_file, QIO_CANNOT_READ aside;
 *          QIO_BAD_ARGUMENT also for null data with a size. On failure
 *          *design is unchanged. */
QIO_API qio_status qio_landxml_read_buffer(const void* data, size_t size, const char* name,
                                           qio_design** design, qio_error* error);

/** Frees a design and everything it handed out.
 *  @param design a design from a reading function, or null (nothing done) */
QIO_API void qio_design_free(qio_design* design);

/** Number of alignments of a design.
 *  @param design a design, or null
 *  @return the Alignment elements of the file, refused ones included; 0
 *          for null */
QIO_API size_t qio_design_alignment_count(const qio_design* design);

/** Name of an alignment, valid for refused alignments too.
 *  @param design a design
 *  @param index  0 to qio_design_alignment_count - 1
 *  @return the name, UTF-8 ("" when the file gives none); NULL when index
 *          is out of range or design null */
QIO_API const char* qio_design_alignment_name(const qio_design* design, size_t index);

/** Index of the first alignment of a name.
 *  @param design a design
 *  @param name   the name, UTF-8, compared exactly
 *  @param index  receives the index
 *  @retval QIO_OK           *index written
 *  @retval QIO_NOT_FOUND    no alignment has that name
 *  @retval QIO_BAD_ARGUMENT an argument null
 *  *index is unchanged on failure. */
QIO_API qio_status qio_design_find(const qio_design* design, const char* name, size_t* index);

/** An alignment as the device's tables.
 *  @param design a design
 *  @param index  0 to qio_design_alignment_count - 1
 *  @param out    receives the alignment; its pointers stay valid until the
 *                design is freed
 *  @param error  receives the message and line on failure; may be null
 *  @retval QIO_OK           *out written
 *  @retval QIO_NOT_FOUND    index out of range
 *  @retval QIO_BAD_ARGUMENT design or out null
 *  @retval QIO_MALFORMED    the reader refused the alignment: a required
 *          value missing or not a number
 *  @retval QIO_UNSUPPORTED  the reader refused the alignment: an element it
 *          does not read (IrregularLine, Chain, UnsymParaCurve, ...), a
 *          spiral that is not a clothoid or runs between two finite radii
 *  @retval QIO_INCONSISTENT the reader refused the alignment: a gap between
 *          elements, a length, centre, PI or dir that does not fit, vertical
 *          curves that overlap (all beyond QIO_TOLERANCE)
 *  *out is unchanged on failure; the message names the element and line. */
QIO_API qio_status qio_design_alignment(const qio_design* design, size_t index, qio_alignment* out,
                                        qio_error* error);

/** Station of a chainage, as a drawing prints it.
 *  @param alignment an alignment from qio_design_alignment
 *  @param chainage  m
 *  @return the chainage itself before the first station equation, else the
 *          last equation's station_ahead plus the distance from its
 *          chainage, m; a non-finite chainage (or a null alignment) gives
 *          the chainage unchanged */
QIO_API double qio_alignment_station(const qio_alignment* alignment, double chainage);

/** Number of notes the reader left about a design: what it decided without
 *  refusing (units converted, the convention its dir values follow, a line
 *  shorter than QIO_SHORT_LINE kept on its tangent, the elements joined or
 *  their gaps, a profile that does not cover the alignment).
 *  @param design a design, or null
 *  @return the number of notes; 0 for null */
QIO_API size_t qio_design_note_count(const qio_design* design);

/** A note of the reader.
 *  @param design a design
 *  @param index  0 to qio_design_note_count - 1
 *  @return "FILE:LINE: text" in UTF-8; NULL when index is out of range or
 *          design null */
QIO_API const char* qio_design_note(const qio_design* design, size_t index);

/* ==== point files (CSV) =================================================== */

/* A point file is UTF-8 text (a byte-order mark is skipped) with a header
 * row naming its columns - name, X, Y, H, code, in any order and any case;
 * name, X and Y required, H and code optional, other columns ignored - and
 * one point per row. Fields are separated by commas or by semicolons (the
 * header decides); with semicolons a decimal comma is read as a point.
 * Fields may be quoted with double quotes. Empty lines and lines starting
 * with '#' are skipped. */

/** A loaded point file. */
typedef struct qio_points qio_points;

/** One row of a point file. */
typedef struct qio_point {
    double x;         /**< northing, m */
    double y;         /**< easting, m */
    double h;         /**< elevation, m; 0 when has_height is 0 */
    const char* name; /**< point name, UTF-8 */
    const char* code; /**< point code, UTF-8, "" when none */
    size_t line;      /**< line of the row in the file */
    int has_height;   /**< 1 when the row gives H, 0 when the column is absent or empty */
} qio_point;

/** Reads a point file.
 *  @param path   the file, in the system's encoding
 *  @param points receives the loaded file; free it with qio_points_free
 *  @param error  receives the message and line on failure; may be null
 *  @retval QIO_OK           *points written
 *  @retval QIO_CANNOT_READ  the file cannot be opened or read
 *  @retval QIO_MALFORMED    no header, or one without name, X or Y; a
 *          column named twice; a row whose field count differs from the
 *          header's; an empty name; an X, Y or H that is not a finite
 *          number; a quote left open; text that is not UTF-8 or holds a
 *          NUL byte
 *  @retval QIO_BAD_ARGUMENT path or points null
 *  @retval QIO_NO_MEMORY    memory ran out
 *  On failure *points is unchanged. */
QIO_API qio_status qio_points_read_file(const char* path, qio_points** points, qio_error* error);

/** As qio_points_read_file, from bytes in memory.
 *  @param data   the file's bytes (copied); may be null when size is 0
 *  @param size   number of bytes
 *  @param name   stands for the file in messages; null gives "<memory>"
 *  @param points receives the loaded file; free it with qio_points_free
 *  @param error  receives the message and line on failure; may be null
 *  @return the statuses of qio_points_read_file, QIO_CANNOT_READ aside;
 *          QIO_BAD_ARGUMENT also for null data with a size. On failure
 *          *points is unchanged. */
QIO_API qio_status qio_points_read_buffer(const void* data, size_t size, const char* name,
                                          qio_points** points, qio_error* error);

/** Frees a point file and its rows.
 *  @param points a loaded point file, or null (nothing done) */
QIO_API void qio_points_free(qio_points* points);

/** The rows of a point file, in file order.
 *  @param points a loaded point file, or null
 *  @param count  receives the number of rows (0 for a header only or a
 *                null file); may be null
 *  @return the first row; NULL when there is none */
QIO_API const qio_point* qio_points_rows(const qio_points* points, size_t* count);

/* ==== tables (CSV) ======================================================== */

/* Any delimited file with a header row, read by the same rules as a point
 * file (UTF-8, commas or semicolons, quotes, '#' comments): the observation
 * files of a free station or a traverse, say. Every row has as many cells
 * as the header. */

/** A loaded table. */
typedef struct qio_table qio_table;

/** Reads a table.
 *  @param path  the file, in the system's encoding
 *  @param table receives the loaded table; free it with qio_table_free
 *  @param error receives the message and line on failure; may be null
 *  @retval QIO_OK           *table written
 *  @retval QIO_CANNOT_READ  the file cannot be opened or read
 *  @retval QIO_MALFORMED    no header; a row whose cell count differs from
 *          the header's; a quote left open; text that is not UTF-8 or holds a
 *          NUL byte
 *  @retval QIO_BAD_ARGUMENT path or table null
 *  @retval QIO_NO_MEMORY    memory ran out
 *  On failure *table is unchanged. */
QIO_API qio_status qio_table_read_file(const char* path, qio_table** table, qio_error* error);

/** As qio_table_read_file, from bytes in memory.
 *  @param data  the file's bytes (copied); may be null when size is 0
 *  @param size  number of bytes
 *  @param name  stands for the file in messages; null gives "<memory>"
 *  @param table receives the loaded table; free it with qio_table_free
 *  @param error receives the message and line on failure; may be null
 *  @return the statuses of qio_table_read_file, QIO_CANNOT_READ aside;
 *          QIO_BAD_ARGUMENT also for null data with a size. On failure
 *          *table is unchanged. */
QIO_API qio_status qio_table_read_buffer(const void* data, size_t size, const char* name,
                                         qio_table** table, qio_error* error);

/** Frees a table.
 *  @param table a loaded table, or null (nothing done) */
QIO_API void qio_table_free(qio_table* table);

/** Number of columns of a table.
 *  @param table a loaded table, or null
 *  @return the cells of its header; 0 for null */
QIO_API size_t qio_table_column_count(const qio_table* table);

/** Number of rows of a table.
 *  @param table a loaded table, or null
 *  @return the rows after the header; 0 for null */
QIO_API size_t qio_table_row_count(const qio_table* table);

/** Heading of a column.
 *  @param table  a loaded table
 *  @param column 0 to qio_table_column_count - 1
 *  @return the heading, UTF-8; NULL when column is out of range or table
 *          null */
QIO_API const char* qio_table_heading(const qio_table* table, size_t column);

/** The column of a heading, compared without regard to ASCII case.
 *  @param table  a loaded table
 *  @param name   the heading sought
 *  @param column receives its index
 *  @retval QIO_OK           *column written
 *  @retval QIO_NOT_FOUND    no heading matches
 *  @retval QIO_MALFORMED    two headings match
 *  @retval QIO_BAD_ARGUMENT an argument null
 *  *column is unchanged on failure. */
QIO_API qio_status qio_table_find_column(const qio_table* table, const char* name, size_t* column);

/** A cell of a table.
 *  @param table  a loaded table
 *  @param row    0 to qio_table_row_count - 1
 *  @param column 0 to qio_table_column_count - 1
 *  @return the cell, UTF-8, spaces around it trimmed ("" when empty); NULL
 *          when row or column is out of range or table null */
QIO_API const char* qio_table_cell(const qio_table* table, size_t row, size_t column);

/** Line of a row in its file.
 *  @param table a loaded table
 *  @param row   0 to qio_table_row_count - 1
 *  @return the line, from 1; 0 when row is out of range or table null */
QIO_API size_t qio_table_row_line(const qio_table* table, size_t row);

/** A cell as a number; with semicolons as separators a decimal comma is
 *  read as a point.
 *  @param table  a loaded table
 *  @param row    0 to qio_table_row_count - 1
 *  @param column 0 to qio_table_column_count - 1
 *  @param value  receives the number
 *  @param error  receives the message on failure; may be null
 *  @retval QIO_OK           *value written
 *  @retval QIO_MALFORMED    the cell is empty or not a finite number (the
 *          message names the file, line, heading and text)
 *  @retval QIO_NOT_FOUND    row or column out of range
 *  @retval QIO_BAD_ARGUMENT table or value null
 *  *value is unchanged on failure. */
QIO_API qio_status qio_table_number(const qio_table* table, size_t row, size_t column,
                                    double* value, qio_error* error);

#ifdef __cplusplus
}
#endif

/* ---- layout checks ------------------------------------------------------ */
/** @cond QUILLON_LAYOUT_CHECKS */
/* Where pointers and size_t are 8 bytes (every platform the office tool is
 * built for), the records are laid out as below. */
#define QIO_LAYOUT(type, field, offset)                                                            \
    QUILLON_STATIC_ASSERT(sizeof(void*) != 8 || offsetof(type, field) == (offset),                 \
                          #type "." #field " offset")
#define QIO_SIZE(type, size)                                                                       \
    QUILLON_STATIC_ASSERT(sizeof(void*) != 8 || sizeof(type) == (size), #type " size")

QIO_SIZE(qio_error, 520);
QIO_LAYOUT(qio_error, line, 0);
QIO_LAYOUT(qio_error, message, 8);

QIO_SIZE(qio_station_equation, 32);
QIO_LAYOUT(qio_station_equation, chainage, 0);
QIO_LAYOUT(qio_station_equation, station_back, 8);
QIO_LAYOUT(qio_station_equation, station_ahead, 16);
QIO_LAYOUT(qio_station_equation, line, 24);

QIO_SIZE(qio_alignment, 88);
QIO_LAYOUT(qio_alignment, station_start, 0);
QIO_LAYOUT(qio_alignment, chainage_end, 8);
QIO_LAYOUT(qio_alignment, name, 16);
QIO_LAYOUT(qio_alignment, description, 24);
QIO_LAYOUT(qio_alignment, horizontal, 32);
QIO_LAYOUT(qio_alignment, vertical, 40);
QIO_LAYOUT(qio_alignment, equations, 48);
QIO_LAYOUT(qio_alignment, line, 56);
QIO_LAYOUT(qio_alignment, horizontal_count, 64);
QIO_LAYOUT(qio_alignment, vertical_count, 72);
QIO_LAYOUT(qio_alignment, equation_count, 80);

QIO_SIZE(qio_point, 56);
QIO_LAYOUT(qio_point, x, 0);
QIO_LAYOUT(qio_point, y, 8);
QIO_LAYOUT(qio_point, h, 16);
QIO_LAYOUT(qio_point, name, 24);
QIO_LAYOUT(qio_point, code, 32);
QIO_LAYOUT(qio_point, line, 40);
QIO_LAYOUT(qio_point, has_height, 48);
/** @endcond */

#endif /* QUILLON_IO_H */
