#include "cli/progress_line.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <stop_token>

namespace velmara::cli {
namespace {

constexpr std::chrono::milliseconds kBetweenDrawings(100);
constexpr int kBarWidth = 40;

}  // namespace

std::string progressText(double fraction, double elapsedSeconds, int width) {
  fraction = std::clamp(fraction, 0.0, 1.0);
  const int filled = static_cast<int>(fraction * width);
  std::string text = "[" + std::string(static_cast<std::size_t>(filled), '#') +
                     std::string(static_cast<std::size_t>(width - filled), '-') + "] ";
  const std::string percent = std::to_string(static_cast<int>(fraction * 100.0));
  text += std::string(3 - percent.size(), ' ') + percent + " %";
  if (fraction > 0.0) {
    const double left = elapsedSeconds / fraction - elapsedSeconds;
    text += ", " + std::to_string(static_cast<long long>(std::ceil(left))) + " s left";
  }
  return text;
}

ProgressLine::ProgressLine(const JobControl& control, bool isShown) {
  if (!isShown) return;
  drawer_ = std::jthread([&control](const std::stop_token& stop) {
    const auto start = std::chrono::steady_clock::now();
    std::mutex mutex;
    std::condition_variable_any stopped;
    std::unique_lock lock(mutex);
    bool isDrawn = false;
    while (!stopped.wait_for(lock, stop, kBetweenDrawings, [&] { return stop.stop_requested(); })) {
      const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
      std::fprintf(stderr, "\r%s\033[K",
                   progressText(control.progress(), elapsed.count(), kBarWidth).c_str());
      std::fflush(stderr);
      isDrawn = true;
    }
    if (isDrawn) std::fputs("\r\033[K", stderr);
  });
}

}  // namespace velmara::cli
