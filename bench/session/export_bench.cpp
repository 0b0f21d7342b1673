// From file to file, as `velmara denoise` does it: where the time of a 12-megapixel JPEG goes when
// the strength is chosen by the photo's own noise.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <string>
#include <thread>
#include <vector>

#include "engine/denoise_algo_implementation.h"
#include "engine/noisy_photo.h"
#include "engine/thread_queue.h"
#include "imaging/image_writer.h"
#include "platform/whole_file.h"
#include "session/loaded_photo.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

enum Step { kDecode, kNoise, kFilter, kTurn, kEncode, kWrite, kSteps };
constexpr const char* kNames[kSteps] = {"decode", "noise", "filter", "turn", "encode", "write"};

double millisecondsOf(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
}

// The times of the steps, by the clock and of all the process's threads on their processors.
class StopWatch {
 public:
  void start() { last_ = now(); }
  void lap(Step step) {
    const Times time = now();
    wall_[step].push_back(time.wall - last_.wall);
    cpu_[step].push_back(time.cpu - last_.cpu);
    last_ = time;
  }
  double wall(int step) const { return median(wall_[step]); }
  double cpu(int step) const { return median(cpu_[step]); }
  std::size_t laps(Step step) const { return wall_[step].size(); }

 private:
  struct Times {
    double wall = 0.0, cpu = 0.0;
  };

  static Times now() {
    return {millisecondsOf(CLOCK_MONOTONIC), millisecondsOf(CLOCK_PROCESS_CPUTIME_ID)};
  }
  static double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
  }

  Times last_;
  std::vector<double> wall_[kSteps];
  std::vector<double> cpu_[kSteps];
};

// Filter and noise measure as a share of all, in per cent.
template <class TimeOf>
double engineShare(const TimeOf& timeOf) {
  double all = 0.0;
  for (int step = 0; step < kSteps; ++step) all += timeOf(step);
  return 100.0 * (timeOf(kNoise) + timeOf(kFilter)) / all;
}

void exportPhoto(benchmark::State& state) {
  const testing_support::ScratchFolder folder;
  const std::string input = folder.file("photo.jpg");
  const std::string output = folder.file("photo-denoised.jpg");
  const auto encoded = encodeImage(noisyPhoto(4000, 3000, 3), nullptr, FileFormat::jpeg);
  if (!encoded || !replaceFile(input, encoded.value())) {
    state.SkipWithError("no photo to measure with");
    return;
  }
  ThreadQueue mainQueue(1);
  ThreadQueue workers(static_cast<int>(std::max(1U, std::thread::hardware_concurrency())));
  EngineEnvironment environment;
  environment.mainQueue = &mainQueue;
  environment.workers = &workers;
  environment.recompressJpeg = recompressJpeg;
  const DenoiseAlgoImplementation engine(environment);
  StopWatch watch;
  FilterParameters parameters;
  for (auto _ : state) {
    watch.start();
    auto opened = openPhoto(input);
    if (!opened) break;
    const auto photo = loadPixels(std::move(opened).value());
    if (!photo) break;
    watch.lap(kDecode);
    const double psnr = engine.getPSNRofImage(atOwnSize(photo->image));
    watch.lap(kNoise);
    parameters = exportParameters(psnr, DenoiseMode::automatic());
    const Image filtered = engine.denoiseImageUsingCustomFastNLMeans(
        wholePhotoToFilter(*photo), parameters.templateWinSize, parameters.searchWinSize,
        parameters.sigmaVal);
    watch.lap(kFilter);
    const auto upright = uprightAtFullSize(*photo, filtered);
    if (!upright) break;
    watch.lap(kTurn);
    const auto bytes = encodeExport(photo->record, upright.value(), FileFormat::jpeg);
    if (!bytes) break;
    watch.lap(kEncode);
    if (!replaceFile(output, bytes.value())) break;
    watch.lap(kWrite);
  }
  if (watch.laps(kWrite) != static_cast<std::size_t>(state.iterations())) {
    state.SkipWithError("a step failed");
    return;
  }
  for (int step = 0; step < kSteps; ++step) {
    state.counters[std::string(kNames[step]) + "_ms"] = watch.wall(step);
    state.counters[std::string(kNames[step]) + "_cpu_ms"] = watch.cpu(step);
  }
  const auto threads = std::max(1U, std::thread::hardware_concurrency());
  state.counters["engine_percent"] = engineShare([&](int step) { return watch.wall(step); });
  // What it would be if nothing else ran on the machine: the filter is the step of many threads.
  state.counters["engine_percent_by_cpu"] = engineShare([&](int step) {
    return watch.cpu(step) / (step == kFilter ? static_cast<double>(threads) : 1.0);
  });
  state.counters["template"] = parameters.templateWinSize;
  state.counters["search"] = parameters.searchWinSize;
  state.counters["sigma"] = parameters.sigmaVal;
}
BENCHMARK(exportPhoto)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(9);

}  // namespace
}  // namespace velmara
