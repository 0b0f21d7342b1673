#include "imaging/resampled_bitmap.h"

#include <cstring>
#include <utility>

#include "base/alpha.h"
#include "imaging/lanczos.h"
#include "imaging/parallel_rows.h"
#include "imaging/row_drawer.h"

namespace velmara {

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

}  // namespace velmara
