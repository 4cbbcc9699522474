// Compiled on its own by the evaluation tests: the core's evaluation checks
// must accept the build's own flags and refuse flags that would change the
// last bits of results.
#include "core/evaluation.hpp"

int quillon_evaluation_probe() { return 0; }
