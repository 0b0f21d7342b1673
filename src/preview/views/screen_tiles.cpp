#include "preview/views/screen_tiles.h"

#include <utility>

namespace velmara {
namespace {

constexpr int kKeptKilobytes = 64 * 1024;

int kilobytesOf(const QImage& image) {
  return static_cast<int>(image.sizeInBytes() / 1024) + 1;
}

}  // namespace

ScreenTiles::ScreenTiles(ScaledPicture picture, ScreenColors colors)
    : tiles_(std::move(picture)), colors_(std::move(colors)), converted_(kKeptKilobytes) {}

std::vector<ScreenTile> ScreenTiles::imagesOver(const PixelRect& visible) {
  std::vector<ScreenTile> images;
  for (const PictureTile& tile : tiles_.tilesOver(visible)) {
    images.push_back({QPoint(tile.rect.x, tile.rect.y), imageOf(tile)});
  }
  return images;
}

QImage ScreenTiles::imageOf(const PictureTile& tile) {
  const QPair<int, int> place(tile.rect.x, tile.rect.y);
  if (const QImage* known = converted_.object(place)) return *known;
  const QImage image = colors_.imageFor(tile.bitmap);
  converted_.insert(place, new QImage(image), kilobytesOf(image));
  return image;
}

}  // namespace velmara
