// The list of shortcuts: that it says what the menus say, how it opens, closes and looks.
#include "app/sheets/shortcuts_sheet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QMenu>
#include <QMenuBar>

#include <functional>
#include <string>
#include <vector>

#include "app/screen_fixture.h"
#include "app/sheets/shortcut_list.h"

namespace velmara {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing_support::ScreenTest;

QString plain(QString title) {
  return title.remove('&').remove(QChar(0x2026));
}

class ShortcutsSheetTest : public ScreenTest {
 protected:
  QMenuBar& menuBar() { return *window().findChild<QMenuBar*>(); }
  QMenu& helpMenu() { return *menuBar().actions().back()->menu(); }

  // As from the keyboard: Alt+H, K.
  void open() {
    window().activateWindow();
    ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == &window(); }));
    QTest::keyClick(&window(), Qt::Key_H, Qt::AltModifier);
    ASSERT_TRUE(helpMenu().isVisible());
    QTest::keyClick(&helpMenu(), Qt::Key_K);
    ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == &sheet(); }));
  }
  ShortcutsSheet& sheet() {
    const auto sheets = window().findChildren<ShortcutsSheet*>();
    EXPECT_EQ(sheets.size(), 1);
    return *sheets.front();
  }
  // Reads the sheet: heading | action | keys.
  std::vector<std::string> read() {
    std::vector<std::string> lines;
    QString heading;
    for (QLabel* label : sheet().findChildren<QLabel*>()) {
      if (!label->objectName().isEmpty()) continue;
      const std::string text = label->text().toStdString();
      if (label->property("role") == "caption") {
        heading = label->text();
      } else if (label->property("role") == "key") {
        lines.back() += " | " + text;
      } else {
        lines.push_back(heading.toStdString() + " | " + text);
      }
    }
    return lines;
  }
};

TEST_F(ShortcutsSheetTest, ListsEveryShortcutOfTheMenusAndThenThoseOnThePicture) {
  // An item may come to a menu later.
  QMenu& file = *menuBar().actions().front()->menu();
  file.addAction("Odd && &New…")->setShortcut(QKeySequence("Ctrl+Alt+N"));
  file.addAction("Without a shortcut");
  std::vector<std::string> expected;
  for (const QAction* menu : menuBar().actions()) {
    for (const QAction* item : menu->menu()->findChildren<QAction*>()) {
      if (item->shortcuts().isEmpty()) continue;
      const QString title = plain(QString(item->text()).replace("&&", "+")).replace("+", "&");
      QStringList line{plain(menu->text()), title};
      for (const auto& keys : item->shortcuts()) line << keys.toString(QKeySequence::NativeText);
      expected.push_back(line.join(" | ").toStdString());
    }
  }
  ASSERT_GT(expected.size(), 16U);
  open();
  const std::vector<std::string> lines = read();
  for (const std::string& line : expected) EXPECT_THAT(lines, Contains(line));
  EXPECT_THAT(lines, Contains("View | Zoom In | Ctrl++ | Ctrl+="));
  ASSERT_GT(lines.size(), expected.size());
  for (std::size_t i = expected.size(); i < lines.size(); ++i) {
    EXPECT_THAT(lines[i], testing::StartsWith("On the Picture | "));
  }
  QStringList titles;
  for (const QAction* item : helpMenu().actions()) titles << plain(item->text());
  EXPECT_THAT(titles, ElementsAre("Velmara Help", "Keyboard Shortcuts", "Tips", "Feedback", "",
                                  "About Velmara"));
}

TEST_F(ShortcutsSheetTest, ClosesByKeysAndButtonAndOpensAgain) {
  for (const Qt::Key key :
       {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_unknown}) {
    open();
    ASSERT_TRUE(sheet().isVisible()) << key;
    if (key == Qt::Key_Escape) {
      window().activateWindow();
      helpMenu().actions()[1]->trigger();
      EXPECT_TRUE(waitUntil([&] { return QApplication::activeWindow() == &sheet(); }));
    }
    key == Qt::Key_unknown ? click("btnCloseShortcuts")
                           : QTest::keyClick(QApplication::focusWidget(), key);
    EXPECT_FALSE(sheet().isVisible()) << key;
  }
}

TEST(ShortcutListTest, TitlesAreReadWithoutMnemonicsAndDots) {
  const char* const rows[][2] = {{"Save &As...", "Save As"},
                                 {"Dou&ble Size", "Double Size"},
                                 {"Öffnen(&O)…", "Öffnen"},
                                 {"Datei öffnen (&D) …", "Datei öffnen"},
                                 {"&Black && White", "Black & White"},
                                 {"Bits (8 && 16)", "Bits (8 & 16)"},
                                 {"…and more", "…and more"}};
  for (const auto& [title, action] : rows) {
    const auto groups = menuShortcuts({{title, title, {QKeySequence("F2")}}});
    EXPECT_EQ(groups, (std::vector<ShortcutGroup>{{action, {{action, {"F2"}}}}})) << title;
  }
  // Menus without shortcuts have no heading.
  const QList<QKeySequence> two = {QKeySequence("Ctrl+K, Ctrl+L"), QKeySequence("Shift+F3")};
  EXPECT_EQ(menuShortcuts({{"&A", "&b", {}}, {"&C", "&e", {}}, {"&F", "&g", two}}),
            (std::vector<ShortcutGroup>{{"F", {{"g", {"Ctrl+K, Ctrl+L", "Shift+F3"}}}}}));
}

}  // namespace
}  // namespace velmara
