#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace velmara {

/// An 8 x 8 block of samples row by row, or its cosine coefficients column by column.
using Block = std::array<float, 64>;

/// cos(k pi / 16) / 2: the factors of the orthonormal cosine transform of 8 samples.
inline constexpr float kCos1 = 0.4903926402F;
inline constexpr float kCos2 = 0.4619397663F;
inline constexpr float kCos3 = 0.4157348062F;
inline constexpr float kCos4 = 0.3535533906F;
inline constexpr float kCos5 = 0.2777851165F;
inline constexpr float kCos6 = 0.1913417162F;
inline constexpr float kCos7 = 0.0975451610F;

/// The cosine transform of 8 samples that lie 8 apart, by symmetric and antisymmetric halves.
inline void forwardCosines(float* x) {
  const float s0 = x[0] + x[56], s1 = x[8] + x[48], s2 = x[16] + x[40], s3 = x[24] + x[32];
  const float d0 = x[0] - x[56], d1 = x[8] - x[48], d2 = x[16] - x[40], d3 = x[24] - x[32];
  const float a0 = s0 + s3, a1 = s1 + s2, b0 = s0 - s3, b1 = s1 - s2;
  x[0] = (a0 + a1) * kCos4;
  x[32] = (a0 - a1) * kCos4;
  x[16] = b0 * kCos2 + b1 * kCos6;
  x[48] = b0 * kCos6 - b1 * kCos2;
  x[8] = d0 * kCos1 + d1 * kCos3 + d2 * kCos5 + d3 * kCos7;
  x[24] = d0 * kCos3 - d1 * kCos7 - d2 * kCos1 - d3 * kCos5;
  x[40] = d0 * kCos5 - d1 * kCos1 + d2 * kCos7 + d3 * kCos3;
  x[56] = d0 * kCos7 - d1 * kCos5 + d2 * kCos3 - d3 * kCos1;
}

/// Undoes forwardCosines.
inline void inverseCosines(float* x) {
  const float e0 = (x[0] + x[32]) * kCos4, e1 = (x[0] - x[32]) * kCos4;
  const float f0 = x[16] * kCos2 + x[48] * kCos6, f1 = x[16] * kCos6 - x[48] * kCos2;
  const float s0 = e0 + f0, s3 = e0 - f0, s1 = e1 + f1, s2 = e1 - f1;
  const float d0 = x[8] * kCos1 + x[24] * kCos3 + x[40] * kCos5 + x[56] * kCos7;
  const float d1 = x[8] * kCos3 - x[24] * kCos7 - x[40] * kCos1 - x[56] * kCos5;
  const float d2 = x[8] * kCos5 - x[24] * kCos1 + x[40] * kCos7 + x[56] * kCos3;
  const float d3 = x[8] * kCos7 - x[24] * kCos5 + x[40] * kCos3 - x[56] * kCos1;
  x[0] = s0 + d0;
  x[56] = s0 - d0;
  x[8] = s1 + d1;
  x[48] = s1 - d1;
  x[16] = s2 + d2;
  x[40] = s2 - d2;
  x[24] = s3 + d3;
  x[32] = s3 - d3;
}

/// Rows become columns.
inline void transpose(Block& block) {
  for (std::size_t y = 0; y < 8; ++y) {
    for (std::size_t x = 0; x < y; ++x) std::swap(block[8 * y + x], block[8 * x + y]);
  }
}

/// The coefficients of a block of a plane whose rows are `stride` apart.
inline Block cosinesOf(const std::int16_t* samples, std::ptrdiff_t stride) {
  Block block;
  for (std::ptrdiff_t y = 0; y < 8; ++y) {
    for (std::ptrdiff_t x = 0; x < 8; ++x) {
      block[static_cast<std::size_t>(8 * y + x)] = samples[y * stride + x];
    }
  }
  for (std::size_t x = 0; x < 8; ++x) forwardCosines(&block[x]);
  transpose(block);
  for (std::size_t x = 0; x < 8; ++x) forwardCosines(&block[x]);
  return block;
}

/// Turns coefficients back into samples, in place.
inline void invertCosines(Block& block) {
  for (std::size_t x = 0; x < 8; ++x) inverseCosines(&block[x]);
  transpose(block);
  for (std::size_t x = 0; x < 8; ++x) inverseCosines(&block[x]);
}

/// The sum of the two indices of a coefficient, 0 to 14: how high its frequency is.
constexpr std::size_t frequencyOf(std::size_t coefficient) {
  return coefficient / 8 + coefficient % 8;
}

}  // namespace velmara
