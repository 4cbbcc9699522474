// Point files: name, X, Y, H and code per row.
#ifndef QUILLON_IO_POINTS_HPP
#define QUILLON_IO_POINTS_HPP

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::io {

struct PointRow {
    std::string name;
    std::string code;
    double x = 0.0;
    double y = 0.0;
    double h = 0.0;
    bool has_height = false;
    std::size_t line = 0;
};

// The rows of a point file (see quillon/io.h for its form); a bad row is
// refused with its line.
std::vector<PointRow> read_points(const std::string& name, std::string_view bytes);

} // namespace quillon::io

#endif
