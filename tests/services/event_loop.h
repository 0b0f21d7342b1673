#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

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

}  // namespace velmara::testing_support
