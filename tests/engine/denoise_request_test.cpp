#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <mutex>
#include <string>
#include <thread>

#include "base/pixel_operations.h"
#include "engine/brute_force.h"
#include "engine/denoise_algo_implementation.h"
#include "engine/fast/fast_kernel.h"
#include "engine/fast/instruction_sets.h"
#include "engine/pictures.h"
#include "engine/thread_queue.h"

namespace velmara {
namespace {

using namespace testing;

class DenoiseRequestTest : public Test {
 protected:
  EngineEnvironment environment() {
    EngineEnvironment environment;
    environment.workers = &workers_;
    environment.mainQueue = &mainQueue_;
    environment.log = [this](const std::string& line) {
      const std::lock_guard lock(mutex_);
      lines_.push_back(line);
    };
    return environment;
  }
  std::vector<std::string> takeLines() {
    const std::lock_guard lock(mutex_);
    return std::exchange(lines_, {});
  }

  ThreadQueue mainQueue_{1};
  ThreadQueue workers_{3};  // Ends first, as its tasks use the other.
  std::mutex mutex_;
  std::vector<std::string> lines_;
  DenoiseAlgoImplementation engine_{environment()};
};

Bytes packedRgb(const Bitmap& bitmap) {
  return bytesOf(withoutAlpha(bitmap));
}

// One sample a pixel: the averaged rows slide to the left, and the result's colours are three
// output samples each, as it is built from three bytes a pixel.
TEST_F(DenoiseRequestTest, FiltersLikeTheTextbook) {
  const struct {
    int width, height, samples, t, s, sigma;
    Content content;
  } cases[] = {
      {13, 11, 3, 3, 7, 5, Content::kPhoto},   {9, 17, 3, 2, 4, 12, Content::kPhoto},
      {1, 12, 3, 3, 5, 8, Content::kRandom},   {12, 1, 3, 4, 4, 40, Content::kRandom},
      {7, 3, 3, 0, 3, 5, Content::kPhoto},     {5, 5, 3, 1, 1, 5, Content::kRandom},
      {3, 2, 3, 5, 9, 3, Content::kSaturated}, {10, 9, 3, 7, 7, 5, Content::kCheckerboard},
      {11, 8, 3, 3, 6, 200, Content::kRandom}, {11, 8, 3, 3, 5, 0, Content::kCheckerboard},
      {30, 9, 1, 3, 7, 5, Content::kPhoto},    {1, 9, 1, 3, 3, 5, Content::kPhoto},
      {2, 5, 1, 5, 9, 20, Content::kPhoto},    {17, 4, 1, 2, 6, 3, Content::kPhoto},
      {5, 40, 1, 4, 5, 9, Content::kPhoto},    {40, 3, 1, 0, 2, 9, Content::kPhoto},
  };
  for (const auto& c : cases) {
    const Bitmap picture = makePicture(c.content, c.width, c.height, c.samples, 1);
    const Image result =
        engine_.denoiseImageUsingCustomFastNLMeans(Image(picture), c.t, c.s, c.sigma);
    ASSERT_TRUE(result.isValid());
    Bytes expected = bruteForce(picture, c.t, c.s, c.sigma);
    expected.resize(bytesOf(withoutAlpha(asRgba(picture))).size(), 0);
    EXPECT_EQ(packedRgb(result.bitmap()), expected)
        << c.width << " x " << c.height << ", " << c.t << ", " << c.s << ", " << c.sigma;
  }
}

TEST_F(DenoiseRequestTest, AlphaIsDrawnOverBlackAndTheResultIsOpaque) {
  const Bitmap picture = makePicture(Content::kRandom, 12, 10, 4, 3);
  const auto profile = std::make_shared<const std::vector<std::uint8_t>>(5, std::uint8_t{1});
  const Image input({picture}, {120.0, 100.0}, profile);
  const Image result = engine_.denoiseImageUsingCustomFastNLMeans(input, 3, 5, 40);
  ASSERT_TRUE(result.isValid());
  EXPECT_EQ(packedRgb(result.bitmap()), bruteForce(withoutAlpha(picture), 3, 5, 40));
  EXPECT_EQ(result.bitmap().samplesPerPixel(), 4);
  EXPECT_EQ(result.bitmap().pixel(11, 9)[3], 255);
  EXPECT_EQ(result.profile(), profile);
  EXPECT_EQ(result.size(), (Size{12.0, 10.0}));
  // Gray with alpha comes back black.
  const Image gray(makePicture(Content::kRandom, 6, 5, 2, 4));
  for (const bool testSpeed : {false, true}) {
    EXPECT_EQ(
        packedRgb(engine_.applyFastNLMeansAlgorithmOnImage(gray, 3, 5, 5.0, testSpeed).bitmap()),
        Bytes(90, 0));
  }
}

// The toolkit's steps of a request, in its order.
TEST_F(DenoiseRequestTest, TheLogTellsTheStepsOfARun) {
  const char* const removal = "Utils removeAlphaChannelFromImage";
  const std::vector<std::string> border = {"Utils addBorderToImage", "input Image Size {6, 5}"};
  for (const int samples : {1, 2, 3, 4}) {
    const Image input(makePicture(Content::kRandom, 6, 5, samples, 4));
    std::vector<std::string> steps = border;
    if (samples == 4) steps = {removal, removal, border[0], border[1], removal};
    steps.emplace_back("Threads Processed = 8");
    engine_.denoiseImageUsingCustomFastNLMeans(input, 3, 5, 5);
    EXPECT_THAT(takeLines(), ElementsAreArray(steps)) << samples;
    // The calibration removes the alpha whatever the samples, and filters what is left.
    engine_.calculateProcessingSpeedForTestImage(input, 3, 5, 5);
    EXPECT_THAT(takeLines(), ElementsAreArray({removal, border[0].c_str(), border[1].c_str()}))
        << samples;
  }
}

// Every mean is the sample itself where the D-th part of it is an exact number; else the sum of D
// such parts may fall short of it and lose one in the truncation.
TEST_F(DenoiseRequestTest, AFlatImageStaysFlat) {
  for (const int sample : {0, 1, 99, 100, 127, 128, 254, 255}) {
    const auto value = static_cast<std::uint8_t>(sample);
    for (const int s : {1, 2, 3, 4, 7, 8, 14}) {
      const Image flat(Bitmap::copyOf(Bytes(2400, value), 40, 20, 3));
      const Bytes result =
          packedRgb(engine_.denoiseImageUsingCustomFastNLMeans(flat, 1, s, 5).bitmap());
      const bool isExact = (s & (s - 1)) == 0;
      EXPECT_THAT(result, Each(result[0])) << sample << ", " << s;
      EXPECT_TRUE(result[0] == value || (!isExact && result[0] + 1 == value))
          << sample << ", " << s;
    }
  }
}

TEST_F(DenoiseRequestTest, TemplateLargerThanSearchWritesItsMessage) {
  const Image input(makePicture(Content::kRandom, 6, 5, 3, 4));
  internal::CaptureStdout();
  const Image larger = engine_.denoiseImageUsingCustomFastNLMeans(input, 4, 3, 5);
  const Image equal = engine_.denoiseImageUsingCustomFastNLMeans(input, 3, 3, 5);
  EXPECT_EQ(internal::GetCapturedStdout(),
            "searchWindowSize should be larger than templeteWindowSize\n");
  EXPECT_FALSE(larger.isValid());
  EXPECT_TRUE(equal.isValid());
}

TEST_F(DenoiseRequestTest, RefusesWhatItCannotDoWithOneLine) {
  const Image input(makePicture(Content::kRandom, 6, 5, 3, 4));
  const auto refused = [&](const DenoiseAlgoImplementation& engine, int t, int s) {
    EXPECT_FALSE(engine.denoiseImageUsingCustomFastNLMeans(input, t, s, 5).isValid());
    EXPECT_THAT(takeLines(), Contains(StartsWith("denoise: ")).Times(1)) << t << ", " << s;
  };
  refused(engine_, -3, 7);
  refused(engine_, -3, -3);
  refused(engine_, 1, std::numeric_limits<int>::max());  // A border beyond any picture.
  refused(engine_, std::numeric_limits<int>::max(), std::numeric_limits<int>::max());
  EngineEnvironment lonely = environment();
  lonely.workers = nullptr;
  refused(DenoiseAlgoImplementation(lonely), 3, 7);
  // One that is not valid comes back itself.
  const Image nothing({}, {30.0, 20.0}, nullptr);
  EXPECT_EQ(engine_.denoiseImageUsingCustomFastNLMeans(nothing, 3, 7, 5).size(), nothing.size());
  EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(DenoiseRequestTest, RefusesToWaitOnTheMainThreadForTheMainThread) {
  const Image input(makePicture(Content::kRandom, 6, 5, 3, 4));
  Image parallel = input;
  Image alone;
  std::binary_semaphore done(0);
  mainQueue_.async([&] {
    parallel = engine_.denoiseImageUsingCustomFastNLMeans(input, 3, 5, 5);
    alone = engine_.applyFastNLMeansAlgorithmOnImage(input, 3, 5, 5.0, true);
    done.release();
  });
  done.acquire();
  EXPECT_FALSE(parallel.isValid());
  EXPECT_TRUE(alone.isValid());
  EXPECT_THAT(takeLines(), Contains(StartsWith("denoise: ")).Times(1));
}

TEST_F(DenoiseRequestTest, RequestsAtTheSameTimeDoNotMeet) {
  const Image inputs[] = {Image(makePicture(Content::kPhoto, 40, 33, 3, 5)),
                          Image(makePicture(Content::kRandom, 64, 5, 3, 6))};
  Image alone[2];
  for (int i = 0; i < 2; ++i) {
    alone[i] = engine_.applyFastNLMeansAlgorithmOnImage(inputs[i], 3, 7, 8.0, true);
  }
  std::atomic<int> same{0};
  std::vector<std::thread> threads(4);
  for (std::size_t i = 0; i < threads.size(); ++i) {
    threads[i] = std::thread([&, i] {
      const Image result = engine_.denoiseImageUsingCustomFastNLMeans(inputs[i % 2], 3, 7, 8);
      if (bytesOf(result.bitmap()) == bytesOf(alone[i % 2].bitmap())) ++same;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(same, 4);
  // Nothing but the calling thread is free: the run ends all the same.
  ThreadQueue busy(0);
  EngineEnvironment lonely = environment();
  lonely.workers = &busy;
  const DenoiseAlgoImplementation engine(lonely);
  const Image result = engine.denoiseImageUsingCustomFastNLMeans(inputs[0], 3, 7, 8);
  EXPECT_EQ(bytesOf(result.bitmap()), bytesOf(alone[0].bitmap()));
}

TEST_F(DenoiseRequestTest, TellsEachRowOfTheResultOnceFromTheTopToTheBottom) {
  for (const int samples : {1, 2, 3, 4}) {
    const Image input(makePicture(Content::kPhoto, 700, 300, samples, 8));
    JobControl control;
    Bytes told;
    int rows = 0;
    const auto take = [&](const std::uint8_t* first, int firstRow, int rowCount) {
      EXPECT_EQ(firstRow, rows);
      rows += rowCount;
      told.insert(told.end(), first, first + std::ptrdiff_t{3} * 700 * rowCount);
    };
    const Image result =
        engine_.denoiseImageUsingCustomFastNLMeans(input, 3, 7, 5, {&control, take});
    EXPECT_EQ(rows, 300) << samples;
    EXPECT_EQ(told, packedRgb(result.bitmap())) << samples;
    EXPECT_EQ(control.progress(), samples == 2 ? 0.0 : 1.0);
  }
}

// Rows that nobody waited for are black here, and would be seen in the result.
TEST_F(DenoiseRequestTest, FiltersAnImageWhoseRowsAreStillToCome) {
  for (const auto& [height, t, s] : {std::tuple(200, 3, 8), {7, 5, 21}, {150, 2, 3}}) {
    const Bitmap picture = makePicture(Content::kPhoto, 130, height, 3, 8);
    auto builder = BitmapBuilder::allocate(130, height, 3);
    ASSERT_TRUE(builder);
    std::ranges::fill(builder->bytes(), std::uint8_t{0});
    RunWatch watch;
    watch.awaitRows = [&, come = 0](int rows) mutable {
      for (; come < rows; ++come) {
        std::copy_n(picture.row(come), picture.rowBytes(), builder->row(come));
      }
      return true;
    };
    const Image unfinished(builder->unfinished());
    const Image result = engine_.denoiseImageUsingCustomFastNLMeans(unfinished, t, s, 8, watch);
    EXPECT_EQ(
        bytesOf(result.bitmap()),
        bytesOf(engine_.denoiseImageUsingCustomFastNLMeans(Image(picture), t, s, 8).bitmap()));
    watch.awaitRows = [half = height / 2](int rows) { return rows <= half; };
    takeLines();
    EXPECT_FALSE(engine_.denoiseImageUsingCustomFastNLMeans(unfinished, t, s, 8, watch).isValid());
    EXPECT_THAT(takeLines(), Not(Contains(testing::HasSubstr("memory"))));
  }
}

TEST_F(DenoiseRequestTest, ACancelledRequestGivesNothingAndTellsOfNoSuccess) {
  const Image input(makePicture(Content::kPhoto, 700, 300, 3, 9));
  // Before it starts, and when the first rows are there.
  for (const bool atOnce : {true, false}) {
    JobControl control;
    if (atOnce) control.cancel();
    int rows = 0;
    const auto cancel = [&](const std::uint8_t*, int, int rowCount) {
      control.cancel();
      rows += rowCount;
    };
    EXPECT_FALSE(
        engine_.denoiseImageUsingCustomFastNLMeans(input, 3, 13, 8, {&control, cancel}).isValid());
    EXPECT_EQ(rows > 0, !atOnce);
    EXPECT_LT(rows, 300);
    EXPECT_THAT(takeLines(), Not(Contains("Threads Processed = 8")));
    EXPECT_EQ(engine_.calculateProcessingSpeedForTestImage(input, 3, 13, 8, &control), 0);
  }
}

// The clock is read before and after; the pixels are those of the image's logical size.
TEST_F(DenoiseRequestTest, SpeedIsThePixelsOverTheSecondsTruncated) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  const struct {
    Size size;
    double seconds;
    std::int64_t rate;
  } cases[] = {
      {{50.0, 20.0}, 0.25, 4000}, {{100.0, 99.0}, 0.7, 14142}, {{10.5, 3.5}, 1.0, 36},
      {{0.0, 0.0}, 0.0, 0},       {{5.0, 5.0}, 0.0, kMost},    {{1e300, 1e300}, 1e300, 0},
  };
  for (const auto& c : cases) {
    double now = 0.0;
    EngineEnvironment clocked = environment();
    clocked.clock = [&] { return std::exchange(now, now + c.seconds); };
    const Image test({makePicture(Content::kPhoto, 16, 16, 4, 1)}, c.size);
    EXPECT_EQ(
        DenoiseAlgoImplementation(clocked).calculateProcessingSpeedForTestImage(test, 5, 14, 10),
        c.rate);
  }
}

// Whatever the windows a very noisy photo asks for, and whoever else is to use the reference.
TEST_F(DenoiseRequestTest, SpeedIsThatOfTheFastKernel) {
  if (instructionSets().front() == "SCALAR") return;  // There is no fast kernel then.
  EngineEnvironment plain = environment();
  plain.kernel = KernelChoice::kReference;
  const Image test(makePicture(Content::kPhoto, 16, 16, 3, 1));
  const KernelStatistics before = kernelStatistics();
  for (const int s : {7, 32, 40, 64}) {
    DenoiseAlgoImplementation(plain).calculateProcessingSpeedForTestImage(test, 3, s, 60);
  }
  EXPECT_EQ(kernelStatistics().referencePixels, before.referencePixels);
  EXPECT_EQ(kernelStatistics().fastPixels, before.fastPixels + 1024);
}

}  // namespace
}  // namespace velmara
