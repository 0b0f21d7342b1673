#pragma once

#include <cstdint>

#include "base/bitmap.h"

namespace velmara {

/// What a generated photo is like.
struct PhotoKind {
  double noise = 6.0;       ///< Standard deviation of the noise of each sample.
  double brightness = 0.0;  ///< Added to every sample: 130 clips about half of them.
  bool flat = false;        ///< One colour and no noise.
};

/// A generated photo: soft shading, a few hard edges, fine texture in places, and noise in each
/// sample by itself. The same for the same arguments.
Bitmap noisyPhoto(int width, int height, int samples, PhotoKind kind = {});

}  // namespace velmara
