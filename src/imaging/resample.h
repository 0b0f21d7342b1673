#pragma once

#include <functional>

#include "base/bitmap.h"
#include "base/geometry.h"

namespace velmara {

/// The part of a bitmap inside a rectangle, drawn over the whole extent of a 4-sample canvas of
/// width x height pixels.
///
/// The rectangle is in pixels of the bitmap, its origin at the bottom-left corner, y up; fractions
/// are allowed, and what lies outside the bitmap is transparent (a canvas pixel half outside is
/// half transparent). A whole rectangle at its own size is an exact copy. Everything else is
/// resampled with a three-lobed Lanczos filter that widens as the picture shrinks, so that fine
/// patterns turn into their mean and not into others; colours are weighted by their alpha.
///
/// Not valid if the bitmap is not, the rectangle has no extent, a side is not positive or the
/// memory is not to be had.
Bitmap drawnPart(const Bitmap& bitmap, const Rect& part, int width, int height);

/// The whole bitmap at another size, likewise.
Bitmap resampled(const Bitmap& bitmap, int width, int height);

/// A bitmap at another size that is never made as a whole: any part can be had by itself, costs
/// what it shows, and has the very samples that resampled() gives. The size may therefore be beyond
/// what a bitmap may have. A value, cheap to copy; any thread may read it.
class ResampledBitmap {
 public:
  ResampledBitmap() = default;
  /// Not valid if the source is not or a side is not positive.
  ResampledBitmap(Bitmap source, int width, int height);

  /// Whether there is a picture, and its size in pixels.
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

/// The pixel count of a canvas for a logical length: rounded to the nearest, at least 1.
int canvasPixels(double length);

/// Runs a piece of work over the rows 0 to `rows`, cut into as many stretches as the machine has
/// processors, and waits for all of them. The work gets the first row of a stretch and the one
/// behind its last, on any thread, and must not throw; stretches do not overlap.
void parallelRows(int rows, const std::function<void(int, int)>& work);

}  // namespace velmara
