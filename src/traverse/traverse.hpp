// Internals of the traverse family: the codes of its traverse forms, and the
// multi-round traverse with its work array taken from a caller-supplied
// allocator, so that every return path can be shown to release what it took.
#ifndef QUILLON_TRAVERSE_TRAVERSE_HPP
#define QUILLON_TRAVERSE_TRAVERSE_HPP

#include "../core/core.hpp"

#include <cstddef>
#include <cstdint>

namespace quillon {

// Forms of a traverse closed leg by leg: the mode byte of LIB_TRSCalCoorErr
// and LIB_TRSAdjust (connecting: from one known point to another). The
// multi-round traverse codes its forms otherwise.
enum LegsForm : unsigned char { LEGS_CONNECTING = 0, LEGS_CLOSED_LOOP = 1 };

// Forms of a traverse observed in rounds: TraverseControl::TraverseType.
enum RoundsForm : std::int32_t {
    ROUNDS_LOOP = 0,           // back to A, orientation on B re-observed
    ROUNDS_POLYGON = 1,        // closed polygon, closing on B
    ROUNDS_CONNECTING = 2,     // A to E, oriented at both ends
    ROUNDS_START_ORIENTED = 3, // A to E, oriented at the start only
    ROUNDS_OPEN = 4            // no closure
};

// One entry of the work array: a station's observed angle and index, and
// its corrected angle (24 bytes, one entry per station).
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
