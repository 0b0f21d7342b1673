#include "engine/band_run.h"

#include <memory>
#include <optional>
#include <semaphore>
#include <vector>

#include "engine/tile_queue.h"

namespace velmara {
namespace {

std::vector<RowRange> bandsOf(int height) {
  std::vector<RowRange> bands;
  bands.reserve(kBands);
  for (int i = 0; i < kBands; ++i) bands.push_back(rowsOfBand(height, i, kBands));
  return bands;
}

// What the eight tasks, the checks and the waiting thread share. Tasks that come late find no tile
// left and touch neither kernel nor buffers, which the waiting thread may have given up by then.
class Run : public std::enable_shared_from_this<Run> {
 public:
  Run(const EngineEnvironment& environment, const FilterKernel& kernel, FilterBuffers& buffers,
      const FilterGeometry& geometry)
      : mainQueue_(*environment.mainQueue),
        progress_(environment.progress),
        kernel_(kernel),
        buffers_(buffers),
        width_(geometry.widthSrc),
        height_(geometry.heightSrc),
        tiles_(kernel, width_, bandsOf(height_)),
        filtersLeft_(kernel.mostTileFilters()) {}

  void start(TaskQueue& workers) {
    for (std::size_t i = 0; i < kBands; ++i) {
      workers.async([run = shared_from_this(), i] { run->work(i); });
    }
  }
  bool wait() {
    done_.acquire();
    return !failed_;
  }

 private:
  // The band of this task first, then what is left of the others. A task beyond the number of tile
  // filters leaves its band to them.
  void work(std::size_t counter) {
    const RowRange rows = rowsOfBand(height_, static_cast<int>(counter), kBands);
    if (rows.begin == rows.end || width_ == 0) completeBand();
    if (filtersLeft_.fetch_sub(1) <= 0) return;
    std::unique_ptr<TileFilter> filter;
    while (const auto piece = tiles_.take(counter)) {
      if (filter == nullptr && !failed_) filter = kernel_.makeTileFilter();
      if (filter == nullptr) failed_ = true;
      if (!failed_) filterTile(*filter, piece->tile);
      if (tiles_.finish(*piece)) completeBand();
    }
  }

  void filterTile(TileFilter& filter, const Tile& tile) {
    filter.filter(tile);
    if (!progress_) return;
    const std::int64_t pixels =
        std::int64_t{tile.xEnd - tile.xBegin} * std::int64_t{tile.yEnd - tile.yBegin};
    progress_((pixelsDone_ += pixels) / width_, height_);
  }

  void completeBand() {
    ++buffers_.completedSlices;
    mainQueue_.async([run = shared_from_this()] { run->check(); });
  }

  void check() {
    if (signalled_) return;
    if (buffers_.completedSlices != kBands) return;
    signalled_ = true;
    done_.release();
  }

  TaskQueue& mainQueue_;
  std::function<void(std::int64_t, std::int64_t)> progress_;
  const FilterKernel& kernel_;
  FilterBuffers& buffers_;
  int width_;
  int height_;
  TileQueue tiles_;
  std::atomic<int> filtersLeft_;
  std::atomic<std::int64_t> pixelsDone_{0};
  std::atomic<bool> failed_{false};
  bool signalled_ = false;  // Only the checks use it, one after another.
  std::counting_semaphore<kBands> done_{0};
};

}  // namespace

bool runOneBand(const FilterKernel& kernel, FilterBuffers& buffers, const FilterGeometry& geometry,
                RowRange rows) {
  TileQueue tiles(kernel, geometry.widthSrc, {rows});
  std::unique_ptr<TileFilter> filter;
  bool ok = true;
  while (const auto piece = ok ? tiles.take(0) : std::nullopt) {
    if (filter == nullptr) filter = kernel.makeTileFilter();
    ok = filter != nullptr;
    if (ok) filter->filter(piece->tile);
  }
  ++buffers.completedSlices;
  return ok;
}

bool runBands(const EngineEnvironment& environment, const FilterKernel& kernel,
              FilterBuffers& buffers, const FilterGeometry& geometry) {
  const auto run = std::make_shared<Run>(environment, kernel, buffers, geometry);
  run->start(*environment.workers);
  return run->wait();
}

}  // namespace velmara
