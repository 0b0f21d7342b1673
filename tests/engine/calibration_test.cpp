#include "engine/calibration.h"

#include <gtest/gtest.h>

#include <limits>

#include "engine/denoise_algo_implementation.h"
#include "engine/pictures.h"

namespace velmara {
namespace {

TEST(CalibrationTest, RateIsTruncated) {
  EXPECT_EQ(pixelsPerSecond({100.0, 99.0}, 0.7), 14142);
  EXPECT_EQ(pixelsPerSecond({10.5, 3.5}, 1.0), 36);  // 36.75 pixels are 36.
  EXPECT_EQ(pixelsPerSecond({0.0, 0.0}, 0.0), 0);
  EXPECT_EQ(pixelsPerSecond({5.0, 5.0}, 0.0), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(pixelsPerSecond({1e300, 1e300}, 1e300), 0);
}

// The clock is read before and after; the pixels are those of the image's logical size.
TEST(CalibrationTest, MeasuresOneFilteringByTheClock) {
  double now = 5.0;
  int progressed = 0;
  EngineEnvironment environment;
  environment.clock = [&now] { return now += 0.25; };
  environment.log = [&progressed](const std::string&) { ++progressed; };
  const DenoiseAlgoImplementation engine(environment);
  for (const int samples : {1, 2, 3, 4}) {
    const Image test({makePicture(Content::kPhoto, 16, 16, samples, 1)}, {50.0, 20.0});
    EXPECT_EQ(engine.calculateProcessingSpeedForTestImage(test, 5, 14, 10), 4000) << samples;
  }
  EXPECT_EQ(progressed, 0);
}

}  // namespace
}  // namespace velmara
