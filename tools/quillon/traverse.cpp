// quillon traverse: a traverse from a file of stations - link, loop or
// between known ends - closed and adjusted: the angular, linear and height
// misclosures, the precision ratio and the adjusted points.
#include "commands.hpp"
#include "failure.hpp"
#include "output.hpp"
#include "road.hpp"
#include "table_file.hpp"
#include "text_table.hpp"

#include <fmt/format.h>

#include <cmath>

namespace quillon::tool {
namespace {

struct Columns {
    long name, x, y, h, angle, distance, dh;
};

SurveyPoint known_point(const TableFile& file, const Columns& c, std::size_t row, bool height)
{
    SurveyPoint p{};
    p.X = file.number(row, c.x);
    p.Y = file.number(row, c.y);
    p.H = height ? file.number(row, c.h) : 0.0;
    return p;
}

std::string signed_seconds(double seconds) { return fmt::format("{:+.1f}\"", seconds); }

} // namespace

int traverse(const TraverseOptions& options)
{
    const TableFile file(options.observations);
    const AngleUnit unit = options.angles == "deg"
                               ? AngleUnit::degrees
                               : (options.angles == "gon" ? AngleUnit::gon : AngleUnit::dms);
    const Columns c{file.column("name", true),  file.column("X", true),
                    file.column("Y", true),     file.column("H", false),
                    file.column("angle", true), file.column("distance", true),
                    file.column("dh", false)};
    const std::size_t rows = file.rows();
    if (rows < 3) {
        throw Failure(EXIT_BAD_INPUT,
                      options.observations +
                          ": a traverse needs a backsight, a start and an end: at least 3 rows");
    }
    // Row 0 the backsight B, row 1 the start A; the last rows say the kind.
    if (!file.has(0, c.x) || !file.has(0, c.y) || file.has(0, c.angle)) {
        file.refuse(0, "the first row is the backsight: its X and Y, and no angle");
    }
    if (!file.has(1, c.x) || !file.has(1, c.y)) {
        file.refuse(1, "the second row is the known start: its X and Y are needed");
    }
    const std::size_t last = rows - 1;
    int kind = QS_TRAVERSE_KNOWN_ENDS;
    std::size_t end_row = last;
    if (file.text(last, c.name) == file.text(1, c.name) && !file.has(last, c.x)) {
        kind = QS_TRAVERSE_LOOP;
    } else if (file.has(last, c.x) && !file.has(last, c.angle) && rows >= 4 &&
               file.has(last - 1, c.x) && file.has(last - 1, c.angle)) {
        kind = QS_TRAVERSE_LINK;
        end_row = last - 1;
    } else if (!file.has(last, c.x)) {
        file.refuse(last, "the last row must be the known end (with X and Y), a foresight after "
                          "it, or the start again to close a loop");
    } else if (file.has(last, c.angle)) {
        file.refuse(last, "an angle at the known end needs a foresight row after it");
    }
    const std::size_t legs = end_row - 1;
    if (legs == 0) {
        file.refuse(end_row, "the traverse has no leg");
    }

    // Heights: carried when every leg has a height difference and the known
    // heights are there, unless told otherwise.
    bool all_dh = c.dh >= 0;
    for (std::size_t row = 1; row < end_row && all_dh; ++row) {
        all_dh = file.has(row, c.dh);
    }
    const bool heights_known =
        file.has(1, c.h) && (kind == QS_TRAVERSE_LOOP || file.has(end_row, c.h));
    int height_rule = QS_HEIGHTS_NONE;
    if (options.heights == "length" || options.heights == "length2" ||
        (options.heights == "auto" && all_dh && heights_known)) {
        height_rule =
            options.heights == "length2" ? QS_HEIGHTS_BY_LENGTH_SQUARED : QS_HEIGHTS_BY_LENGTH;
        if (!heights_known) {
            file.refuse(file.has(1, c.h) ? end_row : 1, "heights are asked for, but this known "
                                                        "station has no H");
        }
    }

    qs_traverse_ends ends{};
    ends.start_backsight = known_point(file, c, 0, false);
    ends.start = known_point(file, c, 1, height_rule != QS_HEIGHTS_NONE);
    ends.end = kind == QS_TRAVERSE_LOOP
                   ? ends.start
                   : known_point(file, c, end_row, height_rule != QS_HEIGHTS_NONE);
    if (kind == QS_TRAVERSE_LINK) {
        ends.end_foresight = known_point(file, c, last, false);
    }
    std::vector<qs_traverse_station> stations(legs + 1);
    std::vector<std::string> names;
    for (std::size_t i = 0; i <= legs; ++i) {
        const std::size_t row = i + 1;
        names.push_back(file.text(row, c.name));
        const bool angle_needed = kind != QS_TRAVERSE_KNOWN_ENDS || i < legs;
        if (angle_needed) {
            if (!file.has(row, c.angle)) {
                file.refuse(row, "station " + names.back() + " has no angle");
            }
            stations[i].angle = file.angle(row, c.angle, unit);
        }
        if (i < legs) {
            stations[i].distance = file.number(row, c.distance);
            if (height_rule != QS_HEIGHTS_NONE) {
                if (!file.has(row, c.dh)) {
                    file.refuse(row, "station " + names.back() + " has no dh to the next");
                }
                stations[i].height_difference = file.number(row, c.dh);
            }
        }
    }

    const int rule = options.rule == "transit" ? QS_TRANSIT_RULE : QS_COMPASS_RULE;
    qs_traverse_result r{};
    std::vector<SurveyPoint> adjusted(legs + 1);
    const qs_status status = qs_traverse_adjust(kind, &ends, stations.data(), legs, rule,
                                                height_rule, &r, adjusted.data());
    if (status == QS_BAD_ARGUMENT) {
        throw Failure(EXIT_BAD_INPUT, options.observations +
                                          ": a value out of its range (a distance not above 0, "
                                          "a coordinate beyond 1e9 m)");
    }
    require(status, options.observations + ": the traverse");

    const char* kinds[] = {"link", "loop", "between known ends"};
    std::string text = fmt::format("# traverse from {}: {} from {} to {}, {} legs, {:.3f} m\n",
                                   options.observations, kinds[kind], names.front(), names.back(),
                                   legs, r.total_length);
    if (kind == QS_TRAVERSE_LINK) {
        text += fmt::format("angular misclosure  {} (azimuth {} -> {} carried {}, known {}); "
                            "{} to each of {} angles\n",
                            signed_seconds(r.angular_misclosure), names.back(),
                            file.text(last, c.name), dms(r.computed_closing),
                            dms(r.expected_closing), signed_seconds(r.angle_correction), legs + 1);
    } else if (kind == QS_TRAVERSE_LOOP) {
        text += fmt::format("angular misclosure  {} (polygon angles sum to {:.1f}\", should "
                            "be {:.1f}\"); {} to each of {} angles\n",
                            signed_seconds(r.angular_misclosure), r.computed_closing,
                            r.expected_closing, signed_seconds(r.angle_correction), legs);
    } else {
        text += "angular misclosure  none (no closing orientation)\n";
    }
    text += fmt::format("linear misclosure   fX {:+.4f} m  fY {:+.4f} m  f {:.4f} m\n",
                        r.misclosure_x, r.misclosure_y, r.misclosure);
    text += std::isinf(r.precision_ratio)
                ? std::string("precision           exact closure\n")
                : fmt::format("precision           1 : {:.0f}\n", r.precision_ratio);
    if (height_rule != QS_HEIGHTS_NONE) {
        text +=
            fmt::format("height misclosure   {:+.4f} m, spread by length{}\n", r.height_misclosure,
                        height_rule == QS_HEIGHTS_BY_LENGTH_SQUARED ? " squared" : "");
    }
    text += fmt::format("\nadjusted points ({} rule)\n",
                        rule == QS_TRANSIT_RULE ? "transit" : "compass");
    TextTable table({"<Station", "X", "Y", "H"});
    for (std::size_t i = 0; i <= legs; ++i) {
        table.add({names[i], fmt::format("{:.4f}", adjusted[i].X),
                   fmt::format("{:.4f}", adjusted[i].Y),
                   height_rule == QS_HEIGHTS_NONE ? "-" : fmt::format("{:.4f}", adjusted[i].H)});
    }
    text += table.render(Format::text);
    deliver(options.output, text);
    return EXIT_DONE;
}

} // namespace quillon::tool
