// quillon: the office tool. Road designs (LandXML) to setting-out tables,
// measured points to chainage, offset and cut or fill, designs to plots.
#include "commands.hpp"
#include "failure.hpp"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <map>
#include <new>

using namespace quillon::tool;

namespace {

const std::map<std::string, Format> formats{{"text", Format::text}, {"csv", Format::csv}};

} // namespace

int main(int argc, char** argv)
{
    CLI::App app{"quillon - the office tool of the Quillon survey library: road designs "
                 "(LandXML 1.2) to setting-out tables and plots, measured points to chainage, "
                 "offset and cut or fill; free stations and traverses adjusted.",
                 "quillon"};
    app.footer(EXIT_CODES_HELP);
    app.require_subcommand(1);
    // --quiet may come after the command too.
    app.fallthrough();
    bool quiet = false;
    app.add_flag("-q,--quiet", quiet, "Do not print the reader's notes about the design");

    CLI::App* road = app.add_subcommand("road", "Road designs: setting-out tables, locating "
                                                "measured points, plots");
    road->require_subcommand(1);
    road->fallthrough();
    road->footer(EXIT_CODES_HELP);

    TableOptions table;
    CLI::App* table_command = road->add_subcommand(
        "table", "The setting-out table of an alignment: chainage, X, Y, design H, azimuth and "
                 "the offset points, at every main point and every pile");
    table_command->add_option("DESIGN", table.design, "LandXML file of the road design")
        ->required();
    table_command->add_option("--alignment", table.alignment,
                              "Alignment to use (needed when the file holds several)");
    table_command
        ->add_option("--interval", table.interval,
                     "Pile interval in m, piles at whole multiples of it in the printed "
                     "stations (0: main points only)")
        ->capture_default_str()
        ->check(CLI::NonNegativeNumber);
    table_command
        ->add_option("--offsets", table.offsets,
                     "Offsets in m to set out beside the centre line, + right, comma-separated "
                     "(--offsets=-3.5,3.5)")
        ->delimiter(',')
        ->allow_extra_args(false);
    table_command->add_option("--format", table.format, "Output format: text or csv")
        ->transform(CLI::CheckedTransformer(formats, CLI::ignore_case));
    table_command->add_option("-o,--output", table.output,
                              "File to write (written whole or not at all); default: stdout");
    table_command->footer(EXIT_CODES_HELP);

    LocateOptions locate;
    CLI::App* locate_command = road->add_subcommand(
        "locate", "For every measured point: chainage, offset (+ right), design height and cut "
                  "(+) or fill (-)");
    locate_command->add_option("DESIGN", locate.design, "LandXML file of the road design")
        ->required();
    locate_command
        ->add_option("MEASURED", locate.measured,
                     "CSV file of measured points, header row: name,X,Y,H,code (H and code "
                     "optional; ',' or ';' between fields)")
        ->required();
    locate_command->add_option("--alignment", locate.alignment,
                               "Alignment to use (needed when the file holds several)");
    locate_command->add_option("--format", locate.format, "Output format: text or csv")
        ->transform(CLI::CheckedTransformer(formats, CLI::ignore_case));
    locate_command->add_option("-o,--output", locate.output,
                               "File to write (written whole or not at all); default: stdout");
    locate_command->footer(EXIT_CODES_HELP);

    PlotOptions plot;
    CLI::App* plot_command = road->add_subcommand(
        "plot", "Plan and profile of an alignment as one self-contained SVG drawing");
    plot_command->add_option("DESIGN", plot.design, "LandXML file of the road design")->required();
    plot_command->add_option("-o,--output", plot.output, "SVG file to write")->required();
    plot_command->add_option("--alignment", plot.alignment,
                             "Alignment to use (needed when the file holds several)");
    plot_command
        ->add_option("--tick", plot.tick,
                     "Chainage tick spacing in m (default: a round "
                     "spacing giving about a dozen ticks)")
        ->check(CLI::PositiveNumber);
    plot_command->footer(EXIT_CODES_HELP);

    const std::vector<std::string> angle_units{"dms", "deg", "gon"};
    const char* const angle_help =
        "How the file writes angles: dms (packed ddd.mmss, 123.4506 is 123 deg 45' 06\"), deg "
        "(decimal degrees) or gon";

    StationOptions station;
    CLI::App* station_command = app.add_subcommand(
        "station", "Free station by least squares: the station, its standard deviations, the "
                   "residual of every observation and the one most likely to be a blunder");
    station_command
        ->add_option("OBSERVATIONS", station.observations,
                     "CSV of sightings, header row: name,X,Y,H,direction,distance,zenith,"
                     "target_height (H, distance, zenith and target_height may be empty or "
                     "absent; distance is the slope distance, reduced with the zenith angle)")
        ->required();
    station_command->add_option("--angles", station.angles, angle_help)
        ->capture_default_str()
        ->check(CLI::IsMember(angle_units));
    station_command
        ->add_option("--instrument-height", station.instrument_height,
                     "Height of the instrument over the mark, m")
        ->capture_default_str();
    station_command
        ->add_option("--sigma-direction", station.sigma_direction,
                     "Standard deviation of a direction, arc-seconds")
        ->capture_default_str();
    station_command
        ->add_option("--sigma-zenith", station.sigma_zenith,
                     "Standard deviation of a zenith angle, arc-seconds")
        ->capture_default_str();
    station_command
        ->add_option("--sigma-distance-mm", station.sigma_distance_mm,
                     "Constant part of a distance's standard deviation, mm")
        ->capture_default_str();
    station_command
        ->add_option("--sigma-distance-ppm", station.sigma_distance_ppm,
                     "Part of a distance's standard deviation proportional to it, mm/km")
        ->capture_default_str();
    station_command->add_flag("--curvature", station.curvature,
                              "Correct heights for earth curvature and refraction");
    station_command
        ->add_option("--refraction", station.refraction,
                     "Refraction coefficient k (with "
                     "--curvature)")
        ->capture_default_str();
    station_command
        ->add_option("--threshold", station.threshold,
                     "Critical value of the standardized residual |w| for a blunder")
        ->capture_default_str();
    station_command->add_option("--leave-out", station.leave_out,
                                "Leave out the sightings to this point (repeat for more), as "
                                "after a flagged blunder");
    station_command->add_option("-o,--output", station.output,
                                "File to write (written whole or not at all); default: stdout");
    station_command->footer(EXIT_CODES_HELP);

    TraverseOptions traverse_options;
    CLI::App* traverse_command = app.add_subcommand(
        "traverse", "Close and adjust a traverse: angular, linear and height misclosures, the "
                    "precision ratio and the adjusted points");
    traverse_command
        ->add_option("TRAVERSE", traverse_options.observations,
                     "CSV of the traverse, header row: name,X,Y,H,angle,distance,dh. Rows: the "
                     "backsight (X, Y), the known start (X, Y, H, angle, distance, dh), the new "
                     "stations (angle, distance, dh), then either the known end with its angle "
                     "and the foresight (link), the known end without angle (known ends), or the "
                     "start's name again with its closing angle (loop). Angles are measured "
                     "clockwise from the back station to the forward one")
        ->required();
    traverse_command->add_option("--angles", traverse_options.angles, angle_help)
        ->capture_default_str()
        ->check(CLI::IsMember(angle_units));
    traverse_command
        ->add_option("--rule", traverse_options.rule,
                     "How the linear misclosure is spread: compass (Bowditch, by leg length) or "
                     "transit (by coordinate increments)")
        ->capture_default_str()
        ->check(CLI::IsMember({"compass", "transit"}));
    traverse_command
        ->add_option("--heights", traverse_options.heights,
                     "Heights: none, length (spread by leg length), length2 (by its square) or "
                     "auto (by length when every leg has dh and the known heights are given)")
        ->capture_default_str()
        ->check(CLI::IsMember({"auto", "none", "length", "length2"}));
    traverse_command->add_option("-o,--output", traverse_options.output,
                                 "File to write (written whole or not at all); default: stdout");
    traverse_command->footer(EXIT_CODES_HELP);

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::CallForAllHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        app.exit(error);
        return EXIT_USAGE;
    }
    table.quiet = locate.quiet = plot.quiet = quiet;

    try {
        if (*table_command) {
            return road_table(table);
        }
        if (*locate_command) {
            return road_locate(locate);
        }
        if (*plot_command) {
            return road_plot(plot);
        }
        if (*station_command) {
            return free_station(station);
        }
        if (*traverse_command) {
            return traverse(traverse_options);
        }
    } catch (const Failure& failure) {
        std::fprintf(stderr, "quillon: %s\n", failure.what());
        return failure.code();
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "quillon: out of memory\n");
        return EXIT_INTERNAL;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "quillon: %s\n", failure.what());
        return EXIT_INTERNAL;
    }
    return EXIT_USAGE;
}
