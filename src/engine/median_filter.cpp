#include "engine/median_filter.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

namespace velmara {
namespace {

using Sample = std::uint8_t;

Sample medianOfThree(Sample a, Sample b, Sample c) {
  return std::max(std::min(a, b), std::min(std::max(a, b), c));
}

// The three samples of each column in ascending order, with one pixel of room at both ends for the
// repeated edges.
class SortedColumns {
 public:
  SortedColumns(std::size_t rowBytes, std::size_t pixelBytes)
      : rowBytes_(rowBytes), pixelBytes_(pixelBytes) {
    const std::size_t size = rowBytes + 2 * pixelBytes;
    for (auto* line : {&low_, &middle_, &high_}) line->resize(size);
  }

  void sort(const Sample* above, const Sample* here, const Sample* below) {
    Sample* low = low_.data() + pixelBytes_;
    Sample* middle = middle_.data() + pixelBytes_;
    Sample* high = high_.data() + pixelBytes_;
    for (std::size_t i = 0; i < rowBytes_; ++i) {
      const Sample smaller = std::min(above[i], here[i]);
      const Sample larger = std::max(above[i], here[i]);
      low[i] = std::min(smaller, below[i]);
      middle[i] = std::max(smaller, std::min(larger, below[i]));
      high[i] = std::max(larger, below[i]);
    }
    for (auto* line : {&low_, &middle_, &high_}) repeatEnds(*line);
  }

  // The median of nine is the median of the largest low, the middle middle and the smallest high.
  void writeMedians(Sample* out) const {
    const std::size_t p = pixelBytes_;
    const Sample* low = low_.data();
    const Sample* middle = middle_.data();
    const Sample* high = high_.data();
    for (std::size_t i = 0; i < rowBytes_; ++i) {
      const Sample largestLow = std::max(std::max(low[i], low[i + p]), low[i + 2 * p]);
      const Sample middleMiddle = medianOfThree(middle[i], middle[i + p], middle[i + 2 * p]);
      const Sample smallestHigh = std::min(std::min(high[i], high[i + p]), high[i + 2 * p]);
      out[i] = medianOfThree(largestLow, middleMiddle, smallestHigh);
    }
  }

 private:
  void repeatEnds(std::vector<Sample>& line) const {
    std::copy_n(line.data() + pixelBytes_, pixelBytes_, line.data());
    std::copy_n(line.data() + rowBytes_, pixelBytes_, line.data() + rowBytes_ + pixelBytes_);
  }

  std::size_t rowBytes_;
  std::size_t pixelBytes_;
  std::vector<Sample> low_, middle_, high_;
};

}  // namespace

Bitmap medianFiltered(const Bitmap& bitmap, int rows) try {
  if (!bitmap.isValid() || rows <= 0) return {};
  const int height = bitmap.height();
  auto filtered =
      BitmapBuilder::allocate(bitmap.width(), std::min(rows, height), bitmap.samplesPerPixel());
  if (!filtered) return {};
  SortedColumns columns(bitmap.rowBytes(), static_cast<std::size_t>(bitmap.samplesPerPixel()));
  for (int y = 0; y < filtered->height(); ++y) {
    columns.sort(bitmap.row(std::max(y - 1, 0)), bitmap.row(y),
                 bitmap.row(std::min(y + 1, height - 1)));
    columns.writeMedians(filtered->row(y));
  }
  return std::move(*filtered).finish();
} catch (const std::bad_alloc&) {
  return {};
}

}  // namespace velmara
