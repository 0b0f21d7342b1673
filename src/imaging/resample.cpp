#include "imaging/resample.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "base/pixel_operations.h"

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

/// Draws rows of a resampled canvas, or of a part of one, from a bitmap. The rows and columns are
/// those the taps are of; every pixel depends on its own taps alone, so a part has the samples of
/// the whole. Only the columns of the source that the taps reach are looked at.
///
/// Source and taps must outlive it. It has a line of its own to work in, so every thread needs one.
class RowDrawer {
 public:
  /// `weighAlpha` says that colours are to be weighed by their alpha, which a bitmap that is opaque
  /// throughout does not need.
  RowDrawer(const Bitmap& source, const AxisTaps& across, const AxisTaps& down, bool weighAlpha)
      : source_(source),
        across_(across),
        down_(down),
        samples_(static_cast<std::size_t>(source.samplesPerPixel())),
        weighAlpha_(weighAlpha),
        left_(across.first.front()),
        reached_(static_cast<std::size_t>(across.first.back() + across.count - left_) * samples_),
        line_(reached_ + kSums - 1) {}

  /// Row y of the taps, 4 samples a pixel.
  void draw(int y, std::uint8_t* out) {
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

 private:
  // The source line that row y of the canvas is taken from: its rows weighed and added up.
  void gather(int y) {
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

  void addWeighed(const std::uint8_t* from, float weight) {
    for (std::size_t i = 0; i < reached_; i += samples_) {
      const auto alpha = static_cast<float>(from[i + samples_ - 1]);
      for (std::size_t c = 0; c + 1 < samples_; ++c) {
        line_[i + c] += weight * static_cast<float>(from[i + c]) * alpha / 255.0F;
      }
      line_[i + samples_ - 1] += weight * alpha;
    }
  }

  void put(const float* pixel, float coverage, std::uint8_t* out) const {
    const bool hasAlpha = samples_ == 2 || samples_ == 4;
    const float weight = hasAlpha ? pixel[samples_ - 1] : 255.0F;
    const float alpha = std::clamp(weight, 0.0F, 255.0F);
    // By what the colours were weighed with, which overshoots at edges.
    const float unweigh = weighAlpha_ && weight > 0.0F ? 255.0F / weight : 1.0F;
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

  const Bitmap& source_;
  const AxisTaps& across_;
  const AxisTaps& down_;
  std::size_t samples_;
  bool weighAlpha_;
  int left_;             // The first column of the source that is looked at.
  std::size_t reached_;  // Samples of the source line that are looked at; the line has a few more.
  std::vector<float> line_;
};

bool isWhole(double value) {
  return value == std::floor(value) && std::abs(value) < 1e9;
}

/// Copies pixels from a place in a 4-sample bitmap, transparent beyond its edges.
Bitmap copiedPart(const Bitmap& rgba, std::int64_t left, std::int64_t top, int width, int height) {
  auto canvas = BitmapBuilder::allocate(width, height, 4);
  if (!canvas || !rgba.isValid()) return {};
  const std::int64_t from = std::clamp<std::int64_t>(left, 0, rgba.width());
  const std::int64_t to = std::clamp<std::int64_t>(left + width, from, rgba.width());
  for (int y = 0; y < height; ++y) {
    std::uint8_t* out = canvas->row(y);
    std::memset(out, 0, canvas->rowBytes());
    const std::int64_t source = top + y;
    if (source < 0 || source >= rgba.height() || to == from) continue;
    std::memcpy(out + static_cast<std::size_t>(from - left) * 4,
                rgba.pixel(static_cast<int>(from), static_cast<int>(source)),
                static_cast<std::size_t>(to - from) * 4);
  }
  return std::move(*canvas).finish();
}

// A canvas of the samples that the taps are of.
Bitmap filtered(const Bitmap& bitmap, const AxisTaps& across, const AxisTaps& down,
                bool weighAlpha) {
  const auto height = static_cast<int>(down.first.size());
  auto canvas = BitmapBuilder::allocate(static_cast<int>(across.first.size()), height, 4);
  if (!canvas) return {};
  parallelRows(height, [&](int first, int end) {
    RowDrawer drawer(bitmap, across, down, weighAlpha);
    for (int y = first; y < end; ++y) drawer.draw(y, canvas->row(y));
  });
  return std::move(*canvas).finish();
}

}  // namespace

Bitmap drawnPart(const Bitmap& bitmap, const Rect& part, int width, int height) {
  if (!bitmap.isValid() || !isAllowedBitmapSize(width, height, 4) || !(part.width > 0.0) ||
      !(part.height > 0.0)) {
    return {};
  }
  const double top = bitmap.height() - (part.y + part.height);
  const bool isExact =
      part.width == width && part.height == height && isWhole(part.x) && isWhole(top);
  if (!isExact) {
    return filtered(bitmap, lanczosTaps(bitmap.width(), part.x, part.width, width, {0, width}),
                    lanczosTaps(bitmap.height(), top, part.height, height, {0, height}),
                    !isOpaque(bitmap));
  }
  if (part.x == 0.0 && top == 0.0 && width == bitmap.width() && height == bitmap.height()) {
    return asRgba(bitmap);
  }
  return copiedPart(asRgba(bitmap), static_cast<std::int64_t>(part.x),
                    static_cast<std::int64_t>(top), width, height);
}

Bitmap resampled(const Bitmap& bitmap, int width, int height) {
  return drawnPart(
      bitmap, {0.0, 0.0, static_cast<double>(bitmap.width()), static_cast<double>(bitmap.height())},
      width, height);
}

ResampledBitmap::ResampledBitmap(Bitmap source, int width, int height) {
  if (!source.isValid() || width <= 0 || height <= 0) return;
  source_ = std::move(source);
  width_ = width;
  height_ = height;
  isOpaque_ = isOpaque(source_);
}

Bitmap ResampledBitmap::part(const PixelRect& rect) const {
  const PixelRect inside = intersection(rect, {0, 0, width_, height_});
  if (inside.isEmpty()) return {};
  if (width_ == source_.width() && height_ == source_.height()) {
    return asRgba(copiedPixels(source_, inside));
  }
  return filtered(
      source_, lanczosTaps(source_.width(), 0.0, source_.width(), width_, {inside.x, inside.width}),
      lanczosTaps(source_.height(), 0.0, source_.height(), height_, {inside.y, inside.height}),
      !isOpaque_);
}

Bitmap copiedPixels(const Bitmap& bitmap, const PixelRect& rect) {
  if (!bitmap.isValid()) return {};
  const PixelRect inside = intersection(rect, {0, 0, bitmap.width(), bitmap.height()});
  auto canvas = BitmapBuilder::allocate(inside.width, inside.height, bitmap.samplesPerPixel());
  if (!canvas) return {};
  for (int y = 0; y < inside.height; ++y) {
    std::memcpy(canvas->row(y), bitmap.pixel(inside.x, inside.y + y), canvas->rowBytes());
  }
  return std::move(*canvas).finish();
}

int canvasPixels(double length) {
  constexpr double kMost = std::numeric_limits<int>::max();
  return length >= 1.0 ? static_cast<int>(std::min(std::round(length), kMost)) : 1;
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
