#pragma once

#include <functional>

#include "base/task_queue.h"

namespace velmara {

/// Does the pieces 0 to count - 1 of some work, on the calling thread and up to `threads` - 1 tasks
/// of `workers` (null for none), and returns when all are done. Tasks that come late, or never, are
/// not waited for. `piece` is called from several threads at a time and must not throw.
void shareWork(TaskQueue* workers, int threads, int count, const std::function<void(int)>& piece);

}  // namespace velmara
