#include "widgets/icon_button.h"

#include <QEnterEvent>
#include <QMouseEvent>
#include <QPainter>

namespace velmara {

IconButton::IconButton(QWidget* parent, ImageProvider& images) : ActionButton(parent, images) {
  disablesWhilePressed_ = false;
  setCheckable(true);
  setCursor(Qt::PointingHandCursor);
}

void IconButton::setIconName(const QString& name) {
  iconName_ = name;
  updateGeometry();
  update();
}

void IconButton::completeClick() {
  if (toggles_) setState(state() == 0 ? 1 : 0);
  update();
  sendAction();
}

QSize IconButton::sizeHint() const {
  return images().imageNamed(iconName_, 1.0).deviceIndependentSize().toSize();
}

void IconButton::enterEvent(QEnterEvent* event) {
  ActionButton::enterEvent(event);
  isMouseHover_ = true;
  update();
}

void IconButton::leaveEvent(QEvent* event) {
  ActionButton::leaveEvent(event);
  isMouseHover_ = false;
  update();
}

void IconButton::mouseMoveEvent(QMouseEvent* event) {
  ActionButton::mouseMoveEvent(event);
  if (isMouseDown()) {
    isMouseHover_ = rect().contains(event->position().toPoint());
    update();
  }
}

QString IconButton::imageToDraw() const {
  if (!isEnabled()) return iconName_ + QStringLiteral("_disabled");
  const bool pressed = isMouseDown() && (isMouseHover_ || hasFocus());
  if (state() != 0 || pressed) return iconName_ + QStringLiteral("_selected");
  if (isMouseHover_ && actionMask() != kSendsOnNothing) {
    return iconName_ + QStringLiteral("_yellow_selected");
  }
  return iconName_;
}

void IconButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QPixmap image = images().imageNamed(imageToDraw(), devicePixelRatioF());
  if (!image.isNull()) {
    const QSizeF size = image.deviceIndependentSize();
    const QPointF place((width() - size.width()) / 2, (height() - size.height()) / 2);
    painter.drawPixmap(place.toPoint(), image);
  }
  drawFocusRing(painter);
}

}  // namespace velmara
