#include "preview/preview_controller.h"

#include <QFrame>
#include <QWidget>

#include <cmath>
#include <utility>

#include "preview/views/picture_view.h"
#include "preview/window_geometry.h"
#include "widgets/customized_split_view.h"

namespace velmara {
namespace {

QRect wholeRect(const Rect& rect) {
  return QRectF(rect.x, rect.y, rect.width, rect.height).toRect();
}

void setVisibleIf(QWidget* view, const std::optional<bool>& isShown) {
  if (isShown) view->setVisible(*isShown);
}

}  // namespace

PreviewController::PreviewController(PreviewViews views, PreviewServices services)
    : views_(views), services_(std::move(services)) {
  resetState();
}

PreviewController::~PreviewController() {
  views_.splitView->setDelegate(nullptr);
}

void PreviewController::resetState() {
  generation_.advance();
  style_ = PreviewStyle::kSingle;
  size_ = PreviewSize::kFitToScreen;
  currentZooomFactor_ = 1.0F;
  isResizingWindow_ = false;
  isClickedImagePreview_ = false;
  isDraggedImagePreview_ = false;
  setInputOriginalImage({}, nullptr);
  views_.imgDualModeDivider->hide();
  views_.vwBeforeAfter->hide();
  views_.vwImageContainerForDualMode->hide();
  layoutPreviewContainer();
  layoutContainers();
  customizeSubviewsForStyle(style_);
  configureMainVerticalSplitView();
  notifyState();
}

void PreviewController::setInputOriginalImage(PicturePyramid picture, const ColorProfile& profile) {
  inputOriginalImage_ = std::move(picture);
  colors_ = ScreenColors(profile);
  pictures_.advance();
  isPictureStale_ = false;
  zoomedImage_ = {};
  imgToBeFilter_ = {};
  imgFilteredBeforeClickedPrvw_ = {};
  dropResult();
  for (PictureView* view :
       {views_.imgPreviewPhoto, views_.imgPreviewPhotoForDual, views_.imgFilteredImgVWLeft,
        views_.imgFilteredImgVWRight, views_.imgFilteredImgVWLeftForDual,
        views_.imgFilteredImgVWRightForDual}) {
    view->clear();
  }
}

void PreviewController::layoutPreviewContainer() {
  const QSize main = views_.vwMainContainer->size();
  const int caption = views_.vwBeforeAfter->minimumHeight();
  const Rect frame = previewContainerFrame(
      {static_cast<double>(main.width()), static_cast<double>(main.height())}, caption);
  views_.vwPreviewContainer->setGeometry(wholeRect(frame));
  views_.vwBeforeAfter->setGeometry(0, main.height() - caption, main.width(), caption);
  views_.vwBeforeAfter->raise();
}

void PreviewController::layoutContainers() {
  const QSize area = views_.vwPreviewContainer->size();
  const ContainerFrames frames = containerFrames(
      style_, {static_cast<double>(area.width()), static_cast<double>(area.height())});
  const auto place = [](QWidget* container, const Rect& frame) {
    container->setGeometry(wholeRect(frame));
    for (QObject* child : container->children()) {
      if (auto* view = qobject_cast<QWidget*>(child)) {
        view->setGeometry(container->rect());
        for (QObject* inner : view->children()) {
          if (auto* innerView = qobject_cast<QWidget*>(inner)) {
            innerView->setGeometry(container->rect());
          }
        }
      }
    }
  };
  place(views_.vwImageContainer, frames.vwImageContainer);
  place(views_.vwImageContainerForDualMode, frames.vwImageContainerForDualMode);
  const int middle = views_.vwImageContainer->width();
  views_.imgDualModeDivider->setGeometry(middle, 0, 1, area.height());
  views_.imgDualModeDivider->raise();
  actualPreviewSize_ = {static_cast<double>(views_.vwImageContainer->width()),
                        static_cast<double>(views_.vwImageContainer->height())};
}

Size PreviewController::containerSize() const {
  return devicePixels(actualPreviewSize_, views_.vwImageContainer->devicePixelRatioF());
}

Size PreviewController::photoSize() const {
  if (!hasPicture()) return {};
  const Bitmap& picture = inputOriginalImage_.picture();
  return {static_cast<double>(picture.width()), static_cast<double>(picture.height())};
}

double PreviewController::dividerPosition() const {
  return views_.splitView->positionOfDividerAtIndex(0) *
         views_.vwImageContainer->devicePixelRatioF();
}

void PreviewController::show(const ViewVisibility& visibility) {
  setVisibleIf(views_.splitView, visibility.splitView);
  setVisibleIf(views_.imgDualModeDivider, visibility.imgDualModeDivider);
  setVisibleIf(views_.imgFilteredImgVWLeft, visibility.imgFilteredImgVWLeft);
  setVisibleIf(views_.imgFilteredImgVWRight, visibility.imgFilteredImgVWRight);
  setVisibleIf(views_.imgFilteredImgVWLeftForDual, visibility.imgFilteredImgVWLeftForDual);
  setVisibleIf(views_.imgFilteredImgVWRightForDual, visibility.imgFilteredImgVWRightForDual);
  setVisibleIf(views_.vwBeforeAfter, visibility.vwBeforeAfter);
  setVisibleIf(views_.vwBefore, visibility.vwBefore);
  setVisibleIf(views_.vwAfter, visibility.vwAfter);
  setVisibleIf(views_.vwAfterFull, visibility.vwAfterFull);
}

Point PreviewController::inContainer(Point pointer) const {
  const double ratio = views_.vwImageContainer->devicePixelRatioF();
  const double width = actualPreviewSize_.width;
  const double x = pointer.x >= width ? pointer.x - width : pointer.x;
  return {x * ratio, (actualPreviewSize_.height - pointer.y) * ratio};
}

// What is seen is another thing now: the last whole result may not be put back either.
void PreviewController::dropResult() {
  hideResult();
  imgFilteredBeforeClickedPrvw_ = {};
}

// Whatever is being made of what was seen until now comes too late.
void PreviewController::hideResult() {
  generation_.advance();
  isResultWaiting_ = false;
  imgFilteredOriginal_ = {};
  services_.session.dropResultInFlight();
  removeOverlays();
}

void PreviewController::removeOverlays() {
  views_.vwDenoisedPreview->hide();
  views_.vwDenoisedPreviewForDual->hide();
}

void PreviewController::notifyState() const {
  if (stateChanged) stateChanged();
}

}  // namespace velmara
