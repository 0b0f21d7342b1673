#include "preview/views/picture_view.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>
#include <utility>

namespace velmara {
namespace {

// All device pixels that an area in points touches.
PixelRect deviceRect(const QRect& area, qreal ratio) {
  const int left = static_cast<int>(std::floor(area.left() * ratio));
  const int top = static_cast<int>(std::floor(area.top() * ratio));
  const int right = static_cast<int>(std::ceil((area.left() + area.width()) * ratio));
  const int bottom = static_cast<int>(std::ceil((area.top() + area.height()) * ratio));
  return {left, top, right - left, bottom - top};
}

}  // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PictureView::showPicture(std::shared_ptr<ScreenTiles> picture, const PixelRect& frame) {
  image_ = {};
  tiles_ = std::move(picture);
  moveTo(frame);
}

void PictureView::showPicture(const QImage& picture, const PixelRect& frame) {
  tiles_.reset();
  image_ = picture;
  moveTo(frame);
}

void PictureView::moveTo(const PixelRect& frame) {
  frame_ = frame;
  update();
}

void PictureView::clear() {
  image_ = {};
  tiles_.reset();
  update();
}

void PictureView::paintEvent(QPaintEvent* event) {
  if (!hasPicture()) return;
  QPainter painter(this);
  const qreal ratio = devicePixelRatioF();
  painter.scale(1.0 / ratio, 1.0 / ratio);
  if (!image_.isNull()) {
    painter.drawImage(QPoint(frame_.x, frame_.y), image_, QRect(0, 0, frame_.width, frame_.height));
    return;
  }
  PixelRect visible = deviceRect(event->rect(), ratio);
  visible.x -= frame_.x;
  visible.y -= frame_.y;
  paintTiles(painter, intersection(visible, {0, 0, frame_.width, frame_.height}));
}

void PictureView::paintTiles(QPainter& painter, const PixelRect& visible) {
  if (visible.isEmpty()) return;
  for (const ScreenTile& tile : tiles_->imagesOver(visible)) {
    painter.drawImage(QPoint(frame_.x, frame_.y) + tile.place, tile.image);
  }
}

}  // namespace velmara
