// The C interface: handles that own what the readers produced, and every
// exception stopped here and turned into a status and a message.
#include "quillon/io.h"

#include "csv.hpp"
#include "landxml.hpp"
#include "points.hpp"
#include "source.hpp"

#include <cmath>
#include <cstring>
#include <memory>
#include <new>

struct qio_design {
    quillon::io::DesignData data;
};

struct qio_table {
    quillon::io::CsvTable data;
};

struct qio_points {
    std::vector<quillon::io::PointRow> rows;
    std::vector<qio_point> records;
};

namespace {

void report(qio_error* error, std::size_t line, const std::string& message)
{
    if (error != nullptr) {
        error->line = line;
        quillon::io::copy_message(message, error->message, sizeof error->message);
    }
}

// Runs a reader; a refusal or an exhausted heap becomes the status.
template <typename Read> qio_status guarded(qio_error* error, const char* name, Read read)
{
    try {
        read();
        return QIO_OK;
    } catch (const quillon::io::Refusal& refusal) {
        report(error, refusal.line(), refusal.what());
        return refusal.status();
    } catch (const std::bad_alloc&) {
        report(error, 0, std::string(name) + ": out of memory");
        return QIO_NO_MEMORY;
    } catch (const std::exception& failure) {
        report(error, 0, std::string(name) + ": " + failure.what());
        return QIO_MALFORMED;
    }
}

const char* memory_name(const char* name) { return name != nullptr ? name : "<memory>"; }

} // namespace

extern "C" {

const char* qio_status_message(qio_status status)
{
    switch (status) {
    case QIO_OK: return "success";
    case QIO_CANNOT_READ: return "cannot read the file";
    case QIO_MALFORMED: return "malformed file";
    case QIO_UNSUPPORTED: return "not supported";
    case QIO_INCONSISTENT: return "the file contradicts itself";
    case QIO_NOT_FOUND: return "not found";
    case QIO_BAD_ARGUMENT: return "bad argument";
    case QIO_NO_MEMORY: return "out of memory";
    }
    return "unknown status";
}

qio_status qio_landxml_read_buffer(const void* data, size_t size, const char* name,
                                   qio_design** design, qio_error* error)
{
    if ((data == nullptr && size > 0) || design == nullptr) {
        report(error, 0, std::string(memory_name(name)) + ": no buffer or no design to fill");
        return QIO_BAD_ARGUMENT;
    }
    return guarded(error, memory_name(name), [&] {
        auto loaded = std::make_unique<qio_design>();
        loaded->data = quillon::io::read_landxml(
            memory_name(name), std::string_view(static_cast<const char*>(data), size));
        *design = loaded.release();
    });
}

qio_status qio_landxml_read_file(const char* path, qio_design** design, qio_error* error)
{
    if (path == nullptr || design == nullptr) {
        report(error, 0, "no path or no design to fill");
        return QIO_BAD_ARGUMENT;
    }
    return guarded(error, path, [&] {
        const std::string bytes = quillon::io::read_bytes(path);
        auto loaded = std::make_unique<qio_design>();
        loaded->data = quillon::io::read_landxml(path, bytes);
        *design = loaded.release();
    });
}

void qio_design_free(qio_design* design) { delete design; }

size_t qio_design_alignment_count(const qio_design* design)
{
    return design == nullptr ? 0 : design->data.alignments.size();
}

const char* qio_design_alignment_name(const qio_design* design, size_t index)
{
    if (design == nullptr || index >= design->data.alignments.size()) {
        return nullptr;
    }
    return design->data.alignments[index].name.c_str();
}

qio_status qio_design_find(const qio_design* design, const char* name, size_t* index)
{
    if (design == nullptr || name == nullptr || index == nullptr) {
        return QIO_BAD_ARGUMENT;
    }
    const auto& alignments = design->data.alignments;
    for (size_t i = 0; i < alignments.size(); ++i) {
        if (alignments[i].name == name) {
            *index = i;
            return QIO_OK;
        }
    }
    return QIO_NOT_FOUND;
}

qio_status qio_design_alignment(const qio_design* design, size_t index, qio_alignment* out,
                                qio_error* error)
{
    if (design == nullptr || out == nullptr) {
        report(error, 0, "no design or no alignment record to fill");
        return QIO_BAD_ARGUMENT;
    }
    const auto& alignments = design->data.alignments;
    if (index >= alignments.size()) {
        report(error, 0,
               design->data.name + ": no alignment " + std::to_string(index) + " (the file holds " +
                   std::to_string(alignments.size()) + ")");
        return QIO_NOT_FOUND;
    }
    const quillon::io::AlignmentData& a = alignments[index];
    if (a.status != QIO_OK) {
        report(error, a.error_line, a.message);
        return a.status;
    }
    qio_alignment record{};
    record.station_start = a.station_start;
    record.chainage_end = a.chainage_end;
    record.name = a.name.c_str();
    record.description = a.description.c_str();
    record.horizontal = a.horizontal.data();
    record.vertical = a.vertical.empty() ? nullptr : a.vertical.data();
    record.equations = a.equations.empty() ? nullptr : a.equations.data();
    record.line = a.line;
    record.horizontal_count = a.horizontal.size();
    record.vertical_count = a.vertical.size();
    record.equation_count = a.equations.size();
    *out = record;
    return QIO_OK;
}

double qio_alignment_station(const qio_alignment* alignment, double chainage)
{
    if (alignment == nullptr || !std::isfinite(chainage)) {
        return chainage;
    }
    double station = chainage;
    for (size_t i = 0; i < alignment->equation_count; ++i) {
        const qio_station_equation& e = alignment->equations[i];
        if (chainage >= e.chainage) {
            station = e.station_ahead + (chainage - e.chainage);
        }
    }
    return station;
}

size_t qio_design_note_count(const qio_design* design)
{
    return design == nullptr ? 0 : design->data.notes.size();
}

const char* qio_design_note(const qio_design* design, size_t index)
{
    if (design == nullptr || index >= design->data.notes.size()) {
        return nullptr;
    }
    return design->data.notes[index].c_str();
}

namespace {

void fill_records(qio_points& points)
{
    points.records.reserve(points.rows.size());
    for (const quillon::io::PointRow& row : points.rows) {
        qio_point record{};
        record.x = row.x;
        record.y = row.y;
        record.h = row.h;
        record.name = row.name.c_str();
        record.code = row.code.c_str();
        record.line = row.line;
        record.has_height = row.has_height ? 1 : 0;
        points.records.push_back(record);
    }
}

} // namespace

qio_status qio_points_read_buffer(const void* data, size_t size, const char* name,
                                  qio_points** points, qio_error* error)
{
    if ((data == nullptr && size > 0) || points == nullptr) {
        report(error, 0, std::string(memory_name(name)) + ": no buffer or no points to fill");
        return QIO_BAD_ARGUMENT;
    }
    return guarded(error, memory_name(name), [&] {
        auto loaded = std::make_unique<qio_points>();
        loaded->rows = quillon::io::read_points(
            memory_name(name), std::string_view(static_cast<const char*>(data), size));
        fill_records(*loaded);
        *points = loaded.release();
    });
}

qio_status qio_points_read_file(const char* path, qio_points** points, qio_error* error)
{
    if (path == nullptr || points == nullptr) {
        report(error, 0, "no path or no points to fill");
        return QIO_BAD_ARGUMENT;
    }
    return guarded(error, path, [&] {
        const std::string bytes = quillon::io::read_bytes(path);
        auto loaded = std::make_unique<qio_points>();
        loaded->rows = quillon::io::read_points(path, bytes);
        fill_records(*loaded);
        *points = loaded.release();
    });
}

void qio_points_free(qio_points* points) { delete points; }

const qio_point* qio_points_rows(const qio_points* points, size_t* count)
{
    const size_t n = points == nullptr ? 0 : points->records.size();
    if (count != nullptr) {
        *count = n;
    }
    return n == 0 ? nullptr : points->records.data();
}

qio_status qio_table_read_buffer(const void* data, size_t size, const char* name, qio_table** table,
                                 qio_error* error)
{
    if ((data == nullptr && size > 0) || table == nullptr) {
        report(error, 0, std::string(memory_name(name)) + ": no buffer or no table to fill");
        return QIO_BAD_ARGUMENT;
    }
    return guarded(error, memory_name(name), [&] {
        *table = new qio_table{quillon::io::read_csv(
            memory_name(name), std::string_view(static_cast<const char*>(data), size))};
    });
}

qio_status qio_table_read_file(const char* path, qio_table** table, qio_error* error)
{
    if (path == nullptr || table == nullptr) {
        report(error, 0, "no path or no table to fill");
        return QIO_BAD_ARGUMENT;
    }
    return guarded(error, path, [&] {
        const std::string bytes = quillon::io::read_bytes(path);
        *table = new qio_table{quillon::io::read_csv(path, bytes)};
    });
}

void qio_table_free(qio_table* table) { delete table; }

size_t qio_table_column_count(const qio_table* table)
{
    return table == nullptr ? 0 : table->data.header.size();
}

size_t qio_table_row_count(const qio_table* table)
{
    return table == nullptr ? 0 : table->data.rows.size();
}

const char* qio_table_heading(const qio_table* table, size_t column)
{
    if (table == nullptr || column >= table->data.header.size()) {
        return nullptr;
    }
    return table->data.header[column].c_str();
}

qio_status qio_table_find_column(const qio_table* table, const char* name, size_t* column)
{
    if (table == nullptr || name == nullptr || column == nullptr) {
        return QIO_BAD_ARGUMENT;
    }
    long found = -1;
    const qio_status status = guarded(nullptr, table->data.source.name().c_str(),
                                      [&] { found = quillon::io::column(table->data, name); });
    if (status != QIO_OK) {
        return status;
    }
    if (found < 0) {
        return QIO_NOT_FOUND;
    }
    *column = static_cast<size_t>(found);
    return QIO_OK;
}

const char* qio_table_cell(const qio_table* table, size_t row, size_t column)
{
    if (table == nullptr || row >= table->data.rows.size() || column >= table->data.header.size()) {
        return nullptr;
    }
    return table->data.rows[row].fields[column].c_str();
}

size_t qio_table_row_line(const qio_table* table, size_t row)
{
    if (table == nullptr || row >= table->data.rows.size()) {
        return 0;
    }
    return table->data.rows[row].line;
}

qio_status qio_table_number(const qio_table* table, size_t row, size_t column, double* value,
                            qio_error* error)
{
    if (table == nullptr || value == nullptr) {
        report(error, 0, "no table or no value to fill");
        return QIO_BAD_ARGUMENT;
    }
    const quillon::io::CsvTable& t = table->data;
    if (row >= t.rows.size() || column >= t.header.size()) {
        report(error, 0,
               t.source.name() + ": no cell at row " + std::to_string(row) + ", column " +
                   std::to_string(column));
        return QIO_NOT_FOUND;
    }
    const std::string& cell = t.rows[row].fields[column];
    double number = 0.0;
    if (!quillon::io::field_number(t, cell, number)) {
        report(error, t.rows[row].line,
               t.source.message(t.rows[row].line,
                                t.header[column] + " \"" + cell + "\" is not a number"));
        return QIO_MALFORMED;
    }
    *value = number;
    return QIO_OK;
}

} // extern "C"
