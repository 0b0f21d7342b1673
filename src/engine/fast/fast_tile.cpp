#include <algorithm>
#include <cmath>
#include <cstring>

#include "engine/fast/fast_scratch.h"
#include "engine/fast/instruction_sets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/fast/fast_tile.cpp"
#include <hwy/foreach_target.h>  // Compiles what follows once per instruction set.
#include <hwy/highway.h>

#if HWY_TARGET != HWY_SCALAR
#include "engine/fast/averages-inl.h"
#include "engine/fast/distances-inl.h"
#include "engine/fast/source_rows-inl.h"
#endif

HWY_BEFORE_NAMESPACE();
namespace velmara {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

// Without vectors there is nothing to gain: no plan passes this check, so no tile gets here.
double largestWeightError(const WeightFunction& /*weight*/, const double* /*table*/,
                          std::int64_t /*cutOff*/) {
  return HUGE_VAL;
}
std::int64_t filterOneTile(const FastPlan& /*plan*/, FastScratch& /*scratch*/,
                           const Tile& /*tile*/) {
  return 0;
}

#else

/// One tile from its first row to its last: source rows are loaded, distances and weights of all
/// shifts computed and pixels averaged row by row, all in rows that are used again and again.
/// Weights is NarrowWeights or WideWeights.
template <class Weights, int kChannels, int kT>
class TileRun {
 public:
  using Index = typename Weights::Distance;

  TileRun(const FastPlan& plan, FastScratch& scratch, const Tile& tile)
      : plan_(plan),
        scratch_(scratch),
        tile_(tile),
        width_(tile.xEnd - tile.xBegin),
        nextRow_(tile.yBegin) {}

  std::int64_t run() {
    for (int y = tile_.yBegin - plan_.lead; y < tile_.yEnd && !plan_.isCancelled(); ++y) {
      loadRows(std::int64_t{y} + 2 * std::int64_t{plan_.sr} + plan_.t);
      pointToRows(y);
      compareShifts(y);
      if (y >= tile_.yBegin) averageRow(y);
    }
    return undecided_;
  }

 private:
  static constexpr int kMostRows = kLargestSearchWindow + kLargestTemplate + 1;

  void loadRows(std::int64_t last) {
    for (; nextRow_ <= std::min<std::int64_t>(last, plan_.geometry.heightIm - 1); ++nextRow_) {
      loadSourceRow<kChannels>(plan_, scratch_, nextRow_, tile_.xBegin);
    }
  }

  // Rows y to y + 2 sr + t - 1 of the padded source, and the slots of the patch rows' squares.
  // Above the tile some rows are not there; nothing asks for those.
  void pointToRows(int y) {
    const int count = 2 * plan_.sr + std::max(plan_.t, 1);
    for (int j = 0; j < count; ++j) {
      const std::int64_t row = std::max<std::int64_t>(std::int64_t{y} + j, 0);
      for (int c = 0; c < kChannels; ++c) {
        samples_[j][c] = scratch_.samples(row, c) + plan_.margin;
        centred_[j][c] = scratch_.centred(row, c) + plan_.margin;
      }
    }
    if (!plan_.keepsSquares) return;
    for (int n = 0; n < plan_.t; ++n) {
      const int row = y + plan_.lead + n;
      squares_[n] = scratch_.template squares<Index>(row % plan_.t);
    }
  }

  // A shift that serves its opposite too begins as many rows above the tile as it reaches down.
  void compareShifts(int y) {
    const Weights weights(plan_);
    for (std::size_t i = 0; i < plan_.shifts.size(); ++i) {
      const SearchShift& shift = plan_.shifts[i];
      const int first = tile_.yBegin - shift.lead();
      if (y < first) continue;
      ShiftRow<Index, kChannels> row;
      row.reference = samples_ + plan_.sr;
      row.candidate = samples_ + plan_.sr + shift.dy;
      row.column = plan_.sr + shift.begin();
      row.dx = shift.dx;
      row.slip = plan_.patchSlip;
      row.length = shift.length(width_);
      row.squares = squares_;
      row.squaresOffset = scratch_.template squaresOffset<Index>(i);
      row.columns = scratch_.template columnSums<Index>();
      if (y == first && plan_.keepsSquares) beginShift(row, plan_.t);
      sumShiftColumns<Index, kChannels, kT>(row, plan_.t, plan_.keepsSquares);
      const std::size_t slot = slotOf(shift, y);
      weights.store(row.columns, row.length, scratch_.template indices<Index>(slot),
                    scratch_.weights(slot));
    }
  }

  std::size_t slotOf(const SearchShift& shift, int y) const {
    const auto sinceFirst = static_cast<unsigned>(y - (tile_.yBegin - shift.lead()));
    return shift.firstRow + sinceFirst % static_cast<unsigned>(shift.rows);
  }

  // The weight of candidate -shift is that of the shift itself, seen from the candidate.
  void pointToCandidates(int y) {
    const float** weights = scratch_.weightPointers();
    const Index** indices = scratch_.template indexPointers<Index>();
    for (const CandidateSlot& slot : plan_.slots) {
      if (slot.shift == CandidateSlot::kSelf) {
        *weights++ = scratch_.ones();
        *indices++ = scratch_.template zeros<Index>();
        continue;
      }
      const SearchShift& shift = plan_.shifts[static_cast<std::size_t>(slot.shift)];
      const std::size_t row = slotOf(shift, slot.reversed ? y - shift.dy : y);
      const std::ptrdiff_t column = -shift.begin() - (slot.reversed ? shift.dx : 0);
      *weights++ = scratch_.weights(row) + column;
      *indices++ = scratch_.template indices<Index>(row) + column;
    }
  }

  void averageRow(int y) {
    pointToCandidates(y);
    AverageRow<kChannels> row;
    row.weights = scratch_.weightPointers();
    row.output = scratch_.output();
    for (int c = 0; c < kChannels; ++c) {
      for (int l = 0; l < plan_.s; ++l) {
        row.samples[l][c] =
            centred_[plan_.tr + l][c] + plan_.tr - std::ptrdiff_t{plan_.averageSlip} * l;
      }
    }
    undecided_ += averagePixels<Index, kChannels>(plan_, scratch_, row, width_);
    const std::int64_t stride =
        std::int64_t{plan_.geometry.channelsDest} * plan_.geometry.widthDest;
    std::memcpy(plan_.dest.data() + y * stride + std::int64_t{tile_.xBegin} * kChannels, row.output,
                static_cast<std::size_t>(width_) * kChannels);
  }

  const FastPlan& plan_;
  FastScratch& scratch_;
  const Tile tile_;
  const int width_;
  std::int64_t nextRow_;
  std::int64_t undecided_ = 0;
  SampleRows<kChannels> samples_[kMostRows] = {};
  const float* centred_[kMostRows][kChannels] = {};
  Index* squares_[8] = {};
};

template <template <int> class Weights, int kChannels>
std::int64_t filterFor(const FastPlan& plan, FastScratch& scratch, const Tile& tile) {
  switch (plan.t) {
    case 1:
      return TileRun<Weights<1>, kChannels, 1>(plan, scratch, tile).run();
    case 2:
      return TileRun<Weights<2>, kChannels, 2>(plan, scratch, tile).run();
    case 3:
      return TileRun<Weights<3>, kChannels, 3>(plan, scratch, tile).run();
    case 4:
      return TileRun<Weights<4>, kChannels, 4>(plan, scratch, tile).run();
    case 5:
      return TileRun<Weights<5>, kChannels, 5>(plan, scratch, tile).run();
    default:
      return TileRun<Weights<0>, kChannels, 0>(plan, scratch, tile).run();
  }
}

std::int64_t filterOneTile(const FastPlan& plan, FastScratch& scratch, const Tile& tile) {
  if (plan.channels == 3) {
    return plan.narrow ? filterFor<NarrowWeights, 3>(plan, scratch, tile)
                       : filterFor<WideWeights, 3>(plan, scratch, tile);
  }
  return plan.narrow ? filterFor<NarrowWeights, 1>(plan, scratch, tile)
                     : filterFor<WideWeights, 1>(plan, scratch, tile);
}

#endif  // HWY_TARGET == HWY_SCALAR

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace velmara {
namespace {

HWY_EXPORT(filterOneTile);
HWY_EXPORT(largestWeightError);

}  // namespace

std::int64_t filterTile(const FastPlan& plan, FastScratch& scratch, const Tile& tile) {
  return HWY_DYNAMIC_DISPATCH(filterOneTile)(plan, scratch, tile);
}

double weightErrorOf(const WeightFunction& weight, const double* table, std::int64_t cutOff) {
  return HWY_DYNAMIC_DISPATCH(largestWeightError)(weight, table, cutOff);
}

}  // namespace velmara

#endif  // HWY_ONCE
