#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QVBoxLayout>

#include <functional>
#include <string>
#include <vector>

#include "support/painted_images.h"
#include "widgets/img_button.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::PaintedImages;

// Counts what reaches the view below the buttons.
class Ground : public QWidget {
 public:
  int presses = 0;

 protected:
  void mousePressEvent(QMouseEvent* /*event*/) override { ++presses; }
};

class IMGButtonClickTest : public testing::Test {
 protected:
  IMGButtonClickTest() {
    button.setGeometry(10, 10, 40, 30);
    QObject::connect(&button, &ActionButton::actionSent, [this](ActionButton* sender) {
      EXPECT_EQ(sender, &button);
      statesInAction.push_back(button.state());
    });
    ground.resize(100, 100);
    ground.show();
    ground.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&ground));
  }

  void press(const QPoint& at) { QTest::mousePress(&button, Qt::LeftButton, {}, at); }
  void release(const QPoint& at) { QTest::mouseRelease(&button, Qt::LeftButton, {}, at); }

  PaintedImages images;
  Ground ground;
  IMGButton button{&ground, images};
  std::vector<int> statesInAction;
  const QPoint inside{20, 15};
};

TEST_F(IMGButtonClickTest, TheActionComesBeforeTheStateFlips) {
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(button.state(), 1);
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(button.state(), 0);
  button.setState(-1);  // Anything but 0 becomes 0.
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(button.state(), 0);
  EXPECT_THAT(statesInAction, ElementsAre(0, 1, -1));
  EXPECT_TRUE(button.isEnabled());
  QTest::mouseClick(&button, Qt::LeftButton);  // A double click is two clicks.
  QTest::mouseDClick(&button, Qt::LeftButton);
  QTest::mouseRelease(&button, Qt::LeftButton);
  EXPECT_EQ(statesInAction.size(), 5U);
}

TEST_F(IMGButtonClickTest, OnlyAReleaseInsideOrOnTheBorderIsAClick) {
  const struct {
    QPoint at;
    bool clicks;
  } rows[] = {{{0, 0}, true},   {{40, 30}, true}, {{40, 0}, true},  {{-1, 5}, false},
              {{5, -1}, false}, {{41, 5}, false}, {{5, 31}, false}, {{20, 15}, true}};
  for (const auto& row : rows) {
    statesInAction.clear();
    button.setState(0);
    press(inside);
    EXPECT_TRUE(button.isMouseDown());
    EXPECT_FALSE(button.isEnabled());
    release(row.at);
    EXPECT_EQ(statesInAction.size(), row.clicks ? 1U : 0U) << row.at.x() << "," << row.at.y();
    EXPECT_EQ(button.state(), row.clicks ? 1 : 0);
    EXPECT_TRUE(button.isEnabled());
    EXPECT_FALSE(button.isMouseDown());
  }
}

TEST_F(IMGButtonClickTest, StaysDisabledAfterAClickUntilItsOwnerEnablesIt) {
  button.enableImmediately = false;
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_FALSE(button.isEnabled());
  EXPECT_EQ(button.state(), 1);
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(statesInAction.size(), 1U);
  button.setEnabled(true);
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(statesInAction.size(), 2U);
  button.setEnabled(true);
  press(inside);
  release({-5, -5});
  EXPECT_TRUE(button.isEnabled());  // A release outside enables it in any case.
}

TEST_F(IMGButtonClickTest, InertAndDisabledButtonsSwallowTheClick) {
  button.setActionMask(kSendsOnNothing);
  QTest::mouseClick(&button, Qt::LeftButton);
  QTest::keyClick(&button, Qt::Key_Space);
  QTest::keyClick(&button, Qt::Key_Return);
  EXPECT_TRUE(button.isEnabled());
  EXPECT_EQ(button.state(), 0);
  button.setActionMask(kSendsOnLeftMouseDown);
  button.setEnabled(false);
  QTest::mouseClick(&button, Qt::LeftButton);
  QTest::mouseClick(&button, Qt::RightButton);
  EXPECT_THAT(statesInAction, IsEmpty());
  EXPECT_EQ(ground.presses, 0);
  button.setEnabled(true);
  QTest::mouseClick(&button, Qt::RightButton);
  EXPECT_THAT(statesInAction, IsEmpty());
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(statesInAction.size(), 1U);
}

TEST_F(IMGButtonClickTest, WhatItsOwnerDoesDuringAPressHolds) {
  press(inside);
  button.setActionMask(kSendsOnNothing);  // A run began meanwhile.
  release(inside);
  EXPECT_THAT(statesInAction, IsEmpty());
  EXPECT_TRUE(button.isEnabled());
  button.setActionMask(kSendsOnLeftMouseDown);

  press(inside);
  button.setEnabled(true);  // Now it draws its pressed images.
  EXPECT_TRUE(button.isMouseDown());
  release(inside);
  EXPECT_THAT(statesInAction, ElementsAre(0));

  press(inside);
  button.setEnabled(false);  // The release arrives all the same, and enables it.
  release({-5, -5});
  EXPECT_TRUE(button.isEnabled());
  EXPECT_TRUE(button.QWidget::isEnabled());

  press(inside);
  button.setButtonsImages({}, {}, {}, {}, {}, {}, {}, {}, {});  // Forgets the press.
  release(inside);
  EXPECT_EQ(statesInAction.size(), 1U);
}

TEST_F(IMGButtonClickTest, ItsOwnersChangeOfStateInTheActionIsFlippedToo) {
  QObject::connect(&button, &ActionButton::actionSent, [&] { button.setState(1); });
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(button.state(), 0);
}

TEST_F(IMGButtonClickTest, TheActionMayDeleteTheButton) {
  const QPointer<IMGButton> doomed = new IMGButton(&ground, images);
  doomed->setGeometry(60, 10, 30, 30);
  doomed->show();
  QObject::connect(doomed, &ActionButton::actionSent, doomed, [&] { delete doomed; });
  QTest::keyClick(doomed, Qt::Key_Return);
  EXPECT_TRUE(doomed.isNull());
}

TEST_F(IMGButtonClickTest, KeysAndAssistiveToolsFollowTheSameRules) {
  button.setFocus(Qt::TabFocusReason);
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    QTest::keyClick(&button, key);
  }
  EXPECT_THAT(statesInAction, ElementsAre(0, 1, 0));

  QTest::keyPress(&button, Qt::Key_Space);
  EXPECT_TRUE(button.isMouseDown());
  QTest::keyClick(&button, Qt::Key_Escape);
  QTest::keyRelease(&button, Qt::Key_Space);
  EXPECT_EQ(statesInAction.size(), 3U);
  QTest::keyPress(&button, Qt::Key_Space);
  button.clearFocus();
  QTest::keyRelease(&button, Qt::Key_Space);
  EXPECT_EQ(statesInAction.size(), 3U);
  EXPECT_TRUE(button.isEnabled());

  button.setToolTip(QStringLiteral("Open Image\nCtrl+O"));
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&button);
  ASSERT_NE(accessible, nullptr);
  EXPECT_EQ(accessible->role(), QAccessible::PushButton);
  EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Open Image"));
  EXPECT_EQ(accessible->text(QAccessible::Description), QStringLiteral("Ctrl+O"));
  button.click();  // What assistive tools call in the end.
  EXPECT_EQ(statesInAction.size(), 4U);
}

TEST_F(IMGButtonClickTest, ComesAndGoesWithTabButNotWithTheMouse) {
  IMGButton next(&ground, images);
  next.setGeometry(60, 10, 30, 30);
  next.show();
  QTest::mouseClick(&next, Qt::LeftButton);
  EXPECT_FALSE(next.hasFocus());
  button.setFocus(Qt::TabFocusReason);
  QTest::keyPress(&button, Qt::Key_Return);
  EXPECT_TRUE(button.hasFocus());  // Being disabled for the press does not cost the focus.
  QTest::keyClick(&button, Qt::Key_Tab);
  EXPECT_TRUE(next.hasFocus());
  next.setEnabled(false);
  EXPECT_FALSE(next.hasFocus());
}

TEST_F(IMGButtonClickTest, HoverFollowsThePointer) {
  EXPECT_EQ(button.cursor().shape(), Qt::PointingHandCursor);
  QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
  QApplication::sendEvent(&button, &enter);
  EXPECT_TRUE(button.isMouseHover);
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&button, &leave);
  EXPECT_FALSE(button.isMouseHover);
}

}  // namespace
}  // namespace velmara
