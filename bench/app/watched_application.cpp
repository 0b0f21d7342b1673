#include "watched_application.h"

#include <QEvent>
#include <QMetaEnum>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <semaphore>
#include <time.h>
#include <utility>

namespace velmara {
namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double threadMilliseconds() {
  timespec spent{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent);
  return static_cast<double>(spent.tv_sec) * 1e3 + static_cast<double>(spent.tv_nsec) / 1e6;
}

}  // namespace

WatchedApplication::WatchedApplication(int& argc, char** argv)
    : QApplication(argc, argv), watcher_([this](const std::stop_token& stop) { knock(stop); }) {}

void WatchedApplication::knock(const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    std::binary_semaphore answered(0);
    const auto start = Clock::now();
    QMetaObject::invokeMethod(
        this,
        [&] {
          times_.longestWait = std::max(times_.longestWait, millisecondsSince(start));
          answered.release();
        },
        Qt::QueuedConnection);
    answered.acquire();
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

bool WatchedApplication::notify(QObject* receiver, QEvent* event) {
  // Events sent while another is handled are part of it, unless a loop of its own handles them.
  const int level = thread()->loopLevel();
  if (level <= levelOfEvent_) return QApplication::notify(receiver, event);
  const int outer = std::exchange(levelOfEvent_, level);
  deepestLevel_ = level;
  // The receiver may be gone afterwards.
  const QMetaObject* receiverClass = receiver->metaObject();
  const QString name = receiver->objectName();
  const QEvent::Type type = event->type();
  const double start = threadMilliseconds();
  const bool isTaken = QApplication::notify(receiver, event);
  const double spent = threadMilliseconds() - start;
  levelOfEvent_ = outer;
  // One that has served a loop meanwhile has not kept anybody waiting.
  if (deepestLevel_ == level && spent > times_.longestEvent) {
    times_.longestEvent = spent;
    times_.event = std::string(receiverClass->className()) + " " + name.toStdString() + " " +
                   QMetaEnum::fromType<QEvent::Type>().valueToKey(type);
  }
  return isTaken;
}

BusyTimes WatchedApplication::takeBusyTimes() {
  return std::exchange(times_, {});
}

}  // namespace velmara
