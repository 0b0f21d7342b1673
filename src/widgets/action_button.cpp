#include "widgets/action_button.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "widgets/style.h"

namespace velmara {
namespace {

// Borders included, as the click rules have it.
bool isInside(const QWidget& widget, const QPointF& point) {
  return point.x() >= 0 && point.y() >= 0 && point.x() <= widget.width() &&
         point.y() <= widget.height();
}

bool isEnterKey(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

}  // namespace

ActionButton::ActionButton(QWidget* parent, ImageProvider& images)
    : QAbstractButton(parent), images_(&images) {
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_Hover);
  // Only assistive tools click through the base class: the mouse and the keyboard are ours.
  connect(this, &QAbstractButton::clicked, this, &ActionButton::operate);
}

void ActionButton::setState(int state) {
  click_.state = state;
  if (isCheckable()) setChecked(state != 0);
  update();
}

void ActionButton::setActionMask(int mask) {
  click_.actionMask = mask;
  update();
}

void ActionButton::setEnabled(bool enabled) {
  click_.enabled = enabled;
  applyEnabled();
}

void ActionButton::applyEnabled() {
  applyingEnabled_ = true;
  QAbstractButton::setEnabled(click_.enabled);
  applyingEnabled_ = false;
  update();
}

void ActionButton::operate() {
  press();
  release(true);
}

void ActionButton::press() {
  // The widget itself stays enabled during the press, or it would lose the focus and the release.
  beginClick(click_);
  update();
}

void ActionButton::release(bool inside) {
  if (!click_.isMouseDown) return;
  pressedByKey_ = false;
  if (releaseClick(click_, inside)) {
    completeClick();  // May have deleted the button.
  } else {
    applyEnabled();
  }
}

bool ActionButton::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
      // A disabled widget would let the click through to what lies under it, and would miss the
      // release of a press that began before it was disabled.
      if (!QAbstractButton::isEnabled()) {
        if (event->type() == QEvent::MouseButtonRelease) {
          mouseReleaseEvent(static_cast<QMouseEvent*>(event));
        }
        event->accept();
        return true;
      }
      break;
    case QEvent::ToolTipChange:
      setAccessibleName(toolTip().section(QLatin1Char('\n'), 0, 0));
      setAccessibleDescription(toolTip().section(QLatin1Char('\n'), 1));
      break;
    default:
      break;
  }
  return QAbstractButton::event(event);
}

void ActionButton::changeEvent(QEvent* event) {
  if (event->type() == QEvent::EnabledChange && !applyingEnabled_) {
    click_.enabled = QAbstractButton::isEnabled();
  }
  QAbstractButton::changeEvent(event);
}

void ActionButton::mousePressEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton) press();
}

void ActionButton::mouseMoveEvent(QMouseEvent* event) {
  event->accept();
}

void ActionButton::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton && !pressedByKey_) {
    release(isInside(*this, event->position()));
  }
}

void ActionButton::keyPressEvent(QKeyEvent* event) {
  if (event->isAutoRepeat() && (event->key() == Qt::Key_Space || isEnterKey(*event))) return;
  if (event->key() == Qt::Key_Space) {
    if (click_.isMouseDown) return;
    press();
    pressedByKey_ = click_.isMouseDown;
  } else if (isEnterKey(*event)) {
    if (!click_.isMouseDown) operate();
  } else if (event->key() == Qt::Key_Escape && pressedByKey_) {
    release(false);
  } else {
    event->ignore();
  }
}

void ActionButton::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space) {
    event->ignore();
  } else if (pressedByKey_ && !event->isAutoRepeat()) {
    release(true);
  }
}

void ActionButton::focusOutEvent(QFocusEvent* event) {
  if (pressedByKey_) release(false);
  QAbstractButton::focusOutEvent(event);
}

void ActionButton::drawFocusRing(QPainter& painter) const {
  if (!hasFocus()) return;
  constexpr double kRadius = 6.0;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(style::kFocusRing, 2.0));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kRadius, kRadius);
  painter.setPen(QPen(style::kFocusGap, 1.0));
  painter.drawRoundedRect(QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5), kRadius - 1, kRadius - 1);
}

}  // namespace velmara
