#include "session/denoise_parameters.h"

#include <algorithm>

namespace velmara {
namespace {

constexpr double kMiddlePsnr = 30.0;
constexpr double kLowestPsnr = 26.0;
constexpr double kHighestPsnr = 45.0;
constexpr int kExportSigmaBonus = 3;
constexpr int kExportThresholdBonus = 1;

// Toward zero, saturating well inside the range of an int, so that the bonus always fits.
int truncated(double value) {
  constexpr double kLimit = 2.0e9;
  return static_cast<int>(std::clamp(value, -kLimit, kLimit));
}

// The formulas below are in single precision where the fields they use are.
float truncatedFloat(double value) {
  return static_cast<float>(truncated(value));
}

SigmaThreshold unmeasured(const DenoiseMode& mode, const ManualMapping& mapping) {
  const auto level = static_cast<float>(mode.denoiseLevelValue);
  const auto threshold = static_cast<float>(mode.thrsholdVal);
  return {
      truncated(mapping.sigmaMultiplierConstant * level + truncatedFloat(mapping.baseSigmaValue)),
      truncated(threshold * mapping.thresholdMultiplierConstant + mapping.baseThresholdValue)};
}

SigmaThreshold withExportBonus(SigmaThreshold parameters, bool isExportingPhoto) {
  if (isExportingPhoto) {
    parameters.SIGMA_VAL += kExportSigmaBonus;
    parameters.THRESHOLD_VAL += kExportThresholdBonus;
  }
  return parameters;
}

SigmaThreshold mapAutomatic(double psnr, const DenoiseMode& mode, bool isExportingPhoto,
                            const ManualMapping& mapping) {
  if (psnr == 0.0) return unmeasured(mode, mapping);
  if (psnr > kMiddlePsnr) {
    return withExportBonus({truncated((psnr - kMiddlePsnr) / 5.0 + 4.0), 7}, isExportingPhoto);
  }
  if (psnr == kMiddlePsnr) return {5, 7};
  const int strength = truncated(2.0 * (kMiddlePsnr - psnr) + 4.0);
  return {strength, strength};
}

SigmaThreshold mapManual(double psnr, const DenoiseMode& mode, bool isExportingPhoto,
                         ManualMapping& mapping) {
  const SigmaThreshold asItStands = unmeasured(mode, mapping);
  if (psnr == 0.0) return asItStands;
  if (psnr == kMiddlePsnr) return {asItStands.SIGMA_VAL, 7};

  const bool isClean = psnr > kMiddlePsnr;
  if (isClean) {
    mapping.baseSigmaValue = static_cast<float>((psnr - kMiddlePsnr) / 5.0 + 1.0);
    mapping.sigmaMultiplierConstant = 0.5F;
    mapping.baseThresholdValue = 2.0F;
  } else {
    mapping.baseSigmaValue = static_cast<float>(2.0 * (kMiddlePsnr - psnr) + 1.0);
    mapping.sigmaMultiplierConstant = 0.6F;
    mapping.baseThresholdValue = static_cast<float>(2.0 * (kMiddlePsnr - psnr));
  }
  mapping.thresholdMultiplierConstant = 0.8F;

  const auto level = static_cast<float>(mode.denoiseLevelValue);
  const SigmaThreshold parameters{
      truncated(mapping.sigmaMultiplierConstant * level + truncatedFloat(mapping.baseSigmaValue)),
      truncated(mapping.thresholdMultiplierConstant * level +
                truncatedFloat(mapping.baseThresholdValue))};
  return withExportBonus(parameters, isExportingPhoto && isClean);
}

}  // namespace

MappedParameters mapNoiseToParameters(double psnr, const DenoiseMode& mode, bool isExportingPhoto,
                                      const ManualMapping& mapping) {
  MappedParameters result{{}, mapping};
  result.parameters = mode.isAutoMode ? mapAutomatic(psnr, mode, isExportingPhoto, mapping)
                                      : mapManual(psnr, mode, isExportingPhoto, result.mapping);
  return result;
}

double effectivePsnr(float psnrOfRealImage, bool isExportingPhoto, float zoomFactor) {
  double psnr = psnrOfRealImage;
  if (!isExportingPhoto && zoomFactor <= 1.0F) {
    psnr = double{zoomFactor} >= 0.9 ? double{zoomFactor * psnrOfRealImage} : psnr * 0.9;
  }
  return std::clamp(psnr, kLowestPsnr, kHighestPsnr);
}

int templateWindowFor(const DenoiseMode& mode) {
  return mode.isAutoMode ? 3 : mode.denoiseLevelValue / 3 + 1;
}

FilterParameters filterParameters(const SigmaThreshold& parameters, const DenoiseMode& mode) {
  const int templateWindow = templateWindowFor(mode);
  const int threshold = parameters.THRESHOLD_VAL;
  return {parameters.SIGMA_VAL, templateWindow,
          templateWindow < threshold ? threshold : templateWindow + 1};
}

FilterParameters exportParameters(double psnr, const DenoiseMode& mode) {
  const double effective = effectivePsnr(static_cast<float>(psnr), true, 1.0F);
  return filterParameters(mapNoiseToParameters(effective, mode, true, {}).parameters, mode);
}

float deepStrength(const DenoiseMode& mode) {
  constexpr auto kAsMeasured = static_cast<float>(kDeepLevelAsMeasured);
  return mode.isAutoMode ? 1.0F : static_cast<float>(mode.denoiseLevelValue) / kAsMeasured;
}

FilterParameters calibrationParameters(const SigmaThreshold& parameters, const DenoiseMode& mode) {
  const int templateWindow = templateWindowFor(mode);
  return {parameters.SIGMA_VAL, templateWindow, std::max(templateWindow, parameters.THRESHOLD_VAL)};
}

int denoiseLevelForSliderValue(double value) {
  for (int level = 1; level <= 9; ++level) {
    const double lower = level == 1 ? 1.0 : level - 0.5;
    if (value >= lower && level + 0.5 > value) return level;
  }
  return 10;
}

}  // namespace velmara
