#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QWidget>
#include <Qt>

#include <array>

namespace velmara {

/// One of the eight strips along a frameless window's border that the window is resized by.
struct EdgeStrip {
  Qt::Edges edges;
  QRect rect;
};

/// The strips of a window of that size: four sides of the thickness, between four square corners.
std::array<EdgeStrip, 8> edgeStrips(const QSize& size, int thickness, int corner);

/// The pointer that tells how an edge or a corner moves.
Qt::CursorShape cursorForEdges(Qt::Edges edges);

/// A window's frame after its edges were dragged by a distance: the opposite edges stay, also when
/// a limit of the size is reached.
QRect resizedFrame(const QRect& frame, Qt::Edges edges, const QPoint& distance,
                   const QSize& minimum, const QSize& maximum);

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
