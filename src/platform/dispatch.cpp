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

 private:
  QThreadPool pool_;
};

}  // namespace

TaskQueue& mainQueue() {
  static MainQueue queue;
  return queue;
}

TaskQueue& globalQueue() {
  static GlobalQueue queue;
  return queue;
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
