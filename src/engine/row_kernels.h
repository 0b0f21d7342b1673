#pragma once

#include <cstddef>
#include <cstdint>

#include "base/bitmap.h"

namespace velmara {

/// Draws pixels of 4 samples over black (overBlack) into pixels of 3, which must not overlap them.
void dropAlpha(const std::uint8_t* rgba, std::size_t pixels, std::uint8_t* rgb);

/// Makes opaque pixels of 4 samples from pixels of 3. They may be the same memory if the 3-sample
/// pixels end where the 4-sample ones do.
void addAlpha(const std::uint8_t* rgb, std::size_t pixels, std::uint8_t* rgba);

/// The top `rows` rows of the bitmap after a 3 x 3 median filter of each sample by itself, the
/// picture's edges repeated outward. All of them if there are not so many; not valid if the input
/// is not, `rows` is not positive or the memory is not to be had.
Bitmap medianFiltered(const Bitmap& bitmap, int rows);

}  // namespace velmara
