#pragma once

#include "base/bitmap.h"
#include "base/geometry.h"

namespace velmara {

/// The part of a bitmap inside a rectangle, drawn over the whole extent of a 4-sample canvas of
/// width x height pixels.
///
/// The rectangle is in pixels of the bitmap, its origin at the bottom-left corner, y up; fractions
/// are allowed, and what lies outside the bitmap is transparent (a canvas pixel half outside is
/// half transparent). A whole rectangle at its own size is an exact copy. Everything else is
/// resampled with a three-lobed Lanczos filter that widens as the picture shrinks, so that fine
/// patterns turn into their mean and not into others; colours are weighted by their alpha.
///
/// Not valid if the bitmap is not, the rectangle has no extent, a side is not positive or the
/// memory is not to be had.
Bitmap drawnPart(const Bitmap& bitmap, const Rect& part, int width, int height);

/// The whole bitmap at another size, likewise.
Bitmap resampled(const Bitmap& bitmap, int width, int height);

}  // namespace velmara
