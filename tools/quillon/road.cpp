// Loading a road design and the chainages the road commands set out.
#include "road.hpp"

#include "failure.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace quillon::tool {

const char* const EXIT_CODES_HELP = "Exit codes:\n"
                                    "  0  done\n"
                                    "  1  internal failure (out of memory)\n"
                                    "  2  wrong command line\n"
                                    "  3  an input file cannot be read\n"
                                    "  4  an input file is malformed, not supported or "
                                    "contradicts itself\n"
                                    "  5  a computation was refused\n"
                                    "  6  the output file cannot be written\n";

int exit_code(qio_status status)
{
    switch (status) {
    case QIO_OK: return EXIT_DONE;
    case QIO_CANNOT_READ: return EXIT_NO_INPUT;
    case QIO_MALFORMED:
    case QIO_UNSUPPORTED:
    case QIO_INCONSISTENT: return EXIT_BAD_INPUT;
    case QIO_NOT_FOUND:
    case QIO_BAD_ARGUMENT: return EXIT_USAGE;
    case QIO_NO_MEMORY: return EXIT_INTERNAL;
    }
    return EXIT_INTERNAL;
}

Road load_road(const std::string& file, const std::string& alignment_name, bool quiet)
{
    Road road;
    road.file = file;
    qio_design* design = nullptr;
    qio_error error{};
    const qio_status read = qio_landxml_read_file(file.c_str(), &design, &error);
    if (read != QIO_OK) {
        throw Failure(exit_code(read), error.message);
    }
    road.design.reset(design);
    if (!quiet) {
        for (std::size_t i = 0; i < qio_design_note_count(design); ++i) {
            std::fprintf(stderr, "note: %s\n", qio_design_note(design, i));
        }
    }

    const std::size_t count = qio_design_alignment_count(design);
    std::string names;
    for (std::size_t i = 0; i < count; ++i) {
        names += fmt::format("{}\"{}\"", i == 0 ? "" : ", ", qio_design_alignment_name(design, i));
    }
    std::size_t index = 0;
    if (!alignment_name.empty()) {
        if (qio_design_find(design, alignment_name.c_str(), &index) != QIO_OK) {
            throw Failure(EXIT_USAGE,
                          fmt::format("{}: no alignment named \"{}\" (the file holds {})", file,
                                      alignment_name, names));
        }
    } else if (count > 1) {
        throw Failure(EXIT_USAGE,
                      fmt::format("{}: the file holds {} alignments ({}): choose one with "
                                  "--alignment",
                                  file, count, names));
    }
    const qio_status status = qio_design_alignment(design, index, &road.alignment, &error);
    if (status != QIO_OK) {
        throw Failure(exit_code(status), error.message);
    }
    return road;
}

std::string main_point_label(const qio_alignment& alignment, std::size_t index)
{
    if (index == 0) {
        return "start";
    }
    if (index + 1 >= alignment.horizontal_count) {
        return "end";
    }
    auto kind = [](const HElement& e) { return e.Type == 1 ? 'T' : (e.Type == 2 ? 'C' : 'S'); };
    return std::string{kind(alignment.horizontal[index - 1]), kind(alignment.horizontal[index])};
}

std::vector<Mark> marks(const Road& road, double interval)
{
    const qio_alignment& a = road.alignment;
    std::vector<Mark> main;
    for (std::size_t i = 0; i < a.horizontal_count; ++i) {
        main.push_back(Mark{a.horizontal[i].Chainage, main_point_label(a, i)});
    }
    for (std::size_t i = 0; i < a.equation_count; ++i) {
        const double c = a.equations[i].chainage;
        if (c > a.station_start && c < a.chainage_end) {
            main.push_back(Mark{c, "EQ"});
        }
    }
    std::vector<Mark> piles;
    if (interval > 0.0) {
        // Between equations the stations run parallel to the chainage:
        // piles fall on whole multiples of the interval there.
        std::vector<double> region_starts{a.station_start};
        for (std::size_t i = 0; i < a.equation_count; ++i) {
            region_starts.push_back(a.equations[i].chainage);
        }
        region_starts.push_back(a.chainage_end);
        for (std::size_t r = 0; r + 1 < region_starts.size(); ++r) {
            const double from = std::max(region_starts[r], a.station_start);
            const double to = std::min(region_starts[r + 1], a.chainage_end);
            if (!(to > from)) {
                continue;
            }
            const double station_shift = road.station(from) - from;
            double k = std::ceil((from + station_shift) / interval);
            for (double station = k * interval; station - station_shift < to;
                 station = (++k) * interval) {
                piles.push_back(Mark{station - station_shift, ""});
            }
        }
    }
    std::vector<Mark> all = main;
    for (const Mark& pile : piles) {
        const bool taken = std::any_of(main.begin(), main.end(), [&pile](const Mark& m) {
            return std::fabs(m.chainage - pile.chainage) <= 0.001;
        });
        if (!taken) {
            all.push_back(pile);
        }
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const Mark& x, const Mark& y) { return x.chainage < y.chainage; });
    return all;
}

void require(qs_status status, const std::string& what)
{
    if (status != QS_OK) {
        throw Failure(EXIT_COMPUTATION, fmt::format("{}: {}", what, qs_status_message(status)));
    }
}

std::string fixed(double value, int decimals, bool sign)
{
    std::string text =
        sign ? fmt::format("{:+.{}f}", value, decimals) : fmt::format("{:.{}f}", value, decimals);
    if (text.find_first_of("123456789") == std::string::npos && text[0] == '-') {
        text[0] = '+';
        if (!sign) {
            text.erase(0, 1);
        }
    }
    return text;
}

std::string dms(double seconds)
{
    if (!std::isfinite(seconds)) {
        return "-";
    }
    // Tenths of a second as a whole number, so that 59.96" carries into the
    // next minute.
    const double tenths = std::round(seconds * 10.0);
    const long long total =
        static_cast<long long>(std::fmod(tenths, 12960000.0) + 12960000.0) % 12960000LL;
    return fmt::format("{}\u00B0{:02}'{:02}.{}\"", total / 36000, total / 600 % 60, total / 10 % 60,
                       total % 10);
}

} // namespace quillon::tool
