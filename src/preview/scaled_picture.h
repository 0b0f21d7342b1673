#pragma once

#include <memory>
#include <vector>

#include "base/bitmap.h"
#include "base/geometry.h"
#include "imaging/resample.h"

namespace velmara {

/// A picture with its halves, quarters and so on, made once, so that a small view of a large photo
/// is not made from all of its pixels again and again. Each level is the mean of two by two pixels
/// of the one before (an odd last row or column stands for itself).
///
/// A value, cheap to copy; any thread may read it.
class PicturePyramid {
 public:
  PicturePyramid() = default;
  /// Takes about the time of one look at every pixel (so not on the main thread for a large photo)
  /// and a third of the picture's memory. A picture with transparent pixels has no smaller levels,
  /// since their colours would run into the others; neither has one that memory does not suffice
  /// for.
  explicit PicturePyramid(const Bitmap& picture);

  /// Whether there is a picture.
  bool isValid() const { return levels_ != nullptr; }
  /// The picture itself, its alpha gone if it let nothing through.
  const Bitmap& picture() const { return levels_->front(); }
  /// With the picture itself; 0 if it is not valid.
  std::size_t levelCount() const { return levels_ ? levels_->size() : 0; }

  /// The smallest level that still has twice the pixels of the size both ways; else the picture.
  const Bitmap& levelFor(int width, int height) const;

 private:
  std::shared_ptr<const std::vector<Bitmap>> levels_;
};

/// A bitmap of half the width and height, rounded up. Not valid if the memory is not to be had.
Bitmap halved(const Bitmap& bitmap);

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

  /// Whether there is a picture, and its size in pixels.
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
