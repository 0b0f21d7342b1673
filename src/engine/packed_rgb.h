#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "base/bitmap.h"

namespace velmara {

/// A picture whose samples are first written as packed RGB (3 bytes a pixel, no gaps) and then
/// become an opaque 4-sample bitmap in the same memory.
class PackedRgbCanvas {
 public:
  /// A picture whose samples are not set; nothing if the size is not allowed or the memory is not
  /// to be had.
  static std::optional<PackedRgbCanvas> allocate(int width, int height);

  /// The packed bytes, 3 * width * height of them.
  std::span<std::uint8_t> packed();

  /// The opaque bitmap; the canvas is used up.
  Bitmap finish() &&;

 private:
  explicit PackedRgbCanvas(BitmapBuilder rgba);

  BitmapBuilder rgba_;
};

}  // namespace velmara
