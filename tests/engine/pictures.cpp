#include "engine/pictures.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace velmara {
namespace {

using Random = std::mt19937_64;

std::uint8_t clamped(double value) {
  return static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0));
}

// Smooth shading with an edge, and noise over it.
std::uint8_t photoSample(int x, int y, int sample, double noise, double brightness) {
  const double shade = 110.0 + 60.0 * std::sin(0.05 * x + sample) + 40.0 * std::cos(0.07 * y);
  const double edge = (x + 2 * y) % 61 < 30 ? 25.0 : -25.0;
  return clamped(shade + edge + noise + brightness);
}

}  // namespace

Bitmap makePicture(Content content, int width, int height, int samples, std::uint64_t seed) {
  Random random(seed);
  std::normal_distribution<double> noise(0.0, 1.0 + static_cast<double>(random() % 16));
  const auto flat = static_cast<std::uint8_t>(random());
  Bytes bytes;
  bytes.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                static_cast<std::size_t>(samples));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (int c = 0; c < samples; ++c) {
        std::uint8_t sample = flat;
        switch (content) {
          case Content::kFlat:
            break;
          case Content::kRandom:
            sample = static_cast<std::uint8_t>(random());
            break;
          case Content::kPhoto:
            sample = photoSample(x, y, c, noise(random), 0.0);
            break;
          case Content::kSaturated:
            sample = photoSample(x, y, c, noise(random), 130.0);
            break;
          case Content::kCheckerboard:
            sample = (x + y) % 2 == 0 ? flat : 255 - flat;
            break;
        }
        bytes.push_back(sample);
      }
    }
  }
  return Bitmap::copyOf(bytes, width, height, samples);
}

Bytes bytesOf(const Bitmap& bitmap) {
  return {bitmap.bytes().begin(), bitmap.bytes().end()};
}

}  // namespace velmara
