#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QEventLoop>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include "platform/dispatch.h"
#include "support/manual_time.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing_support::ManualTime;

// Both schedulers keep the same promises, so that what is tested by hand holds in the program.
class TimerTest : public testing::TestWithParam<bool> {
 protected:
  Scheduler& timers() { return GetParam() ? manual_ : eventLoopTimers(); }

  // Lets the time pass, a little longer on the real clock.
  void pass(double seconds) {
    if (GetParam()) {
      manual_.advance(seconds);
      return;
    }
    QEventLoop loop;
    QElapsedTimer clock;
    clock.start();
    while (static_cast<double>(clock.elapsed()) < seconds * 1000.0 + 1.0) {
      loop.processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 1);
      loop.processEvents();
    }
  }

  std::function<void()> note(const std::string& what) {
    return [this, what] { calls.push_back(what); };
  }

  std::vector<std::string> calls;

 private:
  ManualTime manual_;
};

INSTANTIATE_TEST_SUITE_P(Schedulers, TimerTest, testing::Bool(), [](const auto& scheduler) {
  return scheduler.param ? std::string("Manual") : std::string("EventLoop");
});

TEST_P(TimerTest, OneShotsFireOnceInTheOrderOfTheirTimes) {
  const auto late = timers().start(Seconds(0.030), false, note("late"));
  const auto early = timers().start(Seconds(0.010), false, note("early"));
  pass(0.050);
  EXPECT_THAT(calls, ElementsAre("early", "late"));
}

TEST_P(TimerTest, DestroyingATimerEndsItEvenFromItsOwnHandler) {
  auto doomed = timers().start(Seconds(0.002), false, note("doomed"));
  doomed.reset();
  std::unique_ptr<Timer> own;
  own = timers().start(Seconds(0.002), true, [&] {
    if (calls.size() == 2) own.reset();
    calls.emplace_back("own");
  });
  pass(0.200);
  EXPECT_THAT(calls, ElementsAre("own", "own", "own"));
}

TEST_P(TimerTest, CallsAreCancelledByContextAndByKey) {
  int one = 0;
  int two = 0;
  timers().after(&one, "crop", Seconds(0), note("one crop"));
  timers().after(&one, "hide", Seconds(0.002), note("one hide"));
  timers().after(&two, "crop", Seconds(0.004), note("two crop"));
  timers().cancel(&one, "crop");
  EXPECT_TRUE(calls.empty());
  pass(0.020);
  EXPECT_THAT(calls, ElementsAre("one hide", "two crop"));
  timers().after(&one, "crop", Seconds(0.002), note("again"));
  timers().after(&two, "crop", Seconds(0.002), note("kept"));
  timers().cancel(&one);
  pass(0.020);
  EXPECT_THAT(calls, ElementsAre("one hide", "two crop", "kept"));
}

TEST(DispatchTest, MainQueueRunsInOrderOnTheMainThread) {
  std::vector<int> order;
  QEventLoop loop;
  std::thread other([&] {
    for (int i = 0; i < 100; ++i) mainQueue().async([&order, i] { order.push_back(i); });
    mainQueue().async([&] {
      EXPECT_TRUE(mainQueue().isCurrent());
      order.push_back(100);
      loop.quit();
    });
  });
  loop.exec();
  other.join();
  ASSERT_EQ(order.size(), 101U);
  EXPECT_TRUE(std::ranges::is_sorted(order));
}

// A run waits on one thread of the queue for eight bands on others: none may starve.
TEST(DispatchTest, GlobalQueueRunsTasksThatWaitForEightOthers) {
  constexpr int kBands = 8;
  std::atomic<int> started = 0;
  std::counting_semaphore<kBands> go(0);
  std::binary_semaphore finished(0);
  globalQueue().async([&] {
    EXPECT_TRUE(globalQueue().isCurrent());
    std::counting_semaphore<kBands> done(0);
    for (int i = 0; i < kBands; ++i) {
      globalQueue().async([&] {
        if (++started == kBands) go.release(kBands);
        go.acquire();
        done.release();
      });
    }
    for (int i = 0; i < kBands; ++i) done.acquire();
    finished.release();
  });
  finished.acquire();
  EXPECT_EQ(started, kBands);
}

}  // namespace
}  // namespace velmara
