#include "cli/terminal.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <exception>
#include <mutex>
#include <signal.h>
#include <stop_token>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace velmara::cli {
namespace {

// Lock-free, so that the handler may touch them.
JobControl interrupted;
std::atomic<bool> isAwaited = false;
static_assert(std::atomic<bool>::is_always_lock_free);

void handle(int /*signal*/) {
  if (!isAwaited || interrupted.isCancelled()) ::_exit(kInterrupted);
  interrupted.cancel();
}

constexpr std::chrono::milliseconds kBetweenDrawings(100);
constexpr int kBarWidth = 40;

}  // namespace

void endOnInterrupt() {
  struct sigaction action {};
  action.sa_handler = handle;
  ::sigemptyset(&action.sa_mask);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before {};
    ::sigaction(signal, nullptr, &before);
    // Whoever started us with the signal ignored (nohup) meant it.
    if (before.sa_handler != SIG_IGN) ::sigaction(signal, &action, nullptr);
  }
}

JobControl& cancelledByInterrupt() {
  isAwaited = true;
  return interrupted;
}

int onEachPhoto(const std::vector<std::string>& inputs,
                const std::function<Status(const std::string& input)>& work) {
  int exitCode = 0;
  for (const std::string& input : inputs) {
    Status done = Done{};
    try {
      done = work(input);
    } catch (const std::exception& exception) {
      done = Error{exception.what()};
    }
    if (interrupted.isCancelled()) return kInterrupted;
    if (done) continue;
    std::fprintf(stderr, "velmara: %s: %s\n", input.c_str(), done.error().c_str());
    exitCode = 1;
  }
  return exitCode;
}

Status writeToStandardOutput(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR && !cancelledByInterrupt().isCancelled()) continue;
    if (written <= 0) {
      return Error{"cannot write to standard output: " + std::generic_category().message(errno)};
    }
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return Done{};
}

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

ProgressLine::ProgressLine(std::function<double()> progress, bool isShown) {
  if (!isShown) return;
  const auto draw = [progress = std::move(progress)](const std::stop_token& stop) {
    const auto start = std::chrono::steady_clock::now();
    std::mutex mutex;
    std::condition_variable_any stopped;
    // It guards nothing: waiting for a time or a stop takes one.
    std::unique_lock lock(mutex);  // cppcheck-suppress localMutex
    bool isDrawn = false;
    while (!stopped.wait_for(lock, stop, kBetweenDrawings, [&] { return stop.stop_requested(); })) {
      const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
      std::fprintf(stderr, "\r%s\033[K",
                   progressText(progress(), elapsed.count(), kBarWidth).c_str());
      std::fflush(stderr);
      isDrawn = true;
    }
    if (isDrawn) std::fputs("\r\033[K", stderr);
  };
  try {
    drawer_ = std::jthread(draw);
  } catch (const std::system_error&) {
    return;  // No thread to be had; the work goes on without a line.
  }
}

}  // namespace velmara::cli
