// Fuzz target of the survey layer: every input is one call of one qs_
// function, decoded as survey_input.hpp describes. Any status is an answer;
// a finding is what the sanitizers report.
#include "stats.hpp"
#include "survey_input.hpp"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qfuzz::count_calls(qfuzz::survey_function_names, qfuzz::SURVEY_FUNCTIONS);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::size_t function = 0;
    int status = 0;
    if (qfuzz::run_survey_call(data, size, function, status)) {
        qfuzz::called(function, status);
    } else if (size > 0) {
        qfuzz::not_run(function);
    }
    return 0;
}
