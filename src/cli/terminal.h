#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "base/job_control.h"
#include "base/result.h"

namespace velmara::cli {

inline constexpr int kInterrupted = 130;

/// From here on Ctrl-C (and a closed terminal, and a polite kill) ends the program with exit code
/// kInterrupted.
void endOnInterrupt();

/// What an interrupt cancels. From the first call on whoever has called ends the program, except
/// that a second interrupt still does so at once.
JobControl& cancelledByInterrupt();

/// Does something with the photos one after another. What goes wrong with one is told on standard
/// error and does not stop the others. Returns the exit code: 0 all well, 1 some failed,
/// kInterrupted after an interrupt that was left to the work.
int onEachPhoto(const std::vector<std::string>& inputs,
                const std::function<Status(const std::string& input)>& work);

/// Writes everything to standard output; an interrupt ends that with an error.
Status writeToStandardOutput(std::span<const std::uint8_t> bytes);

/// The text of a progress bar `width` characters wide: "[####----]  40 %, 3 s left". Seconds are
/// left out while nothing is done yet.
std::string progressText(double fraction, double elapsedSeconds, int width);

/// A progress bar that is drawn again and again on one line of the terminal on standard error, ten
/// times a second while it lives; the line is empty afterwards.
class ProgressLine {
 public:
  /// Follows a progress of 0.0 to 1.0, asked for on a thread of its own; draws nothing unless it is
  /// shown.
  ProgressLine(std::function<double()> progress, bool isShown);

 private:
  std::jthread drawer_;
};

}  // namespace velmara::cli
