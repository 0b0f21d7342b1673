#include "engine/band_run.h"

#include <memory>
#include <mutex>
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
      const FilterGeometry& geometry, const RunWatch& watch)
      : mainQueue_(*environment.mainQueue),
        watch_(watch),
        kernel_(kernel),
        buffers_(buffers),
        geometry_(geometry),
        tiles_(kernel, geometry.widthSrc, bandsOf(geometry.heightSrc)),
        filtersLeft_(kernel.mostTileFilters()) {}

  void start(TaskQueue& workers) {
    for (std::size_t i = 0; i < kBands; ++i) {
      workers.async([run = shared_from_this()] { run->work(); });
    }
    for (const RowRange& rows : bandsOf(geometry_.heightSrc)) {
      if (rows.begin == rows.end || geometry_.widthSrc == 0) completeBand();
    }
  }

  // Takes tiles until none is left. A task beyond the number of tile filters leaves them to others.
  void work() {
    if (filtersLeft_.fetch_sub(1) <= 0) return;
    std::unique_ptr<TileFilter> filter;
    while (const auto piece = tiles_.take()) {
      if (!stopped_) filterTile(filter, piece->tile);
      const bool wasLastOfBand = tiles_.finish(*piece);
      tell(false);
      if (wasLastOfBand) completeBand();
    }
  }

  bool wait() {
    done_.acquire();
    tell(true);
    return !stopped_;
  }

 private:
  void filterTile(std::unique_ptr<TileFilter>& filter, const Tile& tile) {
    if (filter == nullptr) filter = kernel_.makeTileFilter();
    if (filter != nullptr) filter->filter(tile);
    if (filter == nullptr || buffers_.isCancelled()) stopped_ = true;
  }

  // Tells what is done by now. Who finds another thread at it leaves it to that one, or else to the
  // end of the run.
  void tell(bool isEnd) {
    std::unique_lock lock(telling_, std::defer_lock);
    if (isEnd) {
      lock.lock();
    } else if (!lock.try_lock()) {
      return;
    }
    for (auto now = tiles_.finished(); now.pixels > told_.pixels && !stopped_;
         now = tiles_.finished()) {
      if (watch_.control != nullptr) {
        watch_.control->setProgress(static_cast<double>(now.pixels) / geometry_.widthSrc /
                                    geometry_.heightSrc);
      }
      if (watch_.rowsFinished && now.rows > told_.rows) tellRows(told_.rows, now.rows);
      told_ = now;
    }
  }

  void tellRows(int begin, int end) const {
    const std::size_t rowBytes = static_cast<std::size_t>(geometry_.widthDest) *
                                 static_cast<std::size_t>(geometry_.channelsDest);
    watch_.rowsFinished(buffers_.destBytes.data() + static_cast<std::size_t>(begin) * rowBytes,
                        begin, end - begin);
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
  RunWatch watch_;
  const FilterKernel& kernel_;
  FilterBuffers& buffers_;
  const FilterGeometry geometry_;
  TileQueue tiles_;
  std::atomic<int> filtersLeft_;
  std::atomic<bool> stopped_{false};  // Cancelled, or no memory to work in.
  std::mutex telling_;
  TileQueue::Finished told_;
  bool signalled_ = false;  // Only the checks use it, one after another.
  std::counting_semaphore<kBands> done_{0};
};

}  // namespace

bool runOneBand(const FilterKernel& kernel, FilterBuffers& buffers, const FilterGeometry& geometry,
                RowRange rows) {
  TileQueue tiles(kernel, geometry.widthSrc, {rows});
  std::unique_ptr<TileFilter> filter;
  bool ok = true;
  while (const auto piece = ok ? tiles.take() : std::nullopt) {
    if (filter == nullptr) filter = kernel.makeTileFilter();
    ok = filter != nullptr;
    if (ok) filter->filter(piece->tile);
    if (buffers.isCancelled()) ok = false;
  }
  ++buffers.completedSlices;
  return ok;
}

bool runBands(const EngineEnvironment& environment, const FilterKernel& kernel,
              FilterBuffers& buffers, const FilterGeometry& geometry, const RunWatch& watch) {
  const auto run = std::make_shared<Run>(environment, kernel, buffers, geometry, watch);
  run->start(*environment.workers);
  run->work();
  return run->wait();
}

}  // namespace velmara
