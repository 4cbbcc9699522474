// The LandXML reader: hand-made designs of every supported element in both
// turning senses, the direction conventions files use, station start and
// equations, feet, Inframodel and ISO-8859-1, and every refusal with the
// line it names.
#include "io_support.hpp"

#include <cmath>
#include <cstring>
#include <fstream>
#include <sstream>
#include <vector>

namespace {

using qtest::Design;
using qtest::Outcome;

const double PI = 3.14159265358979323846;
const double SECONDS = 648000.0 / PI;
// The elements are joined into one line fitted to all the file's points,
// written to 0.1 mm: its azimuths come within 0.1" of the design's (one
// element's own points, 40 m apart, would give only 0.5").
const double AZIMUTH_TOLERANCE = 0.1;

// Difference of two azimuths in arc-seconds, folded into [-648000, 648000).
double azimuth_difference(double a, double b) { return std::remainder(a - b, 1296000.0); }

// ---- designs that read ---------------------------------------------------------

struct Record {
    unsigned type, turn, spiral;
    double length, radius, azimuth_degrees, chainage;
};

struct DesignCase {
    const char* file;
    const char* name;
    double station_start;
    double scale; // metres per unit of the file
    double start_x, start_y;
    double end_x, end_y; // exact end of the alignment, m
    std::vector<Record> records;
    const char* note; // a note the reader must leave
};

std::string note_text(const Design& design)
{
    std::string all;
    for (std::size_t i = 0; i < qio_design_note_count(design.get()); ++i) {
        all += std::string(qio_design_note(design.get(), i)) + "\n";
    }
    return all;
}

// Turns of the right-turn road: spiral 40 m to R 200, arc 80 m, spiral out.
const double SPIRAL_TURN = 40.0 / 400.0 * 180.0 / PI;
const double ARC_TURN = 80.0 / 200.0 * 180.0 / PI;

// The right-turn road from 30 degrees, in metres or in feet.
const std::vector<Record> right_turn = {{1, 0, 0, 100, 0, 30, 0},
                                        {3, 1, 0, 40, 200, 30, 100},
                                        {2, 1, 0, 80, 200, 30 + SPIRAL_TURN, 140},
                                        {3, 1, 1, 40, 200, 30 + SPIRAL_TURN + ARC_TURN, 220},
                                        {1, 0, 0, 60, 0, 30 + 2 * SPIRAL_TURN + ARC_TURN, 260}};

const std::vector<DesignCase> designs = {
    {"right_turn.xml", "Right", 0.0, 1.0, 1000.0, 500.0, 1218.975971, 718.985144, right_turn,
     "dir values read as clockwise from north in decimal degrees"},
    {"left_turn.xml",
     "Left",
     -250.5,
     1.0,
     2000.0,
     3000.0,
     1691.492607,
     2973.015612,
     {{1, 0, 0, 100, 0, 200, -250.5},
      {3, 0, 0, 40, 200, 200, -150.5},
      {2, 0, 0, 80, 200, 200 - SPIRAL_TURN, -110.5},
      {3, 0, 1, 40, 200, 200 - SPIRAL_TURN - ARC_TURN, -30.5},
      {1, 0, 0, 60, 0, 200 - 2 * SPIRAL_TURN - ARC_TURN, 9.5}},
     "dir values read as counter-clockwise from east in radians"},
    {"feet.xml", "Feet", 0.0, 1200.0 / 3937.0, 3280.8333 * 1200.0 / 3937.0,
     1640.4167 * 1200.0 / 3937.0, 1218.975971, 718.985144, right_turn,
     "dir values read as counter-clockwise from north in grads"},
    {"inframodel_latin1.xml",
     "V\xC3\xA4yl\xC3\xA4 1",
     0.0,
     1.0,
     6700000.0,
     25500000.0,
     6699982.284507,
     25500148.752064,
     {{1, 0, 0, 50, 0, 100, 0},
      {2, 0, 0, 60, 500, 100, 50},
      {1, 0, 0, 40, 0, 100 - 60.0 / 500.0 * 180.0 / PI, 110}},
     "Inframodel file"},
};

// A case prints as its file: GoogleTest would print the record's bytes,
// padding and unused string storage included, which hold no set value.
void PrintTo(const DesignCase& c, std::ostream* out) { *out << c.file; }

class Designs : public ::testing::TestWithParam<DesignCase> {};

TEST_P(Designs, ReadIntoTheDeviceTable)
{
    const DesignCase& c = GetParam();
    const Design design = qtest::load_file(qtest::data_path(c.file));
    ASSERT_TRUE(design);
    const qio_alignment a = qtest::only_alignment(design);
    EXPECT_STREQ(a.name, c.name);
    EXPECT_STREQ(qio_design_alignment_name(design.get(), 0), c.name);
    EXPECT_EQ(a.station_start, c.station_start);
    ASSERT_EQ(a.horizontal_count, c.records.size() + 1);
    // Lengths in the file carry 6 decimals of its unit.
    const double length_tolerance = 1e-6 * c.scale;
    for (std::size_t i = 0; i < c.records.size(); ++i) {
        const HElement& h = a.horizontal[i];
        const Record& r = c.records[i];
        SCOPED_TRACE(testing::Message() << c.file << " record " << i);
        EXPECT_EQ(h.Type, r.type);
        EXPECT_EQ(h.Turn, r.turn);
        EXPECT_EQ(h.Spiral, r.spiral);
        EXPECT_NEAR(h.Length, r.length, length_tolerance);
        EXPECT_NEAR(h.Radius, r.radius, 1e-4 * c.scale);
        EXPECT_NEAR(h.Chainage, r.chainage, 5 * length_tolerance);
        EXPECT_NEAR(azimuth_difference(h.Azimuth, r.azimuth_degrees * 3600.0), 0.0,
                    AZIMUTH_TOLERANCE);
    }
    // The line starts where the file starts it, within its rounding.
    EXPECT_NEAR(a.horizontal[0].X, c.start_x, 1e-4);
    EXPECT_NEAR(a.horizontal[0].Y, c.start_y, 1e-4);
    // The end record: the alignment's end within the file's rounding.
    const HElement& end = a.horizontal[c.records.size()];
    EXPECT_EQ(end.Type, 0u);
    EXPECT_NEAR(end.X, c.end_x, 2e-4);
    EXPECT_NEAR(end.Y, c.end_y, 2e-4);
    EXPECT_EQ(end.Chainage, a.chainage_end);
    EXPECT_NE(note_text(design).find(c.note), std::string::npos) << note_text(design);
}

INSTANTIATE_TEST_SUITE_P(HandMade, Designs, ::testing::ValuesIn(designs),
                         [](const ::testing::TestParamInfo<DesignCase>& info) {
                             std::string name = info.param.file;
                             return name.substr(0, name.find('.'));
                         });

// A transition runs out of one curve straight into the reverse curve's
// transition; a line of 0.4 mm; an arc that starts 3 um off the spiral's
// end; a namespaced station equation; a profile shorter than the alignment.
TEST(SCurve, ReverseTransitionsShortLineAndMicrometreGap)
{
    const Design design = qtest::load_file(qtest::data_path("s_curve.xml"));
    ASSERT_TRUE(design);
    const qio_alignment a = qtest::only_alignment(design);
    ASSERT_EQ(a.horizontal_count, 9u);
    // Exit transition turning right, then entry transition turning left.
    EXPECT_EQ(a.horizontal[3].Type, 3u);
    EXPECT_EQ(a.horizontal[3].Spiral, 1u);
    EXPECT_EQ(a.horizontal[3].Turn, 1u);
    EXPECT_EQ(a.horizontal[4].Type, 3u);
    EXPECT_EQ(a.horizontal[4].Spiral, 0u);
    EXPECT_EQ(a.horizontal[4].Turn, 0u);
    // The reverse transition starts on the tangent the first one ends on:
    // 45/300 rad + 20/150 rad + 45/300 rad after north.
    const double tangent = (45.0 / 300.0 + 20.0 / 150.0 + 45.0 / 300.0) * SECONDS;
    EXPECT_NEAR(a.horizontal[4].Azimuth, tangent, 1e-2);
    // The 0.4 mm line keeps its length and lies on the tangent it joins.
    EXPECT_EQ(a.horizontal[6].Type, 1u);
    EXPECT_NEAR(a.horizontal[6].Length, 0.0004, 1e-12);
    EXPECT_NEAR(a.horizontal[6].Azimuth, tangent - 70.0 / 240.0 * SECONDS, 1e-2);
    EXPECT_NEAR(a.horizontal[7].Chainage, 310.0004, 1e-9);
    // The arc starts where the spiral ends, not 3 um off as the file has it.
    EXPECT_NEAR(a.horizontal[2].X, 574.898855, 2e-6);
    EXPECT_NEAR(a.horizontal[2].Y, 502.246387, 2e-6);
    const std::string notes = note_text(design);
    EXPECT_NE(notes.find("Line of 0.4 mm kept in the direction of the tangent"), std::string::npos)
        << notes;
    EXPECT_NE(notes.find("elements joined end to end into one line; the file's points lie within "
                         "0.00"),
              std::string::npos)
        << notes;

    // Station equation in another namespace: 200 becomes 250 from there on.
    ASSERT_EQ(a.equation_count, 1u);
    EXPECT_EQ(a.equations[0].chainage, 200.0);
    EXPECT_EQ(a.equations[0].station_back, 200.0);
    EXPECT_EQ(a.equations[0].station_ahead, 250.0);
    EXPECT_EQ(a.equations[0].line, 48u);
    EXPECT_EQ(qio_alignment_station(&a, 199.5), 199.5);
    EXPECT_EQ(qio_alignment_station(&a, 200.0), 250.0);
    EXPECT_EQ(qio_alignment_station(&a, 335.0), 385.0);

    // Profile from 120 to 290 on an alignment from 100 to 335.0004: a grade
    // line, the crest (radius given as -600), a grade line, the sag
    // parabola, a grade line and the end record.
    ASSERT_EQ(a.vertical_count, 6u);
    const VElement* v = a.vertical;
    EXPECT_EQ(v[0].Chainage, 120.0);
    EXPECT_EQ(v[0].Elevation, 20.0);
    EXPECT_EQ(v[1].Type, 3u);
    EXPECT_EQ(v[1].Radius, 600.0);
    EXPECT_EQ(v[1].Given, 0u);
    // Tangent length 600 tan(atan 0.03) = 18 m along the slope.
    EXPECT_NEAR(v[1].Chainage, 142.008094536597398, 1e-9);
    EXPECT_NEAR(v[1].Elevation, 20.660242836097921, 1e-9);
    EXPECT_NEAR(v[1].Length, 35.983810926805203, 1e-9);
    EXPECT_NEAR(v[2].Chainage, 177.991905463402602, 1e-9);
    EXPECT_EQ(v[3].Type, 2u);
    EXPECT_NEAR(v[3].Radius, 40.0 / 0.05, 1e-9);
    EXPECT_NEAR(v[3].Chainage, 210.0, 1e-12);
    EXPECT_EQ(v[5].Type, 0u);
    EXPECT_EQ(v[5].Chainage, 290.0);
    EXPECT_NE(notes.find("the profile covers chainages 120.000 to 290.000"), std::string::npos);
}

TEST(Example, HarbourRoadReadsWhole)
{
    const Design design = qtest::load_file(qtest::example_path("road.xml"));
    ASSERT_TRUE(design);
    const qio_alignment a = qtest::only_alignment(design);
    EXPECT_STREQ(a.description, "two curves with transitions, a station equation at 1450");
    EXPECT_EQ(a.station_start, 1000.0);
    EXPECT_EQ(a.chainage_end, 1790.0);
    EXPECT_EQ(a.horizontal_count, 10u);
    EXPECT_EQ(a.equation_count, 1u);
    ASSERT_EQ(a.vertical_count, 8u);
    // The sag is circular: its arc is 95.990 m, its horizontal length less.
    EXPECT_EQ(a.vertical[3].Type, 3u);
    EXPECT_NEAR(a.vertical[3].Chainage, 1372.01036475861143, 1e-9);
    EXPECT_NEAR(a.vertical[3].Elevation, 51.75979270482777, 1e-9);
    EXPECT_NEAR(a.vertical[3].Length, 95.98541187870283, 1e-9);
    EXPECT_NEAR(a.vertical[4].Elevation, 51.37594931964777, 1e-9);
}

// The buffer reader and the file reader give the same tables, bit for bit.
TEST(Buffer, SameTablesAsTheFile)
{
    const std::string path = qtest::data_path("s_curve.xml");
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    const std::string bytes = text.str();
    qio_design* from_buffer = nullptr;
    ASSERT_EQ(
        qio_landxml_read_buffer(bytes.data(), bytes.size(), "s_curve.xml", &from_buffer, nullptr),
        QIO_OK);
    const Design buffer(from_buffer, qio_design_free);
    const Design file = qtest::load_file(path);
    const qio_alignment a = qtest::only_alignment(buffer);
    const qio_alignment b = qtest::only_alignment(file);
    ASSERT_EQ(a.horizontal_count, b.horizontal_count);
    EXPECT_EQ(std::memcmp(a.horizontal, b.horizontal, a.horizontal_count * sizeof(HElement)), 0);
    ASSERT_EQ(a.vertical_count, b.vertical_count);
    EXPECT_EQ(std::memcmp(a.vertical, b.vertical, a.vertical_count * sizeof(VElement)), 0);
}

// ---- a small design to vary ----------------------------------------------------

// North 100 m, a quarter circle of radius 100 to the right, east 50 m, and
// a profile with one parabola; one element per line, so that the line
// numbers of the messages can be checked.
const char* const base = R"(<?xml version="1.0" encoding="UTF-8"?>
<LandXML xmlns="http://www.landxml.org/schema/LandXML-1.2" version="1.2">
  <Units><Metric linearUnit="meter" directionUnit="decimal degrees"/></Units>
  <Alignments>
    <Alignment name="A" staStart="0">
      <CoordGeom>
        <Line length="100"><Start>0 0</Start><End>100 0</End></Line>
        <Curve rot="cw" radius="100" length="157.079633"><Start>100 0</Start><Center>100 100</Center><PI>200 0</PI><End>200 100</End></Curve>
        <Line length="50"><Start>200 100</Start><End>200 150</End></Line>
      </CoordGeom>
      <Profile><ProfAlign name="P">
        <PVI>0 10</PVI>
        <ParaCurve length="40">100 12</ParaCurve>
        <PVI>307.079633 11</PVI>
      </ProfAlign></Profile>
    </Alignment>
  </Alignments>
</LandXML>
)";

// The base with each "from" replaced by its "to" (every occurrence).
std::string varied(const std::vector<std::pair<std::string, std::string>>& changes)
{
    std::string text = base;
    for (const auto& [from, to] : changes) {
        std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        while (at != std::string::npos) {
            text.replace(at, from.size(), to);
            at = text.find(from, at + to.size());
        }
    }
    return text;
}

const std::string CURVE =
    R"(<Curve rot="cw" radius="100" length="157.079633"><Start>100 0</Start><Center>100 100</Center><PI>200 0</PI><End>200 100</End></Curve>)";
const std::string LAST_LINE =
    R"(<Line length="50"><Start>200 100</Start><End>200 150</End></Line>)";

TEST(Base, ReadsAsDesigned)
{
    const Outcome outcome = qtest::read_text(base);
    EXPECT_EQ(outcome.status, QIO_OK) << outcome.message;
    qio_design* design = nullptr;
    ASSERT_EQ(qio_landxml_read_buffer(base, std::strlen(base), nullptr, &design, nullptr), QIO_OK);
    const Design owned(design, qio_design_free);
    const qio_alignment a = qtest::only_alignment(owned);
    // The arc's length is written to 1e-6 m (50 pi = 157.0796327): the line
    // fitted to the points is that close to the exact one.
    EXPECT_NEAR(azimuth_difference(a.horizontal[1].Azimuth, 0.0), 0.0, 1e-3);
    EXPECT_NEAR(a.horizontal[2].Azimuth, 324000.0, 1e-3);
    EXPECT_NEAR(a.horizontal[3].X, 200.0, 1e-6);
    EXPECT_NEAR(a.horizontal[3].Y, 150.0, 1e-6);
}

// ---- quirks of real files that are read ----------------------------------------

struct Quirk {
    const char* name;
    std::vector<std::pair<std::string, std::string>> changes;
    const char* note; // a note the reader leaves ("" for none expected)
};

const std::vector<Quirk> quirks = {
    {"PointsByReference",
     {{"<Start>0 0</Start>", R"(<Start pntRef="P1"/>)"},
      {"<Units>", R"(<CgPoints><CgPoint name="P1">0 0 5.5</CgPoint></CgPoints><Units>)"}},
     ""},
    {"CurveSenseFromItsPI", {{R"(<Curve rot="cw" )", "<Curve "}}, ""},
    {"NoUnits",
     {{R"(<Units><Metric linearUnit="meter" directionUnit="decimal degrees"/></Units>)", ""}},
     "no Metric or Imperial units declared"},
    {"ElevationUnitApart",
     {{R"(directionUnit="decimal degrees")", R"(elevationUnit="meter")"}},
     ""},
    {"DirCounterClockwiseFromEastInDegrees",
     {{R"(<Line length="50">)", R"(<Line length="50" dir="0.0">)"},
      {R"(<Line length="100">)", R"(<Line length="100" dir="90">)"}},
     "counter-clockwise from east in decimal degrees"},
    {"DirNotANumber",
     {{R"(<Line length="100">)", R"(<Line length="100" dir="N 0 E">)"}},
     "is not a number: not checked"},
    {"CircCurveLengthHorizontal",
     {{R"(<ParaCurve length="40">100 12</ParaCurve>)",
       R"(<CircCurve radius="2000" length="49.6500">100 12</CircCurve>)"}},
     "is its horizontal length"},
    {"SignedCrestRadius",
     {{R"(<ParaCurve length="40">100 12</ParaCurve>)",
       R"(<CircCurve radius="-2000" length="49.6527">100 12</CircCurve>)"}},
     ""},
    {"NamespacePrefixEverywhere",
     {{R"(<LandXML xmlns=)", R"(<lx:LandXML xmlns:lx=)"},
      {"</LandXML>", "</lx:LandXML>"},
      {"<Alignments>", "<lx:Alignments>"},
      {"</Alignments>", "</lx:Alignments>"}},
     ""},
    {"Windows1252Name",
     {{R"(encoding="UTF-8")", R"(encoding="windows-1252")"}, {R"(name="A")", "name=\"A\x80\""}},
     ""},
    {"UndeclaredLatin1Bytes", {{R"(name="A")", "name=\"A\xE9\""}}, "read as ISO-8859-1"},
    {"ZeroLengthLineLeftOut",
     {{"<Line length=\"50\">",
       "<Line length=\"0\"><Start>200 100</Start><End>200 100</End></Line><Line length=\"50\">"}},
     "Line of length 0.000000 m left out"},
    {"StaEquationFromBackStation",
     {{"</CoordGeom>", "</CoordGeom><StaEquation staBack=\"120\" staAhead=\"1000\"/>"}},
     ""},
    {"ElementStationsDiffer",
     {{R"(<Line length="50">)", R"(<Line length="50" staStart="300">)"}},
     "the lengths are used"},
};

// A case prints as its name: GoogleTest would print the record's bytes,
// padding and unused string storage included, which hold no set value.
void PrintTo(const Quirk& c, std::ostream* out) { *out << c.name; }

class Quirks : public ::testing::TestWithParam<Quirk> {};

TEST_P(Quirks, AreRead)
{
    const std::string text = varied(GetParam().changes);
    qio_design* design = nullptr;
    qio_error error{};
    ASSERT_EQ(qio_landxml_read_buffer(text.data(), text.size(), "q.xml", &design, &error), QIO_OK)
        << error.message;
    const Design owned(design, qio_design_free);
    qio_alignment a{};
    ASSERT_EQ(qio_design_alignment(design, 0, &a, &error), QIO_OK) << error.message;
    EXPECT_EQ(a.horizontal_count, 4u);
    EXPECT_NEAR(a.horizontal[3].X, 200.0, 1e-6);
    EXPECT_NEAR(a.horizontal[3].Y, 150.0, 1e-6);
    if (*GetParam().note != '\0') {
        EXPECT_NE(note_text(owned).find(GetParam().note), std::string::npos) << note_text(owned);
    }
}

INSTANTIATE_TEST_SUITE_P(RealFiles, Quirks, ::testing::ValuesIn(quirks),
                         [](const ::testing::TestParamInfo<Quirk>& info) {
                             return std::string(info.param.name);
                         });

TEST(Quirks, NamesAndStationsComeThrough)
{
    qio_design* design = nullptr;
    std::string text = varied(
        {{R"(encoding="UTF-8")", R"(encoding="windows-1252")"}, {R"(name="A")", "name=\"A\x80\""}});
    ASSERT_EQ(qio_landxml_read_buffer(text.data(), text.size(), "q.xml", &design, nullptr), QIO_OK);
    EXPECT_STREQ(qio_design_alignment_name(design, 0), "A\xE2\x82\xAC"); // the euro sign
    qio_design_free(design);

    text =
        varied({{"</CoordGeom>", "</CoordGeom><StaEquation staBack=\"120\" staAhead=\"1000\"/>"}});
    ASSERT_EQ(qio_landxml_read_buffer(text.data(), text.size(), "q.xml", &design, nullptr), QIO_OK);
    qio_alignment a{};
    ASSERT_EQ(qio_design_alignment(design, 0, &a, nullptr), QIO_OK);
    ASSERT_EQ(a.equation_count, 1u);
    EXPECT_EQ(a.equations[0].chainage, 120.0);
    EXPECT_EQ(qio_alignment_station(&a, 130.0), 1010.0);
    qio_design_free(design);
}

// ---- refusals ---------------------------------------------------------------------

struct Refusal {
    const char* name;
    std::vector<std::pair<std::string, std::string>> changes;
    qio_status status;
    std::size_t line;
    const char* message; // a part of the message after "test.xml:LINE: "
};

const std::vector<Refusal> refusals = {
    {"MalformedXml",
     {{"</Line>\n        <Curve", "\n        <Curve"}},
     QIO_MALFORMED,
     10,
     "not well-formed XML"},
    {"NotLandXml",
     {{"<LandXML ", "<gpx "}, {"</LandXML>", "</gpx>"}},
     QIO_MALFORMED,
     2,
     "the root element is <gpx>: this is not a LandXML file"},
    {"ForeignNamespace",
     {{"http://www.landxml.org/schema/LandXML-1.2", "http://www.topografix.com/GPX/1/1"}},
     QIO_MALFORMED,
     2,
     "is neither LandXML 1.2 nor Inframodel"},
    {"NoAlignment",
     {{"Alignments>", "Surfaces>"}},
     QIO_MALFORMED,
     2,
     "the file holds no Alignment"},
    {"UnknownUnit",
     {{R"(linearUnit="meter")", R"(linearUnit="furlong")"}},
     QIO_UNSUPPORTED,
     3,
     "linear unit \"furlong\" is not read"},
    {"UnknownEncoding",
     {{"UTF-8", "Shift_JIS"}},
     QIO_UNSUPPORTED,
     1,
     "encoding \"shift_jis\" is not read"},
    {"Utf16", {{"<?xml", "\xFF\xFE<?xml"}}, QIO_UNSUPPORTED, 0, "UTF-16 text is not read"},
    {"IrregularLine",
     {{LAST_LINE, "<IrregularLine><Start>200 100</Start><End>200 150</End></IrregularLine>"}},
     QIO_UNSUPPORTED,
     9,
     "alignment \"A\": <IrregularLine> in CoordGeom is not read (Line, Curve and Spiral are)"},
    {"Chain", {{LAST_LINE, "<Chain>1 2 3</Chain>"}}, QIO_UNSUPPORTED, 9, "<Chain> in CoordGeom"},
    {"NotAClothoid",
     {{CURVE,
       R"(<Spiral spiType="biquadratic" length="20" radiusStart="INF" radiusEnd="200" rot="cw"><Start>100 0</Start><End>120 0.3</End></Spiral>)"}},
     QIO_UNSUPPORTED,
     8,
     "Spiral of type \"biquadratic\" is not a clothoid"},
    {"OvoidSpiral",
     {{CURVE,
       R"(<Spiral spiType="clothoid" length="20" radiusStart="400" radiusEnd="200" rot="cw"><Start>100 0</Start><End>120 0.7</End></Spiral>)"}},
     QIO_UNSUPPORTED,
     8,
     "Spiral between radii 400.000 m and 200.000 m (an ovoid transition) is not read"},
    {"SpiralBothRadiiInfinite",
     {{CURVE,
       R"(<Spiral length="20" radiusStart="INF" radiusEnd="INF" rot="cw"><Start>100 0</Start><End>120 0</End></Spiral>)"}},
     QIO_MALFORMED,
     8,
     "Spiral with both radii infinite"},
    {"GapBetweenElements",
     {{LAST_LINE, R"(<Line><Start>200 100.005</Start><End>200 150</End></Line>)"}},
     QIO_INCONSISTENT,
     9,
     "Line starts 5.0 mm from the end of the Curve before it (line 8)"},
    {"DirFitsNoConvention",
     {{R"(<Line length="100">)", R"(<Line length="100" dir="45">)"}},
     QIO_INCONSISTENT,
     7,
     "Line: dir 45 does not fit the azimuth of its points (0\xC2\xB0"
     "00'00.0\")"},
    {"RotContradictsPoints",
     {{R"(rot="cw")", R"(rot="ccw")"}},
     QIO_INCONSISTENT,
     8,
     "rot \"ccw\" contradicts its points"},
    {"LineLengthAndPoints",
     {{R"(<Line length="100">)", R"(<Line length="100.01">)"}},
     QIO_INCONSISTENT,
     7,
     "Line: length 100.010 m, but its points are 100.000 m apart"},
    {"CentreOffTheArc",
     {{"<Center>100 100</Center>", "<Center>100 100.01</Center>"}},
     QIO_INCONSISTENT,
     8,
     "Curve: its"},
    {"PiOffTheTangents",
     {{"<PI>200 0</PI>", "<PI>200 0.01</PI>"}},
     QIO_INCONSISTENT,
     8,
     "Curve: its PI lies 10.0 mm from where its tangents meet"},
    {"CurveWithoutSense",
     {{CURVE,
       R"(<Curve radius="100" length="157.079633"><Start>100 0</Start><End>200 100</End></Curve>)"}},
     QIO_MALFORMED,
     8,
     "Curve gives no rot, and neither a PI nor a Center tells its sense"},
    {"RotNeitherWay",
     {{R"(rot="cw")", R"(rot="right")"}},
     QIO_MALFORMED,
     8,
     "rot \"right\" is neither cw nor ccw"},
    {"RadiusNotANumber",
     {{R"(radius="100")", R"(radius="one hundred")"}},
     QIO_MALFORMED,
     8,
     "Curve: radius \"one hundred\" is not a number"},
    {"CoordinateBeyondReason",
     {{"<End>100 0</End>", "<End>1e300 0</End>"}},
     QIO_MALFORMED,
     7,
     "Line: End lies beyond 1e9 m: not a survey coordinate"},
    {"RadiusZero",
     {{R"(radius="100")", R"(radius="0")"}},
     QIO_MALFORMED,
     8,
     "Curve: radius 0.000 is not a curve's"},
    {"PointWithFourValues",
     {{"<Start>0 0</Start>", "<Start>0 0 0 0</Start>"}},
     QIO_MALFORMED,
     7,
     "Line: Start holds \"0 0 0 0\""},
    {"UnknownPointReference",
     {{"<Start>0 0</Start>", R"(<Start pntRef="P9"/>)"}},
     QIO_MALFORMED,
     7,
     "refers to \"P9\", which names no CgPoint"},
    {"NoCoordGeom",
     {{"<CoordGeom>", "<Geom>"}, {"</CoordGeom>", "</Geom>"}},
     QIO_MALFORMED,
     5,
     "the alignment has no CoordGeom"},
    {"UnsymParaCurve",
     {{R"(<ParaCurve length="40">100 12</ParaCurve>)",
       R"(<UnsymParaCurve lengthIn="20" lengthOut="30">100 12</UnsymParaCurve>)"}},
     QIO_UNSUPPORTED,
     13,
     "UnsymParaCurve (a parabola with unequal halves) is not read"},
    {"VerticalCurveBeforeTheStart",
     {{R"(length="40">100 12)", R"(length="300">100 12)"}},
     QIO_INCONSISTENT,
     13,
     "ParaCurve at station 100.000 (line 13) begins at -50.000"},
    {"ProfileEndsOnACurve",
     {{"<PVI>307.079633 11</PVI>", R"(<ParaCurve length="10">307.079633 11</ParaCurve>)"}},
     QIO_MALFORMED,
     14,
     "a profile starts and ends at a PVI, not a curve"},
    {"PviWithOneValue",
     {{"<PVI>0 10</PVI>", "<PVI>0</PVI>"}},
     QIO_MALFORMED,
     12,
     "PVI holds \"0\", not \"station elevation\""},
    {"PvisOutOfOrder",
     {{"<PVI>307.079633 11</PVI>", "<PVI>90 11</PVI>"}},
     QIO_INCONSISTENT,
     14,
     "PVI at station 90.000 (line 14) does not lie after"},
    {"GradeBeyondOneHundredPercent",
     {{"<PVI>0 10</PVI>", "<PVI>0 -200</PVI>"}},
     QIO_UNSUPPORTED,
     13,
     "the grade from PVI at station 0.000 (line 12) to ParaCurve at station 100.000 (line 13) "
     "is 212.0%"},
    {"CircCurveLengthContradicts",
     {{R"(<ParaCurve length="40">100 12</ParaCurve>)",
       R"(<CircCurve radius="2000" length="95">100 12</CircCurve>)"}},
     QIO_INCONSISTENT,
     13,
     "CircCurve: length 95.000 m, but radius 2000.000 m"},
    {"DecreasingStations",
     {{"</CoordGeom>", "</CoordGeom>\n<StaEquation staInternal=\"50\" staAhead=\"10\" "
                       "staIncrement=\"decreasing\"/>"}},
     QIO_UNSUPPORTED,
     11,
     "StaEquation with decreasing stations is not read"},
};

// A case prints as its name: GoogleTest would print the record's bytes,
// padding and unused string storage included, which hold no set value.
void PrintTo(const Refusal& c, std::ostream* out) { *out << c.name; }

class Refusals : public ::testing::TestWithParam<Refusal> {};

TEST_P(Refusals, NameWhatAndWhere)
{
    const Refusal& r = GetParam();
    const Outcome outcome = qtest::read_text(varied(r.changes));
    EXPECT_EQ(outcome.status, r.status) << outcome.message;
    EXPECT_EQ(outcome.line, r.line) << outcome.message;
    const std::string where =
        r.line > 0 ? "test.xml:" + std::to_string(r.line) + ": " : std::string("test.xml: ");
    EXPECT_EQ(outcome.message.rfind(where, 0), 0u) << outcome.message;
    EXPECT_NE(outcome.message.find(r.message), std::string::npos) << outcome.message;
}

INSTANTIATE_TEST_SUITE_P(Designs, Refusals, ::testing::ValuesIn(refusals),
                         [](const ::testing::TestParamInfo<Refusal>& info) {
                             return std::string(info.param.name);
                         });

// A refused alignment leaves the file and its other alignments readable;
// its own record is left as it was.
TEST(Refusals, OneAlignmentDoesNotSinkTheFile)
{
    std::string text = base;
    const std::size_t start = text.find("    <Alignment ");
    const std::size_t end = text.find("  </Alignments>");
    std::string second = text.substr(start, end - start);
    second.replace(second.find(R"(name="A")"), 8, R"(name="B")");
    std::string bad = second;
    bad.replace(bad.find(R"(name="B")"), 8, R"(name="C")");
    bad.replace(bad.find(R"(rot="cw")"), 8, R"(rot="ccw")");
    text.insert(end, second + bad);

    qio_design* design = nullptr;
    ASSERT_EQ(qio_landxml_read_buffer(text.data(), text.size(), "three.xml", &design, nullptr),
              QIO_OK);
    const Design owned(design, qio_design_free);
    ASSERT_EQ(qio_design_alignment_count(design), 3u);
    std::size_t index = 99;
    EXPECT_EQ(qio_design_find(design, "B", &index), QIO_OK);
    EXPECT_EQ(index, 1u);
    EXPECT_EQ(qio_design_find(design, "Z", &index), QIO_NOT_FOUND);
    EXPECT_EQ(index, 1u);
    EXPECT_EQ(qio_design_find(design, nullptr, &index), QIO_BAD_ARGUMENT);

    qio_alignment a{};
    a.name = "untouched";
    qio_error error{};
    EXPECT_EQ(qio_design_alignment(design, 2, &a, &error), QIO_INCONSISTENT);
    EXPECT_STREQ(a.name, "untouched");
    EXPECT_STREQ(qio_design_alignment_name(design, 2), "C");
    EXPECT_NE(std::string(error.message).find("alignment \"C\": Curve"), std::string::npos);
    EXPECT_EQ(qio_design_alignment(design, 3, &a, &error), QIO_NOT_FOUND);
    EXPECT_EQ(qio_design_alignment_name(design, 3), nullptr);
    EXPECT_STREQ(a.name, "untouched");
    EXPECT_EQ(qio_design_alignment(design, 1, &a, nullptr), QIO_OK);
    EXPECT_STREQ(a.name, "B");
}

TEST(Refusals, FileLevelFailuresLeaveTheHandle)
{
    qio_design* sentinel = reinterpret_cast<qio_design*>(0x1234);
    qio_design* design = sentinel;
    qio_error error{};
    EXPECT_EQ(qio_landxml_read_file(qtest::data_path("no_such_file.xml").c_str(), &design, &error),
              QIO_CANNOT_READ);
    EXPECT_EQ(design, sentinel);
    EXPECT_NE(std::string(error.message).find("no_such_file.xml: cannot open"), std::string::npos);
    EXPECT_EQ(qio_landxml_read_buffer("<a>", 3, "x.xml", &design, &error), QIO_MALFORMED);
    EXPECT_EQ(design, sentinel);
    EXPECT_EQ(qio_landxml_read_buffer("", 0, nullptr, &design, &error), QIO_MALFORMED);
    EXPECT_EQ(std::string(error.message).rfind("<memory>", 0), 0u) << error.message;
    EXPECT_EQ(qio_landxml_read_buffer(nullptr, 5, "x.xml", &design, &error), QIO_BAD_ARGUMENT);
    EXPECT_EQ(qio_landxml_read_file(nullptr, &design, nullptr), QIO_BAD_ARGUMENT);
    EXPECT_EQ(design, sentinel);
    EXPECT_STREQ(qio_status_message(QIO_INCONSISTENT), "the file contradicts itself");
    EXPECT_STREQ(qio_status_message(static_cast<qio_status>(42)), "unknown status");
}

// A message longer than the buffer is cut at a character boundary.
TEST(Refusals, LongMessagesAreCutWhole)
{
    const std::string name(600, 'x');
    std::string text = varied({{R"(linearUnit="meter")", "linearUnit=\"" + name + "\""}});
    qio_design* design = nullptr;
    qio_error error{};
    ASSERT_EQ(qio_landxml_read_buffer(text.data(), text.size(), "\xC3\xA4.xml", &design, &error),
              QIO_UNSUPPORTED);
    EXPECT_EQ(std::strlen(error.message), QIO_MESSAGE_SIZE - 1);
    std::string long_name;
    for (int i = 0; i < 400; ++i) {
        long_name += "\xC3\xA4"; // two bytes each: the cut must not split one
    }
    ASSERT_EQ(qio_landxml_read_buffer("<a/>", 4, long_name.c_str(), &design, &error),
              QIO_MALFORMED);
    EXPECT_EQ(std::strlen(error.message) % 2, 0u);
}

// Lengths that disagree with the points by up to 0.9 mm each add up along a
// straight: joined end to end the elements would leave the file's points,
// so each keeps its own start. An angle point starts a new run: the line
// after it keeps its own direction.
TEST(Joining, CoarseLengthsAndAnglePoints)
{
    std::string lines;
    for (int i = 0; i < 3; ++i) {
        lines += "<Line length=\"100.0009\"><Start>" + std::to_string(100 * i) + " 0</Start><End>" +
                 std::to_string(100 * i + 100) + " 0</End></Line>\n";
    }
    // then 100 m at 30 degrees from the last point
    lines += "<Line length=\"100\"><Start>300 0</Start><End>386.6025404 50</End></Line>\n";
    const std::string text =
        varied({{"<Line length=\"100\"><Start>0 0</Start><End>100 0</End></Line>", ""},
                {CURVE, ""},
                {LAST_LINE, lines},
                {"<PVI>307.079633 11</PVI>", "<PVI>400 11</PVI>"}});
    qio_design* design = nullptr;
    qio_error error{};
    ASSERT_EQ(qio_landxml_read_buffer(text.data(), text.size(), "coarse.xml", &design, &error),
              QIO_OK)
        << error.message;
    const Design owned(design, qio_design_free);
    const qio_alignment a = qtest::only_alignment(owned);
    ASSERT_EQ(a.horizontal_count, 5u);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(a.horizontal[i].X, 100.0 * i) << i;
        EXPECT_EQ(a.horizontal[i].Y, 0.0) << i;
    }
    EXPECT_NEAR(a.horizontal[3].Azimuth, 30.0 * 3600.0, 1e-3);
    EXPECT_NEAR(a.horizontal[3].Chainage, 300.0027, 1e-9);
    const std::string notes = note_text(owned);
    EXPECT_NE(notes.find("joined end to end, the elements would pass 1.4 mm from the file's "
                         "points here: each starts at its own Start, and they meet within 0.9000 "
                         "mm"),
              std::string::npos)
        << notes;
    EXPECT_NE(notes.find("the alignment changes direction by 108000.0\" where Line starts"),
              std::string::npos)
        << notes;
}

// Roads longer than the device's 80 elements are read whole.
TEST(LongTables, ReadWhole)
{
    std::string lines;
    for (int i = 0; i < 150; ++i) {
        lines += "<Line><Start>" + std::to_string(2 * i) + " 0</Start><End>" +
                 std::to_string(2 * i + 2) + " 0</End></Line>\n";
    }
    const std::string text =
        varied({{"<Line length=\"100\"><Start>0 0</Start><End>100 0</End></Line>", ""},
                {CURVE, ""},
                {LAST_LINE, lines},
                {"<PVI>307.079633 11</PVI>", "<PVI>300 11</PVI>"}});
    qio_design* design = nullptr;
    qio_error error{};
    ASSERT_EQ(qio_landxml_read_buffer(text.data(), text.size(), "long.xml", &design, &error),
              QIO_OK);
    const Design owned(design, qio_design_free);
    const qio_alignment a = qtest::only_alignment(owned);
    EXPECT_EQ(a.horizontal_count, 151u);
    EXPECT_EQ(a.chainage_end, 300.0);
    EXPECT_EQ(a.horizontal[150].X, 300.0);
}

} // namespace
