// The commands of the quillon tool. Each returns its exit code or throws a
// Failure.
#ifndef QUILLON_TOOL_COMMANDS_HPP
#define QUILLON_TOOL_COMMANDS_HPP

#include <string>
#include <vector>

namespace quillon::tool {

enum class Format { text, csv };

struct TableOptions {
    std::string design;
    std::string alignment;
    double interval = 20.0;
    std::vector<double> offsets;
    Format format = Format::text;
    std::string output;
    bool quiet = false;
};

struct LocateOptions {
    std::string design;
    std::string measured;
    std::string alignment;
    Format format = Format::text;
    std::string output;
    bool quiet = false;
};

struct PlotOptions {
    std::string design;
    std::string alignment;
    std::string output;
    double tick = 0.0; // chainage tick spacing, m; 0 chooses one
    bool quiet = false;
};

struct StationOptions {
    std::string observations;
    std::string angles = "dms";
    double instrument_height = 0.0;
    double sigma_direction = 1.0;    // arc-seconds
    double sigma_zenith = 1.0;       // arc-seconds
    double sigma_distance_mm = 1.0;  // mm
    double sigma_distance_ppm = 1.5; // mm per km
    bool curvature = false;
    double refraction = 0.13;
    double threshold = 3.29;
    std::vector<std::string> leave_out; // sightings left out, by point name
    std::string output;
};

struct TraverseOptions {
    std::string observations;
    std::string angles = "dms";
    std::string rule = "compass";
    std::string heights = "auto";
    std::string output;
};

int road_table(const TableOptions& options);
int road_locate(const LocateOptions& options);
int road_plot(const PlotOptions& options);
int free_station(const StationOptions& options);
int traverse(const TraverseOptions& options);

} // namespace quillon::tool

#endif
