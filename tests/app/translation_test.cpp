// The screen in the languages of the program, and in one of longer words, made by the translators'
// own tools from the sources (see support/pseudo_translation.py): every text of ours is translated,
// and none is cut.
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

#include <optional>
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

constexpr const char* kMadeUp = "made up";

/// Labels that show facts, whose words are fixed or none.
bool showsFacts(const QWidget& widget) {
  static const QStringList names{"lblDimensions", "lblSize",        "lblPath",
                                 "txtZoomLevel",  "txtDenoiseMode", "txtCustomDenoiseVal",
                                 "lblAboutTitle"};
  return names.contains(widget.objectName()) || widget.property("role") == "key" ||
         widget.property("role") == "fact";
}

class TranslationTest : public ScreenTest, public testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    if (GetParam() == std::string(kMadeUp)) {
      ASSERT_TRUE(madeUp_.load(QStringLiteral(VELMARA_PSEUDO_TRANSLATION ".qm")));
      QApplication::installTranslator(&madeUp_);
    } else {
      translations_.emplace(QLocale(GetParam()), QStringLiteral(VELMARA_CATALOGUES));
    }
    ScreenTest::SetUp();
  }
  void TearDown() override {
    ScreenTest::TearDown();
    QApplication::removeTranslator(&madeUp_);
  }

  /// Every text of the made-up translation stands in brackets.
  static bool isTranslated(const QString& text) {
    return GetParam() != std::string(kMadeUp) || text.contains(QChar(0x2039));
  }

  /// Expects it of all actions below a menu, and a mnemonic that no other of it has; returns how
  /// many there are.
  static int expectTranslated(const QList<QAction*>& actions) {
    static const QRegularExpression mnemonic("&([^&])");
    std::set<QString> mnemonics;
    int count = 0;
    for (const QAction* action : actions) {
      if (action->isSeparator()) continue;
      const QString text = action->text();
      EXPECT_TRUE(isTranslated(text)) << text.toStdString();
      EXPECT_TRUE(mnemonics.insert(mnemonic.match(text).captured(1).toLower()).second)
          << text.toStdString();
      count += 1 + (action->menu() != nullptr ? expectTranslated(action->menu()->actions()) : 0);
    }
    return count;
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
  QTranslator madeUp_;
  std::optional<Translations> translations_;
};

INSTANTIATE_TEST_SUITE_P(Languages, TranslationTest, testing::Values(kMadeUp, "de_AT", "fr"),
                         [](const auto& tested) {
                           return QString(tested.param).remove(' ').remove('_').toStdString();
                         });

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
  for (const int column : {BatchTable::kSize, BatchTable::kNoise, BatchTable::kStrength}) {
    const QAbstractItemView& view = table;
    EXPECT_LE(view.sizeHintForColumn(column), table.columnWidth(column)) << column;
  }
}

/// What a translation has to keep of its source: what is filled in, and how it ends.
QStringList kept(const QString& text) {
  static const QRegularExpression parts("%[0-9n]|\\{\\w+\\}|(…|:)$|^\\*");
  QStringList found;
  for (const auto& match : parts.globalMatch(text)) found << match.captured(0);
  found.sort();
  return found;
}

// A text that the tools find in the sources and a language lacks is read as it is in English.
TEST(Catalogues, HaveEveryTextWithAllItsParts) {
  for (const QString language : {"de", "fr"}) {
    QTranslator catalogue;
    ASSERT_TRUE(catalogue.load(QStringLiteral(VELMARA_CATALOGUES "/velmara_%1.qm").arg(language)));
    QFile sources(QStringLiteral(VELMARA_PSEUDO_TRANSLATION ".source.ts"));
    ASSERT_TRUE(sources.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&sources);
    QByteArray context;
    int count = 0;
    bool isCounted = false;
    while (!reader.atEnd()) {
      if (reader.readNext() != QXmlStreamReader::StartElement) continue;
      if (reader.name() == u"name") context = reader.readElementText().toUtf8();
      if (reader.name() == u"message") isCounted = reader.attributes().hasAttribute("numerus");
      if (reader.name() != u"source") continue;
      const QString text = reader.readElementText();
      for (const int number : {1, 2}) {
        const QString found =
            catalogue.translate(context, text.toUtf8(), "", isCounted ? number : -1);
        EXPECT_EQ(kept(found), kept(text)) << (language + ": " + text).toStdString();
        EXPECT_EQ(found.contains('&'), text.contains('&')) << found.toStdString();
        EXPECT_FALSE(found.isEmpty()) << (language + " lacks " + text).toStdString();
      }
      ++count;
    }
    EXPECT_GT(count, 200);
  }
}

// The panels' buttons are the toolkit's, and follow the program, not the desktop, where the program
// does not speak the desktop's language.
TEST(Catalogues, BringTheToolkitsTextsInTheSameLanguage) {
  const auto cancel = [](const char* locale) {
    const Translations translations(QLocale(locale), VELMARA_CATALOGUES);
    return QCoreApplication::translate("QPlatformTheme", "Cancel").toStdString();
  };
  EXPECT_EQ(cancel("de_CH"), "Abbrechen");
  EXPECT_EQ(cancel("fr_CA"), "Annuler");
  EXPECT_EQ(cancel("pl_PL"), "Cancel");
  EXPECT_EQ(cancel("en_GB"), "Cancel");
}

}  // namespace
}  // namespace velmara
