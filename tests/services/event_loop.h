#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <functional>

namespace velmara::testing_support {

/// Runs the event loop until something holds; false if it does not within ten seconds.
inline bool runUntil(const std::function<bool()>& holds) {
  QEventLoop loop;
  QTimer watch;
  QTimer deadline;
  deadline.setSingleShot(true);
  QObject::connect(&watch, &QTimer::timeout, &loop, [&] {
    if (holds()) loop.quit();
  });
  QObject::connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
  watch.start(1);
  deadline.start(10000);
  loop.exec();
  return holds();
}

/// Measures the longest time that the event loop was busy with one thing: what a user would see as
/// a window that stalls.
class Heartbeat {
 public:
  Heartbeat() {
    QObject::connect(&timer_, &QTimer::timeout,
                     [this] { longest_ = std::max(longest_, clock_.restart()); });
    clock_.start();
    timer_.start(1);
  }

  /// In milliseconds.
  qint64 longestPause() const { return std::max(longest_, clock_.elapsed()); }

 private:
  QTimer timer_;
  QElapsedTimer clock_;
  qint64 longest_ = 0;
};

}  // namespace velmara::testing_support
