// quillon_bench: every exported function of the device library against its
// floor, the survey layer and the office tool, as one table.
//
//   quillon_bench [--cases N] [--save FILE] [--before FILE] [--instructions]
//                 [Google Benchmark options]
//
// Every function runs on up to N realistic cases (64 when not given) from
// the generators of the platform harness. Its benchmark alternates, chunk by
// chunk, between the function and its floor (floors.hpp) on the same cases,
// so that both see the same load; the ratio is the median of the ratios of
// neighbouring chunks. The table at the end gives time per call and the
// floor's (medians over the chunks), the ratio and its spread (half the
// interquartile range of the chunk ratios, over their median), each the
// median over the repetitions.
//
// --save FILE    writes the rows as comma-separated values.
// --before FILE  adds the ratios of an earlier --save as a column.
// --instructions counts instructions instead of timing (run it under
//                valgrind --tool=callgrind; bench/instructions.py reads the
//                counts): every function and its floor once over the cases.
#include "cases.hpp"
#include "floors.hpp"
#include "measure.hpp"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#if QUILLON_BENCH_CALLGRIND
#include <valgrind/callgrind.h>
#endif

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

// A function of the library with its cases and floor.
struct Pair {
    CaseSet set;
    const Floor* floor = nullptr;
    std::vector<Hint> hints;
    int reps = 1; // passes over the cases per timed chunk
};

// Called through a pointer, so that a floor is reached by two calls as the
// function is (the harness's call, then the function).
__attribute__((noinline)) double call_floor(FloorFn floor, void* const* args, const Hint& hint)
{
    return floor(args, hint);
}
double (*volatile floor_caller)(FloorFn, void* const*, const Hint&) = call_floor;

double time_function(const Pair& p)
{
    const qv_function* fn = p.set.fn;
    const qv_fn address = p.set.address;
    const auto start = Clock::now();
    for (int r = 0; r < p.reps; ++r) {
        for (const auto& c : p.set.cases) {
            int status = fn->invoke(address, c->args);
            benchmark::DoNotOptimize(status);
        }
    }
    const auto stop = Clock::now();
    return std::chrono::duration<double>(stop - start).count();
}

double time_floor(const Pair& p)
{
    const FloorFn floor = p.floor->floor;
    const auto caller = floor_caller;
    const size_t n = p.set.cases.size();
    const auto start = Clock::now();
    for (int r = 0; r < p.reps; ++r) {
        for (size_t i = 0; i < n; ++i) {
            double value = caller(floor, p.set.cases[i]->args, p.hints[i]);
            benchmark::DoNotOptimize(value);
        }
    }
    const auto stop = Clock::now();
    return std::chrono::duration<double>(stop - start).count();
}

// Chunks of about 20 microseconds: long against the clock's own cost, short
// against a burst of load from elsewhere.
constexpr double CHUNK_SECONDS = 20e-6;

void calibrate(Pair& p)
{
    p.reps = 1;
    double once = 1.0;
    for (int k = 0; k < 5; ++k) {
        once = std::min(once, std::min(time_function(p), time_floor(p)));
    }
    if (once > 0.0 && once < CHUNK_SECONDS) {
        p.reps = static_cast<int>(std::ceil(CHUNK_SECONDS / once));
    }
}

void run_pair(benchmark::State& state, Pair* p)
{
    std::vector<double> function_chunks;
    std::vector<double> floor_chunks;
    std::vector<double> ratios;
    bool floor_first = false;
    for (auto _ : state) {
        double t_function = 0.0;
        double t_floor = 0.0;
        if (floor_first) {
            t_floor = time_floor(*p);
            t_function = time_function(*p);
        } else {
            t_function = time_function(*p);
            t_floor = time_floor(*p);
        }
        floor_first = !floor_first;
        state.SetIterationTime(t_function);
        function_chunks.push_back(t_function);
        floor_chunks.push_back(t_floor);
        ratios.push_back(t_floor > 0.0 ? t_function / t_floor : 0.0);
    }
    const double calls = static_cast<double>(p->reps) * static_cast<double>(p->set.cases.size());
    const double ns = median(function_chunks) / calls * 1e9;
    const double floor_ns = median(floor_chunks) / calls * 1e9;
    set_counter(state, NS_PER_CALL, ns);
    set_counter(state, FLOOR_NS_PER_CALL, floor_ns);
    // The ratio of each chunk to its neighbour of the other kind: a change of
    // load between chunks moves both.
    set_counter(state, RATIO, median(ratios));
    set_counter(state, SPREAD, relative_spread(ratios));
    set_counter(state, CASES, static_cast<double>(p->set.cases.size()));
}

// ---- the table ------------------------------------------------------------------

struct Row {
    std::string name;
    double cases = 0.0;
    std::vector<double> ns;
    std::vector<double> floor_ns;
    std::vector<double> ratio;
    std::vector<double> spread;
};

struct Before {
    double ratio = 0.0;
    double ns = 0.0;
};

class TableReporter : public benchmark::BenchmarkReporter {
  public:
    TableReporter(std::map<std::string, std::string> floor_calls,
                  std::map<std::string, Before> before, std::string save_path)
        : floor_calls_(std::move(floor_calls)), before_(std::move(before)),
          save_path_(std::move(save_path))
    {
    }

    bool ReportContext(const Context& context) override
    {
        std::printf("quillon_bench: %d CPU(s) at %.0f MHz; each function alternates with its "
                    "floor on the same cases\n",
                    context.cpu_info.num_cpus, context.cpu_info.cycles_per_second / 1e6);
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) {
                continue;
            }
            const std::string name = run.run_name.function_name;
            Row& row = row_of(name);
            row.cases = counter(run, CASES);
            row.ns.push_back(counter(run, NS_PER_CALL));
            if (run.counters.count(RATIO) != 0) {
                row.floor_ns.push_back(counter(run, FLOOR_NS_PER_CALL));
                row.ratio.push_back(counter(run, RATIO));
                row.spread.push_back(counter(run, SPREAD));
            }
            std::fprintf(stderr, "  %-36s %10.1f ns\n", name.c_str(), counter(run, NS_PER_CALL));
        }
    }

    void Finalize() override
    {
        print_table();
        if (!save_path_.empty()) {
            save();
        }
    }

  private:
    static double counter(const Run& run, const char* name)
    {
        const auto it = run.counters.find(name);
        return it == run.counters.end() ? 0.0 : static_cast<double>(it->second.value);
    }

    Row& row_of(const std::string& name)
    {
        for (Row& row : rows_) {
            if (row.name == name) {
                return row;
            }
        }
        rows_.push_back(Row{});
        rows_.back().name = name;
        return rows_.back();
    }

    static std::string time_text(double ns)
    {
        char text[32];
        if (ns >= 1e6) {
            std::snprintf(text, sizeof text, "%.2f ms", ns / 1e6);
        } else if (ns >= 1e4) {
            std::snprintf(text, sizeof text, "%.1f us", ns / 1e3);
        } else {
            std::snprintf(text, sizeof text, "%.1f ns", ns);
        }
        return text;
    }

    void print_table() const
    {
        const bool with_before = !before_.empty();
        std::printf("\n%-34s %5s %10s %10s %7s %5s", "function", "cases", "time/call", "floor",
                    "ratio", "+-%");
        if (with_before) {
            std::printf(" %7s %7s", "before", "change");
        }
        std::printf("  floor calls\n");
        std::vector<double> ratios;
        std::vector<double> before_ratios;
        for (const Row& row : rows_) {
            const double ns = median(row.ns);
            std::printf("%-34s %5.0f %10s", row.name.c_str(), row.cases, time_text(ns).c_str());
            if (row.ratio.empty()) {
                std::printf(" %10s %7s %5s", "", "", "");
            } else {
                const double ratio = median(row.ratio);
                ratios.push_back(ratio);
                std::printf(" %10s %7.2f %5.1f", time_text(median(row.floor_ns)).c_str(), ratio,
                            100.0 * median(row.spread));
            }
            if (with_before) {
                const auto it = before_.find(row.name);
                if (it == before_.end()) {
                    std::printf(" %7s %7s", "", "");
                } else if (row.ratio.empty()) {
                    std::printf(" %7s %+6.0f%%", time_text(it->second.ns).c_str(),
                                100.0 * (ns / it->second.ns - 1.0));
                } else {
                    before_ratios.push_back(it->second.ratio);
                    std::printf(" %7.2f %+6.0f%%", it->second.ratio,
                                100.0 * (median(row.ratio) / it->second.ratio - 1.0));
                }
            }
            const auto calls = floor_calls_.find(row.name);
            std::printf("  %s\n", calls == floor_calls_.end() ? "" : calls->second.c_str());
        }
        if (!ratios.empty()) {
            std::printf("\nmedian ratio over %zu functions: %.2f", ratios.size(), median(ratios));
            if (!before_ratios.empty()) {
                std::printf(" (before: %.2f)", median(before_ratios));
            }
            std::printf("\n");
        }
        std::printf("ratio: time of the function over the time of its floor, the calls to the "
                    "mathematical\nlibrary it must make; +-%%: spread of the ratio over the "
                    "timed chunks\n");
    }

    void save() const
    {
        std::ofstream file(save_path_);
        file << "function,cases,ns,floor_ns,ratio,spread\n";
        for (const Row& row : rows_) {
            file << row.name << ',' << row.cases << ',' << median(row.ns) << ','
                 << median(row.floor_ns) << ',' << median(row.ratio) << ',' << median(row.spread)
                 << '\n';
        }
        if (!file) {
            std::fprintf(stderr, "quillon_bench: cannot write %s\n", save_path_.c_str());
        }
    }

    std::vector<Row> rows_;
    std::map<std::string, std::string> floor_calls_;
    std::map<std::string, Before> before_;
    std::string save_path_;
};

std::map<std::string, Before> read_before(const std::string& path)
{
    std::map<std::string, Before> before;
    std::ifstream file(path);
    if (!file) {
        std::fprintf(stderr, "quillon_bench: cannot read %s\n", path.c_str());
        return before;
    }
    std::string line;
    std::getline(file, line);
    while (std::getline(file, line)) {
        std::stringstream fields(line);
        std::string name, cases, ns, floor_ns, ratio;
        std::getline(fields, name, ',');
        std::getline(fields, cases, ',');
        std::getline(fields, ns, ',');
        std::getline(fields, floor_ns, ',');
        std::getline(fields, ratio, ',');
        before[name] = Before{std::atof(ratio.c_str()), std::atof(ns.c_str())};
    }
    return before;
}

std::vector<Pair> load_pairs(int wanted)
{
    std::vector<Pair> pairs;
    for (size_t i = 0; i < qv_function_count; ++i) {
        const qv_function* fn = &qv_functions[i];
        Pair p;
        p.floor = find_floor(fn->name);
        const qv_fn address = library_symbol(fn->name);
        if (p.floor == nullptr || address == nullptr) {
            std::fprintf(stderr, "quillon_bench: no floor or address for %s\n", fn->name);
            continue;
        }
        p.set = realistic_cases(fn, address, wanted, 200 * wanted);
        if (p.set.cases.empty()) {
            std::fprintf(stderr, "quillon_bench: no realistic case of %s in %d tried\n", fn->name,
                         p.set.tried);
            continue;
        }
        for (const auto& c : p.set.cases) {
            p.hints.push_back(p.floor->hint != nullptr ? p.floor->hint(c->args) : Hint{});
        }
        pairs.push_back(std::move(p));
    }
    return pairs;
}

// Under callgrind: each function over its cases, then its floor, each
// between two dumps of the counts.
int count_instructions(std::vector<Pair>& pairs)
{
#if QUILLON_BENCH_CALLGRIND
    if (!RUNNING_ON_VALGRIND) {
        std::fprintf(stderr, "quillon_bench --instructions: run it under valgrind "
                             "--tool=callgrind (cmake --build build --target "
                             "bench_instructions)\n");
        return 1;
    }
    for (Pair& p : pairs) {
        p.reps = 4;
        const std::string name = p.set.fn->name;
        const std::string calls = std::to_string(p.reps * p.set.cases.size());
        const std::string function_label = "function " + name + " " + calls;
        const std::string floor_label = "floor " + name + " " + calls;
        CALLGRIND_ZERO_STATS;
        time_function(p);
        CALLGRIND_DUMP_STATS_AT(function_label.c_str());
        time_floor(p);
        CALLGRIND_DUMP_STATS_AT(floor_label.c_str());
    }
    return 0;
#else
    (void)pairs;
    std::fprintf(stderr, "quillon_bench: built without valgrind/callgrind.h\n");
    return 1;
#endif
}

} // namespace

} // namespace bench

int main(int argc, char** argv)
{
    using namespace bench;
    int wanted = 64;
    std::string save_path;
    std::string before_path;
    bool instructions = false;
    // Our own options out, the defaults of Google Benchmark in where not given.
    std::vector<char*> args;
    args.push_back(argv[0]);
    bool has_min_time = false;
    bool has_repetitions = false;
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--cases" && i + 1 < argc) {
            wanted = std::atoi(argv[++i]);
        } else if (a == "--save" && i + 1 < argc) {
            save_path = argv[++i];
        } else if (a == "--before" && i + 1 < argc) {
            before_path = argv[++i];
        } else if (a == "--instructions") {
            instructions = true;
        } else {
            has_min_time = has_min_time || a.rfind("--benchmark_min_time", 0) == 0;
            has_repetitions = has_repetitions || a.rfind("--benchmark_repetitions", 0) == 0;
            args.push_back(argv[i]);
        }
    }
    static char min_time[] = "--benchmark_min_time=0.1";
    static char repetitions[] = "--benchmark_repetitions=3";
    if (!has_min_time) {
        args.push_back(min_time);
    }
    if (!has_repetitions) {
        args.push_back(repetitions);
    }

    std::vector<Pair> pairs = load_pairs(wanted);
    if (instructions) {
        return count_instructions(pairs);
    }

    std::map<std::string, std::string> floor_calls;
    for (Pair& p : pairs) {
        calibrate(p);
        floor_calls[p.set.fn->name] = p.floor->calls;
        benchmark::RegisterBenchmark(p.set.fn->name, run_pair, &p)->UseManualTime();
    }
    register_survey_benchmarks();
    register_tool_benchmarks();

    int count = static_cast<int>(args.size());
    args.push_back(nullptr);
    benchmark::Initialize(&count, args.data());
    if (benchmark::ReportUnrecognizedArguments(count, args.data())) {
        return 1;
    }
    TableReporter reporter(floor_calls,
                           before_path.empty() ? std::map<std::string, Before>{}
                                               : read_before(before_path),
                           save_path);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
