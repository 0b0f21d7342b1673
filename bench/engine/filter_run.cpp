#include "engine/filter_run.h"

#include <algorithm>
#include <ctime>
#include <thread>

#include "base/pixel_operations.h"
#include "engine/band_run.h"

namespace velmara {
namespace {

double secondsOf(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

}  // namespace

FilterRun::FilterRun(const FilterCase& filterCase, int width, int height)
    : geometry_(geometryOfRequest(width, height, filterCase.channels, filterCase.t, filterCase.s)),
      padded_(withMirroredBorder(noisyPhoto(width, height, filterCase.channels, filterCase.kind),
                                 static_cast<int>(borderOfWindows(filterCase.t, filterCase.s)))),
      output_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
              static_cast<std::size_t>(filterCase.channels)) {
  buffers_.sourceBytes = padded_.bytes();
  buffers_.destBytes = output_;
  buffers_.weightTable = buildWeightTable(filterCase.sigma, filterCase.channels);
}

Seconds FilterRun::filter(MakeKernel make) {
  return filter(make, benchWorkers());
}

Seconds FilterRun::filter(MakeKernel make, ThreadQueue& workers) {
  EngineEnvironment environment;
  environment.workers = &workers;
  environment.mainQueue = &benchMainQueue();
  std::ranges::fill(output_, std::uint8_t{0});
  buffers_.completedSlices = 0;
  const Seconds start = secondsNow();
  const auto kernel = make(geometry_, buffers_);
  if (kernel != nullptr) runBands(environment, *kernel, buffers_, geometry_);
  const Seconds end = secondsNow();
  return {end.wall - start.wall, end.cpu - start.cpu};
}

double FilterRun::comparisons() const {
  return static_cast<double>(geometry_.widthSrc) * geometry_.heightSrc *
         static_cast<double>(geometry_.D);
}

ThreadQueue& benchWorkers() {
  benchMainQueue();  // Made first, so that it ends after the tasks that use it.
  static ThreadQueue queue(static_cast<int>(std::max(1U, std::thread::hardware_concurrency())) - 1);
  return queue;
}

ThreadQueue& benchMainQueue() {
  static ThreadQueue queue(1);
  return queue;
}

Seconds secondsNow() {
  return {secondsOf(CLOCK_MONOTONIC), secondsOf(CLOCK_PROCESS_CPUTIME_ID)};
}

}  // namespace velmara
