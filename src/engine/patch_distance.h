#pragma once

#include <cstdint>

#include "engine/filter_geometry.h"
#include "engine/source_samples.h"

namespace velmara {

/// The sum of squared differences of two t x t patches over all their samples, in 32-bit
/// arithmetic that wraps around. The offsets are those of the patches' top-left samples.
std::int32_t patchDistance(const SourceSamples& source, const FilterGeometry& geometry,
                           std::int64_t reference, std::int64_t candidate);

/// The index into the weight table of a patch distance: the distance times the reciprocal of the
/// patch area, truncated. (Not the quotient: for t = 7 and 14 the product of many a multiple of the
/// area falls just short of it.) 0 for a patch without area.
std::int32_t distanceIndex(std::int32_t distance, const FilterGeometry& geometry);

}  // namespace velmara
