#pragma once

#include "base/bitmap.h"
#include "base/geometry.h"

namespace velmara {

/// A bitmap at another size that is never made as a whole: any part can be had by itself, costs
/// what it shows, and has the very samples that resampled() gives. The size may therefore be beyond
/// what a bitmap may have. A value, cheap to copy; any thread may read it.
class ResampledBitmap {
 public:
  ResampledBitmap() = default;
  /// Not valid if the source is not or a side is not positive.
  ResampledBitmap(Bitmap source, int width, int height);

  bool isValid() const { return source_.isValid(); }
  int width() const { return width_; }
  int height() const { return height_; }

  /// The pixels inside a rectangle, which is cut at the edges first, as a 4-sample bitmap. Not
  /// valid if nothing is left of it or the memory is not to be had.
  Bitmap part(const PixelRect& rect) const;

 private:
  Bitmap source_;
  int width_ = 0;
  int height_ = 0;
  bool isOpaque_ = true;
};

/// The pixels of a bitmap inside a rectangle, cut at its edges, with the same samples per pixel.
/// Not valid if nothing is left or the memory is not to be had.
Bitmap copiedPixels(const Bitmap& bitmap, const PixelRect& rect);

}  // namespace velmara
