#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <functional>

namespace velmara::testing_support {

/// Runs the event loop until something holds; false if it does not within ten seconds.
inline bool runUntil(const std::function<bool()>& holds) {
  QEventLoop loop;
  QTimer tick;
  tick.start(1);
  QElapsedTimer taken;
  taken.start();
  while (!holds() && !taken.hasExpired(10000)) loop.processEvents(QEventLoop::WaitForMoreEvents);
  return holds();
}

}  // namespace velmara::testing_support
