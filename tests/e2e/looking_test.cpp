// A photo is opened, its window resized, left: what is seen stands on the screen to the pixel.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "e2e/desktop_test.h"

namespace velmara::e2e {
namespace {

class LookingTest : public DesktopTest {};

TEST_F(LookingTest, APhotoOpenedByTheKeyboardIsShownNoisyAndCleanInAWindowOfAnySize) {
  const KnownPhoto photo;
  ASSERT_TRUE(program().openByKeyboard(fileOf(photo)));
  ASSERT_TRUE(showsOpened(photo));

  const QRect before = program().windowRect();
  const QPoint corner = before.bottomRight() - QPoint(2, 2);
  display().dragTo(corner, corner + QPoint(12, 12), 3);
  // The hand goes on until the desktop has taken the drag over, which counts from there.
  int way = 12;
  ASSERT_TRUE(waitUntil([&] {
    display().moveTo(corner + QPoint(way, way));
    way = std::min(way + 2, 60);
    const QSize size = program().windowRect().size();
    return size.width() > before.width() + 10 && size.height() > before.height() + 10;
  }));
  display().release();
  EXPECT_EQ(program().windowRect().topLeft(), before.topLeft());
  EXPECT_TRUE(shows(photo)) << "after the resize";
}

// The same screen with two device pixels a point.
class DenseScreenTest : public DesktopTest {
 protected:
  void SetUp() override { setUp({2600, 1560}, 2); }
};

TEST_F(DenseScreenTest, PhotoPixelsAreDevicePixelsAtActualSize) {
  const KnownPhoto photo({901, 603});
  ASSERT_TRUE(program().openByKeyboard(fileOf(photo)));
  EXPECT_TRUE(showsOpened(photo));
}

TEST_F(LookingTest, LeavingIsAskedForUntilTheResultIsSaved) {
  const KnownPhoto photo;
  ASSERT_TRUE(program().openByKeyboard(fileOf(photo)));
  ASSERT_TRUE(showsOpened(photo));
  // The question is given up, and then the panel: nothing is saved, nothing is lost.
  key("ctrl+w");
  ASSERT_TRUE(program().waitForMainWindow(false));
  display().keys({"Tab", "Tab", "space"});
  ASSERT_TRUE(program().waitForMainWindow());
  key("ctrl+q");
  ASSERT_TRUE(program().waitForMainWindow(false));
  key("Return");
  ASSERT_TRUE(display().waitForActive("Save Image"));
  key("Escape");
  ASSERT_TRUE(program().waitForMainWindow());
  ASSERT_TRUE(shows(photo));

  ASSERT_TRUE(program().saveByKeyboard(folder.file("saved.png")));
  ASSERT_TRUE(waitForFile(folder.file("saved.png")));
  key("ctrl+w");
  EXPECT_EQ(program().process().waitForEnd(), 0);
  EXPECT_TRUE(std::filesystem::is_empty(program().temporaryFolder()));
}

TEST_F(LookingTest, ASecondStartBringsItsPhotoToTheFirstWindow) {
  const KnownPhoto photo;
  const std::vector<std::string> second{VELMARA_PROGRAM, fileOf(photo)};
  display().ask({"xdotool", "getactivewindow", "windowminimize"});
  ASSERT_TRUE(program().waitForMainWindow(false));
  EXPECT_EQ(program().startWith(second)->waitForEnd(), 0);
  ASSERT_TRUE(program().waitForMainWindow());
  ASSERT_TRUE(showsOpened(photo));
  // The result is not saved: the window asks first. Meanwhile it takes no other photo.
  EXPECT_EQ(program().startWith(second)->waitForEnd(), 0);
  ASSERT_TRUE(program().waitForMainWindow(false));
  const std::string question = display().activeWindow();
  const auto beside = program().startWith(second);
  ASSERT_TRUE(waitUntil([&] { return display().activeWindow() != question; }));
  EXPECT_TRUE(beside->isRunning());
}

// The walk of random actions once more, with real windows.
TEST(WalkTest, TheWindowStaysUsableOnARealDisplay) {
  if (!canMakeDisplay()) GTEST_SKIP() << "Xvfb, openbox, xdotool or xprop is not installed";
  const VirtualDisplay display({1360, 800});
  ASSERT_TRUE(display.isReady());
  const testing_support::ScratchFolder folder;
  ChildProcess walk({VELMARA_APP_TEST, "--gtest_filter=*RandomWalk*/0"},
                    {{"DISPLAY", display.name()}, {"QT_QPA_PLATFORM", "xcb"}},
                    folder.file("output"));
  EXPECT_EQ(walk.waitForEnd(5 * kDeadline), 0)
      << testing_support::contentsOf(folder.file("output"));
}

}  // namespace
}  // namespace velmara::e2e
