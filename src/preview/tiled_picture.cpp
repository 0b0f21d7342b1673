#include "preview/tiled_picture.h"

namespace velmara {

std::vector<PictureTile> TiledPicture::tilesOver(const PixelRect& visible) {
  const PixelRect inside = intersection(visible, {0, 0, picture_.width(), picture_.height()});
  std::vector<PictureTile> tiles;
  if (inside.isEmpty()) return tiles;
  const int left = inside.x / kTileSide;
  const int top = inside.y / kTileSide;
  const PixelRect places{left, top, (inside.x + inside.width - 1) / kTileSide - left + 1,
                         (inside.y + inside.height - 1) / kTileSide - top + 1};
  renderMissing(places);
  for (int row = top; row < top + places.height; ++row) {
    for (int column = left; column < left + places.width; ++column) {
      const auto found = tiles_.find({row, column});
      if (found == tiles_.end()) continue;
      uses_.splice(uses_.begin(), uses_, found->second.use);
      tiles.push_back(found->second.tile);
    }
  }
  forgetBeyond(tiles.size());
  return tiles;
}

// What is missing is rendered in as few pieces as a look at the rows finds: a new view in one, a
// dragged one in a strip at the side and one above or below.
void TiledPicture::renderMissing(const PixelRect& places) {
  PixelRect piece;
  for (int row = places.y; row < places.y + places.height; ++row) {
    int first = places.x;
    int end = places.x + places.width;
    while (first < end && tiles_.contains({row, first})) ++first;
    while (first < end && tiles_.contains({row, end - 1})) --end;
    if (first == piece.x && end - first == piece.width) {
      ++piece.height;
      continue;
    }
    render(piece);
    piece = {first, row, end - first, 1};
  }
  render(piece);
}

PixelRect TiledPicture::rectOf(const PixelRect& places) const {
  return intersection({places.x * kTileSide, places.y * kTileSide, places.width * kTileSide,
                       places.height * kTileSide},
                      {0, 0, picture_.width(), picture_.height()});
}

void TiledPicture::render(const PixelRect& places) {
  if (places.isEmpty()) return;
  const PixelRect area = rectOf(places);
  const Bitmap whole = picture_.render(area);
  if (!whole.isValid()) return;
  for (int row = places.y; row < places.y + places.height; ++row) {
    for (int column = places.x; column < places.x + places.width; ++column) {
      const Place place{row, column};
      if (tiles_.contains(place)) continue;
      const PixelRect rect = rectOf({column, row, 1, 1});
      Bitmap bitmap =
          copiedPixels(whole, {rect.x - area.x, rect.y - area.y, rect.width, rect.height});
      if (!bitmap.isValid()) continue;
      bytes_ += bitmap.byteCount();
      uses_.push_front(place);
      tiles_.emplace(place, Entry{{rect, std::move(bitmap)}, uses_.begin()});
    }
  }
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
