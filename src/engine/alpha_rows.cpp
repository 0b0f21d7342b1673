#include "engine/alpha_rows.h"

#include "base/alpha.h"
#include "engine/fast/instruction_sets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/alpha_rows.cpp"
#include <hwy/foreach_target.h>  // Compiles what follows once per instruction set.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace velmara {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET != HWY_SCALAR

// overBlack for a vector: everything fits into 16 bits without a sign.
template <class D8>
HWY_INLINE hn::Vec<D8> vectorOverBlack(D8 d8, hn::Vec<D8> samples, hn::Vec<D8> alpha) {
  const hn::Half<D8> half;
  const hn::Rebind<std::uint16_t, decltype(half)> d16;
  const auto over = [&](auto sample, auto opacity) {
    const auto product = hn::Add(hn::Mul(hn::PromoteTo(d16, sample), hn::PromoteTo(d16, opacity)),
                                 hn::Set(d16, 128));
    return hn::TruncateTo(half, hn::ShiftRight<8>(hn::Add(product, hn::ShiftRight<8>(product))));
  };
  return hn::Combine(d8, over(hn::UpperHalf(half, samples), hn::UpperHalf(half, alpha)),
                     over(hn::LowerHalf(samples), hn::LowerHalf(alpha)));
}

#endif

void dropAlphaOfRow(const std::uint8_t* rgba, std::size_t pixels, std::uint8_t* rgb) {
  std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
  const hn::ScalableTag<std::uint8_t> d8;
  const std::size_t lanes = hn::Lanes(d8);
  const auto opaque = hn::Set(d8, 255);
  for (; i + lanes <= pixels; i += lanes) {
    hn::Vec<decltype(d8)> red, green, blue, alpha;
    hn::LoadInterleaved4(d8, rgba + 4 * i, red, green, blue, alpha);
    if (HWY_UNLIKELY(!hn::AllTrue(d8, hn::Eq(alpha, opaque)))) {
      red = vectorOverBlack(d8, red, alpha);
      green = vectorOverBlack(d8, green, alpha);
      blue = vectorOverBlack(d8, blue, alpha);
    }
    hn::StoreInterleaved3(red, green, blue, d8, rgb + 3 * i);
  }
#endif
  for (; i < pixels; ++i) {
    for (std::size_t c = 0; c < 3; ++c)
      rgb[3 * i + c] = overBlack(rgba[4 * i + c], rgba[4 * i + 3]);
  }
}

void addAlphaToRow(const std::uint8_t* rgb, std::size_t pixels, std::uint8_t* rgba) {
  std::size_t i = 0;
#if HWY_TARGET != HWY_SCALAR
  const hn::ScalableTag<std::uint8_t> d8;
  const std::size_t lanes = hn::Lanes(d8);
  const auto opaque = hn::Set(d8, 255);
  for (; i + lanes <= pixels; i += lanes) {
    hn::Vec<decltype(d8)> red, green, blue;
    hn::LoadInterleaved3(d8, rgb + 3 * i, red, green, blue);
    hn::StoreInterleaved4(red, green, blue, opaque, d8, rgba + 4 * i);
  }
#endif
  for (; i < pixels; ++i) {
    const std::uint8_t pixel[3] = {rgb[3 * i], rgb[3 * i + 1], rgb[3 * i + 2]};
    for (std::size_t c = 0; c < 3; ++c) rgba[4 * i + c] = pixel[c];
    rgba[4 * i + 3] = 255;
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace velmara {
namespace {

HWY_EXPORT(dropAlphaOfRow);
HWY_EXPORT(addAlphaToRow);

}  // namespace

void dropAlpha(const std::uint8_t* rgba, std::size_t pixels, std::uint8_t* rgb) {
  useInstructionSetOfEnvironment();
  HWY_DYNAMIC_DISPATCH(dropAlphaOfRow)(rgba, pixels, rgb);
}

void addAlpha(const std::uint8_t* rgb, std::size_t pixels, std::uint8_t* rgba) {
  useInstructionSetOfEnvironment();
  HWY_DYNAMIC_DISPATCH(addAlphaToRow)(rgb, pixels, rgba);
}

}  // namespace velmara

#endif  // HWY_ONCE
