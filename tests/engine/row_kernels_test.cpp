// What is done to rows on every instruction set: the median filter, the padded source, the canvas.
#include "engine/row_kernels.h"

#include <gtest/gtest.h>
#include <vips/vips.h>

#include <algorithm>

#include "base/pixel_operations.h"
#include "engine/denoise_request.h"
#include "engine/fast/instruction_sets.h"
#include "engine/pictures.h"

namespace velmara {
namespace {

// libvips' own 3 x 3 median of the same samples. The picture is framed first, as libvips wants it
// no smaller than the window.
Bytes medianByVips(const Bitmap& bitmap) {
  VipsImage* image =
      vips_image_new_from_memory(bitmap.bytes().data(), bitmap.byteCount(), bitmap.width(),
                                 bitmap.height(), bitmap.samplesPerPixel(), VIPS_FORMAT_UCHAR);
  VipsImage* framed = nullptr;
  VipsImage* filtered = nullptr;
  VipsImage* median = nullptr;
  if (vips_embed(image, &framed, 1, 1, bitmap.width() + 2, bitmap.height() + 2, "extend",
                 VIPS_EXTEND_COPY, nullptr) != 0 ||
      vips_median(framed, &filtered, 3, nullptr) != 0 ||
      vips_crop(filtered, &median, 1, 1, bitmap.width(), bitmap.height(), nullptr) != 0) {
    ADD_FAILURE() << vips_error_buffer();
    return {};
  }
  std::size_t size = 0;
  auto* samples = static_cast<std::uint8_t*>(vips_image_write_to_memory(median, &size));
  Bytes bytes(samples, samples + size);
  g_free(samples);
  for (VipsImage* used : {median, filtered, framed, image}) g_object_unref(used);
  return bytes;
}

class MedianFilterTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_EQ(VIPS_INIT("median"), 0); }
};

TEST_F(MedianFilterTest, AgreesWithVipsOnEveryInstructionSet) {
  const int sizes[][2] = {{1, 1}, {1, 9}, {9, 1}, {2, 2}, {3, 3}, {17, 5}, {64, 33}, {131, 40}};
  for (const auto& [width, height] : sizes) {
    for (int samples = 1; samples <= 4; ++samples) {
      for (const Content content : {Content::kRandom, Content::kPhoto, Content::kCheckerboard}) {
        const Bitmap picture = makePicture(content, width, height, samples, 21);
        const Bytes expected = medianByVips(picture);
        for (const std::string& set : instructionSets()) {
          ASSERT_TRUE(useInstructionSet(set));
          EXPECT_EQ(bytesOf(medianFiltered(picture, height)), expected)
              << width << " x " << height << " x " << samples << ", " << set;
        }
        useInstructionSet("");
      }
    }
  }
}

TEST_F(MedianFilterTest, FiltersOnlyTheRowsThatAreAskedFor) {
  const Bitmap picture = makePicture(Content::kRandom, 20, 12, 3, 22);
  const Bytes all = bytesOf(medianFiltered(picture, 100));
  EXPECT_EQ(all.size(), 20U * 12U * 3U);
  const Bytes top = bytesOf(medianFiltered(picture, 5));
  EXPECT_EQ(top, Bytes(all.begin(), all.begin() + std::ptrdiff_t{20} * 5 * 3));
  EXPECT_FALSE(medianFiltered(picture, 0).isValid());
  EXPECT_FALSE(medianFiltered(Bitmap(), 5).isValid());
}

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
