#pragma once

#include <optional>

#include "base/bitmap.h"
#include "base/job_control.h"
#include "base/task_queue.h"
#include "engine/deep/deep_noise.h"

namespace velmara {

/// How a picture is denoised deeply.
struct DeepRequest {
  /// The noise is taken to be so many times as strong as measured: level 5 is 1, 10 is 2, 1 is 0.2.
  float strength = 1.0F;
  /// Where helpers of the calling thread run, or null for none.
  TaskQueue* workers = nullptr;
  /// The most threads, the calling one included.
  int threads = 1;
  /// Whether the readable reference works in place of the fast kernel: both give the same bits.
  bool plainly = false;
};

/// The noise of a picture (noise_measure.h); none if the memory is not to be had.
DeepNoise measureNoise(const Bitmap& bitmap);

/// A picture without its noise, of the same size and samples per pixel; alpha stays. Collaborative
/// filtering (deep_pass.h): white noise at full size, with what clipping did undone; a camera's
/// also at smaller sizes first, whose result takes the place of the lower frequencies.
///
/// The result depends on the picture, the noise and the strength alone. Of a part of a picture it
/// is the same, to the bit, 96 pixels or more from the part's edges if the part begins at multiples
/// of 8; for a camera's noise 640 pixels and multiples of 32.
/// Calls from any thread, waits for its helpers, sets `control`'s progress. Nothing if it was
/// cancelled, the picture is not valid or the memory is not to be had (40 bytes a pixel).
std::optional<Bitmap> denoiseDeeply(const Bitmap& bitmap, const DeepNoise& noise,
                                    const DeepRequest& request, JobControl& control);

}  // namespace velmara
