#pragma once

#include <memory>
#include <vector>

#include "base/bitmap.h"

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

  bool isValid() const { return levels_ != nullptr; }
  /// The picture itself, its alpha gone if it let nothing through.
  const Bitmap& picture() const { return levels_->front(); }
  std::size_t levelCount() const { return levels_ ? levels_->size() : 0; }

  /// The smallest level that still has twice the pixels of the size both ways; else the picture.
  const Bitmap& levelFor(int width, int height) const;

 private:
  std::shared_ptr<const std::vector<Bitmap>> levels_;
};

/// A bitmap of half the width and height, rounded up. Not valid if the memory is not to be had.
Bitmap halved(const Bitmap& bitmap);

}  // namespace velmara
