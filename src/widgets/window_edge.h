#pragma once

#include <QPoint>
#include <QRect>
#include <QWidget>

namespace velmara {

/// An invisible strip over a frameless window's border by which the window is resized. The desktop
/// does the resizing where it can, so that its snapping works.
class WindowEdge : public QWidget {
  Q_OBJECT

 public:
  WindowEdge(QWidget* window, Qt::Edges edges);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  enum class Drag { kNone, kPressed, kByUs, kByDesktop };

  Qt::Edges edges_;
  Drag drag_ = Drag::kNone;
  QPoint pressedAt_;
  QRect pressedFrame_;
};

}  // namespace velmara
