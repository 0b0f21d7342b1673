#include "engine/fast/fast_kernel.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <optional>
#include <thread>
#include <utility>

#include "engine/fast/fast_scratch.h"
#include "engine/fast/instruction_sets.h"
#include "engine/reference_kernel.h"

namespace velmara {
namespace {

std::atomic<std::int64_t> fastPixels{0};
std::atomic<std::int64_t> undecidedPixels{0};
std::atomic<std::int64_t> referencePixels{0};

class FastTileFilter final : public TileFilter {
 public:
  FastTileFilter(std::shared_ptr<const FastPlan> plan, std::unique_ptr<FastScratch> scratch)
      : plan_(std::move(plan)), scratch_(std::move(scratch)) {}

  void filter(const Tile& tile) override {
    undecidedPixels += filterTile(*plan_, *scratch_, tile);
    fastPixels += tile.pixels();
  }

 private:
  std::shared_ptr<const FastPlan> plan_;
  std::unique_ptr<FastScratch> scratch_;
};

class FastKernel final : public FilterKernel {
 public:
  explicit FastKernel(FastPlan plan) : plan_(std::make_shared<FastPlan>(std::move(plan))) {}

  int tileWidth() const override { return plan_->tileWidth; }
  int tileHeight() const override { return plan_->tileHeight; }
  int mostTileFilters() const override {
    constexpr std::size_t kMostBytes = 28U << 20U;
    // More than there are processors would only crowd out whoever encodes the rows meanwhile.
    const std::size_t most = std::min<std::size_t>(kMostBytes / FastScratch::bytesFor(*plan_),
                                                   std::thread::hardware_concurrency());
    return static_cast<int>(std::max<std::size_t>(most, 1));
  }
  std::unique_ptr<TileFilter> makeTileFilter() const override try {
    auto scratch = FastScratch::allocate(*plan_);
    if (scratch == nullptr) return nullptr;
    return std::make_unique<FastTileFilter>(plan_, std::move(scratch));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }

 private:
  std::shared_ptr<const FastPlan> plan_;
};

std::optional<FastPlan> boundedPlan(const FilterGeometry& geometry, FilterBuffers& buffers) {
  constexpr double kLargestWeightError = 1e-5;
  useInstructionSetOfEnvironment();
  auto plan = makeFastPlan(geometry, buffers);
  if (!plan) return std::nullopt;
  const double error = weightErrorOf(plan->weight, plan->table.data(), buffers.weightTable.cutOff);
  if (!(error <= kLargestWeightError)) return std::nullopt;
  plan->bound = decisionBound(plan->s, error);
  plan->exactSum = exactWeightSum(*plan, error);
  return plan;
}

}  // namespace

std::unique_ptr<FilterKernel> makeKernel(KernelChoice choice, const FilterGeometry& geometry,
                                         FilterBuffers& buffers) try {
  // Nothing is read for a picture without rows or of a kind that is not filtered: it has no source.
  const bool hasWork = geometry.heightSrc > 0 && isFilterable(geometry);
  if (hasWork && choice == KernelChoice::kFast) {
    if (auto kernel = makeFastKernel(geometry, buffers)) return kernel;
  }
  referencePixels += std::int64_t{geometry.widthSrc} * geometry.heightSrc;
  return makeReferenceKernel(geometry, buffers);
} catch (const std::bad_alloc&) {
  return nullptr;
}

std::unique_ptr<FilterKernel> makeFastKernel(const FilterGeometry& geometry,
                                             FilterBuffers& buffers) {
  auto plan = boundedPlan(geometry, buffers);
  return plan ? std::make_unique<FastKernel>(std::move(*plan)) : nullptr;
}

std::unique_ptr<FilterKernel> makeUndecidedKernel(const FilterGeometry& geometry,
                                                  FilterBuffers& buffers) {
  auto plan = boundedPlan(geometry, buffers);
  if (!plan) return nullptr;
  plan->decides = false;
  plan->exactSum = 1.0F;
  return std::make_unique<FastKernel>(std::move(*plan));
}

KernelStatistics kernelStatistics() {
  return {fastPixels, undecidedPixels, referencePixels};
}

}  // namespace velmara
