// Point files: a header naming the columns, then one point per row.
#include "points.hpp"

#include "csv.hpp"

namespace quillon::io {
namespace {

std::string joined(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names) {
        text += text.empty() ? name : ", " + name;
    }
    return text;
}

} // namespace

std::vector<PointRow> read_points(const std::string& name, std::string_view bytes)
{
    const CsvTable table = read_csv(name, bytes);
    const long name_column = column(table, "name");
    const long x_column = column(table, "X");
    const long y_column = column(table, "Y");
    const long h_column = column(table, "H");
    const long code_column = column(table, "code");
    if (name_column < 0 || x_column < 0 || y_column < 0) {
        table.source.refuse(QIO_MALFORMED, table.header_line,
                            "the header must name the columns name, X and Y (H and code may "
                            "follow); it reads \"" +
                                joined(table.header) + "\"");
    }
    std::vector<PointRow> points;
    points.reserve(table.rows.size());
    for (const CsvRow& row : table.rows) {
        PointRow point;
        point.line = row.line;
        point.name = row.fields[static_cast<std::size_t>(name_column)];
        if (point.name.empty()) {
            table.source.refuse(QIO_MALFORMED, row.line, "the point has no name");
        }
        struct Coordinate {
            long column;
            const char* label;
            double* value;
        };
        const Coordinate coordinates[] = {{x_column, "X", &point.x}, {y_column, "Y", &point.y}};
        for (const Coordinate& c : coordinates) {
            const std::string& field = row.fields[static_cast<std::size_t>(c.column)];
            if (!field_number(table, field, *c.value)) {
                table.source.refuse(QIO_MALFORMED, row.line,
                                    "point " + point.name + ": " + c.label + " \"" + field +
                                        "\" is not a number");
            }
        }
        if (h_column >= 0) {
            const std::string& field = row.fields[static_cast<std::size_t>(h_column)];
            if (!field.empty()) {
                if (!field_number(table, field, point.h)) {
                    table.source.refuse(QIO_MALFORMED, row.line,
                                        "point " + point.name + ": H \"" + field +
                                            "\" is not a number");
                }
                point.has_height = true;
            }
        }
        if (code_column >= 0) {
            point.code = row.fields[static_cast<std::size_t>(code_column)];
        }
        points.push_back(point);
    }
    return points;
}

} // namespace quillon::io
