#pragma once

#include <QColorTransform>
#include <QImage>

#include "base/bitmap.h"
#include "base/image.h"

namespace velmara {

/// Turns pictures into what the screen shows: sRGB, in the layout that is drawn fastest. The
/// filter's own numbers are never touched by it.
class ScreenColors {
 public:
  ScreenColors() = default;
  /// From a profile's colours; from sRGB where there is none or it cannot be used.
  explicit ScreenColors(const ColorProfile& profile);

  /// A copy of the bitmap for drawing. Null for a bitmap that is not valid.
  QImage imageFor(const Bitmap& bitmap) const;

 private:
  bool converts_ = false;
  QColorTransform transform_;
};

}  // namespace velmara
