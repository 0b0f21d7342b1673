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

// Noise whose amplitudes by frequency, plane by plane, are those times that of a range.
DeepNoise noiseOf(const NoiseRanges& ranges, const std::array<std::array<float, 15>, 3>& shape) {
  DeepNoise noise;
  noise.isWhite = false;
  noise.amplitude = shape;
  float energy = 0.0F;
  for (const auto& plane : shape) {
    for (std::size_t i = 0; i < 64; ++i) energy += plane[frequencyOf(i)] * plane[frequencyOf(i)];
  }
  const float perSample = std::sqrt(energy / (3 * 64));
  for (auto& plane : noise.amplitude) {
    for (float& amplitude : plane) amplitude /= perSample;
  }
  for (auto& channel : noise.deviation) {
    for (std::size_t i = 0; i < 256; ++i) {
      channel[i] = perSample * amplitudeAt(ranges, static_cast<float>(i));
    }
  }
  return noise;
}

// Amplitudes of the lower frequencies of brightness in cameras' JPEGs, against those from 2 to 4.
// They hardly differ from camera to camera, and cannot be told from what is in the picture.
constexpr std::array<float, 5> kLowerShape = {1.7F, 1.37F, 1.13F, 1.01F, 0.86F};
// The calmest blocks have less of the other frequencies, and of the colours', than the others.
constexpr float kCalm = 1.8F;

DeepNoise cameraNoiseOf(const NoiseRanges& ranges, const CalmSpectra& spectra) {
  std::array<std::array<float, 15>, 3> shape = {};
  float count = 0.0F;
  for (std::size_t range = 0; range < ranges.size(); ++range) {
    if (!ranges[range].isNoise) continue;
    count += 1.0F;
    for (std::size_t k = 0; k < 3; ++k) {
      for (std::size_t i = 0; i < 15; ++i) {
        shape[k][i] +=
            kCalm * spectra[range].amplitude(k, i, i) / std::max(ranges[range].amplitude, 0.1F);
      }
    }
  }
  for (auto& plane : shape) {
    for (float& amplitude : plane) amplitude /= std::max(count, 1.0F);
    plane[0] = 2.0F * plane[1];
  }
  std::copy(kLowerShape.begin(), kLowerShape.end(), shape[0].begin());
  DeepNoise noise = noiseOf(ranges, shape);
  noise.sizes = 3;
  noise.whenClipped = 0.0F;
  return noise;
}

// White noise that was compressed as a JPEG, and more of its colours than of its brightness: that
// is still white up to the highest frequencies, which neither texture nor a camera's noise is.
bool isCompressedWhite(const CalmSpectra& spectra) {
  return std::count_if(spectra.begin(), spectra.end(), [](const CalmSpectrum& spectrum) {
           const float upper = spectrum.amplitude(0, 7, 9);
           return upper > 4.0F && spectrum.amplitude(0, 10, 12) > 0.8F * upper;
         }) > 2;
}

DeepNoise compressedNoiseOf(const CalmSpectra& spectra) {
  // Brightness against what each channel had before.
  constexpr float kCompressed = 1.1F;
  NoiseRanges ranges;
  // What the picture has in common with noise differs between ranges; the least of it is noise.
  std::array<std::array<float, 15>, 3> shape;
  for (auto& plane : shape) plane.fill(1.0F);
  for (std::size_t range = 0; range < ranges.size(); ++range) {
    const CalmSpectrum& spectrum = spectra[range];
    const float amplitude = std::max(spectrum.amplitude(0, 7, 9), 0.1F);
    ranges[range] = {spectrum.brightness, amplitude, true};
    for (std::size_t k = 0; k < 3; ++k) {
      for (std::size_t i = k == 0 ? 5 : 1; i < 15; ++i) {
        shape[k][i] = std::min(shape[k][i], spectrum.amplitude(k, i, i) / amplitude);
      }
    }
  }
  for (std::size_t i = 0; i < 5; ++i) shape[0][i] = shape[0][5];
  for (auto& plane : shape) plane[0] = plane[1];
  DeepNoise noise = noiseOf(ranges, shape);
  noise.whenClipped = noise.amplitude[0][7] / kCompressed;
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
  const CalmSpectra spectra = calmSpectra(planes, levels[0], control);
  if (isCompressedWhite(spectra)) return compressedNoiseOf(spectra);
  std::optional<OpponentPlanes> half = halved(planes);
  for (std::size_t i = 1; i < levels.size() && half && !control.isCancelled(); ++i) {
    levels[i] = BrightnessEnergies(*half, 2, control);
    half = halved(*half);
  }
  control.setProgress(0.8);
  if (control.isCancelled()) return {};
  return cameraNoiseOf(photoNoise(levels), spectra);
}

}  // namespace velmara
