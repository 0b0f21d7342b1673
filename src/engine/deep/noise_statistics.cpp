#include "engine/deep/noise_statistics.h"

#include <algorithm>
#include <cmath>

#include "engine/deep/clipped_noise.h"

namespace velmara {
namespace {

// More blocks say no more.
constexpr double kMostBlocks = 1 << 17;
constexpr float kUnit = OpponentPlanes::kOne;

int stepFor(const OpponentPlanes& planes, int least) {
  return std::max(
      least,
      static_cast<int>(std::ceil(std::sqrt(static_cast<double>(planes.pixels()) / kMostBlocks))));
}

// The mean energy of the coefficients of frequencies first to last, in levels.
float bandEnergy(const Block& block, std::size_t first, std::size_t last) {
  float sum = 0.0F;
  int count = 0;
  for (std::size_t i = 0; i < block.size(); ++i) {
    const std::size_t frequency = frequencyOf(i);
    if (frequency < first || frequency > last) continue;
    sum += block[i] * block[i];
    ++count;
  }
  return sum / (static_cast<float>(count) * kUnit * kUnit);
}

float quantile(std::vector<float>& values, double part) {
  if (values.empty()) return 0.0F;
  const auto at =
      values.begin() + static_cast<std::ptrdiff_t>(part * static_cast<double>(values.size() - 1));
  std::nth_element(values.begin(), at, values.end());
  return *at;
}

template <class Entries, class Value>
float quantileOf(const Entries& entries, double part, Value value) {
  std::vector<float> values;
  values.reserve(entries.size());
  for (const auto& entry : entries) values.push_back(value(entry));
  return quantile(values, part);
}

}  // namespace

BlockStatistics::BlockStatistics(const OpponentPlanes& planes, const JobControl& control) {
  const int step = stepFor(planes, 4);
  float colour = 0.0F;
  for (int y = 0; y + 8 <= planes.height && !control.isCancelled(); y += step) {
    for (int x = 0; x + 8 <= planes.width; x += step) {
      const std::ptrdiff_t place = std::ptrdiff_t{y} * planes.width + x;
      std::array<Block, 3> blocks;
      Entry entry;
      for (std::size_t k = 0; k < 3; ++k) {
        blocks[k] = cosinesOf(planes.planes[k].data() + place, planes.width);
        entry.planes[k] = bandEnergy(blocks[k], 7, 14);
        entry.middle[k] = bandEnergy(blocks[k], 4, 6);
      }
      entry.brightness = blocks[0][0] * kOpponent[0][0] / (8 * kUnit);
      entry.lower = bandEnergy(blocks[0], 1, 3);
      for (std::size_t c = 0; c < 3; ++c) {
        Block channel = {};
        for (std::size_t k = 0; k < 3; ++k) {
          for (std::size_t i = 0; i < 64; ++i) channel[i] += kOpponent[k][c] * blocks[k][i];
        }
        entry.means[c] = channel[0] / (8 * kUnit);
        entry.channels[c] = bandEnergy(channel, 7, 14);
      }
      colour = std::max({colour, blocks[1][0] * blocks[1][0], entry.planes[1], entry.planes[2]});
      entries_.push_back(entry);
    }
  }
  isGray_ = colour == 0.0F;
  std::stable_sort(entries_.begin(), entries_.end(),
                   [](const Entry& a, const Entry& b) { return a.brightness < b.brightness; });
}

float BlockStatistics::whiteness() const {
  // Parts of a picture that are clipped say nothing.
  std::vector<Entry> lively;
  for (const Entry& entry : entries_) {
    if (entry.brightness > 4.0F && entry.brightness < 251.0F) lively.push_back(entry);
  }
  // Rounding is white noise too; it is not the question.
  constexpr float kRounding = kRoundingVariance;
  float higher = 0.0F;
  float middle = 0.0F;
  for (std::size_t k = isGray_ ? 0 : 1; k < (isGray_ ? 1U : 3U); ++k) {
    higher +=
        quantileOf(lively, 0.1, [k](const Entry& entry) { return entry.planes[k]; }) - kRounding;
    middle +=
        quantileOf(lively, 0.1, [k](const Entry& entry) { return entry.middle[k]; }) - kRounding;
  }
  return middle > 0.2F ? higher / middle : 0.0F;
}

std::vector<BlockStatistics::Entry> BlockStatistics::flattest(std::size_t range) const {
  const auto edge = [this](std::size_t i) {
    return entries_.begin() + static_cast<std::ptrdiff_t>(i * entries_.size() / kBrightnessRanges);
  };
  std::vector<Entry> chosen(edge(range), edge(range + 1));
  const auto kept = static_cast<std::ptrdiff_t>(std::max<std::size_t>(chosen.size() / 5, 1));
  if (kept < static_cast<std::ptrdiff_t>(chosen.size())) {
    std::nth_element(chosen.begin(), chosen.begin() + kept, chosen.end(),
                     [](const Entry& a, const Entry& b) { return a.lower < b.lower; });
    chosen.resize(static_cast<std::size_t>(kept));
  }
  return chosen;
}

std::vector<NoisePoint> BlockStatistics::whitePoints(std::size_t channel) const {
  // The median of a mean of 36 squares lies so much below the mean.
  constexpr float kMedian = 0.9816F;
  std::vector<NoisePoint> points;
  for (std::size_t range = 0; range < kBrightnessRanges && !entries_.empty(); ++range) {
    const std::vector<Entry> chosen = flattest(range);
    const auto median = [&](auto value) { return quantileOf(chosen, 0.5, value); };
    std::array<float, 3> energies;
    for (std::size_t c = 0; c < 3; ++c) {
      energies[c] = median([c](const Entry& entry) { return entry.channels[c]; });
    }
    // Texture is mostly gray, so it is in the channels but not in the colours, which tell how much
    // of the channels is noise.
    float share = 1.0F;
    if (!isGray_) {
      float expected = 0.0F;
      float found = 0.0F;
      for (std::size_t k = 1; k < 3; ++k) {
        for (std::size_t c = 0; c < 3; ++c) {
          expected += kOpponent[k][c] * kOpponent[k][c] * energies[c];
        }
        found += median([k](const Entry& entry) { return entry.planes[k]; });
      }
      share = expected > 0.0F ? std::min(found / expected, 1.0F) : 0.0F;
    }
    const double mean = median([channel](const Entry& entry) { return entry.means[channel]; });
    const double variance = double{share} * energies[channel] / kMedian;
    // Where most is clipped nothing can be told.
    const double deviation = deviationBeforeClipping({mean, variance});
    if (variance < 0.01 || mean < 0.5 * deviation || mean > 255.0 - 0.5 * deviation) continue;
    points.push_back({mean, std::max(deviation * deviation - kRoundingVariance, 0.01)});
  }
  return points;
}

BrightnessEnergies::BrightnessEnergies(const OpponentPlanes& planes, int step,
                                       const JobControl& control) {
  step = stepFor(planes, step);
  for (int y = 0; y + 8 <= planes.height && !control.isCancelled(); y += step) {
    for (int x = 0; x + 8 <= planes.width; x += step) {
      const std::ptrdiff_t place = std::ptrdiff_t{y} * planes.width + x;
      const Block block = cosinesOf(planes.planes[0].data() + place, planes.width);
      entries.push_back({block[0] * kOpponent[0][0] / (8 * kUnit), bandEnergy(block, 2, 4),
                         static_cast<std::size_t>(place)});
    }
  }
}

std::array<float, kBrightnessRanges + 1> BrightnessEnergies::edges() const {
  std::array<float, kBrightnessRanges + 1> found;
  for (std::size_t i = 0; i <= kBrightnessRanges; ++i) {
    // cppcheck-suppress containerOutOfBounds // There is one edge more than there are ranges.
    found[i] = quantileOf(entries, static_cast<double>(i) / kBrightnessRanges,
                          [](const Entry& entry) { return entry.brightness; });
  }
  return found;
}

float amplitudeAt(const NoiseRanges& ranges, float brightness) {
  if (brightness <= ranges.front().brightness) return ranges.front().amplitude;
  for (std::size_t i = 1; i < ranges.size(); ++i) {
    const NoiseRange& below = ranges[i - 1];
    const NoiseRange& above = ranges[i];
    if (brightness > above.brightness) continue;
    const float gap = std::max(above.brightness - below.brightness, 1e-3F);
    return below.amplitude +
           (brightness - below.brightness) / gap * (above.amplitude - below.amplitude);
  }
  return ranges.back().amplitude;
}

NoiseRanges photoNoise(const std::array<BrightnessEnergies, 3>& levels) {
  // Energies of noise at a fifth and at the half of all blocks differ by the chance in them alone,
  // and a picture of half the size has half its amplitude, or little more: noise is smooth. Edges
  // and texture differ more from block to block, and are coarser.
  constexpr float kMostSpread = 1.7F;
  constexpr float kMostAtHalf = 2.05F;
  constexpr float kMostAtQuarter = 4.2F;
  // Cameras leave no more.
  constexpr float kMostAmplitude = 14.0F;
  // The mean against the lower fifth.
  constexpr float kMean = 1.3F;

  const auto edges = levels[0].edges();
  NoiseRanges told;
  for (std::size_t i = 0; i < kBrightnessRanges; ++i) {
    std::array<float, 3> fifths;
    float half = 0.0F;
    for (std::size_t level = 0; level < levels.size(); ++level) {
      std::vector<float> energies;
      for (const auto& entry : levels[level].entries) {
        if (entry.brightness >= edges[i] && entry.brightness <= edges[i + 1]) {
          energies.push_back(entry.energy);
        }
      }
      fifths[level] = std::sqrt(quantile(energies, 0.2)) * static_cast<float>(1 << level);
      if (level == 0) half = std::sqrt(quantile(energies, 0.5));
    }
    const float fifth = std::max(fifths[0], 0.1F);
    told[i].brightness = 0.5F * (edges[i] + edges[i + 1]);
    told[i].amplitude = kMean * fifths[0];
    told[i].isNoise = half <= kMostSpread * fifth && fifths[1] <= kMostAtHalf * fifth &&
                      fifths[2] <= kMostAtQuarter * fifth && told[i].amplitude < kMostAmplitude;
  }
  // Where it could not be told from texture, noise is taken to be what it is at the nearest
  // brightness where it could, but never more than there is of both.
  NoiseRanges ranges = told;
  for (std::size_t i = 0; i < told.size(); ++i) {
    if (told[i].isNoise) continue;
    float amplitude = 0.0F;
    for (std::size_t distance = told.size(); distance-- > 1;) {
      for (const std::size_t other : {i - distance, i + distance}) {
        if (other < told.size() && told[other].isNoise) amplitude = told[other].amplitude;
      }
    }
    ranges[i].amplitude = std::min(told[i].amplitude, amplitude);
  }
  return ranges;
}

float CalmSpectrum::amplitude(std::size_t plane, std::size_t first, std::size_t last) const {
  float sum = 0.0F;
  for (std::size_t i = first; i <= last; ++i) sum += energy[plane][i];
  return std::sqrt(sum / static_cast<float>(last - first + 1));
}

CalmSpectra calmSpectra(const OpponentPlanes& planes, const BrightnessEnergies& energies,
                        const JobControl& control) {
  CalmSpectra spectra;
  const auto edges = energies.edges();
  for (std::size_t range = 0; range < kBrightnessRanges; ++range) {
    std::vector<BrightnessEnergies::Entry> entries;
    for (const auto& entry : energies.entries) {
      if (entry.brightness >= edges[range] && entry.brightness <= edges[range + 1]) {
        entries.push_back(entry);
      }
    }
    const float most = quantileOf(entries, 0.2, [](const auto& entry) { return entry.energy; });
    CalmSpectrum& spectrum = spectra[range];
    spectrum.brightness = 0.5F * (edges[range] + edges[range + 1]);
    std::array<float, 15> counts = {};
    for (const auto& entry : entries) {
      if (entry.energy > most || control.isCancelled()) continue;
      for (std::size_t k = 0; k < 3; ++k) {
        const Block block = cosinesOf(
            planes.planes[k].data() + static_cast<std::ptrdiff_t>(entry.place), planes.width);
        for (std::size_t i = 0; i < block.size(); ++i) {
          const float value = block[i] / kUnit;
          spectrum.energy[k][frequencyOf(i)] += value * value;
          if (k == 0) counts[frequencyOf(i)] += 1.0F;
        }
      }
    }
    for (auto& plane : spectrum.energy) {
      for (std::size_t i = 0; i < plane.size(); ++i) plane[i] /= std::max(counts[i], 1.0F);
    }
  }
  return spectra;
}

}  // namespace velmara
