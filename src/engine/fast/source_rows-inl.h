// Rows of the padded source as the vector stages want them: one row a channel, 16-bit and single
// precision. Compiled once per instruction set.

#include <hwy/cache_control.h>
#include <hwy/highway.h>

#include "engine/fast/fast_scratch.h"

#if defined(VELMARA_SOURCE_ROWS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMARA_SOURCE_ROWS_INL_H_
#undef VELMARA_SOURCE_ROWS_INL_H_
#else
#define VELMARA_SOURCE_ROWS_INL_H_
#endif

HWY_BEFORE_NAMESPACE();
namespace velmara {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Writes a vector of samples to both rows, a half, a half of that and so on until it is as long as
/// a vector in single precision.
template <class D8>
HWY_INLINE void storeSamples([[maybe_unused]] D8 d8, hn::Vec<D8> bytes, std::int16_t* samples,
                             float* centred) {
  if constexpr (hn::MaxLanes(D8()) > hn::MaxLanes(hn::ScalableTag<float>())) {
    const hn::Half<D8> half;
    const std::size_t lanes = hn::Lanes(half);
    storeSamples(half, hn::LowerHalf(bytes), samples, centred);
    storeSamples(half, hn::UpperHalf(half, bytes), samples + lanes, centred + lanes);
  } else {
    const hn::Rebind<float, D8> df;
    const hn::Rebind<std::int16_t, D8> d16;
    const hn::Rebind<std::int32_t, D8> d32;
    hn::StoreU(hn::PromoteTo(d16, bytes), d16, samples);
    const auto values = hn::ConvertTo(df, hn::PromoteTo(d32, bytes));
    hn::StoreU(hn::Sub(values, hn::Set(df, 128.0F)), df, centred);
  }
}

inline void storeSample(std::uint8_t sample, std::int16_t* samples, float* centred) {
  *samples = sample;
  *centred = static_cast<float>(sample) - 128.0F;
}

/// Loads row `row` of the padded source for a tile that begins at column xBegin. Three channels:
/// columns beyond the row are left as they were, no pixel of the tile looks at them. One channel:
/// the row is a window on the picture as one long row of bytes, 0 outside it.
template <int kChannels>
void loadSourceRow(const FastPlan& plan, FastScratch& scratch, std::int64_t row, int xBegin) {
  const hn::ScalableTag<std::uint8_t> d8;
  const auto lanes = static_cast<std::int64_t>(hn::Lanes(d8));
  const std::int64_t stride = plan.geometry.sourceStride();
  const auto columns = static_cast<std::int64_t>(plan.sourceColumns - kRowSlack);
  const std::uint8_t* bytes = plan.source.data();
  std::int16_t* samples[kChannels];
  float* centred[kChannels];
  for (int c = 0; c < kChannels; ++c) {
    samples[c] = scratch.samples(row, c);
    centred[c] = scratch.centred(row, c);
  }

  if constexpr (kChannels == 3) {
    const std::int64_t count = std::min<std::int64_t>(columns, plan.geometry.widthIm - xBegin);
    const std::uint8_t* in = bytes + row * stride + std::int64_t{xBegin} * 3;
    // The next row is too far away for the processor to fetch it by itself in time.
    if (row + 1 < plan.geometry.heightIm) {
      for (std::int64_t at = 0; at < 3 * count; at += 64) hwy::Prefetch(in + stride + at);
    }
    std::int64_t i = 0;
    for (; i < count && lanes <= count; i += lanes) {
      i = std::min(i, count - lanes);  // The last vector overlaps the one before.
      hn::Vec<decltype(d8)> red;
      hn::Vec<decltype(d8)> green;
      hn::Vec<decltype(d8)> blue;
      hn::LoadInterleaved3(d8, in + 3 * i, red, green, blue);
      storeSamples(d8, red, samples[0] + i, centred[0] + i);
      storeSamples(d8, green, samples[1] + i, centred[1] + i);
      storeSamples(d8, blue, samples[2] + i, centred[2] + i);
    }
    for (; i < count; ++i) {
      for (int c = 0; c < 3; ++c) storeSample(in[3 * i + c], samples[c] + i, centred[c] + i);
    }
  } else {
    const std::int64_t first = row * stride + xBegin - plan.margin;
    const auto size = static_cast<std::int64_t>(plan.source.size());
    std::int64_t i = 0;
    while (i < columns) {
      const std::int64_t offset = first + i;
      if (offset >= 0 && offset + lanes <= size && i + lanes <= columns) {
        storeSamples(d8, hn::LoadU(d8, bytes + offset), samples[0] + i, centred[0] + i);
        i += lanes;
      } else {
        const bool inside = offset >= 0 && offset < size;
        storeSample(inside ? bytes[offset] : std::uint8_t{0}, samples[0] + i, centred[0] + i);
        ++i;
      }
    }
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#endif  // VELMARA_SOURCE_ROWS_INL_H_
