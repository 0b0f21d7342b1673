#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "base/bitmap.h"
#include "base/geometry.h"

namespace velmara {

/// The bytes of an ICC profile, shared; null where a picture has none.
using ColorProfile = std::shared_ptr<const std::vector<std::uint8_t>>;

/// A picture as the user knows it: one or more representations (the pictures inside one file), a
/// logical size and the profile its colours are meant in.
///
/// A value: cheap to copy, never changed in place, safe to read from any thread. A default-made
/// image stands for "no image" and is not valid.
class Image {
 public:
  Image() = default;
  /// An image of one representation whose logical size is its pixel size.
  explicit Image(Bitmap bitmap, ColorProfile profile = nullptr);
  /// An image of several representations, the first of which stands for it; none make it "no
  /// image".
  Image(std::vector<Bitmap> representations, Size size, ColorProfile profile = nullptr);

  /// Whether there is a picture.
  bool isValid() const { return !representations_.empty() && representations_[0].isValid(); }
  /// The logical size; it need not be the pixel size of any representation.
  Size size() const { return size_; }
  /// The first representation; not valid for an image that is not.
  const Bitmap& bitmap() const;
  /// All pictures of the file, the first one first.
  const std::vector<Bitmap>& representations() const { return representations_; }
  /// The profile that all of them share; null for none.
  const ColorProfile& profile() const { return profile_; }

  /// The representation to draw this image from at a size: the smallest that has at least as many
  /// pixels both ways, else the one with the most pixels.
  const Bitmap& representationForDrawing(Size pixels) const;

  /// The same pictures under another logical size.
  Image withSize(Size size) const;

 private:
  std::vector<Bitmap> representations_;
  Size size_;
  ColorProfile profile_;
};

}  // namespace velmara
