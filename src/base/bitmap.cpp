#include "base/bitmap.h"

#include <algorithm>
#include <new>
#include <utility>

namespace velmara {

Bitmap::Bitmap(std::shared_ptr<const std::uint8_t[]> samples, int width, int height,
               int samplesPerPixel)
    : samples_(std::move(samples)),
      width_(width),
      height_(height),
      samplesPerPixel_(samplesPerPixel) {}

Bitmap Bitmap::copyOf(std::span<const std::uint8_t> bytes, int width, int height,
                      int samplesPerPixel) {
  auto builder = BitmapBuilder::allocate(width, height, samplesPerPixel);
  if (!builder || builder->bytes().size() != bytes.size()) return {};
  std::copy(bytes.begin(), bytes.end(), builder->bytes().begin());
  return std::move(*builder).finish();
}

bool isAllowedBitmapSize(std::int64_t width, std::int64_t height, int samplesPerPixel) {
  return width > 0 && height > 0 && samplesPerPixel >= 1 && samplesPerPixel <= 4 &&
         width <= Bitmap::kMaxPixels / height;
}

std::optional<BitmapBuilder> BitmapBuilder::allocate(std::int64_t width, std::int64_t height,
                                                     int samplesPerPixel) {
  if (!isAllowedBitmapSize(width, height, samplesPerPixel)) return std::nullopt;
  const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                     static_cast<std::size_t>(samplesPerPixel);
  try {
    return BitmapBuilder(std::make_shared_for_overwrite<std::uint8_t[]>(count),
                         static_cast<int>(width), static_cast<int>(height), samplesPerPixel);
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
}

BitmapBuilder::BitmapBuilder(std::shared_ptr<std::uint8_t[]> samples, int width, int height,
                             int samplesPerPixel)
    : samples_(std::move(samples)),
      width_(width),
      height_(height),
      samplesPerPixel_(samplesPerPixel) {}

Bitmap BitmapBuilder::finish() && {
  return {std::move(samples_), width_, height_, samplesPerPixel_};
}

}  // namespace velmara
