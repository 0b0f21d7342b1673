#pragma once

#include <optional>

#include "base/image.h"
#include "engine/filter_kernel.h"
#include "engine/packed_rgb.h"

namespace velmara {

/// What one request works with from its padded input to its result.
struct DenoiseRequest {
  FilterGeometry geometry;
  Bitmap padded;           ///< Holds sourceBytes.
  PackedRgbCanvas canvas;  ///< Holds destBytes.
  FilterBuffers buffers;

  explicit DenoiseRequest(PackedRgbCanvas rgb) : canvas(std::move(rgb)) {}
};

/// Pads a bitmap for its windows, one of 4 samples without its alpha, makes the canvas, black where
/// the kernel writes nothing, and builds the weight table. Null if the memory is not to be had or
/// the padded picture would be larger than a bitmap may be.
///
/// destBytes are the first bytes of a packed colour canvas whatever the channels, as the result is
/// built from three bytes a pixel: a one-channel output fills the first third of them.
std::unique_ptr<DenoiseRequest> prepareRequest(const Bitmap& bitmap, int templateWinSize,
                                               int searchWinSize, double sigma);

}  // namespace velmara
