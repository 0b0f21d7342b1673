// Photos dragged in from another program's window.
#include <gtest/gtest.h>

#include <QUrl>

#include <memory>
#include <string>

#include "e2e/desktop_test.h"
#include "widgets/style.h"

namespace velmara::e2e {
namespace {

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

}  // namespace
}  // namespace velmara::e2e
