#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/bitmap.h"
#include "base/task_queue.h"
#include "platform/notification_center.h"
#include "platform/timer.h"
#include "preview/generation_counter.h"
#include "preview/scaled_picture.h"
#include "preview/viewport.h"
#include "session/editing_session.h"

namespace velmara {

/// What the preview works with; all of it must outlive the preview and its work on the queues.
struct PreviewServices {
  /// The one edit.
  EditingSession& session;
  /// The main thread's queue, and the one for work.
  TaskQueue& mainQueue;
  TaskQueue& globalQueue;
  /// Timers, notifications, and where lines of the log go (any thread).
  Scheduler& timers;
  NotificationCenter& center;
  LogSink log;
  /// Ends in "/"; where the region file goes.
  std::string temporaryDirectory;
};

/// The visible region of the picture and its run: cut on a worker, handed to the session in memory,
/// and written beside the run to the region file, which nothing reads back. Whatever the preview
/// asks of the session it asks here. Main thread.
class RegionRun {
 public:
  /// No region yet.
  explicit RegionRun(const PreviewServices& services);
  RegionRun(const RegionRun&) = delete;
  RegionRun& operator=(const RegionRun&) = delete;
  ~RegionRun();

  // What the session says and is told.

  /// Whether a run is under way, and whether there is a photo.
  bool isRunning() const { return services_.session.runState().isRunningAlgorithm(); }
  bool hasPhoto() const { return services_.session.selectedImageFile().has_value(); }
  /// What is seen may be changed: there is a photo and no run.
  bool mayChange() const { return hasPhoto() && !isRunning(); }
  /// Another preview will be asked for.
  void setIsBeforeCallingAlgo() { services_.session.runState().isBeforeCallingAlgo = true; }
  /// What must wait until the next result, or the picture's rest, as RunState has it.
  void silenceZoomIn() { services_.session.runState().changeControls(controlsAfterZoomIn); }
  void silenceZoomOut() { services_.session.runState().changeControls(controlsAfterZoomOut); }
  void startTimerEvent() { services_.session.runState().startTimerEvent(); }
  void stopTimerEvent() { services_.session.runState().stopTimerEvent(); }
  void invalidateTimer() { services_.session.runState().invalidateTimer(); }

  // The region.

  /// Performs a request in the next turn of the event loop, the last one asked for only.
  void post(std::function<void()> request);
  /// Cuts what a viewport shows of its picture and starts the run. Where both sides overflow that
  /// begins 0.2 s later, so that the split line, which is told by captureBegins, has left the
  /// screen.
  void cropVisiblePartofImageAndDenoise(const Viewport& viewport, const ScaledPicture& picture);
  /// Told before the region is cut.
  std::function<void()> captureBegins;
  /// Told when the region is cut, before its run starts.
  std::function<void()> regionCut;

  /// Whatever is being cut or filtered comes too late.
  void overtake();
  /// The same, and the region is no longer what is seen.
  void forget();
  /// The region that is seen; not valid until it is cut.
  const Bitmap& imgToBeFilter() const { return imgToBeFilter_; }

  /// What is seen became another thing during a run, so that its result will not do.
  void setStale() { isStale_ = true; }
  /// Whether it did; asked once.
  bool takeStale() { return std::exchange(isStale_, false); }

 private:
  class RegionFile;
  struct Cut {
    ScaledPicture picture;
    PixelRect pixels;
    GenerationCounter::Token token;
  };

  void takeScreenShotAndProccess(const Cut& cut);
  void render(const Cut& cut);
  void process(const Bitmap& region, const ShownPlace& place);

  PreviewServices services_;
  Bitmap imgToBeFilter_;
  float zoom_ = 1.0F;
  bool isStale_ = false;
  GenerationCounter generation_;
  std::shared_ptr<RegionFile> file_;
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace velmara
