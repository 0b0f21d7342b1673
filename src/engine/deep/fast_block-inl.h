// Cosine transforms of 8 x 8 blocks in vectors of at most eight samples, operation for operation as
// block_transform.h has them. Compiled once per instruction set.

#include <hwy/highway.h>

#include "engine/deep/block_transform.h"

#if defined(VELMARA_FAST_BLOCK_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMARA_FAST_BLOCK_INL_H_
#undef VELMARA_FAST_BLOCK_INL_H_
#else
#define VELMARA_FAST_BLOCK_INL_H_
#endif

HWY_BEFORE_NAMESPACE();
namespace velmara {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using RowTag = hn::CappedTag<float, 8>;
using RowVector = hn::Vec<RowTag>;
inline constexpr std::size_t kRowLanes = hn::MaxLanes(RowTag());
/// Vectors that make up a row of eight.
inline constexpr std::size_t kRowParts = 8 / kRowLanes;

HWY_INLINE RowVector scaled(RowVector v, float factor) {
  return hn::Mul(v, hn::Set(RowTag(), factor));
}

/// a * p + b * q + c * r + d * s, added from the left; the signs are the factors' own.
HWY_INLINE RowVector combined(RowVector a, float p, RowVector b, float q, RowVector c, float r,
                              RowVector d, float s) {
  return hn::Add(hn::Add(hn::Add(scaled(a, p), scaled(b, q)), scaled(c, r)), scaled(d, s));
}

HWY_INLINE void forwardRows(RowVector* x) {
  const auto s0 = hn::Add(x[0], x[7]), s1 = hn::Add(x[1], x[6]);
  const auto s2 = hn::Add(x[2], x[5]), s3 = hn::Add(x[3], x[4]);
  const auto d0 = hn::Sub(x[0], x[7]), d1 = hn::Sub(x[1], x[6]);
  const auto d2 = hn::Sub(x[2], x[5]), d3 = hn::Sub(x[3], x[4]);
  const auto a0 = hn::Add(s0, s3), a1 = hn::Add(s1, s2);
  const auto b0 = hn::Sub(s0, s3), b1 = hn::Sub(s1, s2);
  x[0] = scaled(hn::Add(a0, a1), kCos4);
  x[4] = scaled(hn::Sub(a0, a1), kCos4);
  x[2] = hn::Add(scaled(b0, kCos2), scaled(b1, kCos6));
  x[6] = hn::Sub(scaled(b0, kCos6), scaled(b1, kCos2));
  x[1] = combined(d0, kCos1, d1, kCos3, d2, kCos5, d3, kCos7);
  x[3] = combined(d0, kCos3, d1, -kCos7, d2, -kCos1, d3, -kCos5);
  x[5] = combined(d0, kCos5, d1, -kCos1, d2, kCos7, d3, kCos3);
  x[7] = combined(d0, kCos7, d1, -kCos5, d2, kCos3, d3, -kCos1);
}

HWY_INLINE void inverseRows(RowVector* x) {
  const auto e0 = scaled(hn::Add(x[0], x[4]), kCos4), e1 = scaled(hn::Sub(x[0], x[4]), kCos4);
  const auto f0 = hn::Add(scaled(x[2], kCos2), scaled(x[6], kCos6));
  const auto f1 = hn::Sub(scaled(x[2], kCos6), scaled(x[6], kCos2));
  const auto s0 = hn::Add(e0, f0), s3 = hn::Sub(e0, f0);
  const auto s1 = hn::Add(e1, f1), s2 = hn::Sub(e1, f1);
  const auto d0 = combined(x[1], kCos1, x[3], kCos3, x[5], kCos5, x[7], kCos7);
  const auto d1 = combined(x[1], kCos3, x[3], -kCos7, x[5], -kCos1, x[7], -kCos5);
  const auto d2 = combined(x[1], kCos5, x[3], -kCos1, x[5], kCos7, x[7], kCos3);
  const auto d3 = combined(x[1], kCos7, x[3], -kCos5, x[5], kCos3, x[7], -kCos1);
  x[0] = hn::Add(s0, d0);
  x[7] = hn::Sub(s0, d0);
  x[1] = hn::Add(s1, d1);
  x[6] = hn::Sub(s1, d1);
  x[2] = hn::Add(s2, d2);
  x[5] = hn::Sub(s2, d2);
  x[3] = hn::Add(s3, d3);
  x[4] = hn::Sub(s3, d3);
}

/// Rows of a block in registers become its columns.
HWY_INLINE void transposeRows(RowVector (&rows)[kRowParts][8]) {
  const RowTag d;
  if constexpr (kRowLanes == 8) {
    const hn::Repartition<double, RowTag> dd;
    RowVector* x = rows[0];
    RowVector t[8];
    for (std::size_t i = 0; i < 8; i += 2) {
      t[i] = hn::InterleaveLower(d, x[i], x[i + 1]);
      t[i + 1] = hn::InterleaveUpper(d, x[i], x[i + 1]);
    }
    // Pairs of rows interleaved become quadruples, in each half of the vector by itself.
    RowVector u[8];
    for (std::size_t i = 0; i < 8; i += 4) {
      for (std::size_t j = 0; j < 2; ++j) {
        const auto a = hn::BitCast(dd, t[i + j]);
        const auto b = hn::BitCast(dd, t[i + j + 2]);
        u[i + 2 * j] = hn::BitCast(d, hn::InterleaveLower(dd, a, b));
        u[i + 2 * j + 1] = hn::BitCast(d, hn::InterleaveUpper(dd, a, b));
      }
    }
    for (std::size_t i = 0; i < 4; ++i) {
      x[i] = hn::ConcatLowerLower(d, u[i + 4], u[i]);
      x[i + 4] = hn::ConcatUpperUpper(d, u[i + 4], u[i]);
    }
  } else {
    HWY_ALIGN Block block;
    for (std::size_t y = 0; y < 8; ++y) {
      for (std::size_t part = 0; part < kRowParts; ++part) {
        hn::StoreU(rows[part][y], d, &block[8 * y + part * kRowLanes]);
      }
    }
    transpose(block);
    for (std::size_t y = 0; y < 8; ++y) {
      for (std::size_t part = 0; part < kRowParts; ++part) {
        rows[part][y] = hn::LoadU(d, &block[8 * y + part * kRowLanes]);
      }
    }
  }
}

HWY_INLINE void fastCosinesOf(const std::int16_t* samples, std::ptrdiff_t stride, Block& out) {
  const RowTag d;
  const hn::Rebind<std::int16_t, RowTag> d16;
  const hn::Rebind<std::int32_t, RowTag> d32;
  RowVector rows[kRowParts][8];
  for (std::size_t part = 0; part < kRowParts; ++part) {
    for (std::size_t y = 0; y < 8; ++y) {
      const auto in =
          hn::LoadU(d16, samples + static_cast<std::ptrdiff_t>(y) * stride + part * kRowLanes);
      rows[part][y] = hn::ConvertTo(d, hn::PromoteTo(d32, in));
    }
    forwardRows(rows[part]);
  }
  transposeRows(rows);
  for (std::size_t part = 0; part < kRowParts; ++part) {
    forwardRows(rows[part]);
    for (std::size_t y = 0; y < 8; ++y) {
      hn::StoreU(rows[part][y], d, &out[8 * y + part * kRowLanes]);
    }
  }
}

/// The samples that coefficients stand for, row by row.
HWY_INLINE void fastInvertCosines(const Block& block, RowVector (&rows)[kRowParts][8]) {
  const RowTag d;
  for (std::size_t part = 0; part < kRowParts; ++part) {
    for (std::size_t y = 0; y < 8; ++y) {
      rows[part][y] = hn::LoadU(d, &block[8 * y + part * kRowLanes]);
    }
    inverseRows(rows[part]);
  }
  transposeRows(rows);
  for (std::size_t part = 0; part < kRowParts; ++part) inverseRows(rows[part]);
}

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#endif  // VELMARA_FAST_BLOCK_INL_H_
