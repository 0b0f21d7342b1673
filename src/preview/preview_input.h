#pragma once

#include <QObject>
#include <QPointF>

#include <functional>

class QKeyEvent;
class QMouseEvent;
class QNativeGestureEvent;
class QWheelEvent;
class QWidget;

namespace velmara {

class PreviewController;

/// Mouse, wheel, touchpad and keys on the picture: drags, Ctrl with the wheel and pinching zoom
/// about the pointer, the arrow keys pan, the space bar held shows the original. All of it ends in
/// what the buttons do, and is refused when they are. Main thread.
class PreviewInput : public QObject {
  Q_OBJECT

 public:
  /// The area is what the picture is seen in; keys that no control of the screen has taken are
  /// about the picture too. A step of the zoom does what a click on the button in or out does. All
  /// of them must outlive this object.
  PreviewInput(QWidget& area, QWidget& screen, PreviewController& preview,
               std::function<void(bool isIn)> zoomStep);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool filterAreaEvent(QEvent& event);
  bool pressed(QMouseEvent& event);
  bool moved(QMouseEvent& event);
  bool released(QMouseEvent& event);
  bool turned(const QWheelEvent& event);
  bool pinched(const QNativeGestureEvent& event);
  bool keyPressed(const QKeyEvent& event);
  bool keyReleased(const QKeyEvent& event);
  void zoom(bool isIn, const QPointF& pointer);
  void showResult();

  QWidget& area_;
  QWidget& screen_;
  PreviewController& preview_;
  std::function<void(bool isIn)> zoomStep_;
  /// What is left of turns and pinches that were no whole step.
  double wheelTurn_ = 0.0;
  double pinch_ = 0.0;
  bool isOriginalShown_ = false;
};

}  // namespace velmara
