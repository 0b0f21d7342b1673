// Patch distances of one shift along a row of a tile, as exact integer box sums, and the weights
// that follow from them. Compiled once per instruction set.
//
// Integers may be added in any order, so squared differences are summed first over the rows of the
// patches and then over their columns. 16-bit sums stop at 65535; the plan uses them only where
// that stands for a weight of zero.

#include <hwy/highway.h>

#include "engine/fast/fast_scratch.h"
#include "engine/fast/weights-inl.h"

#if defined(VELMARA_DISTANCES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMARA_DISTANCES_INL_H_
#undef VELMARA_DISTANCES_INL_H_
#else
#define VELMARA_DISTANCES_INL_H_
#endif

HWY_BEFORE_NAMESPACE();
namespace velmara {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// A row of the reference patches and the row of the candidate patches it is compared with.
template <int kChannels>
struct RowPair {
  const std::int16_t* reference[kChannels];
  const std::int16_t* candidate[kChannels];
};

// Addition of 16-bit sums stops at the largest value, that of 32-bit sums never gets there.
template <class V>
HWY_INLINE V addDistances(hn::ScalableTag<std::uint16_t> /*d*/, V a, V b) {
  return hn::SaturatedAdd(a, b);
}
template <class V>
HWY_INLINE V addDistances(hn::ScalableTag<std::uint32_t> /*d*/, V a, V b) {
  return hn::Add(a, b);
}

// The square of a difference of two samples fits into 16 bits without a sign.
HWY_INLINE auto square(hn::ScalableTag<std::uint16_t> d, const std::int16_t* a,
                       const std::int16_t* b) {
  const hn::RebindToSigned<decltype(d)> di;
  const auto difference = hn::Sub(hn::LoadU(di, a), hn::LoadU(di, b));
  return hn::BitCast(d, hn::Mul(difference, difference));
}
HWY_INLINE auto square(hn::ScalableTag<std::uint32_t> d, const std::int16_t* a,
                       const std::int16_t* b) {
  const hn::Rebind<std::int16_t, decltype(d)> di16;
  const hn::Rebind<std::uint16_t, decltype(d)> du16;
  const auto difference = hn::Sub(hn::LoadU(di16, a), hn::LoadU(di16, b));
  return hn::PromoteTo(d, hn::BitCast(du16, hn::Mul(difference, difference)));
}

/// The squared differences of a vector of pixels, summed over their samples.
template <class D, int kChannels>
HWY_INLINE hn::Vec<D> pixelSquares(D d, const RowPair<kChannels>& rows, std::ptrdiff_t i) {
  auto sum = square(d, rows.reference[0] + i, rows.candidate[0] + i);
  for (int c = 1; c < kChannels; ++c) {
    sum = addDistances(d, sum, square(d, rows.reference[c] + i, rows.candidate[c] + i));
  }
  return sum;
}

/// The sums over all rows of the patches, each row's squares computed here.
template <class Distance, int kChannels>
void sumColumns(const RowPair<kChannels>* rows, int count, std::ptrdiff_t begin, std::ptrdiff_t end,
                Distance* sums) {
  const hn::ScalableTag<Distance> d;
  const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  for (std::ptrdiff_t i = begin; i < end; i += lanes) {
    auto sum = hn::Zero(d);
    for (int n = 0; n < count; ++n) sum = addDistances(d, sum, pixelSquares(d, rows[n], i));
    hn::StoreU(sum, d, sums + i);
  }
}

/// Squares of one row, to be kept.
template <class Distance, int kChannels>
void keepSquares(const RowPair<kChannels>& rows, std::ptrdiff_t begin, std::ptrdiff_t end,
                 Distance* squares) {
  const hn::ScalableTag<Distance> d;
  const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  for (std::ptrdiff_t i = begin; i < end; i += lanes) {
    hn::StoreU(pixelSquares(d, rows, i), d, squares + i);
  }
}

/// Squares of the newest row, to be kept, and the sums of them and the kOlder rows before.
template <class Distance, int kChannels, int kOlder>
void keepSquaresAndSumColumns(const RowPair<kChannels>& rows, const Distance* const* older,
                              std::ptrdiff_t begin, std::ptrdiff_t end, Distance* squares,
                              Distance* sums) {
  const hn::ScalableTag<Distance> d;
  const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  for (std::ptrdiff_t i = begin; i < end; i += lanes) {
    auto sum = pixelSquares(d, rows, i);
    hn::StoreU(sum, d, squares + i);
    for (int n = 0; n < kOlder; ++n) sum = addDistances(d, sum, hn::LoadU(d, older[n] + i));
    hn::StoreU(sum, d, sums + i);
  }
}

/// The sum over the columns of the patches that begin at each pixel of a vector. kT is t, or 0 for
/// a t known at run time only.
template <int kT, class D>
HWY_INLINE hn::Vec<D> sumOfColumns(D d, const hn::TFromD<D>* columns, int t) {
  if constexpr (kT > 0) {
    auto sum = hn::LoadU(d, columns);
    for (int m = 1; m < kT; ++m) sum = addDistances(d, sum, hn::LoadU(d, columns + m));
    return sum;
  } else {
    auto sum = hn::Zero(d);
    for (int m = 0; m < t; ++m) sum = addDistances(d, sum, hn::LoadU(d, columns + m));
    return sum;
  }
}

/// Distance indices and weights from 16-bit column sums.
template <int kT>
void storeWeights(const FastPlan& plan, const std::uint16_t* columns, std::ptrdiff_t begin,
                  std::ptrdiff_t end, std::uint16_t* indices, float* weights) {
  const hn::ScalableTag<std::uint16_t> d;
  const hn::ScalableTag<float> df;
  const hn::RebindToSigned<decltype(df)> di;
  const WeightVectors<hn::ScalableTag<float>> weightOf(plan.weight);
  const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  const auto increment = hn::Set(d, plan.divider.increment);
  const auto multiplier = hn::Set(d, plan.divider.multiplier);
  const int shift = plan.divider.shift;
  for (std::ptrdiff_t i = begin; i < end; i += lanes) {
    auto index = sumOfColumns<kT>(d, columns + i, plan.t);
    if constexpr (kT != 1) {
      index = hn::MulHigh(hn::SaturatedAdd(index, increment), multiplier);
      index = hn::ShiftRightSame(index, shift);
    }
    hn::StoreU(index, d, indices + i);
    const auto lower = hn::PromoteTo(di, hn::LowerHalf(index));
    const auto upper = hn::PromoteTo(di, hn::UpperHalf(hn::Half<decltype(d)>(), index));
    hn::StoreU(weightOf(hn::ConvertTo(df, lower)), df, weights + i);
    hn::StoreU(weightOf(hn::ConvertTo(df, upper)), df, weights + i + lanes / 2);
  }
}

/// Distance indices and weights from 32-bit column sums: the product is the very one that defines
/// the index.
template <int kT>
void storeWeights(const FastPlan& plan, const std::uint32_t* columns, std::ptrdiff_t begin,
                  std::ptrdiff_t end, std::uint32_t* indices, float* weights) {
  const hn::ScalableTag<std::uint32_t> d;
  const hn::ScalableTag<float> df;
  const hn::ScalableTag<double> dd;
  const hn::RebindToSigned<decltype(df)> di;
  const hn::Half<decltype(di)> half;
  const WeightVectors<hn::ScalableTag<float>> weightOf(plan.weight);
  const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  const auto tdiv = hn::Set(dd, plan.tdiv);
  const auto product = [&](auto distances) HWY_ATTR {
    return hn::DemoteTo(half, hn::Mul(hn::PromoteTo(dd, distances), tdiv));
  };
  for (std::ptrdiff_t i = begin; i < end; i += lanes) {
    const auto sum = hn::BitCast(di, sumOfColumns<kT>(d, columns + i, plan.t));
    const auto index =
        hn::Combine(di, product(hn::UpperHalf(half, sum)), product(hn::LowerHalf(sum)));
    hn::StoreU(hn::BitCast(d, index), d, indices + i);
    hn::StoreU(weightOf(hn::ConvertTo(df, index)), df, weights + i);
  }
}

template <class Distance>
void storeWeightsFor(const FastPlan& plan, const Distance* columns, std::ptrdiff_t begin,
                     std::ptrdiff_t end, Distance* indices, float* weights) {
  switch (plan.t) {
    case 1:
      storeWeights<1>(plan, columns, begin, end, indices, weights);
      break;
    case 2:
      storeWeights<2>(plan, columns, begin, end, indices, weights);
      break;
    case 3:
      storeWeights<3>(plan, columns, begin, end, indices, weights);
      break;
    case 4:
      storeWeights<4>(plan, columns, begin, end, indices, weights);
      break;
    case 5:
      storeWeights<5>(plan, columns, begin, end, indices, weights);
      break;
    default:
      storeWeights<0>(plan, columns, begin, end, indices, weights);
      break;
  }
}

/// The distances of one shift for row y of the output, by rows of a tile. Pointers into rows of
/// distances are those of the tile's first pixel.
template <class Distance, int kChannels>
class ShiftDistances {
 public:
  ShiftDistances(const FastPlan& plan, FastScratch& scratch, std::size_t index, int width)
      : plan_(plan),
        scratch_(scratch),
        index_(index),
        shift_(plan.shifts[index]),
        begin_(shift_.begin()),
        end_(shift_.end(width)),
        columnEnd_(end_ + std::max(plan.t - 1, 0)) {}

  /// Rows above the first one have to be known before it.
  void begin(std::int64_t y) {
    if (!plan_.keepsSquares) return;
    for (int n = 0; n + 1 < plan_.t; ++n) {
      keepSquares<Distance, kChannels>(rowsOf(y, n), begin_, columnEnd_, squaresOf(y + n));
    }
  }

  void compute(std::int64_t y, Distance* indices, float* weights) {
    Distance* columns = scratch_.columnSums<Distance>() + plan_.sr;
    if (plan_.keepsSquares) {
      keepNewest(y, columns);
    } else {
      RowPair<kChannels> rows[32];
      for (int n = 0; n < plan_.t; ++n) rows[n] = rowsOf(y, n);
      sumColumns<Distance, kChannels>(rows, plan_.t, begin_, columnEnd_, columns);
    }
    storeWeightsFor(plan_, columns, begin_, end_, indices, weights);
  }

 private:
  void keepNewest(std::int64_t y, Distance* columns) {
    const int older = plan_.t - 1;
    const Distance* olderRows[8];
    for (int n = 0; n < older; ++n) olderRows[n] = squaresOf(y + n);
    const RowPair<kChannels> rows = rowsOf(y, older);
    Distance* squares = squaresOf(y + older);
    const auto keep = [&](auto count) {
      keepSquaresAndSumColumns<Distance, kChannels, decltype(count)::value>(
          rows, olderRows, begin_, columnEnd_, squares, columns);
    };
    switch (older) {
      case 1:
        keep(std::integral_constant<int, 1>());
        break;
      case 2:
        keep(std::integral_constant<int, 2>());
        break;
      case 3:
        keep(std::integral_constant<int, 3>());
        break;
      case 4:
        keep(std::integral_constant<int, 4>());
        break;
      default:
        keep(std::integral_constant<int, 5>());
        break;
    }
  }

  // Row n of the patches of output row y.
  RowPair<kChannels> rowsOf(std::int64_t y, int n) const {
    RowPair<kChannels> rows;
    const std::int64_t row = y + plan_.sr + n;
    const std::ptrdiff_t column =
        std::ptrdiff_t{plan_.margin} + plan_.sr - std::ptrdiff_t{plan_.patchSlip} * n;
    for (int c = 0; c < kChannels; ++c) {
      rows.reference[c] = scratch_.samples(row, c) + column;
      rows.candidate[c] = scratch_.samples(row + shift_.dy, c) + column + shift_.dx;
    }
    return rows;
  }
  Distance* squaresOf(std::int64_t row) const {
    // Rows above the picture count as well, so that the remainder is never negative.
    return scratch_.squares<Distance>(index_, row + plan_.s) + plan_.sr;
  }

  const FastPlan& plan_;
  FastScratch& scratch_;
  std::size_t index_;
  const SearchShift& shift_;
  std::ptrdiff_t begin_;
  std::ptrdiff_t end_;
  std::ptrdiff_t columnEnd_;
};

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#endif  // VELMARA_DISTANCES_INL_H_
