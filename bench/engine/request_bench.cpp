// Whole requests from a decoded picture to a decoded result: how time and memory grow with the
// picture and with the windows, and what measuring noise and speed takes.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "base/pixel_operations.h"
#include "engine/denoise_algo_implementation.h"
#include "engine/filter_run.h"
#include "engine/peak_memory.h"

namespace velmara {
namespace {

DenoiseAlgoImplementation benchEngine() {
  EngineEnvironment environment;
  environment.workers = &benchWorkers();
  environment.mainQueue = &benchMainQueue();
  return DenoiseAlgoImplementation(environment);
}

struct PictureSize {
  int width, height;
};

// Four to three.
PictureSize sizeOf(std::int64_t megapixels) {
  switch (megapixels) {
    case 1:
      return {1152, 864};
    case 3:
      return {2000, 1500};
    case 12:
      return {4000, 3000};
    default:
      return {8000, 6000};
  }
}

double pixelsOf(PictureSize size) {
  return static_cast<double>(size.width) * size.height;
}

void request(benchmark::State& state, int t, int s, int sigma, std::int64_t megapixels) {
  const PictureSize size = sizeOf(megapixels);
  // As photos come: four samples.
  const Image photo(asRgba(noisyPhoto(size.width, size.height, 3)));
  const auto engine = benchEngine();
  std::vector<double> wall;
  std::vector<double> cpu;
  std::int64_t most = 0;
  for (auto _ : state) {
    const PeakMemory memory;
    const Seconds start = secondsNow();
    benchmark::DoNotOptimize(engine.denoiseImageUsingCustomFastNLMeans(photo, t, s, sigma));
    const Seconds end = secondsNow();
    most = std::max(most, memory.extraBytes());
    wall.push_back(end.wall - start.wall);
    cpu.push_back(end.cpu - start.cpu);
    state.SetIterationTime(wall.back());
  }
  const double comparisons = pixelsOf(size) * s * s;
  constexpr double kFixedBytes = 32.0 * 1024 * 1024;
  state.counters["ns"] = 1e9 * *std::ranges::min_element(wall) / comparisons;
  state.counters["cpu_ns"] = 1e9 * *std::ranges::min_element(cpu) / comparisons;
  state.counters["extra_bytes_per_pixel"] = static_cast<double>(most) / pixelsOf(size);
  state.counters["extra_of_allowed"] =
      static_cast<double>(most) / (12.0 * pixelsOf(size) + kFixedBytes);
}

void noiseEstimate(benchmark::State& state) {
  const PictureSize size = sizeOf(state.range(0));
  const Image photo(asRgba(noisyPhoto(size.width, size.height, 3)));
  const auto engine = benchEngine();
  std::int64_t most = 0;
  for (auto _ : state) {
    const PeakMemory memory;
    const Seconds start = secondsNow();
    benchmark::DoNotOptimize(engine.getPSNRofImage(photo));
    state.SetIterationTime(secondsNow().cpu - start.cpu);
    most = std::max(most, memory.extraBytes());
  }
  state.counters["extra_bytes_per_pixel"] = static_cast<double>(most) / pixelsOf(size);
}
BENCHMARK(noiseEstimate)
    ->Name("noise")
    ->ArgName("megapixels")
    ->Arg(12)
    ->Arg(48)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(7);

void calibration(benchmark::State& state) {
  const Image photo(noisyPhoto(640, 480, 3));
  const auto engine = benchEngine();
  std::int64_t rate = 0;
  for (auto _ : state) {
    rate =
        engine.calculateProcessingSpeedForTestImage(photo, 5, static_cast<int>(state.range(0)), 10);
  }
  state.counters["pixels_per_second"] = static_cast<double>(rate);
}
BENCHMARK(calibration)
    ->ArgName("search")
    ->Arg(14)
    ->Arg(40)
    ->Arg(64)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

[[maybe_unused]] const bool registered = [] {
  const auto add = [](const std::string& name, int t, int s, int sigma, std::int64_t megapixels) {
    benchmark::RegisterBenchmark(name.c_str(), request, t, s, sigma, megapixels)
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Iterations(megapixels > 12 ? 3 : 5);
  };
  for (const std::int64_t megapixels : {1, 3, 12, 48}) {
    add("megapixels/" + std::to_string(megapixels), 3, 7, 5, megapixels);
  }
  for (const int s : {3, 5, 7, 9, 11, 13, 17, 21, 25, 31}) {
    add("searchwindow/" + std::to_string(s), 3, s, 8, 3);
  }
  return true;
}();

}  // namespace
}  // namespace velmara
