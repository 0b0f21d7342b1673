#include "preview/views/tiled_view.h"

#include <QPainter>

namespace velmara {

TiledView::TiledView(QWidget* parent, ImageProvider& images) : QWidget(parent), images_(images) {}

void TiledView::setImageName(const QString& name) {
  name_ = name;
  update();
}

void TiledView::paintEvent(QPaintEvent* /*event*/) {
  const QPixmap tile = images_.imageNamed(name_, devicePixelRatioF());
  if (!tile.isNull()) QPainter(this).drawTiledPixmap(rect(), tile);
}

}  // namespace velmara
