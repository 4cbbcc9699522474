// quillon road plot: the alignment in plan (its elements in different
// strokes, chainage ticks, main points labelled) above its profile (grade
// lines, vertical curves, PVIs), as one self-contained SVG file.
#include "commands.hpp"
#include "failure.hpp"
#include "output.hpp"
#include "road.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace quillon::tool {
namespace {

const double WIDTH = 1000.0;
const double MARGIN = 50.0;
const double PLAN_HEIGHT_MAX = 640.0;
const double PROFILE_HEIGHT = 300.0;
const double LABEL_ROOM = 100.0;

std::string escaped(const std::string& text)
{
    std::string out;
    for (char c : text) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        default: out += c;
        }
    }
    return out;
}

// A round spacing giving about a dozen steps over span.
double nice_step(double span)
{
    const double rough = span / 12.0;
    const double decade = std::pow(10.0, std::floor(std::log10(rough)));
    for (double factor : {1.0, 2.0, 5.0, 10.0}) {
        if (factor * decade >= rough) {
            return factor * decade;
        }
    }
    return 10.0 * decade;
}

std::string station_text(double station)
{
    return std::fabs(station - std::round(station)) < 0.0005 ? fmt::format("{:.0f}", station)
                                                             : fmt::format("{:.3f}", station);
}

// Chainages from a to b at most step apart, both ends included.
std::vector<double> samples(double a, double b, double step)
{
    const double span = b - a;
    const double pieces = std::max(1.0, std::ceil(span / step));
    std::vector<double> out;
    for (double k = 0.0; k <= pieces; k += 1.0) {
        out.push_back(k == pieces ? b : a + span * (k / pieces));
    }
    return out;
}

struct View {
    double x0, y0, scale_x, scale_y, left, top;
    double sx(double value) const { return left + (value - x0) * scale_x; }
    double sy(double value) const { return top - (value - y0) * scale_y; }
};

class Plot {
  public:
    Plot(const Road& road, const PlotOptions& options) : road_(road), a_(road.alignment)
    {
        const double length = a_.chainage_end - a_.station_start;
        tick_ = options.tick > 0.0 ? options.tick : nice_step(length);
        step_ = std::max(0.25, length / 2000.0);
    }

    std::string render()
    {
        plan();
        if (road_.has_profile()) {
            profile();
        }
        const double height = top_ + 20.0;
        std::string svg = fmt::format(
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0:.0f}\" height=\"{1:.0f}\" "
            "viewBox=\"0 0 {0:.0f} {1:.0f}\" font-family=\"sans-serif\">\n"
            "<title>{2}</title>\n"
            "<rect x=\"0\" y=\"0\" width=\"{0:.0f}\" height=\"{1:.0f}\" fill=\"white\"/>\n",
            WIDTH, height, escaped(fmt::format("{}, alignment {}", road_.file, a_.name)));
        return svg + body_ + "</svg>\n";
    }

  private:
    void text(double x, double y, const std::string& content, const char* cls,
              const char* anchor = "start", double size = 11.0)
    {
        body_ += fmt::format("<text class=\"{}\" x=\"{:.1f}\" y=\"{:.1f}\" font-size=\"{:.0f}\" "
                             "text-anchor=\"{}\">{}</text>\n",
                             cls, x, y, size, anchor, escaped(content));
    }

    // A sample of each of the three strokes with its name, in a row at
    // height y; returns where the row ends.
    double legend(double y, const char* const names[4], const char* const strokes[4])
    {
        double x = MARGIN;
        for (unsigned type = 1; type <= 3; ++type) {
            body_ += fmt::format("<line class=\"legend\" x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" "
                                 "y2=\"{:.1f}\" {}/>\n",
                                 x, y, x + 30.0, y, strokes[type]);
            text(x + 36.0, y + 4.0, names[type], "legend-label");
            x += 70.0 + 7.0 * static_cast<double>(std::string(names[type]).size());
        }
        return x;
    }

    qs_station_offset point(double chainage, double offset = 0.0) const
    {
        qs_station_offset p{};
        require(qs_alignment_point(a_.horizontal, a_.horizontal_count, chainage, offset, &p),
                fmt::format("{}: the point at chainage {:.3f}", road_.file, chainage));
        return p;
    }

    void plan()
    {
        // Every element sampled along its length; the extent of them all.
        std::vector<std::vector<qs_station_offset>> elements;
        double north_min = HUGE_VAL, north_max = -HUGE_VAL, east_min = HUGE_VAL,
               east_max = -HUGE_VAL;
        for (std::size_t i = 0; i + 1 < a_.horizontal_count; ++i) {
            std::vector<qs_station_offset> line;
            for (double c :
                 samples(a_.horizontal[i].Chainage, a_.horizontal[i + 1].Chainage, step_)) {
                const qs_station_offset p = point(c);
                north_min = std::min(north_min, p.x);
                north_max = std::max(north_max, p.x);
                east_min = std::min(east_min, p.y);
                east_max = std::max(east_max, p.y);
                line.push_back(p);
            }
            elements.push_back(line);
        }
        const double span = std::max({north_max - north_min, east_max - east_min, 1.0});
        // Labels run to the right of the main points: room for them there.
        double scale =
            (WIDTH - 2.0 * MARGIN - LABEL_ROOM) / std::max(east_max - east_min, span / 10.0);
        scale = std::min(scale, (PLAN_HEIGHT_MAX - 2.0 * MARGIN) /
                                    std::max(north_max - north_min, span / 10.0));
        const double height = (north_max - north_min) * scale + 2.0 * MARGIN;
        const double used_width = (east_max - east_min) * scale;
        const View v{east_min,
                     north_min,
                     scale,
                     scale,
                     (WIDTH - LABEL_ROOM - used_width) / 2.0,
                     MARGIN + 20.0 + (north_max - north_min) * scale};
        auto at = [&v](const qs_station_offset& p) {
            return fmt::format("{:.1f} {:.1f}", v.sx(p.y), v.sy(p.x));
        };

        text(MARGIN, 28.0, fmt::format("{}  \u2013  alignment \"{}\", plan", road_.file, a_.name),
             "title", "start", 15.0);
        body_ += "<g id=\"plan\">\n";
        static const char* const classes[] = {"", "plan-line", "plan-arc", "plan-spiral"};
        static const char* const strokes[] = {
            "", "stroke=\"#222222\" stroke-width=\"2.5\"",
            "stroke=\"#1f5fbf\" stroke-width=\"2.5\"",
            "stroke=\"#c0392b\" stroke-width=\"2.5\" stroke-dasharray=\"7 4\""};
        for (std::size_t i = 0; i < elements.size(); ++i) {
            const unsigned type = a_.horizontal[i].Type;
            std::string d = "M " + at(elements[i].front());
            for (std::size_t k = 1; k < elements[i].size(); ++k) {
                d += " L " + at(elements[i][k]);
            }
            body_ += fmt::format("<path class=\"{}\" d=\"{}\" fill=\"none\" {}/>\n", classes[type],
                                 d, strokes[type]);
        }
        // Ticks across the centre line at round stations, labelled.
        const std::vector<Mark> piles = marks(road_, tick_);
        for (const Mark& m : piles) {
            if (!m.label.empty()) {
                continue;
            }
            const qs_station_offset left = point(m.chainage, -6.0 / scale);
            const qs_station_offset right = point(m.chainage, 6.0 / scale);
            body_ += fmt::format("<line class=\"tick\" x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" "
                                 "y2=\"{:.1f}\" stroke=\"#555555\" stroke-width=\"1.2\"/>\n",
                                 v.sx(left.y), v.sy(left.x), v.sx(right.y), v.sy(right.x));
            const qs_station_offset label = point(m.chainage, -16.0 / scale);
            text(v.sx(label.y), v.sy(label.x) + 4.0, station_text(road_.station(m.chainage)),
                 "tick-label", "middle", 9.0);
        }
        // Main points: element joints and ends.
        for (std::size_t i = 0; i < a_.horizontal_count; ++i) {
            const qs_station_offset p = point(a_.horizontal[i].Chainage);
            body_ += fmt::format("<circle class=\"main-point\" cx=\"{:.1f}\" cy=\"{:.1f}\" "
                                 "r=\"3.5\" fill=\"white\" stroke=\"#000000\"/>\n",
                                 v.sx(p.y), v.sy(p.x));
            const qs_station_offset label = point(a_.horizontal[i].Chainage, 14.0 / scale);
            text(v.sx(label.y), v.sy(label.x) + 4.0,
                 fmt::format("{} {:.3f}", main_point_label(a_, i),
                             road_.station(a_.horizontal[i].Chainage)),
                 "main-label", "start", 10.0);
        }
        body_ += "</g>\n";

        // Legend and north arrow.
        const double y = MARGIN + 20.0 + height - MARGIN + 14.0;
        const char* const names[] = {"", "line", "arc", "transition (clothoid)"};
        const double x = legend(y, names, strokes);
        text(x + 20.0, y + 4.0, fmt::format("ticks every {} m", station_text(tick_)),
             "legend-label");
        body_ +=
            fmt::format("<path class=\"north\" d=\"M {0:.1f} {1:.1f} l 7 20 l -7 -6 l -7 6 z\" "
                        "fill=\"#222222\"/>\n",
                        WIDTH - 25.0, 12.0);
        text(WIDTH - 25.0, 46.0, "N", "north-label", "middle", 12.0);
        top_ = y + 20.0;
    }

    double height_at(double chainage) const
    {
        qs_profile_point p{};
        require(qs_profile_height(a_.vertical, a_.vertical_count, chainage, &p),
                fmt::format("{}: the height at chainage {:.3f}", road_.file, chainage));
        return p.height;
    }

    void profile()
    {
        const VElement* t = a_.vertical;
        const std::size_t n = a_.vertical_count;
        // PVIs: the ends, every curve's vertex and every plain change of grade.
        struct Pvi {
            double chainage, elevation;
        };
        std::vector<Pvi> pvis{{t[0].Chainage, t[0].Elevation}};
        for (std::size_t i = 0; i + 1 < n; ++i) {
            if (t[i].Type == 2 || t[i].Type == 3) {
                pvis.push_back({t[i].VertexChainage, t[i].VertexElevation});
            } else if (t[i].Type == 1 && i + 1 < n - 1 && t[i + 1].Type == 1) {
                pvis.push_back({t[i + 1].Chainage, t[i + 1].Elevation});
            }
        }
        pvis.push_back({t[n - 1].Chainage, t[n - 1].Elevation});

        const double c_min = std::min(a_.station_start, t[0].Chainage);
        const double c_max = std::max(a_.chainage_end, t[n - 1].Chainage);
        double z_min = HUGE_VAL, z_max = -HUGE_VAL;
        for (const Pvi& p : pvis) {
            z_min = std::min(z_min, p.elevation);
            z_max = std::max(z_max, p.elevation);
        }
        const double z_pad = std::max(1.0, (z_max - z_min) * 0.15);
        z_min -= z_pad;
        z_max += z_pad;
        const double top = top_ + 30.0;
        const double inner_height = PROFILE_HEIGHT - 60.0;
        const View v{c_min,
                     z_min,
                     (WIDTH - 2.0 * MARGIN) / (c_max - c_min),
                     inner_height / (z_max - z_min),
                     MARGIN,
                     top + inner_height};
        const double exaggeration = v.scale_y / v.scale_x;

        text(MARGIN, top - 12.0,
             fmt::format("profile (heights exaggerated {:.0f} times)", exaggeration), "title",
             "start", 13.0);
        body_ += "<g id=\"profile\">\n";
        body_ += fmt::format("<rect class=\"frame\" x=\"{:.1f}\" y=\"{:.1f}\" width=\"{:.1f}\" "
                             "height=\"{:.1f}\" fill=\"none\" stroke=\"#999999\"/>\n",
                             MARGIN, top, WIDTH - 2.0 * MARGIN, inner_height);
        // Axis labels: stations below, elevations on the left.
        for (const Mark& m : marks(road_, tick_)) {
            if (m.label.empty()) {
                text(v.sx(m.chainage), top + inner_height + 14.0,
                     station_text(road_.station(m.chainage)), "axis-label", "middle", 9.0);
            }
        }
        const double z_step = nice_step((z_max - z_min) * 2.0);
        for (double z = std::ceil(z_min / z_step) * z_step; z <= z_max; z += z_step) {
            text(MARGIN - 4.0, v.sy(z) + 3.0, station_text(z), "axis-label", "end", 9.0);
        }
        // The grades between PVIs, then the design line over them.
        for (std::size_t i = 0; i + 1 < pvis.size(); ++i) {
            body_ += fmt::format("<line class=\"grade\" x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" "
                                 "y2=\"{:.1f}\" stroke=\"#888888\" stroke-width=\"1\" "
                                 "stroke-dasharray=\"4 3\"/>\n",
                                 v.sx(pvis[i].chainage), v.sy(pvis[i].elevation),
                                 v.sx(pvis[i + 1].chainage), v.sy(pvis[i + 1].elevation));
            const double grade = (pvis[i + 1].elevation - pvis[i].elevation) /
                                 (pvis[i + 1].chainage - pvis[i].chainage);
            text(v.sx((pvis[i].chainage + pvis[i + 1].chainage) / 2.0),
                 v.sy((pvis[i].elevation + pvis[i + 1].elevation) / 2.0) - 12.0,
                 fmt::format("{:+.3f}%", grade * 100.0), "grade-label", "middle", 9.0);
        }
        static const char* const classes[] = {"", "profile-line", "profile-parabola",
                                              "profile-circle"};
        static const char* const strokes[] = {
            "", "stroke=\"#222222\" stroke-width=\"2.2\"",
            "stroke=\"#1f5fbf\" stroke-width=\"2.6\"",
            "stroke=\"#8e44ad\" stroke-width=\"2.6\" stroke-dasharray=\"8 3\""};
        for (std::size_t i = 0; i + 1 < n; ++i) {
            const unsigned type = t[i].Type;
            if (type < 1 || type > 3) {
                continue;
            }
            std::string d;
            for (double c : samples(t[i].Chainage, t[i + 1].Chainage, step_)) {
                d += fmt::format("{} {:.1f} {:.1f}", d.empty() ? "M" : " L", v.sx(c),
                                 v.sy(height_at(c)));
            }
            body_ += fmt::format("<path class=\"{}\" d=\"{}\" fill=\"none\" {}/>\n", classes[type],
                                 d, strokes[type]);
        }
        for (std::size_t i = 0; i < pvis.size(); ++i) {
            const Pvi& p = pvis[i];
            body_ += fmt::format("<circle class=\"pvi\" cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"3\" "
                                 "fill=\"#ffffff\" stroke=\"#c0392b\" stroke-width=\"1.5\"/>\n",
                                 v.sx(p.chainage), v.sy(p.elevation));
            // Above a crest, below a sag; the end labels kept inside.
            const bool sag =
                i > 0 && i + 1 < pvis.size() &&
                p.elevation < height_at(std::clamp(p.chainage, t[0].Chainage, t[n - 1].Chainage));
            const char* anchor = i == 0 ? "start" : (i + 1 == pvis.size() ? "end" : "middle");
            text(v.sx(p.chainage) + (i == 0 ? 4.0 : (i + 1 == pvis.size() ? -4.0 : 0.0)),
                 v.sy(p.elevation) + (sag ? 18.0 : -10.0),
                 fmt::format("PVI {:.3f} / {:.3f}", road_.station(p.chainage), p.elevation),
                 "pvi-label", anchor, 9.0);
        }
        body_ += "</g>\n";
        const double y = top + inner_height + 34.0;
        const char* const names[] = {"", "grade line", "parabolic curve", "circular curve"};
        legend(y, names, strokes);
        top_ = y + 10.0;
    }

    const Road& road_;
    const qio_alignment& a_;
    double tick_;
    double step_;
    double top_ = 0.0;
    std::string body_;
};

} // namespace

int road_plot(const PlotOptions& options)
{
    const Road road = load_road(options.design, options.alignment, options.quiet);
    Plot plot(road, options);
    deliver(options.output, plot.render());
    return EXIT_DONE;
}

} // namespace quillon::tool
