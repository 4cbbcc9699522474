// quillon road locate: for every measured point its chainage, offset,
// design height and cut or fill - "where am I?" on the road.
#include "commands.hpp"
#include "failure.hpp"
#include "output.hpp"
#include "road.hpp"
#include "text_table.hpp"

#include <fmt/format.h>

namespace quillon::tool {

int road_locate(const LocateOptions& options)
{
    const Road road = load_road(options.design, options.alignment, options.quiet);
    const qio_alignment& a = road.alignment;
    const bool equations = a.equation_count > 0;

    qio_points* loaded = nullptr;
    qio_error error{};
    const qio_status read = qio_points_read_file(options.measured.c_str(), &loaded, &error);
    if (read != QIO_OK) {
        throw Failure(exit_code(read), error.message);
    }
    const std::unique_ptr<qio_points, void (*)(qio_points*)> points(loaded, qio_points_free);
    std::size_t count = 0;
    const qio_point* rows = qio_points_rows(points.get(), &count);

    std::vector<std::string> headings{"<Point", "Chainage"};
    if (equations) {
        headings.push_back("Station");
    }
    for (const char* h : {"Offset", "H", "Design H", "Cut/fill", "<Remark"}) {
        headings.push_back(h);
    }
    TextTable table(headings);
    Progress progress("locating points", count);
    for (std::size_t i = 0; i < count; ++i) {
        const qio_point& p = rows[i];
        std::vector<std::string> cells{p.name};
        qs_station_offset where{};
        const qs_status located =
            qs_alignment_locate(a.horizontal, a.horizontal_count, p.x, p.y, &where);
        const std::string measured = p.has_height ? fmt::format("{:.3f}", p.h) : "-";
        if (located == QS_OUTSIDE_ALIGNMENT || located == QS_NO_CONVERGENCE) {
            cells.insert(cells.end(), equations ? 3 : 2, "-");
            cells.insert(cells.end(), {measured, "-", "-", qs_status_message(located)});
            table.add(cells);
            continue;
        }
        require(located, fmt::format("{}:{}: point {}", options.measured, p.line, p.name));
        cells.push_back(fmt::format("{:.3f}", where.chainage));
        if (equations) {
            cells.push_back(fmt::format("{:.3f}", road.station(where.chainage)));
        }
        cells.push_back(fixed(where.offset, 3));
        cells.push_back(measured);
        std::string remark;
        qs_profile_point design{};
        const qs_status height =
            road.has_profile()
                ? qs_profile_height(a.vertical, a.vertical_count, where.chainage, &design)
                : QS_OUTSIDE_ALIGNMENT;
        if (height == QS_OK) {
            cells.push_back(fmt::format("{:.3f}", design.height));
            if (p.has_height) {
                const std::string cut_fill = fixed(p.h - design.height, 3, true);
                cells.push_back(cut_fill);
                remark = cut_fill == "+0.000" ? "on grade" : (cut_fill[0] == '+' ? "cut" : "fill");
            } else {
                cells.push_back("-");
                remark = "no measured height";
            }
        } else {
            if (height != QS_OUTSIDE_ALIGNMENT) {
                require(height, fmt::format("{}:{}: point {}", options.measured, p.line, p.name));
            }
            cells.insert(cells.end(), {"-", "-"});
            remark = road.has_profile() ? "no design height" : "no profile";
        }
        cells.push_back(remark);
        table.add(cells);
        progress.step(i + 1);
    }

    std::string text;
    if (options.format == Format::text) {
        text = fmt::format("# {} on {}, alignment \"{}\"; offsets + right, cut/fill = H - "
                           "design H (+ cut, - fill)\n",
                           options.measured, road.file, a.name);
    }
    text += table.render(options.format);
    deliver(options.output, text);
    return EXIT_DONE;
}

} // namespace quillon::tool
