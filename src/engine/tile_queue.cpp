#include "engine/tile_queue.h"

#include <algorithm>

namespace velmara {
namespace {

std::int64_t pixelsOf(const Tile& tile) {
  return std::int64_t{tile.xEnd - tile.xBegin} * std::int64_t{tile.yEnd - tile.yBegin};
}

}  // namespace

TileQueue::TileQueue(const FilterKernel& kernel, int width, const std::vector<RowRange>& bands)
    : width_(width),
      tileWidth_(std::max(1, kernel.tileWidth())),
      tileHeight_(std::max(1, kernel.tileHeight())),
      shares_(bands.size() > 1 ? 2 * static_cast<std::int64_t>(bands.size()) : 1),
      x_(width),
      y_(bands.front().begin) {
  for (const RowRange& rows : bands) {
    const std::int64_t pixels = std::int64_t{width} * (rows.end - rows.begin);
    bands_.push_back({rows, pixels});
    untakenPixels_ += pixels;
  }
}

std::optional<TileQueue::Piece> TileQueue::take() {
  const std::lock_guard lock(mutex_);
  if (untakenPixels_ == 0) return std::nullopt;
  if (x_ == width_) beginStrip();
  const Strip& strip = strips_.back();
  const Tile tile{x_, std::min(x_ + tileWidth_, width_), strip.yBegin, strip.yEnd};
  x_ = tile.xEnd;
  untakenPixels_ -= pixelsOf(tile);
  return Piece{tile, band_, strips_.size() - 1};
}

bool TileQueue::finish(const Piece& piece) {
  const std::lock_guard lock(mutex_);
  const std::int64_t pixels = pixelsOf(piece.tile);
  finished_.pixels += pixels;
  strips_[piece.strip].unfinishedPixels -= pixels;
  for (; finishedStrips_ < strips_.size(); ++finishedStrips_) {
    const Strip& strip = strips_[finishedStrips_];
    if (strip.unfinishedPixels > 0) break;
    finished_.rows += strip.yEnd - strip.yBegin;
  }
  return (bands_[piece.band].unfinishedPixels -= pixels) == 0;
}

TileQueue::Finished TileQueue::finished() const {
  const std::lock_guard lock(mutex_);
  return finished_;
}

// A strip is at most as high as the kernel's tiles, its tiles at most a share of what is left, and
// at least so much that the rows above it that a tile has to look at do not cost too much. The rest
// of the band is parted evenly.
void TileQueue::beginStrip() {
  constexpr std::int64_t kLeastHeight = 8;
  while (y_ == bands_[band_].rows.end) y_ = bands_[++band_].rows.begin;
  const std::int64_t share = untakenPixels_ / (std::int64_t{tileWidth_} * shares_);
  const std::int64_t most = std::min<std::int64_t>(std::max(share, kLeastHeight), tileHeight_);
  const std::int64_t rows = bands_[band_].rows.end - y_;
  const std::int64_t parts = (rows + most - 1) / most;
  const int height = static_cast<int>((rows + parts - 1) / parts);
  strips_.push_back({y_, y_ + height, std::int64_t{width_} * height});
  x_ = 0;
  y_ += height;
}

}  // namespace velmara
