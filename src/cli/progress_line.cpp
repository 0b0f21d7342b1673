#include "cli/progress_line.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace velmara::cli {
namespace {

constexpr double kSecondsBetweenDrawings = 0.1;
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

ProgressLine::ProgressLine(bool isShown, std::function<double()> clock)
    : isShown_(isShown), clock_(std::move(clock)), start_(clock_()) {}

void ProgressLine::show(std::int64_t done, std::int64_t total) {
  if (!isShown_ || total <= 0) return;
  const std::scoped_lock lock(mutex_);
  const double now = clock_();
  if (now - last_ < kSecondsBetweenDrawings) return;
  last_ = now;
  isDrawn_ = true;
  const double fraction = static_cast<double>(done) / static_cast<double>(total);
  std::fprintf(stderr, "\r%s\033[K", progressText(fraction, now - start_, kBarWidth).c_str());
  std::fflush(stderr);
}

void ProgressLine::clear() {
  const std::scoped_lock lock(mutex_);
  if (!isDrawn_) return;
  isDrawn_ = false;
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
}

}  // namespace velmara::cli
