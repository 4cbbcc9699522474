// quillon station: a free station by least squares from a file of
// sightings to known points - the station, its precision, every
// observation's residual and the one most likely to be a blunder.
#include "commands.hpp"
#include "failure.hpp"
#include "output.hpp"
#include "road.hpp"
#include "table_file.hpp"
#include "text_table.hpp"

#include <fmt/format.h>

#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>

namespace quillon::tool {
namespace {

AngleUnit angle_unit(const std::string& name)
{
    return name == "deg" ? AngleUnit::degrees : (name == "gon" ? AngleUnit::gon : AngleUnit::dms);
}

// Residual and standardized residual, or blanks where there was no
// observation.
std::string residual(double value, double scale, int decimals, bool observed)
{
    return observed ? fixed(value * scale, decimals, true) : "";
}

std::string w_text(double w, bool observed) { return observed ? fixed(w, 2) : ""; }

} // namespace

int free_station(const StationOptions& options)
{
    const TableFile file(options.observations);
    const AngleUnit unit = angle_unit(options.angles);
    const long name = file.column("name", true);
    const long x = file.column("X", true);
    const long y = file.column("Y", true);
    const long h = file.column("H", false);
    const long direction = file.column("direction", true);
    const long distance = file.column("distance", false);
    const long zenith = file.column("zenith", false);
    const long target = file.column("target_height", false);

    std::vector<qs_sighting> sightings;
    std::vector<std::string> names;
    std::vector<std::string> left_out;
    for (std::size_t row = 0; row < file.rows(); ++row) {
        qs_sighting s{};
        const std::string point = file.text(row, name);
        if (point.empty()) {
            file.refuse(row, "the sighting has no point name");
        }
        if (std::find(options.leave_out.begin(), options.leave_out.end(), point) !=
            options.leave_out.end()) {
            left_out.push_back(point);
            continue;
        }
        names.push_back(point);
        s.x = file.number(row, x);
        s.y = file.number(row, y);
        s.direction = file.angle(row, direction, unit);
        s.has_distance = file.has(row, distance) ? 1 : 0;
        if (s.has_distance) {
            s.slope_distance = file.number(row, distance);
        }
        s.has_zenith = file.has(row, zenith) ? 1 : 0;
        if (s.has_zenith) {
            s.zenith = file.angle(row, zenith, unit);
            if (!file.has(row, h)) {
                file.refuse(row, "a zenith angle to " + names.back() +
                                     ", but no H: a height needs the point's elevation");
            }
        }
        if (file.has(row, h)) {
            s.h = file.number(row, h);
        }
        if (file.has(row, target)) {
            s.target_height = file.number(row, target);
        }
        sightings.push_back(s);
    }
    for (const std::string& point : options.leave_out) {
        if (std::find(left_out.begin(), left_out.end(), point) == left_out.end()) {
            throw Failure(EXIT_USAGE,
                          options.observations + ": no sighting to " + point + " to leave out");
        }
    }
    if (sightings.empty()) {
        throw Failure(EXIT_BAD_INPUT, options.observations + ": no sightings");
    }

    qs_free_station_options o{};
    o.instrument_height = options.instrument_height;
    o.sigma_direction = options.sigma_direction;
    o.sigma_zenith = options.sigma_zenith;
    o.sigma_distance_mm = options.sigma_distance_mm;
    o.sigma_distance_ppm = options.sigma_distance_ppm;
    o.refraction = options.refraction;
    o.earth_radius = QS_EARTH_RADIUS;
    o.blunder_threshold = options.threshold;
    o.curvature = options.curvature ? 1 : 0;
    o.max_iterations = 20;
    qs_free_station_result r{};
    std::vector<qs_sighting_result> residuals(sightings.size());
    const qs_status status =
        qs_free_station(sightings.data(), sightings.size(), &o, &r, residuals.data());
    if (status == QS_BAD_ARGUMENT) {
        throw Failure(EXIT_BAD_INPUT,
                      options.observations +
                          ": a value out of its range (a distance not above 0, a zenith angle "
                          "within 1\" of the plumb line, a coordinate beyond 1e9 m) or a "
                          "setting out of range");
    }
    require(status, options.observations + ": the free station");

    std::size_t distances = 0;
    for (const qs_sighting& s : sightings) {
        distances += static_cast<std::size_t>(s.has_distance);
    }
    std::string text = fmt::format(
        "# free station from {}: {} sightings, {} with distance, {} with zenith angle{}\n",
        options.observations, sightings.size(), distances, r.height_count,
        left_out.empty() ? std::string()
                         : "; left out: " + fmt::format("{}", fmt::join(left_out, ", ")));
    text += fmt::format("station      X {:.4f}   Y {:.4f}   H {}\n", r.x, r.y,
                        std::isnan(r.h) ? std::string("- (no zenith angle)")
                                        : fmt::format("{:.4f}", r.h));
    text +=
        fmt::format("std. dev.    X {:.4f}   Y {:.4f}   H {} m\n", r.sigma_x, r.sigma_y,
                    std::isnan(r.sigma_h) ? std::string("-") : fmt::format("{:.4f}", r.sigma_h));
    text += fmt::format("orientation  {}  (std. dev. {:.1f}\"; azimuth = reading + orientation)\n",
                        dms(r.orientation), r.sigma_orientation);
    text += fmt::format("sigma0       plan {:.2f} with {} degrees of freedom, heights {:.2f}; "
                        "{} iterations\n\n",
                        r.sigma0, r.dof, r.sigma0_height, r.iterations);

    TextTable table({"<Point", "Azimuth", "Distance", "v dir \"", "w", "v dist mm", "w",
                     "H station", "v H mm", "w"});
    for (std::size_t i = 0; i < sightings.size(); ++i) {
        const qs_sighting_result& s = residuals[i];
        const bool distance_made = sightings[i].has_distance != 0;
        const bool height_made = sightings[i].has_zenith != 0;
        table.add({names[i], dms(s.azimuth), fmt::format("{:.4f}", s.horizontal_distance),
                   residual(s.direction_residual, 1.0, 1, true), w_text(s.direction_w, true),
                   residual(s.distance_residual, 1000.0, 1, distance_made),
                   w_text(s.distance_w, distance_made),
                   height_made ? fmt::format("{:.4f}", s.height) : "",
                   residual(s.height_residual, 1000.0, 1, height_made),
                   w_text(s.height_w, height_made)});
    }
    text += table.render(Format::text);

    const char* kinds[] = {"", "direction", "distance", "height"};
    if (r.blunder_kind == QS_NO_OBSERVATION) {
        text += "\nblunder search: no observation is checked by the others (no redundancy)\n";
    } else if (r.blunder_flagged) {
        text += fmt::format("\nblunder search: the {} to {} is suspect: |w| = {:.2f} > {:.2f}; "
                            "measure it again or leave it out\n",
                            kinds[r.blunder_kind], names[r.blunder_index], r.blunder_w,
                            options.threshold);
    } else {
        text += fmt::format("\nblunder search: none flagged; the largest |w| is {:.2f} ({} to "
                            "{}), within {:.2f}\n",
                            r.blunder_w, kinds[r.blunder_kind], names[r.blunder_index],
                            options.threshold);
    }
    deliver(options.output, text);
    return EXIT_DONE;
}

} // namespace quillon::tool
