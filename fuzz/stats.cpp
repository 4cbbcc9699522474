// Calls per function of a fuzz target (stats.hpp).
#include "stats.hpp"

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace qfuzz {

namespace {

constexpr int STATUSES = 8; // 0 to 6, and any other value

struct FunctionStats {
    unsigned long long calls = 0;
    unsigned long long not_run = 0;
    unsigned long long by_status[STATUSES] = {};
};

const char* const* function_names = nullptr;
std::vector<FunctionStats>* stats = nullptr;

void write_stats()
{
    std::FILE* out = std::fopen(std::getenv("QUILLON_FUZZ_STATS"), "w");
    if (out == nullptr) {
        return;
    }
    std::fprintf(out, "%-34s %12s %9s  %s\n", "function", "calls", "not run",
                 "calls by status 0 1 2 3 4 5 6 other");
    for (std::size_t i = 0; i < stats->size(); ++i) {
        const FunctionStats& s = (*stats)[i];
        std::fprintf(out, "%-34s %12llu %9llu ", function_names[i], s.calls, s.not_run);
        for (const unsigned long long count : s.by_status) {
            std::fprintf(out, " %llu", count);
        }
        std::fprintf(out, "\n");
    }
    std::fclose(out);
}

} // namespace

void count_calls(const char* const* names, std::size_t count)
{
    if (std::getenv("QUILLON_FUZZ_STATS") == nullptr || stats != nullptr) {
        return;
    }
    function_names = names;
    stats = new std::vector<FunctionStats>(count);
    std::atexit(write_stats);
}

void called(std::size_t index, int status)
{
    if (stats != nullptr) {
        FunctionStats& s = (*stats)[index];
        ++s.calls;
        ++s.by_status[status >= 0 && status < STATUSES - 1 ? status : STATUSES - 1];
    }
}

void not_run(std::size_t index)
{
    if (stats != nullptr) {
        ++(*stats)[index].not_run;
    }
}

} // namespace qfuzz
