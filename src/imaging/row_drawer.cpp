#include "imaging/row_drawer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <system_error>
#include <thread>
#include <vector>

namespace velmara {
namespace {

constexpr double kLobes = 3.0;

double lanczos(double x) {
  if (std::abs(x) < 1e-9) return 1.0;
  if (std::abs(x) >= kLobes) return 0.0;
  const double angle = std::numbers::pi * x;
  return kLobes * std::sin(angle) * std::sin(angle / kLobes) / (angle * angle);
}

std::uint8_t rounded(float value) {
  const float upwards = std::clamp(value, 0.0F, 255.0F) + 0.5F;
  return static_cast<std::uint8_t>(upwards);
}

std::size_t columnsReached(const AxisTaps& across) {
  return static_cast<std::size_t>(across.first.back() + across.count - across.first.front());
}

// One pixel before rounding, its source samples side by side. Always four sums, so that they are
// one vector: with fewer samples the others run over what follows and are not used.
constexpr std::size_t kSums = 4;

template <std::size_t kSamples>
void sumTaps(const float* from, const float* weights, int count, float* pixel) {
  float sums[kSums] = {};
  for (int k = 0; k < count; ++k, from += kSamples) {
    for (std::size_t c = 0; c < kSums; ++c) sums[c] += weights[k] * from[c];
  }
  std::copy(sums, sums + kSums, pixel);
}

auto sumOf(std::size_t samples) {
  switch (samples) {
    case 1:
      return sumTaps<1>;
    case 2:
      return sumTaps<2>;
    case 3:
      return sumTaps<3>;
    default:
      return sumTaps<4>;
  }
}

}  // namespace

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

RowDrawer::RowDrawer(const Bitmap& source, const AxisTaps& across, const AxisTaps& down,
                     bool weighAlpha)
    : source_(source),
      across_(across),
      down_(down),
      samples_(static_cast<std::size_t>(source.samplesPerPixel())),
      weighAlpha_(weighAlpha),
      left_(across.first.front()),
      reached_(columnsReached(across) * samples_),
      line_(reached_ + kSums - 1) {}

void RowDrawer::draw(int y, std::uint8_t* out) {
  gather(y);
  const auto sum = sumOf(samples_);
  const float rowCoverage = down_.coverage[static_cast<std::size_t>(y)];
  for (std::size_t x = 0; x < across_.first.size(); ++x, out += 4) {
    float pixel[kSums];
    sum(&line_[static_cast<std::size_t>(across_.first[x] - left_) * samples_],
        &across_.weights[x * static_cast<std::size_t>(across_.count)], across_.count, pixel);
    put(pixel, rowCoverage * across_.coverage[x], out);
  }
}

// The source line that row y of the canvas is taken from: its rows weighed and added up.
void RowDrawer::gather(int y) {
  std::fill(line_.begin(), line_.end(), 0.0F);
  const auto row = static_cast<std::size_t>(y);
  for (int k = 0; k < down_.count; ++k) {
    const float weight =
        down_.weights[row * static_cast<std::size_t>(down_.count) + static_cast<std::size_t>(k)];
    if (weight == 0.0F) continue;
    const std::uint8_t* from = source_.pixel(left_, down_.first[row] + k);
    if (weighAlpha_) {
      addWeighed(from, weight);
    } else {
      for (std::size_t i = 0; i < reached_; ++i) {
        line_[i] += weight * static_cast<float>(from[i]);
      }
    }
  }
}

void RowDrawer::addWeighed(const std::uint8_t* from, float weight) {
  for (std::size_t i = 0; i < reached_; i += samples_) {
    const auto alpha = static_cast<float>(from[i + samples_ - 1]);
    for (std::size_t c = 0; c + 1 < samples_; ++c) {
      line_[i + c] += weight * static_cast<float>(from[i + c]) * alpha / 255.0F;
    }
    line_[i + samples_ - 1] += weight * alpha;
  }
}

void RowDrawer::put(const float* pixel, float coverage, std::uint8_t* out) const {
  const bool hasAlpha = samples_ == 2 || samples_ == 4;
  const float alpha = hasAlpha ? std::clamp(pixel[samples_ - 1], 0.0F, 255.0F) : 255.0F;
  const float unweigh = weighAlpha_ && alpha > 0.0F ? 255.0F / alpha : 1.0F;
  const std::size_t green = samples_ >= 3 ? 1 : 0;
  const std::size_t blue = samples_ >= 3 ? 2 : 0;
  out[3] = rounded(alpha * coverage);
  if (out[3] == 0) {
    out[0] = out[1] = out[2] = 0;
    return;
  }
  out[0] = rounded(pixel[0] * unweigh);
  out[1] = rounded(pixel[green] * unweigh);
  out[2] = rounded(pixel[blue] * unweigh);
}

void parallelRows(int rows, const std::function<void(int, int)>& work) {
  constexpr int kLeastRows = 16;
  const int stretches = std::clamp(
      rows / kLeastRows, 1, std::max(1, static_cast<int>(std::thread::hardware_concurrency())));
  const auto rowAt = [&](int stretch) {
    return static_cast<int>(std::int64_t{rows} * stretch / stretches);
  };
  std::vector<std::jthread> helpers;
  helpers.reserve(static_cast<std::size_t>(stretches));
  for (int i = 1; i < stretches; ++i) {
    try {
      helpers.emplace_back(work, rowAt(i), rowAt(i + 1));
    } catch (const std::system_error&) {
      work(rowAt(i), rowAt(i + 1));  // no thread to be had
    }
  }
  work(0, rowAt(1));
}

}  // namespace velmara
