#include "base/bitmap.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "base/image.h"

namespace velmara {
namespace {

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
