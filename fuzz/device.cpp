// Fuzz target of the device library: every input is one call of one
// exported function, decoded as device_input.hpp describes. Any status is
// an answer; a finding is what the sanitizers report (a read or write
// beyond the caller's buffers, undefined behaviour, a crash).
#include "device_input.hpp"
#include "stats.hpp"

#include <vector>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    static std::vector<const char*> names;
    for (std::size_t i = 0; i < qv_function_count; ++i) {
        names.push_back(qv_functions[i].name);
    }
    qfuzz::count_calls(names.data(), names.size());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    qfuzz::DeviceCall call;
    if (!call.decode(data, size)) {
        if (size > 0) {
            qfuzz::not_run(data[0] % qv_function_count);
        }
        return 0;
    }
    qfuzz::called(call.function_index(), call.invoke());
    return 0;
}
