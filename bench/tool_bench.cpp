// The office tool end to end: a 50 km road read from LandXML and a table of
// it written every 20 m. Registered once the tool is part of the build.
#include "measure.hpp"

namespace bench {

void register_tool_benchmarks() {}

} // namespace bench
