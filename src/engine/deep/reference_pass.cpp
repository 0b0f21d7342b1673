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
  // cppcheck-suppress [constStatement, legacyUninitvar] // It takes the braces for a statement.
  places[0] = std::ptrdiff_t{y} * width + x;
  const std::int16_t* own = pass.compared.data() + places[0];
  for (int i = 0; i < pass.shifts(); ++i) {
    const int dy = searchOrder(i);
    if (y + dy < 0 || y + dy > pass.noisy.height - 8) continue;
    for (int j = 0; j < pass.shifts(); ++j) {
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

using Places = std::array<std::ptrdiff_t, DeepPass::kGroup>;

// Where sample i of a plane's part of a patch lies.
std::size_t patchPixel(std::ptrdiff_t place, std::size_t i, int width) {
  const auto y = static_cast<std::ptrdiff_t>(i / DeepPass::kPatch) + DeepPass::kPatchInset;
  const auto x = static_cast<std::ptrdiff_t>(i % DeepPass::kPatch) + DeepPass::kPatchInset;
  return static_cast<std::size_t>(place + y * width + x);
}

float product(const std::array<float, 48>& a, const std::array<float, 48>& b) {
  float sum = 0.0F;
  for (std::size_t i = 0; i < 48; ++i) sum += a[i] * b[i];
  return sum;
}

// Solves (matrix + 1) x = right for all columns, in place (Gauss and Jordan).
void solve(GroupMatrix& matrix, GroupMatrix& right) {
  for (std::size_t i = 0; i < matrix.size(); ++i) matrix[i][i] += 1.0F;
  for (std::size_t p = 0; p < matrix.size(); ++p) {
    const float inverse = 1.0F / matrix[p][p];
    for (float& value : matrix[p]) value *= inverse;
    for (float& value : right[p]) value *= inverse;
    for (std::size_t row = 0; row < matrix.size(); ++row) {
      if (row == p) continue;
      const float factor = matrix[row][p];
      for (std::size_t i = 0; i < matrix.size(); ++i) {
        matrix[row][i] -= factor * matrix[p][i];
        right[row][i] -= factor * right[p][i];
      }
    }
  }
}

// With the deviations A of the guide's patches from their mean and those Y of the noisy ones, both
// in units of the noise, a patch becomes the mean + A^T (A A^T + 1)^-1 A y: the same as weighting
// it by the patches' covariance over the sum of it and the noise's, in fewer dimensions.
void addPatches(const DeepPass& pass, const Places& places, BlockSums& sums) {
  const int width = pass.noisy.width;
  Patches guide;
  Patches noisy;
  std::array<float, 48> means = {};
  for (std::size_t at = 0; at < places.size(); ++at) {
    for (std::size_t i = 0; i < 48; ++i) {
      const std::size_t pixel = patchPixel(places[at], i % 16, width);
      guide[at][i] = pass.guide->planes[i / 16][pixel];
      noisy[at][i] = pass.noisy.planes[i / 16][pixel];
      means[i] += guide[at][i];
    }
  }
  for (float& mean : means) mean *= 1.0F / DeepPass::kGroup;
  const auto factors = whiteningFactors(pass, means.data());
  GroupMatrix own;
  GroupMatrix other;
  for (std::size_t at = 0; at < places.size(); ++at) {
    for (std::size_t i = 0; i < 48; ++i) {
      guide[at][i] = (guide[at][i] - means[i]) * factors[i / 16];
      noisy[at][i] = (noisy[at][i] - means[i]) * factors[i / 16];
    }
  }
  for (std::size_t a = 0; a < places.size(); ++a) {
    for (std::size_t b = 0; b < places.size(); ++b) {
      own[a][b] = product(guide[a], guide[b]);
      other[a][b] = product(guide[a], noisy[b]);
    }
  }
  solve(own, other);
  for (std::size_t at = 0; at < places.size(); ++at) {
    for (std::size_t i = 0; i < 48; ++i) {
      float sum = 0.0F;
      for (std::size_t a = 0; a < places.size(); ++a) sum += other[a][at] * guide[a][i];
      const float value = means[i] + sum / factors[i / 16];
      const float sample = std::min(std::max(value, -DeepPass::kMostSample), DeepPass::kMostSample);
      const std::size_t pixel = patchPixel(places[at], i % 16, width);
      sums.samples[i / 16][pixel] +=
          static_cast<std::int32_t>(std::nearbyint(sample * DeepPass::kPatchWeight));
      if (i < 16) sums.weights[pixel] += DeepPass::kPatchWeight;
    }
  }
}

}  // namespace

void addBlocksPlainly(const DeepPass& pass, int row, int columnBegin, int columnEnd,
                      BlockSums& sums) {
  const int width = pass.noisy.width;
  for (int column = columnBegin; column < columnEnd; ++column) {
    const auto places = mostAlike(pass, DeepPass::kStep * column, DeepPass::kStep * row);
    if (pass.step == DeepStep::kBayes) {
      addPatches(pass, places, sums);
      continue;
    }
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
