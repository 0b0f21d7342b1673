#pragma once

#include <ostream>

#include "base/geometry.h"

/// How geometry is shown when an expectation fails.
namespace velmara {

inline void PrintTo(const Size& s, std::ostream* out) {
  *out << s.width << " x " << s.height;
}
inline void PrintTo(const Point& p, std::ostream* out) {
  *out << "(" << p.x << ", " << p.y << ")";
}
inline void PrintTo(const Rect& r, std::ostream* out) {
  *out << r.width << " x " << r.height << " at (" << r.x << ", " << r.y << ")";
}
inline void PrintTo(const PixelRect& r, std::ostream* out) {
  *out << r.width << " x " << r.height << " at (" << r.x << ", " << r.y << ") px";
}

}  // namespace velmara
