#pragma once

#include <string>

#include "base/image.h"
#include "base/job_control.h"
#include "base/result.h"
#include "session/denoise_engine.h"
#include "session/photo_job.h"

namespace velmara {

/// What a list shows of a photo.
struct PhotoFacts {
  /// As shown, upright, in pixels.
  int width = 0;
  int height = 0;
  /// In dB, lower is noisier; 0 where it was not measured.
  double psnr = 0.0;
  /// Whether there is noise that only the deep method reaches.
  bool isBeyondLevels = false;
  /// Upright, within kThumbnailSide both ways; may be not valid.
  Image thumbnail;
};

/// In pixels: enough for a row of a list on a screen of twice the density.
inline constexpr int kThumbnailSide = 112;

/// Reads a photo and measures its noise. An error says in words why it cannot be read. Not on the
/// main thread.
Result<PhotoFacts> readPhotoFacts(const std::string& path, const DenoiseEngine& engine,
                                  const JobControl& control);

/// What a finished job knows of them; its thumbnail is the result's.
PhotoFacts factsOf(const PhotoJobResult& job);

}  // namespace velmara
