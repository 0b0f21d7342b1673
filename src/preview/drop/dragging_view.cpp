#include "preview/drop/dragging_view.h"

#include <QApplication>
#include <QKeySequence>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleHints>

#include "preview/drop/invitation.h"

namespace velmara {

DraggingView::DraggingView(QWidget* parent) : FileDraggingView(parent) {
  setAccessibleName(tr("Drop a photo here, or open one"));
}

void DraggingView::draggedImagesEntered() {
  setHighlighted(true);
}

void DraggingView::countPress(const QMouseEvent& event) {
  const QStyleHints& hints = *QGuiApplication::styleHints();
  const auto elapsed = event.timestamp() - pressedAt_;
  const QPointF moved = event.position() - pressedWhere_;
  const bool follows = clickCount_ > 0 &&
                       elapsed <= static_cast<quint64>(hints.mouseDoubleClickInterval()) &&
                       moved.manhattanLength() <= hints.mouseDoubleClickDistance();
  clickCount_ = follows ? clickCount_ + 1 : 1;
  pressedAt_ = event.timestamp();
  pressedWhere_ = event.position();
}

void DraggingView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  countPress(*event);
  if (clickCount_ == 1 && delegate() != nullptr) delegate()->mouseDown(*event);
}

void DraggingView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  countPress(*event);
}

void DraggingView::mouseMoveEvent(QMouseEvent* event) {
  if (!event->buttons().testFlag(Qt::LeftButton)) return event->ignore();
  if (delegate() != nullptr) delegate()->mouseDragged(*event);
}

void DraggingView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  if (clickCount_ == 1 && delegate() != nullptr) delegate()->mouseUp(*event);
}

void DraggingView::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(this);
    drawInvitation(painter, rect(), tr("Drop a photo here, or open one"),
                   QKeySequence(QKeySequence::Open).toString(QKeySequence::NativeText));
  }
  FileDraggingView::paintEvent(event);
}

}  // namespace velmara
