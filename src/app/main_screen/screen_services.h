#pragma once

#include <functional>

#include "base/task_queue.h"
#include "platform/bundle.h"
#include "platform/notification_center.h"
#include "platform/panels.h"
#include "platform/timer.h"
#include "platform/workspace.h"
#include "session/editing_session.h"

namespace velmara {

/// What the main screen works with. All of it outlives the screen and its work on the queues; tests
/// give it counterparts of their own.
struct ScreenServices {
  EditingSession& session;
  TaskQueue& mainQueue;
  TaskQueue& globalQueue;
  Scheduler& timers;
  NotificationCenter& center;
  AlertPresenter& alerts;
  Panels& panels;
  Workspace& workspace;
  const BundleFacts& bundle;
  LogSink log;
  /// Ends in "/".
  std::string temporaryDirectory;
  std::function<void()> openTapped;
  std::function<void()> closeTapped;
  std::function<void()> saveTapped;
  std::function<void()> saveAsTapped;
  std::function<void()> showFeedback;
  std::function<void()> showVMPHelp;
};

}  // namespace velmara
