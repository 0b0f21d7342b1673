// Patch distances of one shift along a row of a tile, as exact integer box sums, and the weights in
// single precision that follow from them. Compiled once per instruction set.
//
// Integers may be added in any order, so squared differences are summed first over the rows of the
// patches and then over their columns. 16-bit sums stop at 65535; the plan uses them only where
// that stands for a weight of zero.

#include <hwy/highway.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "engine/fast/fast_scratch.h"

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

/// Rows of the padded source, one pointer a channel, at the column of the tile's first candidate.
template <int kChannels>
using SampleRows = const std::int16_t* [kChannels];

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

/// The sums over all `count` rows of the patches, each row's squares computed here; of one row its
/// squares, to be kept.
template <class Distance, int kChannels>
HWY_INLINE void sumColumns(const RowPair<kChannels>* rows, int count, std::ptrdiff_t length,
                           Distance* sums) {
  const hn::ScalableTag<Distance> d;
  const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  for (std::ptrdiff_t i = 0; i < length; i += lanes) {
    auto sum = hn::Zero(d);
    for (int n = 0; n < count; ++n) sum = addDistances(d, sum, pixelSquares(d, rows[n], i));
    hn::Store(sum, d, sums + i);
  }
}

/// Squares of the newest row, to be kept, and the sums of them and the kOlder rows before. What the
/// loop uses comes by value: vector stores may alias any memory, so it would be loaded each time.
template <class Distance, int kChannels, int kOlder>
HWY_INLINE void keepSquaresAndSumColumns(const RowPair<kChannels> rows,
                                         const std::array<const Distance*, kOlder> older,
                                         std::ptrdiff_t length, Distance* squares, Distance* sums) {
  const hn::ScalableTag<Distance> d;
  const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  for (std::ptrdiff_t i = 0; i < length; i += lanes) {
    auto sum = pixelSquares(d, rows, i);
    hn::Store(sum, d, squares + i);
    for (int n = 0; n < kOlder; ++n) {
      sum = addDistances(d, sum, hn::Load(d, older[static_cast<std::size_t>(n)] + i));
    }
    hn::Store(sum, d, sums + i);
  }
}

/// The weight function ready for use, its numbers spread over vectors.
///
/// 2^x is 2^n 2^f with n the nearest integer: adding 1.5 * 2^23 rounds x and leaves n in the low
/// bits; 2^f is a polynomial of degree 5 that is exactly 1 for f = 0. No bound of its error is
/// needed here: largestWeightError compares every entry of the table.
template <class DF>
class WeightVectors {
 public:
  using V = hn::Vec<DF>;

  explicit WeightVectors(const WeightFunction& f)
      : scale_(hn::Set(DF(), f.scale)), bias_(hn::Set(DF(), f.bias)), cut_(hn::Set(DF(), f.cut)) {}

  /// The weights of distance indices, as whole numbers in single precision.
  HWY_INLINE V operator()(V index) const {
    const DF df;
    const hn::RebindToSigned<DF> di;
    const auto x = hn::Min(hn::MulAdd(index, scale_, bias_), hn::Zero(df));
    const auto rounder = hn::Set(df, 12582912.0F);
    const auto shifted = hn::Add(x, rounder);
    const auto f = hn::Sub(x, hn::Sub(shifted, rounder));
    auto p = hn::Set(df, 0.00132647239F);
    p = hn::MulAdd(p, f, hn::Set(df, 0.00967151287F));
    p = hn::MulAdd(p, f, hn::Set(df, 0.0555073375F));
    p = hn::MulAdd(p, f, hn::Set(df, 0.240222421F));
    p = hn::MulAdd(p, f, hn::Set(df, 0.693146978F));
    p = hn::MulAdd(p, f, hn::Set(df, 1.0F));
    const auto power = hn::ShiftLeft<23>(hn::BitCast(di, shifted));
    const auto weight = hn::BitCast(df, hn::Add(hn::BitCast(di, p), power));
    return hn::IfThenElseZero(hn::Lt(index, cut_), weight);
  }

 private:
  V scale_, bias_, cut_;
};

/// The largest relative difference between the weight function and the entries of the table that
/// are not zero: all of them are compared, so this is no estimate. Infinite if one is not a number.
inline double largestWeightError(const WeightFunction& f, const double* table,
                                 std::int64_t cutOff) {
  const hn::ScalableTag<float> df;
  const WeightVectors<decltype(df)> weights(f);
  const auto lanes = static_cast<std::int64_t>(hn::Lanes(df));
  HWY_ALIGN float got[64];
  double largest = 0.0;
  for (std::int64_t first = 0; first < cutOff; first += lanes) {
    hn::Store(weights(hn::Iota(df, static_cast<float>(first))), df, got);
    for (std::int64_t i = 0; i < std::min(lanes, cutOff - first); ++i) {
      const double wanted = table[first + i];
      const double error = std::abs(static_cast<double>(got[i]) - wanted) / wanted;
      if (!(error <= largest)) largest = std::isnan(error) ? HUGE_VAL : error;
    }
  }
  return largest;
}

/// The sum over the columns of the patches that begin at each pixel of a vector. kT is t, or 0 for
/// a t known at run time only.
template <int kT, class D>
HWY_INLINE hn::Vec<D> sumOfColumns(D d, const hn::TFromD<D>* columns, int t) {
  if constexpr (kT > 0) {
    auto sum = hn::Load(d, columns);
    for (int m = 1; m < kT; ++m) sum = addDistances(d, sum, hn::LoadU(d, columns + m));
    return sum;
  } else {
    auto sum = hn::Zero(d);
    for (int m = 0; m < t; ++m) sum = addDistances(d, sum, hn::LoadU(d, columns + m));
    return sum;
  }
}

/// Makes distance indices and weights from 16-bit column sums.
template <int kT>
class NarrowWeights {
 public:
  using Distance = std::uint16_t;

  explicit NarrowWeights(const FastPlan& plan)
      : weightOf_(plan.weight),
        increment_(hn::Set(D(), plan.divider.increment)),
        multiplier_(hn::Set(D(), plan.divider.multiplier)),
        shift_(plan.divider.shift),
        t_(plan.t) {}

  HWY_INLINE void store(const Distance* columns, std::ptrdiff_t length, Distance* indices,
                        float* weights) const {
    const D d;
    const hn::ScalableTag<float> df;
    const hn::RebindToSigned<decltype(df)> di;
    const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
    for (std::ptrdiff_t i = 0; i < length; i += lanes) {
      auto index = sumOfColumns<kT>(d, columns + i, t_);
      if constexpr (kT != 1) {
        index = hn::MulHigh(hn::SaturatedAdd(index, increment_), multiplier_);
        index = hn::ShiftRightSame(index, shift_);
      }
      hn::Store(index, d, indices + i);
      const auto lower = hn::PromoteTo(di, hn::LowerHalf(index));
      const auto upper = hn::PromoteTo(di, hn::UpperHalf(hn::Half<D>(), index));
      hn::Store(weightOf_(hn::ConvertTo(df, lower)), df, weights + i);
      hn::Store(weightOf_(hn::ConvertTo(df, upper)), df, weights + i + lanes / 2);
    }
  }

 private:
  using D = hn::ScalableTag<Distance>;

  WeightVectors<hn::ScalableTag<float>> weightOf_;
  hn::Vec<D> increment_, multiplier_;
  int shift_;
  int t_;
};

/// Makes distance indices and weights from 32-bit column sums: the product is the very one that
/// defines the index.
template <int kT>
class WideWeights {
 public:
  using Distance = std::uint32_t;

  explicit WideWeights(const FastPlan& plan)
      : weightOf_(plan.weight), tdiv_(hn::Set(DD(), plan.tdiv)), t_(plan.t) {}

  HWY_INLINE void store(const Distance* columns, std::ptrdiff_t length, Distance* indices,
                        float* weights) const {
    const D d;
    const hn::ScalableTag<float> df;
    const DI di;
    const hn::Half<DI> half;
    const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
    for (std::ptrdiff_t i = 0; i < length; i += lanes) {
      const auto sum = hn::BitCast(di, sumOfColumns<kT>(d, columns + i, t_));
      const auto index = hn::Combine(di, truncatedProduct(hn::UpperHalf(half, sum)),
                                     truncatedProduct(hn::LowerHalf(sum)));
      hn::Store(hn::BitCast(d, index), d, indices + i);
      hn::Store(weightOf_(hn::ConvertTo(df, index)), df, weights + i);
    }
  }

 private:
  using D = hn::ScalableTag<Distance>;
  using DI = hn::RebindToSigned<D>;
  using DD = hn::ScalableTag<double>;

  HWY_INLINE hn::Vec<hn::Half<DI>> truncatedProduct(hn::Vec<hn::Half<DI>> distances) const {
    return hn::DemoteTo(hn::Half<DI>(), hn::Mul(hn::PromoteTo(DD(), distances), tdiv_));
  }

  WeightVectors<hn::ScalableTag<float>> weightOf_;
  hn::Vec<DD> tdiv_;
  int t_;
};

/// Where the distances of one shift come from and go to, for one row of a tile.
template <class Distance, int kChannels>
struct ShiftRow {
  /// Rows of the source from the first row of the reference patches on, and `dy` further on.
  const SampleRows<kChannels>* reference;
  const SampleRows<kChannels>* candidate;
  std::ptrdiff_t column;         ///< Of the first reference patch.
  std::ptrdiff_t dx;             ///< From there to its candidate.
  std::ptrdiff_t slip;           ///< Columns a patch's row slips to the left of the one above.
  std::ptrdiff_t length;         ///< Distances to compute.
  Distance* const* squares;      ///< The kept rows of squares of patch rows 0 to t - 1.
  std::ptrdiff_t squaresOffset;  ///< From there to those of this shift.
  Distance* columns;

  RowPair<kChannels> rows(int n) const {
    RowPair<kChannels> pair;
    const std::ptrdiff_t first = column - slip * n;
    for (int c = 0; c < kChannels; ++c) {
      pair.reference[c] = reference[n][c] + first;
      pair.candidate[c] = candidate[n][c] + first + dx;
    }
    return pair;
  }
  Distance* keptSquares(int n) const { return squares[n] + squaresOffset; }
};

/// The squares of the rows above the newest, which have to be known before the first row.
template <class Distance, int kChannels>
void beginShift(const ShiftRow<Distance, kChannels>& row, int t) {
  for (int n = 0; n + 1 < t; ++n) {
    const RowPair<kChannels> rows = row.rows(n);
    sumColumns<Distance, kChannels>(&rows, 1, row.length + t - 1, row.keptSquares(n));
  }
}

/// The column sums of a shift's patches, with squares that are kept or without. kT is t, or 0.
template <class Distance, int kChannels, int kT>
HWY_INLINE void sumShiftColumns(const ShiftRow<Distance, kChannels>& row, int t, bool keeps) {
  const std::ptrdiff_t length = row.length + (t > 0 ? t - 1 : 0);
  if constexpr (kT >= 2 && kChannels == 3) {
    if (keeps) {
      std::array<const Distance*, kT - 1> older;
      for (int n = 0; n + 1 < kT; ++n) older[static_cast<std::size_t>(n)] = row.keptSquares(n);
      keepSquaresAndSumColumns<Distance, kChannels, kT - 1>(row.rows(kT - 1), older, length,
                                                            row.keptSquares(kT - 1), row.columns);
      return;
    }
  }
  if (keeps) {
    const hn::ScalableTag<Distance> d;
    const auto lanes = static_cast<std::ptrdiff_t>(hn::Lanes(d));
    const RowPair<kChannels> newest = row.rows(t - 1);
    sumColumns<Distance, kChannels>(&newest, 1, length, row.keptSquares(t - 1));
    for (std::ptrdiff_t i = 0; i < length; i += lanes) {
      auto sum = hn::Zero(d);
      for (int n = 0; n < t; ++n) sum = addDistances(d, sum, hn::Load(d, row.keptSquares(n) + i));
      hn::Store(sum, d, row.columns + i);
    }
    return;
  }
  RowPair<kChannels> rows[kLargestTemplate];
  for (int n = 0; n < t; ++n) rows[n] = row.rows(n);
  sumColumns<Distance, kChannels>(rows, t, length, row.columns);
}

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#endif  // VELMARA_DISTANCES_INL_H_
