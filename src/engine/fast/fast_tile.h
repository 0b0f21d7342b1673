#pragma once

#include <cstdint>

#include "engine/fast/fast_scratch.h"

namespace velmara {

/// Writes the output pixels of a tile (at most plan.tileWidth wide) with the vectors of the chosen
/// instruction set. Returns how many pixels were undecided and averaged in double precision.
std::int64_t filterTile(const FastPlan& plan, FastScratch& scratch, const Tile& tile);

/// See weights-inl.h; on the chosen instruction set.
double weightErrorOf(const WeightFunction& weight, const double* table, std::int64_t cutOff);

}  // namespace velmara
