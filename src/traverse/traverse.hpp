// Internals of the traverse family: the multi-round traverse with its work array taken from a
// caller-supplied allocator, so that every return path can be shown to release what it took.
#ifndef QUILLON_TRAVERSE_TRAVERSE_HPP
#define QUILLON_TRAVERSE_TRAVERSE_HPP

#include "../core/core.hpp"

#include <cstddef>
#include <cstdint>

namespace quillon {

// One entry of the work array: a station's observed angle and index, and
// its corrected angle.
struct StationAngle {
    double observed;
    std::int32_t index;
    double corrected;
};

// Allocates count cleared entries of size bytes (nullptr on failure), and
// releases them.
struct WorkAllocator {
    void* (*allocate)(std::size_t count, std::size_t size);
    void (*release)(void* block);
};

// LIB_TRSMultCycleCal with its work array taken from the given allocator;
// the array is released before every return.
ResultCode multi_round_traverse(TraverseStation* stations, std::uint32_t n,
                                const TraverseControl& control, TraverseResult* result,
                                const WorkAllocator& allocator);

} // namespace quillon

#endif
