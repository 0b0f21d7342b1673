#include "engine/weighted_average.h"

namespace velmara {

std::uint8_t truncatedSample(double sum) {
  const bool fits = sum > -2147483649.0 && sum < 2147483648.0;  // Not so for a NaN either.
  return fits ? static_cast<std::uint8_t>(static_cast<std::int32_t>(sum)) : std::uint8_t{0};
}

void averageCandidates(const SourceSamples& source, const FilterGeometry& geometry,
                       std::span<const double> nw, int x, int y, std::uint8_t* pixel) {
  const std::int64_t channels = geometry.channelsIm;
  const int s = geometry.searchWinSize;
  std::int64_t row = (std::int64_t{y} + geometry.tr) * geometry.sourceStride() +
                     (std::int64_t{x} + geometry.tr) * channels;
  double sums[3] = {0.0, 0.0, 0.0};
  std::size_t slot = 0;
  for (int l = 0; l < s; ++l) {
    for (int k = 0; k < s; ++k, ++slot) {
      for (std::int64_t c = 0; c < channels; ++c) {
        sums[c] += static_cast<double>(source.at(row + k * channels + c)) * nw[slot];
      }
    }
    row += geometry.averageRowStep();
  }
  for (std::int64_t c = 0; c < channels; ++c) pixel[c] = truncatedSample(sums[c]);
}

}  // namespace velmara
