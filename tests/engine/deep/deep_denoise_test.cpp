// What the deep method measures and does, on pictures whose noise is known.
#include "engine/deep/deep_denoise.h"

#include <gtest/gtest.h>

#include <thread>

#include "engine/deep/clipped_noise.h"
#include "engine/deep/deep_pictures.h"
#include "engine/thread_queue.h"

namespace velmara {
namespace {

Bitmap denoised(const Bitmap& bitmap, float strength = 1.0F) {
  JobControl control;
  return denoiseDeeply(bitmap, measureNoise(bitmap), {strength, nullptr, 1, false}, control)
      .value_or(Bitmap());
}

TEST(MeasuredNoise, IsTheNoiseAddedFrom2To60) {
  for (const double deviation : {2.0, 5.0, 12.0, 25.0, 40.0, 60.0}) {
    for (const int samples : {1, 3, 4}) {
      const Bitmap noisy = withWhiteNoise(scene(420, 360, samples), deviation);
      const DeepNoise noise = measureNoise(noisy);
      EXPECT_TRUE(noise.isWhite) << deviation;
      for (const auto& channel : noise.deviation) {
        for (const std::size_t level : {64U, 128U, 192U}) {
          EXPECT_NEAR(channel[level], deviation, 0.05 * deviation) << samples << " at " << level;
        }
      }
    }
  }
}

TEST(MeasuredNoise, GrowsWithBrightnessAsTheNoiseDoes) {
  const Bitmap clean = scene(420, 360);
  std::vector<std::uint8_t> bytes(clean.bytes().begin(), clean.bytes().end());
  const auto noise = normalNumbers(bytes.size(), 1.0, 3);
  const auto deviationAt = [](double level) { return std::sqrt(9.0 + 0.8 * level); };
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const double value = bytes[i] + deviationAt(bytes[i]) * noise[i];
    bytes[i] = static_cast<std::uint8_t>(std::clamp(std::nearbyint(value), 0.0, 255.0));
  }
  const DeepNoise measured = measureNoise(Bitmap::copyOf(bytes, clean.width(), clean.height(), 3));
  for (const std::size_t level : {64U, 128U, 192U}) {
    const double wanted = deviationAt(static_cast<double>(level));
    EXPECT_NEAR(measured.deviation[1][level], wanted, 0.1 * wanted) << level;
  }
}

TEST(MeasuredNoise, OfACleanPictureIsNone) {
  const Bitmap clean = scene(420, 360);
  EXPECT_TRUE(measureNoise(clean).isNone());
  EXPECT_EQ(psnrBetween(denoised(clean), clean), 99.0);
  EXPECT_TRUE(measureNoise(Bitmap()).isNone());
}

TEST(ClippedNoise, HasTheMomentsOfClippedNumbers) {
  for (const auto& [level, deviation] :
       {std::pair{128.0, 20.0}, {5.0, 20.0}, {-10.0, 15.0}, {250.0, 60.0}}) {
    double sum = 0.0;
    double squares = 0.0;
    constexpr std::size_t kCount = 200000;
    for (const double number : normalNumbers(kCount, deviation, 7)) {
      const double clipped = std::clamp(level + number, 0.0, 255.0);
      sum += clipped;
      squares += clipped * clipped;
    }
    const double mean = sum / kCount;
    const double variance = squares / kCount - mean * mean;
    const Moments moments = clippedMoments(level, deviation);
    EXPECT_NEAR(moments.mean, mean, 0.01 * deviation);
    EXPECT_NEAR(moments.variance, variance, 0.02 * variance);
    if (level > 0.0) {
      EXPECT_NEAR(deviationBeforeClipping(moments), deviation, 0.02 * deviation);
    }
    std::array<float, 256> everywhere;
    everywhere.fill(static_cast<float>(deviation));
    EXPECT_NEAR(ClippedNoise(everywhere).seenAs(moments.mean).level, level, 0.5);
  }
}

TEST(DenoisedDeeply, IsMuchCloserToTheCleanPicture) {
  // The least that has to be gained, in dB.
  for (const auto& [deviation, gain] :
       {std::pair{5.0, 6.0}, {15.0, 8.5}, {25.0, 10.0}, {50.0, 11.0}}) {
    const Bitmap clean = scene(300, 240);
    const Bitmap noisy = withWhiteNoise(clean, deviation);
    EXPECT_GT(psnrBetween(denoised(noisy), clean), psnrBetween(noisy, clean) + gain) << deviation;
  }
}

TEST(DenoisedDeeply, LosesTheSmoothNoiseOfACamera) {
  const Bitmap clean = scene(420, 360);
  const Bitmap noisy = withSmoothNoise(clean, 4.0);
  const DeepNoise noise = measureNoise(noisy);
  EXPECT_FALSE(noise.isWhite);
  EXPECT_FALSE(noise.isNone());
  EXPECT_GT(psnrBetween(denoised(noisy), clean), psnrBetween(noisy, clean) + 2.0);
}

TEST(DenoisedDeeply, LosesStrongNoiseThatHasNoColour) {
  const Bitmap clean = scene(420, 360);
  std::vector<std::uint8_t> bytes(clean.bytes().begin(), clean.bytes().end());
  const auto noise = normalNumbers(bytes.size() / 3, 20.0, 4);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<std::uint8_t>(std::clamp(bytes[i] + noise[i / 3], 0.0, 255.0));
  }
  const Bitmap noisy = Bitmap::copyOf(bytes, clean.width(), clean.height(), 3);
  EXPECT_GT(psnrBetween(denoised(noisy), clean), psnrBetween(noisy, clean) + 8.0);
}

TEST(DenoisedDeeply, KeepsItsMeanWhereNoiseWasClipped) {
  const Bitmap dark =
      Bitmap::copyOf(std::vector<std::uint8_t>(std::size_t{200} * 160 * 3, 12), 200, 160, 3);
  JobControl control;
  const auto result = denoiseDeeply(withWhiteNoise(dark, 30.0), whiteNoise(30.0F), {}, control);
  ASSERT_TRUE(result);
  double sum = 0.0;
  for (const std::uint8_t sample : result->bytes()) sum += sample;
  EXPECT_NEAR(sum / static_cast<double>(result->byteCount()), 12.0, 1.5);
}

TEST(DenoisedDeeply, FollowsItsStrength) {
  const Bitmap clean = scene(200, 160);
  const Bitmap noisy = withWhiteNoise(clean, 20.0);
  const double weak = psnrBetween(denoised(noisy, 0.2F), noisy);
  const double measured = psnrBetween(denoised(noisy, 1.0F), noisy);
  EXPECT_GT(weak, measured + 3.0);
  EXPECT_GT(measured, psnrBetween(denoised(noisy, 2.0F), noisy));
  // Of a picture that was made smaller a part of the noise is left.
  JobControl control;
  const auto small = denoiseDeeply(noisy, measureNoise(noisy), {.scale = 0.2F}, control);
  ASSERT_TRUE(small);
  EXPECT_GT(psnrBetween(*small, noisy), measured + 3.0);
}

TEST(DenoisedDeeply, KeepsGrayGrayAndAlphaAsItIs) {
  const Bitmap noisy = withWhiteNoise(scene(90, 70, 4), 20.0);
  const Bitmap result = denoised(noisy);
  ASSERT_EQ(result.byteCount(), noisy.byteCount());
  for (std::size_t i = 3; i < noisy.byteCount(); i += 4) {
    ASSERT_EQ(result.bytes()[i], noisy.bytes()[i]);
  }
  EXPECT_EQ(denoised(withWhiteNoise(scene(90, 70, 1), 20.0)).samplesPerPixel(), 1);
}

TEST(DenoisedDeeply, StopsWhenCancelledAndTellsHowFarItIs) {
  const Bitmap noisy = withWhiteNoise(scene(600, 500), 25.0);
  JobControl control;
  control.cancel();
  EXPECT_FALSE(denoiseDeeply(noisy, whiteNoise(25.0F), {}, control));
  EXPECT_TRUE(measureNoise(noisy, &control).isNone());

  JobControl running;
  std::optional<Bitmap> result = Bitmap();
  std::thread worker([&] { result = denoiseDeeply(noisy, whiteNoise(25.0F), {}, running); });
  double last = 0.0;
  while (last < 0.1) {
    const double progress = running.progress();
    EXPECT_GE(progress, last);
    last = progress;
    std::this_thread::yield();
  }
  running.cancel();
  worker.join();
  EXPECT_FALSE(result);
  EXPECT_LT(running.progress(), 0.9);

  JobControl whole;
  ASSERT_TRUE(denoiseDeeply(withWhiteNoise(scene(40, 30), 9.0), whiteNoise(9.0F), {}, whole));
  EXPECT_EQ(whole.progress(), 1.0);
}

}  // namespace
}  // namespace velmara
