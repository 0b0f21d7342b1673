// The screen in a language with texts a fifth longer: nothing may be cut.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QTranslator>

#include <algorithm>
#include <string>

#include "app/screen_fixture.h"
#include "app/sheets/shortcuts_sheet.h"
#include "app/sheets/tips_sheet.h"

namespace velmara {
namespace {

using testing_support::ScreenTest;

/// Makes every text of ours a fifth longer, and at least two letters.
class LongerTexts : public QTranslator {
 public:
  QString translate(const char* /*context*/, const char* source, const char* /*what*/,
                    int /*n*/) const override {
    const QString text = QString::fromUtf8(source);
    const auto longer = std::max<qsizetype>(2, text.size() / 5);
    return text + QString(longer, QLatin1Char('n'));
  }
  bool isEmpty() const override { return false; }
};

class LongerTextsTest : public ScreenTest {
 protected:
  void SetUp() override {
    QApplication::installTranslator(&translator_);
    ScreenTest::SetUp();
  }
  void TearDown() override {
    ScreenTest::TearDown();
    QApplication::removeTranslator(&translator_);
  }

  /// Expects that every text seen in a window has the room it needs; returns how many there are.
  static int expectWholeTexts(QWidget& root) {
    QApplication::processEvents();
    int count = 0;
    for (QWidget* widget : root.findChildren<QWidget*>()) {
      if (!widget->isVisible()) continue;
      QString text;
      bool wraps = false;
      if (const auto* label = qobject_cast<QLabel*>(widget)) {
        text = label->text();
        wraps = label->wordWrap();
      } else if (const auto* button = qobject_cast<QAbstractButton*>(widget)) {
        text = button->text();
      }
      if (text.isEmpty()) continue;
      ++count;
      const QRect room = widget->contentsRect();
      const QRect needed = widget->fontMetrics().boundingRect(
          room, Qt::TextShowMnemonic | (wraps ? Qt::TextWordWrap : Qt::TextSingleLine), text);
      const std::string name = widget->objectName().toStdString() + ": " + text.toStdString();
      EXPECT_LE(needed.width(), room.width()) << name;
      EXPECT_LE(needed.height(), room.height()) << name;
      EXPECT_TRUE(widget->parentWidget()->rect().contains(widget->geometry())) << name;
    }
    return count;
  }

 private:
  LongerTexts translator_;
};

TEST_F(LongerTextsTest, FitInTheEmptyWindowAndInEveryStyle) {
  EXPECT_GT(expectWholeTexts(window()), 1);
  ASSERT_TRUE(openAndWait(photo()));
  for (const char* style : {"btnSplitMode", "btnSingleMode", "btnDualMode"}) {
    click(style);
    ASSERT_TRUE(waitForResult());
    EXPECT_GT(expectWholeTexts(window()), 4) << style;
  }
}

TEST_F(LongerTextsTest, FitInTheSheets) {
  ASSERT_TRUE(openAndWait(photo("A name that is itself rather long, as names of photos are.png")));
  EXPECT_FALSE(window().close());
  EXPECT_EQ(expectWholeTexts(view("windowSaveChanges")), 4);
  click("btnCancelChanges");

  screen().showTipsScreen();
  auto& tips = *window().findChild<TipsSheet*>();
  for (int page = 0; page < 5; ++page) {
    EXPECT_GT(expectWholeTexts(tips), 3) << page;
    tips.btnNextpageTapped();
  }
  tips.close();

  const auto help = window().findChild<QMenuBar*>()->actions().back()->menu()->actions();
  help[1]->trigger();
  auto& shortcuts = *window().findChild<ShortcutsSheet*>();
  EXPECT_GT(expectWholeTexts(shortcuts), 40);
  EXPECT_TRUE(window().geometry().contains(shortcuts.geometry()));
  shortcuts.close();
}

}  // namespace
}  // namespace velmara
