#pragma once

#include "base/job_control.h"
#include "engine/deep/deep_noise.h"

namespace velmara {

/// Measures the noise of a picture from the picture alone.
///
/// White noise shows in the higher frequencies of the colour planes, where pictures have next to
/// nothing; it is then measured in the blocks with the least lower frequencies, as a function of
/// brightness. JPEG compression takes more of the colours, and leaves it in brightness alone, white
/// up to frequencies which texture does not reach. What a camera's processing and JPEG leave of
/// noise shows only in the middle frequencies of brightness, where texture is too: it counts where
/// the flatter blocks of a brightness agree with each other, and with the same picture at half and
/// a quarter of its size, which texture does not. A picture without any of these has no noise.
///
/// Of no use if the control was cancelled, which ends it early.
DeepNoise measureNoise(const OpponentPlanes& planes, JobControl& control);

}  // namespace velmara
