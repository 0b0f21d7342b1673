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
  state_ = state;
  if (isCheckable()) setChecked(state != 0);
  update();
}

void ActionButton::setActionMask(int mask) {
  actionMask_ = mask;
  update();
}

void ActionButton::setEnabled(bool enabled) {
  enabled_ = enabled;
  applyEnabled();
}

void ActionButton::applyEnabled() {
  applyingEnabled_ = true;
  QAbstractButton::setEnabled(enabled_);
  applyingEnabled_ = false;
  update();
}

void ActionButton::operate() {
  press();
  release(true);
}

void ActionButton::press() {
  if (!enabled_ || actionMask_ == kSendsOnNothing) return;
  isMouseDown_ = true;
  // The widget itself stays enabled during the press, or it would lose the focus and the release.
  if (disablesWhilePressed_) enabled_ = false;
  update();
}

void ActionButton::release(bool inside) {
  if (!isMouseDown_) return;
  pressedByKey_ = false;
  isMouseDown_ = false;
  // The button may have become inert or disabled meanwhile.
  const bool mayClick = enabled_ || disablesWhilePressed_;
  if (inside && mayClick && actionMask_ != kSendsOnNothing) {
    completeClick();  // May have deleted the button.
    return;
  }
  if (disablesWhilePressed_) enabled_ = true;
  applyEnabled();
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
    enabled_ = QAbstractButton::isEnabled();
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
    if (isMouseDown_) return;
    press();
    pressedByKey_ = isMouseDown_;
  } else if (isEnterKey(*event)) {
    if (!isMouseDown_) operate();
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
