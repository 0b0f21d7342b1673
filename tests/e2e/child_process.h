#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

#include "e2e/waiting.h"

namespace velmara::e2e {

/// Variables that a child has beside or instead of ours.
using Environment = std::vector<std::pair<std::string, std::string>>;

/// A program that runs beside the test; killed when this goes, and also when the test dies.
class ChildProcess {
 public:
  /// Its output and errors go to `outputFile`. `inheritedFd` stays open in the child; -1 for none.
  ChildProcess(const std::vector<std::string>& words, const Environment& environment,
               const std::string& outputFile, int inheritedFd = -1);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  pid_t pid() const { return pid_; }
  bool isRunning() { return !exitCode(); }
  /// Once it has ended; 128 + the signal for one that a signal ended.
  std::optional<int> exitCode();
  /// Waits for its end; nothing if it is still running at the deadline.
  std::optional<int> waitForEnd(Seconds deadline = kDeadline);
  /// Ends it by a signal and waits until it is gone.
  void kill(int signal);

 private:
  pid_t pid_ = -1;
  std::optional<int> exitCode_;
};

}  // namespace velmara::e2e
