#pragma once

#include <functional>

#include "base/task_queue.h"
#include "platform/bundle.h"
#include "platform/notification_center.h"
#include "platform/panels.h"
#include "platform/timer.h"
#include "platform/workspace.h"
#include "session/editing_session.h"
#include "session/recent_photos.h"

namespace velmara {

/// What the main screen works with. All of it outlives the screen and its work on the queues; tests
/// give it counterparts of their own.
struct ScreenServices {
  /// The one edit.
  EditingSession& session;
  /// The main thread's queue, and the one for work.
  TaskQueue& mainQueue;
  TaskQueue& globalQueue;
  /// Timers and notifications.
  Scheduler& timers;
  NotificationCenter& center;
  /// The desktop's part.
  AlertPresenter& alerts;
  Panels& panels;
  Workspace& workspace;
  /// The program's facts, and where lines of the log go (any thread).
  const BundleFacts& bundle;
  LogSink log;
  /// Ends in "/".
  std::string temporaryDirectory;
  /// The menu's commands that the application sees to.
  std::function<void()> openTapped;
  std::function<void()> closeTapped;
  std::function<void()> saveTapped;
  std::function<void()> saveAsTapped;
  std::function<void()> showFeedback;
  std::function<void()> showVMPHelp;
  std::function<void()> showBatch;
  /// What the menu offers to open again; null: nothing.
  const RecentPhotos* recentPhotos = nullptr;
};

}  // namespace velmara
