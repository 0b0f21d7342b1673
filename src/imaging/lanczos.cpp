#include "imaging/lanczos.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmara {
namespace {

constexpr double kLobes = 3.0;

double lanczos(double x) {
  if (std::abs(x) < 1e-9) return 1.0;
  if (std::abs(x) >= kLobes) return 0.0;
  const double angle = std::numbers::pi * x;
  return kLobes * std::sin(angle) * std::sin(angle / kLobes) / (angle * angle);
}

}  // namespace

AxisTaps lanczosTaps(int sourceCount, double start, double length, int outCount) {
  return lanczosTaps(sourceCount, start, length, outCount, {0, outCount});
}

AxisTaps lanczosTaps(int sourceCount, double start, double length, int outCount,
                     SampleRange samples) {
  const double step = length / outCount;
  const double widening = std::max(1.0, step);
  const double reach = kLobes * widening;
  const double count = std::min<double>(sourceCount, std::ceil(2.0 * reach) + 1.0);

  AxisTaps taps;
  taps.count = static_cast<int>(count);
  taps.first.reserve(static_cast<std::size_t>(samples.count));
  taps.coverage.reserve(static_cast<std::size_t>(samples.count));
  taps.weights.reserve(static_cast<std::size_t>(samples.count) *
                       static_cast<std::size_t>(taps.count));
  std::vector<double> weights(static_cast<std::size_t>(taps.count));
  for (int i = samples.first; i < samples.first + samples.count; ++i) {
    const double low = start + step * i;
    const double covered = std::min<double>(low + step, sourceCount) - std::max(low, 0.0);
    taps.coverage.push_back(static_cast<float>(std::clamp(covered / step, 0.0, 1.0)));

    // A sample that is centred outside shows the edge.
    const double centre = std::clamp(low + step / 2.0, 0.0, static_cast<double>(sourceCount));
    const int first =
        std::clamp(static_cast<int>(std::ceil(centre - reach - 0.5)), 0, sourceCount - taps.count);
    double sum = 0.0;
    for (int k = 0; k < taps.count; ++k) {
      const double weight = lanczos((first + k + 0.5 - centre) / widening);
      weights[static_cast<std::size_t>(k)] = weight;
      sum += weight;
    }
    taps.first.push_back(first);
    for (const double weight : weights) taps.weights.push_back(static_cast<float>(weight / sum));
  }
  return taps;
}

}  // namespace velmara
