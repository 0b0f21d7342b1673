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

class AppStoreWindowTest : public testing::Test {
 protected:
  AppStoreWindowTest() {
    window.setMinimumSize(300, 200);
    window.setMaximumSize(500, 350);
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

TEST_F(AppStoreWindowTest, IsMovedByItsBackgroundButNotByAPlainClick) {
  drag({200, 30}, {1, 1});
  EXPECT_EQ(window.pos(), QPoint(100, 100));
  drag({200, 30}, {40, -20});
  EXPECT_EQ(window.pos(), QPoint(140, 80));
  drag({200, 200}, {-10, 30});  // The content's label takes no mouse.
  EXPECT_EQ(window.pos(), QPoint(130, 110));
  EXPECT_EQ(window.size(), QSize(400, 300));
}

TEST_F(AppStoreWindowTest, IsResizedAtItsEdgesWithinItsLimits) {
  const QRect start(100, 100, 400, 300);
  const struct {
    QPoint from, distance;
    QRect expected;
  } rows[] = {
      {{398, 150}, {30, 99}, {100, 100, 430, 300}},    {{1, 150}, {30, 99}, {130, 100, 370, 300}},
      {{200, 1}, {30, -20}, {100, 80, 400, 320}},      {{200, 298}, {30, 20}, {100, 100, 400, 320}},
      {{2, 298}, {-50, 10}, {50, 100, 450, 310}},      {{398, 2}, {20, 30}, {100, 130, 420, 270}},
      {{1, 150}, {999, 0}, {200, 100, 300, 300}},      {{2, 2}, {-999, -999}, {0, 50, 500, 350}},
      {{398, 298}, {-999, -999}, {100, 100, 300, 200}}};
  for (const auto& row : rows) {
    window.setGeometry(start);
    drag(row.from, row.distance);
    EXPECT_EQ(window.geometry(), row.expected) << row.from.x() << "," << row.from.y();
  }
  window.setGeometry(start);
  window.setResizable(false);
  drag({398, 150}, {60, 0});
  EXPECT_EQ(window.size(), start.size());
  window.setResizable(true);
  drag({398, 150}, {60, 0});
  EXPECT_EQ(window.width(), 460);
}

TEST_F(AppStoreWindowTest, ADoubleClickOnTheTitleBarMaximisesAndBringsBack) {
  QTest::mouseDClick(content, Qt::LeftButton);
  QTest::mouseDClick(titleBar, Qt::RightButton);
  EXPECT_FALSE(window.isMaximized());
  QTest::mouseDClick(titleBar, Qt::LeftButton);
  EXPECT_TRUE(window.isMaximized());
  QApplication::processEvents();
  EXPECT_EQ(titleBar->mapTo(&window, QPoint(0, 0)), QPoint(0, 0)) << "no border any more";
  EXPECT_EQ(window.childAt(QPoint(2, 200)), content) << "and no live edges";
  for (const bool isResizable : {true, false}) {
    window.setResizable(isResizable);
    QTest::mouseDClick(titleBar, Qt::LeftButton);
    EXPECT_FALSE(window.isMaximized());
  }
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

}  // namespace
}  // namespace velmara
