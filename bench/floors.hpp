// The floor of every exported function: a function that makes only the
// calls to the mathematical library that the exported one must make on the
// same arguments (its square roots, trigonometric functions, truncations),
// with no range tests, no folds, no copies and no table walks. The ratio of
// a function's time to its floor's is what the benchmark reports.
//
// A floor is written from what the function must compute, not from its
// body: a value needed twice is computed once, an integer power is a
// product, and calls whose results the function throws away are left out.
// The arguments of the calls are formed from the case's inputs by the
// arithmetic that leads to them, or by arithmetic of the same kind where
// the exact value needs the whole computation: what a call costs hardly
// depends on its argument within the range of a survey.
#ifndef QUILLON_BENCH_FLOORS_HPP
#define QUILLON_BENCH_FLOORS_HPP

namespace bench {

// What a floor may need to know about its case beyond the arguments,
// found once before timing: the element of a table that holds the chainage
// looked up (-1 for none).
struct Hint {
    int element = -1;
};

using FloorFn = double (*)(void* const* args, const Hint& hint);
using HintFn = Hint (*)(void* const* args);

struct Floor {
    const char* name;  // the exported function
    FloorFn floor;     // its floor
    HintFn hint;       // or nullptr
    const char* calls; // the calls the floor makes, per call of the function
};

// The floor of an exported function, or nullptr.
const Floor* find_floor(const char* name);

} // namespace bench

#endif
