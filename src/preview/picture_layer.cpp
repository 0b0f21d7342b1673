#include "preview/picture_layer.h"

#include <utility>

#include "preview/views/picture_view.h"

namespace velmara {

PictureLayer::PictureLayer(std::vector<PictureView*> views, TaskQueue& mainQueue,
                           TaskQueue& globalQueue)
    : views_(std::move(views)), mainQueue_(mainQueue), globalQueue_(globalQueue) {}

void PictureLayer::setInputOriginalImage(PicturePyramid picture, const ColorProfile& profile) {
  inputOriginalImage_ = std::move(picture);
  colors_ = ScreenColors(profile);
  zoomedImage_ = {};
  photos_.advance();
  isStale_ = false;
  for (PictureView* view : views_) view->clear();
}

Size PictureLayer::photoSize() const {
  if (!hasPicture()) return {};
  const Bitmap& picture = inputOriginalImage_.picture();
  return {static_cast<double>(picture.width()), static_cast<double>(picture.height())};
}

// A scaled picture renders only what is looked at, so setting it costs nothing.
void PictureLayer::show(const Viewport& viewport) {
  viewport_ = viewport;
  zoomedImage_ = ScaledPicture(inputOriginalImage_,
                               {viewport.rectPreviewPhoto.width, viewport.rectPreviewPhoto.height});
  isStale_ = true;
  if (!isRendering_) render();
}

// Only one at a time: while the window is being resized every size would overtake the one before,
// and none would ever be seen.
void PictureLayer::render() {
  isRendering_ = true;
  isStale_ = false;
  globalQueue_.async([this, alive = std::weak_ptr(alive_), place = viewport_.painted(),
                      seen = viewport_.seen(), token = photos_.current(),
                      tiles = std::make_shared<ScreenTiles>(zoomedImage_, colors_),
                      mainQueue = &mainQueue_] {
    tiles->imagesOver(seen);
    mainQueue->async([this, alive, place, token, tiles] {
      if (!alive.expired()) rendered(tiles, place, token);
    });
  });
}

void PictureLayer::rendered(const std::shared_ptr<ScreenTiles>& tiles, const PixelRect& place,
                            const GenerationCounter::Token& token) {
  isRendering_ = false;
  if (photos_.isCurrent(token)) {
    // It may have been dragged meanwhile.
    const PixelRect frame = isStale_ ? place : viewport_.painted();
    for (PictureView* view : views_) view->showPicture(tiles, frame);
  }
  if (isStale_) {
    render();
  } else if (pictureShown) {
    pictureShown();
  }
}

void PictureLayer::moveTo(const Viewport& viewport) {
  viewport_ = viewport;
  if (isRendering_) return;  // It will be put there.
  for (PictureView* view : views_) view->moveTo(viewport.painted());
}

}  // namespace velmara
