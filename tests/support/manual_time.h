#pragma once

#include <algorithm>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/timer.h"

namespace velmara::testing_support {

/// A clock and timers whose time passes only by advance().
class ManualTime final : public Clock, public Scheduler {
 public:
  std::chrono::steady_clock::time_point monotonic() const override {
    return std::chrono::steady_clock::time_point(now());
  }
  std::chrono::system_clock::time_point wall() const override {
    constexpr std::chrono::seconds kSomeDay{1'700'000'000};
    return std::chrono::system_clock::time_point(kSomeDay + now());
  }

  std::unique_ptr<Timer> start(Seconds interval, bool repeats,
                               std::function<void()> handler) override {
    const double period = std::max(interval.count(), kShortest);
    auto entry = std::make_shared<Entry>(
        Entry{time_ + period, repeats ? period : 0.0, std::move(handler), nullptr, {}});
    entries_.push_back(entry);
    return std::make_unique<Handle>(std::move(entry));
  }

  void after(const void* context, std::string_view key, Seconds delay,
             std::function<void()> action) override {
    entries_.push_back(std::make_shared<Entry>(Entry{
        time_ + std::max(delay.count(), 0.0), 0.0, std::move(action), context, std::string(key)}));
  }

  void cancel(const void* context, std::string_view key) override {
    for (const auto& entry : entries_) {
      const bool isMeant = entry->context == context && (key.empty() || entry->key == key);
      if (isMeant) entry->handler = nullptr;
    }
  }

  /// Lets time pass and fires what falls due, in the order of time and then of scheduling; 0 fires
  /// what is due now.
  void advance(double seconds) {
    const double end = time_ + seconds + kRounding;
    while (const auto due = nextDue(end)) {
      time_ = std::max(time_, due->at);
      const auto handler = due->handler;
      if (due->period > 0.0) {
        due->at += due->period;
      } else {
        due->handler = nullptr;
      }
      handler();
    }
    time_ = end - kRounding;
  }

  double seconds() const { return time_; }

  /// How many timers and requests are waiting.
  std::size_t pending() {
    dropDead();
    return entries_.size();
  }

 private:
  struct Entry {
    double at;
    double period;
    std::function<void()> handler;
    const void* context;
    std::string key;
  };

  class Handle final : public Timer {
   public:
    explicit Handle(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() override { entry_->handler = nullptr; }

   private:
    std::shared_ptr<Entry> entry_;
  };

  static constexpr double kShortest = 1e-4;
  static constexpr double kRounding = 1e-9;

  std::chrono::nanoseconds now() const {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Seconds(time_));
  }

  void dropDead() {
    entries_.remove_if([](const auto& entry) { return entry->handler == nullptr; });
  }

  std::shared_ptr<Entry> nextDue(double end) {
    dropDead();
    const auto next = std::min_element(entries_.begin(), entries_.end(),
                                       [](const auto& a, const auto& b) { return a->at < b->at; });
    return next != entries_.end() && (*next)->at <= end ? *next : nullptr;
  }

  double time_ = 0.0;
  std::list<std::shared_ptr<Entry>> entries_;
};

}  // namespace velmara::testing_support
