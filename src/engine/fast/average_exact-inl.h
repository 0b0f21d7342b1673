// Weighted averages in the double precision and the order that define the result, for the pixels
// that single precision leaves undecided. Compiled once per instruction set.

#include <hwy/highway.h>

#include "engine/fast/average_single-inl.h"
#include "engine/fast/fast_scratch.h"

#if defined(VELMARA_AVERAGE_EXACT_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMARA_AVERAGE_EXACT_INL_H_
#undef VELMARA_AVERAGE_EXACT_INL_H_
#else
#define VELMARA_AVERAGE_EXACT_INL_H_
#endif

HWY_BEFORE_NAMESPACE();
namespace velmara {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Pixels that averageExactly works on side by side.
using ExactLanes = hn::CappedTag<double, FastScratch::kMostLanes>;

template <class DD>
HWY_INLINE hn::Vec<DD> tableEntries(DD dd, const double* table, const std::uint16_t* indices) {
  const hn::Rebind<std::uint16_t, DD> d16;
  const hn::Rebind<std::uint32_t, DD> d32;
  const hn::Rebind<std::uint64_t, DD> d64;
  const hn::RebindToSigned<decltype(d64)> di64;
  const auto wide = hn::PromoteTo(d64, hn::PromoteTo(d32, hn::LoadU(d16, indices)));
  return hn::GatherIndex(dd, table, hn::BitCast(di64, wide));
}
template <class DD>
HWY_INLINE hn::Vec<DD> tableEntries(DD dd, const double* table, const std::uint32_t* indices) {
  const hn::Rebind<std::uint32_t, DD> d32;
  const hn::Rebind<std::uint64_t, DD> d64;
  const hn::RebindToSigned<decltype(d64)> di64;
  return hn::GatherIndex(dd, table, hn::BitCast(di64, hn::PromoteTo(d64, hn::LoadU(d32, indices))));
}

/// Writes the output samples of the pixels from pixel i on, as many as ExactLanes has. Weights are
/// added from the last candidate to the first, products from the first to the last, each operation
/// rounded by itself.
template <class Index, int kChannels>
void averageExactly(const FastPlan& plan, const AverageRow<kChannels>& row,
                    const Index* const* indices, double* weights, std::ptrdiff_t i) {
  const ExactLanes dd;
  const hn::Rebind<float, ExactLanes> df;
  const hn::Rebind<std::int32_t, ExactLanes> di;
  const auto lanes = hn::Lanes(dd);
  const std::size_t count = plan.slots.size();
  auto total = hn::Zero(dd);
  for (std::size_t z = count; z-- > 0;) {
    const auto weight = tableEntries(dd, plan.table.data(), indices[z] + i);
    hn::StoreU(weight, dd, weights + z * lanes);
    total = hn::Add(total, weight);
  }
  const auto reciprocal = hn::Div(hn::Set(dd, 1.0), total);
  const auto centre = hn::Set(dd, 128.0);
  hn::Vec<ExactLanes> sums[kChannels];
  for (int c = 0; c < kChannels; ++c) sums[c] = hn::Zero(dd);
  for (int l = 0; l < plan.s; ++l) {
    for (int k = 0; k < plan.s; ++k, weights += lanes) {
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
    for (std::size_t lane = 0; lane < lanes; ++lane) {
      row.output[kChannels * (i + static_cast<std::ptrdiff_t>(lane)) + c] =
          static_cast<std::uint8_t>(truncated[lane]);
    }
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#endif  // VELMARA_AVERAGE_EXACT_INL_H_
