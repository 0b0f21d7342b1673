#include "cli/interrupt.h"

#include <atomic>
#include <signal.h>
#include <unistd.h>

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

}  // namespace velmara::cli
