#pragma once

#include <cstdint>

namespace velmara {

/// Measures how much memory the process has at most beyond what it has now.
class PeakMemory {
 public:
  /// Gives back what is free, and measures from here on.
  PeakMemory();
  /// Bytes at the peak since then beyond those at the start; negative if the system does not say.
  std::int64_t extraBytes() const;

 private:
  std::int64_t start_;
};

}  // namespace velmara
