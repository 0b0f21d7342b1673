#pragma once

#include <cstdint>

namespace velmara {

/// The four numbers that a manual choice of parameters leaves behind for the next one.
struct ManualMapping {
  /// As a fresh screen has them.
  float baseSigmaValue = 2.0F;
  float sigmaMultiplierConstant = 0.8F;
  float baseThresholdValue = 1.0F;
  float thresholdMultiplierConstant = 2.0F;

  friend bool operator==(const ManualMapping&, const ManualMapping&) = default;
};

/// The parameter dictionary: the filter's strength and the lower bound of its search window.
struct SigmaThreshold {
  /// 0 until chosen.
  int SIGMA_VAL = 0;
  int THRESHOLD_VAL = 0;

  friend bool operator==(const SigmaThreshold&, const SigmaThreshold&) = default;
};

/// What a run is asked for: automatic, or manual at a level of 1 to 10.
struct DenoiseMode {
  /// Automatic or not, a threshold value that manual levels share, and the level, 1 to 10.
  bool isAutoMode = true;
  int thrsholdVal = 1;
  int denoiseLevelValue = 1;

  /// The mode of the automatic button.
  static DenoiseMode automatic() { return {true, 1, 1}; }
  /// The threshold value that goes with every manual level.
  static constexpr int kManualThreshold = 2;
  /// A level of 1 to 10.
  static DenoiseMode manual(int level) { return {false, kManualThreshold, level}; }
};

/// The parameters for a noise level (PSNR in dB) and the mapping as it stands afterwards: a manual
/// choice away from 0 and 30 dB rewrites it. Exporting strengthens what is above 30 dB. Values
/// beyond the range of an int end at its limits, so an infinite PSNR is no fault.
struct MappedParameters {
  /// For this run, and for the next one.
  SigmaThreshold parameters;
  ManualMapping mapping;
};
/// See MappedParameters; a plain function of its arguments.
MappedParameters mapNoiseToParameters(double psnr, const DenoiseMode& mode, bool isExportingPhoto,
                                      const ManualMapping& mapping);

/// The noise level that a run is mapped by: that of the whole photo, lowered with the zoom of a
/// preview (an export has none), and kept within 26 to 45 dB.
double effectivePsnr(float psnrOfRealImage, bool isExportingPhoto, float zoomFactor);

/// What the engine is given.
struct FilterParameters {
  /// The noise's deviation in levels of 0 to 255, and the sides of both windows in pixels.
  int sigmaVal = 0;
  int templateWinSize = 0;
  int searchWinSize = 0;

  friend bool operator==(const FilterParameters&, const FilterParameters&) = default;
};

/// Template side: 3 in automatic mode, else a third of the level plus 1 (1 to 4).
int templateWindowFor(const DenoiseMode& mode);

/// The windows of a run. A search window that would not be larger than the template becomes the
/// template plus 1.
FilterParameters filterParameters(const SigmaThreshold& parameters, const DenoiseMode& mode);

/// The parameters an export uses for a photo of a measured noise level, with nothing left behind by
/// earlier choices.
FilterParameters exportParameters(double psnr, const DenoiseMode& mode);

/// The level at which the deep method takes the noise as it was measured.
inline constexpr double kDeepLevelAsMeasured = 5.0;

/// How many times as strong as measured the deep method takes the noise: once in automatic mode,
/// else a fifth of the level.
float deepStrength(const DenoiseMode& mode);

/// The windows of a speed measurement: the larger of template and threshold, which differs from a
/// run's on purpose.
FilterParameters calibrationParameters(const SigmaThreshold& parameters, const DenoiseMode& mode);

/// The speed measurement of a session's first run.
inline constexpr FilterParameters kFirstCalibration{10, 5, 14};

/// The slider's lowest position, where it stands in automatic mode.
inline constexpr double kLowestLevel = 1.0;

/// The level that a slider position of 1.0 to 10.0 stands for: the nearest whole number, halves
/// upwards; anything else, also below 1, is 10.
int denoiseLevelForSliderValue(double value);

/// Photos of at most this many pixels are passed through unfiltered.
inline constexpr std::int64_t kLargestUnfilteredPhoto = 9999;

}  // namespace velmara
