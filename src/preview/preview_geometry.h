#pragma once

#include <optional>

#include "base/geometry.h"
#include "preview/preview_flags.h"

namespace velmara {

/// Where things stand in the preview. Rectangles have their origin at the bottom-left corner, y up;
/// topDown() turns them for a toolkit that counts from the top.

/// The two image containers inside `vwPreviewContainer`.
struct ContainerFrames {
  Rect vwImageContainer;
  Rect vwImageContainerForDualMode;

  friend bool operator==(const ContainerFrames&, const ContainerFrames&) = default;
};

/// Dual style halves the preview area (whole units: of an odd width the last column stays free),
/// every other style gives both containers all of it.
ContainerFrames containerFrames(PreviewStyle style, Size previewContainer);

/// What choosing a style does to the layout.
struct StyleChange {
  PreviewStyle style = PreviewStyle::kSingle;
  /// Set when the containers are laid out again; then the picture is zoomed anew, a fresh result is
  /// asked for, and `actualPreviewSize` is the size of `vwImageContainer`.
  std::optional<ContainerFrames> layout;
  bool isDualContainerShown = false;
  /// Whether the split view is placed at once, before the zoom does it anyway.
  bool placesSplitView = false;

  friend bool operator==(const StyleChange&, const StyleChange&) = default;
};

/// Only coming from or going to dual is a new layout: between single and split the pictures stay as
/// they are. A style that is none of the three changes nothing.
StyleChange styleChange(PreviewStyle current, PreviewStyle chosen, Size previewContainer);

/// The rectangle of a picture in the middle of its container.
Rect centredRect(Size picture, Size container);

/// The rectangle of a picture at another size that keeps the place of it that lies under a point of
/// the container where it is, as far as the picture goes on covering the container. Along an axis
/// where it does not overflow it is centred. `before` is the picture's rectangle until now.
Rect rectAround(Point anchor, Rect before, Size picture, Size container);

/// The same rectangle measured from the container's top edge, y down.
Rect topDown(Rect rect, double containerHeight);
Point topDown(Point point, double containerHeight);

/// A length in device pixels, whole.
Size devicePixels(Size logical, double devicePixelRatio);

/// How much larger than its container a picture is shown, in single precision.
struct OverflowFactors {
  float width = 0.0F;
  float height = 0.0F;

  bool overflowsWidth() const { return width > 1.0F; }
  bool overflowsHeight() const { return height > 1.0F; }
  bool overflows() const { return overflowsWidth() || overflowsHeight(); }

  friend bool operator==(const OverflowFactors&, const OverflowFactors&) = default;
};

OverflowFactors overflowFactors(Rect picture, Size container);

/// The split view over the shown picture.
struct SplitViewPlacement {
  Rect frame;
  /// `lastSplitViewDividerPosPercent` after it was restored.
  float dividerPercent = 0.0F;
  /// Of divider 0, from the split view's left edge.
  float dividerPosition = 0.0F;

  friend bool operator==(const SplitViewPlacement&, const SplitViewPlacement&) = default;
};

inline constexpr float kFirstDividerPercent = 50.0F;
inline constexpr float kLargestDividerPercent = 90.0F;

/// As wide as the picture, but never wider than the container, and as high as the container. A
/// percentage of 0 is unset and becomes the middle; 90 is the most that is restored.
SplitViewPlacement splitViewPlacement(double pictureWidth, Size container, float dividerPercent);

/// `lastSplitViewDividerPosPercent` for a line that was moved; nothing while the split view has no
/// width.
std::optional<float> dividerPercent(double dividerPosition, double splitViewWidth);

/// The column of the picture that lies under the line: the width of the "before" part. A position
/// of 0 or less counts as 1. Half of what a picture wider than its container hides comes on top.
double cropX(double dividerPosition, double resultWidth, double containerWidth);

}  // namespace velmara
