#include "widgets/split_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPainter>
#include <QTest>

#include <map>
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
using Extents = std::vector<double>;

SplitFrames sideBySide(const Extents& widths, double height = 50) {
  SplitFrames split;
  double x = 0;
  for (const double width : widths) {
    split.frames.emplace_back(x, 0, width, height);
    x += width + 6;
  }
  return split;
}

SplitFrames turned(const SplitFrames& split) {
  SplitFrames result{{}, false};
  for (const QRectF& frame : split.frames) {
    result.frames.emplace_back(frame.y(), frame.x(), frame.height(), frame.width());
  }
  return result;
}

TEST(SplitGeometryTest, AChangeOfSizeIsGivenByPriority) {
  using Map = std::map<int, int>;
  const std::map<int, double> lengths{{0, 20.0}, {1, 50.0}};
  const Extents three{100, 100, 60};
  const struct {
    Extents before;
    Map priorities;
    double change;
    Extents expected;
  } rows[] = {
      {three, Map{{0, 0}, {1, 1}}, 40, {140, 100, 60}},
      {three, Map{{0, 1}, {1, 0}}, 40, {100, 140, 60}},
      {three, Map{{7, 0}, {-3, 2}}, 40, {100, 100, 100}},  // The lowest number first.
      {three, Map{{0, 0}, {1, 1}}, -30, {70, 100, 60}},
      {three, Map{{0, 0}, {1, 1}}, -100, {20, 80, 60}},  // The rest is passed on.
      {three, Map{{0, 0}, {1, 1}, {2, 2}}, -160, {20, 50, 30}},
      {three, Map{{0, 0}, {1, 1}, {2, 2}}, -999, {20, 50, 0}},    // Nobody takes the rest.
      {three, Map{{0, 5}, {1, -1}, {2, 1}}, 10, {100, 110, 60}},  // Indices of no subview.
      {three, Map{}, 40, three},
      {{5, 100}, Map{{0, 0}, {1, 1}}, -10, {5, 90}},  // Below its minimum it does not grow.
  };
  for (const auto& row : rows) {
    const SplitFrames before = sideBySide(row.before);
    const QSizeF oldSize(272, 50);
    const QSizeF newSize(272 + row.change, 80);
    const auto resized = [&](const SplitFrames& split, const QSizeF& from, const QSizeF& to) {
      return resizedByPriority(split, from, to, 6, row.priorities, lengths).frames;
    };
    const SplitFrames after = sideBySide(row.expected, 80);
    EXPECT_EQ(resized(before, oldSize, newSize), after.frames) << row.change;
    EXPECT_EQ(resized(turned(before), oldSize.transposed(), newSize.transposed()),
              turned(after).frames)
        << row.change;
  }
}

// The split line as the main screen uses it, over a white picture.
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
                         heard.push_back(position());
                       });
    window.resize(400, 200);
    picture.resize(400, 200);
    picture.lower();
    splitView.setDelegate(&delegate);
    splitView.setFrame(QRect(50, 0, 300, 200));
    window.show();
    heard.clear();
  }

  void drag(int from, int to) {
    QTest::mousePress(&splitView, Qt::LeftButton, {}, QPoint(from, 100));
    // The offscreen platform moves no pointer, so the event says which button is held.
    QMouseEvent move(QEvent::MouseMove, QPointF(to, 100), splitView.mapToGlobal(QPointF(to, 100)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&splitView, &move);
    QTest::mouseRelease(&splitView, Qt::LeftButton, {}, QPoint(to, 100));
  }
  double position(int index = 0) { return splitView.positionOfDividerAtIndex(index); }

  NotificationCenter center;
  ManualTime time;
  QWidget window;
  QWidget picture{&window};
  CustomSplitViewDelegate delegate{center};
  CustomizedSplitView splitView{&window, time, time};
  std::vector<double> heard;
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
  EXPECT_EQ(window.childAt(QPoint(203, 100)), &splitView);
  for (const int x : {60, 198, 207, 340}) EXPECT_EQ(window.childAt(QPoint(x, 100)), &picture) << x;
  // On the last point it stays inside whatever becomes of the window.
  splitView.setPosition(299, 0);
  for (const int width : {330, 280, 281, 500, 140}) {
    splitView.setFrame(QRect(0, 0, width, 200));
    EXPECT_EQ(position(), width - 1);
    EXPECT_EQ(position(1), width);
  }
}

TEST_F(SplitViewTest, EveryMoveIsAnnouncedAfterItHappened) {
  splitView.setPosition(120, 0);
  EXPECT_EQ(heard.back(), 120);
  const std::size_t before = heard.size();
  splitView.setPosition(120, 0);  // No move, but a layout: listeners are told again.
  EXPECT_GT(heard.size(), before);
  drag(121, 200);
  EXPECT_EQ(heard.back(), 199);
  splitView.setFrame(QRect(0, 0, 360, 200));
  EXPECT_EQ(heard.back(), 259) << "priority 0: the first subview takes the 60 points";
  heard.clear();
  splitView.hide();
  splitView.show();
  EXPECT_FALSE(heard.empty());
}

TEST_F(SplitViewTest, ArrowKeysMoveTheLineAlongItsAxis) {
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
  EXPECT_EQ(splitView.cursor().shape(), Qt::SplitHCursor);
  splitView.setVertical(false);
  EXPECT_EQ(position(), 97);
  splitView.setPosition(500, 0);
  QTest::keyClick(&splitView, Qt::Key_Up);
  EXPECT_EQ(position(), 189);
  EXPECT_EQ(splitView.cursor().shape(), Qt::SplitVCursor);
}

TEST_F(SplitViewTest, IndicesOfNoDividerAndReplacedDelegatesAreHarmless) {
  splitView.setPosition(150, 0);
  for (const int none : {-1, 1}) splitView.setPosition(10, none);
  for (const int none : {-1, 3}) splitView.setPosition(60, none, true);
  EXPECT_FALSE(splitView.isAnimating());
  EXPECT_EQ(position(), 150);
  EXPECT_EQ(position(1), 300);
  EXPECT_EQ(position(7), 0);
  auto fresh = std::make_unique<CustomSplitViewDelegate>(center);
  splitView.setDelegate(fresh.get());
  splitView.setPosition(5000, 0);
  EXPECT_EQ(position(), 300) << "a minimum length that is not stored reads as 0";
  splitView.setDelegate(nullptr);
  fresh.reset();
  splitView.setFrame(QRect(0, 0, 106, 50));
  EXPECT_EQ(position(), 50) << "without a delegate the subviews share the room";
}

TEST_F(SplitViewTest, DrawsABandBetweenHairlinesAndAGrip) {
  splitView.setPosition(100, 0);
  picture.setStyleSheet(QStringLiteral("background: white"));
  const QImage image = rendered(window, 2);
  const auto grayAt = [&](int x, int y) { return qGray(image.pixel(2 * x, 2 * y + 1)); };
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(grayAt(149 + i, 0), i < 2 || i > 5 ? 255 : i == 3 || i == 4 ? 170 : 0) << i;
    EXPECT_EQ(grayAt(149 + i, 100), i == 0 || i == 7 ? 255 : 0) << i;
  }
  // The grip shows the keyboard's focus.
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  splitView.setFocus(Qt::TabFocusReason);
  EXPECT_EQ(rendered(window).pixelColor(152, 95), style::kAccent);
  splitView.clearFocus();
  EXPECT_EQ(rendered(window).pixelColor(152, 95), QColor(Qt::black));
}

}  // namespace
}  // namespace velmara
