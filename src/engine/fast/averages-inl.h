// The weighted averages of a row of a tile: in single precision, with the decision which of them
// truncate like the double-precision sums that define the result; the others in that precision and
// order. Compiled once per instruction set.

#include <hwy/highway.h>

#include <algorithm>
#include <cstring>

#include "engine/fast/fast_scratch.h"

#if defined(VELMARA_AVERAGES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMARA_AVERAGES_INL_H_
#undef VELMARA_AVERAGES_INL_H_
#else
#define VELMARA_AVERAGES_INL_H_
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

/// Pixels that averageExactly works on side by side.
using ExactLanes = hn::CappedTag<double, FastScratch::kMostLanes>;

/// Writes the output samples of the pixels from pixel i on, as many as ExactLanes has. Weights are
/// added from the last candidate to the first, products from the first to the last, each operation
/// rounded by itself.
template <class Index, int kChannels>
void averageExactly(const FastPlan& plan, const AverageRow<kChannels>& row,
                    const Index* const* indices, double* weights, std::ptrdiff_t i) {
  const ExactLanes dd;
  const hn::Rebind<float, ExactLanes> df;
  const hn::Rebind<std::int32_t, ExactLanes> di;
  constexpr std::size_t kLanes = hn::MaxLanes(ExactLanes());
  const std::size_t count = plan.slots.size();
  // Each look-up by itself: gather instructions are slower.
  const double* table = plan.table.data();
  HWY_ALIGN double totals[kLanes] = {};
  for (std::size_t z = count; z-- > 0;) {
    const Index* index = indices[z] + i;
    double* weight = weights + z * kLanes;
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      weight[lane] = table[index[lane]];
      totals[lane] += weight[lane];
    }
  }
  const auto reciprocal = hn::Div(hn::Set(dd, 1.0), hn::Load(dd, totals));
  const auto centre = hn::Set(dd, 128.0);
  hn::Vec<ExactLanes> sums[kChannels];
  for (int c = 0; c < kChannels; ++c) sums[c] = hn::Zero(dd);
  for (int l = 0; l < plan.s; ++l) {
    for (int k = 0; k < plan.s; ++k, weights += kLanes) {
      const auto normalised = hn::Mul(hn::LoadU(dd, weights), reciprocal);
      for (int c = 0; c < kChannels; ++c) {
        const auto centred = hn::PromoteTo(dd, hn::LoadU(df, row.samples[l][c] + i + k));
        sums[c] = hn::Add(sums[c], hn::Mul(hn::Add(centred, centre), normalised));
      }
    }
  }
  for (int c = 0; c < kChannels; ++c) {
    HWY_ALIGN std::int32_t truncated[FastScratch::kMostLanes];
    hn::StoreU(hn::DemoteTo(di, sums[c]), di, truncated);
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      row.output[kChannels * (i + static_cast<std::ptrdiff_t>(lane)) + c] =
          static_cast<std::uint8_t>(truncated[lane]);
    }
  }
}

/// Whether every candidate of a vector of pixels has distance index 0 and the very samples of the
/// pixel itself. Their means then follow from the sample alone (FastPlan::flatMeans).
template <class Index, int kChannels>
bool isFlat(const FastPlan& plan, const AverageRow<kChannels>& row, const Index* const* indices,
            std::ptrdiff_t i) {
  const hn::ScalableTag<float> df;
  const hn::RebindToUnsigned<decltype(df)> du;
  const hn::Rebind<Index, decltype(df)> dIndex;
  hn::Vec<decltype(du)> own[kChannels];
  for (int c = 0; c < kChannels; ++c) {
    own[c] = hn::BitCast(du, hn::LoadU(df, row.samples[plan.sr][c] + i + plan.sr));
  }
  for (int l = 0; l < plan.s; ++l) {
    auto distance = hn::Zero(dIndex);
    auto difference = hn::Zero(du);
    for (int k = 0; k < plan.s; ++k) {
      distance = hn::Or(distance, hn::LoadU(dIndex, *indices++ + i));
      for (int c = 0; c < kChannels; ++c) {
        const auto sample = hn::BitCast(du, hn::LoadU(df, row.samples[l][c] + i + k));
        difference = hn::Or(difference, hn::Xor(sample, own[c]));
      }
    }
    if (!hn::AllTrue(dIndex, hn::Eq(distance, hn::Zero(dIndex))) ||
        !hn::AllTrue(du, hn::Eq(difference, hn::Zero(du)))) {
      return false;
    }
  }
  return true;
}

/// Writes the means of a vector of flat pixels, but no pixel from `width` on.
template <int kChannels>
void writeFlat(const FastPlan& plan, const AverageRow<kChannels>& row, std::ptrdiff_t i,
               std::ptrdiff_t width) {
  const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(hn::ScalableTag<float>()));
  for (const std::ptrdiff_t end = std::min(i + lanes, width); i < end; ++i) {
    for (int c = 0; c < kChannels; ++c) {
      const float centred = row.samples[plan.sr][c][i + plan.sr];
      row.output[kChannels * i + c] = plan.flatMeans[static_cast<std::size_t>(centred + 128.0F)];
    }
  }
}

/// Which pixels of a vector a mask names, one bit each.
template <class DF>
HWY_INLINE unsigned maskBits(DF df, hn::Mask<DF> mask) {
  std::uint8_t bytes[8] = {};
  hn::StoreMaskBits(df, mask, bytes);
  std::uint32_t bits = 0;
  std::memcpy(&bits, bytes, sizeof(bits));
  return bits;
}

template <class Index, int kChannels, int kS>
std::int64_t averagePixelsOf(const FastPlan& plan, FastScratch& scratch,
                             const AverageRow<kChannels>& row, std::ptrdiff_t width) {
  constexpr int kVectors = 2;
  const hn::ScalableTag<float> df;
  const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(df));
  const auto groupLanes = static_cast<std::ptrdiff_t>(hn::Lanes(ExactLanes()));
  const unsigned all = static_cast<unsigned>((std::uint64_t{1} << lanes) - 1);
  const unsigned group = (1U << groupLanes) - 1;
  const float bound = plan.bound;
  const float margin = plan.decides ? -0.5F + 2.0F * bound : 1.0F;
  const Index* const* indices = scratch.indexPointers<Index>();

  // Undecided pixels are noted and averaged after the row: the processor then works on several
  // groups of them at a time, and guesses the loops above right more often.
  std::uint32_t* undecided = scratch.undecided();
  for (std::ptrdiff_t i = 0; i < width; i += kVectors * lanes) {
    Sums<hn::ScalableTag<float>, kChannels> sums[kVectors];
    sumCandidates<kChannels, kS, kVectors>(df, row, plan.s, i, sums);
    for (int v = 0; v < kVectors; ++v) {
      const std::ptrdiff_t first = i + v * lanes;
      unsigned bits = maskBits(
          df, writeMeans<kChannels>(df, sums[v], bound, margin, plan.exactSum, row, first));
      if (HWY_UNLIKELY(bits == all) && first < width &&
          isFlat<Index, kChannels>(plan, row, indices, first)) {
        writeFlat<kChannels>(plan, row, first, width);
        bits = 0;
      }
      undecided[first / lanes] = bits;
    }
  }
  std::int32_t* groups = scratch.groups();
  std::int64_t count = 0;
  for (std::ptrdiff_t first = 0; first < width; first += lanes) {
    unsigned bits = undecided[first / lanes];
    if (bits == 0) continue;
    for (std::ptrdiff_t lane = 0; lane < lanes; lane += groupLanes, bits >>= groupLanes) {
      groups[count] = static_cast<std::int32_t>(first + lane);
      count += (bits & group) != 0 && first + lane < width ? 1 : 0;
    }
  }
  for (std::int64_t i = 0; i < count; ++i) {
    averageExactly<Index, kChannels>(plan, row, indices, scratch.exactWeights(), groups[i]);
  }
  return count * groupLanes;
}

/// Writes the output samples of a row of `width` pixels. Returns how many were averaged exactly.
template <class Index, int kChannels>
std::int64_t averagePixels(const FastPlan& plan, FastScratch& scratch,
                           const AverageRow<kChannels>& row, std::ptrdiff_t width) {
  switch (plan.s) {
    case 3:
      return averagePixelsOf<Index, kChannels, 3>(plan, scratch, row, width);
    case 4:
      return averagePixelsOf<Index, kChannels, 4>(plan, scratch, row, width);
    case 7:
      return averagePixelsOf<Index, kChannels, 7>(plan, scratch, row, width);
    case 8:
      return averagePixelsOf<Index, kChannels, 8>(plan, scratch, row, width);
    case 10:
      return averagePixelsOf<Index, kChannels, 10>(plan, scratch, row, width);
    case 12:
      return averagePixelsOf<Index, kChannels, 12>(plan, scratch, row, width);
    case 14:
      return averagePixelsOf<Index, kChannels, 14>(plan, scratch, row, width);
    default:
      return averagePixelsOf<Index, kChannels, 0>(plan, scratch, row, width);
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#endif  // VELMARA_AVERAGES_INL_H_
