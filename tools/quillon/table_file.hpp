// An observation file (CSV with a header) as the station and traverse
// commands read it: named columns, numbers and angles by row, and every
// complaint naming the file and the line.
#ifndef QUILLON_TOOL_TABLE_FILE_HPP
#define QUILLON_TOOL_TABLE_FILE_HPP

#include "quillon/io.h"

#include <cstddef>
#include <memory>
#include <string>

namespace quillon::tool {

// How angles are written in an observation file.
enum class AngleUnit { dms, degrees, gon };

class TableFile {
  public:
    explicit TableFile(const std::string& path);

    std::size_t rows() const { return qio_table_row_count(table_.get()); }
    const std::string& path() const { return path_; }

    // Index of the column with that heading; -1 when absent and not
    // required (a required one missing is a Failure).
    long column(const char* name, bool required) const;

    // Whether the row has something in the column (a column of -1 never
    // does).
    bool has(std::size_t row, long column) const;
    std::string text(std::size_t row, long column) const;
    double number(std::size_t row, long column) const;
    // An angle in arc-seconds.
    double angle(std::size_t row, long column, AngleUnit unit) const;

    // A Failure (EXIT_BAD_INPUT) naming the file and the row's line.
    [[noreturn]] void refuse(std::size_t row, const std::string& text) const;

  private:
    std::string path_;
    std::unique_ptr<qio_table, void (*)(qio_table*)> table_{nullptr, qio_table_free};
};

// "12.5 mm", "3.2\"" and the like are for reports; these read angles:
// packed degrees-minutes-seconds ddd.mmss ("123.4506" is 123 deg 45' 06"),
// decimal degrees or gon, to arc-seconds. false when the text is none.
bool parse_angle(const std::string& text, AngleUnit unit, double& seconds);

} // namespace quillon::tool

#endif
