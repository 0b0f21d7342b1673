#include "engine/packed_rgb.h"

#include <utility>

#include "engine/alpha_rows.h"

namespace velmara {

PackedRgbCanvas::PackedRgbCanvas(BitmapBuilder rgba) : rgba_(std::move(rgba)) {}

std::optional<PackedRgbCanvas> PackedRgbCanvas::allocate(int width, int height) {
  auto rgba = BitmapBuilder::allocate(width, height, 4);
  if (!rgba) return std::nullopt;
  return PackedRgbCanvas(std::move(*rgba));
}

// The packed bytes lie at the end of the memory, so that spreading them from the front to 4 bytes
// a pixel never overwrites one that is still to be read.
std::span<std::uint8_t> PackedRgbCanvas::packed() {
  const std::span<std::uint8_t> all = rgba_.bytes();
  return all.last(all.size() / 4 * 3);
}

Bitmap PackedRgbCanvas::finish() && {
  addAlpha(packed().data(), packed().size() / 3, rgba_.bytes().data());
  return std::move(rgba_).finish();
}

}  // namespace velmara
