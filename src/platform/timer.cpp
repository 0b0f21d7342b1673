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

  void invalidate() override { timer_.stop(); }
  bool isValid() const override { return timer_.isActive(); }

 private:
  QTimer timer_;
};

class EventLoopTimers final : public TimerScheduler {
 public:
  std::unique_ptr<Timer> scheduledTimer(Seconds interval, bool repeats,
                                        std::function<void()> handler) override {
    return std::make_unique<EventLoopTimer>(interval, repeats, std::move(handler));
  }

  void performSelector(const void* target, std::string_view selector, Seconds delay,
                       std::function<void()> action) override {
    const auto request = requests_.emplace(requests_.end());
    request->target = target;
    request->selector = selector;
    request->timer =
        std::make_unique<EventLoopTimer>(delay, false, [this, request, action = std::move(action)] {
          // Taken out first, so that the action can make and cancel requests.
          std::list<Request> performed;
          performed.splice(performed.begin(), requests_, request);
          action();
        });
  }

  void cancelPreviousPerformRequests(const void* target) override {
    requests_.remove_if([&](const Request& request) { return request.target == target; });
  }

  void cancelPreviousPerformRequests(const void* target, std::string_view selector) override {
    requests_.remove_if([&](const Request& request) {
      return request.target == target && request.selector == selector;
    });
  }

 private:
  struct Request {
    const void* target = nullptr;
    std::string selector;
    std::unique_ptr<Timer> timer;
  };
  std::list<Request> requests_;
};

}  // namespace

TimerScheduler& eventLoopTimers() {
  static EventLoopTimers timers;
  return timers;
}

}  // namespace velmara
