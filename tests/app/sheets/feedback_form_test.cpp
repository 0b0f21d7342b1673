#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTranslator>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "app/sheets/feedback_form_fixture.h"
#include "widgets/desktop_alerts.h"

namespace velmara {
namespace {

using testing_support::FeedbackFormTest;

TEST_F(FeedbackFormTest, SaysWhatItAlwaysSaid) {
  const std::map<const char*, const char*> labels = {
      {"lblFBHeading", "Submit your feedback for Velmara"},
      {"lblFBSubHeading", "Your experience is highly appreciated."},
      {"lblFBType", "Feedback"},
      {"lblEmailAddress", "Email Address"},
      {"lblFeedBackType", "Please Select Feedback Type"},
      {"lblShareExperience", "Share your experience"},
      {"lblFBWait", "Your feedback is being sent, please wait."},
      {"lblFBInvalidEmail", "*Invalid Email Address"},
      {"lblFBInvalidType", "*Please Select Feedback Type"},
      {"lblFBInvalidExp", "*Please share your experience"}};
  for (const auto& [name, text] : labels) EXPECT_EQ(part<QLabel>(name).text(), text) << name;
  const std::map<const char*, const char*> buttons = {
      {"btnFBSendLogs", "Include Velmara log in the feedback"},
      {"btnFBSendScanLog", "Send usage information for product improvment"},
      {"btnFBSubmit", "Submit"},
      {"btnFBCancel", "Cancel"},
      {"linkSendFeedback", "Show what is sent"}};
  for (const auto& [name, text] : buttons) {
    EXPECT_EQ(part<QAbstractButton>(name).text(), text) << name;
  }
  QStringList types;
  for (int i = 0; i < type().count(); ++i) types << type().itemText(i);
  EXPECT_EQ(types, QStringList({"*Please Select Feedback Type", "General Feedback",
                                "I feel good whenerver I have used it",
                                "I want to report a problem", "Unable to understand the problem"}));
  // Nothing is sent along that was not asked for.
  EXPECT_FALSE(sheet.form().sendLogs || sheet.form().sendScanLog);
  EXPECT_TRUE(sheet.isModal());
}

TEST_F(FeedbackFormTest, TabGoesThroughItInReadingOrderAndRound) {
  const std::vector<QString> order = {"txtFBEmailID",  "btnFBType",        "txtViewFBExp",
                                      "btnFBSendLogs", "btnFBSendScanLog", "linkSendFeedback",
                                      "btnFBCancel",   "btnFBSubmit",      "txtFBEmailID"};
  std::vector<QString> visited = {focusName()};
  while (visited.size() < order.size()) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    visited.push_back(focusName());
  }
  EXPECT_EQ(visited, order);
  while (visited.size() > 1) {
    visited.pop_back();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(focusName(), visited.back());
  }
  // What is typed in the text view is no Tab, and what is open is reached too.
  EXPECT_EQ(experience().toPlainText(), "");
  part("linkSendFeedback").setFocus();
  QTest::keyClick(&part("linkSendFeedback"), Qt::Key_Space);
  QTest::keyClick(&part("linkSendFeedback"), Qt::Key_Tab);
  EXPECT_EQ(focusName(), "txtWhatIsSent");
}

TEST_F(FeedbackFormTest, EveryFaultShowsAtItsFieldAndNothingMoves) {
  struct Case {
    const char* email;
    int type;
    const char* experience;
    const char* errors;
    const char* focus;  // on the first field that is wrong
  };
  const Case cases[] = {
      {"", 0, "", "ETX", "txtFBEmailID"},
      {"a@b", 1, "fine", "E", "txtFBEmailID"},
      {"a@b.co", 0, "fine", "T", "btnFBType"},
      {"a@b.co", 4, " \n\t ", "X", "txtViewFBExp"},
      {"two words@b.co", 0, "fine", "ET", "txtFBEmailID"},
      {"a@b.co", 0, "", "TX", "btnFBType"},
      {"@", 2, "", "EX", "txtFBEmailID"},
  };
  const auto places = [this] {
    std::map<QString, QRect> all = {{"sheet", sheet.geometry()}};
    for (const QWidget* widget : sheet.findChildren<QWidget*>()) {
      if (!widget->objectName().isEmpty()) all[widget->objectName()] = widget->geometry();
    }
    return all;
  };
  QApplication::processEvents();
  const auto before = places();
  EXPECT_EQ(errors(), "");
  for (const Case& c : cases) {
    email().setText(c.email);
    type().setCurrentIndex(c.type);
    experience().setPlainText(c.experience);
    QTest::mouseClick(&part("btnFBSubmit"), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(errors(), c.errors) << c.email;
    EXPECT_EQ(focusName(), c.focus) << c.email;
    EXPECT_EQ(email().accessibleDescription().isEmpty(), errors().find('E') == std::string::npos);
    EXPECT_EQ(places(), before) << c.errors;
    EXPECT_TRUE(sheet.isVisible());
  }
  EXPECT_TRUE(sent.empty());
  // Opened anew, it accuses nobody.
  sheet.cancelFeedbackSheet();
  sheet.showSheet();
  EXPECT_EQ(errors(), "");
}

TEST_F(FeedbackFormTest, WhatIsSentIsTidied) {
  QTest::keyClicks(&email(), "  SOMEBODY@Example.COM ");
  type().setCurrentIndex(2);
  experience().setPlainText("\n  It Works.\n\n");
  part<QCheckBox>("btnFBSendScanLog").setChecked(true);
  QTest::keyClick(&email(), Qt::Key_Return);
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_EQ(sent[0].email, "somebody@example.com");
  EXPECT_EQ(sent[0].type, "I feel good whenerver I have used it");
  EXPECT_EQ(sent[0].experience, "It Works.");
  EXPECT_FALSE(sent[0].sendLogs);
  EXPECT_TRUE(sent[0].sendScanLog);
  EXPECT_FALSE(sheet.isVisible());
}

TEST_F(FeedbackFormTest, EnterSubmitsFromEveryField) {
  const auto plain = Qt::KeyboardModifiers();
  struct Case {
    const char* field;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    bool submits;
  };
  for (const auto& [field, key, modifiers, submits] : std::initializer_list<Case>{
           {"txtFBEmailID", Qt::Key_Return, plain, true},
           {"txtFBEmailID", Qt::Key_Enter, Qt::KeypadModifier, true},
           {"btnFBType", Qt::Key_Return, plain, true},
           {"txtViewFBExp", Qt::Key_Return, plain, false},  // A new line.
           {"txtViewFBExp", Qt::Key_Return, Qt::ControlModifier, true},
           {"txtViewFBExp", Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier, true},
           {"btnFBSendLogs", Qt::Key_Return, plain, true},
           {"btnFBSendScanLog", Qt::Key_Return, plain, true},
           {"btnFBSubmit", Qt::Key_Return, plain, true},
           {"btnFBSubmit", Qt::Key_Space, plain, true},
           {"btnFBCancel", Qt::Key_Return, plain, false},
       }) {
    sent.clear();
    sheet.showSheet();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&sheet));
    email().clear();
    type().setCurrentIndex(0);
    fillIn();
    part(field).setFocus();
    QTest::keyClick(&part(field), key, modifiers);
    EXPECT_EQ(sent.size(), submits ? 1U : 0U) << field;
    sheet.cancelFeedbackSheet();
  }
}

TEST_F(FeedbackFormTest, EscapeAndClosingCancelFromEverywhere) {
  for (const char* field : {"txtFBEmailID", "btnFBType", "txtViewFBExp", "btnFBSendLogs",
                            "linkSendFeedback", "btnFBSubmit"}) {
    sheet.showSheet();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&sheet));
    fillIn();
    part(field).setFocus();
    QTest::keyClick(&part(field), Qt::Key_Escape);
    EXPECT_FALSE(sheet.isVisible()) << field;
  }
  sheet.showSheet();
  EXPECT_EQ(experience().toPlainText(), "");  // Each opening begins a new text,
  EXPECT_NE(email().text(), "");              // from the same sender.
  sheet.close();
  EXPECT_FALSE(sheet.isVisible());
  sheet.showSheet();
  QTest::mouseClick(&part("btnFBCancel"), Qt::LeftButton);
  EXPECT_FALSE(sheet.isVisible());
  EXPECT_TRUE(sent.empty());
}

TEST_F(FeedbackFormTest, ShowsThatItIsBusyUntilTheUploadRuns) {
  fillIn();
  int looks = 0;
  const auto isBusy = [this] {
    return part("lblFBWait").isVisible() && part("progressFB").isVisible();
  };
  EXPECT_FALSE(isBusy());
  whileSending = [&] {
    ++looks;
    EXPECT_TRUE(isBusy());
    EXPECT_TRUE(sheet.isVisible());
  };
  QTest::mouseClick(&part("btnFBSubmit"), Qt::LeftButton);
  EXPECT_EQ(looks, 1);
  EXPECT_FALSE(sheet.isVisible());
  sheet.showSheet();
  EXPECT_FALSE(isBusy());
}

TEST_F(FeedbackFormTest, WithoutTheInternetItSaysSoAndKeepsEverything) {
  isInternetAvailable = false;
  QTest::keyClicks(&email(), " NOT YET ");
  QTest::keyClick(&email(), Qt::Key_Return);
  ASSERT_EQ(alerts.shown.size(), 1U);
  EXPECT_EQ(alerts.shown[0].messageText, "Internet Not Connected");
  EXPECT_EQ(alerts.shown[0].informativeText, "");
  EXPECT_EQ(alerts.shown[0].buttons, std::vector<std::string>{"OK"});
  EXPECT_TRUE(sheet.isVisible());
  EXPECT_EQ(email().text(), " NOT YET ");  // Not even checked.
  EXPECT_EQ(errors(), "");
  EXPECT_TRUE(sent.empty());
}

TEST_F(FeedbackFormTest, AlertsStandInTheMiddleOfTheSheet) {
  DesktopAlerts real(&window);
  QPoint alertAt;
  const QWidget* alertOf = nullptr;
  QTimer::singleShot(0, [&] {
    auto* alert = qobject_cast<AlertDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(alert, nullptr);
    alertAt = alert->geometry().center();
    alertOf = alert->parentWidget();
    QTest::keyClick(alert, Qt::Key_Return);
  });
  real.runModal({"Internet Not Connected", {}, {"OK"}});
  EXPECT_EQ(alertOf, &sheet);
  EXPECT_LE((alertAt - sheet.geometry().center()).manhattanLength(), 2);

  sheet.setWindowOpacity(0.5);
  sheet.displayAlertWithMessageText("Something");
  EXPECT_EQ(sheet.windowOpacity(), 1.0);
  EXPECT_EQ(alerts.shown.back().messageText, "Something");
}

// A build without a service says so at once, and the report goes to a file.
TEST_F(FeedbackFormTest, WithoutAServiceItSaysSoAndSavesTheReport) {
  EXPECT_FALSE(part("lblFBNoService").isVisible());
  FeedbackServices without = services();
  without.reachesNobody = true;
  without.isInternetAvailable = [] { return false; };  // Which a file does not need.
  FeedbackWindowController form(std::move(without), &window);
  form.showSheet();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
  EXPECT_TRUE(form.findChild<QLabel*>("lblFBNoService")->isVisible());
  auto& button = *form.findChild<QPushButton*>("btnFBSubmit");
  EXPECT_EQ(button.text(), "Save Report…");
  button.click();
  EXPECT_TRUE(panels.saveOptions.empty()) << "the fields are wrong";
  form.findChild<QLineEdit*>("txtFBEmailID")->setText("A@b.co");
  form.findChild<QComboBox*>("btnFBType")->setCurrentIndex(1);
  form.findChild<QPlainTextEdit*>("txtViewFBExp")->setPlainText("fine");
  button.click();
  ASSERT_EQ(panels.saveOptions.size(), 1U);
  EXPECT_EQ(panels.saveOptions[0].nameFieldStringValue, "Velmara-Feedback 7.xml");
  panels.answerSave({});
  EXPECT_TRUE(sent.empty() && form.isVisible()) << "given up";
  button.click();
  panels.answerSave("/some/report.xml");
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_EQ(sent[0].email, "a@b.co");
  EXPECT_EQ(savedTo, "/some/report.xml");
  saved("the disk is full");
  ASSERT_EQ(alerts.shown.size(), 1U);
  EXPECT_EQ(alerts.shown[0].messageText, "The report could not be saved: the disk is full");
  EXPECT_TRUE(form.isVisible()) << "nothing that was typed is lost";
  saved({});
  EXPECT_FALSE(form.isVisible());
}

TEST_F(FeedbackFormTest, NothingIsCutAndTheSmallestWindowHasRoomForIt) {
  QTest::mouseClick(&part("btnFBSubmit"), Qt::LeftButton);
  EXPECT_EQ(errors(), "ETX");
  part("lblFBWait").show();
  part("lblFBNoService").show();
  part<QPushButton>("linkSendFeedback").setChecked(true);
  QApplication::processEvents();
  for (const QWidget* widget : sheet.findChildren<QWidget*>()) {
    const bool hasText = qobject_cast<const QLabel*>(widget) != nullptr ||
                         qobject_cast<const QAbstractButton*>(widget) != nullptr ||
                         qobject_cast<const QComboBox*>(widget) != nullptr;
    if (!hasText || !widget->isVisible() || widget->objectName().isEmpty()) continue;
    const std::string name = widget->objectName().toStdString();
    EXPECT_GE(widget->width(), widget->sizeHint().width()) << name;
    EXPECT_GE(widget->height(), widget->sizeHint().height()) << name;
    EXPECT_TRUE(sheet.rect().contains(QRect(widget->mapTo(&sheet, QPoint()), widget->size())));
  }
  EXPECT_TRUE(window.geometry().contains(sheet.geometry()))
      << sheet.y() << " and " << sheet.height();
}

// The service is told the kind as it knows it, whatever is shown.
class OtherWords final : public QTranslator {
 public:
  QString translate(const char* /*context*/, const char* source, const char* /*disambiguation*/,
                    int /*n*/) const override {
    return QLatin1String("other ") + QString::fromUtf8(source);
  }
  bool isEmpty() const override { return false; }
};

TEST_F(FeedbackFormTest, WhatTheServiceIsToldIsNotTranslated) {
  OtherWords words;
  QApplication::installTranslator(&words);
  sheet.convertUIAccordingToLocale();
  type().setCurrentIndex(1);
  EXPECT_EQ(type().currentText(), "other General Feedback");
  EXPECT_EQ(sheet.form().type, "General Feedback");
  QApplication::removeTranslator(&words);
}

}  // namespace
}  // namespace velmara
