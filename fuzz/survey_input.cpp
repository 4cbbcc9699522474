// Decoding the survey functions' calls, and their seeds (survey_input.hpp).
//
// After the function byte, each function reads (every count a uint32, every
// mode or flag an int32 or a byte, every double its 8 bytes):
//   qs_status_message    status
//   qs_free_station      count; options; sightings[count]; result;
//                        residuals[count]
//   qs_traverse_adjust   kind, leg_count, rule, height_rule; ends;
//                        stations[leg_count + 1]; result; adjusted[leg_count + 1]
//   qs_transition_point  s; curve; out
//   qs_alignment_build   record_count, a byte (low bit 1: table is the
//                        elements array itself); elements[record_count - 1]
//                        (none for a count of 0); table[record_count]
//   qs_alignment_point   chainage, offset; an alignment; out
//   qs_alignment_locate  x, y; an alignment; out
//   qs_alignment_joints  an alignment; joints[record_count - 1]
//   qs_profile_height    chainage; a profile; out
//   qs_road_check        an alignment; a profile; measured; out
//   qs_polar_point       azimuth, distance; from; out
//   qs_join              from; to; out
//   qs_polar_points      count; from; azimuths[count]; distances[count];
//                        x[count]; y[count]
//   qs_joins             count; from; x[count]; y[count]; azimuths[count];
//                        distances[count]
//   qs_alignment_locate_many
//                        count; an alignment; x[count]; y[count];
//                        chainages[count]; offsets[count]
// An alignment is record_count, a source byte (modulo 3), then
// table[record_count]: used raw (0), or its first record_count - 1 records
// are the element list that qs_alignment_build (1) or, for 2 to 81 records,
// LIB_CalWay_H_Ele_MainPoint (2) turns into the table in place (a builder
// that refuses leaves the raw bytes). A profile is count, a source byte
// (modulo 2), then table[count]: raw (0) or, for 2 to 81 records, built in
// place by LIB_CalWay_V_Ele_MainPoint (1).
#include "survey_input.hpp"

#include "bytes.hpp"
#include "sample_road.hpp"

#include <quillon/survey.h>

#include <cmath>
#include <cstring>

// status_message.c: the call as a C program makes it, with any int.
extern "C" const char* qfuzz_status_message(int status);

namespace qfuzz {

const char* const survey_function_names[SURVEY_FUNCTIONS] = {
    "qs_status_message",  "qs_free_station",    "qs_traverse_adjust",      "qs_transition_point",
    "qs_alignment_build", "qs_alignment_point", "qs_alignment_locate",     "qs_alignment_joints",
    "qs_profile_height",  "qs_road_check",      "qs_polar_point",          "qs_join",
    "qs_polar_points",    "qs_joins",           "qs_alignment_locate_many"};

namespace {

enum SurveyFunction : std::size_t {
    STATUS_MESSAGE,
    FREE_STATION,
    TRAVERSE_ADJUST,
    TRANSITION_POINT,
    ALIGNMENT_BUILD,
    ALIGNMENT_POINT,
    ALIGNMENT_LOCATE,
    ALIGNMENT_JOINTS,
    PROFILE_HEIGHT,
    ROAD_CHECK,
    POLAR_POINT,
    JOIN,
    POLAR_POINTS,
    JOINS,
    ALIGNMENT_LOCATE_MANY
};

enum AlignmentSource : std::uint8_t { RAW = 0, BUILT = 1, BUILT_BY_DEVICE = 2 };

// The blocks of one call: arrays of exactly the elements the interface
// obliges the caller to provide, counted against MAX_BUFFER_BYTES.
class Blocks {
  public:
    explicit Blocks(Reader& in) : in_(in) {}

    // A block of `count` records of type T filled from the input, or null
    // when the call would exceed the limit (`ok` turns false).
    template <typename T> T* records(std::size_t count)
    {
        if (!ok || count > (MAX_BUFFER_BYTES - total_) / sizeof(T)) {
            ok = false;
            return nullptr;
        }
        total_ += count * sizeof(T);
        blocks_.emplace_back(count * sizeof(T));
        void* data = blocks_.back().get();
        in_.fill(data, count * sizeof(T));
        return static_cast<T*>(data);
    }

    template <typename T> T* record() { return records<T>(1); }

    bool ok = true;

  private:
    Reader& in_;
    std::vector<Block> blocks_;
    std::size_t total_ = 0;
};

// Records of a table less its end record: the element list.
std::size_t elements_of(std::size_t record_count)
{
    return record_count > 0 ? record_count - 1 : 0;
}

// The device's builders take 2 to 81 records.
bool device_table_count(std::size_t count) { return count >= 2 && count <= 81; }

struct Alignment {
    const HElement* table = nullptr;
    std::size_t record_count = 0;
};

Alignment read_alignment(Reader& in, Blocks& blocks)
{
    Alignment a;
    a.record_count = in.get<std::uint32_t>();
    const auto source = static_cast<std::uint8_t>(in.get<std::uint8_t>() % 3);
    HElement* table = blocks.records<HElement>(a.record_count);
    if (table == nullptr) {
        return a;
    }
    if (source == BUILT) {
        qs_alignment_build(table, a.record_count, table);
    } else if (source == BUILT_BY_DEVICE && device_table_count(a.record_count)) {
        LIB_CalWay_H_Ele_MainPoint(table, static_cast<unsigned char>(a.record_count), table);
    }
    a.table = table;
    return a;
}

struct Profile {
    const VElement* table = nullptr;
    std::size_t count = 0;
};

Profile read_profile(Reader& in, Blocks& blocks)
{
    Profile p;
    p.count = in.get<std::uint32_t>();
    const auto source = static_cast<std::uint8_t>(in.get<std::uint8_t>() % 2);
    VElement* table = blocks.records<VElement>(p.count);
    if (table == nullptr) {
        return p;
    }
    if (source == BUILT && device_table_count(p.count)) {
        LIB_CalWay_V_Ele_MainPoint(table, static_cast<unsigned char>(p.count), table);
    }
    p.table = table;
    return p;
}

int call(std::size_t function, Reader& in, Blocks& blocks)
{
    switch (function) {
    case STATUS_MESSAGE:
        return qfuzz_status_message(in.get<std::int32_t>()) != nullptr ? QS_OK : -1;
    case FREE_STATION: {
        const std::size_t count = in.get<std::uint32_t>();
        const auto* options = blocks.record<qs_free_station_options>();
        const auto* sightings = blocks.records<qs_sighting>(count);
        auto* result = blocks.record<qs_free_station_result>();
        auto* residuals = blocks.records<qs_sighting_result>(count);
        if (!blocks.ok) {
            return -1;
        }
        return qs_free_station(sightings, count, options, result, residuals);
    }
    case TRAVERSE_ADJUST: {
        const std::int32_t kind = in.get<std::int32_t>();
        const std::size_t legs = in.get<std::uint32_t>();
        const std::int32_t rule = in.get<std::int32_t>();
        const std::int32_t height_rule = in.get<std::int32_t>();
        const auto* ends = blocks.record<qs_traverse_ends>();
        const auto* stations = blocks.records<qs_traverse_station>(legs + 1);
        auto* result = blocks.record<qs_traverse_result>();
        auto* adjusted = blocks.records<SurveyPoint>(legs + 1);
        if (!blocks.ok) {
            return -1;
        }
        return qs_traverse_adjust(kind, ends, stations, legs, rule, height_rule, result, adjusted);
    }
    case TRANSITION_POINT: {
        const double s = in.get<double>();
        const auto* curve = blocks.record<qs_transition>();
        auto* out = blocks.record<qs_pose>();
        if (!blocks.ok) {
            return -1;
        }
        return qs_transition_point(curve, s, out);
    }
    case ALIGNMENT_BUILD: {
        const std::size_t count = in.get<std::uint32_t>();
        const bool in_place = (in.get<std::uint8_t>() & 1u) != 0;
        const HElement* elements =
            in_place ? nullptr : blocks.records<HElement>(elements_of(count));
        HElement* table = blocks.records<HElement>(count);
        if (!blocks.ok) {
            return -1;
        }
        return qs_alignment_build(in_place ? table : elements, count, table);
    }
    case ALIGNMENT_POINT: {
        const double chainage = in.get<double>();
        const double offset = in.get<double>();
        const Alignment a = read_alignment(in, blocks);
        auto* out = blocks.record<qs_station_offset>();
        if (!blocks.ok) {
            return -1;
        }
        return qs_alignment_point(a.table, a.record_count, chainage, offset, out);
    }
    case ALIGNMENT_LOCATE: {
        const double x = in.get<double>();
        const double y = in.get<double>();
        const Alignment a = read_alignment(in, blocks);
        auto* out = blocks.record<qs_station_offset>();
        if (!blocks.ok) {
            return -1;
        }
        return qs_alignment_locate(a.table, a.record_count, x, y, out);
    }
    case ALIGNMENT_JOINTS: {
        const Alignment a = read_alignment(in, blocks);
        auto* joints = blocks.records<qs_joint>(elements_of(a.record_count));
        if (!blocks.ok) {
            return -1;
        }
        return qs_alignment_joints(a.table, a.record_count, joints);
    }
    case PROFILE_HEIGHT: {
        const double chainage = in.get<double>();
        const Profile p = read_profile(in, blocks);
        auto* out = blocks.record<qs_profile_point>();
        if (!blocks.ok) {
            return -1;
        }
        return qs_profile_height(p.table, p.count, chainage, out);
    }
    case ROAD_CHECK: {
        const Alignment a = read_alignment(in, blocks);
        const Profile p = read_profile(in, blocks);
        const auto* measured = blocks.record<SurveyPoint>();
        auto* out = blocks.record<qs_design_check>();
        if (!blocks.ok) {
            return -1;
        }
        return qs_road_check(a.table, a.record_count, p.table, p.count, measured, out);
    }
    case POLAR_POINT: {
        const double azimuth = in.get<double>();
        const double distance = in.get<double>();
        const auto* from = blocks.record<SurveyPoint>();
        auto* out = blocks.record<SurveyPoint>();
        if (!blocks.ok) {
            return -1;
        }
        return qs_polar_point(from, azimuth, distance, out);
    }
    case JOIN: {
        const auto* from = blocks.record<SurveyPoint>();
        const auto* to = blocks.record<SurveyPoint>();
        auto* out = blocks.record<qs_join_result>();
        if (!blocks.ok) {
            return -1;
        }
        return qs_join(from, to, out);
    }
    case POLAR_POINTS: {
        const std::size_t count = in.get<std::uint32_t>();
        const auto* from = blocks.record<SurveyPoint>();
        const auto* azimuths = blocks.records<double>(count);
        const auto* distances = blocks.records<double>(count);
        auto* x = blocks.records<double>(count);
        auto* y = blocks.records<double>(count);
        if (!blocks.ok) {
            return -1;
        }
        return qs_polar_points(from, azimuths, distances, count, x, y);
    }
    case JOINS: {
        const std::size_t count = in.get<std::uint32_t>();
        const auto* from = blocks.record<SurveyPoint>();
        const auto* x = blocks.records<double>(count);
        const auto* y = blocks.records<double>(count);
        auto* azimuths = blocks.records<double>(count);
        auto* distances = blocks.records<double>(count);
        if (!blocks.ok) {
            return -1;
        }
        return qs_joins(from, x, y, count, azimuths, distances);
    }
    case ALIGNMENT_LOCATE_MANY: {
        const std::size_t count = in.get<std::uint32_t>();
        const Alignment a = read_alignment(in, blocks);
        const auto* x = blocks.records<double>(count);
        const auto* y = blocks.records<double>(count);
        auto* chainages = blocks.records<double>(count);
        auto* offsets = blocks.records<double>(count);
        if (!blocks.ok) {
            return -1;
        }
        return qs_alignment_locate_many(a.table, a.record_count, x, y, count, chainages, offsets);
    }
    default: return -1;
    }
}

// ---- seeds -----------------------------------------------------------------

std::vector<std::uint8_t> with_function(SurveyFunction function, const Writer& body)
{
    Writer out;
    out.put(static_cast<std::uint8_t>(function));
    out.put(body.bytes().data(), body.bytes().size());
    return out.bytes();
}

template <typename T> void put_zeros(Writer& out, std::size_t count)
{
    const std::vector<std::uint8_t> zeros(count * sizeof(T), 0);
    out.put(zeros.data(), zeros.size());
}

// Azimuth in arc-seconds, [0, 1296000), of the direction from one plan
// position to another.
double azimuth(double x0, double y0, double x1, double y1)
{
    const double a = std::atan2(y1 - y0, x1 - x0) * QS_RHO_SEC;
    return a < 0.0 ? a + 1296000.0 : a;
}

Writer free_station_seed()
{
    const double sx = 1000.0, sy = 2000.0, sh = 50.0, orientation = 123456.0;
    const double points[][3] = {{1100.0, 2010.0, 52.0},
                                {990.0, 2150.0, 49.0},
                                {850.0, 1980.0, 55.0},
                                {1020.0, 1870.0, 51.0}};
    const std::uint32_t count = 4;
    qs_free_station_options options = {1.5, 1.0, 1.0, 1.0, 1.5, 0.13, QS_EARTH_RADIUS, 3.29, 1, 20};
    Writer w;
    w.put(count);
    w.put(options);
    for (const auto& p : points) {
        const double dx = p[0] - sx, dy = p[1] - sy;
        const double horizontal = std::hypot(dx, dy);
        const double dh = p[2] + 1.7 - (sh + options.instrument_height);
        const double zenith = std::atan2(horizontal, dh) * QS_RHO_SEC;
        double direction = azimuth(sx, sy, p[0], p[1]) - orientation;
        direction = direction < 0.0 ? direction + 1296000.0 : direction;
        const qs_sighting s = {p[0],   p[1], p[2], direction, std::hypot(horizontal, dh),
                               zenith, 1.7,  1,    1};
        w.put(s);
    }
    put_zeros<qs_free_station_result>(w, 1);
    put_zeros<qs_sighting_result>(w, count);
    return w;
}

Writer traverse_seed(std::int32_t kind, std::int32_t height_rule)
{
    // Due east from A in legs of 100 m; B due south of A, E's foresight due
    // north of E. A loop turns round a square instead.
    const std::uint32_t legs = kind == QS_TRAVERSE_LOOP ? 4 : 3;
    const qs_traverse_ends ends = {
        {0.0, 0.0, 10.0}, {-100.0, 0.0, 0.0}, {0.0, 300.0, 11.5}, {100.0, 300.0, 0.0}};
    Writer w;
    w.put(kind);
    w.put(legs);
    w.put(std::int32_t{QS_COMPASS_RULE});
    w.put(height_rule);
    w.put(ends);
    for (std::uint32_t i = 0; i <= legs; ++i) {
        qs_traverse_station s = {648000.0 + 0.5, 100.0 + 0.002 * i, 0.5};
        if (i == 0) {
            s.angle = 972000.0; // from B round to the east
        }
        if (kind == QS_TRAVERSE_LOOP && i > 0) {
            s.angle = 972000.0; // square, turning right
        }
        w.put(s);
    }
    put_zeros<qs_traverse_result>(w, 1);
    put_zeros<SurveyPoint>(w, legs + 1);
    return w;
}

Writer transition_seed()
{
    const qs_transition curve = {100.0, 200.0, 300000.0, 0.0, 1.0 / 250.0, 120.0};
    Writer w;
    w.put(60.0);
    w.put(curve);
    put_zeros<qs_pose>(w, 1);
    return w;
}

void put_alignment(Writer& w, AlignmentSource source)
{
    std::vector<HElement> table = qtest::sample_road_elements();
    table.push_back(HElement{});
    w.put(static_cast<std::uint32_t>(table.size()));
    w.put(static_cast<std::uint8_t>(source));
    w.put(table.data(), table.size() * sizeof(HElement));
}

// The sample profile, built by the device's builder.
void put_profile(Writer& w)
{
    const std::vector<VElement> table = qtest::sample_profile_elements();
    w.put(static_cast<std::uint32_t>(table.size()));
    w.put(std::uint8_t{1});
    w.put(table.data(), table.size() * sizeof(VElement));
}

} // namespace

bool run_survey_call(const std::uint8_t* data, std::size_t size, std::size_t& function, int& status)
{
    if (size == 0) {
        return false;
    }
    Reader in(data, size);
    function = in.get<std::uint8_t>() % SURVEY_FUNCTIONS;
    Blocks blocks(in);
    status = call(function, in, blocks);
    return blocks.ok;
}

std::vector<Seed> survey_seeds()
{
    std::vector<Seed> seeds;
    const auto add = [&seeds](const char* name, SurveyFunction function, const Writer& body) {
        seeds.push_back({name, with_function(function, body)});
    };
    Writer w;
    w.put(std::int32_t{QS_SINGULAR});
    add("status_message", STATUS_MESSAGE, w);
    add("free_station", FREE_STATION, free_station_seed());
    add("traverse_link", TRAVERSE_ADJUST, traverse_seed(QS_TRAVERSE_LINK, QS_HEIGHTS_BY_LENGTH));
    add("traverse_loop", TRAVERSE_ADJUST, traverse_seed(QS_TRAVERSE_LOOP, QS_HEIGHTS_NONE));
    add("traverse_known_ends", TRAVERSE_ADJUST,
        traverse_seed(QS_TRAVERSE_KNOWN_ENDS, QS_HEIGHTS_BY_LENGTH_SQUARED));
    add("transition_point", TRANSITION_POINT, transition_seed());

    const std::vector<HElement> elements = qtest::sample_road_elements();
    w = Writer();
    w.put(static_cast<std::uint32_t>(elements.size() + 1));
    w.put(std::uint8_t{0});
    w.put(elements.data(), elements.size() * sizeof(HElement));
    put_zeros<HElement>(w, elements.size() + 1);
    add("alignment_build", ALIGNMENT_BUILD, w);

    const AlignmentSource sources[] = {BUILT, BUILT_BY_DEVICE};
    for (const AlignmentSource source : sources) {
        const std::string by = source == BUILT ? "_built" : "_built_by_device";
        w = Writer();
        w.put(1300.0);
        w.put(-4.5);
        put_alignment(w, source);
        put_zeros<qs_station_offset>(w, 1);
        add(("alignment_point" + by).c_str(), ALIGNMENT_POINT, w);

        w = Writer();
        w.put(5000.0 + 250.0);
        w.put(3000.0 + 180.0);
        put_alignment(w, source);
        put_zeros<qs_station_offset>(w, 1);
        add(("alignment_locate" + by).c_str(), ALIGNMENT_LOCATE, w);

        w = Writer();
        put_alignment(w, source);
        put_zeros<qs_joint>(w, elements.size());
        add(("alignment_joints" + by).c_str(), ALIGNMENT_JOINTS, w);

        w = Writer();
        put_alignment(w, source);
        put_profile(w);
        const SurveyPoint measured = {5000.0 + 250.0, 3000.0 + 180.0, 125.0};
        w.put(measured);
        put_zeros<qs_design_check>(w, 1);
        add(("road_check" + by).c_str(), ROAD_CHECK, w);
    }

    w = Writer();
    w.put(1180.0);
    put_profile(w);
    put_zeros<qs_profile_point>(w, 1);
    add("profile_height", PROFILE_HEIGHT, w);

    const SurveyPoint station = {5060.0, 3110.0, 120.0};
    w = Writer();
    w.put(216000.5);
    w.put(42.0);
    w.put(station);
    put_zeros<SurveyPoint>(w, 1);
    add("polar_point", POLAR_POINT, w);

    w = Writer();
    w.put(station);
    const SurveyPoint target = {5100.0, 3150.0, 121.0};
    w.put(target);
    put_zeros<qs_join_result>(w, 1);
    add("join", JOIN, w);

    const double azimuths[] = {0.0, 324000.0, 700000.25};
    const double distances[] = {25.0, 40.0, 0.001};
    const double xs[] = {5250.0, 5100.0, 4990.0};
    const double ys[] = {3180.0, 3150.0, 3001.0};
    w = Writer();
    w.put(std::uint32_t{3});
    w.put(station);
    w.put(azimuths);
    w.put(distances);
    put_zeros<double>(w, 6);
    add("polar_points", POLAR_POINTS, w);

    w = Writer();
    w.put(std::uint32_t{3});
    w.put(station);
    w.put(xs);
    w.put(ys);
    put_zeros<double>(w, 6);
    add("joins", JOINS, w);

    w = Writer();
    w.put(std::uint32_t{3});
    put_alignment(w, BUILT);
    w.put(xs);
    w.put(ys);
    put_zeros<double>(w, 6);
    add("alignment_locate_many", ALIGNMENT_LOCATE_MANY, w);
    return seeds;
}

} // namespace qfuzz
