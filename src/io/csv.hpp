// Delimited text files with a header row: the points a crew measured and
// the observations the office tool reduces.
#ifndef QUILLON_IO_CSV_HPP
#define QUILLON_IO_CSV_HPP

#include "source.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::io {

struct CsvRow {
    std::size_t line;
    std::vector<std::string> fields;
};

struct CsvTable {
    Source source;
    char separator;
    std::size_t header_line;
    std::vector<std::string> header; // as written, spaces trimmed
    std::vector<CsvRow> rows;        // each with as many fields as the header
};

// Reads UTF-8 text (a byte-order mark skipped): the first line that is
// neither empty nor a '#' comment is the header; fields separated by
// semicolons when the header holds one, else by commas; double quotes
// around a field keep separators in it. A row whose field count differs
// from the header's, text that is not UTF-8 or a quote left open is refused
// as QIO_MALFORMED with its line.
CsvTable read_csv(const std::string& name, std::string_view bytes);

// Index of the header column named name (compared without regard to case);
// -1 when there is none. A column named twice is refused.
long column(const CsvTable& table, std::string_view name);

// A field as a number: with semicolons as separators a decimal comma is
// read as a point. false when it is empty or not a finite number.
bool field_number(const CsvTable& table, std::string_view field, double& value);

} // namespace quillon::io

#endif
