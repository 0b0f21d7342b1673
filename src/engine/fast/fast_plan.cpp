#include "engine/fast/fast_plan.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "engine/reference_kernel.h"

namespace velmara {
namespace {

constexpr std::uint32_t kLargestNarrow = 65535;

bool isTheFormula(const WeightTable& table, int channels) {
  return table.entries.size() == static_cast<std::size_t>(channels) * 65536 && table.cutOff >= 1 &&
         table.cutOff < static_cast<std::int64_t>(table.entries.size()) &&
         std::isfinite(table.offset);
}

WeightFunction weightFunctionOf(const WeightTable& table) {
  constexpr double kLog2OfE = 1.4426950408889634;
  WeightFunction weight;
  const double scale = table.coefficient * kLog2OfE;
  if (std::isfinite(scale) && std::abs(scale) < 1e6) {
    weight.scale = static_cast<float>(scale);
    weight.bias = static_cast<float>(-table.offset * scale);
  } else {
    weight.scale = -1.0F;  // The table ends at once; only distance 0 is ever asked for.
  }
  weight.cut = static_cast<float>(table.cutOff);
  return weight;
}

// The shifts downward and, within the row, to the right serve two candidates each; those at the
// left and upper edge of an even window have no opposite and serve themselves alone.
void planShifts(FastPlan& plan) {
  const int first = -plan.sr;
  const int last = plan.s - 1 - plan.sr;
  const auto isInside = [&](int dx, int dy) {
    return dx >= first && dx <= last && dy >= first && dy <= last;
  };
  const auto slotOf = [&](int dx, int dy) -> CandidateSlot& {
    const std::int64_t row = dy + plan.sr;
    return plan.slots[static_cast<std::size_t>(row * plan.s + dx + plan.sr)];
  };
  plan.slots.assign(static_cast<std::size_t>(plan.s) * static_cast<std::size_t>(plan.s), {});
  for (int dy = first; dy <= last; ++dy) {
    for (int dx = first; dx <= last; ++dx) {
      const bool hasOpposite = plan.sharesShifts && isInside(-dx, -dy);
      const bool isForward = dy > 0 || (dy == 0 && dx > 0);
      if ((dx == 0 && dy == 0) || (hasOpposite && !isForward)) continue;
      SearchShift shift;
      shift.dx = dx;
      shift.dy = dy;
      shift.reversed = hasOpposite;
      shift.rows = hasOpposite ? dy + 1 : 1;
      shift.firstRow = plan.weightRows;
      const int index = static_cast<int>(plan.shifts.size());
      slotOf(dx, dy) = {index, false};
      if (hasOpposite) slotOf(-dx, -dy) = {index, true};
      plan.lead = std::max(plan.lead, shift.lead());
      plan.weightRows += static_cast<std::size_t>(shift.rows);
      plan.shifts.push_back(shift);
    }
  }
}

// Tiles are as wide as keeps their rows of weights in a processor's second cache, and so that the
// rows of column sums, up to sr + t - 1 longer, fill whole vectors. They are so high that the rows
// above a tile, which are compared once more, do not matter.
void planTiles(FastPlan& plan) {
  constexpr std::size_t kCacheBytes = std::size_t{640} * 1024;
  constexpr std::size_t kLongestVector = 32;
  constexpr int kTileHeight = 256;
  const std::size_t elementBytes =
      sizeof(float) + (plan.narrow ? sizeof(std::uint16_t) : sizeof(std::uint32_t));
  const std::size_t columns =
      std::clamp<std::size_t>(
          kCacheBytes / std::max<std::size_t>(plan.weightRows * elementBytes, 1), 96, 256) /
      kLongestVector * kLongestVector;
  const FilterGeometry& g = plan.geometry;
  plan.tileWidth =
      std::min(g.widthSrc, static_cast<int>(columns) - (plan.s - 1) / 2 - std::max(plan.t - 1, 0));
  plan.tileHeight = kTileHeight;
  plan.margin = plan.channels == 1 ? std::max(plan.patchSlip * std::max(plan.t - 1, 0),
                                              plan.averageSlip * (plan.s - 1))
                                   : 0;
  const auto width = static_cast<std::size_t>(plan.tileWidth);
  const auto reach = static_cast<std::size_t>(plan.sr);
  plan.sourceColumns = static_cast<std::size_t>(plan.margin) + width + 2 * reach +
                       static_cast<std::size_t>(plan.t) + kRowSlack;
  plan.distanceColumns = width + reach + static_cast<std::size_t>(plan.t) + kRowSlack;
  plan.sourceRows = 2 * plan.sr + std::max(plan.t, 1) + 1;
}

template <class IndexOf>
bool agrees(const IndexDivider& divider, const IndexOf& indexOf, std::int64_t cutOff) {
  for (std::uint32_t e = 0; e <= kLargestNarrow; ++e) {
    const std::uint32_t sum = std::min(e + divider.increment, kLargestNarrow);
    const std::uint32_t index = sum * divider.multiplier >> 16 >> divider.shift;
    const std::uint32_t wanted = indexOf(e);
    if (wanted < cutOff ? index != wanted : index < cutOff) return false;
  }
  return true;
}

// As the reference adds them up.
void fillFlatMeans(FastPlan& plan) {
  double total = 0.0;
  for (std::int64_t i = 0; i < plan.geometry.D; ++i) total += plan.table[0];
  const double weight = plan.table[0] * (1.0 / total);
  for (std::size_t sample = 0; sample < plan.flatMeans.size(); ++sample) {
    const double product = static_cast<double>(sample) * weight;
    double sum = 0.0;
    for (std::int64_t i = 0; i < plan.geometry.D; ++i) sum += product;
    plan.flatMeans[sample] = truncatedSample(sum);
  }
}

}  // namespace

std::optional<IndexDivider> exactDivider(int t, std::int64_t cutOff) {
  if (t == 0) return IndexDivider{};
  const auto area = static_cast<std::uint32_t>(t * t);
  const double reciprocal = 1.0 / static_cast<double>(area);
  const auto indexOf = [&](std::uint32_t e) {
    return static_cast<std::uint32_t>(static_cast<double>(e) * reciprocal);
  };
  if (indexOf(kLargestNarrow) < cutOff) return std::nullopt;
  if (t == 1) return IndexDivider{0, 0, 0, true};
  // A multiplier rounded up, or one rounded down with a distance one larger.
  for (int shift = 15; shift >= 0; --shift) {
    const std::uint64_t power = std::uint64_t{1} << (16 + shift);
    for (const std::uint32_t increment : {0U, 1U}) {
      const std::uint64_t multiplier = (power + (increment == 0 ? area - 1 : 0)) / area;
      if (multiplier > kLargestNarrow) continue;
      const IndexDivider divider{static_cast<std::uint16_t>(increment),
                                 static_cast<std::uint16_t>(multiplier), shift, false};
      if (agrees(divider, indexOf, cutOff)) return divider;
    }
  }
  return std::nullopt;
}

std::optional<FastPlan> makeFastPlan(const FilterGeometry& geometry, FilterBuffers& buffers) {
  if (geometry.searchWinSize < 1 || geometry.searchWinSize > kLargestSearchWindow ||
      geometry.templateWinSize > kLargestTemplate || geometry.widthSrc < 1 ||
      !isTheFormula(buffers.weightTable, geometry.channelsSrc)) {
    return std::nullopt;
  }
  FastPlan plan;
  plan.geometry = geometry;
  plan.source = buffers.sourceBytes.first(
      static_cast<std::size_t>(geometry.sourceStride() * geometry.heightIm));
  plan.dest = buffers.destBytes;
  plan.table = buffers.weightTable.entries;
  plan.control = buffers.control;
  plan.channels = geometry.channelsSrc;
  plan.t = geometry.templateWinSize;
  plan.s = geometry.searchWinSize;
  plan.sr = geometry.sr;
  plan.tr = geometry.tr;
  plan.tdiv = plan.t == 0 ? 0.0 : geometry.tdiv;
  plan.patchSlip = static_cast<int>(geometry.sourceStride() - geometry.patchRowStep());
  plan.averageSlip = static_cast<int>(geometry.sourceStride() - geometry.averageRowStep());
  plan.weight = weightFunctionOf(buffers.weightTable);

  const auto divider = exactDivider(plan.t, buffers.weightTable.cutOff);
  plan.narrow = divider.has_value();
  if (plan.narrow) plan.divider = *divider;
  constexpr int kMostRowsKept = 8;
  constexpr int kLargestShared = 31;
  plan.sharesShifts = plan.s <= kLargestShared;
  plan.keepsSquares =
      plan.channels == 3 && plan.t >= 2 && plan.t <= kMostRowsKept && plan.sharesShifts;

  planShifts(plan);
  planTiles(plan);
  fillFlatMeans(plan);
  return plan;
}

float decisionBound(int searchWinSize, double weightError) {
  const double u = std::ldexp(1.0, -24);
  const double roundings = (2.0 * searchWinSize + 1.0) * u;
  const double rho = (1.0 + weightError) * (1.0 + roundings / (1.0 - roundings)) - 1.0;
  const double bound = 256.0 * rho / (1.0 - rho) + 128.0 * (2.0 * u + u * u) + 256.0 * u + 1e-9;
  return static_cast<float>(1.001 * bound);  // A little more, for the roundings of this formula.
}

float exactWeightSum(const FastPlan& plan, double weightError) {
  const auto candidates = static_cast<double>(plan.geometry.D);
  if (!std::has_single_bit(static_cast<std::uint64_t>(plan.geometry.D))) return 1.0F;
  if (plan.bound * 2.0 * candidates >= 1.0) return 1.0F;
  // No roundings of weights and sums make up for one weight that is less than 1.
  const double roundings = (2.0 * plan.s + 1.0) * std::ldexp(candidates, -24);
  const auto below = std::ranges::find_if(plan.table, [](double weight) { return weight < 1.0; });
  const bool isSeen = below == plan.table.end() || 1.0 - *below > 2.0 * weightError + roundings;
  return isSeen ? static_cast<float>(candidates) : 1.0F;
}

}  // namespace velmara
