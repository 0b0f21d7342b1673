#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "base/image.h"
#include "base/pixel_operations.h"
#include "base/residual.h"

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
  for (const int border : {-1, 1 << 20}) EXPECT_FALSE(withMirroredBorder(framed, border).isValid());
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

TEST(ResidualTest, EnlargesWhatWasTakenAroundGrey) {
  const Bitmap colour = Bitmap::copyOf(Bytes{100, 255, 0, 9, 9, 9}, 2, 1, 3);
  const Bitmap result = Bitmap::copyOf(Bytes{98, 0, 255, 9, 10, 8}, 2, 1, 3);
  EXPECT_EQ(bytesOf(residual(colour, result)), (Bytes{144, 255, 0, 128, 120, 136}));
  EXPECT_EQ(bytesOf(residual(colour, result, 1'000'000'000)), (Bytes{255, 255, 0, 128, 0, 255}));
  // Alpha is drawn over black, and a gray picture is one in all colours.
  const Bitmap clear = Bitmap::copyOf(Bytes{200, 50, 50, 0, 12, 10, 8, 255}, 2, 1, 4);
  const Bitmap gray = Bitmap::copyOf(Bytes{1, 10}, 2, 1, 1);
  EXPECT_EQ(bytesOf(residual(clear, gray)), (Bytes{120, 120, 120, 144, 128, 112}));
  EXPECT_EQ(bytesOf(residual(gray, gray)), (Bytes{128, 128}));
  EXPECT_FALSE(residual(gray, Bitmap::copyOf(Bytes{1, 2}, 1, 2, 1)).isValid());
  EXPECT_FALSE(residual(Bitmap(), gray).isValid());
}

TEST(BitmapTest, RefusesSizesBeforeAllocating) {
  struct Case {
    std::int64_t width, height;
    int samples;
    bool allowed;
  };
  const Case cases[] = {
      {1, 1, 1, true},
      {1 << 15, 1 << 14, 4, true},
      {(1 << 15) + 1, 1 << 14, 1, false},
      {std::numeric_limits<std::int64_t>::max(), 2, 3, false},
      {2'000'000, 2'000'000, 4, false},
      {0, 5, 3, false},
      {5, -1, 3, false},
      {5, 5, 0, false},
      {5, 5, 5, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(isAllowedBitmapSize(c.width, c.height, c.samples), c.allowed)
        << c.width << " x " << c.height << " x " << c.samples;
  }
  EXPECT_FALSE(BitmapBuilder::allocate(1 << 20, 1 << 20, 4).has_value());
}

TEST(BitmapTest, CopyOfWantsExactlyItsBytes) {
  const std::array<std::uint8_t, 6> bytes{1, 2, 3, 4, 5, 6};
  const Bitmap bitmap = Bitmap::copyOf(bytes, 1, 2, 3);
  ASSERT_TRUE(bitmap.isValid());
  EXPECT_EQ(bitmap.pixel(0, 1)[2], 6);
  EXPECT_FALSE(Bitmap::copyOf(bytes, 2, 2, 3).isValid());
  EXPECT_FALSE(Bitmap::copyOf(bytes, 1, 1, 3).isValid());
}

TEST(ImageTest, DrawsFromTheSmallestRepresentationThatSuffices) {
  const auto square = [](int side) {
    const std::vector<std::uint8_t> bytes(static_cast<std::size_t>(side * side));
    return Bitmap::copyOf(bytes, side, side, 1);
  };
  const Image image({square(4), square(16), square(8)}, {4, 4});
  EXPECT_EQ(image.bitmap().width(), 4);
  EXPECT_EQ(image.representationForDrawing({3, 3}).width(), 4);
  EXPECT_EQ(image.representationForDrawing({5, 2}).width(), 8);
  EXPECT_EQ(image.representationForDrawing({9, 9}).width(), 16);
  EXPECT_EQ(image.representationForDrawing({90, 1}).width(), 16);
  EXPECT_FALSE(Image().representationForDrawing({1, 1}).isValid());
  EXPECT_FALSE(Image().isValid());
}

}  // namespace
}  // namespace velmara
