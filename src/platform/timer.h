#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string_view>

namespace velmara {

/// Intervals are in seconds, fractions allowed.
using Seconds = std::chrono::duration<double>;

/// A scheduled timer. It ends when it is invalidated or destroyed, which its own handler may do.
class Timer {
 public:
  virtual ~Timer() = default;

  virtual void invalidate() = 0;

  /// Whether it will fire (again).
  virtual bool isValid() const = 0;
};

/// Timers and delayed calls of the main thread's event loop. Handlers must not throw. Main thread.
class TimerScheduler {
 public:
  virtual ~TimerScheduler() = default;

  /// Calls the handler after the interval, once or again and again. Repeats that the event loop
  /// missed are not made up for. An interval that is not positive is the shortest there is.
  [[nodiscard]] virtual std::unique_ptr<Timer> scheduledTimer(Seconds interval, bool repeats,
                                                              std::function<void()> handler) = 0;

  /// Calls the action once after the delay, at the earliest in the next turn of the event loop,
  /// also for a delay of 0. The target and the selector only name the request for cancelling: an
  /// object's owner cancels its requests before it dies.
  virtual void performSelector(const void* target, std::string_view selector, Seconds delay,
                               std::function<void()> action) = 0;

  /// Forgets the requests of a target that have not been performed.
  virtual void cancelPreviousPerformRequests(const void* target) = 0;

  /// The same for the requests of one selector only.
  virtual void cancelPreviousPerformRequests(const void* target, std::string_view selector) = 0;
};

/// The timers of the application's event loop.
TimerScheduler& eventLoopTimers();

}  // namespace velmara
