// dir, dirStart and dirEnd: checked against the azimuth the element's points
// give. Files have been seen to write them clockwise from north,
// counter-clockwise from north and counter-clockwise
// from east, in radians, grads or degrees, with and without a directionUnit;
// a value agrees when any of these readings gives the azimuth.
#include "landxml.hpp"

#include <cmath>

namespace quillon::io {
namespace {

struct Unit {
    const char* name;
    double radians; // per unit; 0 for degrees-minutes-seconds packed as dd.mmss
};

const Unit units[] = {{"radians", 1.0},
                      {"grads", PI / 200.0},
                      {"decimal degrees", PI / 180.0},
                      {"decimal dd.mm.ss", 0.0}};

struct Convention {
    const char* name;
    double (*azimuth)(double angle);
};

const Convention conventions[] = {
    {"clockwise from north", [](double a) { return a; }},
    {"counter-clockwise from north", [](double a) { return -a; }},
    {"counter-clockwise from east", [](double a) { return PI / 2.0 - a; }}};

// 45.3025 is 45 degrees 30 minutes 25 seconds.
double packed_dms_radians(double value)
{
    const double magnitude = std::fabs(value);
    const double degrees = std::trunc(magnitude);
    const double minutes = std::trunc((magnitude - degrees) * 100.0 + 1e-9);
    const double seconds = ((magnitude - degrees) * 100.0 - minutes) * 100.0;
    const double angle = (degrees + minutes / 60.0 + seconds / 3600.0) * (PI / 180.0);
    return value < 0.0 ? -angle : angle;
}

} // namespace

void check_direction(Context& context, pugi::xml_node node, const char* attribute, double azimuth,
                     double lever)
{
    const pugi::xml_attribute dir = node.attribute(attribute);
    if (!dir) {
        return;
    }
    const std::string tag(local_name(node));
    double value = 0.0;
    if (!parse_number(dir.value(), value)) {
        context.note(node, tag + ": " + attribute + " \"" + dir.value() +
                               "\" is not a number: not checked");
        return;
    }
    const double tolerance =
        std::fmax(QIO_DIRECTION_TOLERANCE / SECONDS_PER_RADIAN, QIO_TOLERANCE / lever);

    // The declared unit first; without one, radians, grads and degrees.
    std::vector<const Unit*> candidates;
    for (const Unit& unit : units) {
        if (context.direction_unit == unit.name) {
            candidates.push_back(&unit);
        }
    }
    for (const Unit& unit : units) {
        if (context.direction_unit != unit.name && unit.radians != 0.0) {
            candidates.push_back(&unit);
        }
    }
    for (const Unit* unit : candidates) {
        const double angle =
            unit->radians == 0.0 ? packed_dms_radians(value) : value * unit->radians;
        for (const Convention& convention : conventions) {
            if (std::fabs(wrap_pi(convention.azimuth(angle) - azimuth)) > tolerance) {
                continue;
            }
            const std::string reading = std::string(convention.name) + " in " + unit->name;
            if (context.direction_readings.insert(reading).second) {
                context.note(node, "dir values read as " + reading);
            }
            return;
        }
    }
    context.refuse(QIO_INCONSISTENT, node,
                   tag + ": " + attribute + " " + dir.value() +
                       " does not fit the azimuth of its points (" + dms(azimuth) +
                       ") clockwise or counter-clockwise from north or counter-clockwise from "
                       "east, in radians, grads or degrees");
}

} // namespace quillon::io
