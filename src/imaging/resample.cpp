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

Bitmap filteredPart(const Bitmap& bitmap, const Rect& part, double top, int width, int height) {
  auto canvas = BitmapBuilder::allocate(width, height, 4);
  if (!canvas) return {};
  const AxisTaps across = lanczosTaps(bitmap.width(), part.x, part.width, width);
  const AxisTaps down = lanczosTaps(bitmap.height(), top, part.height, height);
  const bool weighAlpha = !isOpaque(bitmap);
  parallelRows(height, [&](int first, int end) {
    RowDrawer drawer(bitmap, across, down, weighAlpha);
    for (int y = first; y < end; ++y) drawer.draw(y, canvas->row(y));
  });
  return std::move(*canvas).finish();
}

bool hasExtent(double width, double height) {
  return width > 0.0 && height > 0.0;
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
  if (!isExact) return filteredPart(bitmap, part, top, width, height);
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
  auto canvas = BitmapBuilder::allocate(inside.width, inside.height, 4);
  if (!canvas) return {};
  const AxisTaps across =
      lanczosTaps(source_.width(), 0.0, source_.width(), width_, {inside.x, inside.width});
  const AxisTaps down =
      lanczosTaps(source_.height(), 0.0, source_.height(), height_, {inside.y, inside.height});
  parallelRows(inside.height, [&](int first, int end) {
    RowDrawer drawer(source_, across, down, !isOpaque_);
    for (int y = first; y < end; ++y) drawer.draw(y, canvas->row(y));
  });
  return std::move(*canvas).finish();
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

Image croppedImage(const Image& image, const Rect& part) {
  if (!image.isValid() || !hasExtent(part.width, part.height)) return image;
  const Size size = image.size();
  if (!hasExtent(size.width, size.height)) return image;
  const int width = canvasPixels(part.width);
  const int height = canvasPixels(part.height);
  // What the whole image would need for the canvas to have its pixels one to one.
  const Bitmap& source =
      image.representationForDrawing({std::round(size.width * width / part.width),
                                      std::round(size.height * height / part.height)});
  const double across = source.width() / size.width;
  const double up = source.height() / size.height;
  const Rect pixels = {part.x * across, part.y * up, part.width * across, part.height * up};
  return Image({drawnPart(source, pixels, width, height)}, {part.width, part.height},
               image.profile());
}

Image scaledImage(const Image& image, Size size) {
  if (!image.isValid() || !hasExtent(size.width, size.height)) return {};
  const int width = canvasPixels(size.width);
  const int height = canvasPixels(size.height);
  const Bitmap& source =
      image.representationForDrawing({static_cast<double>(width), static_cast<double>(height)});
  return Image({resampled(source, width, height)}, size, image.profile());
}

}  // namespace velmara
