#include "platform/dispatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>

#include <atomic>
#include <semaphore>
#include <thread>
#include <vector>

namespace velmara {
namespace {

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
  for (int i = 0; i <= 100; ++i) EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
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
