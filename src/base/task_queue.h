#pragma once

#include <functional>
#include <string>

namespace velmara {

/// Where work is handed to: a serial queue (the main thread's) or a concurrent one.
class TaskQueue {
 public:
  virtual ~TaskQueue() = default;

  /// Takes a task and returns at once; the task runs later on one of the queue's threads. May be
  /// called from any thread. Tasks must not throw.
  virtual void async(std::function<void()> task) = 0;

  /// Whether the calling thread is one of this queue's own.
  virtual bool isCurrent() const = 0;
};

/// Takes one line of the log, without its line end. May be called from any thread.
using LogSink = std::function<void(const std::string&)>;

}  // namespace velmara
