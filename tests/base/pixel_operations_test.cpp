#include "base/pixel_operations.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace velmara {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes bytesOf(const Bitmap& bitmap) {
  return {bitmap.bytes().begin(), bitmap.bytes().end()};
}

TEST(MirrorTest, RepeatsTheEdgeAndMirrorsAgainAndAgain) {
  // The line 0 1 2 seen through two mirrors.
  const std::int64_t expected[] = {0, 1, 2, 2, 1, 0, 0, 1, 2, 2, 1, 0, 0, 1, 2, 2, 1, 0};
  for (std::int64_t i = 0; i < 18; ++i) EXPECT_EQ(mirroredIndex(i - 6, 3), expected[i]) << i - 6;
  EXPECT_EQ(mirroredIndex(-1000, 1), 0);
}

TEST(MirrorTest, FramesAPictureWithItsOwnEdgesAndCorners) {
  const Bitmap framed = withMirroredBorder(Bitmap::copyOf(Bytes{1, 2, 3, 4, 5, 6}, 3, 2, 1), 2);
  EXPECT_EQ(bytesOf(framed), (Bytes{5, 4, 4, 5, 6, 6, 5,  //
                                    2, 1, 1, 2, 3, 3, 2,  //
                                    2, 1, 1, 2, 3, 3, 2,  //
                                    5, 4, 4, 5, 6, 6, 5,  //
                                    5, 4, 4, 5, 6, 6, 5,  //
                                    2, 1, 1, 2, 3, 3, 2}));
}

TEST(MirrorTest, FrameWiderThanThePicture) {
  const Bitmap framed = withMirroredBorder(Bitmap::copyOf(Bytes{10, 20, 30, 40}, 1, 1, 4), 3);
  ASSERT_EQ(framed.width(), 7);
  for (int y = 0; y < 7; ++y) {
    for (int x = 0; x < 7; ++x) {
      EXPECT_EQ(framed.pixel(x, y)[0], 10);
      EXPECT_EQ(framed.pixel(x, y)[3], 40);
    }
  }
  EXPECT_FALSE(withMirroredBorder(framed, -1).isValid());
  EXPECT_FALSE(withMirroredBorder(framed, 1 << 20).isValid());
}

TEST(AlphaTest, DrawsOverBlackExactly) {
  for (int sample = 0; sample < 256; ++sample) {
    for (int alpha = 0; alpha < 256; ++alpha) {
      const int exact = (2 * sample * alpha + 255) / 510;
      ASSERT_EQ(overBlack(static_cast<std::uint8_t>(sample), static_cast<std::uint8_t>(alpha)),
                exact);
    }
  }
}

TEST(AlphaTest, RemovesTheLastSampleOnly) {
  EXPECT_EQ(
      bytesOf(withoutAlpha(Bitmap::copyOf(Bytes{200, 100, 50, 255, 200, 100, 50, 0}, 2, 1, 4))),
      (Bytes{200, 100, 50, 0, 0, 0}));
  EXPECT_EQ(bytesOf(withoutAlpha(Bitmap::copyOf(Bytes{200, 128}, 1, 1, 2))), (Bytes{100}));
  EXPECT_EQ(bytesOf(withoutAlpha(Bitmap::copyOf(Bytes{7, 8, 9}, 1, 1, 3))), (Bytes{7, 8, 9}));
  EXPECT_EQ(bytesOf(asRgba(Bitmap::copyOf(Bytes{7, 128}, 1, 1, 2))), (Bytes{7, 7, 7, 128}));
  EXPECT_EQ(bytesOf(asRgba(Bitmap::copyOf(Bytes{1, 2, 3}, 1, 1, 3))), (Bytes{1, 2, 3, 255}));
  EXPECT_FALSE(withoutAlpha(Bitmap()).isValid());
}

}  // namespace
}  // namespace velmara
