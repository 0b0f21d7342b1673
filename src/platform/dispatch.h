#pragma once

#include "base/task_queue.h"

namespace velmara {

/// The main thread's queue: tasks run one after another in its event loop, in the order they came.
/// The queue belongs to the thread of the application object, which must exist while it is used.
TaskQueue& mainQueue();

/// The global concurrent queue of default priority. It has more threads than the machine has
/// processors, so that tasks that wait for others (a run waits for its bands) do not starve them.
TaskQueue& globalQueue();

/// Whether no task of the global queue runs or waits at the moment.
bool isGlobalQueueIdle();

}  // namespace velmara
