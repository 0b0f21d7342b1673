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

/// A queue with threads of its own: with one thread it is serial, like a main queue.
class ThreadQueue final : public TaskQueue {
 public:
  explicit ThreadQueue(int threads) {
    for (int i = 0; i < threads; ++i) threads_.emplace_back([this] { run(); });
  }
  ~ThreadQueue() override {
    {
      const std::lock_guard lock(mutex_);
      stopping_ = true;
    }
    wake_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }
  ThreadQueue(const ThreadQueue&) = delete;
  ThreadQueue& operator=(const ThreadQueue&) = delete;

  void async(std::function<void()> task) override {
    {
      const std::lock_guard lock(mutex_);
      tasks_.push_back(std::move(task));
    }
    wake_.notify_one();
  }
  bool isCurrent() const override {
    return std::ranges::any_of(
        threads_, [](const std::thread& t) { return t.get_id() == std::this_thread::get_id(); });
  }

 private:
  void run() {
    while (true) {
      std::function<void()> task;
      {
        std::unique_lock lock(mutex_);
        wake_.wait(lock, [this] { return stopping_ || !tasks_.empty(); });
        if (tasks_.empty()) return;
        task = std::move(tasks_.front());
        tasks_.pop_front();
      }
      task();
    }
  }

  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<std::function<void()>> tasks_;
  bool stopping_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace velmara
