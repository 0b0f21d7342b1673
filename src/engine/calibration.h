#pragma once

#include <cstdint>

#include "base/geometry.h"

namespace velmara {

/// Whole pixels per second, truncated: the pixels of an image of that logical size over the seconds
/// it took. The largest value there is if no time passed.
std::int64_t pixelsPerSecond(Size size, double seconds);

}  // namespace velmara
