#pragma once

#include "base/bitmap.h"
#include "engine/pictures.h"

namespace velmara {

/// Non-local means written down a second time, without a padded copy and without shared code: the
/// packed output samples of a 1- or 3-sample picture (t <= s, both within the picture's reach).
Bytes bruteForce(const Bitmap& picture, int t, int s, double sigma);

}  // namespace velmara
