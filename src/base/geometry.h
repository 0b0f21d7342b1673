#pragma once

#include <algorithm>

namespace velmara {

/// Width and height in logical units (points), fractions allowed.
struct Size {
  /// In points.
  double width = 0.0;
  double height = 0.0;

  friend bool operator==(const Size&, const Size&) = default;
};

/// A point; the origin of an image's coordinate system is its bottom-left corner.
struct Point {
  /// From the origin, x to the right and y up.
  double x = 0.0;
  double y = 0.0;

  friend bool operator==(const Point&, const Point&) = default;
};

/// A rectangle named by its bottom-left corner and its size.
struct Rect {
  /// In the units of the picture or view it lies in, x to the right and y up.
  double x = 0.0;
  double y = 0.0;
  double width = 0.0;
  double height = 0.0;

  friend bool operator==(const Rect&, const Rect&) = default;
};

/// A rectangle of whole pixels named by its top-left corner, as rows of samples are counted.
struct PixelRect {
  /// In pixels, x to the right and y down.
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  /// Whether it holds no pixel.
  bool isEmpty() const { return width <= 0 || height <= 0; }

  friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// What two rectangles have in common; empty if that is nothing.
constexpr PixelRect intersection(const PixelRect& a, const PixelRect& b) {
  const int left = std::max(a.x, b.x);
  const int top = std::max(a.y, b.y);
  const int right = std::min(a.x + a.width, b.x + b.width);
  const int bottom = std::min(a.y + a.height, b.y + b.height);
  return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

}  // namespace velmara
