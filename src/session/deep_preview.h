#pragma once

#include <optional>

#include "engine/deep/deep_denoise.h"
#include "session/loaded_photo.h"

namespace velmara {

/// Where a preview's region lies: its pixels, and the size in pixels of the shown picture, which is
/// the whole upright photo.
struct ShownPlace {
  /// From the top-left corner, and width and height.
  PixelRect pixels;
  Size picture;
};

/// What the deep method makes of a region. At the photo's own size and above it these are the
/// pixels of the whole photo's result, above it enlarged as the photo is; below it the region's own
/// pixels are filtered, with the noise that is left at that size. The region's size, upright and
/// opaque. Of `request` the part and the scale are not looked at. Nothing if it was cancelled or
/// the memory is not to be had.
std::optional<Bitmap> denoiseRegionDeeply(const LoadedPhoto& photo, const Image& region,
                                          const ShownPlace& place, const DeepNoise& noise,
                                          DeepRequest request, JobControl& control);

}  // namespace velmara
