#include "engine/packed_rgb.h"

#include <algorithm>
#include <utility>

namespace velmara {

PackedRgbCanvas::PackedRgbCanvas(BitmapBuilder rgba) : rgba_(std::move(rgba)) {}

std::optional<PackedRgbCanvas> PackedRgbCanvas::allocate(int width, int height) {
  auto rgba = BitmapBuilder::allocate(width, height, 4);
  if (!rgba) return std::nullopt;
  PackedRgbCanvas canvas(std::move(*rgba));
  std::ranges::fill(canvas.packed(), std::uint8_t{0});
  return canvas;
}

// The packed bytes lie at the end of the memory, so that spreading them from the front to 4 bytes
// a pixel never overwrites one that is still to be read.
std::span<std::uint8_t> PackedRgbCanvas::packed() {
  const std::span<std::uint8_t> all = rgba_.bytes();
  return all.last(all.size() / 4 * 3);
}

Bitmap PackedRgbCanvas::finish() && {
  const std::uint8_t* in = packed().data();
  std::uint8_t* out = rgba_.bytes().data();
  const std::uint8_t* end = in + packed().size();
  for (; in != end; in += 3, out += 4) {
    const std::uint8_t rgb[3] = {in[0], in[1], in[2]};
    std::copy_n(rgb, 3, out);
    out[3] = 255;
  }
  return std::move(rgba_).finish();
}

}  // namespace velmara
