#pragma once

#include <cstdint>
#include <vector>

#include "base/bitmap.h"

namespace velmara::testing_support {

/// A picture whose every pixel tells where it is: red grows to the right, green downwards, blue
/// along both, alpha (if any) stays opaque. Gray has the red of it.
inline Bitmap gradient(int width, int height, int samplesPerPixel) {
  auto builder = BitmapBuilder::allocate(width, height, samplesPerPixel);
  for (int y = 0; y < height; ++y) {
    std::uint8_t* out = builder->row(y);
    for (int x = 0; x < width; ++x) {
      const std::uint8_t pixel[4] = {static_cast<std::uint8_t>(x * 255 / width),
                                     static_cast<std::uint8_t>(y * 255 / height),
                                     static_cast<std::uint8_t>((x + y) * 7), 255};
      for (int c = 0; c < samplesPerPixel; ++c) {
        *out++ = samplesPerPixel == 2 && c == 1 ? std::uint8_t{255} : pixel[c];
      }
    }
  }
  return std::move(*builder).finish();
}

/// The samples of one pixel, counted from the top-left corner.
inline std::vector<int> pixelAt(const Bitmap& bitmap, int x, int y) {
  const std::uint8_t* pixel = bitmap.pixel(x, y);
  return {pixel, pixel + bitmap.samplesPerPixel()};
}

/// A bitmap with only its samples counting, for comparisons.
inline std::vector<std::uint8_t> samplesOf(const Bitmap& bitmap) {
  return {bitmap.bytes().begin(), bitmap.bytes().end()};
}

}  // namespace velmara::testing_support
