#include <gtest/gtest.h>
#include <vips/vips.h>

#include "engine/fast/instruction_sets.h"
#include "engine/pictures.h"
#include "engine/row_kernels.h"

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

}  // namespace
}  // namespace velmara
