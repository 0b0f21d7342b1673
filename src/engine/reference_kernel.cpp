#include "engine/reference_kernel.h"

#include <algorithm>
#include <new>
#include <utility>

#include "engine/candidate_weights.h"
#include "engine/weighted_average.h"

namespace velmara {
namespace {

class ReferenceTileFilter final : public TileFilter {
 public:
  ReferenceTileFilter(const FilterGeometry& geometry, FilterBuffers& buffers)
      : geometry_(geometry),
        buffers_(buffers),
        source_(buffers.sourceBytes),
        ww_(static_cast<std::size_t>(geometry.D)),
        nw_(static_cast<std::size_t>(geometry.D)) {}

  void filter(const Tile& tile) override {
    const std::span<const double> table = buffers_.weightTable.entries;
    for (int y = tile.yBegin; y < tile.yEnd; ++y) {
      for (int x = tile.xBegin; x < tile.xEnd; ++x) {
        if (buffers_.isCancelled()) return;  // A pixel of large windows takes milliseconds.
        const double tweight = compareCandidates(source_, geometry_, table, x, y, ww_);
        normaliseWeights(table, ww_, tweight, geometry_.H, nw_);
        averageCandidates(source_, geometry_, nw_, x, y, pixelOf(x, y));
      }
    }
  }

 private:
  std::uint8_t* pixelOf(int x, int y) const {
    const std::int64_t stride = std::int64_t{geometry_.channelsDest} * geometry_.widthDest;
    return buffers_.destBytes.data() + y * stride + std::int64_t{x} * geometry_.channelsDest;
  }

  const FilterGeometry& geometry_;
  FilterBuffers& buffers_;
  SourceSamples source_;
  std::vector<std::int32_t> ww_;
  std::vector<double> nw_;
};

class ReferenceKernel final : public FilterKernel {
 public:
  ReferenceKernel(const FilterGeometry& geometry, FilterBuffers& buffers)
      : geometry_(geometry), buffers_(buffers) {}

  int tileWidth() const override { return 256; }
  int tileHeight() const override { return 4; }
  std::unique_ptr<TileFilter> makeTileFilter() const override try {
    return std::make_unique<ReferenceTileFilter>(geometry_, buffers_);
  } catch (const std::exception&) {  // Not enough memory, or more entries than a vector can hold.
    return nullptr;
  }

 private:
  const FilterGeometry& geometry_;
  FilterBuffers& buffers_;
};

}  // namespace

std::unique_ptr<FilterKernel> makeReferenceKernel(const FilterGeometry& geometry,
                                                  FilterBuffers& buffers) {
  return std::make_unique<ReferenceKernel>(geometry, buffers);
}

}  // namespace velmara
