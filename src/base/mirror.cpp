#include "base/mirror.h"

#include <cstring>
#include <string>
#include <utility>

namespace velmara {
namespace {

// Mirrors a row's ends into the frame beside it.
void mirrorEnds(std::uint8_t* row, int width, int samples, int border) {
  const auto pixelBytes = static_cast<std::size_t>(samples);
  const auto pixel = [&](std::int64_t x) { return row + (x + border) * std::int64_t{samples}; };
  for (int x = 1; x <= border; ++x) {
    std::memcpy(pixel(-x), pixel(mirroredIndex(-std::int64_t{x}, width)), pixelBytes);
    const std::int64_t right = std::int64_t{width} - 1 + x;
    std::memcpy(pixel(right), pixel(mirroredIndex(right, width)), pixelBytes);
  }
}

}  // namespace

std::int64_t mirroredIndex(std::int64_t index, std::int64_t count) {
  const std::int64_t period = 2 * count;
  std::int64_t position = index % period;
  if (position < 0) position += period;
  return position < count ? position : period - 1 - position;
}

PictureRows rowsOf(const Bitmap& bitmap) {
  return {
      bitmap.width(), bitmap.height(), bitmap.samplesPerPixel(),
      [bitmap](int y, std::uint8_t* out) { std::memcpy(out, bitmap.row(y), bitmap.rowBytes()); }};
}

Bitmap addBorder(const PictureRows& picture, int border, const LogSink& log) {
  const auto& [width, height, samples, writeRow] = picture;
  if (log) {
    log("Utils addBorderToImage");
    log("input Image Size {" + std::to_string(width) + ", " + std::to_string(height) + "}");
  }
  if (border < 0) return {};
  auto framed = BitmapBuilder::allocate(width + 2 * std::int64_t{border},
                                        height + 2 * std::int64_t{border}, samples);
  if (!framed) return {};
  const std::size_t offset = static_cast<std::size_t>(border) * static_cast<std::size_t>(samples);
  for (int y = 0; y < height; ++y) {
    std::uint8_t* row = framed->row(y + border);
    writeRow(y, row + offset);
    mirrorEnds(row, width, samples, border);
  }
  for (int y = 1; y <= border; ++y) {
    for (const std::int64_t outside : {-std::int64_t{y}, height - 1 + std::int64_t{y}}) {
      const auto inside = static_cast<int>(mirroredIndex(outside, height));
      std::memcpy(framed->row(static_cast<int>(outside + border)), framed->row(inside + border),
                  framed->rowBytes());
    }
  }
  return std::move(*framed).finish();
}

}  // namespace velmara
