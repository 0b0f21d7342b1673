#include "preview/views/picture_view.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>
#include <utility>

namespace velmara {
namespace {

constexpr int kKeptKilobytes = 64 * 1024;

int kilobytesOf(const QImage& image) {
  return static_cast<int>(image.sizeInBytes() / 1024) + 1;
}

// All device pixels that an area in points touches.
PixelRect deviceRect(const QRect& area, qreal ratio) {
  const int left = static_cast<int>(std::floor(area.left() * ratio));
  const int top = static_cast<int>(std::floor(area.top() * ratio));
  const int right = static_cast<int>(std::ceil((area.left() + area.width()) * ratio));
  const int bottom = static_cast<int>(std::ceil((area.top() + area.height()) * ratio));
  return {left, top, right - left, bottom - top};
}

}  // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent), converted_(kKeptKilobytes) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PictureView::setColorProfile(const ColorProfile& profile) {
  colors_ = ScreenColors(profile);
  converted_.clear();
  update();
}

void PictureView::showPicture(ScaledPicture picture, const PixelRect& frame) {
  image_ = {};
  converted_.clear();
  tiles_ = TiledPicture(std::move(picture));
  moveTo(frame);
}

void PictureView::showPicture(const Bitmap& bitmap, const PixelRect& frame) {
  converted_.clear();
  tiles_ = {};
  image_ = colors_.imageFor(bitmap);
  moveTo(frame);
}

void PictureView::moveTo(const PixelRect& frame) {
  frame_ = frame;
  update();
}

void PictureView::clear() {
  image_ = {};
  converted_.clear();
  tiles_ = {};
  update();
}

void PictureView::paintEvent(QPaintEvent* event) {
  if (!hasPicture()) return;
  QPainter painter(this);
  const qreal ratio = devicePixelRatioF();
  painter.scale(1.0 / ratio, 1.0 / ratio);
  if (!image_.isNull()) {
    painter.drawImage(QPoint(frame_.x, frame_.y), image_);
    return;
  }
  PixelRect visible = deviceRect(event->rect(), ratio);
  visible.x -= frame_.x;
  visible.y -= frame_.y;
  paintTiles(painter, intersection(visible, {0, 0, frame_.width, frame_.height}));
}

void PictureView::paintTiles(QPainter& painter, const PixelRect& visible) {
  if (visible.isEmpty()) return;
  for (const PictureTile& tile : tiles_.tilesOver(visible)) {
    const QPoint place(frame_.x + tile.rect.x, frame_.y + tile.rect.y);
    if (const QImage* image = imageOf(tile)) {
      painter.drawImage(place, *image);
    }
  }
}

const QImage* PictureView::imageOf(const PictureTile& tile) {
  const QPair<int, int> place(tile.rect.x, tile.rect.y);
  if (const QImage* known = converted_.object(place)) return known;
  auto* image = new QImage(colors_.imageFor(tile.bitmap));  // The cache owns it.
  const int cost = kilobytesOf(*image);
  return converted_.insert(place, image, cost) ? image : nullptr;
}

}  // namespace velmara
