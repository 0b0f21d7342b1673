#pragma once

#include <array>
#include <vector>

namespace velmara {

/// Mean and variance of something random.
struct Moments {
  /// Of samples of 0 to 255; the variance is in their square.
  double mean = 0.0;
  double variance = 0.0;
};

/// The variance that rounding to whole numbers adds.
inline constexpr float kRoundingVariance = 1.0F / 12.0F;

/// The moments of a normal variable of mean `level` and a deviation above 0 after it was clipped to
/// 0 to 255.
Moments clippedMoments(double level, double deviation);

/// Noise of a deviation that depends on the level, as it is seen after clipping.
class ClippedNoise {
 public:
  /// What is seen, and what it comes from.
  struct Seen {
    double level = 0.0;     ///< Before clipping; may lie outside 0 to 255.
    double variance = 0.0;  ///< After clipping.
  };

  /// `deviation` is that before clipping at each level from 0 to 255; levels outside have the
  /// nearest.
  explicit ClippedNoise(const std::array<float, 256>& deviation);

  /// What lies behind a mean after clipping, 0 to 255.
  Seen seenAs(double mean) const;

 private:
  static constexpr double kFirstLevel = -192.0;
  static constexpr double kStep = 0.25;
  std::vector<Moments> moments_;  // Of the levels from kFirstLevel on, kStep apart.
};

/// The deviation before clipping of noise whose moments after it are these.
double deviationBeforeClipping(const Moments& seen);

}  // namespace velmara
