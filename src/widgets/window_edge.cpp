#include "widgets/window_edge.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

#include "widgets/frame_geometry.h"

namespace velmara {

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
