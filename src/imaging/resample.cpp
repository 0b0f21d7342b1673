#include "imaging/resample.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "base/alpha.h"
#include "imaging/row_drawer.h"

namespace velmara {
namespace {

bool isWhole(double value) {
  return value == std::floor(value) && std::abs(value) < 1e9;
}

/// Copies pixels from a place in a 4-sample bitmap, transparent beyond its edges.
Bitmap copiedPart(const Bitmap& rgba, std::int64_t left, std::int64_t top, int width, int height) {
  auto canvas = BitmapBuilder::allocate(width, height, 4);
  if (!canvas || !rgba.isValid()) return {};
  const std::int64_t from = std::clamp<std::int64_t>(left, 0, rgba.width());
  const std::int64_t to = std::clamp<std::int64_t>(left + width, from, rgba.width());
  for (int y = 0; y < height; ++y) {
    std::uint8_t* out = canvas->row(y);
    std::memset(out, 0, canvas->rowBytes());
    const std::int64_t source = top + y;
    if (source < 0 || source >= rgba.height() || to == from) continue;
    std::memcpy(out + static_cast<std::size_t>(from - left) * 4,
                rgba.pixel(static_cast<int>(from), static_cast<int>(source)),
                static_cast<std::size_t>(to - from) * 4);
  }
  return std::move(*canvas).finish();
}

// A canvas of the samples that the taps are of.
Bitmap filtered(const Bitmap& bitmap, const AxisTaps& across, const AxisTaps& down,
                bool weighAlpha) {
  const auto height = static_cast<int>(down.first.size());
  auto canvas = BitmapBuilder::allocate(static_cast<int>(across.first.size()), height, 4);
  if (!canvas) return {};
  parallelRows(height, [&](int first, int end) {
    RowDrawer drawer(bitmap, across, down, weighAlpha);
    for (int y = first; y < end; ++y) drawer.draw(y, canvas->row(y));
  });
  return std::move(*canvas).finish();
}

}  // namespace

Bitmap drawnPart(const Bitmap& bitmap, const Rect& part, int width, int height) {
  if (!bitmap.isValid() || !isAllowedBitmapSize(width, height, 4) || !(part.width > 0.0) ||
      !(part.height > 0.0)) {
    return {};
  }
  const double top = bitmap.height() - (part.y + part.height);
  const bool isExact =
      part.width == width && part.height == height && isWhole(part.x) && isWhole(top);
  if (!isExact) {
    return filtered(bitmap, lanczosTaps(bitmap.width(), part.x, part.width, width, {0, width}),
                    lanczosTaps(bitmap.height(), top, part.height, height, {0, height}),
                    !isOpaque(bitmap));
  }
  if (part.x == 0.0 && top == 0.0 && width == bitmap.width() && height == bitmap.height()) {
    return asRgba(bitmap);
  }
  return copiedPart(asRgba(bitmap), static_cast<std::int64_t>(part.x),
                    static_cast<std::int64_t>(top), width, height);
}

Bitmap resampled(const Bitmap& bitmap, int width, int height) {
  return drawnPart(
      bitmap, {0.0, 0.0, static_cast<double>(bitmap.width()), static_cast<double>(bitmap.height())},
      width, height);
}

ResampledBitmap::ResampledBitmap(Bitmap source, int width, int height) {
  if (!source.isValid() || width <= 0 || height <= 0) return;
  source_ = std::move(source);
  width_ = width;
  height_ = height;
  isOpaque_ = isOpaque(source_);
}

Bitmap ResampledBitmap::part(const PixelRect& rect) const {
  const PixelRect inside = intersection(rect, {0, 0, width_, height_});
  if (inside.isEmpty()) return {};
  if (width_ == source_.width() && height_ == source_.height()) {
    return asRgba(copiedPixels(source_, inside));
  }
  return filtered(
      source_, lanczosTaps(source_.width(), 0.0, source_.width(), width_, {inside.x, inside.width}),
      lanczosTaps(source_.height(), 0.0, source_.height(), height_, {inside.y, inside.height}),
      !isOpaque_);
}

Bitmap copiedPixels(const Bitmap& bitmap, const PixelRect& rect) {
  if (!bitmap.isValid()) return {};
  const PixelRect inside = intersection(rect, {0, 0, bitmap.width(), bitmap.height()});
  auto canvas = BitmapBuilder::allocate(inside.width, inside.height, bitmap.samplesPerPixel());
  if (!canvas) return {};
  for (int y = 0; y < inside.height; ++y) {
    std::memcpy(canvas->row(y), bitmap.pixel(inside.x, inside.y + y), canvas->rowBytes());
  }
  return std::move(*canvas).finish();
}

int canvasPixels(double length) {
  constexpr double kMost = std::numeric_limits<int>::max();
  return length >= 1.0 ? static_cast<int>(std::min(std::round(length), kMost)) : 1;
}

}  // namespace velmara
