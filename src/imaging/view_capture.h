#pragma once

#include "base/geometry.h"
#include "base/image.h"

namespace velmara {

/// A view as the image toolkit sees it when it takes a picture of one. Main thread only.
class CapturableView {
 public:
  virtual ~CapturableView() = default;

  /// The view's own extent, in logical units.
  virtual Rect bounds() const = 0;
  /// The pixels the view shows now inside its bounds; not valid if they cannot be had.
  virtual Bitmap captureBounds() = 0;
  /// The view's bounds drawn afresh, whatever is on the screen.
  virtual Bitmap renderBounds() = 0;
};

}  // namespace velmara
