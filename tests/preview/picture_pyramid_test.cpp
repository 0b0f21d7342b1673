#include "preview/picture_pyramid.h"

#include <gtest/gtest.h>

#include <vector>

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

}  // namespace
}  // namespace velmara
