#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "base/bitmap.h"

namespace velmara {

/// How the samples of one line of a picture are made from a line of another: sample i is the sum of
/// weights[i * count + k] * source[first[i] + k] for k below count, times its coverage.
struct AxisTaps {
  /// Taps of every sample; those that are not needed weigh 0 and still lie inside the source.
  int count = 0;
  std::vector<int> first;
  std::vector<float> weights;
  /// Which share of sample i lies over the source at all, 0 to 1.
  std::vector<float> coverage;
};

/// A stretch of the samples of a line.
struct SampleRange {
  int first = 0;
  int count = 0;
};

/// The taps of a Lanczos filter of three lobes (Duchon 1979) that lays `outCount` samples over the
/// stretch from `start` to `start + length` of a line of `sourceCount` samples, of these samples
/// only; the stretch may reach beyond the line. Where the samples get fewer the filter widens in
/// proportion. The weights of a sample add up to 1, also at the ends, where those taps that would
/// lie outside are left out.
AxisTaps lanczosTaps(int sourceCount, double start, double length, int outCount,
                     SampleRange samples);

/// Draws rows of a resampled canvas, or of a part of one, from a bitmap. The rows and columns are
/// those the taps are of; every pixel depends on its own taps alone, so a part has the samples of
/// the whole. Only the columns of the source that the taps reach are looked at.
///
/// Source and taps must outlive it. It has a line of its own to work in, so every thread needs one.
class RowDrawer {
 public:
  /// `weighAlpha` says that colours are to be weighed by their alpha, which a bitmap that is opaque
  /// throughout does not need.
  RowDrawer(const Bitmap& source, const AxisTaps& across, const AxisTaps& down, bool weighAlpha);

  /// Row y of the taps, 4 samples a pixel.
  void draw(int y, std::uint8_t* out);

 private:
  void gather(int y);
  void addWeighed(const std::uint8_t* from, float weight);
  void put(const float* pixel, float coverage, std::uint8_t* out) const;

  const Bitmap& source_;
  const AxisTaps& across_;
  const AxisTaps& down_;
  std::size_t samples_;
  bool weighAlpha_;
  /// The first column of the source that is looked at.
  int left_;
  /// Samples of the source line that are looked at; the line has a few more.
  std::size_t reached_;
  std::vector<float> line_;
};

/// Runs a piece of work over the rows 0 to `rows`, cut into as many stretches as the machine has
/// processors, and waits for all of them. The work gets the first row of a stretch and the one
/// behind its last, on any thread, and must not throw; stretches do not overlap.
void parallelRows(int rows, const std::function<void(int, int)>& work);

}  // namespace velmara
