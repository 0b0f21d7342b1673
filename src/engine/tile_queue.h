#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

#include "engine/filter_kernel.h"

namespace velmara {

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

  /// `bands` follow one another from the top to the bottom; they may be empty.
  TileQueue(const FilterKernel& kernel, int width, const std::vector<RowRange>& bands);

  /// The next tile; nothing if all are taken.
  std::optional<Piece> take();
  /// Says that a tile is done. Whether it was the last of its band.
  bool finish(const Piece& piece);

  struct Finished {
    int rows = 0;  ///< Those from the top on of which every pixel is done.
    std::int64_t pixels = 0;
  };
  Finished finished() const;

 private:
  struct Band {
    RowRange rows;
    std::int64_t unfinishedPixels = 0;
  };
  struct Strip {
    int yBegin = 0, yEnd = 0;
    std::int64_t unfinishedPixels = 0;
  };

  void beginStrip();

  const int width_;
  const int tileWidth_;
  const int tileHeight_;
  const std::int64_t shares_;
  mutable std::mutex mutex_;
  std::vector<Band> bands_;
  std::vector<Strip> strips_;  // Those handed out so far; the last may have tiles left.
  std::size_t band_ = 0;       // Whose tiles are handed out.
  int x_, y_;                  // Where the next tile and the next strip begin.
  std::int64_t untakenPixels_ = 0;
  std::size_t finishedStrips_ = 0;  // Those from the first on.
  Finished finished_;
};

}  // namespace velmara
