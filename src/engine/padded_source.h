#pragma once

#include "base/bitmap.h"

namespace velmara {

/// The picture in a mirrored frame (withMirroredBorder), one of 4 samples drawn over black as 3
/// (withoutAlpha) on the way: no copy lies in between. Not valid if the memory is not to be had.
Bitmap paddedSource(const Bitmap& bitmap, int border);

}  // namespace velmara
