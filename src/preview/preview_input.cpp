#include "preview/preview_input.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>
#include <QWidget>

#include <cmath>
#include <utility>

#include "preview/preview_controller.h"

namespace velmara {
namespace {

constexpr double kKeyStep = 40.0;
// One notch of a wheel, in eighths of a degree.
constexpr double kWheelStep = 120.0;
// A pinch as large as a zoom step.
constexpr double kPinchStep = 0.1;

Point pointOf(const QPointF& point) {
  return {point.x(), point.y()};
}

}  // namespace

PreviewInput::PreviewInput(QWidget& area, QWidget& screen, PreviewController& preview,
                           std::function<void(bool isIn)> zoomStep)
    : area_(area), screen_(screen), preview_(preview), zoomStep_(std::move(zoomStep)) {
  area_.installEventFilter(this);
  screen_.installEventFilter(this);
}

bool PreviewInput::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) return keyPressed(static_cast<QKeyEvent&>(*event));
  if (event->type() == QEvent::KeyRelease) return keyReleased(static_cast<QKeyEvent&>(*event));
  return watched == &area_ && filterAreaEvent(*event);
}

bool PreviewInput::filterAreaEvent(QEvent& event) {
  switch (event.type()) {
    case QEvent::MouseButtonPress:
      return pressed(static_cast<QMouseEvent&>(event));
    case QEvent::MouseMove:
      return moved(static_cast<QMouseEvent&>(event));
    case QEvent::MouseButtonRelease:
      return released(static_cast<QMouseEvent&>(event));
    case QEvent::Wheel:
      return turned(static_cast<QWheelEvent&>(event));
    case QEvent::NativeGesture:
      return pinched(static_cast<QNativeGestureEvent&>(event));
    case QEvent::FocusOut:
      // The release will go to somebody else.
      showResult();
      return false;
    default:
      return false;
  }
}

bool PreviewInput::pressed(QMouseEvent& event) {
  if (event.button() != Qt::LeftButton || !preview_.canPanPicture()) return false;
  preview_.mouseDown(pointOf(event.position()));
  return true;
}

bool PreviewInput::moved(QMouseEvent& event) {
  if ((event.buttons() & Qt::LeftButton) == 0) return false;
  preview_.mouseDragged(pointOf(event.position()));
  return preview_.canPanPicture();
}

bool PreviewInput::released(QMouseEvent& event) {
  if (event.button() != Qt::LeftButton) return false;
  preview_.mouseUp();
  return preview_.canPanPicture();
}

bool PreviewInput::turned(const QWheelEvent& event) {
  if ((event.modifiers() & Qt::ControlModifier) == 0) return false;
  wheelTurn_ += event.angleDelta().y();
  if (std::abs(wheelTurn_) >= kWheelStep) {
    zoom(std::exchange(wheelTurn_, 0.0) > 0.0, event.position());
  }
  return true;
}

bool PreviewInput::pinched(const QNativeGestureEvent& event) {
  if (event.gestureType() == Qt::BeginNativeGesture) pinch_ = 0.0;
  if (event.gestureType() != Qt::ZoomNativeGesture) return false;
  pinch_ += event.value();
  if (std::abs(pinch_) >= kPinchStep) {
    zoom(std::exchange(pinch_, 0.0) > 0.0, event.position());
  }
  return true;
}

void PreviewInput::zoom(bool isIn, const QPointF& pointer) {
  preview_.zoomAround(pointOf(pointer), [this, isIn] { zoomStep_(isIn); });
}

bool PreviewInput::keyPressed(const QKeyEvent& event) {
  const int key = event.key();
  if (key == Qt::Key_Space) {
    if (event.isAutoRepeat() || isOriginalShown_ || !preview_.isResultShown()) return true;
    isOriginalShown_ = true;
    preview_.showOriginal();
    return true;
  }
  const double dx = key == Qt::Key_Left ? kKeyStep : key == Qt::Key_Right ? -kKeyStep : 0.0;
  const double dy = key == Qt::Key_Up ? kKeyStep : key == Qt::Key_Down ? -kKeyStep : 0.0;
  if (dx == 0.0 && dy == 0.0) return false;
  preview_.panBy(dx, dy);
  return true;
}

bool PreviewInput::keyReleased(const QKeyEvent& event) {
  if (event.key() != Qt::Key_Space) return false;
  if (!event.isAutoRepeat()) showResult();
  return true;
}

void PreviewInput::showResult() {
  if (std::exchange(isOriginalShown_, false)) preview_.showResult();
}

}  // namespace velmara
