// The office tool end to end: a 50 km road with an element every 200 m and a
// profile, written as LandXML at run time, read by `quillon road table` and
// set out every 20 m into a table file. Times one whole run of the command,
// the start of the process included.
#include "measure.hpp"

#include "quillon.h"
#include "quillon/survey.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#if QUILLON_BENCH_TOOL
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;
#endif

namespace bench {

#if QUILLON_BENCH_TOOL

namespace {

using Clock = std::chrono::steady_clock;

constexpr double ROAD_LENGTH = 50000.0;
constexpr double ELEMENT_LENGTH = 200.0;
constexpr double RADIUS = 2000.0;
constexpr double PILE_INTERVAL = 20.0;

// Straight, entry spiral, arc, exit spiral, turning right and left in turn:
// 250 elements of 200 m, laid out exactly by the survey layer.
std::vector<HElement> road_elements()
{
    const size_t count = static_cast<size_t>(ROAD_LENGTH / ELEMENT_LENGTH);
    std::vector<HElement> table(count + 1);
    for (size_t i = 0; i < count; ++i) {
        HElement& e = table[i];
        e.Length = ELEMENT_LENGTH;
        e.Radius = RADIUS;
        e.Turn = (i / 4) % 2 == 0 ? 1 : 0;
        switch (i % 4) {
        case 0: e.Type = 1, e.Radius = 0.0, e.Turn = 0; break;
        case 1: e.Type = 3, e.Spiral = 0; break;
        case 2: e.Type = 2; break;
        default: e.Type = 3, e.Spiral = 1; break;
        }
    }
    table[0].X = 6200000.0;
    table[0].Y = 450000.0;
    table[0].Azimuth = 200000.0;
    table[0].Chainage = 0.0;
    if (qs_alignment_build(table.data(), table.size(), table.data()) != QS_OK) {
        table.clear();
    }
    return table;
}

std::string coordinates(double north, double east)
{
    char text[80];
    std::snprintf(text, sizeof text, "%.6f %.6f", north, east);
    return text;
}

// The LandXML of the road: the plan from the exact table, a profile of
// grades changing every kilometre on 200 m parabolas.
bool write_design(const std::string& path)
{
    const std::vector<HElement> table = road_elements();
    if (table.empty()) {
        return false;
    }
    std::ofstream xml(path);
    xml << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\" version=\"1.2\">\n"
           "  <Units><Metric linearUnit=\"meter\" areaUnit=\"squareMeter\" "
           "volumeUnit=\"cubicMeter\" angularUnit=\"decimal degrees\" "
           "directionUnit=\"decimal degrees\"/></Units>\n"
           "  <Alignments>\n"
           "    <Alignment name=\"Bench\" staStart=\"0\">\n"
           "      <CoordGeom>\n";
    for (size_t i = 0; i + 1 < table.size(); ++i) {
        const HElement& e = table[i];
        const HElement& next = table[i + 1];
        const std::string start = "<Start>" + coordinates(e.X, e.Y) + "</Start>";
        const std::string end = "<End>" + coordinates(next.X, next.Y) + "</End>";
        const char* rot = e.Turn == 1 ? "cw" : "ccw";
        char head[256];
        switch (e.Type) {
        case 1:
            std::snprintf(head, sizeof head, "<Line length=\"%.6f\" staStart=\"%.6f\">", e.Length,
                          e.Chainage);
            xml << "        " << head << start << end << "</Line>\n";
            break;
        case 2: {
            // The centre a radius to the side of the start, square to the
            // start azimuth.
            const double side = e.Turn == 1 ? 1.0 : -1.0;
            const double a = e.Azimuth * QS_RAD_PER_SEC + side * M_PI / 2.0;
            const std::string centre =
                "<Center>" + coordinates(e.X + RADIUS * std::cos(a), e.Y + RADIUS * std::sin(a)) +
                "</Center>";
            std::snprintf(head, sizeof head,
                          "<Curve radius=\"%.6f\" length=\"%.6f\" rot=\"%s\" staStart=\"%.6f\">",
                          e.Radius, e.Length, rot, e.Chainage);
            xml << "        " << head << start << centre << end << "</Curve>\n";
            break;
        }
        default: {
            const bool entry = e.Spiral == 0;
            std::snprintf(head, sizeof head,
                          "<Spiral spiType=\"clothoid\" length=\"%.6f\" radiusStart=\"%s\" "
                          "radiusEnd=\"%s\" rot=\"%s\" staStart=\"%.6f\">",
                          e.Length, entry ? "INF" : "2000.000000", entry ? "2000.000000" : "INF",
                          rot, e.Chainage);
            xml << "        " << head << start << end << "</Spiral>\n";
            break;
        }
        }
    }
    xml << "      </CoordGeom>\n"
           "      <Profile>\n"
           "        <ProfAlign name=\"Design\">\n";
    double elevation = 120.0;
    xml << "          <PVI>0 120.000</PVI>\n";
    for (int km = 1; km < 50; ++km) {
        const double grade = km % 2 == 0 ? 0.012 : -0.008;
        elevation += grade * 1000.0;
        char line[128];
        std::snprintf(line, sizeof line,
                      "          <ParaCurve length=\"200\">%d %.3f</ParaCurve>\n", km * 1000,
                      elevation);
        xml << line;
    }
    xml << "          <PVI>50000 " << elevation + 8.0 << "</PVI>\n"
        << "        </ProfAlign>\n"
           "      </Profile>\n"
           "    </Alignment>\n"
           "  </Alignments>\n"
           "</LandXML>\n";
    return static_cast<bool>(xml);
}

// One run of the command; its exit status.
int run(const std::vector<std::string>& command)
{
    std::vector<char*> argv;
    for (const std::string& a : command) {
        argv.push_back(const_cast<char*>(a.c_str()));
    }
    argv.push_back(nullptr);
    pid_t pid = 0;
    if (posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ) != 0) {
        return -1;
    }
    int status = 0;
    if (waitpid(pid, &status, 0) != pid) {
        return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void run_road_table(benchmark::State& state)
{
    const std::string work = QUILLON_BENCH_WORK;
    const std::string design = work + "/road_50km.xml";
    const std::string table = work + "/road_50km_table.txt";
    if (!write_design(design)) {
        state.SkipWithError("the design file could not be written");
        return;
    }
    const std::vector<std::string> command = {
        QUILLON_TOOL_PATH,    "--quiet", "road", "table", design, "--interval", "20",
        "--offsets=-3.5,3.5", "-o",      table};
    std::vector<double> samples;
    for (auto _ : state) {
        const auto start = Clock::now();
        const int status = run(command);
        const auto stop = Clock::now();
        if (status != 0) {
            state.SkipWithError("quillon road table failed");
            return;
        }
        const double t = std::chrono::duration<double>(stop - start).count();
        state.SetIterationTime(t);
        samples.push_back(t);
    }
    set_counter(state, NS_PER_CALL, median(samples) * 1e9);
    set_counter(state, CASES, ROAD_LENGTH / PILE_INTERVAL + 1.0);
}

} // namespace

void register_tool_benchmarks()
{
    benchmark::RegisterBenchmark("quillon road table/50km", run_road_table)
        ->UseManualTime()
        ->Iterations(10);
}

#else

void register_tool_benchmarks() {}

#endif

} // namespace bench
