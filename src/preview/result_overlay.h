#pragma once

#include <QImage>

#include <functional>
#include <memory>

#include "base/bitmap.h"
#include "base/task_queue.h"
#include "preview/generation_counter.h"
#include "preview/preview_views.h"
#include "preview/viewport.h"
#include "preview/views/screen_tiles.h"

namespace velmara {

/// The denoised result, or what was taken, laid over the picture: whole in single style, right of
/// the split line with the original left of it in split style, over the right container in dual
/// style. Main thread.
class ResultOverlay {
 public:
  /// Views, viewport and queues outlive this object and its work.
  ResultOverlay(const PreviewViews& views, const Viewport& viewport, TaskQueue& mainQueue,
                TaskQueue& globalQueue);
  ResultOverlay(const ResultOverlay&) = delete;
  ResultOverlay& operator=(const ResultOverlay&) = delete;
  ~ResultOverlay() = default;

  /// Whether there is a result of what is seen.
  bool isValid() const { return imgFilteredOriginal_.isValid(); }
  /// A new result, not shown yet.
  void take(const Bitmap& result);

  /// Whether what was taken from the picture is laid over it in place of the result, from the next
  /// show() on: for single style.
  void setResidual(bool isResidual) { isResidual_ = isResidual; }
  bool isResidual() const { return isResidual_; }
  /// Whether that is what lies over the picture now, and told when it does and when it no longer
  /// does.
  bool isResidualSeen() const { return images_.isResidual; }
  std::function<void()> residualSeenChanged;

  /// Takes the result off the screen.
  void hide();
  /// The same, and it may not be put back: what is seen is another thing now.
  void forget();
  /// The last whole result is the result again, not shown yet; false if there is none.
  bool putBack();

  /// Lays the result over the region it was made of. It is brought to the region's size first, so
  /// that both match point for point, which is done on a worker; what was overtaken meanwhile is
  /// not shown.
  void show(const Bitmap& imgToBeFilter, const ScreenColors& colors);
  /// Puts the end of the original where the line stands now.
  void moveLine();

  /// Of the line, from the split view's left edge, in device pixels.
  double dividerPosition() const;

 private:
  struct Images {
    QImage original;
    QImage result;
    bool isResidual = false;
  };

  void install(const Bitmap& result, const Images& images);
  void setImages(const Images& images);
  PixelRect place() const;

  PreviewViews views_;
  const Viewport& viewport_;
  TaskQueue& mainQueue_;
  TaskQueue& globalQueue_;
  Bitmap imgFilteredOriginal_;
  Bitmap imgFilteredBeforeClickedPrvw_;
  bool isResidual_ = false;
  /// What is laid over the picture; null while nothing is.
  Images images_;
  GenerationCounter generation_;
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace velmara
