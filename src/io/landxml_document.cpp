// The LandXML file as a whole: its encoding, the XML, the root element and
// its namespace, the declared units, the named points, and each alignment
// read in turn.
#include "landxml.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>

namespace quillon::io {

std::size_t Context::line(pugi::xml_node node) const
{
    const std::ptrdiff_t offset = node.offset_debug();
    return offset < 0 ? 0 : source.line_at(static_cast<std::size_t>(offset));
}

std::string Context::within(std::string_view text) const
{
    if (alignment.empty()) {
        return std::string(text);
    }
    return "alignment \"" + alignment + "\": " + std::string(text);
}

void Context::refuse(qio_status status, pugi::xml_node node, std::string_view text) const
{
    source.refuse(status, line(node), within(text));
}

void Context::note(pugi::xml_node node, std::string_view text) const
{
    notes.push_back(source.message(line(node), within(text)));
}

std::string_view local_name(pugi::xml_node node)
{
    std::string_view name = node.name();
    const std::size_t colon = name.rfind(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

pugi::xml_node child(pugi::xml_node parent, std::string_view name)
{
    for (pugi::xml_node node : parent.children()) {
        if (node.type() == pugi::node_element && local_name(node) == name) {
            return node;
        }
    }
    return pugi::xml_node();
}

std::string number(double value, int decimals)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

std::string dms(double radians)
{
    if (!std::isfinite(radians)) {
        return "?";
    }
    // Tenths of a second, counted as a whole number so that 59.95" rounds
    // up into the next minute.
    const double tenths = std::round(wrap_two_pi(radians) * SECONDS_PER_RADIAN * 10.0);
    const long long total = static_cast<long long>(tenths) % 12960000;
    char text[64];
    std::snprintf(text, sizeof text, "%lld\xC2\xB0%02lld'%02lld.%lld\"", total / 36000,
                  total / 600 % 60, total / 10 % 60, total % 10);
    return text;
}

bool attribute_number(const Context& context, pugi::xml_node node, const char* name, double& value)
{
    const pugi::xml_attribute attribute = node.attribute(name);
    if (!attribute) {
        return false;
    }
    if (!parse_number(attribute.value(), value)) {
        context.refuse(QIO_MALFORMED, node,
                       std::string(local_name(node)) + ": " + name + " \"" + attribute.value() +
                           "\" is not a number");
    }
    return true;
}

namespace {

std::string lower(std::string_view text)
{
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

// The encoding named in the XML declaration, lower case; "" when none.
std::string declared_encoding(std::string_view bytes)
{
    if (bytes.substr(0, 5) != "<?xml") {
        return "";
    }
    const std::size_t end = bytes.find("?>");
    const std::string_view declaration = bytes.substr(0, end);
    const std::size_t key = declaration.find("encoding");
    if (key == std::string_view::npos) {
        return "";
    }
    std::size_t quote = declaration.find_first_of("\"'", key);
    if (quote == std::string_view::npos) {
        return "";
    }
    const std::size_t close = declaration.find(declaration[quote], quote + 1);
    if (close == std::string_view::npos) {
        return "";
    }
    return lower(declaration.substr(quote + 1, close - quote - 1));
}

// The file's text as UTF-8.
std::string decode(const std::string& name, std::string_view bytes, std::vector<std::string>& notes)
{
    const Source whole(name, std::string());
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") {
        bytes.remove_prefix(3);
    } else if (bytes.substr(0, 2) == "\xFF\xFE" || bytes.substr(0, 2) == "\xFE\xFF") {
        whole.refuse(QIO_UNSUPPORTED, 0, "UTF-16 text is not read: save the file as UTF-8");
    }
    const std::string encoding = declared_encoding(bytes);
    if (encoding == "iso-8859-1" || encoding == "latin1" || encoding == "latin-1" ||
        encoding == "iso_8859-1" || encoding == "l1") {
        return latin1_to_utf8(bytes);
    }
    if (encoding == "windows-1252" || encoding == "cp1252") {
        return cp1252_to_utf8(bytes);
    }
    if (!encoding.empty() && encoding != "utf-8" && encoding != "utf8" && encoding != "us-ascii" &&
        encoding != "ascii") {
        whole.refuse(QIO_UNSUPPORTED, 1,
                     "encoding \"" + encoding +
                         "\" is not read (UTF-8, ISO-8859-1 and windows-1252 are)");
    }
    std::size_t bad = 0;
    if (!valid_utf8(bytes, bad)) {
        // Files that declare nothing but were written in a Western code page.
        const Source text(name, std::string(bytes.substr(0, bad)));
        notes.push_back(
            text.message(text.line_at(bad), "text is not UTF-8: read as ISO-8859-1 throughout"));
        return latin1_to_utf8(bytes);
    }
    return std::string(bytes);
}

// Metres per unit for LandXML's linear unit names.
bool metres_per(std::string_view unit, double& factor)
{
    struct Unit {
        const char* name;
        double metres;
    };
    static const Unit units[] = {{"meter", 1.0},
                                 {"metre", 1.0},
                                 {"millimeter", 0.001},
                                 {"centimeter", 0.01},
                                 {"kilometer", 1000.0},
                                 {"foot", 0.3048},
                                 {"USSurveyFoot", 1200.0 / 3937.0},
                                 {"inch", 0.0254},
                                 {"mile", 1609.344}};
    for (const Unit& u : units) {
        if (unit == u.name) {
            factor = u.metres;
            return true;
        }
    }
    return false;
}

void read_units(Context& context, pugi::xml_node root)
{
    const pugi::xml_node units = child(root, "Units");
    pugi::xml_node system = child(units, "Metric");
    if (!system) {
        system = child(units, "Imperial");
    }
    if (!system) {
        context.note(units ? units : root, "no Metric or Imperial units declared: lengths read as "
                                           "metres");
        return;
    }
    const pugi::xml_attribute linear = system.attribute("linearUnit");
    if (linear && !metres_per(linear.value(), context.linear)) {
        context.refuse(QIO_UNSUPPORTED, system,
                       std::string("linear unit \"") + linear.value() + "\" is not read");
    }
    context.elevation = context.linear;
    const pugi::xml_attribute elevation = system.attribute("elevationUnit");
    if (elevation && !metres_per(elevation.value(), context.elevation)) {
        context.refuse(QIO_UNSUPPORTED, system,
                       std::string("elevation unit \"") + elevation.value() + "\" is not read");
    }
    context.direction_unit = system.attribute("directionUnit").value();
    if (context.linear != 1.0 || context.elevation != 1.0) {
        context.note(system,
                     std::string("lengths in ") + (linear ? linear.value() : "meter") +
                         ", elevations in " +
                         (elevation ? elevation.value() : (linear ? linear.value() : "meter")) +
                         ": converted to metres");
    }
}

// Named points that elements may refer to (pntRef) instead of giving
// coordinates.
void read_cg_points(Context& context, pugi::xml_node root)
{
    for (pugi::xml_node group : root.children()) {
        if (local_name(group) != "CgPoints") {
            continue;
        }
        for (pugi::xml_node point : group.children()) {
            if (local_name(point) != "CgPoint" || !point.attribute("name")) {
                continue;
            }
            std::vector<double> values;
            if (!parse_numbers(point.child_value(), values) || values.size() < 2) {
                continue; // a point without coordinates cannot be referred to
            }
            const double north = values[0];
            const double east = values[1];
            context.cg_points[point.attribute("name").value()] =
                Point{north * context.linear, east * context.linear};
        }
    }
}

void check_namespace(Context& context, pugi::xml_node root)
{
    const std::string space = root.attribute("xmlns").value();
    if (space.empty() || space == "http://www.landxml.org/schema/LandXML-1.2") {
        return;
    }
    if (space.find("inframodel") != std::string::npos) {
        context.note(root, "Inframodel file (namespace " + space + "): read as LandXML 1.2");
        return;
    }
    if (space.rfind("http://www.landxml.org/schema/LandXML-1.", 0) == 0) {
        context.note(root, "namespace " + space + ": read as LandXML 1.2");
        return;
    }
    context.refuse(QIO_MALFORMED, root,
                   "namespace " + space + " is neither LandXML 1.2 nor Inframodel");
}

AlignmentData read_alignment(Context& context, pugi::xml_node node)
{
    AlignmentData data;
    data.name = node.attribute("name").value();
    data.description = node.attribute("desc").value();
    data.line = context.line(node);
    context.alignment = data.name.empty() ? "(unnamed)" : data.name;
    try {
        read_plan(context, node, data);
        read_equations(context, node, data);
        read_profile(context, node, data);
    } catch (const Refusal& refusal) {
        data.status = refusal.status();
        data.error_line = refusal.line();
        data.message = refusal.what();
        data.horizontal.clear();
        data.vertical.clear();
        data.equations.clear();
    }
    context.alignment.clear();
    return data;
}

} // namespace

DesignData read_landxml(const std::string& name, std::string_view bytes)
{
    DesignData design;
    design.name = name;
    const Source source(name, decode(name, bytes, design.notes));
    Context context(source, design.notes);

    pugi::xml_document document;
    const pugi::xml_parse_result parsed = document.load_buffer(
        source.text().data(), source.text().size(), pugi::parse_default, pugi::encoding_utf8);
    if (!parsed) {
        const std::size_t offset = parsed.offset < 0 ? 0 : static_cast<std::size_t>(parsed.offset);
        source.refuse(QIO_MALFORMED, source.line_at(offset),
                      std::string("not well-formed XML: ") + parsed.description());
    }
    const pugi::xml_node root = document.document_element();
    if (local_name(root) != "LandXML") {
        source.refuse(QIO_MALFORMED, context.line(root),
                      "the root element is <" + std::string(root.name()) +
                          ">: this is not a LandXML file");
    }
    check_namespace(context, root);
    read_units(context, root);
    read_cg_points(context, root);

    for (pugi::xml_node group : root.children()) {
        if (local_name(group) != "Alignments") {
            continue;
        }
        for (pugi::xml_node node : group.children()) {
            if (local_name(node) == "Alignment") {
                design.alignments.push_back(read_alignment(context, node));
            }
        }
    }
    if (design.alignments.empty()) {
        source.refuse(QIO_MALFORMED, context.line(root), "the file holds no Alignment");
    }
    return design;
}

} // namespace quillon::io
