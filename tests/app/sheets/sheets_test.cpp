#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <functional>
#include <string>

#include "app/sheets/page_dots.h"
#include "app/sheets/save_changes_sheet.h"
#include "app/sheets/tips_sheet.h"

namespace velmara {
namespace {

class SheetsTest : public testing::Test {
 protected:
  SheetsTest() {
    window.resize(900, 600);
    window.show();
  }
  template <typename Widget>
  static Widget& part(QWidget& sheet, const char* name) {
    auto* found = sheet.findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }
  static std::function<void()> press(QWidget& sheet, Qt::Key key) {
    return [&sheet, key] { QTest::keyClick(&sheet, key); };
  }
  static std::function<void()> click(QWidget& widget) {
    return [&widget] { QTest::mouseClick(&widget, Qt::LeftButton); };
  }

  QWidget window;
};

TEST_F(SheetsTest, TheQuestionGivesEveryAnswerAndStaysUpUntilItIsTaken) {
  SaveChangesSheet sheet(&window);
  const QString question = "Do you want to save the changes made to the document \"<b>a.jpg\" ?";
  sheet.showSheet(question.toStdString());
  EXPECT_TRUE(sheet.isModal());
  std::string answers;
  using Sheet = SaveChangesSheet;
  QObject::connect(&sheet, &Sheet::btnSaveChangesTapped, &sheet, [&] { answers += 'S'; });
  QObject::connect(&sheet, &Sheet::btnDontSaveChangesTapped, &sheet, [&] { answers += 'D'; });
  QObject::connect(&sheet, &Sheet::btnCancelChangesTapped, &sheet, [&] { answers += 'C'; });
  press(sheet, Qt::Key_Return)();
  press(sheet, Qt::Key_Escape)();
  sheet.close();
  for (const char* name : {"btnSaveChanges", "btnDontSaveChanges", "btnCancelChanges"}) {
    click(part<QPushButton>(sheet, name))();
    EXPECT_TRUE(sheet.isVisible()) << name;
  }
  EXPECT_EQ(answers, "SCCSDC");
  // The name is shown as it is, within the screen.
  auto& header = part<QLabel>(sheet, "lblSaveChangeHeader");
  EXPECT_EQ(header.textFormat(), Qt::PlainText);
  EXPECT_EQ(header.text(), question);
  sheet.closeSheet();
  EXPECT_FALSE(sheet.isVisible());
  sheet.showSheet("Do you want to save \"" + std::string(250, 'n') + ".jpg\" ?");
  EXPECT_LE(sheet.width(), 600);
  EXPECT_GE(header.height(), 5 * header.fontMetrics().lineSpacing());
}

TEST_F(SheetsTest, TipsPageByEveryKeyAndButton) {
  TipsSheet sheet(&window);
  sheet.showTipsScreen();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&sheet));
  auto& back = part<QPushButton>(sheet, "btnBackPage");
  auto& next = part<QPushButton>(sheet, "btnNextpage");
  auto* dots = sheet.findChild<PageDots*>();
  ASSERT_NE(dots, nullptr);
  const auto expectPage = [&](const char* how, int page) {
    EXPECT_EQ(sheet.selectedIndex(), page) << how;
    EXPECT_EQ(back.isEnabled(), page > 0) << how;
    EXPECT_EQ(next.text(), page == 4 ? "Done" : "Next") << how;
  };
  const std::pair<Qt::Key, int> keys[] = {
      {Qt::Key_Left, 0},     {Qt::Key_Right, 1},  {Qt::Key_Return, 2},
      {Qt::Key_PageDown, 3}, {Qt::Key_PageUp, 2}, {Qt::Key_Left, 1},
      {Qt::Key_End, 4},      {Qt::Key_Right, 4},  {Qt::Key_Home, 0}};
  for (const auto& [key, page] : keys) {
    press(sheet, key)();
    expectPage("key", page);
  }
  click(next)();
  expectPage("next", 1);
  click(back)();
  click(back)();
  expectPage("back at the start", 0);
  QTest::mouseClick(dots, Qt::LeftButton, {}, {dots->width() * 7 / 10, 9});
  expectPage("fourth dot", 3);
  press(sheet, Qt::Key_Right)();
  EXPECT_TRUE(sheet.isVisible());
  press(sheet, Qt::Key_Return)();
  EXPECT_FALSE(sheet.isVisible());
  sheet.showTipsScreen();
  EXPECT_EQ(sheet.selectedIndex(), 0);
  press(sheet, Qt::Key_Escape)();
  EXPECT_FALSE(sheet.isVisible());
}

}  // namespace
}  // namespace velmara
