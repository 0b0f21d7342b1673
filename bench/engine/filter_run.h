#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/filter_kernel.h"
#include "engine/noisy_photo.h"
#include "engine/thread_queue.h"

namespace velmara {

/// The three numbers of a request, and what it is filtered.
struct FilterCase {
  std::string name;
  int t = 3, s = 7;
  double sigma = 5.0;
  int channels = 3;
  PhotoKind kind;
};

/// Seconds on the clock and of all the process's threads on their processors.
struct Seconds {
  double wall = 0.0;
  double cpu = 0.0;
};

/// One picture with its buffers, filtered by any kernel in eight bands.
class FilterRun {
 public:
  using MakeKernel = std::unique_ptr<FilterKernel> (*)(const FilterGeometry&, FilterBuffers&);

  FilterRun(const FilterCase& filterCase, int width, int height);

  /// Filters once on all processors, or on the threads of a queue; making the kernel counts.
  Seconds filter(MakeKernel make);
  Seconds filter(MakeKernel make, ThreadQueue& workers);
  const std::vector<std::uint8_t>& output() const { return output_; }
  /// Pixels times candidates.
  double comparisons() const;

 private:
  FilterGeometry geometry_;
  Bitmap padded_;
  std::vector<std::uint8_t> output_;
  FilterBuffers buffers_;
};

/// With the calling thread as many threads as the machine has processors, kept for the whole
/// program.
ThreadQueue& benchWorkers();
ThreadQueue& benchMainQueue();

/// Now, on both clocks.
Seconds secondsNow();

}  // namespace velmara
