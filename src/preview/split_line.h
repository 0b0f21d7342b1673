#pragma once

#include <optional>

#include "base/geometry.h"

namespace velmara {

/// The split view over the shown picture.
struct SplitViewPlacement {
  /// In points.
  Rect frame;
  /// `lastSplitViewDividerPosPercent` after it was restored.
  float dividerPercent = 0.0F;
  /// Of divider 0, from the split view's left edge.
  float dividerPosition = 0.0F;

  friend bool operator==(const SplitViewPlacement&, const SplitViewPlacement&) = default;
};

/// As wide as the picture, but never wider than the container, and as high as the container. A
/// percentage of 0 is unset and becomes the middle; 90 is the most that is restored.
SplitViewPlacement splitViewPlacement(double pictureWidth, Size container, float dividerPercent);

/// `lastSplitViewDividerPosPercent` for a line that was moved; nothing while the split view has no
/// width.
std::optional<float> dividerPercent(double dividerPosition, double splitViewWidth);

/// The column of the picture that lies under the line: the width of the "before" part. A position
/// of 0 or less counts as 1. Half of what a picture wider than its container hides comes on top.
double cropX(double dividerPosition, double resultWidth, double containerWidth);

/// The part of a result's place in its container that the original covers: what is left of the
/// line, which stands on a whole pixel, and never so far left that nothing remains.
PixelRect beforePart(PixelRect result, double dividerPosition, double containerWidth);

}  // namespace velmara
