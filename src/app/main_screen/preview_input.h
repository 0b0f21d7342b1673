#pragma once

#include <QObject>
#include <QPointF>

class QKeyEvent;
class QMouseEvent;
class QNativeGestureEvent;
class QWheelEvent;
class QWidget;

namespace velmara {

class DropDelegate;
class PreviewController;
class ScreenControls;

/// Mouse, wheel, touchpad and keys on the picture: drags, Ctrl with the wheel and pinching zoom
/// about the pointer, the arrow keys pan, the space bar held shows the original. All of it ends in
/// what the buttons do, and is refused when they are. Main thread.
class PreviewInput : public QObject {
  Q_OBJECT

 public:
  /// The area is what the picture is seen in; keys that no control of the screen has taken are
  /// about the picture too. All of them must outlive this object.
  PreviewInput(QWidget& area, QWidget& screen, PreviewController& preview, DropDelegate& mouse,
               const ScreenControls& controls);

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
  void zoomStep(bool isIn, const QPointF& pointer);
  void showResult();

  QWidget& area_;
  QWidget& screen_;
  PreviewController& preview_;
  DropDelegate& mouse_;
  const ScreenControls& controls_;
  /// What is left of turns and pinches that were no whole step.
  double wheelTurn_ = 0.0;
  double pinch_ = 0.0;
  bool isOriginalShown_ = false;
};

}  // namespace velmara
