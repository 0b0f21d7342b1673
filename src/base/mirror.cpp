#include "base/mirror.h"

#include <cstring>
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

Bitmap withMirroredBorder(int width, int height, int samples, int border,
                          const std::function<void(int y, std::uint8_t* out)>& writeRow) {
  auto framed = BitmapBuilder::allocate(width + 2 * std::int64_t{border},
                                        height + 2 * std::int64_t{border}, samples);
  if (!framed) return {};
  const std::size_t offset = static_cast<std::size_t>(border) * static_cast<std::size_t>(samples);
  for (int y = 0; y < height; ++y) {
    std::uint8_t* row = framed->row(y + border);
    writeRow(y, row + offset);
    mirrorEnds(row, width, samples, border);
  }
  const auto mirrorRow = [&](int y) {
    const auto source = static_cast<int>(mirroredIndex(y, height));
    std::memcpy(framed->row(y + border), framed->row(source + border), framed->rowBytes());
  };
  for (int y = 1; y <= border; ++y) {
    mirrorRow(-y);
    mirrorRow(height - 1 + y);
  }
  return std::move(*framed).finish();
}

Bitmap withMirroredBorder(const Bitmap& bitmap, int border) {
  if (!bitmap.isValid() || border < 0) return {};
  return withMirroredBorder(
      bitmap.width(), bitmap.height(), bitmap.samplesPerPixel(), border,
      [&](int y, std::uint8_t* out) { std::memcpy(out, bitmap.row(y), bitmap.rowBytes()); });
}

}  // namespace velmara
