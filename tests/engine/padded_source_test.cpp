#include <gtest/gtest.h>

#include <algorithm>

#include "base/pixel_operations.h"
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

// A padded source made in three pieces.
Bytes padded(const Bitmap& picture, int border) {
  const auto source = PaddedSource::make(picture, border, {}, {});
  if (source == nullptr) return {};
  for (const int third : {1, 2, 3}) {
    EXPECT_TRUE(source->fillTo(source->rowCount() * third / 3));
  }
  return {source->bytes().begin(), source->bytes().end()};
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
      EXPECT_EQ(padded(picture, border), bytesOf(withMirroredBorder(withoutAlpha(picture), border)))
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
    EXPECT_EQ(padded(picture, 6), bytesOf(withMirroredBorder(picture, 6)));
  }
  EXPECT_EQ(PaddedSource::make(Bitmap(), 3, {}, {}), nullptr);
}

}  // namespace
}  // namespace velmara
