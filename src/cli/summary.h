#pragma once

#include <optional>
#include <string>

#include "engine/deep/deep_noise.h"
#include "session/denoise_parameters.h"

namespace velmara::cli {

/// What became of one photo.
struct Summary {
  std::string input;
  std::string output;
  std::optional<std::string> comparison;
  /// Of the picture written.
  int width = 0;
  int height = 0;
  /// The measured noise level in dB; not measured where the parameters were given.
  std::optional<double> psnr;
  /// Nothing for a photo too small to be filtered.
  std::optional<FilterParameters> parameters;
  /// The noise that the deep method worked with.
  std::optional<DeepNoise> deepNoise;
  double seconds = 0.0;
};

/// One line, or five with the details, each ending in a line end.
std::string describe(const Summary& summary, bool details);

/// "sigma 25.1 25.0 24.8" in the middle of red, green and blue, or "not found".
std::string noiseText(const DeepNoise& noise);
/// "27.94 dB", or "no noise found" for an infinite level.
std::string noiseText(double psnr);

}  // namespace velmara::cli
