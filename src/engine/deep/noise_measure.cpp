#include "engine/deep/noise_measure.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "engine/deep/noise_statistics.h"

namespace velmara {
namespace {

// Energy of the higher against the middle frequencies of colour: about 1 if noise is white, below
// 0.5 in pictures without noise and whatever has been a camera's JPEG.
constexpr float kWhiteness = 0.56F;

// A straight line through variances by level; relative errors count. Flat where the levels are too
// close for a slope.
struct VarianceLine {
  double atMiddle = 0.0;
  double slope = 0.0;  // Per level.
  double least = 0.0;

  explicit VarianceLine(const std::vector<NoisePoint>& points) {
    double sw = 0.0, sx = 0.0, sxx = 0.0, sy = 0.0, sxy = 0.0;
    for (const NoisePoint& point : points) {
      const double w = 1.0 / (point.variance * point.variance);
      const double x = point.level - kMiddle;
      sw += w;
      sx += w * x;
      sxx += w * x * x;
      sy += w * point.variance;
      sxy += w * x * point.variance;
      least = least == 0.0 ? point.variance : std::min(least, point.variance);
    }
    sxx += 0.1 * sw * kMiddle * kMiddle / static_cast<double>(points.size());
    const double determinant = sw * sxx - sx * sx;
    atMiddle = (sxx * sy - sx * sxy) / determinant;
    slope = (sw * sxy - sx * sy) / determinant;
  }
  double at(double level) const {
    return std::max(atMiddle + slope * (level - kMiddle), 0.5 * least);
  }

  static constexpr double kMiddle = 128.0;
};

DeepNoise whiteNoiseOf(const BlockStatistics& blocks) {
  DeepNoise noise = whiteNoise(0.0F);
  for (std::size_t c = 0; c < 3; ++c) {
    const std::vector<NoisePoint> points = blocks.whitePoints(c);
    if (points.empty()) return noise;
    const VarianceLine line(points);
    for (std::size_t i = 0; i < 256; ++i) {
      noise.deviation[c][i] = static_cast<float>(std::sqrt(line.at(static_cast<double>(i))));
    }
  }
  return noise;
}

// Amplitudes by frequency of what cameras' JPEGs hold of noise, against those of brightness from 2
// to 4. They hardly differ from camera to camera but for the upper frequencies of brightness, which
// depend on how strong noise and compression are and are measured.
constexpr std::array<float, 15> kBrightnessShape = {1.7F,  1.37F, 1.13F, 1.01F, 0.86F,
                                                    0.68F, 0.44F, 0.35F, 0.28F, 0.23F,
                                                    0.2F,  0.16F, 0.14F, 0.1F,  0.1F};
constexpr std::array<float, 15> kColorShape = {1.7F,  0.75F, 0.26F, 0.17F, 0.09F,
                                               0.08F, 0.06F, 0.07F, 0.05F, 0.04F,
                                               0.04F, 0.04F, 0.03F, 0.03F, 0.03F};

DeepNoise photoNoiseOf(const PhotoNoise& measured) {
  DeepNoise noise;
  noise.isWhite = false;
  noise.amplitude = {kBrightnessShape, kColorShape, kColorShape};
  for (std::size_t i = 5; i < 15; ++i) {
    noise.amplitude[0][i] =
        std::max(noise.amplitude[0][i], 1.1F * measured.measuredAmplitude[0][i]);
  }
  // White noise that was compressed: its colours are halved in size at most.
  if (measured.measuredAmplitude[0][11] >= 0.5F) {
    for (std::size_t k = 1; k < 3; ++k) {
      for (std::size_t i = 1; i < 15; ++i) {
        noise.amplitude[k][i] = std::max(noise.amplitude[k][i], measured.measuredAmplitude[k][i]);
      }
    }
  }
  float energy = 0.0F;
  for (const auto& plane : noise.amplitude) {
    for (std::size_t i = 0; i < 64; ++i) energy += plane[frequencyOf(i)] * plane[frequencyOf(i)];
  }
  const float perSample = std::sqrt(energy / (3 * 64));
  for (auto& plane : noise.amplitude) {
    for (float& amplitude : plane) amplitude /= perSample;
  }
  for (auto& channel : noise.deviation) {
    for (std::size_t i = 0; i < 256; ++i) {
      channel[i] = perSample * measured.amplitudeAt(static_cast<float>(i));
    }
  }
  return noise;
}

}  // namespace

DeepNoise measureNoise(const OpponentPlanes& planes, JobControl& control) {
  const BlockStatistics blocks(planes, control);
  control.setProgress(0.5);
  if (control.isCancelled()) return {};
  if (blocks.whiteness() >= kWhiteness) return whiteNoiseOf(blocks);
  std::array<BrightnessEnergies, 3> levels;
  levels[0] = BrightnessEnergies(planes, 4, control);
  std::optional<OpponentPlanes> half = halved(planes);
  for (std::size_t i = 1; i < levels.size() && half && !control.isCancelled(); ++i) {
    levels[i] = BrightnessEnergies(*half, 2, control);
    half = halved(*half);
  }
  control.setProgress(0.8);
  if (control.isCancelled()) return {};
  return photoNoiseOf(PhotoNoise(planes, levels, control));
}

}  // namespace velmara
