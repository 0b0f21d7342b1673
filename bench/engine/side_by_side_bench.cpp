// The fast kernel beside the direct loop and the reference kernel: the same picture, windows and
// number of threads, timed in turns. The slow sides get a smaller picture of the same kind, and all
// times are per pixel and candidate.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "engine/direct_loop.h"
#include "engine/fast/fast_kernel.h"
#include "engine/filter_run.h"
#include "engine/reference_kernel.h"

namespace velmara {
namespace {

constexpr int kWidth = 2000, kHeight = 1500;
constexpr int kSmallWidth = 500, kSmallHeight = 375;

std::vector<FilterCase> allCases() {
  constexpr PhotoKind kFlat{0.0, 0.0, true};
  constexpr PhotoKind kClipped{6.0, 130.0, false};
  constexpr PhotoKind kClean{1.5, 0.0, false};
  constexpr PhotoKind kGrainy{25.0, 0.0, false};
  return {
      {"windows/3,7,5", 3, 7, 5.0, 3, {}},
      {"windows/3,8,8", 3, 8, 8.0, 3, {}},
      {"windows/3,12,12", 3, 12, 12.0, 3, {}},
      {"windows/1,3,3", 1, 3, 3.0, 3, {}},
      {"windows/2,4,3", 2, 4, 3.0, 3, {}},
      {"windows/4,10,8", 4, 10, 8.0, 3, {}},
      {"windows/5,14,10", 5, 14, 10.0, 3, {}},
      {"content/flat", 3, 7, 5.0, 3, kFlat},
      {"content/clipped", 3, 7, 5.0, 3, kClipped},
      {"content/clean", 3, 7, 5.0, 3, kClean},
      {"content/grainy", 3, 7, 25.0, 3, kGrainy},
      {"sigma/1", 3, 7, 1.0, 3, {}},
      {"sigma/2", 3, 7, 2.0, 3, {}},
      {"sigma/3", 3, 7, 3.0, 3, {}},
      {"sigma/25", 3, 7, 25.0, 3, {}},
      {"sigma/40", 3, 12, 40.0, 3, {}},
      {"template/7", 7, 12, 8.0, 3, {}},
      {"search/13", 3, 13, 8.0, 3, {}},
      {"search/17", 3, 17, 8.0, 3, {}},
      {"search/21", 3, 21, 8.0, 3, {}},
      {"onechannel/3,7,5", 3, 7, 5.0, 1, {}},
      {"onechannel/3,12,12", 3, 12, 12.0, 1, {}},
      {"onechannel/flat", 3, 7, 5.0, 1, kFlat},
  };
}

// The times of one side over the repetitions.
class Side {
 public:
  Side(FilterRun& run, FilterRun::MakeKernel make) : run_(run), make_(make) {}

  double measure() {
    const Seconds seconds = run_.filter(make_);
    wall_.push_back(seconds.wall);
    cpu_.push_back(seconds.cpu);
    return seconds.wall;
  }
  double wallNanoseconds() const { return nanoseconds(wall_); }
  double cpuNanoseconds() const { return nanoseconds(cpu_); }

 private:
  // The least is what the machine can do; what else runs on it only adds.
  double nanoseconds(const std::vector<double>& seconds) const {
    return 1e9 * *std::ranges::min_element(seconds) / run_.comparisons();
  }

  FilterRun& run_;
  FilterRun::MakeKernel make_;
  std::vector<double> wall_, cpu_;
};

void sideBySide(benchmark::State& state, const FilterCase& filterCase) {
  FilterRun large(filterCase, kWidth, kHeight);
  FilterRun small(filterCase, kSmallWidth, kSmallHeight);
  small.filter(makeDirectLoop);
  const auto expected = small.output();
  small.filter(makeFastKernel);
  if (small.output() != expected) {
    state.SkipWithError("the fast kernel's result is not the loop's");
    return;
  }
  Side fast(large, makeFastKernel);
  Side loop(small, makeDirectLoop);
  Side reference(small, makeReferenceKernel);
  const KernelStatistics before = kernelStatistics();
  for (auto _ : state) {
    state.SetIterationTime(fast.measure());
    loop.measure();
    reference.measure();
  }
  const KernelStatistics after = kernelStatistics();
  const auto pixels = static_cast<double>(after.fastPixels - before.fastPixels);
  state.counters["ratio"] = loop.wallNanoseconds() / fast.wallNanoseconds();
  state.counters["ratio_cpu"] = loop.cpuNanoseconds() / fast.cpuNanoseconds();
  state.counters["ratio_reference_cpu"] = reference.cpuNanoseconds() / fast.cpuNanoseconds();
  state.counters["fast_ns"] = fast.wallNanoseconds();
  state.counters["fast_cpu_ns"] = fast.cpuNanoseconds();
  state.counters["loop_ns"] = loop.wallNanoseconds();
  state.counters["loop_cpu_ns"] = loop.cpuNanoseconds();
  state.counters["undecided_percent"] =
      100.0 * static_cast<double>(after.undecidedPixels - before.undecidedPixels) /
      std::max(pixels, 1.0);
  state.counters["left_to_reference"] =
      static_cast<double>(state.iterations()) - pixels / (double{kWidth} * kHeight);
}

[[maybe_unused]] const bool registered = [] {
  for (const FilterCase& filterCase : allCases()) {
    benchmark::RegisterBenchmark(("kernel/" + filterCase.name).c_str(), sideBySide, filterCase)
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Iterations(7);
  }
  return true;
}();

}  // namespace
}  // namespace velmara
