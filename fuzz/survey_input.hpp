// A call of one function of the survey layer decoded from raw bytes, and
// seed inputs that decode to successful calls of each.
//
// The input, read front to back (zeros past its end): 1 byte choosing the
// function (modulo 15, in the order of the header), then its numbers and
// counts as raw bytes (a double as its 8 bytes of bits; a count or an int
// over 32 bits), then every record and array as the raw bytes of as many
// elements as the interface obliges the caller to provide for those counts,
// each in a heap block of exactly that size. See survey_input.cpp for each
// function's order.
//
// Alignments and profiles come raw, or built from the input's elements by
// qs_alignment_build or by the device's table builders
// (LIB_CalWay_H_Ele_MainPoint, LIB_CalWay_V_Ele_MainPoint), so that the
// functions that need a valid table are reached with one.
#ifndef QUILLON_FUZZ_SURVEY_INPUT_HPP
#define QUILLON_FUZZ_SURVEY_INPUT_HPP

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace qfuzz {

// The survey functions, in the order of the function byte.
constexpr std::size_t SURVEY_FUNCTIONS = 15;
extern const char* const survey_function_names[SURVEY_FUNCTIONS];

// Decodes one input and calls the function it chooses; false when the
// input was not run (no function byte, or counts that oblige the caller to
// provide more than MAX_BUFFER_BYTES). `function` receives the function's
// index, `status` its status.
bool run_survey_call(const std::uint8_t* data, std::size_t size, std::size_t& function,
                     int& status);

struct Seed {
    std::string name;
    std::vector<std::uint8_t> bytes;
};

// Inputs that call every survey function on a sound case.
std::vector<Seed> survey_seeds();

} // namespace qfuzz

#endif
