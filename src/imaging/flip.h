#pragma once

#include "base/image.h"

namespace velmara {

/// The image mirrored left to right, as a 4-sample canvas of its first representation's pixel size.
/// Not valid if the input is not.
Image flipImageHorizontally(const Image& image);

/// The image mirrored top to bottom, likewise.
Image flipImageVertically(const Image& image);

}  // namespace velmara
