// Dragging a picture that is larger than its container.
#include <QWidget>

#include "preview/pan.h"
#include "preview/preview_controller.h"
#include "preview/views/picture_view.h"

namespace velmara {

bool PreviewController::canPanPicture() const {
  return hasPicture() && canPan(rectPreviewPhoto_, containerSize());
}

void PreviewController::mouseDown(Point pointer) {
  if (!canPanPicture() || isRunning()) return;
  services_.log("Mouse Down");
  lastDragLocation_ = pointer;
  isClickedImagePreview_ = true;
  isDraggedImagePreview_ = false;
  hideResult();
  views_.vwPreviewContainer->setCursor(Qt::OpenHandCursor);
}

void PreviewController::mouseDragged(Point pointer) {
  if ((!isClickedImagePreview_ && !isDraggedImagePreview_) || !canPanPicture() || isRunning()) {
    return;
  }
  const QSize area = views_.vwPreviewContainer->size();
  if (!isInside(pointer, {static_cast<double>(area.width()), static_cast<double>(area.height())})) {
    return;
  }
  services_.log("Mouse Dragged");
  // The geometry counts device pixels with y up.
  const double ratio = views_.vwImageContainer->devicePixelRatioF();
  const auto up = [&](Point p) { return Point{p.x * ratio, (area.height() - p.y) * ratio}; };
  const PanStep step =
      panStep(rectPreviewPhoto_, containerSize(), up(lastDragLocation_), up(pointer));
  if (step.isTaken) {
    lastDragLocation_ = pointer;
    isDraggedImagePreview_ = true;
    isClickedImagePreview_ = false;
    dropResult();
    movePictureTo(step.frame);
    views_.vwPreviewContainer->setCursor(Qt::ClosedHandCursor);
  }
  services_.session.runState().startTimerEvent();
}

void PreviewController::mouseUp() {
  views_.vwPreviewContainer->unsetCursor();
  if (isRunning()) {
    isClickedImagePreview_ = false;
    isDraggedImagePreview_ = false;
    return;
  }
  if (isDraggedImagePreview_) {
    services_.log("Mouse Up");
    isDraggedImagePreview_ = false;
    isClickedImagePreview_ = false;
    services_.session.runState().stopTimerEvent();
    if (!canPanPicture()) return;
    imgToBeFilter_ = {};
    services_.timers.cancelPreviousPerformRequests(this);
    postCrop();
  } else if (isClickedImagePreview_) {
    services_.log("Mouse Up");
    showResult();
  }
}

void PreviewController::showOriginal() {
  if (isRunning() || isDraggedImagePreview_ || !isResultShown()) return;
  services_.log("Mouse Down");
  isClickedImagePreview_ = true;
  hideResult();
}

void PreviewController::showResult() {
  if (!isClickedImagePreview_) return;
  isClickedImagePreview_ = false;
  if (isRunning()) return;
  imgFilteredOriginal_ = imgFilteredBeforeClickedPrvw_;
  // Ends in the default mode, which lays the result over the preview again.
  services_.session.runState().stopTimerEvent();
  // There is none if the picture was moved since; its timer is stopped now.
  if (!isResultShown()) postCrop();
}

void PreviewController::panBy(double dx, double dy) {
  if (!canPanPicture() || isRunning()) return;
  const QSize area = views_.vwPreviewContainer->size();
  const Point middle{area.width() / 2.0, area.height() / 2.0};
  mouseDown(middle);
  mouseDragged({middle.x + dx, middle.y + dy});
  if (!isDraggedImagePreview_) {
    mouseUp();  // Nothing moved: the result comes back.
    return;
  }
  isDraggedImagePreview_ = false;
  views_.vwPreviewContainer->unsetCursor();
}

void PreviewController::performDenoiseOperation() {
  services_.session.runState().invalidateTimer();
  isDraggedImagePreview_ = false;
  isClickedImagePreview_ = false;
  if (!canPanPicture()) return;
  imgToBeFilter_ = {};
  services_.timers.cancelPreviousPerformRequests(this);
  postCrop();
}

}  // namespace velmara
