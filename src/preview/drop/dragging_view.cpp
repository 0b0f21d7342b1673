#include "preview/drop/dragging_view.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QKeySequence>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyleHints>

#include <algorithm>
#include <utility>

#include "preview/drop/drop_drawing.h"
#include "preview/drop/dropped_files.h"

namespace velmara {
namespace {

// Every operation will do, but for a move, after which the other side may remove its files.
void acceptEveryOperation(QDropEvent& event) {
  for (const Qt::DropAction action : {Qt::CopyAction, Qt::LinkAction}) {
    if (event.possibleActions().testFlag(action)) {
      event.setDropAction(action);
      event.accept();
      return;
    }
  }
  event.acceptProposedAction();
}

}  // namespace

FileDraggingView::FileDraggingView(QWidget* parent) : QWidget(parent) {
  setAcceptDrops(true);
}

void FileDraggingView::setHighlighted(bool highlighted) {
  isHighlighted_ = highlighted;
  update();
}

// Whether it shows that itself is up to the kind of view.
void FileDraggingView::setHovered(bool hovered) {
  if (!hovered) setHighlighted(false);
  Q_EMIT imagesHover(hovered);
}

void FileDraggingView::dragEnterEvent(QDragEnterEvent* event) {
  const auto files = draggedFiles(*event->mimeData());
  isDragAccepted_ = !files || std::all_of(files->begin(), files->end(), isImageFile);
  if (!isDragAccepted_) {
    setHovered(false);
    event->ignore();
    return;
  }
  if (files) setHovered(true);
  acceptEveryOperation(*event);
}

void FileDraggingView::dragMoveEvent(QDragMoveEvent* event) {
  if (isDragAccepted_) {
    acceptEveryOperation(*event);
  } else {
    event->ignore();
  }
}

void FileDraggingView::dragLeaveEvent(QDragLeaveEvent* event) {
  setHovered(false);
  event->accept();
}

void FileDraggingView::dropEvent(QDropEvent* event) {
  std::vector<std::string> images;
  if (auto files = draggedFiles(*event->mimeData())) {
    std::copy_if(files->begin(), files->end(), std::back_inserter(images), isImageFile);
  }
  setHovered(false);
  acceptEveryOperation(*event);
  QMetaObject::invokeMethod(
      this, [this, images = std::move(images)] { handOver(images); }, Qt::QueuedConnection);
}

void FileDraggingView::handOver(const std::vector<std::string>& paths) {
  const QPointer<FileDraggingView> self(this);
  for (const std::string& path : paths) {
    if (self == nullptr || delegate_ == nullptr) return;
    delegate_->photoDraggedWithPath(path);
  }
}

void FileDraggingView::paintEvent(QPaintEvent* event) {
  QWidget::paintEvent(event);
  if (!isHighlighted_) return;
  QPainter painter(this);
  strokeFocusRing(painter, rect());
}

DraggingView::DraggingView(QWidget* parent) : FileDraggingView(parent) {
  setAccessibleName(tr("Drop a photo here, or open one"));
  connect(this, &FileDraggingView::imagesHover, this, &FileDraggingView::setHighlighted);
}

void DraggingView::setLiesOverPhoto(bool liesOverPhoto) {
  setAttribute(Qt::WA_TransparentForMouseEvents, liesOverPhoto);
  update();
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
  if (!liesOverPhoto()) {
    QPainter painter(this);
    drawInvitation(painter, rect(), tr("Drop a photo here, or open one"),
                   QKeySequence(QKeySequence::Open).toString(QKeySequence::NativeText));
  }
  FileDraggingView::paintEvent(event);
}

}  // namespace velmara
