#include "base/mirror.h"

#include <cstring>
#include <utility>

namespace velmara {
namespace {

// One row of the frame: the source row between its own mirrored ends.
void mirrorRow(const std::uint8_t* source, int width, int samples, int border, std::uint8_t* out) {
  const auto pixelBytes = static_cast<std::size_t>(samples);
  for (int x = 0; x < border; ++x) {
    const auto left = static_cast<std::size_t>(mirroredIndex(std::int64_t{x} - border, width));
    const auto right = static_cast<std::size_t>(mirroredIndex(std::int64_t{x} + width, width));
    std::memcpy(out + static_cast<std::size_t>(x) * pixelBytes, source + left * pixelBytes,
                pixelBytes);
    std::memcpy(out + (static_cast<std::size_t>(border) + static_cast<std::size_t>(width) +
                       static_cast<std::size_t>(x)) *
                          pixelBytes,
                source + right * pixelBytes, pixelBytes);
  }
  std::memcpy(out + static_cast<std::size_t>(border) * pixelBytes, source,
              static_cast<std::size_t>(width) * pixelBytes);
}

}  // namespace

std::int64_t mirroredIndex(std::int64_t index, std::int64_t count) {
  const std::int64_t period = 2 * count;
  std::int64_t position = index % period;
  if (position < 0) position += period;
  return position < count ? position : period - 1 - position;
}

Bitmap withMirroredBorder(const Bitmap& bitmap, int border) {
  if (!bitmap.isValid() || border < 0) return {};
  auto framed =
      BitmapBuilder::allocate(bitmap.width() + 2 * std::int64_t{border},
                              bitmap.height() + 2 * std::int64_t{border}, bitmap.samplesPerPixel());
  if (!framed) return {};
  for (int y = 0; y < framed->height(); ++y) {
    const auto source = mirroredIndex(std::int64_t{y} - border, bitmap.height());
    mirrorRow(bitmap.row(static_cast<int>(source)), bitmap.width(), bitmap.samplesPerPixel(),
              border, framed->row(y));
  }
  return std::move(*framed).finish();
}

}  // namespace velmara
