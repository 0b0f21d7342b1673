#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <utility>

#include "base/bitmap.h"
#include "base/geometry.h"

namespace velmara {

/// A picture in which no two places look alike: waves, a slope and some noise.
inline Bitmap texturedPicture(int width, int height, int samples = 3, unsigned seed = 1) {
  std::mt19937 random(seed);
  auto builder = BitmapBuilder::allocate(width, height, samples);
  for (int y = 0; y < height; ++y) {
    std::uint8_t* out = builder->row(y);
    for (int x = 0; x < width; ++x) {
      for (int c = 0; c < samples; ++c) {
        const double wave = 60.0 * std::sin(x * 0.07 * (c + 1)) * std::cos(y * 0.05);
        *out++ = static_cast<std::uint8_t>(128.0 + wave + 30.0 * x / width - 30.0 * y / height +
                                           static_cast<double>(random() % 9));
      }
    }
  }
  return std::move(*builder).finish();
}

/// Column x has the colour (x / 256, x % 256, 77), so that a column can be told by its pixels.
inline Bitmap columnPicture(int width, int height) {
  auto builder = BitmapBuilder::allocate(width, height, 3);
  for (int y = 0; y < height; ++y) {
    std::uint8_t* out = builder->row(y);
    for (int x = 0; x < width; ++x) {
      *out++ = static_cast<std::uint8_t>(x / 256);
      *out++ = static_cast<std::uint8_t>(x % 256);
      *out++ = 77;
    }
  }
  return std::move(*builder).finish();
}

inline bool samePixels(const Bitmap& a, const Bitmap& b) {
  return a.isValid() && a.width() == b.width() && a.height() == b.height() &&
         a.samplesPerPixel() == b.samplesPerPixel() &&
         std::equal(a.bytes().begin(), a.bytes().end(), b.bytes().begin());
}

inline double meanDifference(const Bitmap& a, const Bitmap& b) {
  double sum = 0.0;
  for (std::size_t i = 0; i < a.byteCount(); ++i) sum += std::abs(a.bytes()[i] - b.bytes()[i]);
  return sum / static_cast<double>(a.byteCount());
}

}  // namespace velmara
