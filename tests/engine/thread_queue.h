#pragma once

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "base/task_queue.h"

namespace velmara {

/// A queue with threads of its own: with one thread it is serial, like a main queue. Ends with its
/// last task.
class ThreadQueue final : public TaskQueue {
 public:
  explicit ThreadQueue(int threads) {
    for (int i = 0; i < threads; ++i) threads_.emplace_back([this](auto stop) { run(stop); });
  }
  void async(std::function<void()> task) override {
    const std::scoped_lock lock(mutex_);
    tasks_.push_back(std::move(task));
    wake_.notify_one();
  }
  bool isCurrent() const override {
    return std::ranges::find(threads_, std::this_thread::get_id(), &std::jthread::get_id) !=
           threads_.end();
  }

 private:
  void run(const std::stop_token& stop) {
    while (true) {
      std::unique_lock lock(mutex_);
      wake_.wait(lock, stop, [this] { return !tasks_.empty(); });
      if (tasks_.empty()) return;
      const std::function<void()> task = std::move(tasks_.front());
      tasks_.pop_front();
      lock.unlock();
      task();
    }
  }

  std::mutex mutex_;
  std::condition_variable_any wake_;
  std::deque<std::function<void()>> tasks_;
  std::vector<std::jthread> threads_;
};

}  // namespace velmara
