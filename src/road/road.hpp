// What the horizontal alignment, the profile and the cross-section share.
// Never exported.
#ifndef QUILLON_ROAD_ROAD_HPP
#define QUILLON_ROAD_ROAD_HPP

#include "../core/core.hpp"

namespace quillon {
namespace road {

// Two chainages closer than a millimetre are the same station.
constexpr double CHAINAGE_TOLERANCE = 0.001;

} // namespace road
} // namespace quillon

#endif
