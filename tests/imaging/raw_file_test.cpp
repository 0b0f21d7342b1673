#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "imaging/dng_files.h"
#include "imaging/image_reader.h"
#include "imaging/metadata.h"
#include "imaging/picture_file.h"
#include "imaging/rotate_with_exif.h"

namespace velmara {
namespace {

using namespace testing;
using namespace testing_support;

class RawFileTest : public Test {
 protected:
  const std::string& written(const std::string& bytes) const {
    writeFile(file, bytes);
    return file;
  }
  ScratchFolder folder{inMemory()};
  std::string file = folder.file("a.NEF");
};

TEST_F(RawFileTest, HasTheColoursOfTheSceneAndStandsUpright) {
  // The fields that come to lie top left and top right (Exif 2.3, 4.6.4, Orientation).
  constexpr int kTops[8][2] = {{0, 1}, {1, 0}, {3, 2}, {2, 3}, {0, 2}, {2, 0}, {3, 1}, {1, 3}};
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const auto image = readImage(written(dngOf({.orientation = orientation})));
    ASSERT_TRUE(image) << image.error();
    EXPECT_THAT(*readRepresentationSizes(file), ElementsAre(RepresentationSize{96, 64}));
    const auto metadata = readMetadata(file);
    ASSERT_TRUE(metadata && metadata->orientation() == orientation);
    const Bitmap upright = RotateWithEXIF(image->bitmap(), orientation);
    EXPECT_EQ(upright.width(), orientation < 5 ? 96 : 64);
    for (const int side : {0, 1}) {
      const auto pixel = pixelAt(upright, side == 0 ? 12 : upright.width() - 13, 12);
      const auto& expected = kDngFields[kTops[orientation - 1][side]];
      for (std::size_t c = 0; c < 3; ++c) EXPECT_NEAR(pixel[c], expected[c], 2) << orientation;
    }
  }
  // The maker asks for twice the light: of 120 that is 166.
  const auto brighter = readImage(written(dngOf({.baselineExposure = 1.0})));
  EXPECT_NEAR(brighter->bitmap().pixel(80, 50)[1], 166, 2);
}

TEST_F(RawFileTest, DamageAndCancellingAreToldInWords) {
  const std::string whole = dngOf({});
  internal::CaptureStderr();
  for (const std::size_t size :
       {std::size_t{9}, std::size_t{100}, std::size_t{300}, whole.size() / 2, whole.size() - 1}) {
    const auto image = readImage(written(whole.substr(0, size)));
    ASSERT_FALSE(image) << size;
    EXPECT_THAT(image.error(), HasSubstr("damaged or cut short")) << size;
  }
  for (const int side : {5000, 23000, 60000}) {
    EXPECT_FALSE(readImage(written(dngOf({.statedSide = side})))) << side;
  }
  for (std::size_t at = 8; at < 600; ++at) {
    std::string damaged = whole;
    damaged[at] = static_cast<char>(damaged[at] ^ 0xff);
    const auto image = readImage(written(damaged));
    EXPECT_TRUE(!image || image->isValid());
  }
  ASSERT_TRUE(convert({"-size", "96x64", "plasma:"}, folder.file("a.jpg")));
  const std::string jpeg = contentsOf(folder.file("a.jpg"));
  for (const bool isTiled : {false, true}) {
    EXPECT_TRUE(readImage(written(dngOf({.jpeg = jpeg, .isTiled = isTiled}))));
    const std::string half = jpeg.substr(0, jpeg.size() / 2) + "\xff\xd9";
    EXPECT_FALSE(readImage(written(dngOf({.jpeg = half, .isTiled = isTiled}))));
  }
  JobControl control;
  control.cancel();
  EXPECT_EQ(readImage(written(whole), {Representations::all, &control, {}}).error(),
            "reading was cancelled");
  EXPECT_EQ(internal::GetCapturedStderr(), "");
}

TEST_F(RawFileTest, ATiffStaysOneWhateverItsName) {
  const std::string plain = folder.file("a.tif");
  for (const char* depth : {"8", "16"}) {
    for (const char* colours : {"sRGB", "Gray"}) {
      ASSERT_TRUE(
          convert({"-size", "61x47", "plasma:", "-colorspace", colours, "-depth", depth}, plain));
      ASSERT_TRUE(runTool({"exiftool", "-q", "-overwrite_original", "-Make=NIKON CORPORATION",
                           "-Model=NIKON D90", plain})
                      .ok);
      const auto picture = openPictureFile(written(contentsOf(plain)));
      ASSERT_TRUE(picture);
      EXPECT_EQ(picture->format, FileFormat::tiff);
      EXPECT_EQ(samplesOf(readImage(*picture)->bitmap()), samplesOf(readImage(plain)->bitmap()));
    }
  }
}

}  // namespace
}  // namespace velmara
