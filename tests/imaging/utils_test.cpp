#include "imaging/utils.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <numeric>
#include <string>
#include <vector>

#include "base/pixel_operations.h"
#include "imaging/image_reader.h"
#include "imaging/memory_budget.h"
#include "imaging/picture_files.h"
#include "imaging/resample.h"
#include "imaging/rotate_with_exif.h"
#include "platform/temporary_files.h"
#include "support/recorded_log.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace testing_support;

class UtilsTest : public testing::Test {
 protected:
  const ScratchFolder folder;
  const Utils& utils = Utils::sharedUtils();
  const RecordedLog log;
};

Image photo(int width, int height) {
  return Image(gradient(width, height, 3));
}

TEST_F(UtilsTest, PackedBytesBecomeAnOpaqueImage) {
  const std::uint8_t bytes[] = {1, 2, 3, 250, 0, 255};
  const Image image = utils.convertBitmapRGBA8ToNSImage(bytes, 1, 2);
  EXPECT_EQ(image.size(), (Size{1, 2}));
  EXPECT_THAT(utils.NSImageToCharByteArray(image), ElementsAre(1, 2, 3, 255, 250, 0, 255, 255));
  EXPECT_FALSE(utils.convertBitmapRGBA8ToNSImage(bytes, 0, 2).isValid());
  EXPECT_FALSE(utils.convertBitmapRGBA8ToNSImage(nullptr, 1, 2).isValid());
  EXPECT_THAT(utils.NSImageToCharByteArray(Image()), IsEmpty());
}

TEST_F(UtilsTest, AlphaGoesAndTheSizeIsTheOneGiven) {
  const Image plain = utils.removeAlphaChannelFromImage(
      Image(Bitmap::copyOf(std::vector<std::uint8_t>{200, 100, 50, 128}, 1, 1, 4)), {10, 20});
  EXPECT_EQ(plain.size(), (Size{10, 20}));
  EXPECT_THAT(samplesOf(plain.bitmap()), ElementsAre(100, 50, 25));
  EXPECT_FALSE(utils.removeAlphaChannelFromImage(Image(), {1, 1}).isValid());
  EXPECT_THAT(log.lines(),
              ElementsAre("Utils removeAlphaChannelFromImage", "Utils removeAlphaChannelFromImage",
                          "Error in removeAlphaChannelFromImage"));
}

TEST_F(UtilsTest, ABorderRepeatsTheEdges) {
  const Bitmap picture = gradient(7, 5, 3);
  EXPECT_EQ(samplesOf(utils.addBorderToImage(Image(picture), 2).bitmap()),
            samplesOf(asRgba(withMirroredBorder(picture, 2))));
  EXPECT_FALSE(utils.addBorderToImage(Image(), 2).isValid());
  EXPECT_THAT(log.lines(), ElementsAre("Utils addBorderToImage", "input Image Size {7, 5}",
                                       "Utils addBorderToImage", "not valid image"));
}

TEST_F(UtilsTest, CroppingCountsFromTheBottomLeftAndIsTransparentOutside) {
  const Image image = photo(6, 4);
  const Image part = utils.cropImage(image, {1, 0, 2, 3});
  EXPECT_EQ(part.size(), (Size{2, 3}));
  EXPECT_EQ(pixelAt(part.bitmap(), 0, 2), pixelAt(asRgba(image.bitmap()), 1, 3));
  EXPECT_EQ(pixelAt(part.bitmap(), 1, 0), pixelAt(asRgba(image.bitmap()), 2, 1));
  const Image beyond = utils.cropImage(image, {-1, -1, 2, 2});
  EXPECT_EQ(pixelAt(beyond.bitmap(), 0, 0)[3], 0);
  EXPECT_EQ(pixelAt(beyond.bitmap(), 1, 0), pixelAt(asRgba(image.bitmap()), 0, 3));
  for (const Rect nothing : {Rect{0, 0, 0, 3}, Rect{0, 0, 3, 0}}) {
    EXPECT_EQ(utils.cropImage(image, nothing).bitmap().storage(), image.bitmap().storage());
  }
  EXPECT_FALSE(utils.cropImage(Image(), {0, 0, 1, 1}).isValid());
}

TEST_F(UtilsTest, ScalingGivesOnePixelAUnit) {
  const Image scaled = utils.scaleImage(photo(40, 30), {20, 15});
  EXPECT_EQ(scaled.size(), (Size{20, 15}));
  EXPECT_EQ(scaled.bitmap().width(), 20);
  EXPECT_NEAR(pixelAt(scaled.bitmap(), 10, 7)[0], 127, 6);
  EXPECT_EQ(samplesOf(utils.scaleImage(photo(5, 4), {5, 4}).bitmap()),
            samplesOf(asRgba(gradient(5, 4, 3))));
  // Below what is transparent may be any colour; none of it is seen.
  const std::vector<std::uint8_t> halves{200, 100, 50, 255, 9, 9, 9, 0};
  const Image wide = utils.scaleImage(Image(Bitmap::copyOf(halves, 2, 1, 4)), {10, 3});
  EXPECT_THAT(pixelAt(wide.bitmap(), 0, 1), ElementsAre(200, 100, 50, 255));
  EXPECT_THAT(pixelAt(wide.bitmap(), 4, 1), ElementsAre(200, 100, 50, testing::Gt(128)));
  EXPECT_THAT(pixelAt(wide.bitmap(), 9, 1), ElementsAre(0, 0, 0, 0));
  EXPECT_FALSE(utils.scaleImage(Image(), {5, 5}).isValid());
  EXPECT_FALSE(utils.scaleImage(photo(5, 5), {0, 5}).isValid());
}

TEST_F(UtilsTest, TilesOverlapToTheLeft) {
  const Image image = photo(1000, 8);
  const auto tiles = utils.splitImagesIntoSubImagesWithImage(image, 2, 4);
  ASSERT_EQ(tiles.size(), 8U);
  const Bitmap whole = asRgba(image.bitmap());
  const int starts[] = {0, 240, 490, 740};
  for (std::size_t i = 0; i < tiles.size(); ++i) {
    EXPECT_EQ(tiles[i].size(), (Size{260, 4}));
    // The second four are the row above.
    EXPECT_EQ(pixelAt(tiles[i].bitmap(), 0, 0), pixelAt(whole, starts[i % 4], i < 4 ? 4 : 0));
  }
  EXPECT_THAT(utils.splitImagesIntoSubImagesWithImage(image, 0, 4), IsEmpty());
  EXPECT_THAT(utils.splitImagesIntoSubImagesWithImage(image, 2, 0), IsEmpty());
  EXPECT_THAT(utils.splitImagesIntoSubImagesWithImage(Image(), 2, 2), IsEmpty());
}

TEST_F(UtilsTest, OneRowOfTilesGivesThePictureBack) {
  const Image image = photo(90, 12);
  for (const int columns : {1, 3}) {
    const auto tiles =
        utils.splitImagesIntoSubImagesWithImage(image, 1, static_cast<unsigned>(columns));
    const Image joined = utils.constructImageWithPatchArray(tiles, 1, columns, Image());
    EXPECT_EQ(samplesOf(joined.bitmap()), samplesOf(asRgba(image.bitmap()))) << columns;
  }
}

// A piece is cut at the height of the whole picture, so it fills the lowest part of its row only.
TEST_F(UtilsTest, SeveralRowsOfTilesComeSqueezed) {
  const Image white(Bitmap::copyOf(std::vector<std::uint8_t>(40UL * 24, 255), 40, 24, 1));
  const auto tiles = utils.splitImagesIntoSubImagesWithImage(white, 2, 2);
  const Image joined = utils.constructImageWithPatchArray(tiles, 2, 2, white);
  ASSERT_EQ(joined.size(), (Size{40, 24}));
  for (const auto& [y, alpha] :
       {std::pair(2, 0), std::pair(9, 255), std::pair(14, 0), std::pair(21, 255)}) {
    EXPECT_EQ(pixelAt(joined.bitmap(), 10, y)[3], alpha) << y;
    EXPECT_EQ(pixelAt(joined.bitmap(), 30, y)[3], alpha) << y;
  }
  EXPECT_FALSE(utils.constructImageWithPatchArray(tiles, 2, 3, white).isValid());
  EXPECT_FALSE(utils.constructImageWithPatchArray({}, 0, 0, white).isValid());
}

TEST_F(UtilsTest, CompressionKeepsTheSizeAndLosesByItsFactor) {
  const Image image = photo(64, 48);
  const auto distance = [&](float factor) {
    const Bitmap compressed = utils.compressImage(image, factor).bitmap();
    EXPECT_EQ(compressed.width(), 64);
    EXPECT_EQ(compressed.height(), 48);
    const auto difference = [](int a, int b) { return std::abs(a - b); };
    return std::transform_reduce(compressed.bytes().begin(), compressed.bytes().end(),
                                 image.bitmap().bytes().begin(), 0L, std::plus(), difference);
  };
  EXPECT_GT(distance(0.1F), 2 * distance(0.9F));
  EXPECT_EQ(distance(-1.0F), distance(0.01F));
  EXPECT_EQ(distance(2.0F), distance(1.0F));
  EXPECT_FALSE(utils.compressImage(Image(), 0.5F).isValid());
}

TEST_F(UtilsTest, EveryIndexWritesItsFormatAndNoOtherWritesAny) {
  const Bitmap picture = gradient(16, 12, 3);
  const char* const formats[] = {"JPEG 16 12 JPEG 70", "TIFF 16 12 LZW", "BMP 16 12",
                                 "GIF 16 12",          "PNG 16 12",      "JP2 16 12"};
  const std::string file = folder.file("picture");
  for (unsigned index = 0; index < std::size(formats); ++index) {
    utils.saveImageInSelectedFormat(index, file, picture);
    EXPECT_THAT(runTool({"identify", "-format", "%m %w %h %C %Q", file}).text,
                testing::StartsWith(formats[index]));
  }
  EXPECT_THAT(folder.names(), ElementsAre("picture"));
  utils.saveImageInSelectedFormat(6, folder.file("none"), picture);
  EXPECT_THAT(folder.names(), ElementsAre("picture"));
  EXPECT_THAT(log.lines(), IsEmpty());
  utils.saveImageInSelectedFormat(4, folder.file("missing/picture"), picture);
  utils.saveImageInSelectedFormat(4, file, Bitmap());
  EXPECT_THAT(log.lines(),
              ElementsAre(HasSubstr("No such file"), HasSubstr("there is no picture")));
  EXPECT_EQ(runTool({"identify", "-format", "%m", file}).text, "JP2");
}

TEST_F(UtilsTest, AFileIsConvertedByWayOfATemporaryOne) {
  const std::string file = folder.file("a photo.png");
  utils.saveImageInSelectedFormat(4, file, gradient(9, 7, 3));
  EXPECT_EQ(samplesOf(utils.getConvertedImageFromImageAtFilePath(file, 1).bitmap()),
            samplesOf(gradient(9, 7, 3)));
  EXPECT_EQ(utils.getConvertedImageFromImageAtFilePath(file, 0).size(), (Size{9, 7}));
  EXPECT_FALSE(utils.getConvertedImageFromImageAtFilePath(file, 6).isValid());
  EXPECT_FALSE(utils.getConvertedImageFromImageAtFilePath(folder.file("gone"), 4).isValid());
  EXPECT_TRUE(std::filesystem::is_empty(temporaryDirectory()));
}

TEST_F(UtilsTest, TheTemporaryDirectoryIsEmptiedAndStays) {
  std::filesystem::create_directories(temporaryDirectory() + "folder/\xff inner");
  writeFile(temporaryDirectory() + "folder/\xff inner/file", "x");
  writeFile(temporaryDirectory() + "file", "x");
  utils.deleteFileAtPath(temporaryDirectory() + "file");
  utils.deleteFileAtPath(temporaryDirectory() + "was never there");
  EXPECT_FALSE(std::filesystem::exists(temporaryDirectory() + "file"));
  utils.cleanAllFilesFromTempDirectory();
  EXPECT_TRUE(std::filesystem::is_empty(temporaryDirectory()));
  EXPECT_EQ(std::filesystem::status(temporaryDirectory()).permissions(),
            std::filesystem::perms::owner_all);
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(UtilsTest, AViewIsCapturedOrElseDrawn) {
  struct View final : CapturableView {
    Rect bounds() const override { return {5, 5, 4, 3}; }
    Bitmap captureBounds() override { return shown; }
    Bitmap renderBounds() override { return gradient(8, 6, 3); }
    Bitmap shown = gradient(4, 3, 4);
  } view;
  const Image captured = utils.screenShotOfImageView(view);
  EXPECT_EQ(captured.bitmap().storage(), view.shown.storage());
  EXPECT_EQ(captured.size(), (Size{4, 3}));
  view.shown = Bitmap();
  const Image drawn = utils.screenShotOfImageView(view);
  EXPECT_EQ(drawn.bitmap().width(), 8);
  EXPECT_EQ(drawn.size(), (Size{4, 3}));
}

TEST(ResampledBitmapTest, APartIsThatPartOfTheWhole) {
  for (const int samples : {3, 4}) {
    const Bitmap picture = gradient(40, 30, samples);
    for (const auto& [width, height] : {std::pair(40, 30), {40, 60}, {80, 30}, {21, 9}}) {
      const Bitmap whole = resampled(picture, width, height);
      const ResampledBitmap view(picture, width, height);
      EXPECT_EQ(samplesOf(view.part({0, 0, width, height})), samplesOf(whole)) << height;
      for (const PixelRect part : {PixelRect{5, 3, 9, 4}, PixelRect{-2, -2, 7, 8}}) {
        EXPECT_EQ(samplesOf(view.part(part)), samplesOf(copiedPixels(whole, part))) << height;
      }
    }
  }
}

// No more than is free, however much there is altogether.
TEST(MemoryBudgetTest, IsWhatIsAvailable) {
  std::map<std::string, std::uint64_t> bytes;
  std::ifstream file("/proc/meminfo");
  for (std::string name, number, rest; file >> name >> number && std::getline(file, rest);) {
    bytes[name] = std::stoull(number) * 1024;
  }
  const std::uint64_t available = bytes["MemAvailable:"] + bytes["SwapFree:"];
  const std::uint64_t all = std::max(bytes["MemTotal:"], available);
  EXPECT_TRUE(fitsInMemory(available / 2));
  EXPECT_FALSE(fitsInMemory(available / 4 + all / 4 * 3 + (1 << 20)));
}

// The pixels 1 2 3 over 4 5 6.
TEST(OrientationTest, EveryTagBringsThePictureUpright) {
  const Bitmap stored = Bitmap::copyOf(std::vector<std::uint8_t>{1, 2, 3, 4, 5, 6}, 3, 2, 1);
  const std::vector<std::uint8_t> upright[] = {
      {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5, 6}, {3, 2, 1, 6, 5, 4}, {6, 5, 4, 3, 2, 1},
      {4, 5, 6, 1, 2, 3}, {1, 4, 2, 5, 3, 6}, {4, 1, 5, 2, 6, 3}, {6, 3, 5, 2, 4, 1},
      {3, 6, 2, 5, 1, 4}, {1, 2, 3, 4, 5, 6}};
  for (int orientation = 0; orientation < 10; ++orientation) {
    const Bitmap turned = RotateWithEXIF(stored, orientation);
    EXPECT_EQ(turned.width(), exchangesSides(orientation) ? 2 : 3);
    EXPECT_EQ(samplesOf(turned), upright[orientation]) << orientation;
  }
  EXPECT_THAT(samplesOf(flipImageHorizontally(Image(stored)).bitmap()),
              ElementsAre(3, 3, 3, 255, 2, 2, 2, 255, 1, 1, 1, 255,  //
                          6, 6, 6, 255, 5, 5, 5, 255, 4, 4, 4, 255));
  EXPECT_EQ(pixelAt(flipImageVertically(Image(stored)).bitmap(), 0, 0)[0], 4);
  EXPECT_FALSE(flipImageVertically(Image()).isValid());
}

}  // namespace
}  // namespace velmara
