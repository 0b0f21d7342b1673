#pragma once

#include <chrono>

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

}  // namespace velmara
