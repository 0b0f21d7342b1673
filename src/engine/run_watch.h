#pragma once

#include <cstdint>
#include <functional>

#include "base/job_control.h"

namespace velmara {

/// How a request is watched and stopped while it runs. Whatever is left empty is done without.
struct RunWatch {
  /// Asked between rows whether to stop, and told the part of the rows that is done. A cancelled
  /// request gives no image.
  JobControl* control = nullptr;
  /// Told rows of the result as soon as they are final, from the top to the bottom without gaps,
  /// one call at a time, from any of the threads that filter: three samples a pixel, rows without
  /// gaps, valid during the call. After a success all rows have been told; after a failure or a
  /// cancel no more are. Must not throw; a slow one holds up one thread of the filter.
  std::function<void(const std::uint8_t* rows, int firstRow, int rowCount)> rowsFinished;
};

}  // namespace velmara
