#pragma once

#include "base/geometry.h"

namespace velmara {

/// One step of dragging a picture about in its container.
struct PanStep {
  /// Whether the picture moves at all.
  bool isTaken = false;
  /// Of the picture, in its container.
  Rect frame;
  /// The pointer's position that the next step is measured from: the new one only if the step was
  /// taken.
  Point lastDragLocation;

  friend bool operator==(const PanStep&, const PanStep&) = default;
};

/// Whether a picture can be dragged: it is larger than its container one way or the other.
bool canPan(Rect picture, Size container);

/// The step of a pointer that moved from lastDragLocation to `pointer`, both in the same
/// coordinates (y up). Only the sides that overflow move. A step that would draw an edge of the
/// picture into the container on one of these sides is dropped as a whole.
PanStep panStep(Rect picture, Size container, Point lastDragLocation, Point pointer);

/// Whether the pointer lies inside an area of this size with its origin at (0, 0). Dragging outside
/// is not followed.
bool isInside(Point pointer, Size area);

}  // namespace velmara
