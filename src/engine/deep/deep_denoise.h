#pragma once

#include <optional>

#include "base/bitmap.h"
#include "base/geometry.h"
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
  /// What is wanted of the picture; all of it if there is nothing here.
  std::optional<PixelRect> part = std::nullopt;
  /// How large the picture is against the one whose noise was measured, at most 1.
  float scale = 1.0F;
};

/// The noise of a picture (noise_measure.h); none if the memory is not to be had, and what is of no
/// use if `control` was cancelled.
DeepNoise measureNoise(const Bitmap& bitmap, JobControl* control = nullptr);

/// A picture without its noise, of the same size and samples per pixel; alpha stays. Collaborative
/// and Bayesian filtering (deep_pass.h): white noise at full size, with what clipping did undone; a
/// camera's also at smaller sizes first, whose result takes the place of the lower frequencies.
///
/// The result depends on the picture, the noise, the strength and the scale alone. A part of it, as
/// large as `part` is inside the picture, is the same to the bit, and only the picture around it is
/// filtered that it depends on: some 90 pixels each way, for a camera's noise also 140 at half and
/// 280 at a quarter of its size.
/// Calls from any thread, waits for its helpers, sets `control`'s progress. Nothing if it was
/// cancelled, the picture is not valid or the memory is not to be had (40 bytes a pixel).
std::optional<Bitmap> denoiseDeeply(const Bitmap& bitmap, const DeepNoise& noise,
                                    const DeepRequest& request, JobControl& control);

}  // namespace velmara
