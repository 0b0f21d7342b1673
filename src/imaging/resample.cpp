#include "imaging/resample.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "base/alpha.h"
#include "imaging/lanczos.h"
#include "imaging/parallel_rows.h"

namespace velmara {
namespace {

bool isWhole(double value) {
  return value == std::floor(value) && std::abs(value) < 1e9;
}

bool isOpaque(const Bitmap& bitmap) {
  if (!bitmap.hasAlpha()) return true;
  const auto step = static_cast<std::size_t>(bitmap.samplesPerPixel());
  const auto bytes = bitmap.bytes();
  for (std::size_t i = step - 1; i < bytes.size(); i += step) {
    if (bytes[i] != 255) return false;
  }
  return true;
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

/// Draws one stretch of rows of a canvas.
class RowDrawer {
 public:
  RowDrawer(const Bitmap& source, const AxisTaps& across, const AxisTaps& down, bool weighAlpha)
      : source_(source),
        across_(across),
        down_(down),
        samples_(static_cast<std::size_t>(source.samplesPerPixel())),
        weighAlpha_(weighAlpha),
        line_(source.rowBytes()) {}

  void draw(int y, std::uint8_t* out) {
    gather(y);
    const float rowCoverage = down_.coverage[static_cast<std::size_t>(y)];
    for (std::size_t x = 0; x < across_.first.size(); ++x, out += 4) {
      float pixel[4] = {};
      const float* weights = &across_.weights[x * static_cast<std::size_t>(across_.count)];
      const float* from = &line_[static_cast<std::size_t>(across_.first[x]) * samples_];
      for (int k = 0; k < across_.count; ++k, from += samples_) {
        for (std::size_t c = 0; c < samples_; ++c) pixel[c] += weights[k] * from[c];
      }
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
      const std::uint8_t* from = source_.row(down_.first[row] + k);
      if (weighAlpha_) {
        addWeighed(from, weight);
      } else {
        for (std::size_t i = 0; i < line_.size(); ++i) {
          line_[i] += weight * static_cast<float>(from[i]);
        }
      }
    }
  }

  void addWeighed(const std::uint8_t* from, float weight) {
    for (std::size_t i = 0; i < line_.size(); i += samples_) {
      const auto alpha = static_cast<float>(from[i + samples_ - 1]);
      for (std::size_t c = 0; c + 1 < samples_; ++c) {
        line_[i + c] += weight * static_cast<float>(from[i + c]) * alpha / 255.0F;
      }
      line_[i + samples_ - 1] += weight * alpha;
    }
  }

  void put(const float* pixel, float coverage, std::uint8_t* out) const {
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

  static std::uint8_t rounded(float value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0.0F, 255.0F) + 0.5F);
  }

  const Bitmap& source_;
  const AxisTaps& across_;
  const AxisTaps& down_;
  std::size_t samples_;
  bool weighAlpha_;
  std::vector<float> line_;
};

Bitmap filteredPart(const Bitmap& bitmap, const Rect& part, double top, int width, int height) {
  auto canvas = BitmapBuilder::allocate(width, height, 4);
  if (!canvas) return {};
  const AxisTaps across = lanczosTaps(bitmap.width(), part.x, part.width, width);
  const AxisTaps down = lanczosTaps(bitmap.height(), top, part.height, height);
  const bool weighAlpha = !isOpaque(bitmap);
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
  if (!isExact) return filteredPart(bitmap, part, top, width, height);
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

}  // namespace velmara
