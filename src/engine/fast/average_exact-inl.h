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

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#endif  // VELMARA_AVERAGE_EXACT_INL_H_
