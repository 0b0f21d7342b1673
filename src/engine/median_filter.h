#pragma once

#include "base/bitmap.h"

namespace velmara {

/// The top `rows` rows of the bitmap after a 3 x 3 median filter of each sample by itself, the
/// picture's edges repeated outward. All of them if there are not so many; not valid if the input
/// is not, `rows` is not positive or the memory is not to be had.
Bitmap medianFiltered(const Bitmap& bitmap, int rows);

}  // namespace velmara
