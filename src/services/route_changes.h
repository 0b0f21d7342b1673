#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

#include "platform/timer.h"

namespace velmara {

/// Tells that interfaces, addresses or routes of this machine changed, as the kernel announces it
/// (rtnetlink multicast groups). No polling. What comes within a tenth of a second is told once.
/// Lives in the event loop of the main thread.
class RouteChanges {
 public:
  /// The handler runs from the timers; it may destroy this object.
  RouteChanges(Scheduler& timers, std::function<void()> changed);
  RouteChanges(const RouteChanges&) = delete;
  RouteChanges& operator=(const RouteChanges&) = delete;
  ~RouteChanges();

  /// False if the kernel could not be asked to announce changes.
  bool isListening() const { return notifier_ != nullptr; }

 private:
  void takeMessages();

  Scheduler& timers_;
  std::function<void()> changed_;
  int socket_ = -1;
  std::unique_ptr<QSocketNotifier> notifier_;
  std::unique_ptr<Timer> gathering_;
};

}  // namespace velmara
