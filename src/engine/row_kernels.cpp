#include "engine/row_kernels.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "base/pixel_operations.h"
#include "engine/fast/instruction_sets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/row_kernels.cpp"
#include <hwy/foreach_target.h>  // Compiles what follows once per instruction set.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace velmara {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET != HWY_SCALAR

// overBlack for a vector: everything fits into 16 bits without a sign.
template <class D8>
HWY_INLINE hn::Vec<D8> vectorOverBlack(D8 d8, hn::Vec<D8> samples, hn::Vec<D8> alpha) {
  const hn::Half<D8> half;
  const hn::Rebind<std::uint16_t, decltype(half)> d16;
  const auto over = [&](auto sample, auto opacity) {
    const auto product = hn::Add(hn::Mul(hn::PromoteTo(d16, sample), hn::PromoteTo(d16, opacity)),
                                 hn::Set(d16, 128));
    return hn::TruncateTo(half, hn::ShiftRight<8>(hn::Add(product, hn::ShiftRight<8>(product))));
  };
  return hn::Combine(d8, over(hn::UpperHalf(half, samples), hn::UpperHalf(half, alpha)),
                     over(hn::LowerHalf(samples), hn::LowerHalf(alpha)));
}

#endif

void dropAlphaOfRow(const std::uint8_t* rgba, std::size_t pixels, std::uint8_t* rgb) {
  std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
  const hn::ScalableTag<std::uint8_t> d8;
  const std::size_t lanes = hn::Lanes(d8);
  const auto opaque = hn::Set(d8, 255);
  for (; i + lanes <= pixels; i += lanes) {
    hn::Vec<decltype(d8)> red, green, blue, alpha;
    hn::LoadInterleaved4(d8, rgba + 4 * i, red, green, blue, alpha);
    if (HWY_UNLIKELY(!hn::AllTrue(d8, hn::Eq(alpha, opaque)))) {
      red = vectorOverBlack(d8, red, alpha);
      green = vectorOverBlack(d8, green, alpha);
      blue = vectorOverBlack(d8, blue, alpha);
    }
    hn::StoreInterleaved3(red, green, blue, d8, rgb + 3 * i);
  }
#endif
  for (; i < pixels; ++i) {
    for (std::size_t c = 0; c < 3; ++c)
      rgb[3 * i + c] = overBlack(rgba[4 * i + c], rgba[4 * i + 3]);
  }
}

void addAlphaToRow(const std::uint8_t* rgb, std::size_t pixels, std::uint8_t* rgba) {
  std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
  const hn::ScalableTag<std::uint8_t> d8;
  const std::size_t lanes = hn::Lanes(d8);
  const auto opaque = hn::Set(d8, 255);
  for (; i + lanes <= pixels; i += lanes) {
    hn::Vec<decltype(d8)> red, green, blue;
    hn::LoadInterleaved3(d8, rgb + 3 * i, red, green, blue);
    hn::StoreInterleaved4(red, green, blue, opaque, d8, rgba + 4 * i);
  }
#endif
  for (; i < pixels; ++i) {
    const std::uint8_t pixel[3] = {rgb[3 * i], rgb[3 * i + 1], rgb[3 * i + 2]};
    for (std::size_t c = 0; c < 3; ++c) rgba[4 * i + c] = pixel[c];
    rgba[4 * i + 3] = 255;
  }
}

template <class D>
HWY_INLINE hn::Vec<D> medianOfThree(D /*d*/, hn::Vec<D> a, hn::Vec<D> b, hn::Vec<D> c) {
  return hn::Max(hn::Min(a, b), hn::Min(hn::Max(a, b), c));
}

// Calls `step(d, i)` for places from 0 to count - 1, whole vectors first, then one sample each.
template <class Step>
HWY_INLINE void forSamples(std::size_t count, const Step& step) {
  const hn::ScalableTag<std::uint8_t> d;
  const hn::CappedTag<std::uint8_t, 1> one;
  std::size_t i = 0;
  for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) step(d, i);
  for (; i < count; ++i) step(one, i);
}

// The three samples of each column in ascending order.
void sortColumnsOfRows(const std::uint8_t* above, const std::uint8_t* here,
                       const std::uint8_t* below, std::size_t count, std::uint8_t* low,
                       std::uint8_t* middle, std::uint8_t* high) {
  forSamples(count, [&](auto d, std::size_t i) {
    const auto a = hn::LoadU(d, above + i);
    const auto b = hn::LoadU(d, here + i);
    const auto c = hn::LoadU(d, below + i);
    const auto smaller = hn::Min(a, b);
    const auto larger = hn::Max(a, b);
    hn::StoreU(hn::Min(smaller, c), d, low + i);
    hn::StoreU(hn::Max(smaller, hn::Min(larger, c)), d, middle + i);
    hn::StoreU(hn::Max(larger, c), d, high + i);
  });
}

// The median of nine is the median of the largest low, the middle middle and the smallest high of
// three columns, `step` samples apart.
void mediansOfColumns(const std::uint8_t* low, const std::uint8_t* middle, const std::uint8_t* high,
                      std::size_t count, std::size_t step, std::uint8_t* out) {
  forSamples(count, [&](auto d, std::size_t i) {
    const auto load = [&](const std::uint8_t* line, std::size_t column) {
      return hn::LoadU(d, line + i + column * step);
    };
    const auto largestLow = hn::Max(hn::Max(load(low, 0), load(low, 1)), load(low, 2));
    const auto middleMiddle = medianOfThree(d, load(middle, 0), load(middle, 1), load(middle, 2));
    const auto smallestHigh = hn::Min(hn::Min(load(high, 0), load(high, 1)), load(high, 2));
    hn::StoreU(medianOfThree(d, largestLow, middleMiddle, smallestHigh), d, out + i);
  });
}

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace velmara {
namespace {

HWY_EXPORT(dropAlphaOfRow);
HWY_EXPORT(addAlphaToRow);
HWY_EXPORT(sortColumnsOfRows);
HWY_EXPORT(mediansOfColumns);

// Sorted columns of one row, with one pixel of room at both ends for the repeated edges.
class SortedColumns {
 public:
  SortedColumns(std::size_t rowBytes, std::size_t pixelBytes)
      : rowBytes_(rowBytes), pixelBytes_(pixelBytes) {
    for (auto* line : {&low_, &middle_, &high_}) line->resize(rowBytes + 2 * pixelBytes);
  }

  void sort(const std::uint8_t* above, const std::uint8_t* here, const std::uint8_t* below) {
    HWY_DYNAMIC_DISPATCH(sortColumnsOfRows)
    (above, here, below, rowBytes_, low_.data() + pixelBytes_, middle_.data() + pixelBytes_,
     high_.data() + pixelBytes_);
    for (auto* line : {&low_, &middle_, &high_}) repeatEnds(*line);
  }
  void writeMedians(std::uint8_t* out) const {
    HWY_DYNAMIC_DISPATCH(mediansOfColumns)
    (low_.data(), middle_.data(), high_.data(), rowBytes_, pixelBytes_, out);
  }

 private:
  void repeatEnds(std::vector<std::uint8_t>& line) const {
    std::copy_n(line.data() + pixelBytes_, pixelBytes_, line.data());
    std::copy_n(line.data() + rowBytes_, pixelBytes_, line.data() + rowBytes_ + pixelBytes_);
  }

  std::size_t rowBytes_;
  std::size_t pixelBytes_;
  std::vector<std::uint8_t> low_, middle_, high_;
};

}  // namespace

void dropAlpha(const std::uint8_t* rgba, std::size_t pixels, std::uint8_t* rgb) {
  useInstructionSetOfEnvironment();
  HWY_DYNAMIC_DISPATCH(dropAlphaOfRow)(rgba, pixels, rgb);
}

void addAlpha(const std::uint8_t* rgb, std::size_t pixels, std::uint8_t* rgba) {
  useInstructionSetOfEnvironment();
  HWY_DYNAMIC_DISPATCH(addAlphaToRow)(rgb, pixels, rgba);
}

Bitmap medianFiltered(const Bitmap& bitmap, int rows) try {
  if (!bitmap.isValid() || rows <= 0) return {};
  const int height = bitmap.height();
  auto filtered =
      BitmapBuilder::allocate(bitmap.width(), std::min(rows, height), bitmap.samplesPerPixel());
  if (!filtered) return {};
  useInstructionSetOfEnvironment();
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

#endif  // HWY_ONCE
