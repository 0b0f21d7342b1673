#include <gtest/gtest.h>

#include <algorithm>

#include "base/alpha.h"
#include "base/mirror.h"
#include "engine/denoise_request.h"
#include "engine/fast/instruction_sets.h"
#include "engine/pictures.h"

namespace velmara {
namespace {

constexpr int kWidths[] = {1, 2, 15, 16, 17, 31, 33, 63, 64, 65, 127, 128, 131, 200};

// Opaque in its first half, so that whole vectors of opaque pixels meet others.
Bitmap halfOpaque(int width, int height) {
  Bytes bytes = bytesOf(makePicture(Content::kRandom, width, height, 4, 31));
  for (std::size_t i = 3; i < bytes.size() / 2; i += 4) bytes[i] = 255;
  return Bitmap::copyOf(bytes, width, height, 4);
}

class PixelRowsTest : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override { ASSERT_TRUE(useInstructionSet(GetParam())); }
  void TearDown() override { useInstructionSet(""); }
};

TEST_P(PixelRowsTest, PaddingDrawsOverBlackOnTheWay) {
  for (const int width : kWidths) {
    for (const int border : {0, 1, 9}) {
      const Bitmap picture = halfOpaque(width, 5);
      const Bitmap padded = paddedSource(picture, border, {});
      ASSERT_EQ(padded.samplesPerPixel(), 3);
      EXPECT_EQ(bytesOf(padded), bytesOf(addBorder(rowsOf(withoutAlpha(picture)), border, {})))
          << width << ", border " << border;
    }
  }
}

TEST_P(PixelRowsTest, PackedColoursSpreadInTheirOwnMemory) {
  for (const int width : kWidths) {
    const Bitmap picture = makePicture(Content::kRandom, width, 3, 3, 32);
    auto canvas = PackedRgbCanvas::allocate(width, 3);
    ASSERT_TRUE(canvas);
    std::ranges::copy(picture.bytes(), canvas->packed().begin());
    EXPECT_EQ(bytesOf(std::move(*canvas).finish()), bytesOf(asRgba(picture))) << width;
  }
}

INSTANTIATE_TEST_SUITE_P(Sets, PixelRowsTest, ::testing::ValuesIn(instructionSets()),
                         [](const auto& set) { return set.param; });

TEST(PaddedSourceTest, WithoutAlphaItIsTheMirroredBorder) {
  for (const int samples : {1, 2, 3}) {
    const Bitmap picture = makePicture(Content::kRandom, 20, 4, samples, 33);
    EXPECT_EQ(bytesOf(paddedSource(picture, 6, {})), bytesOf(addBorder(rowsOf(picture), 6, {})));
  }
  EXPECT_FALSE(paddedSource(Bitmap(), 3, {}).isValid());
}

}  // namespace
}  // namespace velmara
