// The feedback form, and what it shows of what is sent.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "app/sheets/feedback_preview.h"
#include "app/sheets/feedback_window_controller.h"
#include "support/scratch_folder.h"
#include "support/scripted_desktop.h"

namespace velmara {
namespace {

using testing::HasSubstr;

/// The feedback form on a window of the smallest size, open; what it sends and asks for is kept.
class FeedbackFormTest : public testing::Test {
 protected:
  using Receiver = std::function<void(const FeedbackReport&)>;

  FeedbackFormTest() {
    window.resize(1220, 700);
    window.show();
    open();
  }
  void open() {
    sheet.showSheet();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&sheet));
  }

  template <typename Widget = QWidget>
  Widget& part(const char* name) {
    auto* found = sheet.findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }
  void click(const char* name) { QTest::mouseClick(&part(name), Qt::LeftButton); }
  QString whatIsSent() { return part<QPlainTextEdit>("txtWhatIsSent").toPlainText(); }
  void fill(const char* address, int type, const char* text) {
    part<QLineEdit>("txtFBEmailID").setText(address);
    part<QComboBox>("btnFBType").setCurrentIndex(type);
    part<QPlainTextEdit>("txtViewFBExp").setPlainText(text);
  }
  static QString focusName() {
    const QWidget* widget = QApplication::focusWidget();
    return widget != nullptr ? widget->objectName() : QString();
  }
  // Which error labels show: "ETX" for all three.
  std::string errors() {
    std::string shown;
    for (const char* name : {"lblFBInvalidEmail", "lblFBInvalidType", "lblFBInvalidExp"}) {
      if (part(name).isVisible()) shown += name[13] == 'x' ? 'X' : name[12];
    }
    return shown;
  }

  QWidget window;
  testing_support::ScriptedAlerts alerts;
  testing_support::ScriptedPanels panels;
  bool isInternetAvailable = true;
  bool reachesNobody = false;
  std::vector<FeedbackForm> sent;  ///< or saved
  std::string savedTo;
  std::function<void(const std::string&)> saved;
  std::vector<std::pair<FeedbackForm, Receiver>> described;
  FeedbackServices services() {
    FeedbackServices services{.alerts = alerts, .panels = panels};
    services.reachesNobody = reachesNobody;
    services.isInternetAvailable = [this] { return isInternetAvailable; };
    services.extractInfoAndSendFeedback = [this](const FeedbackForm& form) {
      sent.push_back(form);
      EXPECT_TRUE(part("lblFBWait").isVisible() && part("progressFB").isVisible());
    };
    services.describe = [this](const FeedbackForm& form, Receiver receiver) {
      described.emplace_back(form, std::move(receiver));
    };
    services.proposedFileName = [] { return "Velmara-Feedback 7.xml"; };
    services.saveReport = [this](const FeedbackForm& form, const std::string& path, auto done) {
      sent.push_back(form);
      savedTo = path;
      saved = std::move(done);
    };
    return services;
  }

  FeedbackWindowController sheet{services(), &window};
};

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
  EXPECT_FALSE(sheet.form().sendLogs || sheet.form().sendScanLog) << "only what was asked for";
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
  sheet.setWindowOpacity(0.5);
  sheet.displayAlertWithMessageText("Something");
  EXPECT_EQ(sheet.windowOpacity(), 1.0);
  EXPECT_EQ(alerts.shown.back().messageText, "Something");
}

// A build without a service says so at once, and the report goes to a file.
TEST_F(FeedbackFormTest, WithoutAServiceItSaysSoAndSavesTheReport) {
  reachesNobody = true;
  isInternetAvailable = false;  // Which a file does not need.
  FeedbackWindowController form(services(), &window);
  form.showSheet();
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

class FeedbackPreviewTest : public FeedbackFormTest {
 protected:
  /// Answers what was asked for so many times ago.
  void answer(std::size_t which, const std::string& log = {}, const std::string& usage = {}) {
    const FeedbackForm& form = described.at(which).first;
    FeedbackReport report;
    report.appName = "Velmara";
    report.email = form.email;
    report.feedbackType = form.type;
    report.content = form.experience;
    report.usage = usage;
    if (form.sendLogs) {
      testing_support::writeFile(folder_.file("log"), "2026-01-01 " + log);
      using namespace std::chrono;
      report.log = readLogsContent(folder_.file("log"), sys_days(2026y / 1 / 1) + 12h);
    }
    described[which].second(report);
  }

 private:
  const testing_support::ScratchFolder folder_;
};

TEST_F(FeedbackPreviewTest, ShowsWhatIsSentBeforeItIs) {
  fill("ME@B.CO ", 0, "");
  EXPECT_FALSE(part("txtWhatIsSent").isVisible());
  click("linkSendFeedback");
  ASSERT_EQ(described.size(), 1U);
  EXPECT_TRUE(part("txtWhatIsSent").isVisible());
  EXPECT_TRUE(part<QPlainTextEdit>("txtWhatIsSent").isReadOnly());
  answer(0);
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("me@b.co\n"));
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("Log: not included"));

  // Typing changes the words at once and reads no file.
  fill("ME@B.CO ", 0, "Typed later. ");
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("Typed later.\n"));
  EXPECT_EQ(described.size(), 1U);

  // Ticking reads again; an answer that was overtaken is not shown.
  part<QCheckBox>("btnFBSendLogs").setChecked(true);
  part<QCheckBox>("btnFBSendScanLog").setChecked(true);
  ASSERT_EQ(described.size(), 3U);
  answer(1, "the older log");
  EXPECT_EQ(whatIsSent().indexOf("older"), -1);
  answer(2, "the newer log");
  EXPECT_THAT(whatIsSent().toStdString(), HasSubstr("the newer log"));

  // Of a long text the end is shown, in whole lines and characters.
  const std::string smile = "\xF0\x9F\x98\x80";
  std::string lines;
  while (lines.size() < (std::size_t{4} << 20)) lines += "an older line\n";
  std::string smiles;
  while (smiles.size() < (std::size_t{1} << 17)) smiles += smile;
  answer(2, lines + "the newest line", smiles + "z");
  const std::string shown = whatIsSent().toStdString();
  EXPECT_THAT(shown, HasSubstr("[4.2 MB before this are sent too]\nan older line\n"));
  EXPECT_THAT(shown, testing::EndsWith("an older line\nthe newest line"));
  EXPECT_THAT(shown, HasSubstr("kB before this are sent too]\n" + smile));
  EXPECT_LT(shown.size(), 70'000U);

  // Closed, it is forgotten, and what comes late with it.
  part<QCheckBox>("btnFBSendLogs").setChecked(false);
  click("linkSendFeedback");
  EXPECT_FALSE(part("txtWhatIsSent").isVisible());
  answer(described.size() - 1);
  EXPECT_EQ(whatIsSent(), "");
}

}  // namespace
}  // namespace velmara
