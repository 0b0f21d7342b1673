// What the deep method measures and does, on pictures whose noise is known.
#include "engine/deep/deep_denoise.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "engine/deep/clipped_noise.h"
#include "engine/deep/deep_pictures.h"
#include "engine/deep/opponent_planes.h"
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

// A photo that is opened again comes out as it did the last time.
TEST(MeasuredNoise, StaysWhatItWas) {
  const Bitmap clean = scene(420, 360);
  const DeepNoise white = measureNoise(withWhiteNoise(clean, 12.0));
  const double deviations[3][3] = {
      {11.994, 11.946, 11.898}, {11.898, 11.851, 11.804}, {12.067, 11.939, 11.809}};
  for (std::size_t c = 0; c < 3; ++c) {
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_NEAR(white.deviation[c][64 * (i + 1)], deviations[c][i], 0.002) << c << ", " << i;
    }
  }
  const DeepNoise smooth = measureNoise(withSmoothNoise(clean, 4.0));
  EXPECT_NEAR(smooth.deviation[0][64], 5.212, 0.002);
  EXPECT_NEAR(smooth.deviation[1][192], 5.402, 0.002);
  EXPECT_NEAR(smooth.amplitude[0][5], 1.967, 0.001);
  EXPECT_NEAR(smooth.amplitude[1][3], 0.560, 0.001);
  EXPECT_NEAR(smooth.amplitude[2][9], 0.133, 0.001);
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

// Planes whose samples tell their plane, row and column.
OpponentPlanes slope(int width, int height) {
  auto planes = OpponentPlanes::allocate(width, height);
  for (std::size_t k = 0; k < 3; ++k) {
    for (std::size_t i = 0; i < planes->pixels(); ++i) {
      const std::size_t x = i % static_cast<std::size_t>(width);
      const std::size_t y = i / static_cast<std::size_t>(width);
      planes->planes[k][i] = static_cast<std::int16_t>(10000 * k + 4 * x + 300 * y);
    }
  }
  return *planes;
}

TEST(SmallerPlanes, AreMeansOfFourAndGiveBackWhatTheyLost) {
  // A side that cannot be halved any more repeats its end.
  const OpponentPlanes half = *halved(slope(20, 40));
  ASSERT_EQ(half.width, 16);
  ASSERT_EQ(half.height, 20);
  EXPECT_EQ(half.planes[1][16 * 3 + 5], 10000 + 4 * 10 + 2 + 300 * 6 + 150);
  EXPECT_EQ(half.planes[2][16 * 19 + 15], 20000 + 4 * 18 + 2 + 300 * 38 + 150);

  OpponentPlanes part = slope(40, 20);
  ASSERT_TRUE(cropTo(part, {7, 3, 20, 16}));
  EXPECT_EQ(part.width, 20);
  EXPECT_EQ(part.planes[2][20 * 15 + 19], 20000 + 4 * 26 + 300 * 18);

  // One pixel of the half is enlarged linearly, and a difference of all of it is that of all.
  const OpponentPlanes plain = slope(16, 16);
  OpponentPlanes filtered = plain;
  OpponentPlanes planes = slope(32, 32);
  filtered.planes[1][16 * 5 + 4] += 160;
  for (std::int16_t& sample : filtered.planes[2]) sample = static_cast<std::int16_t>(sample - 50);
  addEnlargedDifference(filtered, plain, planes, 0, 20);
  const OpponentPlanes before = slope(32, 32);
  const auto added = [&](std::size_t k, std::size_t x, std::size_t y) {
    const std::size_t i = 32 * y + x;
    return planes.planes[k][i] - before.planes[k][i];
  };
  EXPECT_EQ((std::array{added(1, 7, 10), added(1, 8, 10), added(1, 9, 11), added(1, 10, 9)}),
            (std::array{30, 90, 90, 10}));
  EXPECT_EQ((std::array{added(2, 0, 0), added(2, 31, 19), added(2, 9, 9), added(0, 8, 10)}),
            (std::array{-50, -50, -50, 0}));
  EXPECT_EQ(added(2, 5, 20), 0) << "a row that was not asked for";
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

// To some dozen pixels: what is not measured anew comes out as it did the last time.
TEST(DenoisedDeeply, StaysWhatItWas) {
  const Bitmap clean = scene(200, 160);
  const Bitmap white = withWhiteNoise(clean, 15.0);
  EXPECT_NEAR(psnrBetween(denoised(white), clean), 40.70457, 0.0001);
  DeepNoise noise = whiteNoise(6.0F);
  noise.isWhite = false;
  noise.sizes = 3;
  const Bitmap smooth = withSmoothNoise(clean, 4.0);
  JobControl control;
  const auto result = denoiseDeeply(smooth, noise, {}, control);
  EXPECT_NEAR(psnrBetween(result.value(), clean), 38.56279, 0.0001);
}

TEST(DenoisedDeeply, LosesTheSmoothNoiseOfACamera) {
  const Bitmap clean = scene(420, 360);
  const Bitmap noisy = withSmoothNoise(clean, 4.0);
  const DeepNoise noise = measureNoise(noisy);
  EXPECT_FALSE(noise.isWhite);
  EXPECT_FALSE(noise.isNone());
  // Without what smaller sizes of the picture lose it would be 4.7 dB.
  EXPECT_GT(psnrBetween(denoised(noisy), clean), psnrBetween(noisy, clean) + 7.0);
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
