#include "session/noise_gauge.h"

#include <QCoreApplication>
#include <QLocale>

#include <cmath>

#include "session/labels.h"

namespace velmara {
namespace {

NoiseGauge withoutNoise() {
  return {0, 0, noNoiseLabel()};
}

std::optional<NoiseGauge> gaugeOfDeep(const NoiseFacts& facts) {
  if (!facts.deepNoise) return std::nullopt;
  if (facts.deepNoise->isNone()) return withoutNoise();
  constexpr auto kAsked = static_cast<int>(kDeepLevelAsMeasured);
  const int chosen = facts.mode.isAutoMode ? kAsked : facts.mode.denoiseLevelValue;
  const QString text =
      QCoreApplication::translate("NoiseGauge", "The noise asks for %1 of 10, %2 is chosen")
          .arg(kAsked)
          .arg(chosen);
  return NoiseGauge{kAsked, chosen, text.toStdString()};
}

}  // namespace

std::optional<NoiseGauge> noiseGauge(const NoiseFacts& facts) {
  if (facts.isDeep) return gaugeOfDeep(facts);
  if (facts.psnrOfRealImage == 0.0F) return std::nullopt;
  if (std::isinf(facts.psnrOfRealImage)) return withoutNoise();
  const DenoiseMode automatic = DenoiseMode::automatic();
  const double psnr = effectivePsnr(facts.psnrOfRealImage, false, facts.zoomFactor);
  const SigmaThreshold mapped =
      mapNoiseToParameters(psnr, automatic, false, facts.mapping).parameters;
  NoiseGauge gauge;
  gauge.asked = strengthOfTen(filterParameters(mapped, automatic).sigmaVal);
  gauge.chosen = facts.mode.isAutoMode ? gauge.asked : facts.mode.denoiseLevelValue;
  gauge.text =
      QCoreApplication::translate("NoiseGauge", "Noise: %1 dB. It asks for %2 of 10, %3 is chosen")
          .arg(QLocale().toString(double{facts.psnrOfRealImage}, 'f', 1))
          .arg(gauge.asked)
          .arg(gauge.chosen)
          .toStdString();
  return gauge;
}

}  // namespace velmara
