#include "engine/deep/deep_pass.h"

#include <algorithm>
#include <new>

namespace velmara {

bool BlockSums::allocate(std::size_t pixels, const JobControl& control) {
  try {
    // Filling so much memory takes its time.
    for (auto* plane : {&samples[0], &samples[1], &samples[2], &weights}) {
      if (control.isCancelled()) return false;
      plane->assign(pixels, 0);
    }
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

void BlockSums::beginWith(const OpponentPlanes& planes, std::size_t begin, std::size_t end) {
  const auto first = static_cast<std::ptrdiff_t>(begin);
  const auto last = static_cast<std::ptrdiff_t>(end);
  for (std::size_t k = 0; k < 3; ++k) {
    std::copy(planes.planes[k].begin() + first, planes.planes[k].begin() + last,
              samples[k].begin() + first);
  }
  std::fill(weights.begin() + first, weights.begin() + last, 1);
}

void comparedBrightness(const OpponentPlanes& planes, std::vector<std::int16_t>& brightness) {
  brightness.resize(planes.planes[0].size());
  std::transform(planes.planes[0].begin(), planes.planes[0].end(), brightness.begin(),
                 [](std::int16_t value) { return static_cast<std::int16_t>(value >> 3); });
}

void takeMeans(BlockSums& sums, OpponentPlanes& planes, std::size_t begin, std::size_t end) {
  constexpr float kRounder = 12582912.0F;  // 1.5 * 2^23: rounds to the nearest whole number.
  for (std::size_t k = 0; k < 3; ++k) {
    std::int32_t* in = sums.samples[k].data();
    std::int16_t* out = planes.planes[k].data();
    for (std::size_t i = begin; i < end; ++i) {
      const float mean =
          static_cast<float>(in[i]) / static_cast<float>(std::max(sums.weights[i], 1));
      out[i] = static_cast<std::int16_t>((mean + kRounder) - kRounder);
      in[i] = 0;
    }
  }
  std::fill(sums.weights.begin() + static_cast<std::ptrdiff_t>(begin),
            sums.weights.begin() + static_cast<std::ptrdiff_t>(end), 0);
}

}  // namespace velmara
