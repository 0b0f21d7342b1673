#include "engine/deep/clipped_noise.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmara {
namespace {

double distribution(double x) {
  return 0.5 * std::erfc(-x / std::numbers::sqrt2);
}

double density(double x) {
  return std::exp(-0.5 * x * x) * std::numbers::inv_sqrtpi / std::numbers::sqrt2;
}

}  // namespace

Moments clippedMoments(double level, double deviation) {
  constexpr double kMost = 255.0;
  const double a = -level / deviation;
  const double b = (kMost - level) / deviation;
  const double above = distribution(-b);
  const double inside = 1.0 - distribution(a) - above;
  const double mean = level * inside + deviation * (density(a) - density(b)) + kMost * above;
  const double square = (level * level + deviation * deviation) * inside +
                        deviation * (level * density(a) - (level + kMost) * density(b)) +
                        kMost * kMost * above;
  return {mean, std::max(square - mean * mean, 0.0)};
}

ClippedNoise::ClippedNoise(const std::array<float, 256>& deviation) {
  constexpr int kLevels = static_cast<int>((255.0 - 2.0 * kFirstLevel) / kStep) + 1;
  moments_.reserve(kLevels);
  for (int i = 0; i < kLevels; ++i) {
    const double level = kFirstLevel + i * kStep;
    const auto index = static_cast<std::size_t>(std::clamp(level, 0.0, 255.0));
    moments_.push_back(clippedMoments(level, std::max(double{deviation[index]}, 1e-3)));
  }
}

ClippedNoise::Seen ClippedNoise::seenAs(double mean) const {
  const auto after =
      std::upper_bound(moments_.begin() + 1, moments_.end() - 1, mean,
                       [](double value, const Moments& moments) { return value < moments.mean; });
  const auto before = after - 1;
  const double gap = std::max(after->mean - before->mean, 1e-9);
  const double part = std::clamp((mean - before->mean) / gap, 0.0, 1.0);
  const double place = static_cast<double>(before - moments_.begin()) + part;
  return {kFirstLevel + kStep * place,
          before->variance + part * (after->variance - before->variance)};
}

double deviationBeforeClipping(const Moments& seen) {
  const double wanted = std::sqrt(seen.variance);
  double deviation = wanted;
  double level = seen.mean;
  for (int i = 0; i < 30 && deviation > 0.0; ++i) {
    const Moments got = clippedMoments(level, deviation);
    level = std::clamp(level + seen.mean - got.mean, -2.0 * deviation, 255.0 + 2.0 * deviation);
    deviation *= std::clamp(wanted / std::sqrt(std::max(got.variance, 1e-9)), 0.8, 1.25);
    deviation = std::min(deviation, 4.0 * wanted);
  }
  return deviation;
}

}  // namespace velmara
