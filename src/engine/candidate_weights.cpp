#include "engine/candidate_weights.h"

#include <algorithm>

#include "engine/patch_distance.h"
#include "engine/weight_table.h"

namespace velmara {

double compareCandidates(const SourceSamples& source, const FilterGeometry& geometry,
                         std::span<const double> weightTable, int x, int y,
                         std::span<std::int32_t> ww) {
  const std::int64_t stride = geometry.sourceStride();
  const std::int64_t channels = geometry.channelsIm;
  const auto offsetOf = [&](std::int64_t column, std::int64_t row) {
    return row * stride + column * channels;
  };
  const int s = geometry.searchWinSize;
  const std::int64_t reference =
      offsetOf(std::int64_t{x} + geometry.sr, std::int64_t{y} + geometry.sr);
  double tweight = 0.0;
  std::size_t slot = ww.size();
  for (int l = s - 1; l >= 0; --l) {
    for (int k = s - 1; k >= 0; --k) {
      const std::int64_t candidate = offsetOf(std::int64_t{x} + k, std::int64_t{y} + l);
      const std::int32_t d =
          distanceIndex(patchDistance(source, geometry, reference, candidate), geometry);
      ww[--slot] = d;
      tweight += weightOf(weightTable, d);
    }
  }
  return tweight;
}

void normaliseWeights(std::span<const double> weightTable, std::span<const std::int32_t> ww,
                      double tweight, std::int64_t H, std::span<double> nw) {
  if (tweight == 0.0) {
    std::fill(nw.begin(), nw.end(), 0.0);
    const auto fallback = static_cast<std::uint64_t>(H);
    if (fallback < nw.size()) nw[fallback] = 1.0;
    return;
  }
  const double reciprocal = 1.0 / tweight;
  for (std::size_t z = 0; z < ww.size(); ++z) nw[z] = weightOf(weightTable, ww[z]) * reciprocal;
}

}  // namespace velmara
