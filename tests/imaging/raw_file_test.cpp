#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "imaging/dng_files.h"
#include "imaging/image_reader.h"
#include "imaging/image_writer.h"
#include "imaging/metadata.h"
#include "imaging/picture_set.h"
#include "imaging/rotate_with_exif.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using namespace testing_support;

// The field a pixel shows, or -1 if it is the colour of none.
int fieldAt(const Bitmap& bitmap, int x, int y) {
  for (int field = 0; field < 4; ++field) {
    bool isNear = true;
    for (int c = 0; c < 3; ++c) {
      isNear = isNear && std::abs(bitmap.pixel(x, y)[c] - kDngFields[field][c]) <= 2;
    }
    if (isNear) return field;
  }
  return -1;
}

TEST(RawFileTest, HasTheColoursOfTheSceneAndStandsUpright) {
  const ScratchFolder folder;
  const std::string file = folder.file("a.dng");
  // The fields that come to lie top left and top right (Exif 2.3, 4.6.4, Orientation).
  const int tops[8][2] = {{0, 1}, {1, 0}, {3, 2}, {2, 3}, {0, 2}, {2, 0}, {3, 1}, {1, 3}};
  for (unsigned orientation = 1; orientation <= 8; ++orientation) {
    writeFile(file, dngOf({.orientation = orientation}));
    const auto image = readImage(file);
    ASSERT_TRUE(image) << image.error();
    const auto metadata = readMetadata(file);
    ASSERT_TRUE(metadata);
    EXPECT_EQ(metadata->orientation(), static_cast<int>(orientation));
    EXPECT_THAT(*readRepresentationSizes(file), testing::ElementsAre(RepresentationSize{96, 64}));
    const Bitmap upright = RotateWithEXIF(image->bitmap(), *metadata->orientation());
    EXPECT_EQ(upright.width(), orientation < 5 ? 96 : 64);
    EXPECT_EQ(upright.height(), orientation < 5 ? 64 : 96);
    EXPECT_EQ(upright.samplesPerPixel(), 3);
    EXPECT_EQ(fieldAt(upright, 12, 12), tops[orientation - 1][0]) << orientation;
    EXPECT_EQ(fieldAt(upright, upright.width() - 13, 12), tops[orientation - 1][1]) << orientation;
  }
}

TEST(RawFileTest, ABrightnessTheMakerAsksForIsApplied) {
  const ScratchFolder folder;
  writeFile(folder.file("a.dng"), dngOf({.baselineExposure = 1.0}));
  const auto image = readImage(folder.file("a.dng"));
  ASSERT_TRUE(image) << image.error();
  // Twice the light of 120.
  EXPECT_NEAR(image->bitmap().pixel(80, 50)[1], 166, 2);
}

TEST(RawFileTest, DamageIsRefusedInWords) {
  const ScratchFolder folder;
  const std::string file = folder.file("a.nef");
  const std::string whole = dngOf({});
  testing::internal::CaptureStderr();
  for (const std::size_t size :
       {std::size_t{9}, std::size_t{100}, std::size_t{300}, whole.size() / 2, whole.size() - 1}) {
    writeFile(file, whole.substr(0, size));
    const auto image = readImage(file);
    ASSERT_FALSE(image) << size;
    EXPECT_THAT(image.error(), HasSubstr("damaged or cut short")) << size;
    EXPECT_FALSE(readRepresentationSizes(file).ok() && readImage(file).ok());
  }
  for (const unsigned side : {5000U, 23000U, 60000U}) {
    writeFile(file, dngOf({.statedWidth = side, .statedHeight = side}));
    EXPECT_FALSE(readImage(file)) << side;
  }
  for (std::size_t at = 8; at < 700; ++at) {
    std::string damaged = whole;
    damaged[at] = static_cast<char>(damaged[at] ^ 0xff);
    writeFile(file, damaged);
    const auto image = readImage(file);
    EXPECT_TRUE(!image || image->isValid());
  }
  EXPECT_THAT(testing::internal::GetCapturedStderr(), IsEmpty());
}

TEST(RawFileTest, CancellingEndsIt) {
  const ScratchFolder folder;
  writeFile(folder.file("a.dng"), dngOf({}));
  JobControl control;
  control.cancel();
  const auto image = readImage(folder.file("a.dng"), {Representations::all, &control, {}});
  ASSERT_FALSE(image);
  EXPECT_EQ(image.error(), "reading was cancelled");
}

TEST(RawFileTest, ATiffStaysOneWhateverItsName) {
  const ScratchFolder folder;
  const std::string plain = folder.file("a.tif");
  for (const Words& kind : {Words{}, Words{"-depth", "16"}, Words{"-colorspace", "Gray"},
                            Words{"-colorspace", "Gray", "-depth", "16"}}) {
    Words words{"-size", "61x47", "plasma:"};
    words.insert(words.end(), kind.begin(), kind.end());
    ASSERT_TRUE(convert(words, plain));
    ASSERT_TRUE(runTool({"exiftool", "-q", "-overwrite_original", "-Make=NIKON CORPORATION",
                         "-Model=NIKON D90", plain})
                    .ok);
    const auto expected = readImage(plain);
    ASSERT_TRUE(expected);
    for (const char* name : {"a.dng", "a.NEF", "a.arw"}) {
      writeFile(folder.file(name), contentsOf(plain));
      const auto file = openPictureFile(folder.file(name));
      ASSERT_TRUE(file) << name;
      EXPECT_EQ(file->format, FileFormat::tiff) << name;
      const auto image = readImage(*file);
      ASSERT_TRUE(image) << image.error();
      EXPECT_EQ(samplesOf(image->bitmap()), samplesOf(expected->bitmap()));
    }
  }
}

TEST(RawFileTest, AnotherFileTakesTheExifAndDoesNotPassForARaw) {
  const ScratchFolder folder;
  writeFile(folder.file("a.dng"), dngOf({.orientation = 6}));
  const auto metadata = readMetadata(folder.file("a.dng"));
  ASSERT_TRUE(metadata);
  for (const auto& [format, name] :
       {std::pair(FileFormat::jpeg, "a.jpg"), std::pair(FileFormat::tiff, "a.tiff")}) {
    const auto bytes = encodeImageWithMetadata(gradient(64, 96, 3), nullptr, format, *metadata);
    ASSERT_TRUE(bytes) << bytes.error();
    writeFile(folder.file(name), *bytes);
    const auto file = openPictureFile(folder.file(name));
    ASSERT_TRUE(file) << file.error();
    EXPECT_EQ(file->format, format);
    EXPECT_EQ(runTool({"exiftool", "-s3", "-n", "-Make", "-ISO", "-ExposureTime", "-LensModel",
                       "-DateTimeOriginal", "-Orientation", "-ColorSpace", "-ExifImageHeight",
                       "-DNGVersion", "-ColorMatrix1", folder.file(name)})
                  .text,
              "Maker\n1600\n0.02\nA lens\n2024:05:06 07:08:09\n1\n1\n96\n");
  }
}

}  // namespace
}  // namespace velmara
