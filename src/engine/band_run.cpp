#include "engine/band_run.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <semaphore>
#include <vector>

namespace velmara {
namespace {

std::vector<RowRange> bandsOf(int height) {
  std::vector<RowRange> bands;
  bands.reserve(kBands);
  for (int i = 0; i < kBands; ++i) bands.push_back(rowsOfBand(height, i, kBands));
  return bands;
}

/// Hands the pixels of a picture out in tiles, band after band.
///
/// Tiles lie side by side in strips, which go from the top to the bottom, so finished rows come in
/// that order. They are of the kernel's size as long as there is much left to do and get lower
/// toward the end: of several bands a tile is never more than a small share of what is left of them
/// all, so that whoever takes it ends with the others even if it is several times slower than they
/// are. Any thread may call.
class TileQueue {
 public:
  struct Piece {
    Tile tile;
    std::size_t band = 0;
    std::size_t strip = 0;
  };
  struct Finished {
    int rows = 0;  ///< Those from the top on of which every pixel is done.
    std::int64_t pixels = 0;
  };

  /// `bands` follow one another from the top to the bottom; they may be empty.
  TileQueue(const FilterKernel& kernel, int width, const std::vector<RowRange>& bands)
      : width_(width),
        tileWidth_(std::max(1, kernel.tileWidth())),
        tileHeight_(std::max(1, kernel.tileHeight())),
        shares_(bands.size() > 1 ? 2 * static_cast<std::int64_t>(bands.size()) : 1),
        x_(width),
        y_(bands.front().begin) {
    for (const RowRange& rows : bands) {
      bands_.push_back({rows, std::int64_t{width} * (rows.end - rows.begin)});
      untakenPixels_ += bands_.back().unfinishedPixels;
    }
    // No strip is lower than a row: from here on no memory is asked for.
    strips_.reserve(static_cast<std::size_t>(std::max(bands.back().end - bands.front().begin, 0)));
  }

  /// The next tile; nothing if all are taken.
  std::optional<Piece> take() {
    const std::lock_guard lock(mutex_);
    if (untakenPixels_ == 0) return std::nullopt;
    if (x_ == width_) beginStrip();
    const RowRange& rows = strips_.back().rows;
    const Tile tile{x_, std::min(x_ + tileWidth_, width_), rows.begin, rows.end};
    x_ = tile.xEnd;
    untakenPixels_ -= tile.pixels();
    return Piece{tile, band_, strips_.size() - 1};
  }

  /// Says that a tile is done. Whether it was the last of its band.
  bool finish(const Piece& piece) {
    const std::lock_guard lock(mutex_);
    const std::int64_t pixels = piece.tile.pixels();
    finished_.pixels += pixels;
    strips_[piece.strip].unfinishedPixels -= pixels;
    for (; finishedStrips_ < strips_.size(); ++finishedStrips_) {
      const Stretch& strip = strips_[finishedStrips_];
      if (strip.unfinishedPixels > 0) break;
      finished_.rows += strip.rows.end - strip.rows.begin;
    }
    return (bands_[piece.band].unfinishedPixels -= pixels) == 0;
  }

  Finished finished() const {
    const std::lock_guard lock(mutex_);
    return finished_;
  }

 private:
  struct Stretch {
    RowRange rows;
    std::int64_t unfinishedPixels = 0;
  };

  // A strip is at most as high as the kernel's tiles, its tiles at most a share of what is left,
  // and at least so much that the rows above it that a tile has to look at do not cost too much.
  // The rest of the band is parted evenly.
  void beginStrip() {
    constexpr std::int64_t kLeastHeight = 8;
    while (y_ == bands_[band_].rows.end) y_ = bands_[++band_].rows.begin;
    const std::int64_t share = untakenPixels_ / (std::int64_t{tileWidth_} * shares_);
    const std::int64_t most = std::min<std::int64_t>(std::max(share, kLeastHeight), tileHeight_);
    const std::int64_t rows = bands_[band_].rows.end - y_;
    const std::int64_t parts = (rows + most - 1) / most;
    const int height = static_cast<int>((rows + parts - 1) / parts);
    strips_.push_back({{y_, y_ + height}, std::int64_t{width_} * height});
    x_ = 0;
    y_ += height;
  }

  const int width_;
  const int tileWidth_;
  const int tileHeight_;
  const std::int64_t shares_;
  mutable std::mutex mutex_;
  std::vector<Stretch> bands_;
  std::vector<Stretch> strips_;  // Those handed out so far; the last may have tiles left.
  std::size_t band_ = 0;         // Whose tiles are handed out.
  int x_, y_;                    // Where the next tile and the next strip begin.
  std::int64_t untakenPixels_ = 0;
  std::size_t finishedStrips_ = 0;  // Those from the first on.
  Finished finished_;
};

// What the eight tasks, the checks and the waiting thread share. Tasks that come late find no tile
// left and touch neither kernel nor buffers, which the waiting thread may have given up by then.
// Once it has started, nothing may be thrown: others would be at the buffers still.
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
    const std::vector<RowRange> bands = bandsOf(geometry_.heightSrc);
    try {
      for (std::size_t i = 0; i < kBands; ++i) {
        workers.async([run = shared_from_this()] { run->work(); });
      }
    } catch (const std::exception&) {
      // Those there are do it, or the waiting thread alone.
    }
    for (const RowRange& rows : bands) {
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
    const bool isReady = filter != nullptr && (!watch_.awaitRows || watch_.awaitRows(tile.yEnd));
    if (isReady) filter->filter(tile);
    if (!isReady || buffers_.isCancelled()) stopped_ = true;
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

  void tellRows(int begin, int end) {
    const std::size_t rowBytes = static_cast<std::size_t>(geometry_.widthDest) *
                                 static_cast<std::size_t>(geometry_.channelsDest);
    try {
      watch_.rowsFinished(buffers_.destBytes.data() + static_cast<std::size_t>(begin) * rowBytes,
                          begin, end - begin);
    } catch (const std::exception&) {
      stopped_ = true;
    }
  }

  void completeBand() {
    const auto completed = ++buffers_.completedSlices;
    try {
      mainQueue_.async([run = shared_from_this()] { run->check(); });
    } catch (const std::exception&) {
      if (completed == kBands) done_.release();
    }
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
  std::atomic<bool> stopped_{false};  // Cancelled, or no memory to work in or for the rows.
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
