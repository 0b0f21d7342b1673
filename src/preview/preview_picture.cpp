// How the picture gets to the screen. Scaling it takes its time, so it is not done on the main
// thread; until it is there, the views show what they showed.
#include <memory>
#include <utility>

#include "preview/preview_controller.h"
#include "preview/views/picture_view.h"
#include "preview/views/screen_tiles.h"

namespace velmara {

/// A rendered picture on its way back to the main thread.
struct PreviewController::RenderedPicture {
  std::shared_ptr<ScreenTiles> tiles;
  PixelRect place;
  GenerationCounter::Token token;
};

void PreviewController::showPictureAt(const Rect& frame) {
  rectPreviewPhoto_ = frame;
  isPictureStale_ = true;
  if (!isRenderingPicture_) renderPicture();
}

// Only one at a time: while the window is being resized every size would overtake the one before,
// and none would ever be seen.
void PreviewController::renderPicture() {
  isRenderingPicture_ = true;
  isPictureStale_ = false;
  const PixelRect place = paintedRect(rectPreviewPhoto_, containerSize());
  const PixelRect container{0, 0, static_cast<int>(containerSize().width),
                            static_cast<int>(containerSize().height)};
  PixelRect seen = intersection(place, container);
  seen.x -= place.x;
  seen.y -= place.y;
  RenderedPicture picture{std::make_shared<ScreenTiles>(zoomedImage_, colors_), place,
                          pictures_.current()};
  services_.globalQueue.async([this, alive = std::weak_ptr(alive_), picture = std::move(picture),
                               seen, mainQueue = &services_.mainQueue] {
    picture.tiles->imagesOver(seen);
    mainQueue->async([this, alive, picture] {
      if (!alive.expired()) pictureRendered(picture);
    });
  });
}

void PreviewController::pictureRendered(const RenderedPicture& picture) {
  isRenderingPicture_ = false;
  if (pictures_.isCurrent(picture.token)) {
    // It may have been dragged meanwhile.
    const PixelRect place =
        isPictureStale_ ? picture.place : paintedRect(rectPreviewPhoto_, containerSize());
    views_.imgPreviewPhoto->showPicture(picture.tiles, place);
    views_.imgPreviewPhotoForDual->showPicture(picture.tiles, place);
  }
  if (isPictureStale_) {
    renderPicture();
  } else if (std::exchange(isResultWaiting_, false)) {
    setUpPreviewForDenoisedImage();
  }
}

void PreviewController::movePictureTo(const Rect& frame) {
  rectPreviewPhoto_ = frame;
  if (isRenderingPicture_) return;  // It will be put there.
  const PixelRect place = paintedRect(frame, containerSize());
  views_.imgPreviewPhoto->moveTo(place);
  views_.imgPreviewPhotoForDual->moveTo(place);
}

}  // namespace velmara
