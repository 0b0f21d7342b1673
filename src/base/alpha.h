#pragma once

#include <cstdint>

#include "base/bitmap.h"

namespace velmara {

/// A sample drawn over black through an alpha of 0 to 255: sample * alpha / 255, rounded to the
/// nearest.
constexpr std::uint8_t overBlack(std::uint8_t sample, std::uint8_t alpha) {
  const unsigned product = unsigned{sample} * unsigned{alpha} + 128U;
  return static_cast<std::uint8_t>((product + (product >> 8U)) >> 8U);
}

/// The bitmap drawn over black with its alpha sample gone: 4 samples become 3, 2 become 1, and a
/// bitmap without alpha comes back itself. Not valid if the input is not or the memory is not to be
/// had.
Bitmap withoutAlpha(const Bitmap& bitmap);

/// Packed RGB (or gray) samples as an opaque 4-sample bitmap; 2 and 4 samples keep their alpha.
Bitmap asRgba(const Bitmap& bitmap);

}  // namespace velmara
