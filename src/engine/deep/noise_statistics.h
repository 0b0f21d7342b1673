#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "base/job_control.h"
#include "engine/deep/block_transform.h"
#include "engine/deep/opponent_planes.h"

namespace velmara {

/// Pictures are looked at in so many ranges of brightness, each with as many blocks.
inline constexpr std::size_t kBrightnessRanges = 5;

/// The variance of noise at a level, both before clipping.
struct NoisePoint {
  /// Of 0 to 255, and in its square.
  double level = 0.0;
  double variance = 0.0;
};

/// What blocks all over a picture say of white noise. Of no use, like all of this, if the control
/// was cancelled while it was made, which ends that early.
class BlockStatistics {
 public:
  /// Looks at the blocks of a picture. Throws std::bad_alloc.
  BlockStatistics(const OpponentPlanes& planes, const JobControl& control);

  /// The energy of the higher frequencies of colour against that of the middle ones, of brightness
  /// if there is no colour; 0 if there is neither.
  float whiteness() const;
  /// The noise of a channel in each range of brightness that shows any.
  std::vector<NoisePoint> whitePoints(std::size_t channel) const;

 private:
  struct Entry {
    float brightness;               // 0 to 255
    float lower;                    // Energy of the lower frequencies of brightness.
    std::array<float, 3> means;     // Of the channels, 0 to 255.
    std::array<float, 3> channels;  // Energies of the higher frequencies of the channels ...
    std::array<float, 3> planes;    // ... and of the opponent planes, ...
    std::array<float, 3> middle;    // ... and of the planes' middle frequencies.
  };
  // The flattest blocks of a range of brightness.
  std::vector<Entry> flattest(std::size_t range) const;

  std::vector<Entry> entries_;  // From dark to bright.
  bool isGray_ = false;
};

/// Noise of a range of brightness.
struct NoiseRange {
  float brightness = 0.0F;  ///< Of 0 to 255.
  float amplitude = 0.0F;   ///< Of brightness' cosine coefficients.
  bool isNoise = false;     ///< Whether noise was found here at all.
};
/// From dark to bright.
using NoiseRanges = std::array<NoiseRange, kBrightnessRanges>;

/// The amplitude at a brightness, between those of the ranges.
float amplitudeAt(const NoiseRanges& ranges, float brightness);

/// The energies of the middle frequencies (2 to 4) of a picture's brightness, from block to block.
struct BrightnessEnergies {
  /// One block.
  struct Entry {
    /// Its mean brightness, and the energy.
    float brightness;
    float energy;
    std::size_t place;  ///< Of the block's first sample.
  };
  /// One for each block.
  std::vector<Entry> entries;

  BrightnessEnergies() = default;
  /// Of blocks at least `step` apart.
  BrightnessEnergies(const OpponentPlanes& planes, int step, const JobControl& control);
  /// Where the ranges of brightness begin and end.
  std::array<float, kBrightnessRanges + 1> edges() const;
};

/// What is left of noise in a camera's JPEG: nothing where it cannot be told from texture at any
/// brightness. `levels` are those of the picture, of its half and of its quarter.
NoiseRanges photoNoise(const std::array<BrightnessEnergies, 3>& levels);

/// The calmest blocks of a range of brightness: the mean energies of their coefficients, plane by
/// plane and by frequency.
struct CalmSpectrum {
  /// The range's mean brightness, and the energies by plane and frequency.
  float brightness = 0.0F;
  std::array<std::array<float, 15>, 3> energy = {};

  /// The amplitude of frequencies first to last.
  float amplitude(std::size_t plane, std::size_t first, std::size_t last) const;
};
/// From dark to bright.
using CalmSpectra = std::array<CalmSpectrum, kBrightnessRanges>;

/// What the calmest blocks of each range have in them.
CalmSpectra calmSpectra(const OpponentPlanes& planes, const BrightnessEnergies& energies,
                        const JobControl& control);

}  // namespace velmara
