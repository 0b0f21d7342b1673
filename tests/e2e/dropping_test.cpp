// Photos dragged in from another program's window.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QColor>
#include <QUrl>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "e2e/desktop_test.h"
#include "widgets/style.h"

namespace velmara::e2e {
namespace {

namespace fs = std::filesystem;

using testing_support::contentsOf;
using testing_support::writeFile;

std::string fileUrl(const std::string& path) {
  return QUrl::fromLocalFile(QString::fromStdString(path)).toEncoded().toStdString();
}

class DroppingTest : public DesktopTest {
 protected:
  /// Another program that offers these URLs in the corner of the screen.
  void offer(const std::vector<std::string>& urls) {
    output_ = folder.file("source-" + std::to_string(++sources_) + ".log");
    std::vector<std::string> words{VELMARA_DRAG_SOURCE};
    words.insert(words.end(), urls.begin(), urls.end());
    source_ = std::make_unique<ChildProcess>(
        words, Environment{{"DISPLAY", display().name()}, {"QT_QPA_PLATFORM", "xcb"}}, output_);
    ASSERT_TRUE(waitUntil([&] { return said("ready"); }));
  }
  bool said(const std::string& word) const {
    return (std::string("\n") + contentsOf(output_)).find("\n" + word + "\n") != std::string::npos;
  }
  /// Picks it up and carries it over the window; the button stays down.
  void carryTo(const QPoint& place) {
    display().dragTo({20, 15}, {40, 25}, 4);
    ASSERT_TRUE(waitUntil([&] { return said("dragging"); }));
    constexpr int kSteps = 6;
    const QPoint start(40, 25);
    for (int step = 1; step <= kSteps; ++step) {
      display().moveTo(start + (place - start) * step / kSteps);
    }
  }
  /// Keeps the hand moving a little until the condition holds.
  template <typename Condition>
  bool hoverUntil(const QPoint& place, Condition condition) {
    int step = 0;
    return waitUntil([&] {
      display().moveTo(place + QPoint(++step % 5, 0));
      return condition();
    });
  }
  bool isRingSeen() {
    const QRect place = program().rectOf("vwMainContainer");
    const QColor edge(program().seen({place.topLeft() + QPoint(3, 3), QSize(1, 1)}).pixel(0, 0));
    return edge == style::kFocusRing;
  }
  /// Drags what is offered over the window and lets go of it there; true if it was not taken.
  bool isRefused(const std::vector<std::string>& urls) {
    offer(urls);
    const QPoint place = program().previewArea().center();
    carryTo(place);
    // The window has seen the drag by the time a later question of the server is answered.
    hoverUntil(place, [&, looks = 0]() mutable { return ++looks > 10; });
    EXPECT_FALSE(said("wanted"));
    EXPECT_FALSE(isRingSeen());
    display().release();
    return waitUntil([&] { return said("refused") || said("taken"); }) && !said("taken");
  }

 private:
  std::unique_ptr<ChildProcess> source_;
  std::string output_;
  int sources_ = 0;
};

TEST_F(DroppingTest, APhotoDroppedOnTheEmptyWindowIsOpened) {
  const std::string path = folder.file("Grüße 100%.png");
  fs::rename(photo(), path);
  const ExpectedPhoto expected(path);
  offer({fileUrl(path)});
  const QPoint place = program().previewArea().center();
  carryTo(place);
  ASSERT_TRUE(hoverUntil(place, [&] { return said("wanted"); }));
  EXPECT_TRUE(waitUntil([&] { return isRingSeen(); })) << "the ring while a photo hovers";
  display().release();
  ASSERT_TRUE(waitUntil([&] { return said("taken"); }));
  const QSize size = fittedSize(expected.upright().size(), program().leftHalf().size());
  ASSERT_TRUE(shows(dualScene(expected, size, 1.0F, true), "the dropped photo"));

  // The next one has to wait for the answer about the first.
  const std::string other = folder.file("other.jpg");
  fs::copy_file(kHarbour, other);
  const ExpectedPhoto next(other);
  offer({fileUrl(other)});
  carryTo(place);
  ASSERT_TRUE(hoverUntil(place, [&] { return said("wanted"); }));
  display().release();
  ASSERT_TRUE(program().waitForSheet());
  display().keys({"Tab", "space"});
  const QSize nextSize = fittedSize(next.upright().size(), program().leftHalf().size());
  EXPECT_TRUE(shows(dualScene(next, nextSize, 1.0F, true), "the next photo"));
}

TEST_F(DroppingTest, WhatIsNoPhotoIsRefusedAndHarmsNothing) {
  const std::string path = photo();
  fs::create_directory(folder.file("folder.png"));
  writeFile(folder.file("notes.txt"), "no picture\n");
  EXPECT_TRUE(isRefused({fileUrl(folder.file("folder.png"))})) << "a folder";
  EXPECT_TRUE(isRefused({"http://photos.invalid/photo.png"})) << "a remote photo";
  EXPECT_TRUE(isRefused({fileUrl(path), fileUrl(folder.file("notes.txt"))})) << "a mixed lot";
  EXPECT_TRUE(isRefused({fileUrl(folder.file("gone.png"))})) << "a file that is not there";
  EXPECT_EQ(program().timesLogged("updateSelectedImageToBeFilteredWithPath:"), 0);
  EXPECT_TRUE(program().waitForMainWindow());
  const ExpectedPhoto expected(path);
  openInDual(path, expected);
}

}  // namespace
}  // namespace velmara::e2e
