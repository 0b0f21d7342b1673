#include "engine/noise_level.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <random>

#include "base/pixel_operations.h"
#include "engine/denoise_algo_implementation.h"
#include "engine/pictures.h"

namespace velmara {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

Bitmap opaqueCanvas(Content content, int width, int height) {
  return asRgba(makePicture(content, width, height, 3, 11));
}

TEST(NoiseLevelTest, SmallPicturesAreNotMeasured) {
  const DenoiseAlgoImplementation engine{EngineEnvironment{}};
  EXPECT_EQ(engine.getPSNRofImage(Image(opaqueCanvas(Content::kRandom, 99, 101))), 0.0);
  EXPECT_GT(engine.getPSNRofImage(Image(opaqueCanvas(Content::kRandom, 100, 100))), 0.0);
  EXPECT_EQ(engine.getPSNRofImage(Image()), 0.0);
  EXPECT_EQ(engine.getPSNRofImage(Image(opaqueCanvas(Content::kFlat, 100, 100))), kInfinity);
}

// A single spike vanishes in the median: its square is the whole sum.
TEST(NoiseLevelTest, OnlyTheFirstBytesCount) {
  constexpr int kSide = 100;
  const auto spiked = [](std::size_t byte) {
    Bytes bytes(40000, 100);
    for (std::size_t i = 3; i < bytes.size(); i += 4) bytes[i] = 255;
    bytes[byte] = 151;
    return Image(Bitmap::copyOf(bytes, kSide, kSide, 4));
  };
  const double expected = 20.0 * std::log10(255.0 / std::sqrt(51.0 * 51.0 / 10000.0));
  EXPECT_NEAR(noiseLevel(spiked(200), {}), expected, 1e-4);
  EXPECT_NEAR(noiseLevel(spiked(9996), {}), expected, 1e-4);  // In the last compared pixel.
  EXPECT_EQ(noiseLevel(spiked(10000), {}), kInfinity);        // In the first one beyond.
}

// 2^24 + 1 is no single-precision number, and beyond 2^24 half of the squares may lie halfway
// between two of them. The sums here pass several powers of two.
TEST(NoiseLevelTest, SumsOneAfterAnotherInSinglePrecision) {
  std::mt19937 random(5);
  for (const unsigned largest : {1U, 3U, 9U, 60U, 255U}) {
    for (const std::size_t count : {4196U, 40000U, 700001U}) {
      Bytes a(count);
      const Bytes b(count, 0);
      for (std::size_t i = 0; i < count; ++i) {
        a[i] = static_cast<std::uint8_t>(i < 4096 ? 64 : random() % (largest + 1));
      }
      float sum = 0.0F;
      for (const std::uint8_t sample : a) sum += static_cast<float>(sample * sample);
      const float mean = sum / static_cast<float>(count);
      EXPECT_EQ(peakSignalToNoiseRatio(a, b, count),
                static_cast<double>(20.0F * std::log10(255.0F / std::sqrt(mean))))
          << largest << ", " << count;
    }
  }
}

TEST(NoiseLevelTest, ACanvasNeedNotBeMadeToBeMeasured) {
  const DenoiseAlgoImplementation engine{EngineEnvironment{}};
  for (const auto& [width, height] : {std::pair(99, 101), {101, 103}, {103, 99}, {20000, 1}}) {
    const Bitmap rgb = makePicture(Content::kRandom, width, height, 3, 12);
    EXPECT_EQ(engine.psnrOfCanvas(rgb), engine.getPSNRofImage(Image(asRgba(rgb)))) << width;
    const int rows = rowsMeasuredOfCanvas(width, height);
    Bytes cut = bytesOf(rgb);
    std::fill(cut.begin() + std::ptrdiff_t{3} * width * rows, cut.end(), std::uint8_t{0});
    EXPECT_EQ(engine.psnrOfCanvas(Bitmap::copyOf(cut, width, height, 3)), engine.psnrOfCanvas(rgb));
  }
}

// What stands for the codec: notes what it was asked and gives back a picture of three samples.
struct Codec {
  std::optional<float> factor;
  Bitmap seen;

  EngineEnvironment environment() {
    EngineEnvironment environment;
    environment.recompressJpeg = [this](const Image& image, float asked) {
      factor = asked;
      seen = image.bitmap();
      return Image(withoutAlpha(seen));
    };
    return environment;
  }
};

TEST(NoiseLevelTest, TheCopyGoesThroughJpegUnlessTheLengthsAgree) {
  const Bitmap one = makePicture(Content::kPhoto, 120, 110, 3, 12);
  const Size size{120.0, 110.0};
  const std::pair<Image, std::optional<float>> cases[] = {
      {Image(asRgba(one)), std::nullopt},
      {Image(one), 0.0F},
      {Image(makePicture(Content::kPhoto, 120, 110, 1, 12)), 0.0F},
      {Image(makePicture(Content::kPhoto, 120, 110, 2, 12)), 0.0F},
      {Image({asRgba(one), asRgba(one)}, size), std::nullopt},  // Not quite 2: headers are shared.
      {Image({asRgba(one), asRgba(one), asRgba(one)}, size), 2.0F},
  };
  for (const auto& [image, factor] : cases) {
    Codec codec;
    EXPECT_TRUE(std::isfinite(noiseLevel(image, codec.environment())));
    EXPECT_EQ(codec.factor, factor) << image.bitmap().samplesPerPixel();
  }
  // The codec sees the top of the filtered picture in four samples: what is compared, to the end of
  // its blocks and one block more.
  Codec codec;
  const Bitmap picture = makePicture(Content::kPhoto, 100, 300, 3, 13);
  noiseLevel(Image(picture), codec.environment());
  EXPECT_EQ(codec.seen.samplesPerPixel(), 4);
  EXPECT_EQ(codec.seen.height(), 112 + 16);
}

TEST(NoiseLevelTest, WithoutACodecThereIsNoMeasureButALine) {
  const Image image(makePicture(Content::kPhoto, 120, 110, 3, 12));
  int lines = 0;
  EngineEnvironment environment;
  environment.log = [&lines](const std::string&) { ++lines; };
  EXPECT_EQ(noiseLevel(image, environment), 0.0);
  environment.recompressJpeg = [](const Image&, float) { return Image(); };
  EXPECT_EQ(noiseLevel(image, environment), 0.0);
  EXPECT_EQ(lines, 2);
}

TEST(TiffLengthTest, CountsSamplesAndHeaders) {
  const Bitmap gray = makePicture(Content::kFlat, 10, 10, 1, 1);
  const Bitmap rgba = makePicture(Content::kFlat, 10, 10, 4, 1);
  EXPECT_EQ(tiffLength(gray), 8U + 2U + 12U * 12U + 4U + 16U + 100U);
  EXPECT_EQ(tiffLength(rgba), 8U + 2U + 13U * 12U + 4U + 16U + 8U + 400U);
  EXPECT_EQ(tiffLength(Image({gray, rgba}, {10, 10})), tiffLength(gray) + tiffLength(rgba) - 8U);
}

}  // namespace
}  // namespace velmara
