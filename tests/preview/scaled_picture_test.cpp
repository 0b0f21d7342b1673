#include "preview/scaled_picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "base/alpha.h"
#include "imaging/resample.h"
#include "preview/geometry_printing.h"
#include "preview/pictures.h"

namespace velmara {
namespace {

using Samples = std::vector<std::uint8_t>;

TEST(HalvedTest, TakesTheMeanOfFourAndLetsOddEndsStand) {
  struct Case {
    Samples samples;
    int width, height, samplesPerPixel;
    Samples expected;
  };
  const Case cases[] = {
      {{10, 20, 30, 40}, 2, 2, 1, {25}},
      {{0, 0, 0, 1}, 2, 2, 1, {0}},
      {{0, 0, 1, 1}, 2, 2, 1, {1}},  // halves upwards
      {{10, 20, 99, 30, 40, 101}, 3, 2, 1, {25, 100}},
      {{10, 20, 99}, 3, 1, 1, {15, 99}},
      {{7}, 1, 1, 1, {7}},
      {{1, 2, 3, 5, 6, 7}, 2, 1, 3, {3, 4, 5}},
      {{1, 2, 3, 5, 6, 7}, 1, 2, 3, {3, 4, 5}},
  };
  for (const Case& c : cases) {
    const Bitmap half = halved(Bitmap::copyOf(c.samples, c.width, c.height, c.samplesPerPixel));
    EXPECT_EQ(Samples(half.bytes().begin(), half.bytes().end()), c.expected);
  }
}

TEST(PicturePyramidTest, HalvesUntilItIsSmall) {
  const PicturePyramid pyramid(texturedPicture(1100, 40));
  ASSERT_EQ(pyramid.levelCount(), 4U);  // 1100, 550, 275, 138
  struct Case {
    int width, height, level;
  };
  const Case cases[] = {
      {2200, 80, 1100}, {1100, 40, 1100}, {550, 20, 1100}, {275, 10, 550},
      {276, 10, 1100},  {100, 11, 1100},  {60, 2, 138},    {1, 1, 138},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(pyramid.levelFor(c.width, c.height).width(), c.level) << c.width << " x " << c.height;
  }
}

TEST(PicturePyramidTest, AlphaStaysOnlyWhereItLetsSomethingThrough) {
  Samples samples(2400, 255);
  const PicturePyramid opaque(Bitmap::copyOf(samples, 600, 1, 4));
  EXPECT_EQ(opaque.picture().samplesPerPixel(), 3);
  EXPECT_GT(opaque.levelCount(), 1U);
  samples[3] = 128;
  const PicturePyramid transparent(Bitmap::copyOf(samples, 600, 1, 4));
  EXPECT_EQ(transparent.picture().samplesPerPixel(), 4);
  EXPECT_EQ(transparent.levelCount(), 1U);
  EXPECT_FALSE(PicturePyramid(Bitmap()).isValid());
}

ScaledPicture scaled(const Bitmap& picture, double width, double height) {
  return ScaledPicture(PicturePyramid(picture), {width, height});
}

TEST(ScaledPictureTest, AtItsOwnSizeItIsThePicture) {
  for (const int samples : {1, 3, 4}) {
    const Bitmap picture = texturedPicture(61, 47, samples);
    const ScaledPicture shown = scaled(picture, 61, 47);
    EXPECT_TRUE(samePixels(shown.render({0, 0, 61, 47}), asRgba(picture)));
    EXPECT_TRUE(
        samePixels(shown.render({50, 3, 10, 40}), copiedPixels(asRgba(picture), {50, 3, 10, 40})));
  }
}

TEST(ScaledPictureTest, EnlargingAndReducingAreThoseOfTheToolkit) {
  for (const Size size : {Size{122, 94}, Size{110.00001, 70.4}, Size{60, 33}, Size{1, 200}}) {
    for (const int samples : {1, 3, 4}) {
      const Bitmap picture = texturedPicture(61, 47, samples);
      const ScaledPicture shown = scaled(picture, size.width, size.height);
      const Bitmap whole = shown.render({0, 0, shown.width(), shown.height()});
      EXPECT_TRUE(samePixels(whole, resampled(picture, shown.width(), shown.height())))
          << testing::PrintToString(size) << ", " << samples << " samples";
    }
  }
}

// Much smaller views come from a smaller level, which takes a few hundredths of the finest waves'
// height away and nothing else.
TEST(ScaledPictureTest, StrongReductionsLookTheSame) {
  const Bitmap picture = texturedPicture(1500, 1100);
  for (const double factor : {0.05, 0.11, 0.2, 0.33}) {
    const ScaledPicture shown = scaled(picture, 1500 * factor, 1100 * factor);
    const Bitmap whole = shown.render({0, 0, shown.width(), shown.height()});
    EXPECT_LT(meanDifference(whole, resampled(picture, shown.width(), shown.height())), 3.0)
        << factor;
  }
}

TEST(ScaledPictureTest, AnyPartIsTheCropOfTheWhole) {
  std::mt19937 random(3);
  const auto between = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  const Size odd[] = {{1, 1}, {20000, 3}, {3, 5000}, {1, 700}, {701, 1}};
  for (int round = 0; round < 120; ++round) {
    Size photo{double(between(1, 600)), double(between(1, 400))};
    if (round % 4 == 0) photo = odd[static_cast<std::size_t>(round / 4) % 5];
    const int samples = between(1, 4);
    const PicturePyramid pyramid(
        texturedPicture(static_cast<int>(photo.width), static_cast<int>(photo.height), samples));
    const double factor = between(2, 20) / 10.0 / (round % 3 == 0 ? 7.0 : 1.0);
    const ScaledPicture shown(pyramid, {photo.width * factor, photo.height * factor});
    const Bitmap whole = shown.render({0, 0, shown.width(), shown.height()});
    ASSERT_TRUE(whole.isValid());
    for (int part = 0; part < 6; ++part) {
      const PixelRect rect{between(-5, shown.width() - 1), between(-5, shown.height() - 1),
                           between(1, shown.width()), between(1, shown.height())};
      const Bitmap rendered = shown.render(rect);
      const Bitmap cut = copiedPixels(whole, rect);
      ASSERT_EQ(rendered.isValid(), cut.isValid());
      ASSERT_TRUE(!cut.isValid() || samePixels(rendered, cut))
          << testing::PrintToString(rect) << " of " << testing::PrintToString(photo) << " times "
          << factor << ", " << samples << " samples";
    }
  }
}

// Two thousand million pixels, none of them made but those asked for.
TEST(ScaledPictureTest, MayBeLargerThanAnyBitmap) {
  const ScaledPicture shown = scaled(columnPicture(4000, 2000), 64000, 32000);
  ASSERT_FALSE(isAllowedBitmapSize(shown.width(), shown.height(), 4));
  const Bitmap corner = shown.render({63900, 31900, 500, 500});
  ASSERT_EQ(corner.width(), 100);
  ASSERT_EQ(corner.height(), 100);
  EXPECT_EQ(corner.pixel(99, 99)[0], 3999 / 256);
  EXPECT_NEAR(corner.pixel(99, 99)[1], 3999 % 256, 2);
  EXPECT_EQ(corner.pixel(99, 99)[2], 77);
}

TEST(ScaledPictureTest, WithoutAPictureOrASensibleSizeIsNotValid) {
  EXPECT_FALSE(ScaledPicture().isValid());
  EXPECT_FALSE(scaled(Bitmap(), 10, 10).isValid());
  EXPECT_FALSE(scaled(texturedPicture(4, 4), 1e300, 10).isValid());
  EXPECT_FALSE(scaled(texturedPicture(4, 4), std::nan(""), 10).isValid());
  EXPECT_FALSE(scaled(texturedPicture(4, 4), 8, 8).render({8, 0, 3, 3}).isValid());
  EXPECT_FALSE(scaled(texturedPicture(4, 4), 8, 8).render({0, 0, 0, 3}).isValid());
}

}  // namespace
}  // namespace velmara
