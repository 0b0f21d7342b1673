#include "widgets/split_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QTest>

#include <memory>
#include <vector>

#include "platform/notification_center.h"
#include "support/manual_time.h"
#include "support/painted_images.h"
#include "widgets/style.h"

namespace velmara {
namespace {

using testing_support::ManualTime;
using testing_support::rendered;

class Picture : public QWidget {
 public:
 protected:
  void paintEvent(QPaintEvent* /*event*/) override { QPainter(this).fillRect(rect(), Qt::white); }
};

// The split line as the main screen uses it, over a picture.
class SplitViewTest : public testing::Test {
 protected:
  SplitViewTest() {
    delegate.setPriority(0, 0);
    delegate.setMinimumLength(0.0, 0);
    delegate.setPriority(1, 1);
    delegate.setMinimumLength(1.0, 1);
    center.addObserver(window, notifications::kSpliviewPositionMoved,
                       [this](const Notification& notification) {
                         EXPECT_FALSE(notification.object.has_value());
                         heard.push_back(splitView.positionOfDividerAtIndex(0));
                       });
    window.resize(400, 200);
    picture.resize(400, 200);
    splitView.setDelegate(&delegate);
    splitView.setFrame(QRect(50, 0, 300, 200));
    splitView.raise();
    window.show();
    heard.clear();
  }

  void drag(int from, int to) {
    QTest::mousePress(&splitView, Qt::LeftButton, {}, QPoint(from, 100));
    QTest::mouseMove(&splitView, QPoint((from + to) / 2, 100));
    // The offscreen platform moves no pointer, so the event says which button is held.
    QMouseEvent move(QEvent::MouseMove, QPointF(to, 100), splitView.mapToGlobal(QPointF(to, 100)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&splitView, &move);
    QTest::mouseRelease(&splitView, Qt::LeftButton, {}, QPoint(to, 100));
  }
  double position() { return splitView.positionOfDividerAtIndex(0); }

  // What shows in the split view's place: the line over the white picture.
  QImage shown(int scale = 1) {
    const QRect place = splitView.geometry();
    return rendered(window, scale).copy(QRect(place.topLeft() * scale, place.size() * scale));
  }

  NotificationCenter center;
  ManualTime time;
  QWidget window;
  Picture picture;
  CustomSplitViewDelegate delegate{center};
  CustomizedSplitView splitView{&window, time, time};
  std::vector<double> heard;

 private:
  bool placed_ = (picture.setParent(&window), true);
};

TEST_F(SplitViewTest, TheLineFollowsTheDragWithinItsLimits) {
  splitView.setPosition(150, 0);
  const struct {
    int from, to;
    double expected;
  } rows[] = {
      {152, 202, 200},                   // Held two points inside the line.
      {200, 100, 100}, {103, -500, 0},   // The left edge can be reached,
      {0, 900, 299},                     // the right one cannot.
      {299, 150, 150}, {120, 200, 150},  // Beside the line: nothing is held.
  };
  for (const auto& row : rows) {
    drag(row.from, row.to);
    EXPECT_EQ(position(), row.expected) << row.from << " to " << row.to;
  }
}

TEST_F(SplitViewTest, EveryMoveIsAnnouncedAfterItHappened) {
  splitView.setPosition(120, 0);
  EXPECT_GE(heard.size(), 1U);
  EXPECT_EQ(heard.back(), 120);
  const std::size_t before = heard.size();
  splitView.setPosition(120, 0);  // No move, but a layout: listeners are told again.
  EXPECT_GT(heard.size(), before);
  heard.clear();
  drag(121, 200);
  EXPECT_EQ(heard.back(), 199);
  heard.clear();
  splitView.setFrame(QRect(0, 0, 360, 200));
  EXPECT_EQ(heard.back(), 259);  // Priority 0: the first subview takes the 60 points.
  heard.clear();
  splitView.hide();
  splitView.show();
  EXPECT_FALSE(heard.empty());
}

TEST_F(SplitViewTest, TheMouseBesideTheLineReachesThePictureBelow) {
  splitView.setPosition(150, 0);
  EXPECT_EQ(window.childAt(QPoint(203, 100)), &splitView);
  for (const int x : {60, 198, 207, 340}) {
    QWidget* target = window.childAt(QPoint(x, 100));
    EXPECT_EQ(target, &picture) << x;
  }
  splitView.setPosition(10, 0);
  EXPECT_EQ(window.childAt(QPoint(203, 100)), &picture);
  EXPECT_EQ(splitView.cursor().shape(), Qt::SplitHCursor);
}

TEST_F(SplitViewTest, ArrowKeysMoveTheLine) {
  splitView.setPosition(150, 0);
  QTest::keyClick(&splitView, Qt::Key_Right);
  QTest::keyClick(&splitView, Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(position(), 161);
  QTest::keyClick(&splitView, Qt::Key_Left);
  QTest::keyClick(&splitView, Qt::Key_Up);
  EXPECT_EQ(position(), 151);
  splitView.setPosition(295, 0);
  QTest::keyClick(&splitView, Qt::Key_Right);
  EXPECT_EQ(position(), 299);
}

TEST_F(SplitViewTest, IndicesOfNoDividerAndReplacedDelegatesAreHarmless) {
  splitView.setPosition(150, 0);
  splitView.setPosition(10, 1);
  splitView.setPosition(10, -1);
  EXPECT_EQ(position(), 150);
  EXPECT_EQ(splitView.positionOfDividerAtIndex(1), 300);
  EXPECT_EQ(splitView.positionOfDividerAtIndex(7), 0);
  auto fresh = std::make_unique<CustomSplitViewDelegate>(center);
  splitView.setDelegate(fresh.get());
  splitView.setPosition(5000, 0);
  EXPECT_EQ(position(), 300);  // A minimum length that is not stored reads as 0.
  splitView.setDelegate(nullptr);
  fresh.reset();
  splitView.setFrame(QRect(0, 0, 106, 50));
  EXPECT_EQ(position(), 50);  // Without a delegate the subviews share the room.
}

TEST_F(SplitViewTest, LineUpAlongTheOtherAxisToo) {
  splitView.setVertical(false);
  EXPECT_EQ(position(), 97);
  splitView.setPosition(500, 0);
  EXPECT_EQ(position(), 199);
  EXPECT_EQ(splitView.cursor().shape(), Qt::SplitVCursor);
  QTest::keyClick(&splitView, Qt::Key_Up);
  EXPECT_EQ(position(), 189);
}

TEST_F(SplitViewTest, DrawsHairlinesABandAndAGripAtBothScales) {
  splitView.setPosition(100, 0);
  const QColor black(Qt::black);
  const QColor band(170, 170, 170);
  const QColor ground(Qt::white);
  for (const int scale : {1, 2}) {
    QImage image = shown(scale);
    const auto at = [&](int x, int y, int sub) {
      return image.pixelColor(x * scale + sub, y * scale + sub);
    };
    const std::vector<QColor> line{ground, ground, black, band, band, black, ground, ground};
    const std::vector<QColor> grip{ground, ground, black, black, black, black, ground, ground};
    const std::vector<QColor> cross{ground, black, black, black, black, black, black, ground};
    const struct {
      int y;
      const std::vector<QColor>& colors;
    } rows[] = {{0, line},    {50, line},  {89, line},  {90, grip},  {98, grip}, {99, cross},
                {100, cross}, {101, grip}, {109, grip}, {110, line}, {199, line}};
    for (const auto& row : rows) {
      for (int i = 0; i < 8; ++i) {
        for (int sub = 0; sub < scale; ++sub) {
          EXPECT_EQ(at(99 + i, row.y, sub), row.colors[static_cast<std::size_t>(i)])
              << "x " << 99 + i << " y " << row.y << " scale " << scale;
        }
      }
    }
  }
}

TEST_F(SplitViewTest, TheGripShowsTheKeyboardsFocus) {
  splitView.setPosition(100, 0);
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  splitView.setFocus(Qt::TabFocusReason);
  EXPECT_EQ(shown().pixelColor(102, 95), style::kAccent);
  splitView.clearFocus();
  EXPECT_EQ(shown().pixelColor(102, 95), QColor(Qt::black));
}

}  // namespace
}  // namespace velmara
