// The quillon command on the example road: the table's first and last rows,
// located points, the plot read back as XML (and drawn to PNG where
// rsvg-convert is installed), and bad input - a clear message, an exit code
// that is not 0 and no output file left behind.
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Outcome {
    int code;
    std::string out;
    std::string err;
};

std::string slurp(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

fs::path work_dir()
{
    const fs::path dir =
        fs::path(QUILLON_CLI_WORK) / testing::UnitTest::GetInstance()->current_test_info()->name();
    fs::remove_all(dir);
    fs::create_directories(dir);
    return dir;
}

// Runs the command with arguments (quoted by the caller where needed) in
// directory dir.
Outcome quillon(const fs::path& dir, const std::string& arguments)
{
    const std::string command = "cd '" + dir.string() + "' && '" + QUILLON_TOOL + "' " + arguments +
                                " >stdout.txt 2>stderr.txt";
    const int status = std::system(command.c_str());
    Outcome run{WIFEXITED(status) ? WEXITSTATUS(status) : -1, slurp(dir / "stdout.txt"),
                slurp(dir / "stderr.txt")};
    fs::remove(dir / "stdout.txt");
    fs::remove(dir / "stderr.txt");
    return run;
}

std::string example(const char* file) { return std::string(QUILLON_EXAMPLE_DATA) + "/" + file; }

std::vector<std::string> lines_of(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

// The cells of a CSV line without quotes; a trailing empty cell counts.
std::vector<std::string> fields(const std::string& line)
{
    std::vector<std::string> out(1);
    for (char c : line) {
        if (c == ',') {
            out.emplace_back();
        } else {
            out.back() += c;
        }
    }
    return out;
}

// Files in dir besides the ones named.
std::vector<std::string> leftovers(const fs::path& dir)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(dir)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

TEST(Cli, HelpForEveryCommandNamesTheExitCodes)
{
    const fs::path dir = work_dir();
    for (const char* command :
         {"--help", "road --help", "road table --help", "road locate --help", "road plot --help"}) {
        const Outcome run = quillon(dir, command);
        EXPECT_EQ(run.code, 0) << command;
        EXPECT_NE(run.out.find("Exit codes:"), std::string::npos) << command << run.out;
        EXPECT_NE(run.out.find("4  an input file is malformed"), std::string::npos) << command;
    }
    const Outcome table = quillon(dir, "road table --help");
    EXPECT_NE(table.out.find("--offsets"), std::string::npos);
    EXPECT_NE(table.out.find("--interval"), std::string::npos);
}

TEST(Cli, TableFirstAndLastRows)
{
    const fs::path dir = work_dir();
    const Outcome run = quillon(dir, "--quiet road table '" + example("road.xml") + "'");
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const std::vector<std::string> lines = lines_of(run.out);
    // Title, headings, 11 main points (10 records and the equation) and 34
    // piles every 20 m of the printed stations.
    ASSERT_EQ(lines.size(), 2u + 45u) << run.out;
    EXPECT_EQ(lines[0], "# " + example("road.xml") +
                            ", alignment \"Harbour Road\": chainage 1000.000 to 1790.000 m");
    std::istringstream heading(lines[1]);
    std::vector<std::string> names;
    for (std::string name; heading >> name;) {
        names.push_back(name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Point", "Chainage", "Station", "X", "Y", "H",
                                               "Azimuth", "Remark"}));
    // The start: the line's start point at 60 degrees, the first PVI.
    std::istringstream first(lines[2]);
    std::vector<std::string> start;
    for (std::string cell; first >> cell;) {
        start.push_back(cell);
    }
    EXPECT_EQ(start, (std::vector<std::string>{"start", "1000.000", "1000.000", "5000.000",
                                               "2000.000", "52.000", "60\u00B000'00.0\""}));
    // The end: station 1840 after the equation, the last PVI, the last line's
    // direction 60 deg + 0.7 rad (right) - 0.68 rad (left).
    std::istringstream last(lines.back());
    std::vector<std::string> end;
    for (std::string cell; last >> cell;) {
        end.push_back(cell);
    }
    EXPECT_EQ(end, (std::vector<std::string>{"end", "1790.000", "1840.000", "5174.425", "2740.031",
                                             "52.690", "61\u00B008'45.3\""}));
}

TEST(Cli, TableAsCsvWithOffsets)
{
    const fs::path dir = work_dir();
    const Outcome run =
        quillon(dir, "-q road table '" + example("road.xml") +
                         "' --interval 50 --offsets=-3.5,3.5 --format csv -o t.csv");
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out, "");
    const std::vector<std::string> lines = lines_of(slurp(dir / "t.csv"));
    ASSERT_GT(lines.size(), 3u);
    EXPECT_EQ(lines[0], "Point,Chainage,Station,X,Y,H,Azimuth,X(-3.500),Y(-3.500),X(+3.500),"
                        "Y(+3.500),Remark");
    // Station 1050 on the first line, heading 60 deg: the offsets lie 3.5 m
    // square to it on either side.
    const std::vector<std::string> row = fields(lines[2]);
    ASSERT_EQ(row.size(), 12u);
    EXPECT_EQ(row[1], "1050.000");
    const double x = std::stod(row[3]), y = std::stod(row[4]);
    EXPECT_NEAR(x, 5025.0, 0.0005);
    EXPECT_NEAR(y, 2000.0 + 50.0 * std::sqrt(3.0) / 2.0, 0.0005);
    // Left of a heading of 60 degrees is 330 degrees: north-west.
    EXPECT_NEAR(std::stod(row[7]), x + 3.5 * std::sqrt(3.0) / 2.0, 0.0011);
    EXPECT_NEAR(std::stod(row[8]), y - 3.5 * 0.5, 0.0011);
    EXPECT_NEAR(std::stod(row[9]), x - 3.5 * std::sqrt(3.0) / 2.0, 0.0011);
    EXPECT_NEAR(std::stod(row[10]), y + 3.5 * 0.5, 0.0011);
    EXPECT_EQ(leftovers(dir), std::vector<std::string>{"t.csv"});
}

// The S-curve's profile runs from 120 to 290 on an alignment from 100 to
// 335.0004: rows outside it say so instead of inventing a height.
TEST(Cli, RowsBeyondTheProfileHaveNoDesignHeight)
{
    const fs::path dir = work_dir();
    const Outcome run = quillon(dir, "-q road table '" + std::string(QUILLON_IO_DATA) +
                                         "/s_curve.xml' --interval 10 --format csv");
    ASSERT_EQ(run.code, 0) << run.err;
    const std::vector<std::string> lines = lines_of(run.out);
    ASSERT_GT(lines.size(), 5u);
    EXPECT_EQ(fields(lines[1]).at(0), "start");
    EXPECT_EQ(fields(lines[1]).at(5), "-");
    EXPECT_EQ(fields(lines[1]).back(), "no design height");
    EXPECT_EQ(fields(lines[3]).at(1), "120.000");
    EXPECT_EQ(fields(lines[3]).at(5), "20.000");
    EXPECT_EQ(fields(lines[3]).back(), "");
    EXPECT_EQ(fields(lines.back()).at(0), "end");
    EXPECT_EQ(fields(lines.back()).back(), "no design height");
}

TEST(Cli, LocatedPoints)
{
    const fs::path dir = work_dir();
    const Outcome run = quillon(dir, "-q road locate '" + example("road.xml") + "' '" +
                                         example("measured.csv") + "' --format csv");
    ASSERT_EQ(run.code, 0) << run.err;
    const std::vector<std::string> lines = lines_of(run.out);
    ASSERT_EQ(lines.size(), 8u) << run.out;
    EXPECT_EQ(lines[0], "Point,Chainage,Station,Offset,H,Design H,Cut/fill,Remark");
    // Placed 3.5 m left of chainage 1205.5 on the arc, 34 mm below the crest.
    EXPECT_EQ(lines[2], "P2,1205.500,1205.500,-3.500,54.936,54.970,-0.034,fill");
    // After the equation the station runs 50 m ahead of the chainage.
    EXPECT_EQ(lines[4], "P4,1500.000,1550.000,-2.000,51.660,51.760,-0.100,fill");
    EXPECT_EQ(lines[7], "P7,-,-,-,52.700,-,-,point outside the alignment");
}

TEST(Cli, PlotIsOneSvgWithEveryPart)
{
    const fs::path dir = work_dir();
    const Outcome run = quillon(dir, "-q road plot '" + example("road.xml") + "' -o road.svg");
    ASSERT_EQ(run.code, 0) << run.err;
    pugi::xml_document svg;
    ASSERT_TRUE(svg.load_file((dir / "road.svg").c_str()));
    const pugi::xml_node root = svg.document_element();
    EXPECT_STREQ(root.name(), "svg");
    EXPECT_STREQ(root.attribute("xmlns").value(), "http://www.w3.org/2000/svg");
    auto count = [&svg](const char* path) { return svg.select_nodes(path).size(); };
    // Plan: 3 lines, 2 arcs, 4 transitions, 10 main points, ticks at
    // stations 1100 to 1400 and 1600 to 1800.
    EXPECT_EQ(count("//*[local-name()='path'][@class='plan-line']"), 3u);
    EXPECT_EQ(count("//*[local-name()='path'][@class='plan-arc']"), 2u);
    EXPECT_EQ(count("//*[local-name()='path'][@class='plan-spiral']"), 4u);
    EXPECT_EQ(count("//*[local-name()='circle'][@class='main-point']"), 10u);
    EXPECT_EQ(count("//*[local-name()='line'][@class='tick']"), 7u);
    // Profile: 5 PVIs, 4 grades between them, 4 grade lines, 2 parabolas,
    // 1 circular curve.
    EXPECT_EQ(count("//*[local-name()='circle'][@class='pvi']"), 5u);
    EXPECT_EQ(count("//*[local-name()='line'][@class='grade']"), 4u);
    EXPECT_EQ(count("//*[local-name()='path'][@class='profile-line']"), 4u);
    EXPECT_EQ(count("//*[local-name()='path'][@class='profile-parabola']"), 2u);
    EXPECT_EQ(count("//*[local-name()='path'][@class='profile-circle']"), 1u);
    // Self-contained: nothing is fetched from elsewhere.
    const std::string text = slurp(dir / "road.svg");
    EXPECT_EQ(text.find("href"), std::string::npos);
    EXPECT_EQ(text.find("@import"), std::string::npos);

    const std::string rsvg = QUILLON_RSVG_CONVERT;
    if (rsvg.empty()) {
        GTEST_SKIP() << "rsvg-convert not installed: the PNG rendering is not checked";
    }
    const std::string command = "'" + rsvg + "' -o '" + (dir / "road.png").string() + "' '" +
                                (dir / "road.svg").string() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    const std::string png = slurp(dir / "road.png");
    ASSERT_GT(png.size(), 1000u);
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1A\n");
}

// The example sightings: six known points, the direction to P4 read 30"
// wrong; the station lies within a few millimetres of where it was set up.
TEST(Cli, FreeStationFlagsTheBlunder)
{
    const fs::path dir = work_dir();
    const Outcome run =
        quillon(dir, "station '" + example("station.csv") + "' --instrument-height 1.55");
    ASSERT_EQ(run.code, 0) << run.err;
    const std::vector<std::string> lines = lines_of(run.out);
    ASSERT_GT(lines.size(), 14u) << run.out;
    double x = 0.0, y = 0.0, h = 0.0;
    ASSERT_EQ(std::sscanf(lines[1].c_str(), "station X %lf Y %lf H %lf", &x, &y, &h), 3)
        << lines[1];
    EXPECT_NEAR(x, 5075.2480, 0.01);
    EXPECT_NEAR(y, 2212.6150, 0.01);
    EXPECT_NEAR(h, 49.8370, 0.002);
    EXPECT_EQ(lines[7].rfind("P1 ", 0), 0u) << lines[7];
    EXPECT_EQ(lines[12].rfind("P6 ", 0), 0u) << lines[12];
    EXPECT_NE(run.out.find("blunder search: the direction to P4 is suspect: |w| = "),
              std::string::npos)
        << run.out;
}

// Without the spoiled sighting the station comes back to a few tenths of a
// millimetre and the orientation to a second.
TEST(Cli, FreeStationWithoutTheBlunder)
{
    const fs::path dir = work_dir();
    const Outcome run = quillon(dir, "station '" + example("station.csv") +
                                         "' --instrument-height 1.55 --leave-out P4");
    ASSERT_EQ(run.code, 0) << run.err;
    const std::vector<std::string> lines = lines_of(run.out);
    ASSERT_GT(lines.size(), 3u);
    EXPECT_NE(lines[0].find("5 sightings, 5 with distance, 5 with zenith angle; left out: P4"),
              std::string::npos)
        << lines[0];
    double x = 0.0, y = 0.0, h = 0.0;
    ASSERT_EQ(std::sscanf(lines[1].c_str(), "station X %lf Y %lf H %lf", &x, &y, &h), 3);
    EXPECT_NEAR(x, 5075.2480, 0.0005);
    EXPECT_NEAR(y, 2212.6150, 0.0005);
    EXPECT_NE(lines[3].find("orientation  37\u00B015'00"), std::string::npos) << lines[3];
    EXPECT_NE(run.out.find("blunder search: none flagged"), std::string::npos) << run.out;
    EXPECT_EQ(quillon(dir, "station '" + example("station.csv") + "' --leave-out P9").code, 2);
}

TEST(Cli, TraverseClosesOnTheKnownEnd)
{
    const fs::path dir = work_dir();
    const Outcome run = quillon(dir, "traverse '" + example("traverse.csv") + "' -o report.txt");
    ASSERT_EQ(run.code, 0) << run.err;
    const std::string report = slurp(dir / "report.txt");
    EXPECT_NE(report.find("link from A to E, 4 legs, 641.022 m"), std::string::npos) << report;
    // The angles were measured 2.1 - 3.4 + 1.8 + 2.7 - 1.5 = 1.7" too large in all.
    EXPECT_NE(report.find("angular misclosure  +1.6\""), std::string::npos) << report;
    double ratio = 0.0;
    const std::size_t at = report.find("precision           1 : ");
    ASSERT_NE(at, std::string::npos) << report;
    ratio = std::stod(report.substr(at + 24));
    EXPECT_GT(ratio, 50000.0);
    const std::vector<std::string> lines = lines_of(report);
    EXPECT_EQ(lines.back(), "E        5180.0000  2620.0000  50.1200");
}

// ---- bad input ---------------------------------------------------------------

struct Bad {
    const char* name;
    const char* design;   // file text, or nullptr: no such file
    const char* measured; // for locate: file text; nullptr: table command
    int code;
    const char* message; // a part of stderr
};

const char* const road_text = R"(<?xml version="1.0"?>
<LandXML xmlns="http://www.landxml.org/schema/LandXML-1.2">
  <Alignments>
    <Alignment name="A" staStart="0">
      <CoordGeom>
        <Line><Start>0 0</Start><End>100 0</End></Line>
      </CoordGeom>
    </Alignment>
  </Alignments>
</LandXML>
)";

const std::vector<Bad> bad = {
    {"MissingDesign", nullptr, nullptr, 3, "design.xml: cannot open: No such file or directory"},
    {"MalformedXml", "<?xml version=\"1.0\"?>\n<LandXML>\n<Alignments>\n</LandXML>\n", nullptr, 4,
     "design.xml:4: not well-formed XML"},
    {"NotLandXml", "<?xml version=\"1.0\"?>\n<kml/>\n", nullptr, 4,
     "design.xml:2: the root element is <kml>: this is not a LandXML file"},
    {"WrongElementType",
     R"(<LandXML><Alignments><Alignment name="A">
<CoordGeom>
<IrregularLine><Start>0 0</Start><End>1 1</End></IrregularLine>
</CoordGeom></Alignment></Alignments></LandXML>)",
     nullptr, 4, "design.xml:3: alignment \"A\": <IrregularLine> in CoordGeom is not read"},
    {"CsvWithABadRow", road_text, "name,X,Y,H\nA,10,1,5\nB,20,x,5\n", 4,
     "measured.csv:3: point B: Y \"x\" is not a number"},
    {"MissingMeasured", road_text, "", 3, "measured.csv: cannot open"},
};

struct BadObservations {
    const char* name;
    const char* command;
    const char* file;
    int code;
    const char* message;
};

const std::vector<BadObservations> bad_observations = {
    {"SightingAngleWithSixtyMinutes", "station",
     "name,X,Y,direction\nP1,1,2,10.0000\nP2,3,4,"
     "271.6145\nP3,5,6,1\n",
     4, "obs.csv:3: direction \"271.6145\" is not an angle in ddd.mmss"},
    {"SightingWithoutDirectionColumn", "station", "name,X,Y\nP1,1,2\n", 4,
     "obs.csv: no column \"direction\" (the header reads \"name, X, Y\")"},
    {"TooFewSightings", "station", "name,X,Y,direction\nP1,10,20,0\nP2,30,-5,90\n", 5,
     "obs.csv: the free station: too few observations"},
    {"TraverseOfTwoRows", "traverse", "name,X,Y,angle,distance\nB,1,2,,\nA,3,4,10,5\n", 4,
     "obs.csv: a traverse needs a backsight, a start and an end: at least 3 rows"},
    {"TraverseLegWithoutDistance", "traverse",
     "name,X,Y,angle,distance\nB,0,0,,\nA,100,0,180,100\nT1,,,180,\nE,300,0,,\n", 4,
     "obs.csv:4: distance \"\" is not a number"},
};

// A case prints as its name: GoogleTest would print the record's bytes,
// padding and unused string storage included, which hold no set value.
void PrintTo(const BadObservations& c, std::ostream* out) { *out << c.name; }

class BadObservationFiles : public ::testing::TestWithParam<BadObservations> {};

TEST_P(BadObservationFiles, ClearMessageExitCodeAndNoOutput)
{
    const BadObservations& b = GetParam();
    const fs::path dir = work_dir();
    std::ofstream(dir / "obs.csv") << b.file;
    const Outcome run = quillon(dir, std::string(b.command) + " obs.csv -o out.txt");
    EXPECT_EQ(run.code, b.code) << run.err;
    EXPECT_NE(run.err.find(b.message), std::string::npos) << run.err;
    EXPECT_FALSE(fs::exists(dir / "out.txt"));
    EXPECT_EQ(leftovers(dir).size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Cli, BadObservationFiles, ::testing::ValuesIn(bad_observations),
                         [](const ::testing::TestParamInfo<BadObservations>& info) {
                             return std::string(info.param.name);
                         });

// A case prints as its name: GoogleTest would print the record's bytes,
// padding and unused string storage included, which hold no set value.
void PrintTo(const Bad& c, std::ostream* out) { *out << c.name; }

class BadInput : public ::testing::TestWithParam<Bad> {};

TEST_P(BadInput, ClearMessageExitCodeAndNoOutput)
{
    const Bad& b = GetParam();
    const fs::path dir = work_dir();
    if (b.design != nullptr) {
        std::ofstream(dir / "design.xml") << b.design;
    }
    std::string arguments = "road table design.xml -o out.txt";
    if (b.measured != nullptr) {
        if (*b.measured != '\0') {
            std::ofstream(dir / "measured.csv") << b.measured;
        }
        arguments = "road locate design.xml measured.csv -o out.txt";
    }
    const Outcome run = quillon(dir, arguments);
    EXPECT_EQ(run.code, b.code) << run.err;
    // Notes about the file may come first; the error is the last line.
    ASSERT_FALSE(run.err.empty());
    EXPECT_EQ(lines_of(run.err).back().rfind("quillon: ", 0), 0u) << run.err;
    EXPECT_NE(run.err.find(b.message), std::string::npos) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_FALSE(fs::exists(dir / "out.txt"));
    for (const std::string& name : leftovers(dir)) {
        EXPECT_EQ(name.find("out.txt"), std::string::npos) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Cli, BadInput, ::testing::ValuesIn(bad),
                         [](const ::testing::TestParamInfo<Bad>& info) {
                             return std::string(info.param.name);
                         });

TEST(Cli, FailedRunLeavesTheOldOutputAlone)
{
    const fs::path dir = work_dir();
    std::ofstream(dir / "road.svg") << "old drawing";
    std::ofstream(dir / "design.xml") << "<LandXML><Alignments/></LandXML>";
    const Outcome run = quillon(dir, "road plot design.xml -o road.svg");
    EXPECT_EQ(run.code, 4);
    EXPECT_NE(run.err.find("design.xml:1: the file holds no Alignment"), std::string::npos)
        << run.err;
    EXPECT_EQ(slurp(dir / "road.svg"), "old drawing");
    EXPECT_EQ(leftovers(dir).size(), 2u);
}

TEST(Cli, OutputThatCannotBeWritten)
{
    const fs::path dir = work_dir();
    const Outcome run =
        quillon(dir, "road plot '" + example("road.xml") + "' -q -o no/such/dir/road.svg");
    EXPECT_EQ(run.code, 6);
    EXPECT_NE(run.err.find("no/such/dir/road.svg: cannot write"), std::string::npos) << run.err;
}

TEST(Cli, UsageErrors)
{
    const fs::path dir = work_dir();
    EXPECT_EQ(quillon(dir, "").code, 2);
    EXPECT_EQ(quillon(dir, "road table").code, 2);
    EXPECT_EQ(quillon(dir, "road table x.xml --interval -5").code, 2);
    EXPECT_EQ(quillon(dir, "road table x.xml --format pdf").code, 2);
    EXPECT_EQ(quillon(dir, "road frobnicate").code, 2);
    // A file of two alignments needs --alignment; a wrong name is named.
    std::string two = road_text;
    const std::size_t at = two.find("  </Alignments>");
    std::string second = two.substr(two.find("    <Alignment "), at - two.find("    <Alignment "));
    second.replace(second.find("name=\"A\""), 8, "name=\"B\"");
    two.insert(at, second);
    std::ofstream(dir / "two.xml") << two;
    Outcome run = quillon(dir, "road table two.xml");
    EXPECT_EQ(run.code, 2);
    EXPECT_NE(run.err.find("two.xml: the file holds 2 alignments (\"A\", \"B\"): choose one with "
                           "--alignment"),
              std::string::npos)
        << run.err;
    run = quillon(dir, "road table two.xml --alignment C");
    EXPECT_EQ(run.code, 2);
    EXPECT_NE(run.err.find("no alignment named \"C\""), std::string::npos) << run.err;
    run = quillon(dir, "-q road table two.xml --alignment B --interval 0");
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(lines_of(run.out).size(), 4u) << run.out;
}

} // namespace
