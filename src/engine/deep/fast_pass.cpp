#include <array>

#include "engine/deep/deep_pass.h"
#include "engine/deep/group_shrinkage.h"
#include "engine/fast/instruction_sets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/deep/fast_pass.cpp"
#include <hwy/foreach_target.h>  // Compiles what follows once per instruction set.
#include <hwy/highway.h>

#if HWY_TARGET != HWY_SCALAR
#include "engine/deep/fast_bayes-inl.h"
#include "engine/deep/fast_block-inl.h"
#include "engine/deep/fast_search-inl.h"
#endif

HWY_BEFORE_NAMESPACE();
namespace velmara {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

void addBlocksOfRow(const DeepPass& pass, int row, int columnBegin, int columnEnd,
                    BlockSums& sums) {
  addBlocksPlainly(pass, row, columnBegin, columnEnd, sums);
}

#else

// The blocks of a stack, plane by plane.
using Stack = std::array<std::array<Block, DeepPass::kGroup>, 3>;

HWY_INLINE void transformColumn(RowVector* x) {
  for (std::size_t half = 1; half < DeepPass::kGroup; half *= 2) {
    for (std::size_t i = 0; i < DeepPass::kGroup; ++i) {
      if ((i & half) != 0) continue;
      const auto a = x[i];
      const auto b = x[i + half];
      x[i] = hn::Add(a, b);
      x[i + half] = hn::Sub(a, b);
    }
  }
  for (std::size_t i = 0; i < DeepPass::kGroup; ++i) x[i] = scaled(x[i], 0.25F);
}

// Transforms along the stack, shrinks and transforms back, a column of coefficients at a time.
// Returns how much noise was kept, as the reference does.
template <bool kGuided>
float shrinkPlane(std::array<Block, DeepPass::kGroup>& noisy,
                  const std::array<Block, DeepPass::kGroup>& guide, const Block& limits) {
  const RowTag d;
  RowVector kept[kRowParts];
  for (auto& part : kept) part = hn::Zero(d);
  const auto one = hn::Set(d, 1.0F);
  for (std::size_t i = 0; i < 64; i += kRowLanes) {
    auto& sum = kept[i % 8 / kRowLanes];
    const auto limit = hn::LoadU(d, &limits[i]);
    RowVector x[DeepPass::kGroup];
    for (std::size_t at = 0; at < DeepPass::kGroup; ++at) x[at] = hn::LoadU(d, &noisy[at][i]);
    transformColumn(x);
    if constexpr (kGuided) {
      RowVector g[DeepPass::kGroup];
      for (std::size_t at = 0; at < DeepPass::kGroup; ++at) g[at] = hn::LoadU(d, &guide[at][i]);
      transformColumn(g);
      for (std::size_t at = 0; at < DeepPass::kGroup; ++at) {
        const auto energy = hn::Mul(g[at], g[at]);
        const auto weight = hn::Div(energy, hn::Add(energy, limit));
        x[at] = hn::Mul(x[at], weight);
        sum = hn::Add(sum, hn::Mul(weight, weight));
      }
    } else {
      for (std::size_t at = 0; at < DeepPass::kGroup; ++at) {
        auto isKept = hn::Gt(hn::Mul(x[at], x[at]), limit);
        if (i == 0 && at == 0) isKept = hn::Or(isKept, hn::FirstN(d, 1));
        x[at] = hn::IfThenElseZero(isKept, x[at]);
        sum = hn::Add(sum, hn::IfThenElseZero(isKept, one));
      }
    }
    transformColumn(x);
    for (std::size_t at = 0; at < DeepPass::kGroup; ++at) hn::StoreU(x[at], d, &noisy[at][i]);
  }
  HWY_ALIGN float lanes[8];
  for (std::size_t part = 0; part < kRowParts; ++part) {
    hn::StoreU(kept[part], d, lanes + part * kRowLanes);
  }
  return ((lanes[0] + lanes[4]) + (lanes[2] + lanes[6])) +
         ((lanes[1] + lanes[5]) + (lanes[3] + lanes[7]));
}

void addBlock(const Block& block, float weight, std::ptrdiff_t width, std::int32_t* samples) {
  const RowTag d;
  const hn::Rebind<std::int32_t, RowTag> d32;
  const auto most = hn::Set(d, DeepPass::kMostSample);
  const auto least = hn::Set(d, -DeepPass::kMostSample);
  RowVector rows[kRowParts][8];
  fastInvertCosines(block, rows);
  for (std::size_t y = 0; y < 8; ++y, samples += width) {
    for (std::size_t part = 0; part < kRowParts; ++part) {
      const auto sample = hn::Min(hn::Max(rows[part][y], least), most);
      const auto weighted = hn::NearestInt(scaled(sample, weight));
      std::int32_t* out = samples + part * kRowLanes;
      hn::StoreU(hn::Add(hn::LoadU(d32, out), weighted), d32, out);
    }
  }
}

void addWeight(std::int32_t weight, std::ptrdiff_t width, std::int32_t* weights) {
  const hn::CappedTag<std::int32_t, 8> d;
  const auto added = hn::Set(d, weight);
  for (std::size_t y = 0; y < 8; ++y, weights += width) {
    for (std::size_t x = 0; x < 8; x += hn::Lanes(d)) {
      hn::StoreU(hn::Add(hn::LoadU(d, weights + x), added), d, weights + x);
    }
  }
}

template <bool kGuided>
void addStack(const DeepPass& pass, const std::ptrdiff_t* places, Stack& noisy, Stack& guide,
              BlockSums& sums) {
  const std::ptrdiff_t width = pass.noisy.width;
  std::array<float, 3> sumsOfMeans = {};
  for (std::size_t k = 0; k < 3; ++k) {
    for (std::size_t at = 0; at < DeepPass::kGroup; ++at) {
      fastCosinesOf(pass.noisy.planes[k].data() + places[at], width, noisy[k][at]);
      if (kGuided) fastCosinesOf(pass.guide->planes[k].data() + places[at], width, guide[k][at]);
      sumsOfMeans[k] += (kGuided ? guide : noisy)[k][at][0];
    }
  }
  const GroupLimits limits(pass, sumsOfMeans);
  float kept = 0.0F;
  for (std::size_t k = 0; k < 3; ++k) {
    const float keptOfPlane = shrinkPlane<kGuided>(noisy[k], guide[k], limits.of(k));
    if (k == 0) kept = keptOfPlane;
  }
  const float weight = groupWeight(kept);
  for (std::size_t at = 0; at < DeepPass::kGroup; ++at) {
    for (std::size_t k = 0; k < 3; ++k) {
      addBlock(noisy[k][at], weight, width, sums.samples[k].data() + places[at]);
    }
    addWeight(static_cast<std::int32_t>(weight), width, sums.weights.data() + places[at]);
  }
}

void addBlocksOfRow(const DeepPass& pass, int row, int columnBegin, int columnEnd,
                    BlockSums& sums) {
  BlockSearch search;
  HWY_ALIGN Stack noisy;
  HWY_ALIGN Stack guide;
  for (int begin = columnBegin; begin < columnEnd; begin += BlockSearch::kMostColumns) {
    const int end = std::min(begin + BlockSearch::kMostColumns, columnEnd);
    search.run(pass, row, begin, end);
    for (int i = 0; i < end - begin; ++i) {
      const std::ptrdiff_t* places = search.placesOf(i);
      switch (pass.step) {
        case DeepStep::kThreshold:
          addStack<false>(pass, places, noisy, guide, sums);
          break;
        case DeepStep::kWiener:
          addStack<true>(pass, places, noisy, guide, sums);
          break;
        case DeepStep::kBayes:
          fastAddPatches(pass, places, sums);
          break;
      }
    }
  }
}

#endif  // HWY_TARGET == HWY_SCALAR

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace velmara {
namespace {

HWY_EXPORT(addBlocksOfRow);

}  // namespace

void addBlocks(const DeepPass& pass, int row, int columnBegin, int columnEnd, BlockSums& sums) {
  HWY_DYNAMIC_DISPATCH(addBlocksOfRow)(pass, row, columnBegin, columnEnd, sums);
}

}  // namespace velmara

#endif  // HWY_ONCE
