#pragma once

#include <chrono>
#include <thread>

namespace velmara::e2e {

using Seconds = std::chrono::duration<double>;

/// Long enough for a busy machine and for a program slowed down by sanitizers.
inline constexpr Seconds kDeadline{40.0};

/// Looks until the condition holds; false if it does not within the deadline.
template <typename Condition>
bool waitUntil(Condition condition, Seconds deadline = kDeadline,
               std::chrono::milliseconds betweenLooks = std::chrono::milliseconds(15)) {
  const auto end = std::chrono::steady_clock::now() + deadline;
  do {
    if (condition()) return true;
    std::this_thread::sleep_for(betweenLooks);
  } while (std::chrono::steady_clock::now() < end);
  return condition();
}

}  // namespace velmara::e2e
