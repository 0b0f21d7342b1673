#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <functional>

namespace velmara::testing_support {

/// How long a test waits for what has to come before it gives up, in milliseconds: long enough for
/// a sanitizer on a machine that does other work meanwhile.
constexpr int kPatience = 60'000;

/// Runs the event loop until something holds; false if it never does.
inline bool runUntil(const std::function<bool()>& holds) {
  QEventLoop loop;
  QTimer tick;
  tick.start(1);
  QElapsedTimer taken;
  taken.start();
  while (!holds() && !taken.hasExpired(kPatience))
    loop.processEvents(QEventLoop::WaitForMoreEvents);
  return holds();
}

}  // namespace velmara::testing_support
