#pragma once

#include <cstdint>

#include "session/photo_job.h"

namespace velmara {

/// The bytes that a job takes at its height, roughly and rather too many.
std::int64_t memoryOfJob(const PhotoJobRequest& request, const LoadedPhoto& photo);

/// Half of the memory that the machine has free at the moment, at least 512 MiB.
std::int64_t usualBatchMemory();

/// Bytes that several share. Not for several threads without a lock of the caller's.
class MemoryBudget {
 public:
  /// So many are to be shared.
  explicit MemoryBudget(std::int64_t bytes) : free_(bytes) {}

  /// Whether some bytes can be had: they are free, or nobody else has any.
  bool has(std::int64_t bytes) const { return bytes <= free_ || holders_ == 0; }
  void take(std::int64_t bytes) { free_ -= bytes, ++holders_; }
  void giveBack(std::int64_t bytes) { free_ += bytes, --holders_; }

 private:
  std::int64_t free_;
  int holders_ = 0;
};

}  // namespace velmara
