#include "session/photo_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/log.h"
#include "session/labels.h"
#include "session/loaded_photo.h"
#include "support/run_program.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing::MatchesRegex;
using testing_support::runProgram;
using testing_support::ScratchFolder;
using testing_support::writeFile;

void convert(std::vector<std::string> words) {
  words.insert(words.begin(), "convert");
  const auto result = runProgram(words);
  ASSERT_EQ(result.exitCode, 0) << result.errors;
}

TEST(PhotoFileTest, RecordsAFileOnDisk) {
  const ScratchFolder folder;
  const std::string path = folder.file("Summer 1.JPG");
  convert({"-size", "30x20", "xc:red", path});
  const PhotoFile photo = PhotoFile::initWithFileUrl(path);
  EXPECT_EQ(photo.filePath, path);
  EXPECT_EQ(photo.fileURL, path);
  EXPECT_EQ(photo.fileName, "Summer 1.JPG");
  EXPECT_EQ(photo.fileExtension, "JPG");
  EXPECT_EQ(photo.fileContainerFolderName, folder.path().filename());
  EXPECT_EQ(photo.width, 30);
  EXPECT_EQ(photo.height, 20);
  EXPECT_EQ(photo.fileSize, std::to_string(std::filesystem::file_size(path)));
  ASSERT_TRUE(photo.fileCreationDate);
  EXPECT_THAT(*photo.fileCreationDate,
              MatchesRegex("[^ ]+-[0-9]{2}-[0-9]{4} [0-9]{2}:[0-9]{2}:[0-9]{1,2} [^0-9]+"));
  EXPECT_TRUE(photo.metaInfoDict.has_value());
  EXPECT_FALSE(photo.thumbnailImg.isValid());
}

TEST(PhotoFileTest, TheLastPictureInAFileCounts) {
  const ScratchFolder folder;
  const std::string path = folder.file("pages.tiff");
  convert({"-size", "40x30", "xc:red", "-size", "64x48", "xc:green", "-size", "16x12", "xc:blue",
           path});
  const PhotoFile photo = PhotoFile::initWithFileUrl(path);
  EXPECT_EQ(photo.width, 16);
  EXPECT_EQ(photo.height, 12);
  // What is exported is the largest all the same.
  const auto loaded = loadPixels(openPhoto(path).value());
  ASSERT_TRUE(loaded) << loaded.error();
  EXPECT_EQ(loaded->fullSize, (Size{64, 48}));
  const Bitmap whole = wholePhotoToFilter(*loaded).bitmap();
  EXPECT_EQ(whole.width(), 64);
  EXPECT_EQ(whole.samplesPerPixel(), 4);
  EXPECT_EQ(whole.pixel(10, 10)[1], 128);
}

TEST(PhotoFileTest, MakesARecordOfAnything) {
  const ScratchFolder folder;
  writeFile(folder.file("notes.jpg"), "no picture");
  std::vector<std::string> lines;
  const LogSink before = setLogSink([&](const std::string& line) { lines.push_back(line); });
  const PhotoFile text = PhotoFile::initWithFileUrl(folder.file("notes.jpg"));
  EXPECT_THAT(lines, testing::Not(testing::Contains("Not found")));
  const PhotoFile missing = PhotoFile::initWithFileUrl(folder.file("missing"));
  setLogSink(before);
  EXPECT_THAT(lines, testing::Contains("Not found"));
  EXPECT_EQ(text.width, 0);
  EXPECT_EQ(text.fileSize, "10");
  EXPECT_FALSE(text.metaInfoDict);
  EXPECT_EQ(missing.fileSize, "0");
  EXPECT_EQ(missing.fileExtension, "");
  EXPECT_FALSE(missing.fileCreationDate);
  EXPECT_FALSE(openPhoto(text.filePath));
  EXPECT_FALSE(openPhoto(missing.filePath));
}

TEST(PhotoLabelsTest, SizesAreDecimal) {
  struct Case {
    const char* bytes;
    const char* label;
  };
  const Case cases[] = {{"0", "Size: 0 KB"},          {"500", "Size: 500 KB"},
                        {"999", "Size: 999 KB"},      {"1000", "Size: 1 KB"},
                        {"999499", "Size: 999 KB"},   {"999999", "Size: 1000 KB"},
                        {"1000000", "Size: 1.00 MB"}, {"5368709120", "Size: 5368.71 MB"}};
  for (const Case& c : cases) EXPECT_EQ(sizeLabel(c.bytes), c.label);
  PhotoFile photo;
  photo.width = 6000;
  photo.height = 4000;
  EXPECT_EQ(dimensionsLabel(photo), "6000 x 4000 px");
  EXPECT_EQ(pathLabel("/a/b c.jpg"), "Path : /a/b c.jpg");
}

// A picture whose four quarters differ, stored in each of the eight ways a camera can, must come
// out the same way up every time.
TEST(WholePhotoTest, EveryOrientationComesOutUpright) {
  const ScratchFolder folder;
  const std::string upright = folder.file("upright.png");
  convert({"-size",   "20x16", "xc:red",    "(",     "-size",   "20x16",   "xc:lime", ")",
           "+append", "(",     "(",         "-size", "20x16",   "xc:blue", ")",       "(",
           "-size",   "20x16", "xc:yellow", ")",     "+append", ")",       "-append", upright});
  const std::vector<std::vector<std::string>> stored = {{},
                                                        {"-flop"},
                                                        {"-rotate", "180"},
                                                        {"-flip"},
                                                        {"-transpose"},
                                                        {"-rotate", "270"},
                                                        {"-transverse"},
                                                        {"-rotate", "90"}};
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const std::string path = folder.file("stored" + std::to_string(orientation) + ".tiff");
    std::vector<std::string> words{upright};
    const auto& turn = stored[static_cast<std::size_t>(orientation - 1)];
    words.insert(words.end(), turn.begin(), turn.end());
    words.push_back(path);
    convert(words);
    runProgram(
        {"exiv2", "-Mset Exif.Image.Orientation Short " + std::to_string(orientation), path});
    const auto photo = loadPixels(openPhoto(path).value());
    ASSERT_TRUE(photo) << photo.error();
    const auto turned = uprightAtFullSize(*photo, wholePhotoToFilter(*photo));
    ASSERT_TRUE(turned) << turned.error();
    const Bitmap& picture = turned->bitmap();
    ASSERT_EQ(picture.width(), 40) << orientation;
    ASSERT_EQ(picture.height(), 32) << orientation;
    const auto colour = [&](int x, int y) {
      const std::uint8_t* p = picture.pixel(x, y);
      return std::vector<int>{p[0], p[1], p[2]};
    };
    EXPECT_EQ(colour(2, 2), (std::vector<int>{255, 0, 0})) << orientation;
    EXPECT_EQ(colour(37, 2), (std::vector<int>{0, 255, 0})) << orientation;
    EXPECT_EQ(colour(2, 29), (std::vector<int>{0, 0, 255})) << orientation;
    EXPECT_EQ(colour(37, 29), (std::vector<int>{255, 255, 0})) << orientation;
  }
}

}  // namespace
}  // namespace velmara
