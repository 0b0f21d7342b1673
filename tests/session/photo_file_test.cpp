#include "session/photo_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "session/labels.h"
#include "session/loaded_photo.h"
#include "support/recorded_log.h"
#include "support/run_program.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using namespace std::string_literals;

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
  const testing_support::RecordedLog log;
  const PhotoFile text = PhotoFile::initWithFileUrl(folder.file("notes.jpg"));
  EXPECT_EQ(log.find("Not found"), -1);
  const PhotoFile missing = PhotoFile::initWithFileUrl(folder.file("missing"));
  EXPECT_GE(log.find("Not found"), 0);
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
  const char* const rows[][2] = {{"0", "0 KB"},
                                 {"999", "999 KB"},
                                 {"1000", "1 KB"},
                                 {"999499", "999 KB"},
                                 {"999999", "1000 KB"},
                                 {"1000000", "1.00 MB"},
                                 {"5368709120", "5368.71 MB"}};
  for (const auto& [bytes, label] : rows) EXPECT_EQ(sizeLabel(bytes), "Size: "s + label);
  EXPECT_EQ(pathLabel("/a/b c.jpg"), "Path : /a/b c.jpg");
}

}  // namespace
}  // namespace velmara
