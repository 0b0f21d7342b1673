#pragma once

#include "base/bitmap.h"

namespace velmara {

/// How often a difference is enlarged where nothing else is said: noise of a few levels becomes
/// plain to see, and detail that went with it too.
inline constexpr int kResidualGain = 8;
/// What stands for no difference.
inline constexpr int kResidualGrey = 128;

/// What a filter has taken from a picture: each sample is
/// gain * (original - result) + kResidualGrey, clamped to 0..255, so that grey is where nothing was
/// taken. 3 samples if either picture has colour, else 1; a picture with alpha counts as drawn over
/// black. Not valid if the pictures are not, differ in size, or the memory is not to be had.
Bitmap residual(const Bitmap& original, const Bitmap& result, int gain = kResidualGain);

}  // namespace velmara
