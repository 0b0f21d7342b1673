#include "engine/band_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <mutex>
#include <numeric>
#include <thread>
#include <utility>
#include <vector>

#include "engine/thread_queue.h"

namespace velmara {
namespace {

// Filters nothing: notes its tiles in the order in which they are handed out, and may hold the
// first one until seven bands are done.
class NotingKernel final : public FilterKernel {
 public:
  NotingKernel(int tileWidth, int tileHeight) : tileWidth_(tileWidth), tileHeight_(tileHeight) {}
  int tileWidth() const override { return tileWidth_; }
  int tileHeight() const override { return tileHeight_; }
  std::unique_ptr<TileFilter> makeTileFilter() const override {
    return std::make_unique<Filter>(*this);
  }
  // Runs all bands of a picture by so many threads.
  void run(int width, int height, int threads) {
    ThreadQueue mainQueue(1);
    ThreadQueue workers(threads - 1);  // Ends first, as its tasks use the other.
    EngineEnvironment environment;
    environment.workers = &workers;
    environment.mainQueue = &mainQueue;
    EXPECT_TRUE(runBands(environment, *this, buffers, geometryOfRequest(width, height, 3, 3, 7)));
    EXPECT_EQ(buffers.completedSlices, kBands);
  }

  bool holdsFirst = false;
  FilterBuffers buffers;
  mutable std::vector<Tile> tiles;

 private:
  struct Filter final : TileFilter {
    explicit Filter(const NotingKernel& noting) : kernel(noting) {}
    void filter(const Tile& tile) override {
      using Clock = std::chrono::steady_clock;
      {
        const std::scoped_lock lock(kernel.mutex_);
        kernel.tiles.push_back(tile);
        if (!kernel.holdsFirst || kernel.tiles.size() > 1) return;
      }
      const auto deadline = Clock::now() + std::chrono::seconds(20);
      const auto& done = kernel.buffers.completedSlices;
      while (done < kBands - 1 && Clock::now() < deadline) std::this_thread::yield();
      EXPECT_EQ(done, kBands - 1) << "the others wait too";
    }
    const NotingKernel& kernel;
  };

  int tileWidth_;
  int tileHeight_;
  mutable std::mutex mutex_;
};

// When workers of these speeds are done with tiles, each taking the next one once it is free.
double endOf(const std::vector<Tile>& tiles, const std::vector<double>& speeds) {
  std::vector<double> clocks(speeds.size());
  for (const Tile& tile : tiles) {
    const auto next = std::ranges::min_element(clocks);
    *next += static_cast<double>(tile.pixels()) /
             speeds[static_cast<std::size_t>(next - clocks.begin())];
  }
  return std::ranges::max(clocks);
}

TEST(BandRunTest, WorkersEndTogetherWhateverTheirSpeeds) {
  const std::vector<double> speeds[] = {
      {1.0, 1.0}, {1.0, 0.5},      {0.5, 1.0},           {1.0, 0.25},
      {0.2, 1.0}, {1.0, 1.0, 1.0}, {1.0, 0.6, 0.3, 1.0}, {1.0, 1.0, 1.0, 1.0, 0.4, 0.4, 0.4, 0.4}};
  for (const auto& [width, height] :
       {std::pair(2000, 1500), {4000, 3000}, {1220, 560}, {400, 9000}, {9000, 90}}) {
    NotingKernel kernel(240, 256);
    kernel.run(width, height, 1);
    for (const auto& each : speeds) {
      const double together = 1.0 * width * height / std::accumulate(each.begin(), each.end(), 0.0);
      EXPECT_LE(endOf(kernel.tiles, each), 1.03 * together)
          << width << " x " << height << ", " << each.size() << " workers, " << each.front()
          << " to " << each.back();
    }
  }
}

TEST(BandRunTest, EveryPixelIsInOneTileOfTheKernelsSize) {
  const struct {
    int width, height, tileWidth, tileHeight;
  } cases[] = {{500, 333, 240, 256}, {1, 1, 240, 256}, {250, 7, 240, 4},
               {37, 100, 5, 3},      {13, 801, 13, 1}, {700, 65, 1, 50}};
  for (const auto& c : cases) {
    NotingKernel kernel(c.tileWidth, c.tileHeight);
    kernel.run(c.width, c.height, 3);
    std::vector<int> seen(static_cast<std::size_t>(c.width) * static_cast<std::size_t>(c.height));
    for (const Tile& tile : kernel.tiles) {
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

TEST(BandRunTest, NoBandWaitsForOneThatIsHeldUp) {
  NotingKernel kernel(16, 4);
  kernel.holdsFirst = true;
  kernel.run(40, 64, 2);
}

}  // namespace
}  // namespace velmara
