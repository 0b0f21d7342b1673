#include "session/export_job.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "imaging/image_reader.h"
#include "platform/dispatch.h"
#include "session/export_formats.h"
#include "session/whole_photo.h"
#include "support/run_program.h"
#include "support/scratch_folder.h"

namespace velmara {
namespace {

using testing::HasSubstr;
using testing_support::contentsOf;
using testing_support::runProgram;
using testing_support::ScratchFolder;

std::string outputOf(const std::vector<std::string>& words) {
  const auto result = runProgram(words);
  EXPECT_EQ(result.exitCode, 0) << result.errors;
  return result.output;
}

std::string lookOf(const std::string& path) {
  return outputOf({"identify", "-format", "%m %wx%h", path});
}

// 48 x 32, four colours in its quarters, lying on its side by its orientation.
std::string sidewaysPhoto(const ScratchFolder& folder, const std::string& name) {
  std::string path = folder.file(name);
  outputOf({"convert", "-size", "24x16", "xc:#d02010", "(", "-size", "24x16", "xc:#10c030", ")",
            "+append", "(", "-size", "48x16", "xc:#2040d0", ")", "-append", path});
  outputOf({"exiv2", "-Mset Exif.Image.Orientation Short 6", "-Mset Exif.Image.Make Ascii Kamera",
            path});
  return path;
}

ExportJob jobFor(const std::string& photoPath, FileFormat format, const std::string& target) {
  ExportJob job{PhotoFile::initWithFileUrl(photoPath), {}, format, target};
  auto whole = loadWholePhoto(job.photo);
  EXPECT_TRUE(whole.ok());
  if (whole) job.filteredImage = std::move(whole).value();
  return job;
}

std::vector<int> colourAt(const std::string& path, int x, int y) {
  const auto image = readImage(path);
  EXPECT_TRUE(image.ok());
  const std::uint8_t* p = image->bitmap().pixel(x, y);
  return {p[0], p[1], p[2]};
}

TEST(ExportJobTest, WritesEveryFormatUprightAndWhole) {
  const ScratchFolder folder;
  const std::string photo = sidewaysPhoto(folder, "side.png");
  const std::string expected = folder.file("expected.png");
  outputOf({"convert", photo, "-rotate", "90", expected});
  const struct {
    const char* format;
    const char* look;
    bool isExact;
  } rows[] = {{"jpeg", "JPEG 32x48", false},
              {"tiff", "TIFF 32x48", true},
              {"bmp", "BMP 32x48", true},
              {"gif", "GIF 32x48", true},
              {"png", "PNG 32x48", true}};
  for (const auto& row : rows) {
    const std::string target = folder.file(std::string("out.") + row.format);
    const ExportOutcome outcome = runExportJob(jobFor(photo, *writerFor(row.format), target));
    ASSERT_TRUE(outcome.status) << outcome.status.error();
    EXPECT_FALSE(outcome.hasReplacedPhoto);
    EXPECT_EQ(lookOf(target), row.look);
    if (!row.isExact) continue;
    const auto compared = runProgram({"compare", "-metric", "AE", expected, target, "null:"});
    EXPECT_EQ(compared.errors, "0") << row.format;
  }
  EXPECT_THAT(outputOf({"exiv2", "-PEkv", folder.file("out.tiff")}), HasSubstr("Kamera"));
}

TEST(ExportJobTest, ReplacesTheOpenedPhotoAndKnowsItAfterwards) {
  const ScratchFolder folder;
  const std::string photo = sidewaysPhoto(folder, "side.png");
  const std::string link = folder.file("link.png");
  std::filesystem::create_symlink(photo, link);
  const ExportJob job = jobFor(photo, FileFormat::png, link);
  EXPECT_TRUE(isPhotosOwnFile(job.photo, link));
  EXPECT_FALSE(isPhotosOwnFile(job.photo, folder.file("other.png")));

  const ExportOutcome first = runExportJob(job);
  ASSERT_TRUE(first.status) << first.status.error();
  EXPECT_TRUE(first.hasReplacedPhoto);
  EXPECT_EQ(first.photo.width, 32);
  EXPECT_EQ(first.photo.metaInfoDict->orientation(), 1);
  EXPECT_EQ(lookOf(photo), "PNG 32x48");
  EXPECT_THAT(outputOf({"exiv2", "-PEkv", photo}), HasSubstr("Kamera"));
  EXPECT_TRUE(std::filesystem::is_symlink(link));

  // The same result once more, to another file: not turned a second time.
  const ExportOutcome second =
      runExportJob({first.photo, first.filteredImage, FileFormat::png, folder.file("again.png")});
  ASSERT_TRUE(second.status) << second.status.error();
  EXPECT_EQ(contentsOf(folder.file("again.png")).size(), contentsOf(photo).size());
  for (const std::string& path : {photo, folder.file("again.png")}) {
    EXPECT_EQ(lookOf(path), "PNG 32x48");
    EXPECT_EQ(colourAt(path, 4, 4), (std::vector<int>{0x20, 0x40, 0xd0}));
    EXPECT_EQ(colourAt(path, 28, 4), (std::vector<int>{0xd0, 0x20, 0x10}));
    EXPECT_EQ(colourAt(path, 28, 44), (std::vector<int>{0x10, 0xc0, 0x30}));
  }
}

TEST(ExportJobTest, ARecordsPhotoMayVanishMeanwhile) {
  const ScratchFolder folder;
  const std::string photo = sidewaysPhoto(folder, "side.png");
  const ExportJob job = jobFor(photo, FileFormat::png, folder.file("out.png"));
  std::filesystem::remove(photo);
  const ExportOutcome outcome = runExportJob(job);
  ASSERT_TRUE(outcome.status) << outcome.status.error();
  EXPECT_EQ(lookOf(folder.file("out.png")), "PNG 32x48");
}

TEST(ExportJobTest, FailuresSayWhichFileAndWhy) {
  const ScratchFolder folder;
  const std::string photo = sidewaysPhoto(folder, "side.png");
  const ExportJob good = jobFor(photo, FileFormat::png, folder.file("out.png"));
  std::filesystem::create_directory(folder.file("folder.png"));
  const std::string before = contentsOf(photo);
  const struct {
    std::string path;
    std::optional<FileFormat> format;
    bool hasPicture;
    const char* reason;
  } rows[] = {
      {folder.file("missing/out.png"), FileFormat::png, true, "No such file or directory"},
      {folder.file(std::string(300, 'n')), FileFormat::png, true, "File name too long"},
      {folder.file("folder.png"), FileFormat::png, true, "not an ordinary file"},
      {photo + "/out.png", FileFormat::png, true, "Not a directory"},
      {folder.file("out.jpg"), std::nullopt, true, "unknown format"},
      {photo, FileFormat::png, false, "there is no picture"},
  };
  for (const auto& row : rows) {
    ExportJob job = good;
    job.pathToExportImage = row.path;
    job.format = row.format;
    if (!row.hasPicture) job.filteredImage = {};
    const ExportOutcome outcome = runExportJob(job);
    ASSERT_FALSE(outcome.status) << row.path;
    EXPECT_THAT(outcome.status.error(), HasSubstr(row.reason));
    EXPECT_THAT(outcome.status.error(), HasSubstr(row.path));
    EXPECT_FALSE(outcome.hasReplacedPhoto);
    const Alert alert = exportFailedAlert(row.path, outcome.status.error());
    EXPECT_THAT(alert.messageText, HasSubstr(std::filesystem::path(row.path).filename().string()));
    EXPECT_THAT(alert.informativeText, HasSubstr(row.reason));
  }
  EXPECT_EQ(contentsOf(photo), before);
  EXPECT_THAT(folder.names(), testing::UnorderedElementsAre("side.png", "folder.png"));
}

TEST(ExportJobTest, WorksOffTheMainThreadAndAnswersOnIt) {
  const ScratchFolder folder;
  const std::string photo = sidewaysPhoto(folder, "side.png");
  int answers = 0;
  QEventLoop loop;
  const auto answered = [&](const ExportOutcome& outcome) {
    EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
    EXPECT_EQ(outcome.status.ok(), answers == 0);
    if (++answers == 2) loop.quit();
  };
  ExportJob job = jobFor(photo, FileFormat::tiff, folder.file("out.tiff"));
  runExportJobInBackground(job, globalQueue(), mainQueue(), [&](const ExportOutcome& outcome) {
    answered(outcome);
    job.pathToExportImage = folder.file("missing/out.tiff");
    runExportJobInBackground(job, globalQueue(), mainQueue(), answered);
  });
  EXPECT_EQ(answers, 0);
  loop.exec();
  EXPECT_EQ(answers, 2);
  EXPECT_EQ(lookOf(folder.file("out.tiff")), "TIFF 32x48");
}

}  // namespace
}  // namespace velmara
