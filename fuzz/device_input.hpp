// A call of one exported function of the device library decoded from raw
// bytes, by the table that describes every argument once
// (tests/platform/functions.txt, generated into qv_table.c).
//
// The input, read front to back (zeros past its end):
//   1 byte    the function: its index in the table, modulo the number of
//             functions
//   then      every argument passed by value, in call order, as its raw
//             bytes (a double as its 8 bytes of bits, so NaN, infinities,
//             subnormals and -0 all occur; a count or mode over its whole
//             range)
//   then      1 byte for every pointer the header allows to be null: null
//             when its low bit is 0
//   then      every pointer argument, in call order, as the raw bytes of as
//             many elements as the interface obliges the caller to provide
//             for the counts and modes above (the table's extents), records
//             with their padding; outputs too, since a caller may hand any
//             bytes there
//   then      for every record holding a pointer (StaMultiResult's Station),
//             the raw bytes of the record it points at.
// Every pointer argument is a heap block of exactly its extent, so that a
// read or write one element beyond what the caller must provide is reported.
#ifndef QUILLON_FUZZ_DEVICE_INPUT_HPP
#define QUILLON_FUZZ_DEVICE_INPUT_HPP

#include "bytes.hpp"

#include "qv.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qfuzz {

class DeviceCall {
  public:
    // Decodes an input; false when it holds no function byte or obliges the
    // caller to provide more than MAX_BUFFER_BYTES.
    bool decode(const std::uint8_t* data, std::size_t size);

    // Calls the function on the decoded arguments; its status.
    int invoke() const;

    std::size_t function_index() const { return index_; }

  private:
    std::size_t index_ = 0;
    const qv_function* fn_ = nullptr;
    std::uint64_t values_[QV_MAX_ARGS] = {};
    void* args_[QV_MAX_ARGS] = {};
    std::vector<Block> blocks_;
};

// The input that decodes to a call of function `index` with arguments bound
// as qv_bind binds them (values, records and arrays the pointers point at).
std::vector<std::uint8_t> encode_device_call(std::size_t index, void* const* args);

} // namespace qfuzz

#endif
