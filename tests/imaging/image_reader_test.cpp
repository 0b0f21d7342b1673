#include "imaging/image_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "base/pixel_operations.h"
#include "imaging/metadata.h"
#include "imaging/picture_files.h"
#include "imaging/picture_set.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace testing_support;

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
  EXPECT_THAT(contentsOf(file), testing::HasSubstr(kind.mark));
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

std::vector<PictureKind> damagedKinds() {
  std::vector<PictureKind> kinds = pictureSet();
  std::erase_if(kinds, [](const PictureKind& kind) { return kind.tail < 0; });
  return kinds;
}

class DamagedFormatTest : public testing::TestWithParam<PictureKind> {};

// At every cut the answer is an error in words, and nothing is said on standard error.
TEST_P(DamagedFormatTest, ACutFileIsAnErrorInWords) {
  const ScratchFolder folder;
  const std::string whole = contentsOf(pictureIn(folder, GetParam()));
  ASSERT_FALSE(whole.empty()) << "ImageMagick cannot write this kind here";
  const auto tail = static_cast<std::size_t>(GetParam().tail);
  std::vector<std::size_t> cuts{1, 2, 3, 4, 7, 8, 11, 16, 21, 25, 30, 40, 54, 60, 100, 200};
  for (std::size_t part = 1; part < 16; ++part) cuts.push_back(whole.size() * part / 16);
  cuts.push_back(whole.size() - tail - 1);

  const std::string file = folder.file("cut");
  testing::internal::CaptureStderr();
  for (const std::size_t cut : cuts) {
    if (cut + tail >= whole.size()) continue;
    writeFile(file, whole.substr(0, cut));
    const auto image = readImage(file);
    EXPECT_FALSE(image) << "cut at " << cut << " of " << whole.size();
    EXPECT_TRUE(image || !image.error().empty());
    (void)readRepresentationSizes(file);
    (void)readMetadata(file);
  }
  EXPECT_THAT(testing::internal::GetCapturedStderr(), IsEmpty());
}

// Whatever a wrong byte makes of a file, it is a whole picture or an error.
TEST_P(DamagedFormatTest, WrongBytesNeverCrash) {
  const ScratchFolder folder;
  const std::string whole = contentsOf(pictureIn(folder, GetParam()));
  ASSERT_FALSE(whole.empty()) << "ImageMagick cannot write this kind here";
  std::mt19937 random(20'240'917);
  const std::string file = folder.file("wrong");
  testing::internal::CaptureStderr();
  for (int round = 0; round < 60; ++round) {
    std::string wrong = whole;
    // Half of the rounds stay in the first bytes, where the headers are.
    const auto reach = std::min<std::size_t>(whole.size(), round % 2 == 0 ? 120 : whole.size());
    for (auto changes = 1 + random() % 4; changes > 0; --changes) {
      wrong[random() % reach] = static_cast<char>(random());
    }
    writeFile(file, wrong);
    const auto image = readImage(file);
    if (image) {
      const Bitmap& bitmap = image->bitmap();
      EXPECT_TRUE(isAllowedBitmapSize(bitmap.width(), bitmap.height(), bitmap.samplesPerPixel()));
      EXPECT_EQ(bitmap.bytes().size(), bitmap.byteCount());
    }
    (void)readMetadata(file);
  }
  const std::string said = testing::internal::GetCapturedStderr();
  // The library that decodes AV1 has lines of its own, which nothing turns off.
  EXPECT_TRUE(said.empty() || GetParam().name == "avif") << said;
}

INSTANTIATE_TEST_SUITE_P(Formats, DamagedFormatTest, testing::ValuesIn(damagedKinds()));

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
  // An animation is its first frame.
  ASSERT_TRUE(convert({"-delay", "10", "-size", "12x8", "xc:red", "xc:blue"}, file + ".gif"));
  const auto animation = readImage(file + ".gif");
  ASSERT_EQ(animation->representations().size(), 1U);
  EXPECT_THAT(pixelAt(animation->bitmap(), 5, 5), ElementsAre(255, 0, 0));
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

}  // namespace
}  // namespace velmara
