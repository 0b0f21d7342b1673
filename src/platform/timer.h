#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string_view>

namespace velmara {

/// Where the time comes from. Any thread.
class Clock {
 public:
  virtual ~Clock() = default;

  /// A time that only runs forward, for measuring.
  virtual std::chrono::steady_clock::time_point monotonic() const = 0;

  /// The time of day, which the user and the network may set.
  virtual std::chrono::system_clock::time_point wall() const = 0;
};

/// The machine's clocks.
const Clock& systemClock();

/// Intervals are in seconds, fractions allowed.
using Seconds = std::chrono::duration<double>;

/// A scheduled timer. It ends when it is destroyed, which its own handler may do.
class Timer {
 public:
  virtual ~Timer() = default;
};

/// Timers and delayed calls of the main thread's event loop. Handlers must not throw. Main thread.
class Scheduler {
 public:
  virtual ~Scheduler() = default;

  /// Calls the handler after the interval, once or again and again. Repeats that the event loop
  /// missed are not made up for. An interval that is not positive is the shortest there is.
  [[nodiscard]] virtual std::unique_ptr<Timer> start(Seconds interval, bool repeats,
                                                     std::function<void()> handler) = 0;

  /// Calls the action once after the delay, at the earliest in the next turn of the event loop,
  /// also for a delay of 0. The context and the key only name the call for cancelling: an object
  /// cancels its own before it dies.
  virtual void after(const void* context, std::string_view key, Seconds delay,
                     std::function<void()> action) = 0;

  /// Forgets the calls of a context that have not been made; only those of a key if one is named.
  virtual void cancel(const void* context, std::string_view key = {}) = 0;
};

/// The timers of the application's event loop.
Scheduler& eventLoopTimers();

}  // namespace velmara
