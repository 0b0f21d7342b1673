#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

namespace velmara::cli {

/// The text of a progress bar `width` characters wide: "[####----]  40 %, 3 s left". Seconds are
/// left out while nothing is done yet.
std::string progressText(double fraction, double elapsedSeconds, int width);

/// A progress bar that is drawn again and again on one line of the terminal on standard error, at
/// most ten times a second. Draws nothing where standard error is no terminal. Any thread.
class ProgressLine {
 public:
  /// `clock` gives seconds from an arbitrary start.
  ProgressLine(bool isShown, std::function<double()> clock);
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ~ProgressLine() { clear(); }

  void show(std::int64_t done, std::int64_t total);
  /// Takes the bar off the line again, so that something else can be printed there.
  void clear();

 private:
  bool isShown_;
  std::function<double()> clock_;
  std::mutex mutex_;
  double start_;
  double last_ = 0.0;
  bool isDrawn_ = false;
};

}  // namespace velmara::cli
