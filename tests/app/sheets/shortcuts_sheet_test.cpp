// The list of shortcuts: that it says what the menus say, how it opens, closes and looks.
#include "app/sheets/shortcuts_sheet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "app/screen_fixture.h"
#include "app/sheets/shortcut_list.h"

namespace velmara {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing_support::ScreenTest;

/// A line of the sheet as it is read; a heading has no keys.
struct Line {
  QString heading;
  QString action;
  QStringList keys;

  bool operator==(const Line&) const = default;
  friend void PrintTo(const Line& line, std::ostream* out) {
    *out << (QStringList{line.heading, line.action} + line.keys).join(" | ").toStdString();
  }
};

class ShortcutsSheetTest : public ScreenTest {
 protected:
  QMenuBar& menuBar() { return *window().findChild<QMenuBar*>(); }
  QMenu& helpMenu() { return *menuBar().actions().back()->menu(); }

  // A window counts as active to the toolkit's own test while a window below it is.
  static bool waitUntilActive(QWidget& window) {
    return waitUntil([&window] { return QApplication::activeWindow() == &window; });
  }
  // As from the keyboard: Alt+H, K.
  void open() {
    window().activateWindow();
    ASSERT_TRUE(waitUntilActive(window()));
    QTest::keyClick(&window(), Qt::Key_H, Qt::AltModifier);
    ASSERT_TRUE(helpMenu().isVisible());
    QTest::keyClick(&helpMenu(), Qt::Key_K);
    ASSERT_TRUE(waitUntilActive(sheet()));
  }
  ShortcutsSheet& sheet() {
    const auto sheets = window().findChildren<ShortcutsSheet*>();
    EXPECT_EQ(sheets.size(), 1);
    return *sheets.front();
  }

  QRect place(const QLabel& label) { return {label.mapTo(&sheet(), QPoint()), label.size()}; }
  std::vector<QLabel*> labels(bool areKeys) {
    std::vector<QLabel*> found;
    for (QLabel* label : sheet().findChildren<QLabel*>()) {
      if (label->objectName().isEmpty() && (label->property("role") == "key") == areKeys) {
        found.push_back(label);
      }
    }
    return found;
  }
  // Reads the sheet by where its labels stand, as the user does.
  std::vector<Line> read() {
    std::vector<Line> lines;
    QString heading;
    for (const QLabel* action : labels(false)) {
      Line line{heading, action->text(), {}};
      const QRect at = place(*action);
      int nextColumn = sheet().width();
      for (const QLabel* other : labels(false)) {
        const int left = place(*other).left();
        if (left > at.left()) nextColumn = std::min(nextColumn, left);
      }
      for (const QLabel* key : labels(true)) {
        const QRect there = place(*key);
        if (there.left() > at.right() && there.right() < nextColumn &&
            there.top() <= at.center().y() && there.bottom() >= at.center().y()) {
          line.keys << key->text();
        }
      }
      if (line.keys.isEmpty()) {
        heading = line.action;
      } else {
        lines.push_back(line);
      }
    }
    return lines;
  }
};

QString plain(QString title) {
  return title.remove('&').remove(QChar(0x2026));
}

TEST_F(ShortcutsSheetTest, ListsEveryShortcutOfTheMenus) {
  std::vector<Line> expected;
  for (const QAction* menu : menuBar().actions()) {
    for (const QAction* item : menu->menu()->findChildren<QAction*>()) {
      if (item->shortcuts().isEmpty()) continue;
      Line line{plain(menu->text()), plain(item->text()), {}};
      for (const QKeySequence& keys : item->shortcuts()) {
        line.keys << keys.toString(QKeySequence::NativeText);
      }
      expected.push_back(line);
    }
  }
  ASSERT_GT(expected.size(), 15U);
  open();
  const std::vector<Line> lines = read();
  for (const Line& line : expected) EXPECT_THAT(lines, Contains(line));
  EXPECT_THAT(lines, Contains(Line{"View", "Zoom In", {"Ctrl++", "Ctrl+="}}));
  // The rest is about the picture, below all menus.
  ASSERT_GT(lines.size(), expected.size());
  std::set<QString> others;
  for (std::size_t i = expected.size(); i < lines.size(); ++i) others.insert(lines[i].heading);
  EXPECT_THAT(others, ElementsAre("On the Picture"));
}

TEST_F(ShortcutsSheetTest, KnowsAnItemThatComesToAMenuLater) {
  QMenu& menu = *menuBar().actions().front()->menu();
  menu.addAction("Odd && &New…")->setShortcut(QKeySequence("Ctrl+Alt+N"));
  menu.addAction("Without a shortcut");
  open();
  EXPECT_THAT(read(), Contains(Line{"File", "Odd & New", {"Ctrl+Alt+N"}}));
  for (const Line& line : read()) EXPECT_NE(line.action, "Without a shortcut");
}

TEST_F(ShortcutsSheetTest, StandsBetweenHelpAndTips) {
  QStringList titles;
  for (const QAction* item : helpMenu().actions()) titles << plain(item->text());
  EXPECT_THAT(titles, ElementsAre("Velmara Help", "Keyboard Shortcuts", "Tips", "Feedback"));
}

TEST_F(ShortcutsSheetTest, ClosesByKeysAndButtonAndOpensAgain) {
  const auto press = [this](Qt::Key key) {
    return [this, key] { QTest::keyClick(QApplication::focusWidget(), key); };
  };
  struct Case {
    const char* name;
    std::function<void()> act;
  };
  const Case cases[] = {
      {"Escape", press(Qt::Key_Escape)},
      {"Return", press(Qt::Key_Return)},
      {"Enter", press(Qt::Key_Enter)},
      {"Space", press(Qt::Key_Space)},
      {"Close", [this] { click("btnCloseShortcuts"); }},
  };
  for (const Case& c : cases) {
    open();
    ASSERT_TRUE(sheet().isVisible()) << c.name;
    c.act();
    EXPECT_FALSE(sheet().isVisible()) << c.name;
  }
  EXPECT_EQ(view<QPushButton>("btnCloseShortcuts").text(), "Close");
}

TEST_F(ShortcutsSheetTest, OpeningItAgainBringsItToTheFront) {
  open();
  QDialog other(&sheet());
  other.show();
  ASSERT_TRUE(waitUntilActive(other));
  for (QAction* item : helpMenu().actions()) {
    if (plain(item->text()) == "Keyboard Shortcuts") item->trigger();
  }
  EXPECT_TRUE(waitUntilActive(sheet()));
  EXPECT_TRUE(sheet().isVisible());
}

TEST_F(ShortcutsSheetTest, IsAlignedWithinTheSmallestWindow) {
  open();
  EXPECT_TRUE(window().geometry().contains(sheet().geometry()));
  // Two columns: each of them has one left edge for the texts and one right edge for the keys.
  std::set<int> lefts;
  for (const QLabel* label : labels(false)) lefts.insert(place(*label).left());
  EXPECT_EQ(lefts.size(), 2U);
  std::set<int> rights;
  for (const QLabel* label : labels(true)) {
    const bool isLast = label == label->parentWidget()->findChildren<QLabel*>().back();
    if (isLast) rights.insert(place(*label).right());
  }
  EXPECT_EQ(rights.size(), 2U);
}

TEST(ShortcutListTest, TitlesAreReadWithoutMnemonicsAndDots) {
  struct Case {
    const char* title;
    const char* action;
  };
  const Case cases[] = {
      {"&Open…", "Open"},
      {"Save &As...", "Save As"},
      {"Dou&ble Size", "Double Size"},
      {"&Black && White", "Black & White"},
      {"Öffnen(&O)…", "Öffnen"},
      {"Datei öffnen (&D) …", "Datei öffnen"},
      {"Bits (8 && 16)", "Bits (8 & 16)"},
      {"…and more", "…and more"},
  };
  for (const Case& c : cases) {
    const auto groups = menuShortcuts({{c.title, c.title, {QKeySequence("F2")}}});
    ASSERT_EQ(groups.size(), 1U) << c.title;
    EXPECT_EQ(groups[0].heading, c.action) << c.title;
    EXPECT_EQ(groups[0].shortcuts[0].action, c.action) << c.title;
  }
}

TEST(ShortcutListTest, MenusWithoutShortcutsHaveNoHeading) {
  const QList<QKeySequence> one = {QKeySequence("F2")};
  const QList<QKeySequence> two = {QKeySequence("Ctrl+K, Ctrl+L"), QKeySequence("Shift+F3")};
  EXPECT_TRUE(menuShortcuts({}).empty());
  EXPECT_TRUE(menuShortcuts({{"&A", "&b", {}}}).empty());
  EXPECT_EQ(
      menuShortcuts({{"&A", "&b", {}}, {"&C", "&d", one}, {"&C", "&e", {}}, {"&F", "&g", two}}),
      (std::vector<ShortcutGroup>{
          {"C", {{"d", {"F2"}}}},
          {"F", {{"g", {"Ctrl+K, Ctrl+L", "Shift+F3"}}}},
      }));
}

TEST(ShortcutListTest, TheColumnsAreAsEvenAsTheOrderAllows) {
  struct Case {
    std::vector<std::size_t> sizes;
    std::size_t first;
  };
  const Case cases[] = {
      {{}, 0},           {{4}, 1},          {{1, 9}, 1},
      {{9, 1}, 1},       {{2, 2, 2}, 1},    {{5, 8, 3, 1, 3}, 2},
      {{1, 1, 1, 9}, 3}, {{9, 1, 1, 1}, 1}, {{2, 2, 2, 2}, 2},
  };
  for (const Case& c : cases) {
    std::vector<ShortcutGroup> groups;
    for (const std::size_t size : c.sizes) {
      groups.push_back({"x", std::vector<Shortcut>(size)});
    }
    EXPECT_EQ(groupsInFirstColumn(groups), c.first) << testing::PrintToString(c.sizes);
  }
}

}  // namespace
}  // namespace velmara
