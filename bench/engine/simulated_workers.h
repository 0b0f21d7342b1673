#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "engine/filter_kernel.h"

namespace velmara {

/// A kernel whose workers are as fast as is said, whatever the machine does: no pixel is filtered,
/// each worker has a clock of its own that a tile moves on by its pixels over the worker's speed,
/// and a worker asks for its next tile when its clock is the earliest of all.
///
/// The run must have one thread for each speed. The worker that arrives first has the first speed.
class SimulatedWorkers final : public FilterKernel {
 public:
  SimulatedWorkers(int tileWidth, int tileHeight, std::vector<double> speeds)
      : tileWidth_(tileWidth),
        tileHeight_(tileHeight),
        speeds_(std::move(speeds)),
        workers_(speeds_.size()) {}

  int tileWidth() const override { return tileWidth_; }
  int tileHeight() const override { return tileHeight_; }
  std::unique_ptr<TileFilter> makeTileFilter() const override {
    const std::lock_guard lock(mutex_);
    if (arrived_ == workers_.size()) return nullptr;
    return std::make_unique<Worker>(*this, arrived_++);
  }

  /// When the last tile was done.
  double end() const {
    const std::lock_guard lock(mutex_);
    return std::ranges::max_element(workers_, {}, &State::clock)->clock;
  }
  /// When it would have been had all workers ended together.
  double idealEnd() const {
    const std::lock_guard lock(mutex_);
    double speed = 0.0;
    for (const double each : speeds_) speed += each;
    return static_cast<double>(pixels_) / speed;
  }
  std::vector<Tile> tiles() const {
    const std::lock_guard lock(mutex_);
    return tiles_;
  }

 private:
  struct State {
    double clock = 0.0;
    bool waits = false;  // For its clock to be the earliest.
    bool ended = false;
  };

  class Worker final : public TileFilter {
   public:
    Worker(const SimulatedWorkers& all, std::size_t index) : all_(all), index_(index) {}
    ~Worker() override { all_.endWorker(index_); }
    void filter(const Tile& tile) override { all_.spend(index_, tile); }

   private:
    const SimulatedWorkers& all_;
    std::size_t index_;
  };

  void spend(std::size_t index, const Tile& tile) const {
    std::unique_lock lock(mutex_);
    const std::int64_t pixels =
        std::int64_t{tile.xEnd - tile.xBegin} * std::int64_t{tile.yEnd - tile.yBegin};
    tiles_.push_back(tile);
    pixels_ += pixels;
    State& self = workers_[index];
    self.clock += static_cast<double>(pixels) / speeds_[index];
    self.waits = true;
    changed_.notify_all();
    changed_.wait(lock, [&] { return isNext(index); });
    self.waits = false;
  }

  void endWorker(std::size_t index) const {
    const std::lock_guard lock(mutex_);
    workers_[index].ended = true;
    changed_.notify_all();
  }

  // Not while some worker has yet to come or to say what it does next.
  bool isNext(std::size_t index) const {
    for (std::size_t i = 0; i < workers_.size(); ++i) {
      const State& other = workers_[i];
      if (i == index || other.ended) continue;
      if (!other.waits) return false;
      if (std::pair(other.clock, i) < std::pair(workers_[index].clock, index)) return false;
    }
    return true;
  }

  int tileWidth_;
  int tileHeight_;
  std::vector<double> speeds_;
  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  mutable std::vector<State> workers_;
  mutable std::vector<Tile> tiles_;
  mutable std::int64_t pixels_ = 0;
  mutable std::size_t arrived_ = 0;
};

}  // namespace velmara
