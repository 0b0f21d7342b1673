#include "preview/tiled_picture.h"

namespace velmara {

std::vector<Tile> TiledPicture::tilesOver(const PixelRect& visible) {
  const PixelRect inside = intersection(visible, {0, 0, picture_.width(), picture_.height()});
  std::vector<Tile> tiles;
  if (inside.isEmpty()) return tiles;
  const int lastRow = (inside.y + inside.height - 1) / kTileSide;
  const int lastColumn = (inside.x + inside.width - 1) / kTileSide;
  for (int row = inside.y / kTileSide; row <= lastRow; ++row) {
    for (int column = inside.x / kTileSide; column <= lastColumn; ++column) {
      const Tile* tile = tileAt({row, column});
      if (tile != nullptr) tiles.push_back(*tile);
    }
  }
  forgetBeyond(tiles.size());
  return tiles;
}

const Tile* TiledPicture::tileAt(const Place& place) {
  const auto known = tiles_.find(place);
  if (known != tiles_.end()) {
    uses_.splice(uses_.begin(), uses_, known->second.use);
    return &known->second.tile;
  }
  const auto [row, column] = place;
  const PixelRect rect = intersection({column * kTileSide, row * kTileSide, kTileSide, kTileSide},
                                      {0, 0, picture_.width(), picture_.height()});
  Bitmap bitmap = picture_.render(rect);
  if (!bitmap.isValid()) return nullptr;
  bytes_ += bitmap.byteCount();
  uses_.push_front(place);
  const auto made = tiles_.emplace(place, Entry{{rect, std::move(bitmap)}, uses_.begin()});
  return &made.first->second.tile;
}

void TiledPicture::forgetBeyond(std::size_t inSight) {
  while (bytes_ > kKept && tiles_.size() > inSight) {
    const auto oldest = tiles_.find(uses_.back());
    bytes_ -= oldest->second.tile.bitmap.byteCount();
    tiles_.erase(oldest);
    uses_.pop_back();
  }
}

}  // namespace velmara
