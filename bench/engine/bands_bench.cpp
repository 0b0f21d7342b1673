// How evenly the bands of a request are shared out: the time of two workers, alike or one of them
// slower, over that of an ideal split. Once on simulated clocks, where nothing else runs, and once
// by the clock, the slow worker doing each tile several times.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

#include "engine/band_run.h"
#include "engine/fast/fast_kernel.h"
#include "engine/filter_run.h"
#include "engine/simulated_workers.h"

namespace velmara {
namespace {

constexpr int kWidth = 2000, kHeight = 1500;

// A kernel whose first tile filter does each tile `repeats` times.
class SlowedKernel final : public FilterKernel {
 public:
  SlowedKernel(std::unique_ptr<FilterKernel> kernel, int repeats)
      : kernel_(std::move(kernel)), repeats_(repeats) {}

  int tileWidth() const override { return kernel_->tileWidth(); }
  int tileHeight() const override { return kernel_->tileHeight(); }
  int mostTileFilters() const override { return kernel_->mostTileFilters(); }
  std::unique_ptr<TileFilter> makeTileFilter() const override {
    return std::make_unique<Filter>(kernel_->makeTileFilter(), made_++ == 0 ? repeats_ : 1);
  }

 private:
  class Filter final : public TileFilter {
   public:
    Filter(std::unique_ptr<TileFilter> filter, int repeats)
        : filter_(std::move(filter)), repeats_(repeats) {}
    void filter(const Tile& tile) override {
      for (int i = 0; i < repeats_; ++i) filter_->filter(tile);
    }

   private:
    std::unique_ptr<TileFilter> filter_;
    int repeats_;
  };

  std::unique_ptr<FilterKernel> kernel_;
  int repeats_;
  mutable std::atomic<int> made_{0};
};

template <int kRepeats>
std::unique_ptr<FilterKernel> slowed(const FilterGeometry& geometry, FilterBuffers& buffers) {
  return std::make_unique<SlowedKernel>(makeFastKernel(geometry, buffers), kRepeats);
}

double simulatedExcess(double slowSpeed) {
  const SimulatedWorkers workers(240, 256, {1.0, slowSpeed});
  EngineEnvironment environment;
  ThreadQueue queue(1);  // The calling thread is the other worker.
  environment.workers = &queue;
  environment.mainQueue = &benchMainQueue();
  FilterBuffers buffers;
  runBands(environment, workers, buffers, geometryOfRequest(kWidth, kHeight, 3, 3, 7));
  return workers.end() / workers.idealEnd() - 1.0;
}

template <int kRepeats>
void bands(benchmark::State& state) {
  FilterRun run({"", 3, 7, 5.0, 3, {}}, kWidth, kHeight);
  ThreadQueue one(0);  // The calling thread filters too.
  ThreadQueue two(1);
  std::vector<double> alone;
  std::vector<double> together;
  for (auto _ : state) {
    alone.push_back(run.filter(makeFastKernel, one).wall);
    together.push_back(run.filter(slowed<kRepeats>, two).wall);
    state.SetIterationTime(together.back());
  }
  const double ideal = *std::ranges::min_element(alone) / (1.0 + 1.0 / kRepeats);
  state.counters["measured_over_ideal_percent"] =
      100.0 * (*std::ranges::min_element(together) / ideal - 1.0);
  state.counters["simulated_over_ideal_percent"] = 100.0 * simulatedExcess(1.0 / kRepeats);
}
BENCHMARK(bands<1>)
    ->Name("bands/alike")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(25);
BENCHMARK(bands<2>)
    ->Name("bands/half")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(25);
BENCHMARK(bands<4>)
    ->Name("bands/quarter")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(25);

}  // namespace
}  // namespace velmara
