#pragma once

#include <string>
#include <thread>

#include "base/job_control.h"

namespace velmara::cli {

/// The text of a progress bar `width` characters wide: "[####----]  40 %, 3 s left". Seconds are
/// left out while nothing is done yet.
std::string progressText(double fraction, double elapsedSeconds, int width);

/// A progress bar that is drawn again and again on one line of the terminal on standard error, ten
/// times a second while it lives; the line is empty afterwards.
class ProgressLine {
 public:
  /// Follows the control, which must outlive it; draws nothing unless it is shown.
  ProgressLine(const JobControl& control, bool isShown);

 private:
  std::jthread drawer_;
};

}  // namespace velmara::cli
