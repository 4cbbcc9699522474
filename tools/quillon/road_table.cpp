// quillon road table: the setting-out table of an alignment - chainage,
// centre-line point, design height and azimuth, and the offset points - at
// the main points and at regular piles.
#include "commands.hpp"
#include "failure.hpp"
#include "output.hpp"
#include "road.hpp"
#include "text_table.hpp"

#include <fmt/format.h>

namespace quillon::tool {

int road_table(const TableOptions& options)
{
    const Road road = load_road(options.design, options.alignment, options.quiet);
    const qio_alignment& a = road.alignment;
    const bool equations = a.equation_count > 0;

    std::vector<std::string> headings{"<Point", "Chainage"};
    if (equations) {
        headings.push_back("Station");
    }
    for (const char* h : {"X", "Y", "H", "Azimuth"}) {
        headings.push_back(h);
    }
    for (double offset : options.offsets) {
        headings.push_back(fmt::format("X({:+.3f})", offset));
        headings.push_back(fmt::format("Y({:+.3f})", offset));
    }
    headings.push_back("<Remark");
    TextTable table(headings);

    const std::vector<Mark> rows = marks(road, options.interval);
    Progress progress("setting-out table", rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const double chainage = rows[i].chainage;
        qs_station_offset centre{};
        require(qs_alignment_point(a.horizontal, a.horizontal_count, chainage, 0.0, &centre),
                fmt::format("{}: the point at chainage {:.3f}", road.file, chainage));
        std::vector<std::string> cells{rows[i].label, fmt::format("{:.3f}", chainage)};
        if (equations) {
            cells.push_back(fmt::format("{:.3f}", road.station(chainage)));
        }
        cells.push_back(fmt::format("{:.3f}", centre.x));
        cells.push_back(fmt::format("{:.3f}", centre.y));
        std::string remark;
        qs_profile_point height{};
        if (!road.has_profile()) {
            cells.push_back("-");
            remark = "no profile";
        } else {
            const qs_status status =
                qs_profile_height(a.vertical, a.vertical_count, chainage, &height);
            if (status == QS_OUTSIDE_ALIGNMENT) {
                cells.push_back("-");
                remark = "no design height";
            } else {
                require(status,
                        fmt::format("{}: the height at chainage {:.3f}", road.file, chainage));
                cells.push_back(fmt::format("{:.3f}", height.height));
            }
        }
        cells.push_back(dms(centre.azimuth));
        for (double offset : options.offsets) {
            qs_station_offset side{};
            require(qs_alignment_point(a.horizontal, a.horizontal_count, chainage, offset, &side),
                    fmt::format("{}: the point at chainage {:.3f}, offset {:.3f}", road.file,
                                chainage, offset));
            cells.push_back(fmt::format("{:.3f}", side.x));
            cells.push_back(fmt::format("{:.3f}", side.y));
        }
        cells.push_back(remark);
        table.add(cells);
        progress.step(i + 1);
    }

    std::string text;
    if (options.format == Format::text) {
        text = fmt::format("# {}, alignment \"{}\": chainage {:.3f} to {:.3f} m\n", road.file,
                           a.name, a.station_start, a.chainage_end);
    }
    text += table.render(options.format);
    deliver(options.output, text);
    return EXIT_DONE;
}

} // namespace quillon::tool
