// Weighted averages in single precision, and the decision which of them truncate like the
// double-precision sums that define the result. Compiled once per instruction set.

#include <hwy/highway.h>

#include "engine/fast/fast_scratch.h"

#if defined(VELMARA_AVERAGE_SINGLE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMARA_AVERAGE_SINGLE_INL_H_
#undef VELMARA_AVERAGE_SINGLE_INL_H_
#else
#define VELMARA_AVERAGE_SINGLE_INL_H_
#endif

HWY_BEFORE_NAMESPACE();
namespace velmara {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// What the averages of one output row are made from, by pixel of the tile: the weights of the D
/// candidates, and for each row of the search window the samples (less 128) of its first candidate.
template <int kChannels>
struct AverageRow {
  const float* const* weights;
  const float* samples[kLargestSearchWindow][kChannels];
  std::uint8_t* output;  ///< Interleaved, with slack.
};

/// Sums of weights and of weighted samples for a vector of pixels.
template <class DF, int kChannels>
struct Sums {
  using V = hn::Vec<DF>;
  V weight;
  V sample[kChannels];

  // Written out: an implicit one is compiled without the instruction set and does not fit NEON's.
  HWY_INLINE Sums() {}

  /// The first candidate, whose samples are at `samples`.
  HWY_INLINE void start(V w, const float* const* samples, std::ptrdiff_t offset) {
    weight = w;
    for (int c = 0; c < kChannels; ++c) {
      sample[c] = hn::Mul(w, hn::LoadU(DF(), samples[c] + offset));
    }
  }
  HWY_INLINE void add(V w, const float* const* samples, std::ptrdiff_t offset) {
    weight = hn::Add(weight, w);
    for (int c = 0; c < kChannels; ++c) {
      sample[c] = hn::MulAdd(w, hn::LoadU(DF(), samples[c] + offset), sample[c]);
    }
  }
  HWY_INLINE void add(const Sums& other) {
    weight = hn::Add(weight, other.weight);
    for (int c = 0; c < kChannels; ++c) sample[c] = hn::Add(sample[c], other.sample[c]);
  }
};

/// Adds up the candidates of kVectors vectors of pixels from pixel i on, each row of the search
/// window by itself first, which keeps the roundings few. kS is s, or 0 for one known at run time
/// only.
template <int kChannels, int kS, int kVectors, class DF>
HWY_INLINE void sumCandidates(DF df, const AverageRow<kChannels>& row, int s, std::ptrdiff_t i,
                              Sums<DF, kChannels>* totals) {
  const int side = kS > 0 ? kS : s;
  const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(df));
  const float* const* weights = row.weights;
  // Left to itself the compiler unrolls small windows whole and runs out of registers.
#pragma GCC unroll 1
  for (int l = 0; l < side; ++l) {
    const float* samples[kChannels];
    for (int c = 0; c < kChannels; ++c) samples[c] = row.samples[l][c] + i;
    Sums<DF, kChannels> sums[kVectors];
    const float* first = *weights++ + i;
    for (int v = 0; v < kVectors; ++v) {
      sums[v].start(hn::LoadU(df, first + v * lanes), samples, v * lanes);
    }
#pragma GCC unroll 16
    for (int k = 1; k < side; ++k) {
      const float* weight = *weights++ + i;
      for (int v = 0; v < kVectors; ++v) {
        sums[v].add(hn::LoadU(df, weight + v * lanes), samples, k + v * lanes);
      }
    }
    for (int v = 0; v < kVectors; ++v) {
      if (l == 0) {
        totals[v] = sums[v];
      } else {
        totals[v].add(sums[v]);
      }
    }
  }
}

/// Stores the low kBytes bytes of each lane one after another, and writes up to 16 bytes beyond.
template <int kBytes, class D32>
HWY_INLINE void storeLowBytes([[maybe_unused]] D32 d32, hn::Vec<D32> values, std::uint8_t* out) {
  if constexpr (kBytes == 1) {
    const hn::Rebind<std::uint8_t, D32> d8;
    hn::StoreU(hn::TruncateTo(d8, values), d8, out);
  } else if constexpr (hn::MaxLanes(D32()) > 4) {
    const hn::Half<D32> half;
    storeLowBytes<kBytes>(half, hn::LowerHalf(values), out);
    storeLowBytes<kBytes>(half, hn::UpperHalf(half, values), out + kBytes * hn::Lanes(half));
  } else {
    HWY_ALIGN static constexpr std::uint8_t kOrder[16] = {0,  1,  2,  4,  5,    6,    8,    9,
                                                          10, 12, 13, 14, 0x80, 0x80, 0x80, 0x80};
    const hn::Repartition<std::uint8_t, D32> d8;
    const auto order = hn::Load(d8, kOrder);
    hn::StoreU(hn::TableLookupBytesOr0(hn::BitCast(d8, values), order), d8, out);
  }
}

/// Writes the truncated means of a vector of pixels from pixel i on and says which of them are
/// undecided.
///
/// A mean m in single precision is known to within `bound`. m - 1/2 + bound, rounded to the nearest
/// integer n, leaves a rest in [-1/2, 1/2]. If the rest is above -1/2 + 2 bound (`margin`), then n
/// + bound < m and, the rest being at most 1/2, m <= n + 1 - bound: the mean truncates to n. A
/// pixel whose only weight is its own 1 is exact: its mean is an integer, so n, whatever the rest.
/// So is one whose weights add up to `exactSum`, its mean being farther than the bound from the
/// next integer.
template <int kChannels, class DF>
HWY_INLINE hn::Mask<DF> writeMeans(DF df, const Sums<DF, kChannels>& sums, float bound,
                                   float margin, float exactSum, const AverageRow<kChannels>& row,
                                   std::ptrdiff_t i) {
  const hn::RebindToUnsigned<DF> du;
  const auto one = hn::Set(df, 1.0F);
  const auto offset = hn::Set(df, 127.5F + bound);
  const auto rounder = hn::Set(df, 12582912.0F);  // 1.5 * 2^23: the sum's low bits are n.
  const auto reciprocal = hn::Div(one, sums.weight);
  auto least = one;
  auto pixels = hn::Zero(du);
  for (int c = kChannels - 1; c >= 0; --c) {
    const auto mean = hn::MulAdd(sums.sample[c], reciprocal, offset);
    const auto rounded = hn::Add(mean, rounder);
    least = hn::Min(least, hn::Sub(mean, hn::Sub(rounded, rounder)));
    // The rounder's own bits add up to a number that is taken off at the end.
    pixels = hn::Add(hn::ShiftLeft<8>(pixels), hn::BitCast(du, rounded));
  }
  if constexpr (kChannels == 3) pixels = hn::Sub(pixels, hn::Set(du, 0x8B400000U));
  storeLowBytes<kChannels>(du, pixels, row.output + kChannels * i);
  const auto inexact =
      hn::And(hn::Ne(sums.weight, one), hn::Ne(sums.weight, hn::Set(df, exactSum)));
  return hn::And(hn::Le(least, hn::Set(df, margin)), inexact);
}

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#endif  // VELMARA_AVERAGE_SINGLE_INL_H_
