#pragma once

#include <optional>
#include <string>

#include "engine/deep/deep_noise.h"
#include "session/denoise_parameters.h"

namespace velmara {

/// What is known of a photo's noise, and what is chosen for it.
struct NoiseFacts {
  /// As measured, in dB; 0 if it was not.
  float psnrOfRealImage = 0.0F;
  /// What a run of what is seen is mapped by.
  float zoomFactor = 1.0F;
  ManualMapping mapping;
  /// What is chosen.
  DenoiseMode mode;
  bool isDeep = false;
  /// As the deep method measured it.
  std::optional<DeepNoise> deepNoise;
};

/// A photo's noise beside the strength that is chosen for it, both on a scale of 0 to 10.
struct NoiseGauge {
  /// The strength that the noise asks for, which the automatic mode takes; 0 if there is no noise.
  int asked = 0;
  /// The strength that is chosen; 0 where nothing is filtered.
  int chosen = 0;
  /// The same in words.
  std::string text;
};

/// The gauge; none as long as the noise was not measured.
std::optional<NoiseGauge> noiseGauge(const NoiseFacts& facts);

}  // namespace velmara
