#pragma once

#include "base/geometry.h"

namespace velmara {

/// The main window on a screen; the origin is the screen's bottom-left corner.
struct MainWindowGeometry {
  Rect frame;
  Size minimumSize;
  /// The visible part of the screen, which may be smaller than the minimum: the minimum wins.
  Size maximumSize;

  friend bool operator==(const MainWindowGeometry&, const MainWindowGeometry&) = default;
};

/// Nine tenths of the visible part of the screen, at least 1220 x 700, a twentieth away from the
/// screen's left and bottom edge.
MainWindowGeometry mainWindowGeometry(Size visibleScreen);

inline constexpr double kTitleBarHeight = 70.0;

/// `vwTopContainer` as the title bar of a window.
Rect titleBarFrame(double windowWidth);

/// `vwPreviewContainer` inside `vwMainContainer`: what the before/after bar leaves, and one point
/// more, which hides the seam.
Rect previewContainerFrame(Size mainContainer, double beforeAfterHeight);

}  // namespace velmara
