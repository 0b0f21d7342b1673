#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace velmara {

/// The weight of a candidate pixel by the distance of its patch, as non-local means defines it
/// (A. Buades, B. Coll, J.-M. Morel, "Non-Local Means Denoising", Image Processing On Line 1, 2011,
/// equation for the weights): exp(-max(d - 2 sigma^2, 0) / (c sigma^2)), where d is the mean over
/// the patch of the squared differences summed over the c channels.
struct WeightTable {
  /// The weight of distance i, channels * 65536 entries; 0.0 from cutOff on.
  std::vector<double> entries;
  /// The first distance whose weight is zero: weights under 0.001 count for nothing.
  std::int64_t cutOff = 0;
  /// The terms of the formula: weight = exp(max(0, i - offset) * coefficient).
  double offset = 0.0;
  double coefficient = 0.0;
};

/// The table for a filter strength; 0 channels give an empty one. With sigma 0 only identical
/// patches count. The last entry is zero even if nothing before it fell below the limit. Throws
/// std::bad_alloc.
WeightTable buildWeightTable(double sigma, int channels);

/// The weight of a distance; 0.0 for one outside the table.
inline double weightOf(std::span<const double> table, std::int32_t distance) {
  const auto index = static_cast<std::size_t>(static_cast<std::uint32_t>(distance));
  return distance >= 0 && index < table.size() ? table[index] : 0.0;
}

}  // namespace velmara
