#pragma once

#include "base/image.h"

namespace velmara {

/// The JPEG quality, 1 to 100, of a compression factor, 0.0 for the strongest compression to 1.0
/// for the least; 1 for what is no number.
int jpegQualityOfFactor(float factor);

/// An image after a round trip through a JPEG of that compression factor: the first representation
/// with what the coding left of it, without alpha (drawn over black). Not valid if the input is not
/// or the memory is not to be had. Keeps no state; any thread.
Image recompressJpeg(const Image& image, float factor);

}  // namespace velmara
