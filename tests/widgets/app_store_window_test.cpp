#include "widgets/app_store_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include <memory>

#include "support/manual_time.h"
#include "support/painted_images.h"
#include "widgets/style.h"

namespace velmara {
namespace {

using testing_support::ManualTime;
using testing_support::rendered;

TEST(FrameGeometryTest, StripsCoverTheWholeBorderAndNothingElse) {
  const QSize size(200, 120);
  const auto strips = edgeStrips(size, 5, 12);
  for (int y = 0; y < size.height(); ++y) {
    for (int x = 0; x < size.width(); ++x) {
      int covers = 0;
      for (const auto& strip : strips) covers += strip.rect.contains(x, y) ? 1 : 0;
      const bool onBorder = x < 5 || y < 5 || x >= 195 || y >= 115;
      EXPECT_LE(covers, 1) << x << " " << y;
      if (onBorder) {
        EXPECT_EQ(covers, 1) << x << " " << y;
      }
    }
  }
}

TEST(FrameGeometryTest, ResizingKeepsTheOppositeEdgesAndTheLimits) {
  const QRect frame(100, 50, 400, 300);
  const QSize least(320, 200);
  const QSize most(500, 350);
  const struct {
    Qt::Edges edges;
    QPoint distance;
    QRect expected;
  } rows[] = {
      {Qt::RightEdge, {30, 99}, {100, 50, 430, 300}},
      {Qt::LeftEdge, {30, 99}, {130, 50, 370, 300}},
      {Qt::TopEdge, {30, -20}, {100, 30, 400, 320}},
      {Qt::BottomEdge | Qt::LeftEdge, {-50, 10}, {50, 50, 450, 310}},
      {Qt::LeftEdge, {999, 0}, {180, 50, 320, 300}},
      {Qt::TopEdge | Qt::LeftEdge, {-999, -999}, {0, 0, 500, 350}},
      {Qt::BottomEdge | Qt::RightEdge, {-999, -999}, {100, 50, 320, 200}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(resizedFrame(frame, row.edges, row.distance, least, most), row.expected);
  }
}

class AppStoreWindowTest : public testing::Test {
 protected:
  AppStoreWindowTest() {
    window.setMinimumSize(300, 200);
    window.setTitleBarHeight(70.0);
    titleBar = new QWidget;
    content = new QLabel(QStringLiteral("content"));
    window.setTitleBarView(titleBar);
    window.setContentView(content);
    window.setGeometry(100, 100, 400, 300);
    QObject::connect(&window, &AppStoreWindow::windowDidResize, [this] { ++resizes; });
    QObject::connect(&window, &AppStoreWindow::windowDidEndLiveResize, [this] { ++resizeEnds; });
    window.show();
    QApplication::processEvents();
  }

  // A drag from a point of the window by a distance, given to whatever child lies there.
  void drag(const QPoint& from, const QPoint& distance) {
    QWidget* target = window.childAt(from);
    if (target == nullptr) target = &window;
    const QPoint local = target->mapFrom(&window, from);
    const QPoint global = window.mapToGlobal(from);
    QTest::mousePress(target, Qt::LeftButton, {}, local);
    for (const QPoint& step : {distance / 2, distance}) {
      QMouseEvent move(QEvent::MouseMove, QPointF(local + step), QPointF(global + step),
                       Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(target, &move);
    }
    QTest::mouseRelease(target, Qt::LeftButton, {}, local);
  }

  ManualTime time;
  AppStoreWindow window{nullptr, time};
  QPointer<QWidget> titleBar;
  QPointer<QLabel> content;
  int resizes = 0;
  int resizeEnds = 0;
};

TEST_F(AppStoreWindowTest, LaysTheTitleBarOverTheContentInsideAThinBorder) {
  EXPECT_TRUE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
  const QPoint origin(0, 0);
  EXPECT_EQ(QRect(titleBar->mapTo(&window, origin), titleBar->size()), QRect(1, 1, 398, 70));
  EXPECT_EQ(QRect(content->mapTo(&window, origin), content->size()), QRect(1, 71, 398, 228));
  const QImage image = rendered(window);
  EXPECT_EQ(image.pixelColor(0, 150), style::kBorder);
  EXPECT_EQ(image.pixelColor(399, 299), style::kBorder);
  EXPECT_EQ(image.pixelColor(1, 150), style::kWindow);

  auto* menuBar = new QMenuBar;
  menuBar->addMenu(QStringLiteral("File"));
  window.setMenuBar(menuBar);
  QApplication::processEvents();
  EXPECT_EQ(menuBar->mapTo(&window, origin), QPoint(1, 1));
  EXPECT_EQ(titleBar->mapTo(&window, origin).y(), 1 + menuBar->height());
  EXPECT_EQ(window.titleBarHeight(), 70.0);
}

TEST_F(AppStoreWindowTest, NoControlHasTheFocusUntilTab) {
  AppStoreWindow other(nullptr, time);
  auto* bar = new QWidget;
  auto* button = new QPushButton(QStringLiteral("Close"), bar);
  other.setTitleBarView(bar);
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  EXPECT_FALSE(button->hasFocus());
  QTest::keyClick(&other, Qt::Key_Tab);
  EXPECT_TRUE(button->hasFocus());
}

TEST_F(AppStoreWindowTest, ReplacedViewsAreGivenBack) {
  const std::unique_ptr<QLabel> old(content);
  const auto next = std::make_unique<QWidget>();
  window.setContentView(next.get());
  EXPECT_EQ(old->parent(), nullptr);
  EXPECT_EQ(next->window(), &window);
  window.setContentView(nullptr);
  EXPECT_EQ(next->parent(), nullptr);
  EXPECT_EQ(window.contentView(), nullptr);
}

TEST_F(AppStoreWindowTest, IsMovedByItsBackgroundButNotByAPlainClick) {
  drag({200, 30}, {1, 1});
  EXPECT_EQ(window.pos(), QPoint(100, 100));
  drag({200, 30}, {40, -20});
  EXPECT_EQ(window.pos(), QPoint(140, 80));
  drag({200, 200}, {-10, 30});  // The content's label takes no mouse.
  EXPECT_EQ(window.pos(), QPoint(130, 110));
  EXPECT_EQ(window.size(), QSize(400, 300));
}

TEST_F(AppStoreWindowTest, IsResizedAtItsEdgesUnlessItIsNotResizable) {
  drag({398, 150}, {60, 0});
  EXPECT_EQ(window.geometry(), QRect(100, 100, 460, 300));
  drag({2, 2}, {20, 30});
  EXPECT_EQ(window.geometry(), QRect(120, 130, 440, 270));
  drag({438, 268}, {-900, -900});
  EXPECT_EQ(window.size(), QSize(300, 200));  // The minimum size.
  window.setResizable(false);
  drag({298, 100}, {60, 0});
  EXPECT_EQ(window.size(), QSize(300, 200));
  window.setResizable(true);
  drag({298, 100}, {60, 0});
  EXPECT_EQ(window.size(), QSize(360, 200));
}

TEST_F(AppStoreWindowTest, ADoubleClickOnTheTitleBarMaximisesAndBringsBack) {
  QTest::mouseDClick(content, Qt::LeftButton);
  EXPECT_FALSE(window.isMaximized());
  QTest::mouseDClick(titleBar, Qt::RightButton);
  EXPECT_FALSE(window.isMaximized());
  QTest::mouseDClick(titleBar, Qt::LeftButton);
  EXPECT_TRUE(window.isMaximized());
  QApplication::processEvents();
  EXPECT_EQ(titleBar->mapTo(&window, QPoint(0, 0)), QPoint(0, 0));  // No border any more.
  EXPECT_EQ(window.childAt(QPoint(2, 200)), content);               // And no live edges.
  QTest::mouseDClick(titleBar, Qt::LeftButton);
  EXPECT_FALSE(window.isMaximized());
  window.setResizable(false);
  QTest::mouseDClick(titleBar, Qt::LeftButton);
  EXPECT_FALSE(window.isMaximized());
  QTest::mouseRelease(titleBar, Qt::LeftButton);  // A double click ends with the button down.
}

TEST_F(AppStoreWindowTest, TellsWhenAResizeHasEnded) {
  time.advance(1.0);
  resizes = resizeEnds = 0;
  for (int i = 1; i <= 5; ++i) {
    window.resize(400 + i, 300);
    time.advance(0.1);
  }
  EXPECT_EQ(resizes, 5);
  EXPECT_EQ(resizeEnds, 0);
  time.advance(0.1);
  EXPECT_EQ(resizeEnds, 1);
  time.advance(5.0);
  EXPECT_EQ(resizeEnds, 1);

  // Whoever drags an edge may rest.
  QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, {403, 150});
  window.resize(470, 320);
  time.advance(5.0);
  EXPECT_EQ(resizeEnds, 1);
  QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, {403, 150});
  time.advance(0.2);
  EXPECT_EQ(resizeEnds, 2);
}

TEST_F(AppStoreWindowTest, AsksBeforeItCloses) {
  int closings = 0;
  bool mayClose = false;
  QObject::connect(&window, &AppStoreWindow::windowWillClose, [&] { ++closings; });
  window.windowShouldClose = [&] { return mayClose; };
  EXPECT_FALSE(window.close());
  EXPECT_TRUE(window.isVisible());
  mayClose = true;
  EXPECT_TRUE(window.close());
  EXPECT_EQ(closings, 1);
}

}  // namespace
}  // namespace velmara
