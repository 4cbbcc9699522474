// The plan of an alignment: its CoordGeom elements as the device's
// horizontal element table.
//
// Each element's geometry comes from its own points: the start point and
// the start azimuth (from the centre of an arc, else from the chord to its
// end point with the deflection its length and radius give), with the
// length and radius as the file states them. The file's other points (End,
// Center, PI) and its dir values only check that geometry, and each
// element must start where the one before it ends, within QIO_TOLERANCE.
#include "landxml.hpp"

#include <cctype>
#include <cmath>

namespace quillon::io {
namespace {

enum class Kind { line, arc, spiral };

struct Element {
    Kind kind = Kind::line;
    pugi::xml_node node;
    std::string tag;
    Point start{};
    Point end{};
    double length = 0.0;
    double radius = 0.0; // arc radius, or the finite radius of a transition
    int turn = 0;        // +1 right (clockwise), -1 left; 0 for lines
    bool exit = false;   // a transition whose curvature falls to 0
    bool short_line = false;
    double start_azimuth = 0.0; // radians
};

const double DIRECTION_TOLERANCE = QIO_DIRECTION_TOLERANCE / SECONDS_PER_RADIAN;
// Coordinates, lengths and radii beyond this (m) are no survey's (nor does
// the survey layer take them).
const double LARGEST = 1e9;

std::string millimetres(double metres) { return number(metres * 1000.0, 1) + " mm"; }

// How far p lies to the right of the line from a to b (negative: left),
// times the line's length.
double right_of(Point a, Point b, Point p)
{
    return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
}

int sign(double value) { return value > 0.0 ? 1 : (value < 0.0 ? -1 : 0); }

std::string lower(std::string text)
{
    for (char& c : text) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return text;
}

// A point child (Start, End, Center, PI) given by its coordinates
// ("northing easting [elevation]") or by a reference to a CgPoint.
bool read_point(const Context& context, pugi::xml_node element, const char* name, Point& out,
                bool required)
{
    const pugi::xml_node node = child(element, name);
    const std::string tag(local_name(element));
    if (!node) {
        if (required) {
            context.refuse(QIO_MALFORMED, element, tag + " has no " + name + " point");
        }
        return false;
    }
    const pugi::xml_attribute reference = node.attribute("pntRef");
    if (reference) {
        auto found = context.cg_points.find(reference.value());
        if (found == context.cg_points.end()) {
            context.refuse(QIO_MALFORMED, node,
                           tag + ": " + name + " refers to \"" + reference.value() +
                               "\", which names no CgPoint with coordinates");
        }
        out = found->second;
        return true;
    }
    std::vector<double> values;
    if (!parse_numbers(node.child_value(), values) || values.size() < 2 || values.size() > 3) {
        context.refuse(QIO_MALFORMED, node,
                       tag + ": " + name + " holds \"" + node.child_value() +
                           "\", not \"northing easting\" or \"northing easting elevation\"");
    }
    out = Point{values[0] * context.linear, values[1] * context.linear};
    if (!(std::fabs(out.x) <= LARGEST) || !(std::fabs(out.y) <= LARGEST)) {
        context.refuse(QIO_MALFORMED, node,
                       tag + ": " + name + " lies beyond 1e9 m: not a survey coordinate");
    }
    return true;
}

// rot: +1 for cw, -1 for ccw, 0 when absent.
int read_rotation(const Context& context, pugi::xml_node node)
{
    const pugi::xml_attribute rot = node.attribute("rot");
    if (!rot) {
        return 0;
    }
    const std::string value = lower(rot.value());
    if (value == "cw") {
        return 1;
    }
    if (value == "ccw") {
        return -1;
    }
    context.refuse(QIO_MALFORMED, node,
                   std::string(local_name(node)) + ": rot \"" + rot.value() +
                       "\" is neither cw nor ccw");
}

// A length attribute in metres; false when absent.
bool read_length(const Context& context, pugi::xml_node node, const char* name, double& metres)
{
    double value = 0.0;
    if (!attribute_number(context, node, name, value)) {
        return false;
    }
    if (value < 0.0) {
        context.refuse(QIO_MALFORMED, node,
                       std::string(local_name(node)) + ": " + name + " " + number(value) +
                           " is negative");
    }
    metres = value * context.linear;
    if (!(metres <= LARGEST)) {
        context.refuse(QIO_MALFORMED, node,
                       std::string(local_name(node)) + ": " + name + " beyond 1e9 m");
    }
    return true;
}

// A transition's radius: finite (true, metres) or infinite (false). "INF",
// 0 and values beyond 1e9 m all stand for a straight.
bool read_spiral_radius(const Context& context, pugi::xml_node node, const char* name,
                        double& metres)
{
    const pugi::xml_attribute attribute = node.attribute(name);
    if (!attribute) {
        context.refuse(QIO_MALFORMED, node, std::string("Spiral has no ") + name);
    }
    const std::string text = lower(attribute.value());
    if (text == "inf" || text == "+inf" || text == "infinity" || text == "1.#inf") {
        return false;
    }
    double value = 0.0;
    if (!parse_number(text, value)) {
        context.refuse(QIO_MALFORMED, node,
                       std::string("Spiral: ") + name + " \"" + attribute.value() +
                           "\" is not a number");
    }
    metres = std::fabs(value) * context.linear;
    return metres > 0.0 && metres < LARGEST;
}

Pose far_end(const Element& e)
{
    const Pose start{e.start, e.start_azimuth};
    switch (e.kind) {
    case Kind::line: return Pose{along(e.start, e.start_azimuth, e.length), e.start_azimuth};
    case Kind::arc: return arc_end(start, e.radius, e.length, e.turn);
    case Kind::spiral:
        return e.exit ? clothoid_exit_end(start, e.radius, e.length, e.turn)
                      : clothoid_entry_end(start, e.radius, e.length, e.turn);
    }
    return start;
}

// The element's End must be where its start, azimuth, length and radius
// lead. mirrored, when given, is the same element turning the other way:
// if it fits, the file's rot is named as the contradiction.
void check_end(const Context& context, const Element& e, const Element* mirrored = nullptr)
{
    const double miss = distance(far_end(e).point, e.end);
    if (miss <= QIO_TOLERANCE) {
        return;
    }
    std::string text = e.tag + ": its End lies " + millimetres(miss) + " from where ";
    if (e.kind == Kind::line) {
        text += "its length " + number(e.length) + " m from its Start leads";
    } else {
        text += "radius " + number(e.radius) + " m and length " + number(e.length) +
                " m from its Start lead";
        if (mirrored != nullptr && distance(far_end(*mirrored).point, e.end) <= QIO_TOLERANCE) {
            text += ": rot \"" + std::string(e.node.attribute("rot").value()) +
                    "\" contradicts its points";
        }
    }
    context.refuse(QIO_INCONSISTENT, e.node, text);
}

Element read_line(Context& context, pugi::xml_node node)
{
    Element e;
    e.kind = Kind::line;
    e.node = node;
    e.tag = "Line";
    read_point(context, node, "Start", e.start, true);
    read_point(context, node, "End", e.end, true);
    const double apart = distance(e.start, e.end);
    if (read_length(context, node, "length", e.length)) {
        if (!(std::fabs(e.length - apart) <= QIO_TOLERANCE)) {
            context.refuse(QIO_INCONSISTENT, node,
                           "Line: length " + number(e.length) + " m, but its points are " +
                               number(apart) + " m apart");
        }
    } else {
        e.length = apart;
    }
    e.short_line = e.length < QIO_SHORT_LINE;
    if (!e.short_line) {
        e.start_azimuth = azimuth(e.start, e.end);
        check_direction(context, node, "dir", e.start_azimuth, e.length);
    }
    return e;
}

Element read_curve(Context& context, pugi::xml_node node)
{
    Element e;
    e.kind = Kind::arc;
    e.node = node;
    e.tag = "Curve";
    read_point(context, node, "Start", e.start, true);
    read_point(context, node, "End", e.end, true);
    Point centre{};
    Point pi{};
    const bool has_centre = read_point(context, node, "Center", centre, false);
    const bool has_pi = read_point(context, node, "PI", pi, false);

    double radius = 0.0;
    if (attribute_number(context, node, "radius", radius)) {
        e.radius = std::fabs(radius) * context.linear;
        if (!(e.radius > 0.0) || !(e.radius <= LARGEST)) {
            context.refuse(QIO_MALFORMED, node,
                           "Curve: radius " + number(radius) + " is not a curve's");
        }
    } else if (has_centre) {
        e.radius = distance(centre, e.start);
    } else {
        context.refuse(QIO_MALFORMED, node, "Curve gives neither radius nor Center");
    }
    const bool has_length = read_length(context, node, "length", e.length);

    e.turn = read_rotation(context, node);
    // Clockwise sweep from the start to the end about the centre.
    const double sweep_cw =
        has_centre ? wrap_two_pi(azimuth(centre, e.end) - azimuth(centre, e.start)) : 0.0;
    if (e.turn == 0) {
        if (has_pi) {
            // The PI lies outside the curve: left of the chord on a right turn.
            e.turn = -sign(right_of(e.start, e.end, pi));
        } else if (has_centre && has_length) {
            const double cw_miss = std::fabs(sweep_cw * e.radius - e.length);
            const double ccw_miss = std::fabs((TWO_PI - sweep_cw) * e.radius - e.length);
            e.turn = cw_miss <= ccw_miss ? 1 : -1;
        } else if (has_centre) {
            e.turn = sweep_cw <= PI ? 1 : -1;
        }
        if (e.turn == 0) {
            context.refuse(QIO_MALFORMED, node,
                           "Curve gives no rot, and neither a PI nor a Center tells its sense");
        }
    }
    if (!has_length) {
        if (has_centre) {
            e.length = e.radius * (e.turn > 0 ? sweep_cw : TWO_PI - sweep_cw);
        } else {
            const double half_chord = distance(e.start, e.end) / 2.0;
            e.length = 2.0 * e.radius * std::asin(std::fmin(1.0, half_chord / e.radius));
        }
    }
    if (e.length <= 0.0) {
        return e;
    }

    // The tangent at the start is square to the radius, or turned from the
    // chord by half the arc's angle.
    auto start_azimuth = [&](int turn) {
        return has_centre
                   ? wrap_two_pi(azimuth(e.start, centre) - turn * (PI / 2.0))
                   : wrap_two_pi(azimuth(e.start, e.end) - turn * (e.length / (2.0 * e.radius)));
    };
    e.start_azimuth = start_azimuth(e.turn);
    Element mirrored = e;
    mirrored.turn = -e.turn;
    mirrored.start_azimuth = start_azimuth(-e.turn);
    check_end(context, e, node.attribute("rot") ? &mirrored : nullptr);
    if (has_centre) {
        const Point expected = along(e.start, e.start_azimuth + e.turn * (PI / 2.0), e.radius);
        const double miss = distance(expected, centre);
        if (!(miss <= QIO_TOLERANCE)) {
            context.refuse(QIO_INCONSISTENT, node,
                           "Curve: its Center lies " + millimetres(miss) +
                               " from the centre of an arc of radius " + number(e.radius) +
                               " m through its Start");
        }
    }
    const double half_angle = e.length / (2.0 * e.radius);
    if (has_pi && half_angle < 0.45 * PI) {
        const Point expected = along(e.start, e.start_azimuth, e.radius * std::tan(half_angle));
        const double miss = distance(expected, pi);
        if (!(miss <= QIO_TOLERANCE)) {
            context.refuse(QIO_INCONSISTENT, node,
                           "Curve: its PI lies " + millimetres(miss) +
                               " from where its tangents meet");
        }
    }
    const Pose end = far_end(e);
    check_direction(context, node, "dirStart", e.start_azimuth, e.length);
    check_direction(context, node, "dirEnd", end.azimuth, e.length);
    return e;
}

Element read_spiral(Context& context, pugi::xml_node node)
{
    Element e;
    e.kind = Kind::spiral;
    e.node = node;
    e.tag = "Spiral";
    const pugi::xml_attribute type = node.attribute("spiType");
    if (!type) {
        context.note(node, "Spiral gives no spiType: read as a clothoid");
    } else if (lower(type.value()) != "clothoid") {
        context.refuse(QIO_UNSUPPORTED, node,
                       std::string("Spiral of type \"") + type.value() +
                           "\" is not a clothoid: only clothoids are read");
    }
    double radius_start = 0.0;
    double radius_end = 0.0;
    const bool finite_start = read_spiral_radius(context, node, "radiusStart", radius_start);
    const bool finite_end = read_spiral_radius(context, node, "radiusEnd", radius_end);
    if (finite_start && finite_end) {
        context.refuse(QIO_UNSUPPORTED, node,
                       "Spiral between radii " + number(radius_start) + " m and " +
                           number(radius_end) +
                           " m (an ovoid transition) is not read: the device's element table "
                           "holds transitions that start or end on a straight only");
    }
    if (!finite_start && !finite_end) {
        context.refuse(QIO_MALFORMED, node, "Spiral with both radii infinite");
    }
    e.exit = finite_start;
    e.radius = finite_start ? radius_start : radius_end;
    if (!read_length(context, node, "length", e.length)) {
        context.refuse(QIO_MALFORMED, node, "Spiral has no length");
    }
    read_point(context, node, "Start", e.start, true);
    read_point(context, node, "End", e.end, true);
    Point pi{};
    const bool has_pi = read_point(context, node, "PI", pi, false);

    e.turn = read_rotation(context, node);
    if (e.turn == 0) {
        if (!has_pi) {
            context.refuse(QIO_MALFORMED, node, "Spiral gives no rot and no PI to tell its sense");
        }
        e.turn = sign(right_of(e.start, pi, e.end));
    }
    if (e.length <= 0.0) {
        return e;
    }

    // Start azimuth from the chord and the clothoid's deflection d at its
    // straight end; the total turn is theta.
    double u = 0.0;
    double v = 0.0;
    clothoid_local(e.length, e.radius, u, v);
    const double deflection = std::atan2(v, u);
    const double theta = e.length / (2.0 * e.radius);
    double end_azimuth = 0.0;
    if (!e.exit) {
        e.start_azimuth = wrap_two_pi(azimuth(e.start, e.end) - e.turn * deflection);
        end_azimuth = e.start_azimuth + e.turn * theta;
    } else {
        const double backward = azimuth(e.end, e.start) + e.turn * deflection;
        end_azimuth = backward - PI;
        e.start_azimuth = wrap_two_pi(end_azimuth - e.turn * theta);
    }
    const double chord = distance(e.start, e.end);
    if (!(std::fabs(chord - std::hypot(u, v)) <= QIO_TOLERANCE)) {
        context.refuse(QIO_INCONSISTENT, node,
                       "Spiral: its points are " + number(chord) +
                           " m apart, but a clothoid of "
                           "length " +
                           number(e.length) + " m to radius " + number(e.radius) + " m spans " +
                           number(std::hypot(u, v)) + " m");
    }
    if (has_pi) {
        // The PI lies on the straight end's tangent, the long tangent from it.
        const double long_tangent = u - v / std::tan(theta);
        const Point expected = e.exit ? along(e.end, end_azimuth + PI, long_tangent)
                                      : along(e.start, e.start_azimuth, long_tangent);
        const double miss = distance(expected, pi);
        if (!(miss <= QIO_TOLERANCE)) {
            std::string text =
                "Spiral: its PI lies " + millimetres(miss) + " from where its tangents meet";
            if (node.attribute("rot") && sign(right_of(e.start, pi, e.end)) == -e.turn) {
                text += ": rot \"" + std::string(node.attribute("rot").value()) +
                        "\" contradicts its points";
            }
            context.refuse(QIO_INCONSISTENT, node, text);
        }
    }
    check_direction(context, node, "dirStart", e.start_azimuth, e.length);
    check_direction(context, node, "dirEnd", end_azimuth, e.length);
    return e;
}

// Whether the line breaks direction where e starts after before: by more
// than the rounding of the file's points explains.
bool breaks(const Element& before, const Element& e)
{
    const double kink = std::fabs(wrap_pi(e.start_azimuth - far_end(before).azimuth));
    const double lever = std::fmin(before.length, e.length);
    return kink > std::fmax(DIRECTION_TOLERANCE, QIO_TOLERANCE / lever);
}

// Places elements[first, last) end to end from start, each starting at the
// exact end of the one before with its azimuth there.
void place(std::vector<Element>& elements, std::size_t first, std::size_t last, Pose start)
{
    for (std::size_t k = first; k < last; ++k) {
        elements[k].start = start.point;
        elements[k].start_azimuth = wrap_two_pi(start.azimuth);
        start = far_end(elements[k]);
    }
}

// Joins the elements end to end into one line: runs of elements meeting
// without a break of direction are rigid shapes (their lengths, radii and
// turns), each fitted by least squares to the file's Start and End points
// of its elements - the first run moved and turned, every later one turned
// about the end of the run before. Returns the largest distance of a file
// point from the joined line, and where.
double chain(std::vector<Element>& elements, pugi::xml_node& farthest_at)
{
    const std::vector<Element> file = elements;
    std::size_t first = 0;
    while (first < elements.size()) {
        std::size_t last = first + 1;
        while (last < elements.size() && !breaks(file[last - 1], file[last])) {
            ++last;
        }
        Pose start{file[first].start, file[first].start_azimuth};
        if (first > 0) {
            start.point = far_end(elements[first - 1]).point;
        }
        place(elements, first, last, start);

        // Pairs of joined and file points; the fit turns by theta about the
        // centroids (the first run) or about the start (the others).
        std::vector<std::pair<Point, Point>> pairs;
        for (std::size_t k = first; k < last; ++k) {
            pairs.emplace_back(elements[k].start, file[k].start);
            pairs.emplace_back(far_end(elements[k]).point, file[k].end);
        }
        Point joined_centre = start.point;
        Point file_centre = start.point;
        if (first == 0) {
            joined_centre = Point{0.0, 0.0};
            file_centre = Point{0.0, 0.0};
            for (const auto& [joined, given] : pairs) {
                joined_centre.x += joined.x / static_cast<double>(pairs.size());
                joined_centre.y += joined.y / static_cast<double>(pairs.size());
                file_centre.x += given.x / static_cast<double>(pairs.size());
                file_centre.y += given.y / static_cast<double>(pairs.size());
            }
        }
        double cross = 0.0;
        double dot = 0.0;
        for (const auto& [joined, given] : pairs) {
            const Point c{joined.x - joined_centre.x, joined.y - joined_centre.y};
            const Point f{given.x - file_centre.x, given.y - file_centre.y};
            cross += c.x * f.y - c.y * f.x;
            dot += c.x * f.x + c.y * f.y;
        }
        const double theta = std::atan2(cross, dot);
        const Point arm{start.point.x - joined_centre.x, start.point.y - joined_centre.y};
        start.point = Point{file_centre.x + arm.x * std::cos(theta) - arm.y * std::sin(theta),
                            file_centre.y + arm.x * std::sin(theta) + arm.y * std::cos(theta)};
        start.azimuth += theta;
        place(elements, first, last, start);
        first = last;
    }

    double farthest = 0.0;
    for (std::size_t k = 0; k < elements.size(); ++k) {
        const double miss = std::fmax(distance(elements[k].start, file[k].start),
                                      distance(far_end(elements[k]).point, file[k].end));
        if (!(miss <= farthest)) {
            farthest = miss;
            farthest_at = file[k].node;
        }
    }
    return farthest;
}

HElement record(const Element& e, double chainage)
{
    HElement r{};
    r.Type = e.kind == Kind::line ? 1 : (e.kind == Kind::arc ? 2 : 3);
    r.X = e.start.x;
    r.Y = e.start.y;
    r.Azimuth = e.start_azimuth * SECONDS_PER_RADIAN;
    r.Length = e.length;
    r.Radius = e.kind == Kind::line ? 0.0 : e.radius;
    r.Turn = e.turn > 0 ? 1 : 0;
    r.Spiral = e.kind == Kind::spiral && e.exit ? 1 : 0;
    r.Chainage = chainage;
    return r;
}

} // namespace

void read_plan(Context& context, pugi::xml_node alignment, AlignmentData& data)
{
    const pugi::xml_node geometry = child(alignment, "CoordGeom");
    if (!geometry) {
        context.refuse(QIO_MALFORMED, alignment, "the alignment has no CoordGeom");
    }
    double station_start = 0.0;
    if (!attribute_number(context, alignment, "staStart", station_start)) {
        context.note(alignment, "no staStart: the alignment starts at chainage 0");
    }
    data.station_start = station_start * context.linear;

    std::vector<Element> elements;
    for (pugi::xml_node node : geometry.children()) {
        if (node.type() != pugi::node_element) {
            continue;
        }
        const std::string_view name = local_name(node);
        Element e;
        if (name == "Line") {
            e = read_line(context, node);
        } else if (name == "Curve") {
            e = read_curve(context, node);
        } else if (name == "Spiral") {
            e = read_spiral(context, node);
        } else if (name == "Feature") {
            continue;
        } else {
            context.refuse(QIO_UNSUPPORTED, node,
                           "<" + std::string(node.name()) +
                               "> in CoordGeom is not read (Line, Curve and Spiral are)");
        }
        if (e.length < 1e-6) {
            context.note(node, e.tag + " of length " + number(e.length, 6) + " m left out");
            continue;
        }
        elements.push_back(e);
    }
    if (elements.empty()) {
        context.refuse(QIO_MALFORMED, geometry, "CoordGeom holds no element with a length");
    }

    // A line too short to have a direction lies on the tangent it joins.
    for (std::size_t i = 0; i < elements.size(); ++i) {
        Element& e = elements[i];
        if (!e.short_line) {
            continue;
        }
        if (i > 0) {
            e.start_azimuth = far_end(elements[i - 1]).azimuth;
        } else {
            for (std::size_t k = 1; k < elements.size(); ++k) {
                if (!elements[k].short_line) {
                    e.start_azimuth = elements[k].start_azimuth;
                    break;
                }
            }
        }
        context.note(e.node, "Line of " + millimetres(e.length) +
                                 " kept in the direction of the tangent it joins");
    }

    // Each element must start where the one before it ends.
    double largest_gap = 0.0;
    pugi::xml_node largest_gap_at;
    for (std::size_t i = 0; i + 1 < elements.size(); ++i) {
        const Element& e = elements[i];
        const Element& next = elements[i + 1];
        const Pose end = far_end(e);
        const double gap = distance(end.point, next.start);
        if (!(gap <= QIO_TOLERANCE)) {
            context.refuse(QIO_INCONSISTENT, next.node,
                           next.tag + " starts " + millimetres(gap) + " from the end of the " +
                               e.tag + " before it (line " + std::to_string(context.line(e.node)) +
                               ")");
        }
        if (gap > largest_gap) {
            largest_gap = gap;
            largest_gap_at = next.node;
        }
        if (breaks(e, next)) {
            context.note(
                next.node,
                "the alignment changes direction by " +
                    number(wrap_pi(next.start_azimuth - end.azimuth) * SECONDS_PER_RADIAN, 1) +
                    "\" where " + next.tag + " starts");
        }
    }

    // One smooth line through the file's points where it holds them within
    // the tolerance; else each element as the file places it.
    std::vector<Element> chained = elements;
    pugi::xml_node farthest_at;
    const double farthest = chain(chained, farthest_at);
    if (farthest <= QIO_TOLERANCE) {
        elements = chained;
        context.note(farthest_at, "elements joined end to end into one line; the file's points "
                                  "lie within " +
                                      number(farthest * 1000.0, 4) + " mm of it (farthest here)");
    } else if (largest_gap > 1e-6) {
        context.note(farthest_at,
                     "joined end to end, the elements would pass " + millimetres(farthest) +
                         " from the file's points here: each starts at its own Start, and they "
                         "meet within " +
                         number(largest_gap * 1000.0, 4) + " mm (line " +
                         std::to_string(context.line(largest_gap_at)) + ")");
    }

    double chainage = data.station_start;
    data.horizontal.clear();
    for (const Element& e : elements) {
        double sta = 0.0;
        if (attribute_number(context, e.node, "staStart", sta) &&
            std::fabs(sta * context.linear - chainage) > QIO_TOLERANCE) {
            context.note(e.node, e.tag + ": staStart " + number(sta * context.linear) +
                                     " m, but the lengths before it reach " + number(chainage) +
                                     " m: the lengths are used");
        }
        data.horizontal.push_back(record(e, chainage));
        chainage += e.length;
    }

    const Pose end = far_end(elements.back());
    HElement last{};
    last.Type = 0;
    last.X = end.point.x;
    last.Y = end.point.y;
    last.Azimuth = end.azimuth * SECONDS_PER_RADIAN;
    last.Chainage = chainage;
    data.horizontal.push_back(last);
    data.chainage_end = chainage;
    for (const HElement& r : data.horizontal) {
        const double values[] = {r.X, r.Y, r.Azimuth, r.Length, r.Radius, r.Chainage};
        for (double value : values) {
            if (!std::isfinite(value)) {
                context.refuse(QIO_MALFORMED, geometry,
                               "a coordinate, length or radius is too large to compute with");
            }
        }
    }

    double length = 0.0;
    if (read_length(context, alignment, "length", length) &&
        std::fabs(length - (chainage - data.station_start)) > QIO_TOLERANCE) {
        context.note(alignment, "length " + number(length) + " m, but its elements add up to " +
                                    number(chainage - data.station_start) +
                                    " m: the elements are used");
    }
}

} // namespace quillon::io
