// Saving by the keyboard alone, and what happens when saving goes wrong.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/mount.h>
#include <vector>

#include "e2e/desktop_test.h"
#include "support/run_program.h"

namespace velmara::e2e {
namespace {

namespace fs = std::filesystem;

using testing::IsEmpty;
using testing_support::runProgram;
using testing_support::ScratchFolder;

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

class ExportingTest : public DesktopTest {
 protected:
  /// Opens a photo and waits for its result, whatever it looks like.
  bool open(const std::string& path) {
    return program().openByKeyboard(path) &&
           program().waitForLog("Setting Up Preview Images After Denoising Completion !!");
  }
  int runs() { return program().timesLogged("Denoising Started"); }
};

TEST_F(ExportingTest, EveryFormatIsSavedCleanAndUprightByTheKeyboard) {
  const KnownPhoto photo;
  const std::string side = folder.file("on its side.tiff");
  runProgram({"convert", fileOf(photo), "-rotate", "270", "-orient", "RightTop", side});
  ASSERT_TRUE(open(side));
  const int before = runs();
  // The photo's own format comes first; the last one shows that the choice goes back to it.
  const char* const formats[][2] = {
      {"j", "jpeg"}, {"b", "bmp"}, {"g", "gif"}, {"p", "png"}, {"t", "tiff"}};
  for (const auto& [letter, format] : formats) {
    SCOPED_TRACE(format);
    // The name is typed without an extension: the format gives it one. No two begin alike, or the
    // panel would propose one for the other.
    ASSERT_TRUE(program().saveByKeyboard(folder.file(letter), letter));
    const std::string saved = folder.file(std::string(letter) + "." + format);
    ASSERT_TRUE(waitForFile(saved));
    std::string magick = runProgram({"identify", "-format", "%m", saved}).output;
    std::ranges::transform(magick, magick.begin(), ::tolower);
    EXPECT_EQ(magick, format);
    runProgram({"convert", saved, folder.file("decoded.png")});
    const QImage decoded(QString::fromStdString(folder.file("decoded.png")));
    EXPECT_TRUE(photo.isCleanIn(decoded)) << meanDifference(decoded, photo.truth);
    // To the last pixel what the command line makes.
    const std::string byCommand = folder.file(std::string("cli.") + format);
    runProgram({VELMARA_PROGRAM, "denoise", "--quiet", "-o", byCommand, side});
    EXPECT_EQ(runProgram({"compare", "-metric", "AE", saved, byCommand, "null:"}).errors, "0");
  }
  EXPECT_EQ(runs(), before + 1) << "what was filtered once is written five times";
}

TEST_F(ExportingTest, AFullDiskIsToldOfAndTheProgramGoesOn) {
  const std::string disk = folder.file("small");
  fs::create_directory(disk);
  if (::mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "mounting a small file system needs root";
  }
  const std::shared_ptr<void> mounted(nullptr, [&](void*) { ::umount2(disk.c_str(), MNT_DETACH); });
  ASSERT_TRUE(open(fileOf(KnownPhoto())));
  const int before = runs();
  ASSERT_TRUE(program().saveByKeyboard(disk + "/result.png"));
  ASSERT_TRUE(display().waitForActive("“result.png” was not saved"));
  key("Return");
  ASSERT_TRUE(program().waitForMainWindow());
  EXPECT_THAT(namesIn(disk), IsEmpty());

  // What could not be written is still unsaved, and is saved elsewhere without another run.
  key("ctrl+w");
  ASSERT_TRUE(program().waitForMainWindow(false));
  key("Return");
  ASSERT_TRUE(program().confirmSavePanel(folder.file("elsewhere.png")));
  ASSERT_TRUE(waitForFile(folder.file("elsewhere.png")));
  EXPECT_EQ(runs(), before + 1);
  key("ctrl+w");
  EXPECT_EQ(program().process().waitForEnd(), 0);
}

}  // namespace
}  // namespace velmara::e2e
