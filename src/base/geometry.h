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

/// A rectangle of whole pixels named by its top-left corner, as rows of samples are counted.
struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool isEmpty() const { return width <= 0 || height <= 0; }

  friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

}  // namespace velmara
