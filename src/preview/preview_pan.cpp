// Dragging a picture that is larger than its container, and comparing by a press on it.
#include <QWidget>

#include <utility>

#include "preview/preview_controller.h"

namespace velmara {

void PreviewController::mouseDown(Point pointer) {
  if (!canPanPicture() || region_.isRunning()) return;
  services_.log("Mouse Down");
  lastDragLocation_ = pointer;
  isMouseHeld_ = true;
  isClickedImagePreview_ = true;
  isDraggedImagePreview_ = false;
  hideResult();
  views_.vwPreviewContainer->setCursor(Qt::OpenHandCursor);
}

void PreviewController::mouseDragged(Point pointer) {
  if (!isMouseHeld_ || !canPanPicture() || region_.isRunning()) return;
  const QSize area = views_.vwPreviewContainer->size();
  const bool isInside =
      pointer.x >= 0.0 && pointer.x < area.width() && pointer.y >= 0.0 && pointer.y < area.height();
  if (!isInside) return;
  services_.log("Mouse Dragged");
  if (const auto dragged = viewport_.dragged(lastDragLocation_, pointer)) {
    lastDragLocation_ = pointer;
    isDraggedImagePreview_ = true;
    isClickedImagePreview_ = false;
    movePicture(*dragged);
    views_.vwPreviewContainer->setCursor(Qt::ClosedHandCursor);
  }
  region_.startTimerEvent();
}

void PreviewController::mouseUp() {
  isMouseHeld_ = false;
  views_.vwPreviewContainer->unsetCursor();
  const bool wasDragged = std::exchange(isDraggedImagePreview_, false);
  if (region_.isRunning()) {
    isClickedImagePreview_ = false;
  } else if (wasDragged) {
    services_.log("Mouse Up");
    isClickedImagePreview_ = false;
    region_.stopTimerEvent();
    if (canPanPicture()) postCrop();
  } else if (isClickedImagePreview_) {
    services_.log("Mouse Up");
    showResult();
  }
}

void PreviewController::showOriginal() {
  if (region_.isRunning() || isDraggedImagePreview_ || !isResultShown()) return;
  services_.log("Mouse Down");
  isClickedImagePreview_ = true;
  hideResult();
}

void PreviewController::showResult() {
  if (!std::exchange(isClickedImagePreview_, false) || region_.isRunning()) return;
  const bool isBack = result_.putBack();
  // Ends in the default mode, which lays the result over the preview again.
  region_.stopTimerEvent();
  // There is none if the picture was moved since; its timer is stopped now.
  if (!isBack) postCrop();
}

void PreviewController::panBy(double dx, double dy) {
  if (!canPanPicture() || region_.isRunning()) return;
  const Viewport moved = viewport_.movedBy(dx, dy);
  if (moved == viewport_) return;
  movePicture(moved);
  region_.startTimerEvent();
}

void PreviewController::movePicture(const Viewport& viewport) {
  dropResult();
  viewport_ = viewport;
  picture_.moveTo(viewport_);
}

// The button may still be held: what is dragged next is seen to again.
void PreviewController::performDenoiseOperation() {
  region_.invalidateTimer();
  isDraggedImagePreview_ = false;
  isClickedImagePreview_ = false;
  if (canPanPicture()) postCrop();
}

}  // namespace velmara
