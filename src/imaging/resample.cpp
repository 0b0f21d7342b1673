#include "imaging/resample.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "base/alpha.h"
#include "imaging/lanczos.h"
#include "imaging/parallel_rows.h"
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

}  // namespace velmara
