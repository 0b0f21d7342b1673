#include "engine/deep/shared_work.h"

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace velmara {
namespace {

// Outlives the call: a task that comes late finds nothing left to take, and so never touches the
// piece function, which is the caller's.
class Work {
 public:
  Work(int count, const std::function<void(int)>& piece) : piece_(piece), count_(count) {}

  void help() {
    std::unique_lock lock(mutex_);
    while (next_ < count_) {
      const int taken = next_++;
      lock.unlock();
      piece_(taken);
      lock.lock();
      if (++done_ == count_) allDone_.notify_all();
    }
  }
  void wait() {
    std::unique_lock lock(mutex_);
    allDone_.wait(lock, [this] { return done_ == count_; });
  }

 private:
  const std::function<void(int)>& piece_;
  const int count_;
  std::mutex mutex_;
  std::condition_variable allDone_;
  int next_ = 0;
  int done_ = 0;
};

}  // namespace

void shareWork(TaskQueue* workers, int threads, int count, const std::function<void(int)>& piece) {
  const auto work = std::make_shared<Work>(count, piece);
  for (int i = 1; i < std::min(threads, count) && workers != nullptr; ++i) {
    workers->async([work] { work->help(); });
  }
  work->help();
  work->wait();
}

}  // namespace velmara
