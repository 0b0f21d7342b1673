#include "platform/dispatch.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QRunnable>
#include <QThread>
#include <QThreadPool>

#include <deque>
#include <memory>
#include <mutex>
#include <utility>

namespace velmara {
namespace {

// Tasks on their way to the thread that runs them. The toolkit only wakes that thread: it hands
// over in ways that the thread sanitizer cannot see.
class WaitingTasks {
 public:
  /// `wake` must lead to a call of runNext() for each task.
  template <typename Wake>
  void push(std::function<void()> task, Wake wake) {
    const std::scoped_lock lock(mutex_);
    tasks_.push_back(std::move(task));
    try {
      wake();
    } catch (...) {
      // Or each wake-up after this would run the task before its own.
      tasks_.pop_back();
      throw;
    }
  }
  void runNext() {
    std::function<void()> task;
    {
      const std::scoped_lock lock(mutex_);
      task = std::move(tasks_.front());
      tasks_.pop_front();
    }
    task();
  }

 private:
  std::mutex mutex_;
  std::deque<std::function<void()>> tasks_;
};

class MainQueue final : public TaskQueue {
 public:
  void async(std::function<void()> task) override {
    // The task that wakes carries nothing: what it carried would be read before the lock is taken.
    tasks().push(std::move(task), [] {
      QMetaObject::invokeMethod(
          QCoreApplication::instance(), [] { tasks().runNext(); }, Qt::QueuedConnection);
    });
  }
  bool isCurrent() const override {
    const QCoreApplication* application = QCoreApplication::instance();
    return application != nullptr && application->thread() == QThread::currentThread();
  }

 private:
  // Never destroyed, like the queue.
  static WaitingTasks& tasks() {
    static auto* const tasks = new WaitingTasks;
    return *tasks;
  }
};

class GlobalQueue final : public TaskQueue {
 public:
  GlobalQueue() {
    constexpr int kThreadsThatMayWait = 12;
    pool_.setMaxThreadCount(QThread::idealThreadCount() + kThreadsThatMayWait);
    runner_->setAutoDelete(false);
  }
  void async(std::function<void()> task) override {
    tasks_.push(std::move(task), [this] { pool_.start(runner_.get()); });
  }
  bool isCurrent() const override { return pool_.contains(QThread::currentThread()); }
  bool isIdle() const { return pool_.activeThreadCount() == 0; }

 private:
  WaitingTasks tasks_;
  // One for all tasks: each start of it runs the next.
  const std::unique_ptr<QRunnable> runner_{QRunnable::create([this] { tasks_.runNext(); })};
  QThreadPool pool_;
};

// Neither queue is ever destroyed: at the end of the process a task may still wait for the main
// thread, which would wait for it in turn.
GlobalQueue& theGlobalQueue() {
  static auto* const queue = new GlobalQueue;
  return *queue;
}

}  // namespace

TaskQueue& mainQueue() {
  static auto* const queue = new MainQueue;
  return *queue;
}

TaskQueue& globalQueue() {
  return theGlobalQueue();
}

bool isGlobalQueueIdle() {
  return theGlobalQueue().isIdle();
}

}  // namespace velmara
