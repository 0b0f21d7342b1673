#pragma once

#include <cstdint>

#include "base/image.h"

namespace velmara {

/// The length in bytes of a baseline TIFF file (TIFF 6.0) with one uncompressed strip for a
/// picture, or one after another for an image of several.
std::uint64_t tiffLength(const Bitmap& bitmap);
std::uint64_t tiffLength(const Image& image);

}  // namespace velmara
