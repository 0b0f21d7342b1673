#include "platform/timer.h"

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <list>
#include <string>
#include <utility>

namespace velmara {
namespace {

class SystemClock final : public Clock {
 public:
  std::chrono::steady_clock::time_point monotonic() const override {
    return std::chrono::steady_clock::now();
  }
  std::chrono::system_clock::time_point wall() const override {
    return std::chrono::system_clock::now();
  }
};

std::chrono::milliseconds toMilliseconds(Seconds interval) {
  constexpr double kLongest = 1000.0 * 3600.0 * 24.0 * 20.0;  // An int of milliseconds.
  const double count = std::round(interval.count() * 1000.0);
  return std::chrono::milliseconds(static_cast<long>(std::clamp(count, 0.0, kLongest)));
}

class EventLoopTimer final : public Timer {
 public:
  EventLoopTimer(Seconds interval, bool repeats, std::function<void()> handler) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setSingleShot(!repeats);
    // The handler is copied for the call, since it may destroy this timer.
    QObject::connect(&timer_, &QTimer::timeout, [handler = std::move(handler)] {
      const auto running = handler;
      running();
    });
    timer_.start(toMilliseconds(interval));
  }

 private:
  QTimer timer_;
};

class EventLoopTimers final : public Scheduler {
 public:
  std::unique_ptr<Timer> start(Seconds interval, bool repeats,
                               std::function<void()> handler) override {
    return std::make_unique<EventLoopTimer>(interval, repeats, std::move(handler));
  }

  void after(const void* context, std::string_view key, Seconds delay,
             std::function<void()> action) override {
    const auto call = calls_.emplace(calls_.end());
    call->context = context;
    call->key = key;
    call->timer =
        std::make_unique<EventLoopTimer>(delay, false, [this, call, action = std::move(action)] {
          // Taken out first, so that the action can make and cancel others.
          std::list<Call> made;
          made.splice(made.begin(), calls_, call);
          action();
        });
  }

  void cancel(const void* context, std::string_view key) override {
    calls_.remove_if([&](const Call& call) {
      return call.context == context && (key.empty() || call.key == key);
    });
  }

 private:
  struct Call {
    const void* context = nullptr;
    std::string key;
    std::unique_ptr<Timer> timer;
  };
  std::list<Call> calls_;
};

}  // namespace

const Clock& systemClock() {
  static const SystemClock clock;
  return clock;
}

Scheduler& eventLoopTimers() {
  static EventLoopTimers timers;
  return timers;
}

}  // namespace velmara
