#include "engine/deep/deep_areas.h"

#include <algorithm>

#include "engine/deep/deep_pass.h"

namespace velmara {
namespace {

// A smaller picture has nothing coarser to tell.
constexpr int kLeastSideToHalve = 64;
// A multiple of the step at the next smaller size as well.
constexpr int kGrid = 2 * OpponentPlanes::kStep;

// All steps, and the pixel at an edge that a smaller size was enlarged into without its neighbour.
constexpr int marginOf(int sizes) {
  return DeepPass::reach(DeepStep::kThreshold) + DeepPass::reach(DeepStep::kWiener) +
         (sizes == 1 ? DeepPass::reach(DeepStep::kBayes) : 1);
}

PixelRect between(int left, int top, int right, int bottom) {
  return {left, top, right - left, bottom - top};
}

PixelRect workedFor(const DeepArea& area, int margin) {
  const auto begin = [=](int at) { return std::max(at - margin, 0) / kGrid * kGrid; };
  const auto end = [=](int at, int side) {
    return std::min((at + margin + kGrid - 1) / kGrid * kGrid, side);
  };
  const PixelRect& asked = area.asked;
  return between(begin(asked.x), begin(asked.y), end(asked.x + asked.width, area.width),
                 end(asked.y + asked.height, area.height));
}

}  // namespace

std::vector<DeepArea> deepAreas(int width, int height, const PixelRect& part, int most) {
  DeepArea area{paddedSide(width), paddedSide(height), part, {}};
  std::vector<DeepArea> areas;
  for (int i = 0; i < most; ++i) {
    area.worked = workedFor(area, marginOf(most));
    areas.push_back(area);
    if (std::min(area.width, area.height) < kLeastSideToHalve) break;
    const PixelRect larger = area.worked;
    const auto end = [](int at, int side, int half) { return at == side ? half : at / 2; };
    const DeepArea whole{halvedSide(area.width), halvedSide(area.height), {}, {}};
    const int right = end(larger.x + larger.width, area.width, whole.width);
    const int bottom = end(larger.y + larger.height, area.height, whole.height);
    area = whole;
    area.asked = between(larger.x / 2, larger.y / 2, right, bottom);
  }
  return areas;
}

PixelRect enlarged(const PixelRect& rect, const DeepArea& smaller, const DeepArea& larger) {
  const auto end = [](int at, int side, int twice) { return at == side ? twice : 2 * at; };
  return between(2 * rect.x, 2 * rect.y, end(rect.x + rect.width, smaller.width, larger.width),
                 end(rect.y + rect.height, smaller.height, larger.height));
}

}  // namespace velmara
