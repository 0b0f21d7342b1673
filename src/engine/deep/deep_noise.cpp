#include "engine/deep/deep_noise.h"

#include <algorithm>
#include <cmath>

#include "engine/deep/block_transform.h"
#include "engine/deep/clipped_noise.h"

namespace velmara {
namespace {

// Measured on photos: with more than there is the filter does better than with less.
constexpr float kSmooth = 1.35F;
// What is left of the lowest frequencies after those of a filtered smaller picture took their
// place.
constexpr float kFused[3] = {0.25F, 0.5F, 0.8F};
// No coefficient is taken to be without noise: the samples are whole numbers.
constexpr float kLeastVariance = 0.05F;

float amplitudeAt(const std::array<float, 15>& amplitude, float frequency) {
  const auto below = static_cast<std::size_t>(frequency);
  if (below + 1 >= amplitude.size()) return amplitude.back();
  return amplitude[below] +
         (frequency - static_cast<float>(below)) * (amplitude[below + 1] - amplitude[below]);
}

std::array<float, 256> scaledDeviation(const std::array<float, 256>& deviation, float factor) {
  std::array<float, 256> scaled = deviation;
  for (float& value : scaled) value *= factor;
  return scaled;
}

}  // namespace

bool DeepNoise::isNone() const {
  float most = 0.0F;
  for (const auto& channel : deviation) {
    most = std::max(most, *std::max_element(channel.begin(), channel.end()));
  }
  return most < 0.3F;
}

bool DeepNoise::isBeyondLevels() const {
  float sum = 0.0F;
  for (const auto& channel : deviation) sum += channel[128];
  return sum > 3 * kReachOfLevels;
}

DeepNoise whiteNoise(float deviation) {
  DeepNoise noise;
  for (auto& channel : noise.deviation) channel.fill(deviation);
  for (auto& plane : noise.amplitude) plane.fill(1.0F);
  return noise;
}

BlockNoise blockNoise(const DeepNoise& noise, float strength, float scale, bool isFused) {
  constexpr float kUnit = OpponentPlanes::kOne * OpponentPlanes::kOne;
  BlockNoise result;
  for (std::size_t c = 0; c < 3; ++c) {
    const auto deviation = scaledDeviation(noise.deviation[c], strength);
    const ClippedNoise clipped(deviation);
    for (std::size_t i = 0; i < 256; ++i) {
      const double variance =
          noise.isWhite ? clipped.seenAs(static_cast<double>(i)).variance + kRoundingVariance
                        : double{deviation[i]} * deviation[i];
      result.variance[c][i] = kUnit * std::max(static_cast<float>(variance), kLeastVariance);
    }
  }
  const float factor = noise.sizes == 1 ? 1.0F : kSmooth;
  for (std::size_t k = 0; k < 3; ++k) {
    for (std::size_t i = 0; i < 64; ++i) {
      const std::size_t frequency = frequencyOf(i);
      const float amplitude =
          scale * amplitudeAt(noise.amplitude[k], static_cast<float>(frequency) * scale);
      float energy = factor * amplitude * amplitude;
      if (isFused && frequency < 3) energy *= kFused[frequency];
      result.spectrum[k][i] = std::max(energy, 1e-5F);
    }
  }
  return result;
}

SampleTables sampleTables(const DeepNoise& noise, float strength) {
  SampleTables tables;
  for (std::size_t c = 0; c < 3; ++c) {
    const ClippedNoise clipped(
        scaledDeviation(noise.deviation[c], noise.whenClipped * std::min(strength, 1.0F)));
    for (std::size_t i = 0; i < tables[c].size(); ++i) {
      const double seen = static_cast<double>(i) / OpponentPlanes::kOne;
      const double sample = noise.whenClipped > 0.0F ? clipped.seenAs(seen).level : seen;
      tables[c][i] = static_cast<std::uint8_t>(std::lround(std::clamp(sample, 0.0, 255.0)));
    }
  }
  return tables;
}

}  // namespace velmara
