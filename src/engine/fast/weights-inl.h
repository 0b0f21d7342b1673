// Weights in single precision from distance indices. Compiled once per instruction set.

#include <hwy/highway.h>

#include <algorithm>
#include <cmath>

#include "engine/fast/fast_plan.h"

#if defined(VELMARA_WEIGHTS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMARA_WEIGHTS_INL_H_
#undef VELMARA_WEIGHTS_INL_H_
#else
#define VELMARA_WEIGHTS_INL_H_
#endif

HWY_BEFORE_NAMESPACE();
namespace velmara {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

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

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#endif  // VELMARA_WEIGHTS_INL_H_
