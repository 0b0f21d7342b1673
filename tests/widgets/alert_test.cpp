#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "widgets/desktop_alerts.h"

namespace velmara {
namespace {

using testing::ElementsAre;

const Alert kQuestion{"Could not save changes while quitting. Quit anyway?",
                      "Quitting now will lose any changes you have made since the last successful "
                      "save",
                      {"Quit anyway", "Cancel"}};

class AlertTest : public testing::Test {
 protected:
  AlertTest() {
    window.setGeometry(100, 100, 800, 600);
    window.show();
  }

  static AlertDialog* shown() {
    return qobject_cast<AlertDialog*>(QApplication::activeModalWidget());
  }

  // Shows the alert and does something with it once it stands there.
  int answer(const Alert& alert, const std::function<void(AlertDialog&)>& user) {
    QTimer::singleShot(0, [user] {
      ASSERT_NE(shown(), nullptr);
      ASSERT_TRUE(QTest::qWaitForWindowActive(shown()));
      user(*shown());
    });
    return alerts.runModal(alert);
  }

  static QPushButton* button(AlertDialog& dialog, const char* title) {
    for (auto* candidate : dialog.findChildren<QPushButton*>()) {
      if (candidate->text() == QLatin1String(title)) return candidate;
    }
    return nullptr;
  }

  QWidget window;
  DesktopAlerts alerts{&window};
};

TEST_F(AlertTest, AnswersWithTheButtonPressed) {
  const auto click = [](const char* title) {
    return
        [title](AlertDialog& dialog) { QTest::mouseClick(button(dialog, title), Qt::LeftButton); };
  };
  const auto key = [](Qt::Key pressed) {
    return [pressed](AlertDialog& dialog) { QTest::keyClick(&dialog, pressed); };
  };
  EXPECT_EQ(answer(kQuestion, click("Quit anyway")), 0);
  EXPECT_EQ(answer(kQuestion, click("Cancel")), 1);
  EXPECT_EQ(answer(kQuestion, key(Qt::Key_Return)), 0);
  EXPECT_EQ(answer(kQuestion, key(Qt::Key_Escape)), 1);
  EXPECT_EQ(answer(kQuestion, [](AlertDialog& dialog) { dialog.close(); }), 1);
  EXPECT_EQ(answer(kQuestion,
                   [](AlertDialog& dialog) {
                     QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
                     QTest::keyClick(dialog.focusWidget(), Qt::Key_Space);
                   }),
            1);
  const Alert plain{"Can't Process", "", {}};
  EXPECT_EQ(answer(plain, click("OK")), 0);
  EXPECT_EQ(answer(plain, key(Qt::Key_Escape)), 0);
}

TEST_F(AlertTest, StandsInTheMiddleOfItsWindowWithTheDefaultButtonLast) {
  answer(kQuestion, [&](AlertDialog& dialog) {
    const QPoint middle = dialog.geometry().center();
    EXPECT_NEAR(middle.x(), window.geometry().center().x(), 1);
    EXPECT_NEAR(middle.y(), window.geometry().center().y(), 1);
    EXPECT_TRUE(button(dialog, "Quit anyway")->isDefault());
    EXPECT_GT(button(dialog, "Quit anyway")->x(), button(dialog, "Cancel")->x());
    EXPECT_EQ(dialog.accessibleName(), QString::fromStdString(kQuestion.messageText));
    dialog.close();
  });
}

TEST_F(AlertTest, TextsAreShownAsTheyAreAndNeverCut) {
  Alert alert = kQuestion;
  alert.messageText = "Do you want to save the changes made to the document \"<b>a&b</b> " +
                      std::string(120, 'w') + " a very long name with many words in it.jpg\" ?";
  alert.informativeText = std::string(400, 'x') + " end";
  answer(alert, [&](AlertDialog& dialog) {
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
      if (label->text().isEmpty()) continue;
      EXPECT_GE(label->height(), label->heightForWidth(label->width()));
      EXPECT_TRUE(dialog.rect().contains(label->geometry()));
    }
    EXPECT_EQ(dialog.findChildren<QLabel*>()[1]->textFormat(), Qt::PlainText);
    dialog.close();
  });
}

TEST_F(AlertTest, SheetsAnswerLaterAndOnce) {
  std::vector<int> answers;
  alerts.beginSheet(kQuestion, [&](int answered) { answers.push_back(answered); });
  EXPECT_TRUE(answers.empty());
  const QPointer<AlertDialog> dialog = shown();
  ASSERT_FALSE(dialog.isNull());
  EXPECT_LT(dialog->geometry().center().y(), window.geometry().center().y());
  QTest::mouseClick(button(*dialog, "Cancel"), Qt::LeftButton);
  EXPECT_THAT(answers, ElementsAre(1));
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QApplication::processEvents();
  EXPECT_TRUE(dialog.isNull());
  EXPECT_EQ(answers.size(), 1U);
}

TEST(AlertWithoutWindowTest, ThePresenterSurvivesTheEndOfItsWindow) {
  auto window = std::make_unique<QWidget>();
  window->show();
  DesktopAlerts alerts(window.get());
  QTimer::singleShot(0, [&] { window.reset(); });
  EXPECT_EQ(alerts.runModal(kQuestion), 1);
  QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
  EXPECT_EQ(alerts.runModal(kQuestion), 1);
}

TEST(BreakableTextTest, BreaksLongWordsOnlyAndBetweenWholeCharacters) {
  const QString spaced = QStringLiteral("Twenty words are no long word, however many there are");
  EXPECT_EQ(breakableText(spaced), spaced);
  EXPECT_EQ(breakableText(QString(30, u'n')), QString(30, u'n'));
  EXPECT_EQ(breakableText(QString(32, u'n')), QString(30, u'n') + QStringLiteral("\u200bn\u200bn"));
  EXPECT_EQ(breakableText(QString(30, u'n') + QStringLiteral(" n")),
            QString(30, u'n') + QStringLiteral(" n"));
  // An emoji of two halves, and a letter with an accent of its own.
  EXPECT_EQ(breakableText(QString(29, u'n') + QStringLiteral("\U0001F600e\u0301")),
            QString(29, u'n') + QStringLiteral("\U0001F600\u200be\u0301"));
}

}  // namespace
}  // namespace velmara
