#pragma once

#include <vector>

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

/// The taps of a Lanczos filter of three lobes (Duchon 1979) that lays `outCount` samples over the
/// stretch from `start` to `start + length` of a line of `sourceCount` samples; the stretch may
/// reach beyond the line. Where the samples get fewer the filter widens in proportion. The weights
/// of a sample add up to 1, also at the ends, where those taps that would lie outside are left out.
AxisTaps lanczosTaps(int sourceCount, double start, double length, int outCount);

/// A stretch of the samples of a line.
struct SampleRange {
  int first = 0;
  int count = 0;
};

/// The taps of some of these samples only, the very same.
AxisTaps lanczosTaps(int sourceCount, double start, double length, int outCount,
                     SampleRange samples);

}  // namespace velmara
