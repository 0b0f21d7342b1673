// The averages of a row of a tile: in single precision where that decides, else in the double
// precision and the order that define the result. Compiled once per instruction set.

#include <hwy/highway.h>

#include <cstring>

#include "engine/fast/average_single-inl.h"

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
