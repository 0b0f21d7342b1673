#include "preview/pan.h"

#include "preview/preview_geometry.h"

namespace velmara {
namespace {

// Whether a side of the picture that starts at `origin` covers a container of `extent`.
bool covers(double origin, double length, double extent) {
  return origin <= 0.0 && origin + length >= extent;
}

}  // namespace

bool canPan(Rect picture, Size container) {
  return overflowFactors(picture, container).overflows();
}

PanStep panStep(Rect picture, Size container, Point lastDragLocation, Point pointer) {
  const OverflowFactors overflow = overflowFactors(picture, container);
  const auto dx = static_cast<float>(pointer.x - lastDragLocation.x);
  const auto dy = static_cast<float>(pointer.y - lastDragLocation.y);
  const PanStep dropped{false, picture, lastDragLocation};
  Rect moved = picture;
  if (overflow.overflowsWidth()) {
    moved.x += double{dx};
    if (!covers(moved.x, moved.width, container.width)) return dropped;
  }
  if (overflow.overflowsHeight()) {
    moved.y += double{dy};
    if (!covers(moved.y, moved.height, container.height)) return dropped;
  }
  if (!overflow.overflows()) return dropped;
  return {true, moved, pointer};
}

bool isInside(Point pointer, Size area) {
  return pointer.x >= 0.0 && pointer.x < area.width && pointer.y >= 0.0 && pointer.y < area.height;
}

}  // namespace velmara
