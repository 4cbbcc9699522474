// The design profile of an alignment: the first ProfAlign, its PVIs with
// parabolic (ParaCurve) and circular (CircCurve) vertical curves, as the
// device's vertical element table. Stations in a profile are chainages (the
// alignment's internal stations), like staStart.
#include "landxml.hpp"

#include <cmath>

namespace quillon::io {
namespace {

enum class Curve { none, parabola, circle };

struct Vertex {
    pugi::xml_node node;
    Curve curve = Curve::none;
    double station = 0.0;   // m
    double elevation = 0.0; // m
    double length = 0.0;    // ParaCurve: horizontal length; CircCurve: arc length (m)
    double radius = 0.0;    // CircCurve, m
    bool has_length = false;
    bool has_radius = false;
};

Vertex read_vertex(const Context& context, pugi::xml_node node, Curve curve)
{
    Vertex v;
    v.node = node;
    v.curve = curve;
    std::vector<double> values;
    const std::string tag(local_name(node));
    if (!parse_numbers(node.child_value(), values) || values.size() != 2) {
        context.refuse(QIO_MALFORMED, node,
                       tag + " holds \"" + node.child_value() + "\", not \"station elevation\"");
    }
    v.station = values[0] * context.linear;
    v.elevation = values[1] * context.elevation;
    double value = 0.0;
    if (attribute_number(context, node, "length", value)) {
        v.has_length = true;
        v.length = std::fabs(value) * context.linear;
    }
    if (curve == Curve::circle && attribute_number(context, node, "radius", value)) {
        // Crest radii come signed or not, depending on the program.
        v.has_radius = value != 0.0;
        v.radius = std::fabs(value) * context.linear;
    }
    if (curve == Curve::parabola && !v.has_length) {
        context.refuse(QIO_MALFORMED, node, "ParaCurve has no length");
    }
    if (curve == Curve::circle && !v.has_length && !v.has_radius) {
        context.refuse(QIO_MALFORMED, node, "CircCurve has neither radius nor length");
    }
    return v;
}

VElement grade_line(double chainage, double elevation, double length, double grade)
{
    VElement r{};
    r.Type = 1;
    r.Chainage = chainage;
    r.Elevation = elevation;
    r.Length = length;
    r.Given = 1;
    r.GradeIn = grade;
    r.GradeOut = grade;
    return r;
}

// The vertical curve at an inner vertex between grades g_in and g_out, or
// Type 0 when the vertex is a plain change of grade.
VElement vertical_curve(const Context& context, const Vertex& v, double g_in, double g_out)
{
    VElement r{};
    r.Type = 0;
    r.VertexChainage = v.station;
    r.VertexElevation = v.elevation;
    r.GradeIn = g_in;
    r.GradeOut = g_out;
    if (v.curve == Curve::parabola) {
        if (v.length <= 0.0 || g_in == g_out) {
            return r;
        }
        const double half = v.length / 2.0;
        r.Type = 2;
        r.Given = 1;
        r.Length = v.length;
        r.Radius = v.length / std::fabs(g_in - g_out);
        r.Chainage = v.station - half;
        r.Elevation = v.elevation - half * g_in;
        return r;
    }
    if (v.curve == Curve::circle) {
        const double a1 = std::atan(g_in);
        const double a2 = std::atan(g_out);
        const double turn = std::fabs(a1 - a2);
        if (turn == 0.0 || (v.has_length && v.length <= 0.0 && !v.has_radius)) {
            return r;
        }
        const double radius = v.has_radius ? v.radius : v.length / turn;
        const double tangent = radius * std::tan(turn / 2.0);
        const double horizontal = tangent * (std::cos(a1) + std::cos(a2));
        if (v.has_radius && v.has_length &&
            !(std::fabs(radius * turn - v.length) <= QIO_TOLERANCE)) {
            if (std::fabs(horizontal - v.length) <= QIO_TOLERANCE) {
                context.note(v.node, "CircCurve: length " + number(v.length) +
                                         " m is its horizontal length, not its arc length");
            } else {
                context.refuse(QIO_INCONSISTENT, v.node,
                               "CircCurve: length " + number(v.length) + " m, but radius " +
                                   number(radius) + " m between grades " + number(g_in * 100.0) +
                                   "% and " + number(g_out * 100.0) + "% gives an arc of " +
                                   number(radius * turn) + " m");
            }
        }
        r.Type = 3;
        r.Given = v.has_radius ? 0 : 1;
        r.Radius = radius;
        r.Length = horizontal;
        r.Chainage = v.station - tangent * std::cos(a1);
        r.Elevation = v.elevation - tangent * std::sin(a1);
        return r;
    }
    return r;
}

// Where a vertical curve ends: chainage and elevation.
void curve_end(const VElement& c, double& chainage, double& elevation)
{
    if (c.Type == 2) {
        chainage = c.VertexChainage + c.Length / 2.0;
        elevation = c.VertexElevation + c.Length / 2.0 * c.GradeOut;
    } else {
        const double a1 = std::atan(c.GradeIn);
        const double a2 = std::atan(c.GradeOut);
        const double tangent = c.Radius * std::tan(std::fabs(a1 - a2) / 2.0);
        chainage = c.VertexChainage + tangent * std::cos(a2);
        elevation = c.VertexElevation + tangent * std::sin(a2);
    }
}

std::string describe(const Context& context, const Vertex& v)
{
    return std::string(local_name(v.node)) + " at station " + number(v.station) + " (line " +
           std::to_string(context.line(v.node)) + ")";
}

} // namespace

void read_profile(Context& context, pugi::xml_node alignment, AlignmentData& data)
{
    pugi::xml_node design;
    pugi::xml_node first_profile;
    for (pugi::xml_node profile : alignment.children()) {
        if (local_name(profile) != "Profile") {
            continue;
        }
        first_profile = first_profile ? first_profile : profile;
        for (pugi::xml_node node : profile.children()) {
            if (local_name(node) != "ProfAlign") {
                continue;
            }
            if (!design) {
                design = node;
            } else {
                context.note(node, "ProfAlign \"" + std::string(node.attribute("name").value()) +
                                       "\" not read: the first one (\"" +
                                       design.attribute("name").value() +
                                       "\") is the design profile");
            }
        }
    }
    if (!design) {
        if (first_profile) {
            context.note(first_profile, "no ProfAlign: the alignment has no design profile");
        }
        return;
    }

    std::vector<Vertex> vertices;
    for (pugi::xml_node node : design.children()) {
        if (node.type() != pugi::node_element) {
            continue;
        }
        const std::string_view name = local_name(node);
        if (name == "PVI") {
            vertices.push_back(read_vertex(context, node, Curve::none));
        } else if (name == "ParaCurve") {
            vertices.push_back(read_vertex(context, node, Curve::parabola));
        } else if (name == "CircCurve") {
            vertices.push_back(read_vertex(context, node, Curve::circle));
        } else if (name == "Feature") {
            continue;
        } else if (name == "UnsymParaCurve") {
            context.refuse(QIO_UNSUPPORTED, node,
                           "UnsymParaCurve (a parabola with unequal halves) is not read");
        } else {
            context.refuse(QIO_UNSUPPORTED, node,
                           "<" + std::string(node.name()) +
                               "> in ProfAlign is not read (PVI, ParaCurve and CircCurve are)");
        }
    }
    if (vertices.size() < 2) {
        context.refuse(QIO_MALFORMED, design, "ProfAlign needs at least two PVIs");
    }
    if (vertices.front().curve != Curve::none || vertices.back().curve != Curve::none) {
        const Vertex& v =
            vertices.front().curve != Curve::none ? vertices.front() : vertices.back();
        context.refuse(QIO_MALFORMED, v.node,
                       describe(context, v) + ": a profile starts and ends at a PVI, not a curve");
    }
    for (std::size_t i = 1; i < vertices.size(); ++i) {
        if (!(vertices[i].station > vertices[i - 1].station)) {
            context.refuse(QIO_INCONSISTENT, vertices[i].node,
                           describe(context, vertices[i]) + " does not lie after " +
                               describe(context, vertices[i - 1]));
        }
    }
    auto grade = [&vertices](std::size_t i) {
        return (vertices[i + 1].elevation - vertices[i].elevation) /
               (vertices[i + 1].station - vertices[i].station);
    };
    for (std::size_t i = 0; i + 1 < vertices.size(); ++i) {
        if (!(std::fabs(grade(i)) <= 1.0)) {
            context.refuse(QIO_UNSUPPORTED, vertices[i + 1].node,
                           "the grade from " + describe(context, vertices[i]) + " to " +
                               describe(context, vertices[i + 1]) + " is " +
                               number(grade(i) * 100.0, 1) +
                               "%: the device's profile holds grades up to 100%");
        }
    }

    std::vector<VElement>& table = data.vertical;
    table.clear();
    double chainage = vertices.front().station;
    double elevation = vertices.front().elevation;
    for (std::size_t i = 1; i + 1 < vertices.size(); ++i) {
        const Vertex& v = vertices[i];
        const double g_in = grade(i - 1);
        const double g_out = grade(i);
        const VElement curve = vertical_curve(context, v, g_in, g_out);
        if (curve.Type == 0) {
            if (v.station - chainage > 1e-9) {
                table.push_back(grade_line(chainage, elevation, v.station - chainage, g_in));
            }
            chainage = v.station;
            elevation = v.elevation;
            continue;
        }
        double end_chainage = 0.0;
        double end_elevation = 0.0;
        curve_end(curve, end_chainage, end_elevation);
        if (curve.Chainage < chainage - QIO_TOLERANCE) {
            context.refuse(QIO_INCONSISTENT, v.node,
                           describe(context, v) + " begins at " + number(curve.Chainage) +
                               ", before the profile reaches it from " +
                               describe(context, vertices[i - 1]) + " (" + number(chainage) + ")");
        }
        if (end_chainage > vertices[i + 1].station + QIO_TOLERANCE) {
            context.refuse(QIO_INCONSISTENT, v.node,
                           describe(context, v) + " ends at " + number(end_chainage) + ", beyond " +
                               describe(context, vertices[i + 1]));
        }
        if (curve.Chainage - chainage > 1e-9) {
            table.push_back(grade_line(chainage, elevation, curve.Chainage - chainage, g_in));
        }
        table.push_back(curve);
        chainage = end_chainage;
        elevation = end_elevation;
    }
    const Vertex& last = vertices.back();
    const double g_last = grade(vertices.size() - 2);
    if (last.station - chainage > 1e-9) {
        table.push_back(grade_line(chainage, elevation, last.station - chainage, g_last));
    }
    VElement end{};
    end.Type = 0;
    end.Chainage = last.station;
    end.Elevation = last.elevation;
    end.GradeIn = g_last;
    end.GradeOut = g_last;
    table.push_back(end);
    for (const VElement& r : table) {
        const double values[] = {r.Chainage, r.Elevation, r.VertexChainage, r.VertexElevation,
                                 r.Radius,   r.Length,    r.GradeIn,        r.GradeOut};
        for (double value : values) {
            if (!std::isfinite(value)) {
                context.refuse(QIO_MALFORMED, design,
                               "a station, elevation or curve is too large to compute with");
            }
        }
    }

    const double start = vertices.front().station;
    if (start > data.station_start + QIO_TOLERANCE ||
        last.station < data.chainage_end - QIO_TOLERANCE) {
        context.note(design, "the profile covers chainages " + number(start) + " to " +
                                 number(last.station) + " of " + number(data.station_start) +
                                 " to " + number(data.chainage_end) + ": no design height outside");
    }
}

} // namespace quillon::io
