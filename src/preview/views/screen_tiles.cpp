#include "preview/views/screen_tiles.h"

#include <QByteArray>
#include <QColorSpace>

#include <utility>

#include "base/pixel_operations.h"

namespace velmara {
namespace {

constexpr qsizetype kKilobytesOfTile =
    qsizetype{ScreenTiles::kTileSide} * ScreenTiles::kTileSide * 4 / 1024;

}  // namespace

ScreenColors::ScreenColors(const ColorProfile& profile) {
  if (profile == nullptr || profile->empty()) return;
  const QByteArray bytes(reinterpret_cast<const char*>(profile->data()),
                         static_cast<qsizetype>(profile->size()));
  const QColorSpace space = QColorSpace::fromIccProfile(bytes);
  const QColorSpace screen(QColorSpace::SRgb);
  if (!space.isValid() || space == screen) return;
  transform_ = space.transformationToColorSpace(screen);
  converts_ = true;
}

QImage ScreenColors::imageFor(const Bitmap& bitmap) const {
  if (!bitmap.isValid()) return {};
  const Bitmap rgba = asRgba(bitmap);
  if (!rgba.isValid()) return {};
  const QImage shared(rgba.bytes().data(), rgba.width(), rgba.height(),
                      static_cast<qsizetype>(rgba.rowBytes()), QImage::Format_RGBX8888);
  QImage image = shared.convertToFormat(QImage::Format_RGB32);
  if (converts_) image.applyColorTransform(transform_);
  return image;
}

ScreenTiles::ScreenTiles(ScaledPicture picture, ScreenColors colors)
    : picture_(std::move(picture)), colors_(std::move(colors)), tiles_(kKeptKilobytes) {}

// What is missing is rendered in as few pieces as a look at the rows finds: a new view in one, a
// dragged one in a strip at the side and one above or below.
std::vector<ScreenTile> ScreenTiles::imagesOver(const PixelRect& visible) {
  const PixelRect inside = intersection(visible, {0, 0, picture_.width(), picture_.height()});
  std::vector<ScreenTile> images;
  if (inside.isEmpty()) return images;
  const int left = inside.x / kTileSide;
  const int top = inside.y / kTileSide;
  const int right = (inside.x + inside.width - 1) / kTileSide + 1;
  const int bottom = (inside.y + inside.height - 1) / kTileSide + 1;
  // Else the last of them would push out the first.
  const qsizetype inSight = qsizetype{right - left} * (bottom - top) * kKilobytesOfTile;
  if (inSight > tiles_.maxCost()) tiles_.setMaxCost(inSight);

  // The tiles at hand are looked at first, which keeps them from going for those that come.
  PixelRect piece;
  for (int row = top; row < bottom; ++row) {
    int first = left;
    int end = right;
    for (int column = left; column < right; ++column) {
      const bool isAtHand = tiles_.object({row, column}) != nullptr;
      if (isAtHand && first == column) ++first;
      if (!isAtHand) end = column + 1;
    }
    if (first == piece.x && end - first == piece.width) {
      ++piece.height;
      continue;
    }
    render(piece);
    piece = {first, row, end - first, 1};
  }
  render(piece);

  for (int row = top; row < bottom; ++row) {
    for (int column = left; column < right; ++column) {
      if (const QImage* tile = tiles_.object({row, column})) {
        images.push_back({QPoint(column * kTileSide, row * kTileSide), *tile});
      }
    }
  }
  return images;
}

PixelRect ScreenTiles::rectOf(const PixelRect& places) const {
  return intersection({places.x * kTileSide, places.y * kTileSide, places.width * kTileSide,
                       places.height * kTileSide},
                      {0, 0, picture_.width(), picture_.height()});
}

void ScreenTiles::render(const PixelRect& places) {
  if (places.isEmpty()) return;
  const PixelRect area = rectOf(places);
  const QImage whole = colors_.imageFor(picture_.render(area));
  if (whole.isNull()) return;
  for (int row = places.y; row < places.y + places.height; ++row) {
    for (int column = places.x; column < places.x + places.width; ++column) {
      const PixelRect tile = rectOf({column, row, 1, 1});
      tiles_.insert(
          {row, column},
          new QImage(whole.copy(tile.x - area.x, tile.y - area.y, tile.width, tile.height)),
          kKilobytesOfTile);
    }
  }
}

}  // namespace velmara
