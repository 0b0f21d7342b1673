// A photo is opened, or dropped by another program, its window resized, left: what is seen stands
// on the screen to the pixel.
#include <gtest/gtest.h>

#include <QUrl>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>

#include "e2e/desktop_test.h"
#include "widgets/style.h"

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

class DroppingTest : public DesktopTest {
 protected:
  /// Another program that offers a file in the corner of the screen; it is picked up there and
  /// carried over the window, where the button stays down.
  void carry(const std::string& path, bool isRefused = false) {
    output_ = path + ".log";
    const QByteArray url = QUrl::fromLocalFile(QString::fromStdString(path)).toEncoded();
    source_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{VELMARA_DRAG_SOURCE, url.toStdString()},
        std::vector<std::pair<std::string, std::string>>{{"DISPLAY", display().name()},
                                                         {"QT_QPA_PLATFORM", "xcb"}},
        output_);
    ASSERT_TRUE(waitUntil([&] { return said("ready"); }));
    display().dragTo({20, 15}, {40, 25}, 4);
    ASSERT_TRUE(waitUntil([&] { return said("dragging"); }));
    // The hand keeps moving a little until the other side has answered.
    const QPoint place = program().windowRect().center();
    int step = 0;
    ASSERT_TRUE(waitUntil([&] {
      display().moveTo(place + QPoint(++step % 5, 0));
      return said("wanted") || (isRefused && step > 12);
    }));
  }
  bool said(const std::string& word) const {
    return ("\n" + testing_support::contentsOf(output_)).find("\n" + word + "\n") !=
           std::string::npos;
  }
  bool isRingSeen() {
    const QImage window = display().screen(program().windowRect());
    int pixels = 0;
    for (int y = 0; y < window.height(); ++y) {
      for (int x = 0; x < window.width(); ++x) {
        pixels += window.pixelColor(x, y) == style::kFocusRing ? 1 : 0;
      }
    }
    return pixels > 2 * (window.width() + window.height());
  }

 private:
  std::unique_ptr<ChildProcess> source_;
  std::string output_;
};

TEST_F(DroppingTest, APhotoIsOpenedAndTheNextOneWaitsForTheAnswerAboutIt) {
  const KnownPhoto first;
  const KnownPhoto second({300, 220}, 2);
  const std::string notes = folder.file("notes.txt");
  testing_support::writeFile(notes, "no picture\n");
  carry(notes, true);
  EXPECT_FALSE(isRingSeen());
  display().release();
  ASSERT_TRUE(waitUntil([&] { return said("refused"); }));

  carry(fileOf(first, "Grüße 100%.png"));
  EXPECT_TRUE(waitUntil([&] { return isRingSeen(); })) << "the ring while a photo hovers";
  display().release();
  ASSERT_TRUE(waitUntil([&] { return said("taken"); }));
  ASSERT_TRUE(showsOpened(first));

  carry(fileOf(second, "other.bmp"));
  display().release();
  ASSERT_TRUE(program().waitForMainWindow(false));
  display().keys({"Tab", "space"});
  EXPECT_TRUE(showsOpened(second));
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
