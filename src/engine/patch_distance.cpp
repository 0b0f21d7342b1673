#include "engine/patch_distance.h"

namespace velmara {

std::int32_t patchDistance(const SourceSamples& source, const FilterGeometry& geometry,
                           std::int64_t reference, std::int64_t candidate) {
  const std::int64_t rowSamples = std::int64_t{geometry.templateWinSize} * geometry.channelsSrc;
  std::uint32_t sum = 0;
  for (int row = 0; row < geometry.templateWinSize; ++row) {
    for (std::int64_t i = 0; i < rowSamples; ++i) {
      const int difference = source.at(candidate + i) - source.at(reference + i);
      sum += static_cast<std::uint32_t>(difference * difference);
    }
    reference += geometry.patchRowStep();
    candidate += geometry.patchRowStep();
  }
  return static_cast<std::int32_t>(sum);
}

std::int32_t distanceIndex(std::int32_t distance, const FilterGeometry& geometry) {
  if (geometry.templateWinSize == 0) return 0;
  return static_cast<std::int32_t>(static_cast<double>(distance) * geometry.tdiv);
}

}  // namespace velmara
