// The LandXML reader: a file's alignments as the device's element tables.
#ifndef QUILLON_IO_LANDXML_HPP
#define QUILLON_IO_LANDXML_HPP

#include "plane.hpp"
#include "source.hpp"

#include <pugixml.hpp>

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::io {

// One alignment as read, or the reason it was refused (status not QIO_OK).
struct AlignmentData {
    std::string name;
    std::string description;
    std::size_t line = 0;
    double station_start = 0.0;
    double chainage_end = 0.0;
    std::vector<HElement> horizontal;
    std::vector<VElement> vertical;
    std::vector<qio_station_equation> equations;
    qio_status status = QIO_OK;
    std::size_t error_line = 0;
    std::string message;
};

struct DesignData {
    std::string name;
    std::vector<AlignmentData> alignments;
    std::vector<std::string> notes;
};

// Reads a whole file; a file-level fault is thrown as a Refusal, a fault in
// one alignment is kept with that alignment.
DesignData read_landxml(const std::string& name, std::string_view bytes);

// ---- shared by the parts of the reader ------------------------------------

// What the file declares and what the reader has found out about it.
struct Context {
    Context(const Source& text, std::vector<std::string>& notes_out)
        : source(text), notes(notes_out)
    {
    }

    const Source& source;
    std::vector<std::string>& notes;
    double linear = 1.0;                      // metres per length unit of the file
    double elevation = 1.0;                   // metres per elevation unit of the file
    std::string direction_unit;               // as declared, "" when not
    std::map<std::string, Point> cg_points;   // named points, in metres
    std::set<std::string> direction_readings; // conventions dir values were found in
    std::string alignment;                    // name of the alignment being read, for messages

    std::size_t line(pugi::xml_node node) const;
    // 'alignment "NAME": text', or the text alone outside an alignment.
    std::string within(std::string_view text) const;
    [[noreturn]] void refuse(qio_status status, pugi::xml_node node, std::string_view text) const;
    void note(pugi::xml_node node, std::string_view text) const;
};

// The element's name without a namespace prefix.
std::string_view local_name(pugi::xml_node node);

// The first child with that local name (any namespace), or an empty node.
pugi::xml_node child(pugi::xml_node parent, std::string_view name);

// A number formatted for messages ("12.345").
std::string number(double value, int decimals = 3);

// An azimuth (radians) for messages, in degrees, minutes and seconds.
std::string dms(double radians);

// A required or optional numeric attribute (in the file's units, not
// converted); a value that is not a number is refused as QIO_MALFORMED.
bool attribute_number(const Context& context, pugi::xml_node node, const char* name, double& value);

// Checks a dir attribute (dirStart, dirEnd, dir) against the azimuth the
// element's points give (radians); lever is the length over which a wrong
// direction would show, m. Refuses QIO_INCONSISTENT when no convention fits.
void check_direction(Context& context, pugi::xml_node node, const char* attribute, double azimuth,
                     double lever);

// The plan of one alignment from its CoordGeom: fills horizontal,
// station_start and chainage_end.
void read_plan(Context& context, pugi::xml_node alignment, AlignmentData& data);

// The design profile of one alignment (its first ProfAlign), if any.
void read_profile(Context& context, pugi::xml_node alignment, AlignmentData& data);

// The station equations of one alignment, if any (after read_plan).
void read_equations(Context& context, pugi::xml_node alignment, AlignmentData& data);

} // namespace quillon::io

#endif
