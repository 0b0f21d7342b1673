#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

#include "engine/filter_kernel.h"

namespace velmara {

/// Hands the pixels of a picture out in tiles, from several bands at a time.
///
/// Tiles are of the kernel's size as long as there is much left to do and get lower toward the end:
/// of several bands a tile is never more than a small share of what is left of them all, so that
/// whoever takes it ends with the others even if it is several times slower than they are. Any
/// thread may call.
class TileQueue {
 public:
  struct Piece {
    Tile tile;
    std::size_t band = 0;
  };

  TileQueue(const FilterKernel& kernel, int width, const std::vector<RowRange>& bands);

  /// The next tile of this band or, if all of its are taken, of those after it, the first following
  /// the last; nothing if all tiles of all bands are taken.
  std::optional<Piece> take(std::size_t band);
  /// Says that a tile is done. Whether it was the last of its band.
  bool finish(const Piece& piece);

 private:
  // A band is handed out column by column, each from the top to the bottom.
  struct Band {
    RowRange rows;
    int x = 0, y = 0;  // Where the next tile begins; x is the picture's width if all are taken.
    std::int64_t unfinishedPixels = 0;
  };

  int heightOfNextTile(const Band& band) const;
  const int width_;
  const int tileWidth_;
  const int tileHeight_;
  const std::int64_t shares_;
  std::mutex mutex_;
  std::vector<Band> bands_;
  std::int64_t untakenPixels_ = 0;
};

}  // namespace velmara
