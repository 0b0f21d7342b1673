// The part of the picture that is seen: cut out, filtered, and filtered anew when it changes.
#include <QWidget>

#include <string>
#include <utility>

#include "imaging/utils.h"
#include "platform/dispatch.h"
#include "preview/preview_controller.h"
#include "preview/region_cut.h"
#include "preview/views/picture_view.h"
#include "widgets/customized_split_view.h"

namespace velmara {

/// What the worker needs to make the region file.
struct PreviewController::RegionRequest {
  ScaledPicture picture;
  PixelRect pixels;
  std::string path;
  GenerationCounter::Token token;
};

void PreviewController::postCrop() {
  services_.timers.performSelector(this, "cropVisiblePartofImageAndDenoise", Seconds(0),
                                   [this] { cropVisiblePartofImageAndDenoise(); });
}

void PreviewController::cropVisiblePartofImageAndDenoise() {
  views_.vwDragging->hide();
  if (isRunning() || !services_.photos.selectedImageFile || !hasPicture()) return;
  services_.log("Cropping Visible Part Of Preview Image & Denoise !!");
  dropResult();
  services_.log("Dispatch Queue in cropVisiblePartofImageAndDenoise");
  const RegionCut cut = regionCut(rectPreviewPhoto_, containerSize());
  services_.log(std::string(logLineOf(cut.which)));
  RegionRequest request{
      zoomedImage_, cut.pixels,
      regionFilePath(services_.temporaryDirectory, services_.photos.selectedImageFile->fileName),
      generation_.current()};
  if (cut.which != RegionCase::kBothOverflow) {
    writeRegion(std::move(request));
    return;
  }
  views_.splitView->hide();
  services_.timers.performSelector(this, "takeScreenShotAndProccess", Seconds(kCaptureDelay),
                                   [this, request] {
                                     if (!generation_.isCurrent(request.token) || isRunning())
                                       return;
                                     services_.log("Taking Screenshot Of Visible Part Of Image !!");
                                     writeRegion(request);
                                   });
}

void PreviewController::writeRegion(RegionRequest request) {
  services_.globalQueue.async([this, alive = std::weak_ptr(alive_), request = std::move(request),
                               mainQueue = &services_.mainQueue] {
    const Bitmap region = request.picture.render(request.pixels);
    if (!region.isValid()) return;
    Utils::sharedUtils().saveImageInSelectedFormat(4, request.path, region);
    dispatchSync(*mainQueue, [&] {
      if (alive.expired() || !generation_.isCurrent(request.token)) return;
      processRegion(region, request.path);
    });
  });
}

void PreviewController::processRegion(const Bitmap& region, const std::string& path) {
  imgToBeFilter_ = region;
  services_.photos.selectedImageFileToProccessing = PhotoFile::initWithFileUrl(path);
  configureMainVerticalSplitView();
  services_.session.seletedPhotoToBeFilteredIsChanged();
}

void PreviewController::windowDidResize() {
  layoutPreviewContainer();
  if (!mayChange()) {
    isLayoutStale_ = services_.photos.selectedImageFile.has_value();
    if (!isLayoutStale_) layoutContainers();
    return;
  }
  isResizingWindow_ = true;
  zoomPreviewsWithCurrentZoomFactor();
}

void PreviewController::windowDidEndLiveResize() {
  if (!mayChange() || !isResizingWindow_) return;
  services_.log("Window resized !!");
  isResizingWindow_ = false;
  services_.session.runState().isBeforeCallingAlgo = true;
  postCrop();
}

void PreviewController::previewFinished(const Image& result) {
  imgFilteredOriginal_ = result.bitmap();
  imgFilteredBeforeClickedPrvw_ = result.bitmap();
}

void PreviewController::previewResultDropped() {
  imgFilteredOriginal_ = {};
}

}  // namespace velmara
