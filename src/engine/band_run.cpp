#include "engine/band_run.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <semaphore>

namespace velmara {
namespace {

// The tiles of one band, counted row of tiles by row of tiles.
class BandTiles {
 public:
  BandTiles(const FilterKernel& kernel, int width, RowRange rows)
      : rows_(rows),
        width_(width),
        tileWidth_(std::max(1, kernel.tileWidth())),
        tileHeight_(std::max(1, kernel.tileHeight())),
        columns_((width + tileWidth_ - 1) / tileWidth_) {}

  std::int64_t count() const {
    const std::int64_t tileRows = (rows_.end - rows_.begin + tileHeight_ - 1) / tileHeight_;
    return tileRows * columns_;
  }
  Tile tile(std::int64_t index) const {
    const int x = static_cast<int>(index % columns_) * tileWidth_;
    const int y = rows_.begin + static_cast<int>(index / columns_) * tileHeight_;
    return {x, std::min(x + tileWidth_, width_), y, std::min(y + tileHeight_, rows_.end)};
  }

 private:
  RowRange rows_;
  int width_;
  int tileWidth_;
  int tileHeight_;
  int columns_;
};

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
        filtersLeft_(kernel.mostTileFilters()) {
    for (int i = 0; i < kBands; ++i) {
      Band& band = bands_[static_cast<std::size_t>(i)];
      band.tiles.emplace(kernel, width_, rowsOfBand(height_, i, kBands));
      band.left = band.tiles->count();
    }
  }

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
  struct Band {
    std::optional<BandTiles> tiles;
    std::atomic<std::int64_t> next{0};
    std::atomic<std::int64_t> left{0};
  };

  // The band of this task first, then what is left of the others. A task beyond the number of tile
  // filters leaves its band to them.
  void work(std::size_t counter) {
    if (bands_[counter].tiles->count() == 0) completeBand();
    if (filtersLeft_.fetch_sub(1) <= 0) return;
    std::unique_ptr<TileFilter> filter;
    for (std::size_t i = 0; i < kBands; ++i) {
      Band& band = bands_[(counter + i) % kBands];
      const std::int64_t count = band.tiles->count();
      while (true) {
        const std::int64_t index = band.next.fetch_add(1, std::memory_order_relaxed);
        if (index >= count) break;
        if (filter == nullptr && !failed_) filter = kernel_.makeTileFilter();
        if (filter == nullptr) failed_ = true;
        if (!failed_) filterTile(*filter, band.tiles->tile(index));
        if (band.left.fetch_sub(1, std::memory_order_acq_rel) == 1) completeBand();
      }
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
  std::array<Band, kBands> bands_;
  std::atomic<int> filtersLeft_;
  std::atomic<std::int64_t> pixelsDone_{0};
  std::atomic<bool> failed_{false};
  bool signalled_ = false;  // Only the checks use it, one after another.
  std::counting_semaphore<kBands> done_{0};
};

}  // namespace

bool runOneBand(const FilterKernel& kernel, FilterBuffers& buffers, const FilterGeometry& geometry,
                RowRange rows) {
  const BandTiles tiles(kernel, geometry.widthSrc, rows);
  const std::int64_t count = tiles.count();
  const std::unique_ptr<TileFilter> filter = count > 0 ? kernel.makeTileFilter() : nullptr;
  const bool ok = count == 0 || filter != nullptr;
  for (std::int64_t i = 0; ok && i < count; ++i) filter->filter(tiles.tile(i));
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
