#pragma once

#include <string>

#include "base/task_queue.h"
#include "session/denoise_engine.h"
#include "session/denoise_parameters.h"
#include "session/photo_file.h"

namespace velmara {

/// Everything a run on the worker queue needs, taken along when it is dispatched, so that the
/// worker reads nothing the main thread may write.
struct DenoiseJob {
  /// What is filtered: the visible region, or the whole photo for an export.
  PhotoFile photo;
  /// The path of the whole current photo, whose noise decides.
  std::string wholePhotoPath;
  /// The pixels of what is filtered as its file has them, if they are at hand; else it is read.
  Image wholePhoto;
  DenoiseMode mode;
  bool isExportingPhoto = false;
  float currentZooomFactor = 1.0F;
  /// 0 while the photo has not been measured.
  float psnrOfRealImage = 0.0F;
  ManualMapping mapping;
};

struct DenoiseOutcome {
  /// Not valid if there is none.
  Image image;
  /// The noise of the whole photo and the manual mapping as they stand after the run.
  float psnrOfRealImage = 0.0F;
  ManualMapping mapping;
};

/// The worker: loads and prepares the picture, measures the photo's noise unless that is known,
/// chooses the parameters, logs them and filters. Not on the main thread.
DenoiseOutcome runDenoiseJob(const DenoiseJob& job, const DenoiseEngine& engine,
                             const LogSink& log);

}  // namespace velmara
