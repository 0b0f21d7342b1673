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
  double level = 0.0;
  double variance = 0.0;
};

/// What blocks all over a picture say of white noise. Of no use, like all of this, if the control
/// was cancelled while it was made, which ends that early.
class BlockStatistics {
 public:
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

/// The energies of the middle frequencies (2 to 4) of a picture's brightness.
struct BrightnessEnergies {
  struct Entry {
    float brightness;
    float energy;
    float upperEnergy;  // Of frequencies 10 to 12.
    std::size_t place;  // Of the block's first sample.
  };
  std::vector<Entry> entries;

  BrightnessEnergies() = default;
  /// Of blocks at least `step` apart.
  BrightnessEnergies(const OpponentPlanes& planes, int step, const JobControl& control);
};

/// What is left of noise in a camera's JPEG.
class PhotoNoise {
 public:
  /// `levels` are those of the picture, of its half and of its quarter.
  PhotoNoise(const OpponentPlanes& planes, const std::array<BrightnessEnergies, 3>& levels,
             const JobControl& control);

  /// The amplitude of the middle frequencies at a brightness, 0 if no noise was found.
  float amplitudeAt(float brightness) const;
  /// Amplitudes by frequency against that of the middle ones of brightness, plane by plane.
  std::array<std::array<float, 15>, 3> measuredAmplitude = {};

 private:
  struct Range {
    float brightness = 0.0F;
    float amplitude = 0.0F;
    bool isNoise = false;
  };
  void measureUpper(const OpponentPlanes& planes, const BrightnessEnergies& energies,
                    const std::array<float, kBrightnessRanges + 1>& edges,
                    const JobControl& control);

  std::array<Range, kBrightnessRanges> ranges_;
};

}  // namespace velmara
