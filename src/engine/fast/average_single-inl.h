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
  const float* samples[32][kChannels];
  std::uint8_t* output[kChannels];
};

/// Sums of weights and of weighted samples for a vector of pixels.
template <class V, int kChannels>
struct Sums {
  V weight;
  V sample[kChannels];

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
                              Sums<hn::Vec<DF>, kChannels>* totals) {
  using RowSums = Sums<hn::Vec<DF>, kChannels>;
  const int side = kS > 0 ? kS : s;
  const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(df));
  RowSums zero;
  zero.weight = hn::Zero(df);
  for (int c = 0; c < kChannels; ++c) zero.sample[c] = hn::Zero(df);
  for (int v = 0; v < kVectors; ++v) totals[v] = zero;

  const float* const* weights = row.weights;
  for (int l = 0; l < side; ++l) {
    const float* samples[kChannels];
    for (int c = 0; c < kChannels; ++c) samples[c] = row.samples[l][c] + i;
    RowSums sums[kVectors];
    for (int v = 0; v < kVectors; ++v) sums[v] = zero;
    for (int k = 0; k < side; ++k) {
      const float* weight = *weights++ + i;
      for (int v = 0; v < kVectors; ++v) {
        const auto w = hn::LoadU(df, weight + v * lanes);
        sums[v].weight = hn::Add(sums[v].weight, w);
        for (int c = 0; c < kChannels; ++c) {
          sums[v].sample[c] =
              hn::MulAdd(w, hn::LoadU(df, samples[c] + k + v * lanes), sums[v].sample[c]);
        }
      }
    }
    for (int v = 0; v < kVectors; ++v) totals[v].add(sums[v]);
  }
}

/// Writes the truncated means of a vector of pixels from pixel i on and says which of them are
/// undecided: nearer to an integer than `margin` to the middle allows. A pixel whose only weight is
/// its own 1 is exact.
template <int kChannels, class DF>
HWY_INLINE hn::Mask<DF> writeMeans(DF df, const Sums<hn::Vec<DF>, kChannels>& sums, float margin,
                                   const AverageRow<kChannels>& row, std::ptrdiff_t i) {
  const hn::RebindToSigned<DF> di;
  const hn::Rebind<std::uint8_t, DF> d8;
  const auto one = hn::Set(df, 1.0F);
  const auto half = hn::Set(df, 0.5F);
  const auto reciprocal = hn::Div(one, sums.weight);
  auto farthest = hn::Zero(df);
  for (int c = 0; c < kChannels; ++c) {
    const auto mean = hn::Add(hn::Mul(sums.sample[c], reciprocal), hn::Set(df, 128.0F));
    const auto floor = hn::Floor(mean);
    farthest = hn::Max(farthest, hn::Abs(hn::Sub(hn::Sub(mean, floor), half)));
    hn::StoreU(hn::DemoteTo(d8, hn::ConvertTo(di, floor)), d8, row.output[c] + i);
  }
  const auto near = hn::Gt(farthest, hn::Set(df, margin));
  return hn::And(near, hn::Ne(sums.weight, one));
}

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#endif  // VELMARA_AVERAGE_SINGLE_INL_H_
