#include "preview/result_overlay.h"

#include <utility>

#include "base/residual.h"
#include "imaging/resample.h"
#include "preview/split_line.h"
#include "preview/views/picture_view.h"
#include "widgets/split_view.h"

namespace velmara {

ResultOverlay::ResultOverlay(const PreviewViews& views, const Viewport& viewport,
                             TaskQueue& mainQueue, TaskQueue& globalQueue)
    : views_(views), viewport_(viewport), mainQueue_(mainQueue), globalQueue_(globalQueue) {}

void ResultOverlay::take(const Bitmap& result) {
  imgFilteredOriginal_ = result;
  imgFilteredBeforeClickedPrvw_ = result;
}

void ResultOverlay::hide() {
  generation_.advance();
  imgFilteredOriginal_ = {};
  setImages({});
  views_.vwDenoisedPreview->hide();
  views_.vwDenoisedPreviewForDual->hide();
}

void ResultOverlay::forget() {
  hide();
  imgFilteredBeforeClickedPrvw_ = {};
}

bool ResultOverlay::putBack() {
  imgFilteredOriginal_ = imgFilteredBeforeClickedPrvw_;
  return isValid();
}

void ResultOverlay::show(const Bitmap& imgToBeFilter, const ScreenColors& colors) {
  globalQueue_.async([this, alive = std::weak_ptr(alive_), token = generation_.advance(),
                      original = imgToBeFilter, result = imgFilteredOriginal_, colors,
                      isResidual = isResidual_, mainQueue = &mainQueue_] {
    const bool hasSize = result.width() == original.width() && result.height() == original.height();
    const Bitmap matching =
        hasSize ? result : resampled(result, original.width(), original.height());
    // Differences are no colours: their grey stays grey.
    const QImage laid = isResidual ? ScreenColors().imageFor(residual(original, matching))
                                   : colors.imageFor(matching);
    const auto images =
        std::make_shared<Images>(Images{colors.imageFor(original), laid, isResidual});
    if (images->original.isNull() || images->result.isNull()) return;
    mainQueue->async([this, alive, token, matching, images] {
      if (!alive.expired() && generation_.isCurrent(token)) install(matching, *images);
    });
  });
}

void ResultOverlay::install(const Bitmap& result, const Images& images) {
  imgFilteredOriginal_ = result;
  setImages(images);
  const PreviewStyle style = viewport_.flag_current_Preview_Style;
  QWidget* overlay = views_.vwDenoisedPreview;
  if (style == PreviewStyle::kDual) {
    overlay = views_.vwDenoisedPreviewForDual;
    views_.imgFilteredImgVWRightForDual->showPicture(images_.result, place());
  } else {
    views_.imgFilteredImgVWRight->showPicture(images_.result, place());
    moveLine();
  }
  overlay->raise();
  overlay->show();
  showViewsForNewResult(views_, style);
}

void ResultOverlay::setImages(const Images& images) {
  const bool wasSeen = isResidualSeen();
  images_ = images;
  if (wasSeen != isResidualSeen() && residualSeenChanged) residualSeenChanged();
}

void ResultOverlay::moveLine() {
  if (images_.original.isNull()) return;
  views_.imgFilteredImgVWLeft->showPicture(
      images_.original, beforePart(place(), dividerPosition(), viewport_.container().width));
}

double ResultOverlay::dividerPosition() const {
  return views_.splitView->positionOfDividerAtIndex(0) * viewport_.devicePixelRatio;
}

// Where an image view of the container's size shows it: in the middle.
PixelRect ResultOverlay::place() const {
  const Size size{double(images_.result.width()), double(images_.result.height())};
  return paintedRect(centredRect(size, viewport_.container()), viewport_.container());
}

}  // namespace velmara
