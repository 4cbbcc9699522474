// Realistic cases of the exported functions: inputs from the generators of
// the platform harness, kept when the function succeeds on them and every
// number it reads lies in the survey range. Each case owns its blocks and
// the bound arguments, so that a benchmark calls the function again and
// again on the same inputs.
#ifndef QUILLON_BENCH_CASES_HPP
#define QUILLON_BENCH_CASES_HPP

#include "qv.h"

#include <memory>
#include <string>
#include <vector>

namespace bench {

// One case, bound: the arguments point into the case's own blocks.
struct Case {
    int index = 0;
    std::vector<unsigned char> in;
    std::vector<unsigned char> out;
    std::vector<unsigned char> scratch;
    void* args[QV_MAX_ARGS] = {};
};

struct CaseSet {
    const qv_function* fn = nullptr;
    qv_fn address = nullptr;
    std::vector<std::unique_ptr<Case>> cases;
    int tried = 0; // generator indices looked at
};

// Up to `wanted` realistic cases of the function, from generator indices 0,
// 1, 2, ... (indices beyond the reference's cases are new inputs of the same
// kinds; the reference itself is not touched). At most `attempts` indices
// are tried.
CaseSet realistic_cases(const qv_function* fn, qv_fn address, int wanted, int attempts);

// The library's own address of an exported function, or nullptr.
qv_fn library_symbol(const char* name);

} // namespace bench

#endif
