#include <cmath>
#include <limits>

#include "engine/deep/block_transform.h"
#include "engine/deep/deep_pass.h"
#include "engine/deep/group_shrinkage.h"

namespace velmara {
namespace {

using Group = std::array<Block, DeepPass::kGroup>;

std::int32_t squaredDifference(const std::int16_t* a, const std::int16_t* b, int stride) {
  std::int32_t sum = 0;
  for (int y = 0; y < 8; ++y, a += stride, b += stride) {
    for (int x = 0; x < 8; ++x) {
      const std::int32_t difference = a[x] - b[x];
      sum += difference * difference;
    }
  }
  return sum;
}

// The block itself, then the others from the most alike to the least.
std::array<std::ptrdiff_t, DeepPass::kGroup> mostAlike(const DeepPass& pass, int x, int y) {
  const int width = pass.noisy.width;
  std::array<std::int32_t, DeepPass::kGroup> distances;
  std::array<std::ptrdiff_t, DeepPass::kGroup> places;
  distances.fill(std::numeric_limits<std::int32_t>::max());
  distances[0] = -1;
  places[0] = std::ptrdiff_t{y} * width + x;
  const std::int16_t* own = pass.compared.data() + places[0];
  for (int i = 0; i < kShifts; ++i) {
    const int dy = searchOrder(i);
    if (y + dy < 0 || y + dy > pass.noisy.height - 8) continue;
    for (int j = 0; j < kShifts; ++j) {
      const int dx = searchOrder(j);
      if (x + dx < 0 || x + dx > width - 8 || (dx == 0 && dy == 0)) continue;
      const std::ptrdiff_t shift = std::ptrdiff_t{dy} * width + dx;
      const std::int32_t distance = squaredDifference(own, own + shift, width);
      if (distance >= distances.back()) continue;
      std::size_t at = distances.size() - 1;
      for (; distances[at - 1] > distance; --at) {
        distances[at] = distances[at - 1];
        places[at] = places[at - 1];
      }
      distances[at] = distance;
      places[at] = places[0] + shift;
    }
  }
  return places;
}

// Walsh-Hadamard along the stack, its own inverse.
void transformStack(Group& group) {
  for (std::size_t i = 0; i < 64; ++i) {
    for (std::size_t half = 1; half < group.size(); half *= 2) {
      for (std::size_t at = 0; at < group.size(); ++at) {
        if ((at & half) != 0) continue;
        const float a = group[at][i];
        const float b = group[at + half][i];
        group[at][i] = a + b;
        group[at + half][i] = a - b;
      }
    }
    for (Block& block : group) block[i] *= 0.25F;
  }
}

// Sums of eight lanes, added up as vectors of any length do it.
float total(const std::array<float, 8>& lanes) {
  return ((lanes[0] + lanes[4]) + (lanes[2] + lanes[6])) +
         ((lanes[1] + lanes[5]) + (lanes[3] + lanes[7]));
}

// Returns how much noise was kept: the number of coefficients, or the sum of their squared weights.
float shrink(Group& noisy, const Group* guide, const Block& limits) {
  std::array<float, 8> kept = {};
  for (std::size_t i = 0; i < 64; ++i) {
    for (std::size_t at = 0; at < noisy.size(); ++at) {
      float& value = noisy[at][i];
      if (guide != nullptr) {
        const float energy = (*guide)[at][i] * (*guide)[at][i];
        const float weight = energy / (energy + limits[i]);
        value *= weight;
        kept[i % 8] += weight * weight;
      } else if ((i == 0 && at == 0) || value * value > limits[i]) {
        kept[i % 8] += 1.0F;
      } else {
        value = 0.0F;
      }
    }
  }
  return total(kept);
}

}  // namespace

void addBlocksPlainly(const DeepPass& pass, int row, int columnBegin, int columnEnd,
                      BlockSums& sums) {
  const int width = pass.noisy.width;
  for (int column = columnBegin; column < columnEnd; ++column) {
    const auto places = mostAlike(pass, DeepPass::kStep * column, DeepPass::kStep * row);
    std::array<Group, 3> noisy;
    std::array<Group, 3> guide;
    std::array<float, 3> sumsOfMeans = {};
    for (std::size_t k = 0; k < 3; ++k) {
      for (std::size_t at = 0; at < places.size(); ++at) {
        noisy[k][at] = cosinesOf(pass.noisy.planes[k].data() + places[at], width);
        if (pass.guide != nullptr) {
          guide[k][at] = cosinesOf(pass.guide->planes[k].data() + places[at], width);
        }
        sumsOfMeans[k] += (pass.guide != nullptr ? guide : noisy)[k][at][0];
      }
    }
    const GroupLimits limits(pass, sumsOfMeans);
    float kept = 0.0F;
    for (std::size_t k = 0; k < 3; ++k) {
      transformStack(noisy[k]);
      if (pass.guide != nullptr) transformStack(guide[k]);
      const float keptOfPlane =
          shrink(noisy[k], pass.guide != nullptr ? &guide[k] : nullptr, limits.of(k));
      if (k == 0) kept = keptOfPlane;
      transformStack(noisy[k]);
      for (Block& block : noisy[k]) invertCosines(block);
    }
    const float weight = groupWeight(kept);
    for (std::size_t at = 0; at < places.size(); ++at) {
      for (std::size_t i = 0; i < 64; ++i) {
        const auto pixel =
            static_cast<std::size_t>(places[at] + static_cast<std::ptrdiff_t>(i / 8) * width +
                                     static_cast<std::ptrdiff_t>(i % 8));
        sums.weights[pixel] += static_cast<std::int32_t>(weight);
        for (std::size_t k = 0; k < 3; ++k) {
          const float sample =
              std::min(std::max(noisy[k][at][i], -DeepPass::kMostSample), DeepPass::kMostSample);
          sums.samples[k][pixel] += static_cast<std::int32_t>(std::nearbyint(sample * weight));
        }
      }
    }
  }
}

}  // namespace velmara
