#include "widgets/icon_button.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

#include <vector>

#include "support/painted_images.h"

namespace velmara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::PaintedImages;
using testing_support::rendered;

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
  void hover(bool over) {
    QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&button, over ? static_cast<QEvent*>(&enter) : &leave);
  }

  PaintedImages images;
  IconButton button{nullptr, images};
  std::vector<int> statesInAction;
};

TEST_F(IconButtonTest, FlipsItsStateBeforeTheActionSoThatTheOwnerHasTheLastWord) {
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(button.state(), 1);
  EXPECT_TRUE(button.isChecked());
  QObject::connect(&button, &ActionButton::actionSent, [&] { button.setState(1); });
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(button.state(), 1);
  EXPECT_THAT(statesInAction, ElementsAre(1, 0));
  button.setToggles(false);
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(statesInAction.back(), 1);
}

TEST_F(IconButtonTest, IsNotDisabledByAPressAndStaysDisabledByItsOwner) {
  QTest::mousePress(&button, Qt::LeftButton);
  EXPECT_TRUE(button.isEnabled());
  button.setEnabled(false);
  QTest::mouseRelease(&button, Qt::LeftButton);
  EXPECT_THAT(statesInAction, IsEmpty());
  EXPECT_FALSE(button.isEnabled());
  button.setEnabled(true);

  QObject::connect(&button, &ActionButton::actionSent, [&] { button.setEnabled(false); });
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_FALSE(button.isEnabled());  // As a zoom step asks for.
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(statesInAction.size(), 1U);
}

TEST_F(IconButtonTest, ShowsItsStates) {
  EXPECT_EQ(shown(), QColor(Qt::gray));
  hover(true);
  EXPECT_EQ(shown(), QColor(Qt::yellow));
  button.setActionMask(kSendsOnNothing);
  EXPECT_EQ(shown(), QColor(Qt::gray));
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_THAT(statesInAction, IsEmpty());
  button.setActionMask(kSendsOnLeftMouseDown);
  button.setState(1);
  EXPECT_EQ(shown(), QColor(Qt::black));
  button.setState(0);
  hover(false);
  button.setEnabled(false);
  EXPECT_EQ(shown(), QColor(Qt::cyan));
  button.setEnabled(true);
  hover(true);
  QTest::mousePress(&button, Qt::LeftButton);
  EXPECT_EQ(shown(), QColor(Qt::black));
  QTest::mouseMove(&button, QPoint(-10, -10));
  QTest::mouseRelease(&button, Qt::LeftButton, {}, QPoint(-10, -10));
  EXPECT_THAT(statesInAction, IsEmpty());
}

}  // namespace
}  // namespace velmara
