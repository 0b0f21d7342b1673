#pragma once

#include <cstdint>
#include <functional>

#include "base/image.h"
#include "base/job_control.h"
#include "base/task_queue.h"
#include "engine/filter_kernel.h"

namespace velmara {

/// What the engine needs from outside: it links no codec, no windows and makes no threads itself.
///
/// Whatever is left empty is done without: lines are dropped, the clock is the system's steady one,
/// and a request that needs a missing queue or codec is refused with a log line. Queues must live
/// as long as the engine.
struct EngineEnvironment {
  /// The concurrent queue that the eight bands of a request run on.
  TaskQueue* workers = nullptr;
  /// The serial queue of the main thread, where the end of the bands is checked.
  TaskQueue* mainQueue = nullptr;
  /// Where lines of the log go; any thread.
  LogSink log;
  /// An image encoded as JPEG at a compression factor (0.0 the strongest, 1.0 the best; other
  /// values are passed on as they are) and decoded again; an image that is not valid on failure.
  std::function<Image(const Image&, float factor)> recompressJpeg;
  /// Seconds since some fixed moment, never running backwards.
  std::function<double()> clock;
  /// What filters runs. The environment variable VELMARA_ENGINE=reference asks for the reference as
  /// well.
  KernelChoice kernel = KernelChoice::kFast;
};

/// How a request is watched and stopped while it runs. Whatever is left empty is done without.
struct RunWatch {
  /// Asked between rows whether to stop, and told the part of the rows that is done. A cancelled
  /// request gives no image.
  JobControl* control = nullptr;
  /// Told rows of the result as soon as they are final, from the top to the bottom without gaps,
  /// one call at a time, from any of the threads that filter: three samples a pixel, rows without
  /// gaps, valid during the call. After a success all rows have been told; after a failure or a
  /// cancel no more are. Must not throw; a slow one holds up one thread of the filter.
  std::function<void(const std::uint8_t* rows, int firstRow, int rowCount)> rowsFinished = {};
  /// For an image that is still being decoded: waits until so many rows of its bitmap, from the
  /// first, may be read; false if they will not come, which ends the request without an image. From
  /// any of the threads that filter, one call at a time.
  std::function<bool(int rows)> awaitRows = {};
};

}  // namespace velmara
