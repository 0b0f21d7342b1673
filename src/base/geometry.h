#pragma once

namespace velmara {

/// Width and height in logical units (points), fractions allowed.
struct Size {
  double width = 0.0;
  double height = 0.0;

  friend bool operator==(const Size&, const Size&) = default;
};

/// A point; the origin of an image's coordinate system is its bottom-left corner.
struct Point {
  double x = 0.0;
  double y = 0.0;

  friend bool operator==(const Point&, const Point&) = default;
};

/// A rectangle named by its bottom-left corner and its size.
struct Rect {
  double x = 0.0;
  double y = 0.0;
  double width = 0.0;
  double height = 0.0;

  friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace velmara
