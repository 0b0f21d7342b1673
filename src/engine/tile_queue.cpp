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
      shares_(bands.size() > 1 ? 2 * static_cast<std::int64_t>(bands.size()) : 1) {
  for (const RowRange& rows : bands) {
    const std::int64_t pixels = std::int64_t{width} * (rows.end - rows.begin);
    bands_.push_back({rows, pixels > 0 ? 0 : width, rows.begin, pixels});
    untakenPixels_ += pixels;
  }
}

std::optional<TileQueue::Piece> TileQueue::take(std::size_t band) {
  const std::lock_guard lock(mutex_);
  for (std::size_t i = 0; i < bands_.size(); ++i) {
    const std::size_t index = (band + i) % bands_.size();
    Band& from = bands_[index];
    if (from.x >= width_) continue;
    const Tile tile{from.x, std::min(from.x + tileWidth_, width_), from.y,
                    from.y + heightOfNextTile(from)};
    from.y = tile.yEnd;
    if (from.y == from.rows.end) {
      from.y = from.rows.begin;
      from.x = tile.xEnd;
    }
    untakenPixels_ -= pixelsOf(tile);
    return Piece{tile, index};
  }
  return std::nullopt;
}

bool TileQueue::finish(const Piece& piece) {
  const std::lock_guard lock(mutex_);
  std::int64_t& unfinished = bands_[piece.band].unfinishedPixels;
  unfinished -= pixelsOf(piece.tile);
  return unfinished == 0;
}

// At most the kernel's height, at most a share of what is left, and at least so much that the rows
// above it that a tile has to look at do not cost too much. The rest of the column is parted
// evenly.
int TileQueue::heightOfNextTile(const Band& band) const {
  constexpr std::int64_t kLeastHeight = 8;
  const std::int64_t share = untakenPixels_ / (std::int64_t{tileWidth_} * shares_);
  const std::int64_t most = std::min<std::int64_t>(std::max(share, kLeastHeight), tileHeight_);
  const std::int64_t rows = band.rows.end - band.y;
  const std::int64_t parts = (rows + most - 1) / most;
  return static_cast<int>((rows + parts - 1) / parts);
}

}  // namespace velmara
