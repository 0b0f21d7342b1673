#pragma once

#include <cstdint>
#include <span>

#include "engine/filter_geometry.h"
#include "engine/source_samples.h"

namespace velmara {

/// Writes pixel (x, y): for each of its samples the sum of the candidates' samples times their
/// normalised weights, added from the first candidate to the last and truncated, never rounded.
void averageCandidates(const SourceSamples& source, const FilterGeometry& geometry,
                       std::span<const double> nw, int x, int y, std::uint8_t* pixel);

/// The low byte of a sum truncated toward zero to 32 bits; 0 for what has no such value.
std::uint8_t truncatedSample(double sum);

}  // namespace velmara
