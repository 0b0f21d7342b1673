#include "engine/band_run.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "engine/simulated_workers.h"
#include "engine/thread_queue.h"

namespace velmara {
namespace {

FilterGeometry pictureOf(int width, int height) {
  return geometryOfRequest(width, height, 3, 3, 7);
}

// The run of a picture by workers of some speeds, of which the calling thread is one.
void runSimulated(const SimulatedWorkers& workers, int threads, int width, int height) {
  ThreadQueue mainQueue(1);
  ThreadQueue queue(threads - 1);  // Ends first, as its tasks use the other.
  EngineEnvironment environment;
  environment.workers = &queue;
  environment.mainQueue = &mainQueue;
  FilterBuffers buffers;
  EXPECT_TRUE(runBands(environment, workers, buffers, pictureOf(width, height)));
  EXPECT_EQ(buffers.completedSlices, kBands);
}

TEST(BandRunTest, WorkersEndTogetherWhateverTheirSpeeds) {
  const struct {
    int width, height;
  } pictures[] = {{2000, 1500}, {4000, 3000}, {1220, 560}, {400, 9000}, {9000, 90}};
  const std::vector<std::vector<double>> speeds = {
      {1.0, 1.0}, {1.0, 0.5},      {0.5, 1.0},           {1.0, 0.25},
      {0.2, 1.0}, {1.0, 1.0, 1.0}, {1.0, 0.6, 0.3, 1.0}, {1.0, 1.0, 1.0, 1.0, 0.4, 0.4, 0.4, 0.4},
  };
  for (const auto& picture : pictures) {
    for (const auto& each : speeds) {
      const SimulatedWorkers workers(240, 256, each);
      runSimulated(workers, static_cast<int>(each.size()), picture.width, picture.height);
      EXPECT_LE(workers.end(), 1.03 * workers.idealEnd())
          << picture.width << " x " << picture.height << ", " << each.size() << " workers, "
          << each.front() << " to " << each.back();
    }
  }
}

TEST(BandRunTest, EveryPixelIsInOneTileOfTheKernelsSize) {
  const struct {
    int width, height, tileWidth, tileHeight;
  } cases[] = {{500, 333, 240, 256}, {1, 1, 240, 256}, {250, 7, 240, 4},
               {37, 100, 5, 3},      {13, 801, 13, 1}, {700, 65, 1, 50}};
  for (const auto& c : cases) {
    const SimulatedWorkers workers(c.tileWidth, c.tileHeight, {1.0});
    runSimulated(workers, 1, c.width, c.height);
    std::vector<int> seen(static_cast<std::size_t>(c.width) * static_cast<std::size_t>(c.height));
    for (const Tile& tile : workers.tiles()) {
      EXPECT_LE(tile.xEnd - tile.xBegin, c.tileWidth);
      EXPECT_LE(tile.yEnd - tile.yBegin, c.tileHeight);
      for (int y = tile.yBegin; y < tile.yEnd; ++y) {
        for (int x = tile.xBegin; x < tile.xEnd; ++x) {
          ++seen[static_cast<std::size_t>(y) * static_cast<std::size_t>(c.width) +
                 static_cast<std::size_t>(x)];
        }
      }
    }
    EXPECT_EQ(seen, std::vector<int>(seen.size(), 1)) << c.width << " x " << c.height;
  }
}

// Holds the first tile that it is given until seven bands are done.
class HeldKernel final : public FilterKernel {
 public:
  explicit HeldKernel(const FilterBuffers& buffers) : buffers_(buffers) {}
  int tileWidth() const override { return 16; }
  int tileHeight() const override { return 4; }
  std::unique_ptr<TileFilter> makeTileFilter() const override {
    return std::make_unique<Filter>(*this);
  }

 private:
  struct Filter final : TileFilter {
    explicit Filter(const HeldKernel& held) : kernel(held) {}
    void filter(const Tile& /*tile*/) override {
      if (kernel.holds_.exchange(true)) return;
      while (kernel.buffers_.completedSlices < kBands - 1) std::this_thread::yield();
    }
    const HeldKernel& kernel;
  };

  const FilterBuffers& buffers_;
  mutable std::atomic<bool> holds_{false};
};

TEST(BandRunTest, NoBandWaitsForOneThatIsHeldUp) {
  ThreadQueue mainQueue(1);
  ThreadQueue queue(1);
  EngineEnvironment environment;
  environment.workers = &queue;
  environment.mainQueue = &mainQueue;
  FilterBuffers buffers;
  EXPECT_TRUE(runBands(environment, HeldKernel(buffers), buffers, pictureOf(40, 64)));
  EXPECT_EQ(buffers.completedSlices, kBands);
}

}  // namespace
}  // namespace velmara
