#pragma once

#include <array>

#include "engine/deep/deep_pass.h"
#include "engine/deep/opponent_planes.h"

namespace velmara {

/// The noise of a photo, in levels of 0 to 255.
struct DeepNoise {
  /// The standard deviation of the samples of each channel where they would be `index` without
  /// noise; white noise before it was rounded and clipped to 0 to 255.
  std::array<std::array<float, 256>, 3> deviation = {};
  /// The amplitude of the cosine coefficients of each opponent plane by frequency (frequencyOf),
  /// relative to that of white noise of the same deviation.
  std::array<std::array<float, 15>, 3> amplitude = {};
  /// Whether it is independent from pixel to pixel. If not it has been through JPEG compression,
  /// which makes it coarser in colour, and maybe through a camera's processing, which makes it
  /// smooth.
  bool isWhite = true;
  /// At how many sizes of the picture it is filtered: more than one if it is smooth.
  int sizes = 1;
  /// How many times stronger it was when it was clipped to 0 to 255; 0 if nothing tells.
  float whenClipped = 1.0F;

  /// Whether there is none worth filtering.
  bool isNone() const;
  /// The mean deviation of the channels in the middle up to which the ten levels of the other
  /// method reach.
  static constexpr float kReachOfLevels = 17.0F;
  /// Whether it is more than the ten levels of the other method reach: beyond, even the highest
  /// hardly does anything.
  bool isBeyondLevels() const;
};

/// White noise of one deviation in all channels.
DeepNoise whiteNoise(float deviation);

/// The noise, `strength` times as strong, of a picture that is seen at `scale` times its size, at
/// most 1, as BlockNoise. If `isFused` the picture's lower frequencies have been replaced by those
/// of a filtered smaller one.
BlockNoise blockNoise(const DeepNoise& noise, float strength, float scale, bool isFused);

/// For each value the sample that it stands for. Clipping moves the mean of white noise away from
/// both ends; this moves it back.
SampleTables sampleTables(const DeepNoise& noise, float strength);

}  // namespace velmara
