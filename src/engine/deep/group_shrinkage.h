#pragma once

#include <algorithm>
#include <array>
#include <cmath>

#include "engine/deep/block_transform.h"
#include "engine/deep/deep_pass.h"

namespace velmara {

/// What the coefficients of one stack of blocks are compared with: the squared threshold in the
/// first step, the variance of the noise in the second.
class GroupLimits {
 public:
  /// `sumsOfMeans` are the first coefficients of the stack's blocks, summed for each plane.
  GroupLimits(const DeepPass& pass, const std::array<float, 3>& sumsOfMeans) : pass_(pass) {
    constexpr float kScale = 1.0F / (8 * DeepPass::kGroup * OpponentPlanes::kOne);
    std::array<float, 3> variances;
    for (std::size_t c = 0; c < 3; ++c) {
      float mean = 0.0F;
      for (std::size_t k = 0; k < 3; ++k) mean += kOpponent[k][c] * sumsOfMeans[k];
      const float level = std::min(std::max(mean * kScale, 0.0F), 255.0F);
      // The level is not negative, and the vector kernel rounds in the same way.
      // NOLINTNEXTLINE(bugprone-incorrect-roundings)
      variances[c] = pass.noise.variance[c][static_cast<std::size_t>(level + 0.5F)];
    }
    for (std::size_t k = 0; k < 3; ++k) {
      float variance = 0.0F;
      for (std::size_t c = 0; c < 3; ++c) {
        variance += kOpponent[k][c] * kOpponent[k][c] * variances[c];
      }
      const float factor = DeepPass::kThreshold[k] * DeepPass::kThreshold[k];
      variances_[k] = pass.step == DeepStep::kThreshold ? factor * variance : variance;
    }
  }

  /// The variance of white noise in plane k.
  float variance(std::size_t k) const { return variances_[k]; }
  /// The limits of plane k, coefficient by coefficient.
  Block of(std::size_t k) const {
    Block limits;
    for (std::size_t i = 0; i < 64; ++i) limits[i] = variances_[k] * pass_.noise.spectrum[k][i];
    return limits;
  }

 private:
  const DeepPass& pass_;
  std::array<float, 3> variances_;
};

/// What the last step does with a stack: patches and its square matrices.
using Patches = std::array<std::array<float, 48>, DeepPass::kGroup>;
using GroupMatrix = std::array<std::array<float, DeepPass::kGroup>, DeepPass::kGroup>;

/// For each plane, what makes noise of its variance one of 1 / (kGroup - 1), so that products of
/// patches are covariances. `means` are those of the guide's patches.
inline std::array<float, 3> whiteningFactors(const DeepPass& pass, const float* means) {
  std::array<float, 3> sumsOfMeans = {};
  for (std::size_t i = 0; i < 48; ++i) sumsOfMeans[i / 16] += means[i];
  for (float& sum : sumsOfMeans) sum *= 8.0F;
  const GroupLimits limits(pass, sumsOfMeans);
  std::array<float, 3> factors;
  for (std::size_t k = 0; k < 3; ++k) {
    factors[k] =
        1.0F / std::sqrt((DeepPass::kGroup - 1) * limits.variance(k) * pass.noise.spectrum[k][0]);
  }
  return factors;
}

/// The weight of a stack's blocks from how much noise its brightness kept: a whole number.
inline float groupWeight(float kept) {
  const float weight = DeepPass::kMostWeight / std::sqrt(std::max(kept, 1.0F));
  return std::max(std::nearbyint(weight), 1.0F);
}

}  // namespace velmara
