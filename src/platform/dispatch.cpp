#include "platform/dispatch.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>
#include <QThreadPool>

#include <semaphore>
#include <utility>

namespace velmara {
namespace {

class MainQueue final : public TaskQueue {
 public:
  void async(std::function<void()> task) override {
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(task), Qt::QueuedConnection);
  }
  bool isCurrent() const override {
    const QCoreApplication* application = QCoreApplication::instance();
    return application != nullptr && application->thread() == QThread::currentThread();
  }
};

class GlobalQueue final : public TaskQueue {
 public:
  GlobalQueue() {
    constexpr int kThreadsThatMayWait = 12;
    pool_.setMaxThreadCount(QThread::idealThreadCount() + kThreadsThatMayWait);
  }
  void async(std::function<void()> task) override { pool_.start(std::move(task)); }
  bool isCurrent() const override { return pool_.contains(QThread::currentThread()); }
  bool isIdle() const { return pool_.activeThreadCount() == 0; }

 private:
  QThreadPool pool_;
};

// Never destroyed: at the end of the process a task may still wait for the main thread, which would
// wait for it in turn.
GlobalQueue& theGlobalQueue() {
  static auto* const queue = new GlobalQueue;
  return *queue;
}

}  // namespace

TaskQueue& mainQueue() {
  static MainQueue queue;
  return queue;
}

TaskQueue& globalQueue() {
  return theGlobalQueue();
}

bool isGlobalQueueIdle() {
  return theGlobalQueue().isIdle();
}

void dispatchSync(TaskQueue& queue, const std::function<void()>& task) {
  if (queue.isCurrent()) {
    task();
    return;
  }
  std::binary_semaphore done(0);
  queue.async([&] {
    task();
    done.release();
  });
  done.acquire();
}

}  // namespace velmara
