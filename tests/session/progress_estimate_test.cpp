#include "session/progress_estimate.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace velmara {
namespace {

TEST(EstimateTest, DividesInWholeNumbers) {
  struct Case {
    std::int64_t width, height, rate;
    bool isExportingPhoto;
    double expected;
  };
  const Case cases[] = {
      {1000, 800, 400'000, false, 2.0},  {1000, 800, 400'000, true, 4.0},
      {1000, 800, 400'001, false, 1.0},  {1000, 800, 266'667, false, 2.0},
      {100, 100, 1'000'000, false, 1.0}, {100, 100, 1'000'000, true, 3.0},
      {1000, 800, 0, false, 1.0},        {1000, 800, -5, true, 3.0},
      {100'000, 50'000, 1, false, 5e9},  // beyond 32 bits
  };
  for (const Case& c : cases) {
    EXPECT_EQ(estimatedCompletionTime(c.width, c.height, c.rate, c.isExportingPhoto), c.expected)
        << c.width << " x " << c.height << " at " << c.rate;
  }
}

TEST(EstimateTest, IsLogged) {
  EXPECT_EQ(estimateLogLine(400'000, 2.0),
            "Pixel Rate 400000 & Current Image Estimated Process Time 2.000000");
}

TEST(TickTest, MovesInFiftiethsAndWaitsNearTheEnd) {
  EXPECT_DOUBLE_EQ(progressTickInterval(2.0), 0.04);
  double counter = 0.0;
  for (int tick = 0; tick < 10; ++tick) counter = progressAfterTick(counter, 2.0);
  EXPECT_NEAR(counter, 0.4, 1e-9);
  for (int tick = 0; tick < 100; ++tick) counter = progressAfterTick(counter, 2.0);
  EXPECT_DOUBLE_EQ(counter, 2.0 - 2.0 / 30.0);
}

TEST(FinishWalkTest, StepsToTheEndAtOnce) {
  struct Case {
    double counter, estimate;
    std::vector<double> expected;
  };
  const Case cases[] = {
      {0.0, 1.0, {0, 1}},    {0.97, 1.0, {0, 1}},       // the counter counts whole
      {2.4, 4.0, {2, 3, 4}}, {95.0, 100.0, {97, 100}},  // steps of 3, each shown 2 further on
      {0.0, 0.0, {0}},                                  // nothing has run yet
  };
  for (const Case& c : cases) {
    EXPECT_EQ(finishWalk(c.counter, c.estimate), c.expected) << c.counter << " of " << c.estimate;
  }
  EXPECT_LE(finishWalk(0.0, 1e9).size(), 51U);
}

}  // namespace
}  // namespace velmara
