#include "widgets/window_edge.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

#include <algorithm>

namespace velmara {
std::array<EdgeStrip, 8> edgeStrips(const QSize& size, int thickness, int corner) {
  const int w = size.width();
  const int h = size.height();
  const int right = w - thickness;
  const int bottom = h - thickness;
  return {{
      {Qt::TopEdge, {corner, 0, w - 2 * corner, thickness}},
      {Qt::BottomEdge, {corner, bottom, w - 2 * corner, thickness}},
      {Qt::LeftEdge, {0, corner, thickness, h - 2 * corner}},
      {Qt::RightEdge, {right, corner, thickness, h - 2 * corner}},
      {Qt::TopEdge | Qt::LeftEdge, {0, 0, corner, corner}},
      {Qt::TopEdge | Qt::RightEdge, {w - corner, 0, corner, corner}},
      {Qt::BottomEdge | Qt::LeftEdge, {0, h - corner, corner, corner}},
      {Qt::BottomEdge | Qt::RightEdge, {w - corner, h - corner, corner, corner}},
  }};
}

Qt::CursorShape cursorForEdges(Qt::Edges edges) {
  const bool horizontal = edges.testFlag(Qt::LeftEdge) || edges.testFlag(Qt::RightEdge);
  const bool vertical = edges.testFlag(Qt::TopEdge) || edges.testFlag(Qt::BottomEdge);
  if (!horizontal && !vertical) return Qt::ArrowCursor;
  if (!vertical) return Qt::SizeHorCursor;
  if (!horizontal) return Qt::SizeVerCursor;
  return edges.testFlag(Qt::LeftEdge) == edges.testFlag(Qt::TopEdge) ? Qt::SizeFDiagCursor
                                                                     : Qt::SizeBDiagCursor;
}

QRect resizedFrame(const QRect& frame, Qt::Edges edges, const QPoint& distance,
                   const QSize& minimum, const QSize& maximum) {
  int width = frame.width();
  int height = frame.height();
  if (edges.testFlag(Qt::RightEdge)) width += distance.x();
  if (edges.testFlag(Qt::LeftEdge)) width -= distance.x();
  if (edges.testFlag(Qt::BottomEdge)) height += distance.y();
  if (edges.testFlag(Qt::TopEdge)) height -= distance.y();
  width = std::max(minimum.width(), std::min(maximum.width(), width));
  height = std::max(minimum.height(), std::min(maximum.height(), height));
  const int x = edges.testFlag(Qt::LeftEdge) ? frame.x() + frame.width() - width : frame.x();
  const int y = edges.testFlag(Qt::TopEdge) ? frame.y() + frame.height() - height : frame.y();
  return {x, y, width, height};
}

WindowEdge::WindowEdge(QWidget* window, Qt::Edges edges) : QWidget(window), edges_(edges) {
  setCursor(cursorForEdges(edges));
}

void WindowEdge::mousePressEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() != Qt::LeftButton) return;
  drag_ = Drag::kPressed;
  pressedAt_ = event->globalPosition().toPoint();
  pressedFrame_ = window()->geometry();
}

void WindowEdge::mouseMoveEvent(QMouseEvent* event) {
  event->accept();
  const QPoint distance = event->globalPosition().toPoint() - pressedAt_;
  // Not on the press: some window managers stay in their resize mode after a plain click.
  if (drag_ == Drag::kPressed && distance.manhattanLength() >= QApplication::startDragDistance()) {
    QWindow* handle = window()->windowHandle();
    const bool taken = handle != nullptr && handle->startSystemResize(edges_);
    drag_ = taken ? Drag::kByDesktop : Drag::kByUs;
  }
  if (drag_ == Drag::kByUs) {
    window()->setGeometry(resizedFrame(pressedFrame_, edges_, distance, window()->minimumSize(),
                                       window()->maximumSize()));
  }
}

void WindowEdge::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton) drag_ = Drag::kNone;
}

}  // namespace velmara
