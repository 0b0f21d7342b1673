#include "cli/interrupt.h"

#include <atomic>
#include <signal.h>
#include <unistd.h>

namespace velmara::cli {
namespace {

constexpr int kInterrupted = 130;

// Lock-free, so that the handler may touch them.
std::atomic<int> openSections = 0;
std::atomic<bool> isInterrupted = false;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

void handle(int /*signal*/) {
  isInterrupted = true;
  if (openSections == 0) ::_exit(kInterrupted);
}

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

UninterruptedSection::UninterruptedSection() {
  ++openSections;
}

UninterruptedSection::~UninterruptedSection() {
  if (--openSections == 0 && isInterrupted) ::_exit(kInterrupted);
}

}  // namespace velmara::cli
