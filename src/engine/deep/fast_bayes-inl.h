// The last step for one stack in vectors, operation for operation as reference_pass.cpp has it.
// Compiled once per instruction set.

#include <hwy/highway.h>

#include "engine/deep/group_shrinkage.h"

#if defined(VELMARA_FAST_BAYES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMARA_FAST_BAYES_INL_H_
#undef VELMARA_FAST_BAYES_INL_H_
#else
#define VELMARA_FAST_BAYES_INL_H_
#endif

#include "engine/deep/fast_block-inl.h"

HWY_BEFORE_NAMESPACE();
namespace velmara {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Patches member by member, and sample by sample.
struct PatchRows {
  HWY_ALIGN Patches patches;
  HWY_ALIGN std::array<std::array<float, DeepPass::kGroup>, 48> samples;

  void load(const OpponentPlanes& planes, const std::ptrdiff_t* places) {
    const hn::CappedTag<float, 4> d;
    const hn::Rebind<std::int32_t, decltype(d)> d32;
    const hn::Rebind<std::int16_t, decltype(d)> d16;
    const std::ptrdiff_t inset = DeepPass::kPatchInset * (std::ptrdiff_t{planes.width} + 1);
    for (std::size_t at = 0; at < DeepPass::kGroup; ++at) {
      float* out = patches[at].data();
      for (std::size_t k = 0; k < 3; ++k) {
        const std::int16_t* in = planes.planes[k].data() + places[at] + inset;
        for (int y = 0; y < DeepPass::kPatch; ++y, in += planes.width, out += DeepPass::kPatch) {
          hn::StoreU(hn::ConvertTo(d, hn::PromoteTo(d32, hn::LoadU(d16, in))), d, out);
        }
      }
    }
  }

  // Deviations from the means in units of the noise.
  void center(const float* means, const std::array<float, 3>& factors) {
    const RowTag d;
    for (auto& patch : patches) {
      for (std::size_t i = 0; i < 48; i += kRowLanes) {
        const auto deviation = hn::Sub(hn::LoadU(d, &patch[i]), hn::LoadU(d, means + i));
        hn::StoreU(scaled(deviation, factors[i / 16]), d, &patch[i]);
      }
    }
    for (std::size_t at = 0; at < DeepPass::kGroup; at += 8) {
      for (std::size_t i = 0; i < 48; i += 8) {
        RowVector rows[kRowParts][8];
        for (std::size_t part = 0; part < kRowParts; ++part) {
          for (std::size_t y = 0; y < 8; ++y) {
            rows[part][y] = hn::LoadU(d, &patches[at + y][i + part * kRowLanes]);
          }
        }
        transposeRows(rows);
        for (std::size_t part = 0; part < kRowParts; ++part) {
          for (std::size_t y = 0; y < 8; ++y) {
            hn::StoreU(rows[part][y], d, &samples[i + y][at + part * kRowLanes]);
          }
        }
      }
    }
  }
};

inline constexpr std::size_t kGroupParts = DeepPass::kGroup / kRowLanes;

/// The products of the guide's patches with each other and with the noisy ones.
HWY_INLINE void multiply(const PatchRows& guide, const PatchRows& noisy, GroupMatrix& own,
                         GroupMatrix& other) {
  const RowTag d;
  constexpr std::size_t kAtOnce = 2;
  for (std::size_t a = 0; a < DeepPass::kGroup; a += kAtOnce) {
    RowVector sums[kAtOnce][2][kGroupParts];
    for (auto& row : sums) {
      for (auto& matrix : row) {
        for (auto& part : matrix) part = hn::Zero(d);
      }
    }
    for (std::size_t i = 0; i < 48; ++i) {
      for (std::size_t part = 0; part < kGroupParts; ++part) {
        const auto x = hn::LoadU(d, &guide.samples[i][part * kRowLanes]);
        const auto y = hn::LoadU(d, &noisy.samples[i][part * kRowLanes]);
        for (std::size_t row = 0; row < kAtOnce; ++row) {
          const auto factor = hn::Set(d, guide.patches[a + row][i]);
          sums[row][0][part] = hn::Add(sums[row][0][part], hn::Mul(factor, x));
          sums[row][1][part] = hn::Add(sums[row][1][part], hn::Mul(factor, y));
        }
      }
    }
    for (std::size_t row = 0; row < kAtOnce; ++row) {
      for (std::size_t part = 0; part < kGroupParts; ++part) {
        hn::StoreU(sums[row][0][part], d, &own[a + row][part * kRowLanes]);
        hn::StoreU(sums[row][1][part], d, &other[a + row][part * kRowLanes]);
      }
    }
  }
}

HWY_INLINE void fastSolve(GroupMatrix& matrix, GroupMatrix& right) {
  const RowTag d;
  for (std::size_t i = 0; i < DeepPass::kGroup; ++i) matrix[i][i] += 1.0F;
  for (std::size_t p = 0; p < DeepPass::kGroup; ++p) {
    const float inverse = 1.0F / matrix[p][p];
    RowVector own[kGroupParts];
    RowVector other[kGroupParts];
    for (std::size_t part = 0; part < kGroupParts; ++part) {
      const std::size_t i = part * kRowLanes;
      own[part] = scaled(hn::LoadU(d, &matrix[p][i]), inverse);
      other[part] = scaled(hn::LoadU(d, &right[p][i]), inverse);
      hn::StoreU(own[part], d, &matrix[p][i]);
      hn::StoreU(other[part], d, &right[p][i]);
    }
    for (std::size_t row = 0; row < DeepPass::kGroup; ++row) {
      if (row == p) continue;
      const auto factor = hn::Set(d, matrix[row][p]);
      for (std::size_t part = 0; part < kGroupParts; ++part) {
        float* m = &matrix[row][part * kRowLanes];
        float* r = &right[row][part * kRowLanes];
        hn::StoreU(hn::Sub(hn::LoadU(d, m), hn::Mul(factor, own[part])), d, m);
        hn::StoreU(hn::Sub(hn::LoadU(d, r), hn::Mul(factor, other[part])), d, r);
      }
    }
  }
}

HWY_INLINE void fastAddPatches(const DeepPass& pass, const std::ptrdiff_t* places,
                               BlockSums& sums) {
  const RowTag d;
  PatchRows guide;
  PatchRows noisy;
  guide.load(*pass.guide, places);
  noisy.load(pass.noisy, places);
  HWY_ALIGN float means[48];
  for (std::size_t i = 0; i < 48; i += kRowLanes) {
    auto sum = hn::Zero(d);
    for (const auto& patch : guide.patches) sum = hn::Add(sum, hn::LoadU(d, &patch[i]));
    hn::StoreU(scaled(sum, 1.0F / DeepPass::kGroup), d, means + i);
  }
  const auto factors = whiteningFactors(pass, means);
  guide.center(means, factors);
  noisy.center(means, factors);
  HWY_ALIGN GroupMatrix own;
  HWY_ALIGN GroupMatrix other;
  multiply(guide, noisy, own, other);
  fastSolve(own, other);

  const hn::CappedTag<std::int32_t, 4> d32;
  const std::ptrdiff_t width = pass.noisy.width;
  const auto most = hn::Set(d, DeepPass::kMostSample);
  const auto least = hn::Set(d, -DeepPass::kMostSample);
  for (std::size_t at = 0; at < DeepPass::kGroup; ++at) {
    constexpr std::size_t kParts = 48 / kRowLanes;
    RowVector patch[kParts];
    for (auto& part : patch) part = hn::Zero(d);
    for (std::size_t a = 0; a < DeepPass::kGroup; ++a) {
      const auto factor = hn::Set(d, other[a][at]);
      for (std::size_t part = 0; part < kParts; ++part) {
        patch[part] = hn::Add(patch[part],
                              hn::Mul(factor, hn::LoadU(d, &guide.patches[a][part * kRowLanes])));
      }
    }
    HWY_ALIGN std::int32_t weighted[48];
    for (std::size_t part = 0; part < kParts; ++part) {
      const std::size_t i = part * kRowLanes;
      const auto value =
          hn::Add(hn::LoadU(d, means + i), hn::Div(patch[part], hn::Set(d, factors[i / 16])));
      const auto sample = hn::Min(hn::Max(value, least), most);
      hn::StoreU(hn::NearestInt(scaled(sample, DeepPass::kPatchWeight)),
                 hn::Rebind<std::int32_t, RowTag>(), weighted + i);
    }
    const std::ptrdiff_t first = places[at] + DeepPass::kPatchInset * (width + 1);
    const auto add = [&](std::int32_t* out, auto added) {
      hn::StoreU(hn::Add(hn::LoadU(d32, out), added), d32, out);
    };
    for (std::ptrdiff_t y = 0; y < DeepPass::kPatch; ++y) {
      const std::ptrdiff_t row = first + y * width;
      for (std::size_t k = 0; k < 3; ++k) {
        add(sums.samples[k].data() + row, hn::LoadU(d32, weighted + 16 * k + 4 * y));
      }
      add(sums.weights.data() + row, hn::Set(d32, DeepPass::kPatchWeight));
    }
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#endif  // VELMARA_FAST_BAYES_INL_H_
