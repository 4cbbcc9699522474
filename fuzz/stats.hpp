// Calls per function of a fuzz target, written at exit to the file that
// QUILLON_FUZZ_STATS names (fuzz/run.sh sets it): per function the calls
// made, the inputs not run (counts obliging the caller to provide more
// than the fuzz limit) and the calls by status returned.
#ifndef QUILLON_FUZZ_STATS_HPP
#define QUILLON_FUZZ_STATS_HPP

#include <cstddef>

namespace qfuzz {

// Starts counting for functions named `names` (count of them, kept by the
// caller); nothing is counted or written without QUILLON_FUZZ_STATS.
void count_calls(const char* const* names, std::size_t count);

// One call of function `index` that returned `status`.
void called(std::size_t index, int status);

// One input for function `index` that was not run.
void not_run(std::size_t index);

} // namespace qfuzz

#endif
