#pragma once

#include <memory>

namespace velmara {

/// While it lives, a signal that asks the process to end (SIGTERM as at a logout, SIGINT, SIGHUP)
/// ends the event loop, with 128 and the signal's number as its exit code, so that what comes after
/// the loop is done. One that was ignored at the start stays so; a second one ends the process at
/// once. Main thread, after the application object, one at a time.
class EndingSignals {
 public:
  EndingSignals();
  ~EndingSignals();

 private:
  class Pipe;
  std::unique_ptr<Pipe> pipe_;
};

}  // namespace velmara
