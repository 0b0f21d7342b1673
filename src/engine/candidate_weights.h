#pragma once

#include <cstdint>
#include <span>

#include "engine/filter_geometry.h"
#include "engine/source_samples.h"

namespace velmara {

/// Compares the patch of pixel (x, y) with those of its D candidates: ww[l * s + k] becomes the
/// distance index of the candidate k columns and l rows into the search window. Returns the sum of
/// their weights, added from the last candidate to the first.
double compareCandidates(const SourceSamples& source, const FilterGeometry& geometry,
                         std::span<const double> weightTable, int x, int y,
                         std::span<std::int32_t> ww);

/// The normalised weight nw of each candidate. If all weights are zero the candidate H alone
/// counts: one slot past the centre, so the pixel takes the value of its right-hand neighbour.
void normaliseWeights(std::span<const double> weightTable, std::span<const std::int32_t> ww,
                      double tweight, std::int64_t H, std::span<double> nw);

}  // namespace velmara
