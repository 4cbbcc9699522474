// Concurrent use: every reentrant function of the device library and every
// function of the survey layer called from four threads at once on shared,
// read-only inputs. Each thread's results must be those of a run on one
// thread; built with ThreadSanitizer (QUILLON_SANITIZE_THREAD) the run must
// also draw no report.
//
// The device functions run the cases of the platform client's input
// generators (the table of functions, cmake/QuillonHarness.cmake). LIB_RESA2D
// is left out: it writes two module-level doubles, so it is not reentrant.
#include "check.hpp"

#include "qv.h"
#include "sample_road.hpp"

#include <quillon/survey.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int THREADS = 4;
constexpr int ROUNDS = 3;
constexpr int DEVICE_CASES = 24; // per function

// Runs work(t) on THREADS threads at once, t = 0 .. THREADS - 1.
void on_threads(const std::function<void(int)>& work)
{
    std::vector<std::thread> threads;
    for (int t = 0; t < THREADS; ++t) {
        threads.emplace_back(work, t);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

// ---- device functions ---------------------------------------------------------

bool reentrant(const qv_function& fn) { return std::strcmp(fn.name, "LIB_RESA2D") != 0; }

// One case of one function: its input block, shared by every thread, and
// what a run on one thread gave.
struct DeviceCase {
    const qv_function* fn;
    int index;
    std::vector<unsigned char> in;
    int status;
    std::vector<unsigned char> out;
};

// The fields of a function's output block that hold results (its padding
// may hold whatever a record copy carried).
std::vector<qv_field> result_fields(const qv_function& fn)
{
    char error[200];
    std::size_t count = 0;
    qv_field* fields = qv_parse_layout(fn.out_layout, fn.out_size, &count, error, sizeof error);
    std::vector<qv_field> kept;
    for (std::size_t i = 0; fields != nullptr && i < count; ++i) {
        if (fields[i].type != 'x') {
            kept.push_back(fields[i]);
        }
    }
    std::free(fields);
    return kept;
}

// Runs a case on the calling thread into `out`; its status.
int run(const DeviceCase& c, std::vector<unsigned char>& out, std::vector<unsigned char>& scratch)
{
    void* args[QV_MAX_ARGS];
    qv_bind(c.fn, c.in.data(), out.data(), scratch.data(), args);
    return qv_call(c.fn, qv_symbol(c.fn->name), c.in.data(), args, out.data());
}

// A result that differs from the one-thread run.
struct Difference {
    const DeviceCase* c;
    std::string field;
};

std::vector<DeviceCase> device_cases()
{
    std::vector<DeviceCase> cases;
    std::vector<unsigned char> scratch(qv_largest_scratch());
    for (std::size_t f = 0; f < qv_function_count; ++f) {
        const qv_function& fn = qv_functions[f];
        if (!reentrant(fn)) {
            continue;
        }
        for (int k = 0; k < DEVICE_CASES && k < fn.cases; ++k) {
            DeviceCase c{&fn, k, std::vector<unsigned char>(qv_largest_block()), 0,
                         std::vector<unsigned char>(qv_largest_block())};
            qv_generate(&fn, k, c.in.data());
            c.status = run(c, c.out, scratch);
            cases.push_back(std::move(c));
        }
    }
    return cases;
}

// Runs the cases on THREADS threads at once, each ROUNDS times over, every
// thread starting a quarter further on; what differed from the one-thread
// run, by thread.
std::vector<std::vector<Difference>>
run_on_threads(const std::vector<const DeviceCase*>& batch,
               const std::vector<std::vector<qv_field>>& fields)
{
    std::vector<std::vector<Difference>> differences(THREADS);
    on_threads([&](int t) {
        std::vector<unsigned char> out(qv_largest_block());
        std::vector<unsigned char> scratch(qv_largest_scratch());
        const std::size_t n = batch.size();
        for (std::size_t step = 0; step < ROUNDS * n; ++step) {
            const DeviceCase& c = *batch[(step + t * n / THREADS) % n];
            const int status = run(c, out, scratch);
            if (status != c.status) {
                differences[t].push_back({&c, "status"});
                continue;
            }
            for (const qv_field& field : fields[c.fn - qv_functions]) {
                if (std::memcmp(out.data() + field.offset, c.out.data() + field.offset,
                                field.size) != 0) {
                    differences[t].push_back({&c, field.name});
                }
            }
        }
    });
    return differences;
}

TEST(Concurrency, ReentrantDeviceFunctionsOnFourThreads)
{
    const std::vector<DeviceCase> cases = device_cases();
    std::vector<std::vector<qv_field>> fields(qv_function_count);
    std::size_t functions = 0;
    for (std::size_t f = 0; f < qv_function_count; ++f) {
        fields[f] = result_fields(qv_functions[f]);
        ASSERT_FALSE(fields[f].empty()) << qv_functions[f].name << ": output layout unreadable";
        functions += reentrant(qv_functions[f]) ? 1 : 0;
    }
    EXPECT_EQ(functions, qv_function_count - 1);
    EXPECT_EQ(cases.size(), functions * DEVICE_CASES); // every generator has as many

    // First every function on its own, all threads on its cases: the
    // sanitizer sees two threads' accesses to any state the function keeps
    // close together, within the history it holds of each thread. Then all
    // cases mixed, different functions overlapping.
    std::vector<std::vector<const DeviceCase*>> batches;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        if (i == 0 || cases[i].fn != cases[i - 1].fn) {
            batches.emplace_back();
        }
        batches.back().push_back(&cases[i]);
    }
    batches.emplace_back();
    for (const DeviceCase& c : cases) {
        batches.back().push_back(&c);
    }
    for (const auto& batch : batches) {
        const auto differences = run_on_threads(batch, fields);
        for (int t = 0; t < THREADS; ++t) {
            for (const Difference& d : differences[t]) {
                ADD_FAILURE() << d.c->fn->name << ", case " << d.c->index << ", " << d.field
                              << ": thread " << t << " differs from the run on one thread";
            }
        }
    }
}

// ---- survey functions -----------------------------------------------------------

// The bytes of an output record without padding.
template <typename T> std::vector<unsigned char> bytes_of(const T& record)
{
    const auto* p = reinterpret_cast<const unsigned char*>(&record);
    return std::vector<unsigned char>(p, p + sizeof record);
}

// A position ends in a size_t, which on 32-bit targets leaves four bytes of
// padding that hold nothing: its fields are compared instead.
std::vector<unsigned char> bytes_of(const qs_station_offset& position)
{
    const double values[] = {position.chainage, position.offset,   position.x,       position.y,
                             position.azimuth,  position.centre_x, position.centre_y};
    std::vector<unsigned char> out = bytes_of(values);
    const std::vector<unsigned char> element = bytes_of(std::uint64_t{position.element});
    out.insert(out.end(), element.begin(), element.end());
    return out;
}

std::vector<unsigned char> bytes_of(const qs_design_check& check)
{
    std::vector<unsigned char> out = bytes_of(check.position);
    const double values[] = {check.design_height, check.cut_fill};
    const std::vector<unsigned char> heights = bytes_of(values);
    out.insert(out.end(), heights.begin(), heights.end());
    return out;
}

// The bytes of an array of doubles.
std::vector<unsigned char> bytes_of_values(const std::vector<double>& values)
{
    const auto* p = reinterpret_cast<const unsigned char*>(values.data());
    return std::vector<unsigned char>(p, p + values.size() * sizeof(double));
}

// The fields of element records, which have padding.
std::vector<unsigned char> bytes_of_table(const std::vector<HElement>& table)
{
    std::vector<unsigned char> out;
    for (const HElement& e : table) {
        const double values[] = {e.X, e.Y, e.Azimuth, e.Length, e.Radius, e.Chainage};
        const auto* p = reinterpret_cast<const unsigned char*>(values);
        out.insert(out.end(), p, p + sizeof values);
        out.push_back(e.Type);
        out.push_back(e.Turn);
        out.push_back(e.Spiral);
    }
    return out;
}

// A call of a survey function on the shared inputs: its status followed by
// the bytes of what it wrote.
struct SurveyCall {
    std::string name;
    std::function<std::vector<unsigned char>()> run;
};

template <typename T> T sentinel() { return qtest::sentinel_filled<T>(); }

std::vector<unsigned char> with_status(int status, std::vector<unsigned char> bytes)
{
    bytes.insert(bytes.begin(), static_cast<unsigned char>(status));
    return bytes;
}

// The shared inputs: a free station, a link traverse, a transition curve,
// an alignment (line, transitions and arc) with its profile.
struct SurveyInputs {
    std::vector<qs_sighting> sightings;
    qs_free_station_options options = {
        1.55, 1.0, 1.5, 1.0, 1.5, 0.13, QS_EARTH_RADIUS, QS_BLUNDER_THRESHOLD, 1, 20};
    qs_traverse_ends ends = {
        {0.0, 0.0, 10.0}, {-100.0, 0.0, 0.0}, {0.02, 400.0, 12.0}, {100.0, 400.0, 0.0}};
    std::vector<qs_traverse_station> legs;
    qs_transition curve = {100.0, 200.0, 300000.0, 0.0, 1.0 / 250.0, 120.0};
    std::vector<HElement> elements;
    std::vector<HElement> alignment;
    std::vector<VElement> profile;

    SurveyInputs()
    {
        // Station at (1000, 2000, 50), circle zero at 30 degrees; six points
        // around it, the last with a direction only.
        const double station[] = {1000.0, 2000.0, 50.0};
        const double orientation = 108000.0;
        const double points[][3] = {{1120.0, 2015.0, 52.0}, {990.0, 2170.0, 49.0},
                                    {860.0, 1975.0, 55.0},  {1030.0, 1860.0, 51.0},
                                    {1200.0, 2200.0, 60.0}, {800.0, 2300.0, 45.0}};
        for (const auto& p : points) {
            const double dx = p[0] - station[0], dy = p[1] - station[1];
            const double horizontal = std::hypot(dx, dy);
            const double dh = p[2] + 1.7 - station[2] - options.instrument_height;
            double direction = std::atan2(dy, dx) * QS_RHO_SEC - orientation;
            direction = direction < 0.0 ? direction + 1296000.0 : direction;
            const double zenith = std::atan2(horizontal, dh) * QS_RHO_SEC;
            sightings.push_back(
                {p[0], p[1], p[2], direction + 0.7, std::hypot(horizontal, dh), zenith, 1.7, 1, 1});
        }
        sightings.back().has_distance = 0;

        // Four legs east from A, from the backsight B due south.
        for (int i = 0; i < 5; ++i) {
            legs.push_back({i == 0 ? 972000.0 + 1.0 : 648000.0 - 0.5, 100.0 + 0.001 * i, 0.5});
        }

        elements = qtest::sample_road_elements();
        alignment.assign(elements.size() + 1, HElement{});
        qs_alignment_build(elements.data(), alignment.size(), alignment.data());

        profile = qtest::sample_profile_elements();
        LIB_CalWay_V_Ele_MainPoint(profile.data(), static_cast<unsigned char>(profile.size()),
                                   profile.data());
    }
};

std::vector<SurveyCall> survey_calls(const SurveyInputs& s)
{
    std::vector<SurveyCall> calls;
    for (int status = -1; status <= 6; ++status) {
        calls.push_back({"qs_status_message", [status] {
                             const char* text = qs_status_message(static_cast<qs_status>(status));
                             return std::vector<unsigned char>(text, text + std::strlen(text));
                         }});
    }
    calls.push_back({"qs_free_station", [&s] {
                         auto result = sentinel<qs_free_station_result>();
                         std::vector<qs_sighting_result> residuals(s.sightings.size(),
                                                                   sentinel<qs_sighting_result>());
                         const int status = qs_free_station(s.sightings.data(), s.sightings.size(),
                                                            &s.options, &result, residuals.data());
                         std::vector<unsigned char> out = bytes_of(result);
                         for (const qs_sighting_result& r : residuals) {
                             const std::vector<unsigned char> b = bytes_of(r);
                             out.insert(out.end(), b.begin(), b.end());
                         }
                         return with_status(status, out);
                     }});
    for (int kind = 0; kind <= 2; ++kind) {
        calls.push_back(
            {"qs_traverse_adjust", [&s, kind] {
                 auto result = sentinel<qs_traverse_result>();
                 std::vector<SurveyPoint> adjusted(s.legs.size(), sentinel<SurveyPoint>());
                 const std::size_t legs = kind == QS_TRAVERSE_LOOP ? 3 : 4;
                 const int status = qs_traverse_adjust(kind, &s.ends, s.legs.data(), legs, kind % 2,
                                                       kind, &result, adjusted.data());
                 std::vector<unsigned char> out = bytes_of(result);
                 for (const SurveyPoint& p : adjusted) {
                     const std::vector<unsigned char> b = bytes_of(p);
                     out.insert(out.end(), b.begin(), b.end());
                 }
                 return with_status(status, out);
             }});
    }
    for (int k = 0; k <= 12; ++k) {
        calls.push_back({"qs_transition_point", [&s, k] {
                             auto pose = sentinel<qs_pose>();
                             const int status = qs_transition_point(&s.curve, 10.0 * k, &pose);
                             return with_status(status, bytes_of(pose));
                         }});
    }
    calls.push_back({"qs_alignment_build", [&s] {
                         std::vector<HElement> table(s.elements.size() + 1, sentinel<HElement>());
                         const int status =
                             qs_alignment_build(s.elements.data(), table.size(), table.data());
                         return with_status(status, bytes_of_table(table));
                     }});
    calls.push_back({"qs_alignment_joints", [&s] {
                         std::vector<qs_joint> joints(s.alignment.size() - 1, sentinel<qs_joint>());
                         const int status = qs_alignment_joints(s.alignment.data(),
                                                                s.alignment.size(), joints.data());
                         std::vector<unsigned char> out;
                         for (const qs_joint& j : joints) {
                             const std::vector<unsigned char> b = bytes_of(j);
                             out.insert(out.end(), b.begin(), b.end());
                         }
                         return with_status(status, out);
                     }});
    for (int k = 0; k <= 20; ++k) {
        const double chainage = 990.0 + 40.0 * k; // from before the start to past the end
        const double offset = 7.5 * (k % 5) - 15.0;
        calls.push_back({"qs_alignment_point", [&s, chainage, offset] {
                             auto out = sentinel<qs_station_offset>();
                             const int status = qs_alignment_point(
                                 s.alignment.data(), s.alignment.size(), chainage, offset, &out);
                             return with_status(status, bytes_of(out));
                         }});
        calls.push_back({"qs_profile_height", [&s, chainage] {
                             auto out = sentinel<qs_profile_point>();
                             const int status = qs_profile_height(s.profile.data(),
                                                                  s.profile.size(), chainage, &out);
                             return with_status(status, bytes_of(out));
                         }});
        const SurveyPoint measured = {5000.0 + 30.0 * k, 3000.0 + 25.0 * k - 100.0, 118.0 + k};
        calls.push_back({"qs_alignment_locate", [&s, measured] {
                             auto out = sentinel<qs_station_offset>();
                             const int status =
                                 qs_alignment_locate(s.alignment.data(), s.alignment.size(),
                                                     measured.X, measured.Y, &out);
                             return with_status(status, bytes_of(out));
                         }});
        calls.push_back({"qs_road_check", [&s, measured] {
                             auto out = sentinel<qs_design_check>();
                             const int status =
                                 qs_road_check(s.alignment.data(), s.alignment.size(),
                                               s.profile.data(), s.profile.size(), &measured, &out);
                             return with_status(status, bytes_of(out));
                         }});
    }
    const SurveyPoint station = {5060.0, 3110.0, 120.0};
    for (int k = 0; k < 8; ++k) {
        const double azimuth = 162000.0 * k + 0.25;
        calls.push_back({"qs_polar_point", [station, azimuth] {
                             auto out = sentinel<SurveyPoint>();
                             const int status = qs_polar_point(&station, azimuth, 42.0, &out);
                             return with_status(status, bytes_of(out));
                         }});
        const SurveyPoint target = {5000.0 + 30.0 * k, 3000.0 + 25.0 * k, 118.0 + k};
        calls.push_back({"qs_join", [station, target] {
                             auto out = sentinel<qs_join_result>();
                             const int status = qs_join(&station, &target, &out);
                             return with_status(status, bytes_of(out));
                         }});
    }
    // The batches over the measured points of the loop above, 21 at a time.
    std::vector<double> xs, ys, azimuths, distances;
    for (int k = 0; k <= 20; ++k) {
        xs.push_back(5000.0 + 30.0 * k);
        ys.push_back(3000.0 + 25.0 * k - 100.0);
        azimuths.push_back(61714.3 * k);
        distances.push_back(2.5 * k);
    }
    const auto doubles = [](const std::vector<double>& a, const std::vector<double>& b) {
        std::vector<unsigned char> out = bytes_of_values(a);
        const std::vector<unsigned char> second = bytes_of_values(b);
        out.insert(out.end(), second.begin(), second.end());
        return out;
    };
    calls.push_back({"qs_polar_points", [station, azimuths, distances, doubles] {
                         std::vector<double> x(azimuths.size(), NAN), y(azimuths.size(), NAN);
                         const int status =
                             qs_polar_points(&station, azimuths.data(), distances.data(),
                                             azimuths.size(), x.data(), y.data());
                         return with_status(status, doubles(x, y));
                     }});
    calls.push_back({"qs_joins", [station, xs, ys, doubles] {
                         std::vector<double> a(xs.size(), NAN), d(xs.size(), NAN);
                         const int status = qs_joins(&station, xs.data(), ys.data(), xs.size(),
                                                     a.data(), d.data());
                         return with_status(status, doubles(a, d));
                     }});
    calls.push_back({"qs_alignment_locate_many", [&s, xs, ys, doubles] {
                         std::vector<double> c(xs.size(), NAN), o(xs.size(), NAN);
                         const int status = qs_alignment_locate_many(
                             s.alignment.data(), s.alignment.size(), xs.data(), ys.data(),
                             xs.size(), c.data(), o.data());
                         return with_status(status, doubles(c, o));
                     }});
    return calls;
}

TEST(Concurrency, SurveyFunctionsOnFourThreads)
{
    const SurveyInputs inputs;
    const std::vector<SurveyCall> calls = survey_calls(inputs);
    std::vector<std::vector<unsigned char>> expected;
    int succeeded = 0;
    for (const SurveyCall& call : calls) {
        expected.push_back(call.run());
        succeeded += call.name == "qs_status_message" || expected.back()[0] == QS_OK ? 1 : 0;
    }
    // Most calls compute: the inputs are sound surveys, a few chainages and
    // points lie off the road.
    EXPECT_GE(succeeded, static_cast<int>(calls.size()) * 3 / 4);
    // Each function on its own, then all together, as for the device.
    std::vector<std::vector<std::size_t>> batches;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        if (i == 0 || calls[i].name != calls[i - 1].name) {
            batches.emplace_back();
        }
        batches.back().push_back(i);
    }
    batches.emplace_back();
    for (std::size_t i = 0; i < calls.size(); ++i) {
        batches.back().push_back(i);
    }
    for (const std::vector<std::size_t>& batch : batches) {
        std::vector<std::vector<std::size_t>> differences(THREADS);
        on_threads([&](int t) {
            const std::size_t n = batch.size();
            for (std::size_t step = 0; step < ROUNDS * n; ++step) {
                const std::size_t i = batch[(step + t * n / THREADS) % n];
                if (calls[i].run() != expected[i]) {
                    differences[t].push_back(i);
                }
            }
        });
        for (int t = 0; t < THREADS; ++t) {
            for (const std::size_t i : differences[t]) {
                ADD_FAILURE() << calls[i].name << ", call " << i << ": thread " << t
                              << " differs from the run on one thread";
            }
        }
    }
}

} // namespace
