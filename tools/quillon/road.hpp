// A road design loaded for the road commands: the alignment the user chose,
// its tables, and what the commands print about it.
#ifndef QUILLON_TOOL_ROAD_HPP
#define QUILLON_TOOL_ROAD_HPP

#include "quillon/io.h"
#include "quillon/survey.h"

#include <memory>
#include <string>
#include <vector>

namespace quillon::tool {

struct Road {
    std::unique_ptr<qio_design, void (*)(qio_design*)> design{nullptr, qio_design_free};
    qio_alignment alignment{};
    std::string file;

    bool has_profile() const { return alignment.vertical_count > 0; }
    double station(double chainage) const { return qio_alignment_station(&alignment, chainage); }
};

// Reads the design and picks the alignment: the one named, or the only one.
// The reader's notes go to stderr unless quiet.
Road load_road(const std::string& file, const std::string& alignment_name, bool quiet);

// A chainage to set out and what lies there.
struct Mark {
    double chainage;
    std::string label; // "start", "TS", ... for main points; "EQ" at an equation; "" for a pile
};

// Main points (every element joint, the ends, the station equations) and
// piles at every whole multiple of interval in the printed stations
// (interval 0: main points only), in chainage order; a pile within 1 mm of
// a main point gives way to it.
std::vector<Mark> marks(const Road& road, double interval);

// Label of the main point at horizontal record index: "start", "end" or the
// kinds of element on either side (T line, C arc, S transition): "TS", "SC".
std::string main_point_label(const qio_alignment& alignment, std::size_t index);

// The survey layer's answer, or a Failure (EXIT_COMPUTATION) naming what
// was asked.
void require(qs_status status, const std::string& what);

// A value to so many decimals, signed ("+0.012", "-0.034") when asked; a
// value that rounds to zero is written without a minus sign.
std::string fixed(double value, int decimals, bool sign = false);

// Degrees, minutes and seconds of an azimuth in arc-seconds: 123°45'06.7".
std::string dms(double seconds);

} // namespace quillon::tool

#endif
