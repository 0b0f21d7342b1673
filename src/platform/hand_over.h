#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/timer.h"

namespace velmara {

// A second start hands its photo to the window that is open already, through a local socket.

/// How long a second start waits for the first one's answer.
inline constexpr Seconds kHandOverPatience(1.0);

/// Where the first window of this user on a display listens, in the system's own bytes. Empty where
/// XDG_RUNTIME_DIR is not the user's own folder, closed to everybody else: then nothing is handed
/// over. The display is any text that names it.
std::string handOverAddress(const std::string& display);

/// Asks whoever listens there to open a photo, an absolute path in the system's own bytes. True if
/// they said that they do; else they will not, whatever they say later. Only a process of the same
/// user is told anything. Waits at most that long to be heard, and as long for the answer.
bool handOver(const std::string& address, const std::string& photo,
              Seconds patience = kHandOverPatience);

/// The seat of the first window, which listens as long as this lives. Main thread, with an event
/// loop.
class HandOverSeat {
 public:
  /// What the window is asked.
  struct Window {
    /// Whether it takes a photo now.
    std::function<bool()> mayOpen;
    /// Opens it; only called for one that was taken.
    std::function<void(const std::string& photo)> open;
  };

  /// Takes the seat at an address if no living process has it; what a killed one left there is
  /// cleared away, anything else stays. Without an address nobody listens.
  HandOverSeat(std::string address, Window window);
  ~HandOverSeat();

  /// Whether the seat was free, so that photos are handed to this window.
  bool isListening() const;

 private:
  class Listener;
  std::unique_ptr<Listener> listener_;
};

}  // namespace velmara
