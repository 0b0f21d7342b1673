// What the mouse, the keyboard and assistive tools do to both kinds of buttons.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QPointer>
#include <QTest>

#include <vector>

#include "support/painted_images.h"
#include "widgets/icon_button.h"
#include "widgets/img_button.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::PaintedImages;
using testing_support::rendered;

// Counts what reaches the view below the buttons.
class Ground : public QWidget {
 public:
  int presses = 0;

 protected:
  void mousePressEvent(QMouseEvent* /*event*/) override { ++presses; }
};

void hover(QWidget& button, bool isOver) {
  QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&button, isOver ? static_cast<QEvent*>(&enter) : &leave);
}

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

  void click() { QTest::mouseClick(&button, Qt::LeftButton); }
  void press() { QTest::mousePress(&button, Qt::LeftButton, {}, {20, 15}); }
  void release(const QPoint& at = {20, 15}) {
    QTest::mouseRelease(&button, Qt::LeftButton, {}, at);
  }

  PaintedImages images;
  Ground ground;
  IMGButton button{&ground, images};
  std::vector<int> statesInAction;
};

TEST_F(IMGButtonClickTest, TheActionComesBeforeTheStateFlips) {
  click();
  EXPECT_EQ(button.state(), 1);
  click();
  EXPECT_EQ(button.state(), 0);
  button.setState(-1);  // Anything but 0 becomes 0.
  click();
  EXPECT_EQ(button.state(), 0);
  EXPECT_THAT(statesInAction, ElementsAre(0, 1, -1));
  click();
  QTest::mouseDClick(&button, Qt::LeftButton);
  release();
  EXPECT_EQ(statesInAction.size(), 5U) << "a double click is two clicks";
  // What the owner sets in the action is flipped too.
  QObject::connect(&button, &ActionButton::actionSent, [&] { button.setState(1); });
  click();
  EXPECT_EQ(button.state(), 0);
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
    press();
    EXPECT_TRUE(button.isMouseDown());
    EXPECT_FALSE(button.isEnabled());
    release(row.at);
    EXPECT_EQ(statesInAction.size(), row.clicks ? 1U : 0U) << row.at.x() << "," << row.at.y();
    EXPECT_EQ(button.state(), row.clicks ? 1 : 0);
    EXPECT_TRUE(button.isEnabled() && !button.isMouseDown());
  }
}

TEST_F(IMGButtonClickTest, InertAndDisabledButtonsSwallowTheClick) {
  button.setActionMask(kSendsOnNothing);
  click();
  QTest::keyClick(&button, Qt::Key_Space);
  QTest::keyClick(&button, Qt::Key_Return);
  EXPECT_TRUE(button.isEnabled());
  EXPECT_EQ(button.state(), 0);
  button.setActionMask(kSendsOnLeftMouseDown);
  button.setEnabled(false);
  click();
  QTest::mouseClick(&button, Qt::RightButton);
  button.setEnabled(true);
  QTest::mouseClick(&button, Qt::RightButton);
  EXPECT_THAT(statesInAction, IsEmpty());
  EXPECT_EQ(ground.presses, 0);
}

TEST_F(IMGButtonClickTest, WhatItsOwnerDoesDuringAPressHolds) {
  press();
  button.setActionMask(kSendsOnNothing);  // A run began meanwhile.
  release();
  EXPECT_THAT(statesInAction, IsEmpty());
  EXPECT_TRUE(button.isEnabled());
  button.setActionMask(kSendsOnLeftMouseDown);

  press();
  button.setEnabled(true);  // Now it draws its pressed images.
  EXPECT_TRUE(button.isMouseDown());
  release();
  EXPECT_THAT(statesInAction, ElementsAre(0));

  press();
  button.setEnabled(false);  // The release arrives all the same, and enables it.
  release({-5, -5});
  EXPECT_TRUE(button.isEnabled() && button.QWidget::isEnabled());

  press();
  button.setButtonsImages({}, {}, {}, {}, {}, {}, {}, {}, {});  // Forgets the press.
  release();
  EXPECT_EQ(statesInAction.size(), 1U);

  const QPointer<IMGButton> doomed = new IMGButton(&ground, images);
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

TEST_F(IMGButtonClickTest, FocusComesAndGoesWithTabButNotWithTheMouse) {
  IMGButton next(&ground, images);
  next.setGeometry(60, 10, 30, 30);
  next.show();
  QTest::mouseClick(&next, Qt::LeftButton);
  EXPECT_FALSE(next.hasFocus());
  button.setFocus(Qt::TabFocusReason);
  QTest::keyPress(&button, Qt::Key_Return);
  EXPECT_TRUE(button.hasFocus()) << "being disabled for the press does not cost the focus";
  QTest::keyClick(&button, Qt::Key_Tab);
  EXPECT_TRUE(next.hasFocus());
  next.setEnabled(false);
  EXPECT_FALSE(next.hasFocus());
  EXPECT_EQ(button.cursor().shape(), Qt::PointingHandCursor);
  hover(button, true);
  EXPECT_TRUE(button.isMouseHover);
  hover(button, false);
  EXPECT_FALSE(button.isMouseHover);
}

class IconButtonTest : public testing::Test {
 protected:
  IconButtonTest() {
    images.add(QStringLiteral("i"), {36, 36}, Qt::gray);
    images.add(QStringLiteral("i_selected"), {36, 36}, Qt::black);
    images.add(QStringLiteral("i_yellow_selected"), {36, 36}, Qt::yellow);
    images.add(QStringLiteral("i_disabled"), {36, 36}, Qt::cyan);
    button.setIconName(QStringLiteral("i"));
    button.resize(button.sizeHint());
    button.show();
    QObject::connect(&button, &ActionButton::actionSent,
                     [this] { statesInAction.push_back(button.state()); });
  }
  QColor shown() { return rendered(button).pixelColor(18, 18); }

  PaintedImages images;
  IconButton button{nullptr, images};
  std::vector<int> statesInAction;
};

TEST_F(IconButtonTest, FlipsItsStateBeforeTheActionSoThatTheOwnerHasTheLastWord) {
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_TRUE(button.state() == 1 && button.isChecked());
  QObject::connect(&button, &ActionButton::actionSent, [&] { button.setState(1); });
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(button.state(), 1);
  button.setToggles(false);
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_THAT(statesInAction, ElementsAre(1, 0, 1));
  QObject::connect(&button, &ActionButton::actionSent, [&] { button.setEnabled(false); });
  QTest::mouseClick(&button, Qt::LeftButton);
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_FALSE(button.isEnabled()) << "as a zoom step asks for";
  EXPECT_EQ(statesInAction.size(), 4U);
}

TEST_F(IconButtonTest, ShowsItsStates) {
  EXPECT_EQ(shown(), QColor(Qt::gray));
  hover(button, true);
  EXPECT_EQ(shown(), QColor(Qt::yellow));
  button.setActionMask(kSendsOnNothing);
  EXPECT_EQ(shown(), QColor(Qt::gray));
  QTest::mouseClick(&button, Qt::LeftButton);
  button.setActionMask(kSendsOnLeftMouseDown);
  button.setState(1);
  EXPECT_EQ(shown(), QColor(Qt::black));
  button.setState(0);
  hover(button, false);
  button.setEnabled(false);
  EXPECT_EQ(shown(), QColor(Qt::cyan));
  button.setEnabled(true);
  hover(button, true);
  QTest::mousePress(&button, Qt::LeftButton);
  EXPECT_TRUE(button.isEnabled()) << "a press disables only the other kind";
  EXPECT_EQ(shown(), QColor(Qt::black));
  QTest::mouseMove(&button, QPoint(-10, -10));
  QTest::mouseRelease(&button, Qt::LeftButton, {}, QPoint(-10, -10));
  QTest::mousePress(&button, Qt::LeftButton);
  button.setEnabled(false);
  QTest::mouseRelease(&button, Qt::LeftButton);
  EXPECT_FALSE(button.isEnabled());
  EXPECT_THAT(statesInAction, IsEmpty());
}

}  // namespace
}  // namespace velmara
