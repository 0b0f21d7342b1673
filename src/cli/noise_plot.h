#pragma once

#include <string>

#include "engine/deep/deep_noise.h"

namespace velmara::cli {

/// What a picture of a photo's noise shows.
struct NoisePlot {
  /// Of the photo, in the file system's own bytes.
  std::string name;
  /// The noise level in dB, which may be infinite; 0 where it was not measured.
  double psnr = 0.0;
  /// The noise by channel and brightness.
  DeepNoise noise;
};

/// The picture as an SVG document, 640 x 430: above, the strength that an export in automatic mode
/// uses at each noise level with the photo's own marked; below, the deviation of the noise in red,
/// green and blue by brightness, with how far the levels reach.
std::string noisePlotSvg(const NoisePlot& plot);

}  // namespace velmara::cli
