// Single, split and dual: the layout of each style, the line, and the composed picture.
#include <QFrame>
#include <QWidget>

#include <cmath>
#include <utility>

#include "platform/dispatch.h"
#include "preview/preview_controller.h"
#include "preview/views/picture_view.h"
#include "preview/views_per_style.h"
#include "widgets/customized_split_view.h"

namespace velmara {

/// A composition in the screen's colours.
struct PreviewController::ShownComposition {
  struct PlacedImage {
    QImage image;
    PixelRect rect;
  };

  ShownComposition(const PreviewComposition& composition, const ScreenColors& colors)
      : result{colors.imageFor(composition.result.bitmap), composition.result.rect},
        before{colors.imageFor(composition.before.bitmap), composition.before.rect} {}

  PlacedImage result;
  PlacedImage before;
};

void PreviewController::btnSingleSplitDualModeTapped(int tag) {
  const auto chosen = static_cast<PreviewStyle>(tag);
  if (chosen != style_) configurePreviewForSelectedStyle(chosen);
}

void PreviewController::configurePreviewForSelectedStyle(PreviewStyle style) {
  if (!mayChange()) return;
  services_.log("Preview Style Changed !!");
  services_.session.runState().isBeforeCallingAlgo = true;
  customizeSubviewsForStyle(style);

  const QSize area = views_.vwPreviewContainer->size();
  const StyleChange change = styleChange(
      style_, style, {static_cast<double>(area.width()), static_cast<double>(area.height())});
  style_ = change.style;
  if (change.layout) {
    views_.vwImageContainerForDualMode->setVisible(change.isDualContainerShown);
    layoutContainers();
    if (change.placesSplitView) configureMainVerticalSplitView();
    zoomPreviewsWithCurrentZoomFactor();
    postCrop();
  } else {
    // The pictures stay; only what lies over them is another.
    configureMainVerticalSplitView();
    setupPreviewOnMovingSplitviewDivider();
  }
  notifyState();
}

void PreviewController::customizeSubviewsForStyle(PreviewStyle style) {
  show(viewsForStyle(style));
}

void PreviewController::configureMainVerticalSplitView() {
  const bool isRegionCut = imgToBeFilter_.isValid();
  const bool hasShown = isRegionCut || zoomedImage_.isValid();
  show(viewsForSplitViewPlacement(style_, hasShown));
  if (!hasShown) return;

  const double ratio = views_.vwImageContainer->devicePixelRatioF();
  const double width = (isRegionCut ? imgToBeFilter_.width() : zoomedImage_.width()) / ratio;
  if (style_ != PreviewStyle::kDual) {
    const SplitViewPlacement placement =
        splitViewPlacement(width, actualPreviewSize_, lastSplitViewDividerPosPercent_);
    lastSplitViewDividerPosPercent_ = placement.dividerPercent;
    const Rect& f = placement.frame;
    // As the picture is: a centred one that leaves half a pixel goes to the left.
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
  if (style_ == PreviewStyle::kDual || isRunning()) return;
  setupPreviewOnMovingSplitviewDivider();
  const auto percent =
      dividerPercent(views_.splitView->positionOfDividerAtIndex(0), views_.splitView->width());
  if (percent) lastSplitViewDividerPosPercent_ = *percent;
}

void PreviewController::setupPreviewOnMovingSplitviewDivider() {
  services_.log("setupPreviewOnMovingSplitviewDivider");
  if (!imgFilteredOriginal_.isValid() || isResizingWindow_) return;
  services_.globalQueue.async([this, alive = std::weak_ptr(alive_), token = generation_.current(),
                               original = imgToBeFilter_, result = imgFilteredOriginal_,
                               line = dividerPosition(), container = containerSize(),
                               colors = colors_, mainQueue = &services_.mainQueue] {
    const auto composition = composeSplit(original, result, line, container);
    if (!composition) return;
    const ShownComposition shown(*composition, colors);
    dispatchSync(*mainQueue, [&] {
      if (alive.expired() || !generation_.isCurrent(token)) return;
      if (line == dividerPosition() && style_ == PreviewStyle::kSplit) placeComposition(shown);
    });
  });
}

void PreviewController::setUpPreviewForDenoisedImage() {
  services_.log("Setting Up Preview Images After Denoising Completion !!");
  if (isLayoutStale_) {
    // The window got another size during the run: its result is of what was seen before.
    isLayoutStale_ = false;
    zoomPreviewsWithCurrentZoomFactor();
    postCrop();
    return;
  }
  if (!imgFilteredOriginal_.isValid() || !imgToBeFilter_.isValid()) return;
  if (isRenderingPicture_) {
    // A result belongs over the picture it was made of, which is not there yet.
    isResultWaiting_ = true;
    return;
  }
  services_.globalQueue.async([this, alive = std::weak_ptr(alive_), token = generation_.current(),
                               original = imgToBeFilter_, result = imgFilteredOriginal_,
                               style = style_, line = dividerPosition(),
                               container = containerSize(), colors = colors_,
                               mainQueue = &services_.mainQueue] {
    const auto composition = composeResult(original, result, style, line, container);
    if (!composition) return;
    const ShownComposition shown(*composition, colors);
    dispatchSync(*mainQueue, [&] {
      if (alive.expired() || !generation_.isCurrent(token) || style != style_) return;
      installResult(composition->result.bitmap, shown);
    });
  });
}

void PreviewController::placeComposition(const ShownComposition& composition) {
  views_.imgFilteredImgVWLeft->showPicture(composition.before.image, composition.before.rect);
  views_.imgFilteredImgVWRight->showPicture(composition.result.image, composition.result.rect);
}

void PreviewController::installResult(const Bitmap& result, const ShownComposition& composition) {
  imgFilteredOriginal_ = result;
  if (style_ == PreviewStyle::kDual) {
    views_.imgFilteredImgVWRightForDual->showPicture(composition.result.image,
                                                     composition.result.rect);
    views_.vwDenoisedPreviewForDual->raise();
    views_.vwDenoisedPreviewForDual->show();
  } else {
    placeComposition(composition);
    views_.vwDenoisedPreview->raise();
    views_.vwDenoisedPreview->show();
  }
  show(viewsForNewResult(style_));
}

}  // namespace velmara
