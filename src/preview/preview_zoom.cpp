// The size buttons, the zoom steps and the picture's size.
#include <QWidget>

#include <utility>

#include "preview/picture_size.h"
#include "preview/preview_controller.h"
#include "preview/views/picture_view.h"
#include "session/controls.h"
#include "widgets/customized_split_view.h"

namespace velmara {

void PreviewController::btnSizeTapped(int tag) {
  resizePreviewImageAndProcessWithTag(static_cast<PreviewSize>(tag));
}

// A scaled picture renders only what is looked at, so setting it costs nothing, and the move to its
// place has no duration: what was spread over two queues and an animation is one step.
void PreviewController::resizePreviewImageAndProcessWithTag(PreviewSize size) {
  services_.session.runState().isBeforeCallingAlgo = true;
  if (!mayChange() || !hasPicture()) return;
  services_.log("Resizing Preview Image & Process !!");
  size_ = size;
  const SizedPicture sized =
      pictureForSizeButton(size, photoSize(), containerSize(), currentZooomFactor_);
  currentZooomFactor_ = sized.zoomFactor;
  dropResult();
  imgToBeFilter_ = {};
  zoomedImage_ = ScaledPicture(inputOriginalImage_, wholePixels(sized.size));
  views_.splitView->hide();
  showPictureAt(centredRect(wholePixels(sized.size), containerSize()));
  notifyState();
  postCrop();
}

void PreviewController::btnZoomInTapped() {
  if (!canZoomIn(currentZooomFactor_)) return;
  services_.session.runState().changeControls(controlsAfterZoomIn);
  applyZoom(zoomedIn(currentZooomFactor_));
}

void PreviewController::btnZoomOutTapped() {
  if (!canZoomOut(currentZooomFactor_)) return;
  applyZoom(zoomedOut(currentZooomFactor_));
  services_.session.runState().changeControls(controlsAfterZoomOut);
}

void PreviewController::applyZoom(float factor) {
  currentZooomFactor_ = factor;
  notifyState();
  zoomPreviewsWithCurrentZoomFactor();
  postCrop();
}

void PreviewController::zoomPreviewsWithCurrentZoomFactor() {
  services_.session.runState().isBeforeCallingAlgo = true;
  services_.log("Zoom Preview With current Zoom Factor !!");
  if (!mayChange() || !hasPicture()) return;
  dropResult();
  imgToBeFilter_ = {};
  layoutContainers();
  const Size size =
      wholePixels(pictureForZoomFactor(size_, photoSize(), containerSize(), currentZooomFactor_));
  zoomedImage_ = ScaledPicture(inputOriginalImage_, size);
  showPictureAt(zoomAnchor_ ? rectAround(*zoomAnchor_, rectPreviewPhoto_, size, containerSize())
                            : centredRect(size, containerSize()));
  configureMainVerticalSplitView();
}

void PreviewController::zoomAround(Point pointer, const std::function<void()>& step) {
  zoomAnchor_ = inContainer(pointer);
  step();
  zoomAnchor_.reset();
}

}  // namespace velmara
