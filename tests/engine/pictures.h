#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "base/bitmap.h"

namespace velmara {

using Bytes = std::vector<std::uint8_t>;

/// Kinds of content that make filters behave differently.
enum class Content { kFlat, kRandom, kPhoto, kSaturated, kCheckerboard };
inline constexpr Content kAllContents[] = {Content::kFlat, Content::kRandom, Content::kPhoto,
                                           Content::kSaturated, Content::kCheckerboard};

/// Smooth shading with an edge, and noise over it.
inline std::uint8_t photoSample(int x, int y, int sample, double noise) {
  const double shade = 110.0 + 60.0 * std::sin(0.05 * x + sample) + 40.0 * std::cos(0.07 * y);
  const double edge = (x + 2 * y) % 61 < 30 ? 25.0 : -25.0;
  return static_cast<std::uint8_t>(std::clamp(shade + edge + noise, 0.0, 255.0));
}

/// A picture of some content, the same for the same seed.
inline Bitmap makePicture(Content content, int width, int height, int samples, std::uint64_t seed) {
  std::mt19937_64 random(seed);
  std::normal_distribution<double> noise(0.0, 1.0 + static_cast<double>(random() % 16));
  const auto flat = static_cast<std::uint8_t>(random());
  Bytes bytes;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (int c = 0; c < samples; ++c) {
        std::uint8_t sample = flat;
        if (content == Content::kRandom) sample = static_cast<std::uint8_t>(random());
        if (content == Content::kPhoto) sample = photoSample(x, y, c, noise(random));
        if (content == Content::kSaturated) sample = photoSample(x, y, c, noise(random) + 130.0);
        if (content == Content::kCheckerboard && (x + y) % 2 != 0) sample = 255 - flat;
        bytes.push_back(sample);
      }
    }
  }
  return Bitmap::copyOf(bytes, width, height, samples);
}

inline Bytes bytesOf(const Bitmap& bitmap) {
  return {bitmap.bytes().begin(), bitmap.bytes().end()};
}

}  // namespace velmara
