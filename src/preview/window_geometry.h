#pragma once

#include "base/geometry.h"
#include "preview/viewport.h"

namespace velmara {

/// The main window on a screen; the origin is the screen's bottom-left corner.
struct MainWindowGeometry {
  /// In points.
  Rect frame;
  Size minimumSize;
  /// The visible part of the screen, which may be smaller than the minimum: the minimum wins.
  Size maximumSize;

  friend bool operator==(const MainWindowGeometry&, const MainWindowGeometry&) = default;
};

/// Nine tenths of the visible part of the screen, at least 1220 x 700, a twentieth away from the
/// screen's left and bottom edge.
MainWindowGeometry mainWindowGeometry(Size visibleScreen);

/// The same rectangle measured from the top edge, y down.
Rect topDown(Rect rect, double containerHeight);

/// In points.
inline constexpr double kTitleBarHeight = 70.0;

/// `vwTopContainer` as the title bar of a window.
Rect titleBarFrame(double windowWidth);

/// `vwPreviewContainer` inside `vwMainContainer`: what the before/after bar leaves, and one point
/// more, which hides the seam.
Rect previewContainerFrame(Size mainContainer, double beforeAfterHeight);

/// The two image containers inside `vwPreviewContainer`.
struct ContainerFrames {
  /// In points of `vwPreviewContainer`.
  Rect vwImageContainer;
  Rect vwImageContainerForDualMode;

  friend bool operator==(const ContainerFrames&, const ContainerFrames&) = default;
};

/// Dual style halves the preview area (whole units: of an odd width the last column stays free),
/// every other style gives both containers all of it.
ContainerFrames containerFrames(PreviewStyle style, Size previewContainer);

}  // namespace velmara
