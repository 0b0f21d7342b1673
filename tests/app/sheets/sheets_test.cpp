#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QWidget>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "app/sheets/export_options_view.h"
#include "app/sheets/page_dots.h"
#include "app/sheets/save_changes_sheet.h"
#include "app/sheets/tip_picture.h"
#include "app/sheets/tips_sheet.h"
#include "platform/panels.h"
#include "widgets/desktop_panels.h"

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

  QWidget window;
};

class SaveChangesSheetTest : public SheetsTest {
 protected:
  SaveChangesSheetTest() {
    sheet.showSheet("Do you want to save the changes made to the document \"<b>a.jpg\" ?");
  }

  // Which signals have come: "S", "D" and "C".
  std::string answers() {
    std::string all(static_cast<std::size_t>(saved.count()), 'S');
    all.append(static_cast<std::size_t>(discarded.count()), 'D');
    all.append(static_cast<std::size_t>(cancelled.count()), 'C');
    return all;
  }

  SaveChangesSheet sheet{&window};
  QSignalSpy saved{&sheet, &SaveChangesSheet::btnSaveChangesTapped};
  QSignalSpy discarded{&sheet, &SaveChangesSheet::btnDontSaveChangesTapped};
  QSignalSpy cancelled{&sheet, &SaveChangesSheet::btnCancelChangesTapped};
};

TEST_F(SaveChangesSheetTest, GivesEveryAnswerByMouseAndKeyboardAndStaysUp) {
  const auto press = [this](Qt::Key key) { QTest::keyClick(&sheet, key); };
  const auto click = [this](const char* text) {
    for (QPushButton* button : sheet.findChildren<QPushButton*>()) {
      if (button->text() == QLatin1String(text)) QTest::mouseClick(button, Qt::LeftButton);
    }
  };
  struct Case {
    const char* name;
    std::function<void()> act;
    const char* answers;
  };
  const Case cases[] = {
      {"Return", [&] { press(Qt::Key_Return); }, "S"},
      {"Escape", [&] { press(Qt::Key_Escape); }, "SC"},
      {"close", [&] { sheet.close(); }, "SCC"},
      {"Save", [&] { click("Save"); }, "SSCC"},
      {"Don't Save", [&] { click("Don't Save"); }, "SSDCC"},
      {"Cancel", [&] { click("Cancel"); }, "SSDCCC"},
  };
  for (const Case& c : cases) {
    c.act();
    EXPECT_EQ(answers(), c.answers) << c.name;
    EXPECT_TRUE(sheet.isVisible()) << c.name;
  }
  sheet.closeSheet();
  EXPECT_FALSE(sheet.isVisible());
  EXPECT_EQ(answers(), "SSDCCC");
}

TEST_F(SaveChangesSheetTest, ShowsTheNameAsItIsWithinTheScreen) {
  auto& header = part<QLabel>(sheet, "lblSaveChangeHeader");
  EXPECT_EQ(header.textFormat(), Qt::PlainText);
  EXPECT_EQ(header.text(), "Do you want to save the changes made to the document \"<b>a.jpg\" ?");
  EXPECT_TRUE(sheet.isModal());
  const int line = header.fontMetrics().lineSpacing();
  sheet.closeSheet();
  sheet.showSheet("Do you want to save \"" + std::string(250, 'n') + ".jpg\" ?");
  EXPECT_LE(sheet.width(), 600);
  EXPECT_GE(header.height(), 5 * line);
}

TEST_F(SheetsTest, TheOptionsLiveInTheSavePanel) {
  ExportOptionsView view;
  QSignalSpy chosen(&view, &ExportOptionsView::selectFormat);
  view.setTitles({"JPEG (*.jpg)", "PNG (*.png)"});
  view.setTitles({"PNG (*.png)", "JPEG (*.jpg)", "GIF (*.gif)"});
  view.setQualityShown(false);
  auto& popup = part<QComboBox>(view, "btnPopupFileFormat");
  auto& quality = part<QWidget>(view, "viewExportQuality");
  EXPECT_EQ(popup.count(), 3);
  EXPECT_EQ(popup.currentIndex(), 0);
  {
    SavePanelOptions options;
    options.nameFieldStringValue = "a";
    options.allowedFileTypes = {"png", "jpeg", "gif"};
    options.accessoryView = &view;
    SaveDialog panel(options, &window);
    panel.show();
    EXPECT_TRUE(popup.isVisible());
    EXPECT_FALSE(quality.isVisible());
    EXPECT_TRUE(chosen.isEmpty());
    popup.setFocus();
    QTest::keyClick(&popup, Qt::Key_Down);
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen.front().front().toInt(), 1);
    view.setQualityShown(true);
    EXPECT_TRUE(quality.isVisible());
    EXPECT_TRUE(part<QSlider>(view, "sliderExportQuality").isVisible());
  }
  EXPECT_EQ(view.parentWidget(), nullptr);
}

TEST_F(SheetsTest, TipsPageByEveryKeyAndButton) {
  TipsSheet sheet(&window);
  sheet.showTipsScreen();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&sheet));
  auto& back = part<QPushButton>(sheet, "btnBackPage");
  auto& next = part<QPushButton>(sheet, "btnNextpage");
  auto* dots = sheet.findChild<PageDots*>();
  ASSERT_NE(dots, nullptr);
  const auto press = [&](Qt::Key key) { return [&sheet, key] { QTest::keyClick(&sheet, key); }; };
  const auto click = [](QWidget& widget) {
    return [&widget] { QTest::mouseClick(&widget, Qt::LeftButton); };
  };
  struct Case {
    const char* name;
    std::function<void()> act;
    int page;
  };
  const Case cases[] = {
      {"left at the start", press(Qt::Key_Left), 0},
      {"back at the start", click(back), 0},
      {"right", press(Qt::Key_Right), 1},
      {"return", press(Qt::Key_Return), 2},
      {"next", click(next), 3},
      {"back", click(back), 2},
      {"page down", press(Qt::Key_PageDown), 3},
      {"page up", press(Qt::Key_PageUp), 2},
      {"left", press(Qt::Key_Left), 1},
      {"end", press(Qt::Key_End), 4},
      {"right at the end", press(Qt::Key_Right), 4},
      {"home", press(Qt::Key_Home), 0},
      {"fourth dot",
       [&] {
         QTest::mouseClick(dots, Qt::LeftButton, {}, {dots->width() * 7 / 10, 9});
       },
       3},
      {"back by its name", [&] { sheet.btnBackPageTapped(); }, 2},
      {"next by its name", [&] { sheet.btnNextpageTapped(); }, 3},
  };
  for (const Case& c : cases) {
    c.act();
    EXPECT_EQ(sheet.selectedIndex(), c.page) << c.name;
    EXPECT_EQ(back.isEnabled(), c.page > 0) << c.name;
    EXPECT_TRUE(sheet.isVisible()) << c.name;
  }
  EXPECT_EQ(next.text(), "Next");
  QTest::keyClick(&sheet, Qt::Key_Right);
  EXPECT_EQ(next.text(), "Done");
  QTest::keyClick(&sheet, Qt::Key_Return);
  EXPECT_FALSE(sheet.isVisible());
  sheet.showTipsScreen();
  EXPECT_EQ(sheet.selectedIndex(), 0);
  QTest::keyClick(&sheet, Qt::Key_Escape);
  EXPECT_FALSE(sheet.isVisible());
}

TEST_F(SheetsTest, EveryTipHasItsPictureAndItsTextFits) {
  TipsSheet sheet(&window);
  sheet.showTipsScreen();
  auto& text = part<QLabel>(sheet, "lblTipText");
  auto& title = part<QLabel>(sheet, "lblTipTitle");
  auto* picture = sheet.findChild<TipPicture*>();
  ASSERT_NE(picture, nullptr);
  std::vector<QImage> pictures;
  std::set<QString> titles;
  for (int page = 0; page < 5; ++page) {
    ASSERT_EQ(sheet.selectedIndex(), page);
    EXPECT_LE(text.heightForWidth(text.width()), text.height()) << page;
    titles.insert(title.text());
    const QImage image = picture->grab().toImage();
    EXPECT_THAT(pictures, testing::Not(testing::Contains(image))) << page;
    // What the program's own photos are made of: the warm sky.
    int warm = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor color = image.pixelColor(x, y);
        warm += color.red() > color.blue() + 40 ? 1 : 0;
      }
    }
    EXPECT_GT(warm, 2000) << page;
    pictures.push_back(image);
    sheet.btnNextpageTapped();
  }
  EXPECT_EQ(titles.size(), 5U);
}

}  // namespace
}  // namespace velmara
