// The screen in the program's languages, and in one of longer words, made by the translators' own
// tools from the sources (see support/pseudo_translation.py): every text of ours is translated, and
// none is cut.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableView>
#include <QTranslator>
#include <QXmlStreamReader>

#include <set>
#include <string>

#include "app/batch/batch_table.h"
#include "app/batch/batch_window.h"
#include "app/screen_fixture.h"
#include "app/sheets/about_sheet.h"
#include "app/sheets/feedback_window_controller.h"
#include "app/sheets/shortcuts_sheet.h"
#include "app/sheets/tips_sheet.h"
#include "app/translations.h"

namespace velmara {
namespace {

using testing_support::ScreenTest;

/// The desktop's locale, and the folder of the catalogues.
using Language = std::pair<QString, const char*>;

/// Whether it stands between the brackets that every text of the made-up language has.
bool isTranslated(const QString& text) {
  return testing::WithParamInterface<Language>::GetParam().first != "eo" ||
         text.contains(QChar(0x2039));
}

/// Labels that show facts, whose words are fixed or none.
bool showsFacts(const QWidget& widget) {
  static const QStringList names{"lblDimensions", "lblSize",        "lblPath",
                                 "txtZoomLevel",  "txtDenoiseMode", "txtCustomDenoiseVal",
                                 "lblAboutTitle"};
  return names.contains(widget.objectName()) || widget.property("role") == "key" ||
         widget.property("role") == "fact";
}

class TranslationTest : public ScreenTest, public testing::WithParamInterface<Language> {
 protected:
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
  const Translations translations_{QLocale(GetParam().first), GetParam().second};
};

INSTANTIATE_TEST_SUITE_P(Languages, TranslationTest,
                         testing::Values(Language("eo", VELMARA_PSEUDO),
                                         Language("de_AT", VELMARA_CATALOGUES),
                                         Language("fr", VELMARA_CATALOGUES)));

/// Expects it of all actions below a menu, and a mnemonic of its own; returns how many there are.
int expectTranslated(const QList<QAction*>& actions) {
  static const QRegularExpression mnemonic("&[^&]");
  std::set<QString> mnemonics;
  int count = 0;
  for (const QAction* action : actions) {
    if (action->isSeparator()) continue;
    EXPECT_TRUE(isTranslated(action->text())) << action->text().toStdString();
    EXPECT_TRUE(mnemonics.insert(mnemonic.match(action->text()).captured().toLower()).second)
        << action->text().toStdString();
    count += 1 + (action->menu() != nullptr ? expectTranslated(action->menu()->actions()) : 0);
  }
  return count;
}

TEST_P(TranslationTest, ReachesTheMenusAndTheToolTips) {
  EXPECT_GT(expectTranslated(window().findChild<QMenuBar*>()->actions()), 20);
  int tips = 0;
  for (const QWidget* widget : window().findChildren<QWidget*>()) {
    if (widget->toolTip().isEmpty()) continue;
    ++tips;
    EXPECT_TRUE(isTranslated(widget->toolTip())) << widget->toolTip().toStdString();
  }
  EXPECT_GT(tips, 14);
}

TEST_P(TranslationTest, FitsInTheEmptyWindowAndInEveryStyle) {
  EXPECT_GT(expectWholeTexts(window()), 1);
  ASSERT_TRUE(openAndWait(photo()));
  view("lblNoise").show();
  for (const char* style : {"btnSplitMode", "btnSingleMode", "btnNoiseMode", "btnDualMode"}) {
    click(style);
    ASSERT_TRUE(waitForResult());
    EXPECT_GT(expectWholeTexts(window()), 4) << style;
  }
}

TEST_P(TranslationTest, FitsInTheSheets) {
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
  list.add({photo()});
  ASSERT_TRUE(waitUntil([&] { return !list.entries().empty() && isGlobalQueueIdle(); }));
  EXPECT_GT(expectWholeTexts(batch), 10);
  const auto& table = *batch.findChild<QTableView*>();
  const QAbstractItemView& view = table;
  for (const int column : {BatchTable::kSize, BatchTable::kNoise, BatchTable::kStrength}) {
    EXPECT_LE(view.sizeHintForColumn(column), table.columnWidth(column)) << column;
  }
}

/// What a translation has to keep of its source: what is filled in, its mnemonic and how it ends.
QStringList kept(const QString& text) {
  static const QRegularExpression parts("%[0-9n]|&|\\{\\w+\\}|(…|:)$|^\\*");
  QStringList found{text.isEmpty() ? "empty" : ""};
  for (const auto& match : parts.globalMatch(text)) found << match.captured();
  found.sort();
  return found;
}

// A text that the tools find in the sources and a language lacks is read as it is in English.
TEST(Catalogues, HaveEveryTextWithAllItsParts) {
  for (const char* language : {"de", "fr"}) {
    QTranslator catalogue;
    ASSERT_TRUE(catalogue.load(QString("velmara_") + language, VELMARA_CATALOGUES));
    QFile sources(QStringLiteral(VELMARA_PSEUDO "/velmara_eo.source.ts"));
    ASSERT_TRUE(sources.open(QIODevice::ReadOnly));
    QByteArray context;
    int count = 0, number = 0;  // What is counted by a number has it, the rest -1.
    for (QXmlStreamReader reader(&sources); !reader.atEnd(); reader.readNextStartElement()) {
      if (!reader.isStartElement()) continue;
      if (reader.name() == u"message") number = reader.attributes().isEmpty() ? -1 : 1;
      if (reader.name() == u"name") context = reader.readElementText().toUtf8();
      if (reader.name() != u"source") continue;
      const QString text = reader.readElementText();
      for (const int n : {number, 2 * number}) {
        const QString found = catalogue.translate(context, text.toUtf8(), "", n);
        EXPECT_EQ(kept(found), kept(text)) << language << ": " << text.toStdString();
      }
      ++count;
    }
    EXPECT_GT(count, 200);
  }
}

// The panels' buttons are the toolkit's, and speak as the program does, not the desktop.
TEST(Catalogues, BringTheToolkitsTextsInTheSameLanguage) {
  for (const auto& [locale, cancel] : {std::pair("de_CH", "Abbrechen"), {"pl_PL", "Cancel"}}) {
    const Translations translations(QLocale(locale), VELMARA_CATALOGUES);
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), cancel) << locale;
  }
}

}  // namespace
}  // namespace velmara
