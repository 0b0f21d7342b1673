// The screen in a language of longer words, made by the translators' own tools from the sources
// (see support/pseudo_translation.py): every text of ours is translated, and none is cut.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QTranslator>

#include <string>

#include "app/batch/batch_window.h"
#include "app/screen_fixture.h"
#include "app/sheets/about_sheet.h"
#include "app/sheets/feedback_window_controller.h"
#include "app/sheets/shortcuts_sheet.h"
#include "app/sheets/tips_sheet.h"

namespace velmara {
namespace {

using testing_support::ScreenTest;

/// What stands between the brackets that every translated text has.
bool isTranslated(const QString& text) {
  return text.contains(QChar(0x2039));
}

/// Labels that show facts, whose words are fixed or none.
bool showsFacts(const QWidget& widget) {
  static const QStringList names{"lblDimensions", "lblSize",        "lblPath",
                                 "txtZoomLevel",  "txtDenoiseMode", "txtCustomDenoiseVal",
                                 "lblAboutTitle"};
  return names.contains(widget.objectName()) || widget.property("role") == "key" ||
         widget.property("role") == "fact";
}

class TranslationTest : public ScreenTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(translator_.load(QStringLiteral(VELMARA_PSEUDO_TRANSLATION)));
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
      const int lines = wraps ? Qt::TextWordWrap : text.contains('\n') ? 0 : Qt::TextSingleLine;
      const QRect needed =
          widget->fontMetrics().boundingRect(room, Qt::TextShowMnemonic | lines, text);
      const std::string name = widget->objectName().toStdString() + ": " + text.toStdString();
      if (!showsFacts(*widget)) {
        EXPECT_TRUE(isTranslated(text)) << name;
      }
      EXPECT_LE(needed.width(), room.width()) << name;
      EXPECT_LE(needed.height(), room.height()) << name;
      EXPECT_TRUE(widget->parentWidget()->rect().contains(widget->geometry())) << name;
    }
    return count;
  }

 private:
  QTranslator translator_;
};

/// Expects it of all actions below a menu, and returns how many there are.
int expectTranslated(const QList<QAction*>& actions) {
  int count = 0;
  for (const QAction* action : actions) {
    if (action->isSeparator()) continue;
    EXPECT_TRUE(isTranslated(action->text())) << action->text().toStdString();
    count += 1 + (action->menu() != nullptr ? expectTranslated(action->menu()->actions()) : 0);
  }
  return count;
}

TEST_F(TranslationTest, ReachesTheMenusAndTheToolTips) {
  EXPECT_GT(expectTranslated(window().findChild<QMenuBar*>()->actions()), 20);
  int tips = 0;
  for (const QWidget* widget : window().findChildren<QWidget*>()) {
    if (widget->toolTip().isEmpty()) continue;
    ++tips;
    EXPECT_TRUE(isTranslated(widget->toolTip())) << widget->toolTip().toStdString();
  }
  EXPECT_GT(tips, 14);
}

TEST_F(TranslationTest, FitsInTheEmptyWindowAndInEveryStyle) {
  EXPECT_GT(expectWholeTexts(window()), 1);
  ASSERT_TRUE(openAndWait(photo()));
  view("lblNoise").show();
  for (const char* style : {"btnSplitMode", "btnSingleMode", "btnNoiseMode", "btnDualMode"}) {
    click(style);
    ASSERT_TRUE(waitForResult());
    EXPECT_GT(expectWholeTexts(window()), 4) << style;
  }
}

TEST_F(TranslationTest, FitsInTheSheets) {
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

  // The form with all that it may say. The service is told the kind in its own words.
  FeedbackServices services{.alerts = alerts, .panels = panels};
  services.reachesNobody = true;
  services.describe = [](const FeedbackForm&, const auto&) {};
  FeedbackWindowController feedback(std::move(services), &window());
  feedback.showSheet();
  for (const char* name : {"btnFBSubmit", "linkSendFeedback"}) {
    feedback.findChild<QPushButton*>(name)->click();
  }
  feedback.findChild<QWidget*>("lblFBWait")->show();
  EXPECT_EQ(expectWholeTexts(feedback), 16);
  EXPECT_TRUE(window().geometry().contains(feedback.geometry()));
  auto& type = *feedback.findChild<QComboBox*>("btnFBType");
  type.setCurrentIndex(1);
  EXPECT_TRUE(isTranslated(type.currentText()));
  EXPECT_EQ(feedback.form().type, "General Feedback");
  feedback.close();

  const auto help = window().findChild<QMenuBar*>()->actions().back()->menu()->actions();
  help[1]->trigger();
  auto& shortcuts = *window().findChild<ShortcutsSheet*>();
  EXPECT_GT(expectWholeTexts(shortcuts), 40);
  EXPECT_TRUE(window().geometry().contains(shortcuts.geometry()));
  shortcuts.close();

  help.back()->trigger();
  auto& about = *window().findChild<AboutSheet*>();
  EXPECT_GT(expectWholeTexts(about), 5);
  EXPECT_TRUE(window().geometry().contains(about.geometry()));
  about.close();

  BatchList list(PhotoJobServices{engine, mainQueue(), globalQueue(), {}, {}}, timers);
  BatchWindow batch(list, alerts, panels, workspace);
  batch.showWindow();
  EXPECT_GT(expectWholeTexts(batch), 10);
}

}  // namespace
}  // namespace velmara
