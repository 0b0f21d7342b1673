#include "imaging/image_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>
#include <vector>

#include "imaging/picture_files.h"
#include "imaging/pictures.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing_support::convert;
using testing_support::pixelAt;
using testing_support::ScratchFolder;

// A picture made by ImageMagick: what it is told to write, and what has to come out. The picture is
// a column of (200, 100, 50) left and one of (20, 40, 60) right, 24 x 16 pixels in all, or the gray
// 120 and 30.
struct Kind {
  std::string name;
  std::string file;
  std::vector<std::string> arguments;
  std::vector<int> left;
  std::vector<int> right;
  int tolerance = 0;
};

void PrintTo(const Kind& kind, std::ostream* out) {
  *out << kind.name;
}

const std::vector<std::string> kColours = {"-size", "12x16", "xc:rgb(200,100,50)",
                                           "xc:rgb(20,40,60)", "+append"};
const std::vector<std::string> kGrays = {"-size",   "12x16",       "xc:gray(120)", "xc:gray(30)",
                                         "+append", "-colorspace", "Gray"};
const std::vector<std::string> kHalf = {"-size", "12x16", "xc:rgba(200,100,50,0.50196)",
                                        "xc:rgba(20,40,60,1)", "+append"};

std::vector<std::string> with(std::vector<std::string> words,
                              const std::vector<std::string>& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

class EveryKindTest : public testing::TestWithParam<Kind> {};

TEST_P(EveryKindTest, IsDecodedToItsColours) {
  const Kind& kind = GetParam();
  const ScratchFolder folder;
  const std::string file = folder.file(kind.file.substr(kind.file.find(':') + 1));
  if (!convert(kind.arguments, kind.file.substr(0, kind.file.find(':') + 1) + file)) {
    GTEST_SKIP() << "ImageMagick cannot write this kind here";
  }
  const auto image = readImage(file);
  ASSERT_TRUE(image) << image.error();
  const Bitmap& bitmap = image->bitmap();
  ASSERT_EQ(bitmap.width(), 24);
  ASSERT_EQ(bitmap.height(), 16);
  EXPECT_EQ(image->size(), (Size{24, 16}));
  for (const auto& [x, expected] : {std::pair(3, kind.left), std::pair(20, kind.right)}) {
    const auto pixel = pixelAt(bitmap, x, 8);
    ASSERT_EQ(pixel.size(), expected.size());
    for (std::size_t c = 0; c < pixel.size(); ++c) {
      EXPECT_NEAR(pixel[c], expected[c], kind.tolerance) << "sample " << c << " at " << x;
    }
  }
  EXPECT_THAT(readRepresentationSizes(file).value(), ElementsAre(RepresentationSize{24, 16}));
}

INSTANTIATE_TEST_SUITE_P(
    Colours, EveryKindTest,
    testing::Values(
        Kind{"jpeg", "a.jpg", with(kColours, {"-quality", "98"}), {200, 100, 50}, {20, 40, 60}, 4},
        Kind{"progressive jpeg",
             "a.jpg",
             with(kColours, {"-interlace", "JPEG", "-quality", "98"}),
             {200, 100, 50},
             {20, 40, 60},
             4},
        Kind{"png", "PNG24:a.png", kColours, {200, 100, 50}, {20, 40, 60}},
        Kind{"interlaced png",
             "PNG24:a.png",
             with(kColours, {"-interlace", "PNG"}),
             {200, 100, 50},
             {20, 40, 60}},
        Kind{"palette png", "PNG8:a.png", kColours, {200, 100, 50}, {20, 40, 60}},
        Kind{"16-bit png", "PNG48:a.png", kColours, {200, 100, 50}, {20, 40, 60}},
        Kind{"tiff", "a.tif", with(kColours, {"-depth", "8"}), {200, 100, 50}, {20, 40, 60}},
        Kind{"lzw tiff",
             "a.tif",
             with(kColours, {"-compress", "LZW"}),
             {200, 100, 50},
             {20, 40, 60}},
        Kind{"jpeg tiff",
             "a.tif",
             with(kColours, {"-compress", "JPEG", "-quality", "98"}),
             {200, 100, 50},
             {20, 40, 60},
             4},
        Kind{"planar tiff",
             "a.tif",
             with(kColours, {"-interlace", "plane"}),
             {200, 100, 50},
             {20, 40, 60}},
        Kind{"tiled tiff",
             "a.tif",
             with(kColours, {"-define", "tiff:tile-geometry=16x16"}),
             {200, 100, 50},
             {20, 40, 60}},
        Kind{"big-endian 16-bit tiff",
             "a.tif",
             with(kColours, {"-endian", "MSB", "-depth", "16"}),
             {200, 100, 50},
             {20, 40, 60}},
        Kind{"palette tiff",
             "a.tif",
             with(kColours, {"-type", "Palette"}),
             {200, 100, 50},
             {20, 40, 60}},
        Kind{"big tiff", "TIFF64:a.tif", kColours, {200, 100, 50}, {20, 40, 60}},
        Kind{"bmp",
             "BMP3:a.bmp",
             with(kColours, {"-type", "TrueColor"}),
             {200, 100, 50},
             {20, 40, 60}},
        Kind{"palette bmp",
             "BMP3:a.bmp",
             with(kColours, {"-type", "Palette"}),
             {200, 100, 50},
             {20, 40, 60}},
        Kind{"run-length bmp",
             "BMP3:a.bmp",
             with(kColours, {"-type", "Palette", "-compress", "RLE"}),
             {200, 100, 50},
             {20, 40, 60}},
        Kind{"gif", "a.gif", kColours, {200, 100, 50}, {20, 40, 60}},
        Kind{"webp",
             "a.webp",
             with(kColours, {"-define", "webp:lossless=true"}),
             {200, 100, 50},
             {20, 40, 60}},
        Kind{"jpeg 2000",
             "a.jp2",
             with(kColours, {"-quality", "0"}),
             {200, 100, 50},
             {20, 40, 60},
             2},
        Kind{"jpeg 2000 codestream",
             "a.j2k",
             with(kColours, {"-quality", "0"}),
             {200, 100, 50},
             {20, 40, 60},
             2},
        Kind{"heic", "a.heic", with(kColours, {"-quality", "95"}), {200, 100, 50}, {20, 40, 60}, 6},
        Kind{"avif", "a.avif", with(kColours, {"-quality", "95"}), {200, 100, 50}, {20, 40, 60}, 6},
        Kind{"ppm", "a.ppm", kColours, {200, 100, 50}, {20, 40, 60}},
        Kind{"plain ppm",
             "a.ppm",
             with(kColours, {"-compress", "none"}),
             {200, 100, 50},
             {20, 40, 60}}));

INSTANTIATE_TEST_SUITE_P(
    Grays, EveryKindTest,
    testing::Values(
        Kind{"gray jpeg", "a.jpg", with(kGrays, {"-quality", "98"}), {120}, {30}, 3},
        Kind{"gray png", "a.png", kGrays, {120}, {30}},
        Kind{
            "16-bit gray png", "a.png", with(kGrays, {"-define", "png:bit-depth=16"}), {120}, {30}},
        Kind{"gray tiff", "a.tif", kGrays, {120}, {30}},
        Kind{"16-bit gray tiff", "a.tif", with(kGrays, {"-depth", "16"}), {120}, {30}},
        Kind{"gray pgm", "a.pgm", kGrays, {120}, {30}},
        Kind{"one-bit png",
             "a.png",
             with(kGrays, {"-threshold", "30%", "-define", "png:bit-depth=1"}),
             {255},
             {0}},
        Kind{"fax tiff",
             "a.tif",
             with(kGrays, {"-threshold", "30%", "-type", "Bilevel", "-compress", "Group4"}),
             {255},
             {0}},
        Kind{"pbm", "a.pbm", with(kGrays, {"-threshold", "30%"}), {255}, {0}}));

INSTANTIATE_TEST_SUITE_P(
    Alpha, EveryKindTest,
    testing::Values(
        Kind{"png", "PNG32:a.png", kHalf, {200, 100, 50, 128}, {20, 40, 60, 255}},
        Kind{"16-bit png", "PNG64:a.png", kHalf, {200, 100, 50, 128}, {20, 40, 60, 255}},
        Kind{"gray png", "a.png", with(kHalf, {"-colorspace", "Gray"}), {117, 128}, {37, 255}, 3},
        Kind{"tiff", "a.tif", kHalf, {200, 100, 50, 128}, {20, 40, 60, 255}},
        Kind{"associated-alpha tiff",
             "a.tif",
             with(kHalf, {"-define", "tiff:alpha=associated"}),
             {200, 100, 50, 128},
             {20, 40, 60, 255},
             1},
        Kind{"bmp", "a.bmp", kHalf, {200, 100, 50, 128}, {20, 40, 60, 255}},
        Kind{"webp",
             "a.webp",
             with(kHalf, {"-define", "webp:lossless=true"}),
             {200, 100, 50, 128},
             {20, 40, 60, 255}}));

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
