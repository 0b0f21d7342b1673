#pragma once

#include "base/bitmap.h"
#include "base/geometry.h"
#include "imaging/resampled_bitmap.h"
#include "preview/picture_pyramid.h"

namespace velmara {

/// A picture as it is shown: the whole photo at the current size, though only what is looked at is
/// ever rendered. This is what stands behind `imgToBeFilter` and `zoomedImage`.
///
/// Rendering a rectangle gives the very pixels that rendering everything and cutting the rectangle
/// out would give. At the photo's own size they are the photo's pixels; at any other size they are
/// resampled with a Lanczos filter, for much smaller sizes from a level of the pyramid.
///
/// A value, cheap to copy; any thread may read it.
class ScaledPicture {
 public:
  ScaledPicture() = default;
  /// The picture at a size, in whole pixels (wholePixels()). Sizes beyond a billion pixels a side
  /// are not valid.
  ScaledPicture(PicturePyramid picture, Size size);

  bool isValid() const { return view_.isValid(); }
  int width() const { return view_.width(); }
  int height() const { return view_.height(); }
  /// Its size for the geometry.
  Size size() const { return {static_cast<double>(width()), static_cast<double>(height())}; }

  /// The pixels of a rectangle, cut at the picture's edges, as a 4-sample bitmap. Not valid if
  /// nothing is left or the memory is not to be had.
  Bitmap render(const PixelRect& rect) const { return view_.part(rect); }

 private:
  PicturePyramid picture_;
  ResampledBitmap view_;
};

}  // namespace velmara
