#include "engine/fast/fast_tile.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "engine/fast/targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/fast/fast_tile.cpp"
#include <hwy/foreach_target.h>  // Compiles what follows once per instruction set.
#include <hwy/highway.h>

#if HWY_TARGET != HWY_SCALAR
#include "engine/fast/average_exact-inl.h"
#include "engine/fast/average_single-inl.h"
#include "engine/fast/distances-inl.h"
#include "engine/fast/source_rows-inl.h"
#include "engine/fast/weights-inl.h"
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

namespace hn = hwy::HWY_NAMESPACE;

/// One tile from its first row to its last: source rows are loaded, distances and weights of all
/// shifts computed and pixels averaged row by row, all in rows that are used again and again.
template <class Index, int kChannels>
class TileRun {
 public:
  TileRun(const FastPlan& plan, FastScratch& scratch, const Tile& tile)
      : plan_(plan),
        scratch_(scratch),
        tile_(tile),
        width_(tile.xEnd - tile.xBegin),
        nextRow_(tile.yBegin) {}

  std::int64_t run() {
    for (int y = tile_.yBegin - plan_.lead; y < tile_.yEnd; ++y) {
      loadRows(std::int64_t{y} + 2 * plan_.sr + plan_.t);
      compareShifts(y);
      if (y >= tile_.yBegin) averageRow(y);
    }
    return undecided_;
  }

 private:
  void loadRows(std::int64_t last) {
    for (; nextRow_ <= std::min<std::int64_t>(last, plan_.geometry.heightIm - 1); ++nextRow_) {
      loadSourceRow<kChannels>(plan_, scratch_, nextRow_, tile_.xBegin);
    }
  }

  // A shift that serves its opposite too begins as many rows above the tile as it reaches down.
  void compareShifts(int y) {
    for (std::size_t i = 0; i < plan_.shifts.size(); ++i) {
      const SearchShift& shift = plan_.shifts[i];
      const int first = tile_.yBegin - shift.lead();
      if (y < first) continue;
      ShiftDistances<Index, kChannels> distances(plan_, scratch_, i, width_);
      if (y == first) distances.begin(y);
      const std::size_t row = rowOf(shift, y);
      distances.compute(y, scratch_.indices<Index>(row) + plan_.sr,
                        scratch_.weights(row) + plan_.sr);
    }
  }

  std::size_t rowOf(const SearchShift& shift, int y) const {
    const int sinceFirst = y - (tile_.yBegin - shift.lead());
    return shift.firstRow + static_cast<std::size_t>(sinceFirst % shift.rows);
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
      const std::size_t row = rowOf(shift, slot.reversed ? y - shift.dy : y);
      const std::ptrdiff_t column = plan_.sr - (slot.reversed ? shift.dx : 0);
      *weights++ = scratch_.weights(row) + column;
      *indices++ = scratch_.template indices<Index>(row) + column;
    }
  }

  void averageRow(int y) {
    pointToCandidates(y);
    AverageRow<kChannels> row;
    row.weights = scratch_.weightPointers();
    for (int c = 0; c < kChannels; ++c) {
      row.output[c] = scratch_.output(c);
      for (int l = 0; l < plan_.s; ++l) {
        row.samples[l][c] = scratch_.centred(std::int64_t{y} + plan_.tr + l, c) + plan_.margin +
                            plan_.tr - std::ptrdiff_t{plan_.averageSlip} * l;
      }
    }
    switch (plan_.s) {
      case 3:
        averagePixels<3>(row);
        break;
      case 4:
        averagePixels<4>(row);
        break;
      case 7:
        averagePixels<7>(row);
        break;
      case 8:
        averagePixels<8>(row);
        break;
      case 10:
        averagePixels<10>(row);
        break;
      case 12:
        averagePixels<12>(row);
        break;
      case 14:
        averagePixels<14>(row);
        break;
      default:
        averagePixels<0>(row);
        break;
    }
    writeRow(y);
  }

  template <int kS>
  void averagePixels(const AverageRow<kChannels>& row) {
    constexpr int kVectors = 2;
    const hn::ScalableTag<float> df;
    const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(df));
    const float margin = 0.5F - plan_.bound;
    for (std::ptrdiff_t i = 0; i < width_; i += kVectors * lanes) {
      Sums<hn::Vec<decltype(df)>, kChannels> sums[kVectors];
      sumCandidates<kChannels, kS, kVectors>(df, row, plan_.s, i, sums);
      for (int v = 0; v < kVectors; ++v) {
        const std::ptrdiff_t first = i + v * lanes;
        if (first >= width_) break;
        const auto inside = hn::FirstN(df, static_cast<std::size_t>(width_ - first));
        const auto undecided =
            hn::And(writeMeans<kChannels>(df, sums[v], margin, row, first), inside);
        if (HWY_UNLIKELY(!hn::AllFalse(df, undecided))) averageUndecided(undecided, row, first);
      }
    }
  }

  template <class M>
  HWY_NOINLINE void averageUndecided(M undecided, const AverageRow<kChannels>& row,
                                     std::ptrdiff_t first) {
    const hn::ScalableTag<float> df;
    std::uint8_t bytes[8] = {};
    hn::StoreMaskBits(df, undecided, bytes);
    std::uint64_t bits = 0;
    std::memcpy(&bits, bytes, sizeof(bits));
    const std::size_t lanes = hn::Lanes(ExactLanes());
    const std::uint64_t group = (std::uint64_t{1} << lanes) - 1;
    for (std::size_t lane = 0; lane < hn::Lanes(df); lane += lanes, bits >>= lanes) {
      if ((bits & group) == 0) continue;
      averageExactly<Index, kChannels>(plan_, row, scratch_.template indexPointers<Index>(),
                                       scratch_.exactWeights(),
                                       first + static_cast<std::ptrdiff_t>(lane));
      undecided_ += static_cast<std::int64_t>(lanes);
    }
  }

  void writeRow(int y) {
    const std::int64_t stride =
        std::int64_t{plan_.geometry.channelsDest} * plan_.geometry.widthDest;
    std::uint8_t* out = plan_.dest.data() + y * stride + std::int64_t{tile_.xBegin} * kChannels;
    if constexpr (kChannels == 1) {
      std::memcpy(out, scratch_.output(0), static_cast<std::size_t>(width_));
    } else {
      const hn::ScalableTag<std::uint8_t> d8;
      const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d8));
      const std::uint8_t* in[3] = {scratch_.output(0), scratch_.output(1), scratch_.output(2)};
      std::ptrdiff_t i = 0;
      for (; i + lanes <= width_; i += lanes) {
        hn::StoreInterleaved3(hn::LoadU(d8, in[0] + i), hn::LoadU(d8, in[1] + i),
                              hn::LoadU(d8, in[2] + i), d8, out + 3 * i);
      }
      for (; i < width_; ++i) {
        for (int c = 0; c < 3; ++c) out[3 * i + c] = in[c][i];
      }
    }
  }

  const FastPlan& plan_;
  FastScratch& scratch_;
  const Tile tile_;
  const int width_;
  std::int64_t nextRow_;
  std::int64_t undecided_ = 0;
};

std::int64_t filterOneTile(const FastPlan& plan, FastScratch& scratch, const Tile& tile) {
  if (plan.channels == 3) {
    return plan.narrow ? TileRun<std::uint16_t, 3>(plan, scratch, tile).run()
                       : TileRun<std::uint32_t, 3>(plan, scratch, tile).run();
  }
  return plan.narrow ? TileRun<std::uint16_t, 1>(plan, scratch, tile).run()
                     : TileRun<std::uint32_t, 1>(plan, scratch, tile).run();
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
