#include "imaging/image_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/pixel_operations.h"
#include "imaging/picture_files.h"
#include "imaging/picture_set.h"
#include "imaging/pictures.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::contentsOf;
using testing_support::convert;
using testing_support::pictureIn;
using testing_support::PictureKind;
using testing_support::pictureSet;
using testing_support::pixelAt;
using testing_support::pixelsByImageMagick;
using testing_support::samplesOf;
using testing_support::ScratchFolder;

class PictureSetTest : public testing::TestWithParam<PictureKind> {};

// What is below a hole is the format's affair.
void clearHoles(std::vector<std::uint8_t>& rgba) {
  for (std::size_t i = 0; i < rgba.size(); i += 4) {
    if (rgba[i + 3] == 0) std::fill_n(&rgba[i], 3, std::uint8_t{0});
  }
}

TEST_P(PictureSetTest, AnotherDecoderSeesTheSamePixels) {
  const PictureKind& kind = GetParam();
  const ScratchFolder folder;
  const std::string file = pictureIn(folder, kind);
  ASSERT_FALSE(file.empty()) << "ImageMagick cannot write this kind here";
  EXPECT_THAT(contentsOf(file), HasSubstr(kind.mark));
  const auto image = readImage(file);
  ASSERT_TRUE(image) << image.error();
  EXPECT_EQ(image->bitmap().samplesPerPixel(), kind.samples);
  EXPECT_EQ(image->size(), (Size{61, 47}));
  EXPECT_THAT(readRepresentationSizes(file).value(), ElementsAre(RepresentationSize{61, 47}));
  std::vector<std::uint8_t> seen = samplesOf(asRgba(image->bitmap()));
  std::vector<std::uint8_t> expected = pixelsByImageMagick(file);
  ASSERT_EQ(seen.size(), expected.size());
  clearHoles(seen);
  clearHoles(expected);
  int worst = 0;
  std::size_t place = 0;
  for (std::size_t i = 0; i < seen.size(); ++i) {
    const int difference = std::abs(seen[i] - expected[i]);
    if (difference > worst) place = i;
    worst = std::max(worst, difference);
  }
  EXPECT_LE(worst, kind.tolerance)
      << int{seen[place]} << " for " << int{expected[place]} << " at " << place / 4 % 61 << ", "
      << place / 4 / 61 << ", sample " << place % 4;
}

INSTANTIATE_TEST_SUITE_P(Kinds, PictureSetTest, testing::ValuesIn(pictureSet()));

TEST(ImageReaderTest, AllPagesOfATiffAreRepresentations) {
  const ScratchFolder folder;
  const std::string file = folder.file("pages.tif");
  ASSERT_TRUE(convert(
      {"-size", "40x30", "xc:red", "-size", "20x10", "xc:blue", "-size", "8x9", "xc:lime"}, file));
  const auto image = readImage(file);
  ASSERT_TRUE(image) << image.error();
  ASSERT_EQ(image->representations().size(), 3U);
  EXPECT_EQ(image->size(), (Size{40, 30}));
  EXPECT_THAT(pixelAt(image->representations()[0], 0, 0), ElementsAre(255, 0, 0));
  EXPECT_THAT(pixelAt(image->representations()[2], 7, 8), ElementsAre(0, 255, 0));
  EXPECT_THAT(readRepresentationSizes(file).value(),
              ElementsAre(RepresentationSize{40, 30}, RepresentationSize{20, 10},
                          RepresentationSize{8, 9}));

  ReadOptions first;
  first.representations = Representations::first;
  EXPECT_EQ(readImage(file, first)->representations().size(), 1U);
}

TEST(ImageReaderTest, AnAnimationIsItsFirstFrame) {
  const ScratchFolder folder;
  const std::string file = folder.file("moving.gif");
  ASSERT_TRUE(convert({"-delay", "10", "-size", "12x8", "xc:red", "xc:blue"}, file));
  const auto image = readImage(file);
  ASSERT_TRUE(image) << image.error();
  EXPECT_EQ(image->representations().size(), 1U);
  EXPECT_THAT(pixelAt(image->bitmap(), 5, 5), ElementsAre(255, 0, 0));
}

TEST(ImageReaderTest, TheContentsDecideAndNotTheName) {
  const ScratchFolder folder;
  for (const std::string name :
       {"photo.bmp", "photo[page=3].tif", "two words.jpg", "quote'\".gif", "line\nend.png",
        "caf\xe9.png", "-", "http:photo.jpg", "GIF:photo"}) {
    ASSERT_TRUE(convert({"-size", "5x4", "xc:red"}, "PNG24:" + folder.file("plain")));
    std::filesystem::rename(folder.path() / "plain", folder.path() / name);
    const auto image = readImage(folder.file(name));
    ASSERT_TRUE(image) << name << ": " << image.error();
    EXPECT_THAT(pixelAt(image->bitmap(), 2, 2), ElementsAre(255, 0, 0)) << name;
  }
}

TEST(ImageReaderTest, PixelsAreNotTurned) {
  const ScratchFolder folder;
  const std::string file = folder.file("turned.jpg");
  ASSERT_TRUE(convert({"-size", "40x30", "xc:red", "-orient", "RightTop"}, file));
  ASSERT_TRUE(testing_support::runTool(
                  {"exiftool", "-q", "-overwrite_original", "-n", "-Orientation=6", file})
                  .ok);
  EXPECT_EQ(readImage(file)->size(), (Size{40, 30}));
}

}  // namespace
}  // namespace velmara
