#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

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
  QStringList types;
  auto& type = part<QComboBox>("btnFBType");
  for (int i = 0; i < type.count(); ++i) types << type.itemText(i);
  EXPECT_EQ(types, QStringList({"*Please Select Feedback Type", "General Feedback",
                                "I feel good whenerver I have used it",
                                "I want to report a problem", "Unable to understand the problem"}));
  EXPECT_EQ(part<QCheckBox>("btnFBSendScanLog").text(),
            "Send usage information for product improvment");
  EXPECT_FALSE(sheet.form().sendLogs || sheet.form().sendScanLog) << "only what was asked for";
  EXPECT_TRUE(sheet.isModal());
}

TEST_F(FeedbackFormTest, TabGoesThroughItInReadingOrderAndRound) {
  const std::vector<QString> order = {"txtFBEmailID",  "btnFBType",        "txtViewFBExp",
                                      "btnFBSendLogs", "btnFBSendScanLog", "linkSendFeedback",
                                      "btnFBCancel",   "btnFBSubmit",      "txtFBEmailID"};
  for (const QString& name : order) {
    EXPECT_EQ(focusName(), name);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(focusName(), "txtFBEmailID");
  // What is typed in the text view is no Tab, and what is open is reached too.
  EXPECT_EQ(sheet.form().experience, "");
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
  const Case cases[] = {{"", 0, "", "ETX", "txtFBEmailID"},
                        {"a@b", 1, "fine", "E", "txtFBEmailID"},
                        {"a@b.co", 0, "fine", "T", "btnFBType"},
                        {"a@b.co", 4, " \n\t ", "X", "txtViewFBExp"},
                        {"w w@b.co", 0, "fine", "ET", "txtFBEmailID"},
                        {"a@b.co", 0, "", "TX", "btnFBType"},
                        {"@", 2, "", "EX", "txtFBEmailID"}};
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
    fill(c.email, c.type, c.experience);
    click("btnFBSubmit");
    QApplication::processEvents();
    EXPECT_EQ(errors(), c.errors) << c.email;
    EXPECT_EQ(focusName(), c.focus) << c.email;
    EXPECT_EQ(part("txtFBEmailID").accessibleDescription().isEmpty(), *c.errors != 'E');
    EXPECT_EQ(places(), before) << c.errors;
  }
  EXPECT_TRUE(sent.empty() && sheet.isVisible());
  // Opened anew, it accuses nobody.
  sheet.cancelFeedbackSheet();
  sheet.showSheet();
  EXPECT_EQ(errors(), "");
}

TEST_F(FeedbackFormTest, EnterSubmitsAndEscapeCancelsFromEveryField) {
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
           {"btnFBSubmit", Qt::Key_Return, plain, true},
           {"btnFBSubmit", Qt::Key_Space, plain, true},
           {"btnFBCancel", Qt::Key_Return, plain, false}}) {
    sent.clear();
    open();
    // What is sent is tidied.
    fill("  SOMEBODY@Example.COM ", 2, "\n  It Works.\n\n");
    part(field).setFocus();
    QTest::keyClick(&part(field), key, modifiers);
    ASSERT_EQ(sent.size(), submits ? 1U : 0U) << field;
    if (submits) {
      EXPECT_EQ(sent[0].email, "somebody@example.com");
      EXPECT_EQ(sent[0].type, "I feel good whenerver I have used it");
      EXPECT_EQ(sent[0].experience, "It Works.");
    }
    open();
    part(field).setFocus();
    QTest::keyClick(&part(field), Qt::Key_Escape);
    EXPECT_FALSE(sheet.isVisible()) << field;
  }
  sent.clear();
  sheet.showSheet();
  EXPECT_EQ(sheet.form().experience, "");  // Each opening begins a new text,
  EXPECT_NE(sheet.form().email, "");       // from the same sender.
  sheet.close();
  EXPECT_FALSE(sheet.isVisible());
  sheet.showSheet();
  click("btnFBCancel");
  EXPECT_FALSE(sheet.isVisible());
  EXPECT_TRUE(sent.empty());
}

TEST_F(FeedbackFormTest, ShowsThatItIsBusyUntilTheUploadRuns) {
  const auto isBusy = [this] {
    return part("lblFBWait").isVisible() && part("progressFB").isVisible();
  };
  int looks = 0;
  whileSending = [&] {
    ++looks;
    EXPECT_TRUE(isBusy() && sheet.isVisible());
  };
  EXPECT_FALSE(isBusy());
  fill("a@b.co", 1, "It works.");
  click("btnFBSubmit");
  EXPECT_EQ(looks, 1);
  EXPECT_FALSE(sheet.isVisible());
  sheet.showSheet();
  EXPECT_FALSE(isBusy());
}

TEST_F(FeedbackFormTest, WithoutTheInternetItSaysSoAndKeepsEverything) {
  isInternetAvailable = false;
  fill(" NOT YET ", 0, "");
  QTest::keyClick(&part("txtFBEmailID"), Qt::Key_Return);
  ASSERT_EQ(alerts.shown.size(), 1U);
  EXPECT_EQ(alerts.shown[0].messageText, "Internet Not Connected");
  EXPECT_EQ(alerts.shown[0].informativeText, "");
  EXPECT_EQ(sheet.form().email, " NOT YET ") << "not even checked";
  EXPECT_EQ(errors(), "");
  EXPECT_TRUE(sent.empty() && sheet.isVisible());
  // Alerts stand in the middle of the sheet.
  DesktopAlerts real(&window);
  QTimer::singleShot(0, [&] {
    auto* alert = qobject_cast<AlertDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->parentWidget(), &sheet);
    EXPECT_LE((alert->geometry().center() - sheet.geometry().center()).manhattanLength(), 2);
    alert->close();
  });
  real.runModal(alerts.shown[0]);
  sheet.setWindowOpacity(0.5);
  sheet.displayAlertWithMessageText("Something");
  EXPECT_EQ(sheet.windowOpacity(), 1.0);
  EXPECT_EQ(alerts.shown.back().messageText, "Something");
}

// A build without a service says so at once, and the report goes to a file.
TEST_F(FeedbackFormTest, WithoutAServiceItSaysSoAndSavesTheReport) {
  EXPECT_FALSE(part("lblFBNoService").isVisible());
  reachesNobody = true;
  isInternetAvailable = false;  // Which a file does not need.
  FeedbackWindowController form(services(), &window);
  form.showSheet();
  EXPECT_TRUE(form.findChild<QLabel*>("lblFBNoService")->isVisible());
  auto& button = *form.findChild<QPushButton*>("btnFBSubmit");
  EXPECT_EQ(button.text(), "Save Report…");
  button.click();
  EXPECT_TRUE(panels.saveOptions.empty()) << "the fields are wrong";
  form.findChild<QLineEdit*>("txtFBEmailID")->setText("A@b.co");
  form.findChild<QComboBox*>("btnFBType")->setCurrentIndex(1);
  form.findChild<QPlainTextEdit*>("txtViewFBExp")->setPlainText("fine");
  for (const char* path : {"", "/some/report.xml"}) {
    button.click();
    EXPECT_EQ(panels.saveOptions.back().nameFieldStringValue, "Velmara-Feedback 7.xml");
    panels.answerSave(path);
    EXPECT_EQ(savedTo, path) << "given up, and saved";
    EXPECT_TRUE(form.isVisible());
  }
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_EQ(sent[0].email, "a@b.co");
  saved("the disk is full");
  ASSERT_EQ(alerts.shown.size(), 1U);
  EXPECT_EQ(alerts.shown[0].messageText, "The report could not be saved: the disk is full");
  EXPECT_TRUE(form.isVisible()) << "nothing that was typed is lost";
  saved({});
  EXPECT_FALSE(form.isVisible());
}

}  // namespace
}  // namespace velmara
