#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "base/image.h"
#include "base/task_queue.h"
#include "preview/generation_counter.h"
#include "preview/scaled_picture.h"
#include "preview/viewport.h"
#include "preview/views/screen_tiles.h"

namespace velmara {

class PictureView;

/// The photo on the screen, under whatever is laid over it. Scaling takes its time, so it is done
/// on a worker; until the picture is there, the views show what they showed. Main thread.
class PictureLayer {
 public:
  /// Views and queues outlive this object and its work.
  PictureLayer(std::vector<PictureView*> views, TaskQueue& mainQueue, TaskQueue& globalQueue);
  PictureLayer(const PictureLayer&) = delete;
  PictureLayer& operator=(const PictureLayer&) = delete;
  ~PictureLayer() = default;

  /// Another photo's picture, upright and opaque; one that is not valid while there is none. The
  /// views are empty until it is shown.
  void setInputOriginalImage(PicturePyramid picture, const ColorProfile& profile);
  /// Whether there is a photo's picture.
  bool hasPicture() const { return inputOriginalImage_.isValid(); }
  /// Of the photo, in pixels.
  Size photoSize() const;
  /// From the photo's colours to the screen's.
  const ScreenColors& colors() const { return colors_; }
  /// The whole photo at the shown size.
  const ScaledPicture& zoomedImage() const { return zoomedImage_; }

  /// Shows the picture at a viewport's size and place.
  void show(const Viewport& viewport);
  /// Moves it to the place of a viewport of the same size.
  void moveTo(const Viewport& viewport);

  /// Whether the picture is still on its way.
  bool isRendering() const { return isRendering_; }
  /// Told when it has come.
  std::function<void()> pictureShown;

 private:
  void render();
  void rendered(const std::shared_ptr<ScreenTiles>& tiles, const PixelRect& place,
                const GenerationCounter::Token& token);

  std::vector<PictureView*> views_;
  TaskQueue& mainQueue_;
  TaskQueue& globalQueue_;
  PicturePyramid inputOriginalImage_;
  ScreenColors colors_;
  ScaledPicture zoomedImage_;
  Viewport viewport_;
  /// Which photo's picture is the right one.
  GenerationCounter photos_;
  bool isRendering_ = false;
  /// Another picture or size came while one was rendered.
  bool isStale_ = false;
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace velmara
