// The search for the blocks most alike, for a run of blocks of a row of the grid side by side.
// Compiled once per instruction set.

#include <hwy/highway.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

#include "engine/deep/deep_pass.h"

#if defined(VELMARA_FAST_SEARCH_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMARA_FAST_SEARCH_INL_H_
#undef VELMARA_FAST_SEARCH_INL_H_
#else
#define VELMARA_FAST_SEARCH_INL_H_
#endif

HWY_BEFORE_NAMESPACE();
namespace velmara {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Blocks most alike to each of kMostColumns blocks of a row of the grid.
///
/// For one shift after another the squared differences of the whole run are summed over the eight
/// rows, in pairs of columns; the sum of a block is that of four pairs, and neighbours share two.
class BlockSearch {
 public:
  static constexpr int kMostColumns = 64;

  void run(const DeepPass& pass, int row, int columnBegin, int columnEnd) {
    const int y = DeepPass::kStep * row;
    const int width = pass.noisy.width;
    for (int i = 0; i < columnEnd - columnBegin; ++i) {
      std::fill(found_[i], found_[i] + DeepPass::kGroup, kNothing);
      found_[i][0] = -1;
      places_[i][0] =
          std::ptrdiff_t{y} * width + std::ptrdiff_t{DeepPass::kStep} * (columnBegin + i);
      std::int32_t* worst = worst_ + std::ptrdiff_t{2} * i;
      worst[0] = kNone;
      worst[1] = kNever;
    }
    const int shifts = pass.shifts();
    for (int i = 0; i < shifts; ++i) {
      const int dy = searchOrder(i);
      if (y + dy < 0 || y + dy > pass.noisy.height - 8) continue;
      for (int j = 0; j < shifts; ++j) {
        const int dx = searchOrder(j);
        if (dx == 0 && dy == 0) continue;
        // The columns whose blocks stay inside the picture.
        const int begin =
            std::max(columnBegin, (std::max(-dx, 0) + DeepPass::kStep - 1) / DeepPass::kStep);
        const int room = width - 8 - std::max(dx, 0);
        const int end = room < 0 ? 0 : std::min(columnEnd, room / DeepPass::kStep + 1);
        if (begin < end) {
          compare(pass, begin - columnBegin, end - begin, (i << 8) | j);
        }
      }
    }
    for (int i = 0; i < columnEnd - columnBegin; ++i) {
      for (int at = 1; at < DeepPass::kGroup; ++at) {
        const auto order = static_cast<int>(found_[i][at] & 0xFFFF);
        places_[i][at] = places_[i][0] + shiftOf(order, width);
      }
    }
  }

  const std::ptrdiff_t* placesOf(int i) const { return places_[i]; }

 private:
  static constexpr std::int32_t kNone = std::numeric_limits<std::int32_t>::max();
  static constexpr std::int64_t kNothing = std::numeric_limits<std::int64_t>::max();
  static constexpr std::int32_t kNever = std::numeric_limits<std::int32_t>::min();
  static constexpr int kSlack = 16;

  static std::ptrdiff_t shiftOf(int order, int width) {
    return std::ptrdiff_t{searchOrder(order >> 8)} * width + searchOrder(order & 0xFF);
  }

  void compare(const DeepPass& pass, int first, int count, int order) {
    const int width = pass.noisy.width;
    sumPairs(pass.compared.data() + places_[first][0], shiftOf(order, width), width, 2 * count + 2);
    const hn::CappedTag<std::int32_t, 8> d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    const std::int32_t* worst = worst_ + std::ptrdiff_t{2} * first;
    for (int i = 0; i < 2 * count; i += lanes) {
      const std::int32_t* pairs = pairs_ + i;
      const auto sum = hn::Add(hn::Add(hn::LoadU(d, pairs), hn::LoadU(d, pairs + 1)),
                               hn::Add(hn::LoadU(d, pairs + 2), hn::LoadU(d, pairs + 3)));
      std::uint8_t bits[8] = {};
      hn::StoreMaskBits(d, hn::Lt(sum, hn::LoadU(d, worst + i)), bits);
      if (HWY_LIKELY(bits[0] == 0)) continue;
      HWY_ALIGN std::int32_t sums[8];
      hn::Store(sum, d, sums);
      const int most = 2 * count - i;
      for (unsigned left = bits[0]; left != 0; left &= left - 1) {
        const int lane = std::countr_zero(left);
        if (lane < most) insert(first + (i + lane) / 2, sums[lane], order);
      }
    }
  }

  // Squared differences of `count` pairs of columns, summed over eight rows.
  void sumPairs(const std::int16_t* own, std::ptrdiff_t shift, std::ptrdiff_t width, int count) {
#if HWY_ARCH_X86 && HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128
    const hn::CappedTag<std::int16_t, 16> d16;
    const hn::RepartitionToWide<decltype(d16)> d32;
    const int lanes = static_cast<int>(hn::Lanes(d32));
    for (int i = 0; i < count; i += lanes, own += 2 * lanes) {
      auto sums = hn::Zero(d32);
      auto unused = hn::Zero(d32);
      const std::int16_t* at = own;
      for (int y = 0; y < 8; ++y, at += width) {
        const auto difference = hn::Sub(hn::LoadU(d16, at), hn::LoadU(d16, at + shift));
        // On this architecture the first sum takes neighbours, and all of them.
        sums = hn::ReorderWidenMulAccumulate(d32, difference, difference, sums, unused);
      }
      hn::StoreU(sums, d32, pairs_ + i);
    }
#else
    for (int i = 0; i < count; ++i) {
      std::int32_t sum = 0;
      for (int y = 0; y < 8; ++y) {
        for (int x = 2 * i; x < 2 * i + 2; ++x) {
          const std::int16_t* at = own + y * width + x;
          const std::int32_t difference = at[0] - at[shift];
          sum += difference * difference;
        }
      }
      pairs_[i] = sum;
    }
#endif
  }

  // Distance and order in one number, so that the first of equal distances comes first.
  void insert(int i, std::int32_t distance, int order) {
    const std::int64_t key = (std::int64_t{distance} << 16) | order;
    std::int64_t* found = found_[i];
    int at = DeepPass::kGroup - 1;
    for (; found[at - 1] > key; --at) found[at] = found[at - 1];
    found[at] = key;
    worst_[std::ptrdiff_t{2} * i] =
        static_cast<std::int32_t>(std::min<std::int64_t>(found[DeepPass::kGroup - 1] >> 16, kNone));
  }

  HWY_ALIGN std::int32_t pairs_[2 * kMostColumns + 2 + 2 * kSlack];
  // Every other lane is that of half a block more, which never wins.
  HWY_ALIGN std::int32_t worst_[2 * kMostColumns + kSlack];
  std::int64_t found_[kMostColumns][DeepPass::kGroup];
  std::ptrdiff_t places_[kMostColumns][DeepPass::kGroup];
};

}  // namespace HWY_NAMESPACE
}  // namespace velmara
HWY_AFTER_NAMESPACE();

#endif  // VELMARA_FAST_SEARCH_INL_H_
