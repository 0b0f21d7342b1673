#include "preview/drop/file_dragging_view.h"

#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <utility>

#include "preview/drop/dropped_files.h"
#include "preview/drop/focus_ring.h"

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

void FileDraggingView::dragEnterEvent(QDragEnterEvent* event) {
  const auto files = draggedFiles(*event->mimeData());
  isDragAccepted_ = !files || std::all_of(files->begin(), files->end(), isImageFile);
  if (!isDragAccepted_) {
    setHighlighted(false);
    event->ignore();
    return;
  }
  if (files) draggedImagesEntered();
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
  setHighlighted(false);
  event->accept();
}

void FileDraggingView::dropEvent(QDropEvent* event) {
  std::vector<std::string> images;
  if (auto files = draggedFiles(*event->mimeData())) {
    std::copy_if(files->begin(), files->end(), std::back_inserter(images), isImageFile);
  }
  setHighlighted(false);
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

}  // namespace velmara
