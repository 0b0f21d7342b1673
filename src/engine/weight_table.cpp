#include "engine/weight_table.h"

#include <algorithm>
#include <cmath>

namespace velmara {

WeightTable buildWeightTable(double sigma, int channels) {
  constexpr double kSmallestWeight = 0.001;
  constexpr std::int64_t kEntriesPerChannel = 65536;

  WeightTable table;
  if (channels <= 0) return table;
  const std::int64_t size = channels * kEntriesPerChannel;
  table.entries.assign(static_cast<std::size_t>(size), 0.0);
  table.coefficient = (1.0 / (sigma * sigma)) * (-1.0 / channels);
  table.offset = (sigma + sigma) * sigma;
  const bool onlyIdentical =
      sigma * sigma == 0.0;  // The exponent of entry 0 would be 0 * infinity.

  std::int64_t i = 0;
  for (;; ++i) {
    const double exponent =
        std::max(0.0, static_cast<double>(i) - table.offset) * table.coefficient;
    const double weight = onlyIdentical && i == 0 ? 1.0 : std::exp(exponent);
    if (weight < kSmallestWeight || i + 1 == size) break;
    table.entries[static_cast<std::size_t>(i)] = weight;
  }
  table.cutOff = i;
  return table;
}

}  // namespace velmara
