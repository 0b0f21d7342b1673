// Closing the window and opening another photo while there is unsaved work, by the keyboard.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "e2e/desktop_test.h"

namespace velmara::e2e {
namespace {

class LeavingTest : public OpenPhotoTest {
 protected:
  /// Closes by the keyboard and expects to be asked.
  bool closeAndBeAsked() {
    display().key("ctrl+w");
    return program().waitForSheet();
  }
  Scene fitted(const ExpectedPhoto& shown) {
    const QSize size = fittedSize(shown.upright().size(), program().leftHalf().size());
    return dualScene(shown, size, 1.0F, true);
  }
  std::string otherPhoto() {
    std::string path = folder.file("other.jpg");
    std::filesystem::copy_file(kHarbour, path);
    return path;
  }
  bool waitForFile(const std::string& path) {
    return waitUntil([&] { return std::filesystem::exists(path); });
  }
};

TEST_F(LeavingTest, CancellingKeepsThePhotoAndNotSavingEndsTheProgram) {
  for (const std::vector<std::string>& keys :
       {std::vector<std::string>{"Escape"}, std::vector<std::string>{"Tab", "Tab", "space"}}) {
    ASSERT_TRUE(closeAndBeAsked());
    display().keys(keys);
    ASSERT_TRUE(program().waitForMainWindow());
    ASSERT_TRUE(shows(fitted(*expected), "after cancelling"));
  }
  // The program is as alive as before.
  display().key("1");
  const QSize size = fittedSize(expected->upright().size(), program().previewArea().size());
  ASSERT_TRUE(shows(singleScene(*expected, size, 1.0F), "single after cancelling"));

  ASSERT_TRUE(closeAndBeAsked());
  display().keys({"Tab", "space"});
  EXPECT_EQ(program().process().waitForEnd(), 0);
  EXPECT_TRUE(std::filesystem::is_empty(program().temporaryFolder()));
}

TEST_F(LeavingTest, SavingIsOfferedUntilTheResultIsSaved) {
  ASSERT_TRUE(closeAndBeAsked());
  display().key("Return");
  // The panel is given up: nothing is saved, nothing is lost.
  ASSERT_TRUE(display().waitForActive("Save Image"));
  display().key("Escape");
  ASSERT_TRUE(program().waitForMainWindow());
  ASSERT_TRUE(shows(fitted(*expected), "after giving up the panel"));

  ASSERT_TRUE(closeAndBeAsked());
  display().key("Return");
  ASSERT_TRUE(program().confirmSavePanel(folder.file("saved.png")));
  ASSERT_TRUE(waitForFile(folder.file("saved.png")));
  display().key("ctrl+w");
  EXPECT_EQ(program().process().waitForEnd(), 0);
}

TEST_F(LeavingTest, AnotherPhotoWaitsForTheAnswer) {
  const std::string path = otherPhoto();
  const ExpectedPhoto other(path);
  // Cancelled, the first photo stays.
  ASSERT_TRUE(program().openByKeyboard(path));
  ASSERT_TRUE(program().waitForSheet());
  display().key("Escape");
  ASSERT_TRUE(program().waitForMainWindow());
  ASSERT_TRUE(shows(fitted(*expected), "after cancelling"));

  // Saved, the second one comes after the first is written.
  ASSERT_TRUE(program().openByKeyboard(path));
  ASSERT_TRUE(program().waitForSheet());
  display().key("Return");
  ASSERT_TRUE(program().confirmSavePanel(folder.file("saved.png")));
  ASSERT_TRUE(waitForFile(folder.file("saved.png")));
  ASSERT_TRUE(shows(fitted(other), "the second photo"));

  // Not saved, the first one comes at once.
  ASSERT_TRUE(program().openByKeyboard(photo()));
  ASSERT_TRUE(program().waitForSheet());
  display().keys({"Tab", "space"});
  EXPECT_TRUE(shows(fitted(*expected), "the first photo again"));
}

}  // namespace
}  // namespace velmara::e2e
