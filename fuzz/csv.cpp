// Fuzz target of the CSV readers: the input is a file's bytes, read from
// memory as a point file and as a table; every row, cell and number of what
// they accept is then read, as the office tool does. Beyond the sanitizers'
// reports, a finding is a broken promise of the header: a message not
// terminated within its buffer, a row or cell missing.
#include "stats.hpp"

#include <quillon/io.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

enum Call : std::size_t { POINTS, TABLE, NUMBER, CALLS };
const char* const call_names[CALLS] = {"qio_points_read_buffer", "qio_table_read_buffer",
                                       "qio_table_number"};

void broken(bool promise_broken)
{
    if (promise_broken) {
        std::abort();
    }
}

void check_message(const qio_error& error)
{
    broken(std::memchr(error.message, '\0', sizeof error.message) == nullptr);
}

void read_points(const std::uint8_t* data, std::size_t size)
{
    qio_points* points = nullptr;
    qio_error error;
    const qio_status status = qio_points_read_buffer(data, size, "fuzz.csv", &points, &error);
    qfuzz::called(POINTS, status);
    if (status != QIO_OK) {
        broken(points != nullptr);
        check_message(error);
        return;
    }
    std::size_t count = 0;
    const qio_point* rows = qio_points_rows(points, &count);
    broken(count > 0 && rows == nullptr);
    volatile std::size_t text = 0;
    for (std::size_t i = 0; i < count; ++i) {
        text = text + std::strlen(rows[i].name) + std::strlen(rows[i].code);
    }
    qio_points_free(points);
}

void read_table(const std::uint8_t* data, std::size_t size)
{
    qio_table* table = nullptr;
    qio_error error;
    const qio_status status = qio_table_read_buffer(data, size, "fuzz.csv", &table, &error);
    qfuzz::called(TABLE, status);
    if (status != QIO_OK) {
        broken(table != nullptr);
        check_message(error);
        return;
    }
    const std::size_t columns = qio_table_column_count(table);
    const std::size_t rows = qio_table_row_count(table);
    volatile std::size_t text = 0;
    for (std::size_t c = 0; c < columns; ++c) {
        const char* heading = qio_table_heading(table, c);
        broken(heading == nullptr);
        // A heading finds its own column, or is named twice (ASCII case aside).
        std::size_t found = columns;
        const qio_status lookup = qio_table_find_column(table, heading, &found);
        broken(lookup == QIO_OK ? found != c : lookup != QIO_MALFORMED);
    }
    for (std::size_t r = 0; r < rows; ++r) {
        text = text + qio_table_row_line(table, r);
        for (std::size_t c = 0; c < columns; ++c) {
            const char* cell = qio_table_cell(table, r, c);
            broken(cell == nullptr);
            text = text + std::strlen(cell);
            double value = 0.0;
            const qio_status number = qio_table_number(table, r, c, &value, &error);
            qfuzz::called(NUMBER, number);
            if (number != QIO_OK) {
                check_message(error);
            }
        }
    }
    qio_table_free(table);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qfuzz::count_calls(call_names, CALLS);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    read_points(data, size);
    read_table(data, size);
    return 0;
}
