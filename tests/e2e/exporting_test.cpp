// Saving by the keyboard alone, and what happens when saving goes wrong.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <sys/mount.h>
#include <sys/stat.h>
#include <system_error>
#include <utility>
#include <vector>

#include "e2e/desktop_test.h"
#include "support/run_program.h"

namespace velmara::e2e {
namespace {

namespace fs = std::filesystem;

using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testing_support::contentsOf;
using testing_support::runProgram;
using testing_support::ScratchFolder;
using testing_support::writeFile;

QImage readByImageMagick(const std::string& path) {
  const ScratchFolder scratch;
  runProgram({"convert", path, scratch.file("decoded.png")});
  return QImage(QString::fromStdString(scratch.file("decoded.png")))
      .convertToFormat(QImage::Format_RGB32);
}

QImage readByToolkit(const std::string& path) {
  return QImage(QString::fromStdString(path)).convertToFormat(QImage::Format_RGB32);
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

/// A file system of a few pages on a folder.
class SmallDisk {
 public:
  explicit SmallDisk(std::string folder) : folder_(std::move(folder)) {
    fs::create_directory(folder_);
    isMounted_ = ::mount("tmpfs", folder_.c_str(), "tmpfs", 0, "size=64k") == 0;
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() {
    if (isMounted_) ::umount2(folder_.c_str(), MNT_DETACH);
  }
  bool isMounted() const { return isMounted_; }
  const std::string& folder() const { return folder_; }

 private:
  std::string folder_;
  bool isMounted_ = false;
};

class ExportingTest : public DesktopTest {
 protected:
  /// Opens a photo and waits for its result, whatever it looks like.
  bool open(const std::string& path) {
    return program().openByKeyboard(path) &&
           program().waitForLog("Setting Up Preview Images After Denoising Completion !!");
  }
  static bool waitForFile(const std::string& path) {
    return waitUntil([&] { return fs::exists(path); });
  }
  /// A photo whose file takes its time to be written.
  std::string largePhoto() {
    std::string path = folder.file("large.ppm");
    runProgram({"convert", "-size", "5400x4200", "tile:" + photo(), path});
    return path;
  }
};

TEST_F(ExportingTest, EveryFormatIsSavedByTheKeyboardWithThePixelsOfTheCommandLine) {
  const std::string path = folder.file("on its side.jpg");
  runProgram({"convert", kHarbour, "-crop", "600x450+300+300", "+repage", "-quality", "92", path});
  ASSERT_TRUE(open(path));
  runProgram({VELMARA_PROGRAM, "denoise", "--quiet", "-o", folder.file("lossless.png"), path});
  const QImage lossless = readByImageMagick(folder.file("lossless.png"));
  ASSERT_EQ(lossless.size(), QSize(450, 600));

  struct Format {
    const char* key;
    const char* extension;
    const char* magick;
    /// A sample's mean distance from the lossless result.
    double distance;
  };
  // The photo's own format comes first; the last one shows that the choice goes back to it.
  const Format formats[] = {{"t", "tiff", "TIFF", 0.0},
                            {"b", "bmp", "BMP", 0.0},
                            {"g", "gif", "GIF", 8.0},
                            {"p", "png", "PNG", 0.0},
                            {"j", "jpg", "JPEG", 2.5}};
  const int runs = program().timesLogged("Denoising Started");
  for (const Format& format : formats) {
    SCOPED_TRACE(format.extension);
    // The name is typed without an extension: the format gives it one.
    ASSERT_TRUE(program().saveByKeyboard(folder.file("result"), format.key));
    const std::string saved = folder.file(std::string("result.") + format.extension);
    ASSERT_TRUE(waitForFile(saved));
    EXPECT_THAT(runProgram({"identify", "-format", "%m", saved}).output,
                testing::StartsWith(format.magick));
    const QImage byMagick = readByImageMagick(saved);
    EXPECT_LE(meanDifference(byMagick, lossless), format.distance);
    const std::string byCommandLine = folder.file(std::string("cli.") + format.extension);
    runProgram({VELMARA_PROGRAM, "denoise", "--quiet", "-o", byCommandLine, path});
    EXPECT_EQ(meanDifference(byMagick, readByImageMagick(byCommandLine)), 0.0);
    if (std::string(format.extension) == "tiff") {
      runProgram({"convert", folder.file("lossless.png"), folder.file("magick.tiff")});
      const auto compared = runProgram({"tiffcmp", "-t", saved, folder.file("magick.tiff")});
      EXPECT_EQ(compared.exitCode, 0) << compared.output << compared.errors;
    } else {
      EXPECT_LE(meanDifference(readByToolkit(saved), byMagick), format.distance > 0.0 ? 0.5 : 0.0);
    }
  }
  // What was filtered once is written five times.
  EXPECT_EQ(program().timesLogged("Denoising Started"), runs + 1);
}

TEST_F(ExportingTest, AKillWhileWritingLeavesTheOldFileAndNoLitter) {
  ASSERT_TRUE(open(largePhoto()));
  const ScratchFolder target;
  const std::string old = target.file("result.bmp");
  writeFile(old, "an older picture");

  // The file is being written while the program has something open in its folder that has bytes
  // but no name there yet.
  const auto isWriting = [&] {
    std::error_code gone;
    const fs::path descriptors = "/proc/" + std::to_string(program().process().pid()) + "/fd";
    for (const auto& entry : fs::directory_iterator(descriptors, gone)) {
      const std::string name = fs::read_symlink(entry.path(), gone).string();
      if (!name.starts_with(target.path().string() + "/")) continue;
      struct stat status {};
      if (::stat(entry.path().c_str(), &status) == 0 && status.st_size > 0) return true;
    }
    return false;
  };
  display().key("ctrl+s");
  ASSERT_TRUE(program().confirmSavePanel(old, {}, SavePanelAnswer::kReplaces));
  const bool wasWriting = waitUntil(isWriting, kDeadline, std::chrono::milliseconds(1));
  program().process().kill(SIGKILL);
  ASSERT_TRUE(wasWriting);

  EXPECT_EQ(contentsOf(old), "an older picture");
  EXPECT_THAT(namesIn(program().temporaryFolder()), testing::Not(IsEmpty()));
  program().startAgain();
  ASSERT_TRUE(program().hasWindow());
  EXPECT_THAT(target.names(), UnorderedElementsAre("result.bmp"));
  for (const std::string& name : namesIn(program().temporaryFolder())) {
    EXPECT_THAT(name, testing::HasSubstr("-" + std::to_string(program().process().pid()) + "-"));
  }
}

TEST_F(ExportingTest, AFullDiskIsToldOfAndTheProgramGoesOn) {
  const SmallDisk disk(folder.file("small"));
  if (!disk.isMounted()) GTEST_SKIP() << "mounting a small file system needs root";
  ASSERT_TRUE(open(photo()));
  const int runs = program().timesLogged("Denoising Started");
  ASSERT_TRUE(program().saveByKeyboard(disk.folder() + "/result.png"));
  ASSERT_TRUE(display().waitForActive("was not saved"));
  EXPECT_THAT(display().activeTitle(), testing::HasSubstr("result.png"));
  display().key("Return");
  ASSERT_TRUE(program().waitForMainWindow());
  EXPECT_THAT(namesIn(disk.folder()), IsEmpty());

  // What could not be written is still unsaved, and is saved elsewhere without another run.
  display().key("ctrl+w");
  ASSERT_TRUE(program().waitForSheet());
  display().key("Return");
  ASSERT_TRUE(program().confirmSavePanel(folder.file("elsewhere.png")));
  ASSERT_TRUE(waitForFile(folder.file("elsewhere.png")));
  EXPECT_EQ(program().timesLogged("Denoising Started"), runs + 1);
  display().key("ctrl+w");
  EXPECT_EQ(program().process().waitForEnd(), 0);
}

}  // namespace
}  // namespace velmara::e2e
