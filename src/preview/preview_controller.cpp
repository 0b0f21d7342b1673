#include "preview/preview_controller.h"

#include <QFrame>
#include <QWidget>

#include <cmath>
#include <utility>

#include "preview/shown_photo.h"
#include "preview/split_line.h"
#include "preview/views/picture_view.h"
#include "preview/window_geometry.h"
#include "widgets/split_view.h"

namespace velmara {
namespace {

QRect wholeRect(const Rect& rect) {
  return QRectF(rect.x, rect.y, rect.width, rect.height).toRect();
}

Size sizeOf(const QWidget& view) {
  return {static_cast<double>(view.width()), static_cast<double>(view.height())};
}

// The views of a container cover it, and so do the views in them.
void place(QWidget* container, const Rect& frame) {
  container->setGeometry(wholeRect(frame));
  for (QWidget* view : container->findChildren<QWidget*>()) view->setGeometry(container->rect());
}

}  // namespace

PreviewController::PreviewController(const PreviewViews& views, const PreviewServices& services)
    : views_(views),
      services_(services),
      picture_({views.imgPreviewPhoto, views.imgPreviewPhotoForDual}, services.mainQueue,
               services.globalQueue),
      region_(services),
      result_(views, viewport_, services.mainQueue, services.globalQueue) {
  picture_.pictureShown = [this] {
    if (std::exchange(isResultWaiting_, false)) setUpPreviewForDenoisedImage();
  };
  region_.captureBegins = [this] { views_.splitView->hide(); };
  region_.regionCut = [this] { configureMainVerticalSplitView(); };
  result_.residualSeenChanged = [this] { notifyState(); };
  resetState();
}

PreviewController::~PreviewController() {
  views_.splitView->setDelegate(nullptr);
}

void PreviewController::resetState() {
  opening_.advance();
  viewport_ = {};
  result_.setResidual(false);
  isResizingWindow_ = false;
  isMouseHeld_ = false;
  isClickedImagePreview_ = false;
  isDraggedImagePreview_ = false;
  setInputOriginalImage({}, nullptr);
  views_.imgDualModeDivider->hide();
  views_.vwBeforeAfter->hide();
  views_.vwImageContainerForDualMode->hide();
  layoutPreviewContainer();
  layoutContainers();
  customizeSubviewsForStyle(style());
  configureMainVerticalSplitView();
  notifyState();
}

void PreviewController::setInputOriginalImage(PicturePyramid picture, const ColorProfile& profile) {
  picture_.setInputOriginalImage(std::move(picture), profile);
  viewport_.photo = picture_.photoSize();
  dropResult();
}

void PreviewController::openPhoto(const LoadedPhoto& photo) {
  services_.globalQueue.async([this, alive = std::weak_ptr(alive_), photo,
                               token = opening_.advance(), mainQueue = &services_.mainQueue] {
    mainQueue->async([this, alive, token, shown = shownPhoto(photo)] {
      if (alive.expired() || !opening_.isCurrent(token)) return;
      setInputOriginalImage(shown.picture, shown.profile);
      configurePreviewForSelectedStyle(PreviewStyle::kDual);
      // An export that did not wait for it goes first.
      if (region_.isRunning()) region_.setStale();
    });
  });
}

void PreviewController::layoutPreviewContainer() {
  const Size main = sizeOf(*views_.vwMainContainer);
  const int caption = views_.vwBeforeAfter->minimumHeight();
  views_.vwPreviewContainer->setGeometry(wholeRect(previewContainerFrame(main, caption)));
  views_.vwBeforeAfter->setGeometry(
      wholeRect({0, main.height - caption, main.width, 1.0 * caption}));
  views_.vwBeforeAfter->raise();
  views_.vwDragging->raise();
}

void PreviewController::layoutContainers() {
  const ContainerFrames frames = containerFrames(style(), sizeOf(*views_.vwPreviewContainer));
  place(views_.vwImageContainer, frames.vwImageContainer);
  place(views_.vwImageContainerForDualMode, frames.vwImageContainerForDualMode);
  views_.imgDualModeDivider->setGeometry(views_.vwImageContainer->width(), 0, 1,
                                         views_.vwPreviewContainer->height());
  views_.imgDualModeDivider->raise();
  viewport_.actualPreviewSize = sizeOf(*views_.vwImageContainer);
  viewport_.devicePixelRatio = views_.vwImageContainer->devicePixelRatioF();
}

void PreviewController::btnSingleSplitDualModeTapped(int tag) {
  if (!region_.mayChange()) return;
  const bool isNoise = tag == kNoiseTag;
  const auto chosen = isNoise ? PreviewStyle::kSingle : static_cast<PreviewStyle>(tag);
  const bool isSwitched = isNoise != isNoiseMode();
  result_.setResidual(isNoise);
  if (chosen != style()) configurePreviewForSelectedStyle(chosen);
  if (!isSwitched) return;
  // Where the style has kept the result, another picture of it is laid over the photo.
  if (result_.isValid()) setUpPreviewForDenoisedImage();
  notifyState();
}

void PreviewController::configurePreviewForSelectedStyle(PreviewStyle style) {
  if (!region_.mayChange()) return;
  services_.log("Preview Style Changed !!");
  region_.setIsBeforeCallingAlgo();
  customizeSubviewsForStyle(style);
  if (style != PreviewStyle::kSingle) result_.setResidual(false);
  const bool isDual = style == PreviewStyle::kDual;
  if (!isDual && style != PreviewStyle::kSplit && style != PreviewStyle::kSingle) return;
  const bool wasDual =
      std::exchange(viewport_.flag_current_Preview_Style, style) == PreviewStyle::kDual;
  if (wasDual != isDual) {
    views_.vwImageContainerForDualMode->setVisible(isDual);
    layoutContainers();
    if (style == PreviewStyle::kSplit) configureMainVerticalSplitView();
    zoomPreviewsWithCurrentZoomFactor();
    postCrop();
  } else if (!isDual) {
    // The pictures stay; only what lies over them is another.
    configureMainVerticalSplitView();
    setupPreviewOnMovingSplitviewDivider();
  }
  notifyState();
}

void PreviewController::configureMainVerticalSplitView() {
  const bool hasShown = picture_.zoomedImage().isValid();
  showViewsForSplitViewPlacement(views_, style(), hasShown);
  if (!hasShown) return;
  if (style() != PreviewStyle::kDual) {
    const SplitViewPlacement placement =
        splitViewPlacement(viewport_.rectPreviewPhoto.width / viewport_.devicePixelRatio,
                           viewport_.actualPreviewSize, lastSplitViewDividerPosPercent_);
    lastSplitViewDividerPosPercent_ = placement.dividerPercent;
    // As the picture is: a centred one that leaves half a pixel goes to the left.
    const Rect& f = placement.frame;
    views_.splitView->setFrame(QRect(static_cast<int>(std::floor(f.x)), static_cast<int>(f.y),
                                     static_cast<int>(std::lround(f.width)),
                                     static_cast<int>(std::lround(f.height))));
    views_.splitView->setPosition(static_cast<double>(placement.dividerPosition), 0);
    views_.splitView->raise();
  }
  auto delegate = std::make_unique<CustomSplitViewDelegate>(services_.center);
  delegate->setPriority(0, 0);
  delegate->setMinimumLength(0.0, 0);
  delegate->setPriority(1, 1);
  delegate->setMinimumLength(1.0, 1);
  views_.splitView->setDelegate(delegate.get());
  splitViewDelegate_ = std::move(delegate);
}

void PreviewController::splitViewPositionChanged() {
  if (style() == PreviewStyle::kDual || region_.isRunning()) return;
  setupPreviewOnMovingSplitviewDivider();
  const auto percent =
      dividerPercent(views_.splitView->positionOfDividerAtIndex(0), views_.splitView->width());
  if (percent) lastSplitViewDividerPosPercent_ = *percent;
}

void PreviewController::setupPreviewOnMovingSplitviewDivider() {
  services_.log("setupPreviewOnMovingSplitviewDivider");
  if (result_.isValid() && !isResizingWindow_) result_.moveLine();
}

void PreviewController::setUpPreviewForDenoisedImage() {
  services_.log("Setting Up Preview Images After Denoising Completion !!");
  if (region_.takeStale()) {
    zoomPreviewsWithCurrentZoomFactor();
    postCrop();
    return;
  }
  if (!result_.isValid() || !region_.imgToBeFilter().isValid()) return;
  // A result belongs over the picture it was made of, which may still be on its way.
  isResultWaiting_ = picture_.isRendering();
  if (!isResultWaiting_) result_.show(region_.imgToBeFilter(), picture_.colors());
}

void PreviewController::btnSizeTapped(int tag) {
  resizePreviewImageAndProcessWithTag(static_cast<PreviewSize>(tag));
}

void PreviewController::resizePreviewImageAndProcessWithTag(PreviewSize size) {
  region_.setIsBeforeCallingAlgo();
  if (!region_.mayChange() || !hasPicture()) return;
  services_.log("Resizing Preview Image & Process !!");
  viewport_ = viewport_.withSize(size);
  views_.splitView->hide();
  performZoomAnimationToPreviewsToFitRect(viewport_.rectPreviewPhoto);
}

// The move has no duration, so there is nothing to wait for.
void PreviewController::performZoomAnimationToPreviewsToFitRect(const Rect& rect) {
  Viewport moved = viewport_;
  moved.rectPreviewPhoto = rect;
  showPicture(moved);
  postCrop();
}

void PreviewController::btnZoomInTapped() {
  const auto zoomed = viewport_.zoomedIn();
  if (!zoomed) return;
  region_.silenceZoomIn();
  applyZoom(*zoomed);
}

void PreviewController::btnZoomOutTapped() {
  const auto zoomed = viewport_.zoomedOut();
  if (!zoomed) return;
  applyZoom(*zoomed);
  region_.silenceZoomOut();
}

void PreviewController::applyZoom(const Viewport& zoomed) {
  viewport_ = zoomed;
  notifyState();
  zoomPreviewsWithCurrentZoomFactor();
  postCrop();
}

void PreviewController::zoomPreviewsWithCurrentZoomFactor() {
  region_.setIsBeforeCallingAlgo();
  services_.log("Zoom Preview With current Zoom Factor !!");
  if (!region_.mayChange() || !hasPicture()) return;
  layoutContainers();
  showPicture(viewport_.rescaled(zoomAnchor_));
  configureMainVerticalSplitView();
}

void PreviewController::zoomAround(Point pointer, const std::function<void()>& step) {
  zoomAnchor_ = pointer;
  step();
  zoomAnchor_.reset();
}

void PreviewController::showPicture(const Viewport& viewport) {
  dropResult();
  viewport_ = viewport;
  picture_.show(viewport_);
}

void PreviewController::postCrop() {
  region_.post([this] { cropVisiblePartofImageAndDenoise(); });
}

void PreviewController::cropVisiblePartofImageAndDenoise() {
  // The photo may have been given up since it was asked for: the empty screen keeps its invitation.
  if (!hasPicture()) return;
  views_.vwDragging->hide();
  if (!region_.mayChange()) return;
  services_.log("Cropping Visible Part Of Preview Image & Denoise !!");
  dropResult();
  region_.cropVisiblePartofImageAndDenoise(viewport_, picture_.zoomedImage());
}

void PreviewController::windowDidResize() {
  layoutPreviewContainer();
  if (!region_.hasPhoto()) {
    layoutContainers();
  } else if (region_.isRunning()) {
    region_.setStale();
  } else {
    isResizingWindow_ = true;
    zoomPreviewsWithCurrentZoomFactor();
  }
}

void PreviewController::windowDidEndLiveResize() {
  if (!std::exchange(isResizingWindow_, false) || !region_.hasPhoto()) return;
  if (region_.isRunning()) {
    region_.setStale();
    return;
  }
  services_.log("Window resized !!");
  region_.setIsBeforeCallingAlgo();
  postCrop();
}

void PreviewController::previewFinished(const Image& result) {
  if (region_.imgToBeFilter().isValid()) result_.take(result.bitmap());
}

// Whatever is being made of what was seen until now comes too late.
void PreviewController::hideResult() {
  isResultWaiting_ = false;
  result_.hide();
  region_.overtake();
}

// What is seen is another thing now: the last whole result may not be put back either.
void PreviewController::dropResult() {
  isResultWaiting_ = false;
  result_.forget();
  region_.forget();
}

void PreviewController::notifyState() const {
  if (stateChanged) stateChanged();
}

}  // namespace velmara
